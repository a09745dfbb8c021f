// Blank-padded comparison, ICHAR and CHAR. Bytes compare as unsigned numbers.

#include <algorithm>

#include "character/by_blocks.hpp"
#include "character/strings.hpp"
#include "entries.hpp"

namespace zrt::character {
namespace {

/// The order of the rest of the longer operand against blanks: 1 where it sorts after them, -1
/// before.
int against_blanks(const char* rest, std::size_t length) {
  const std::size_t skipped = leading_blanks(rest, length);
  if (skipped == length) return 0;
  return static_cast<unsigned char>(rest[skipped]) > static_cast<unsigned char>(blank) ? 1 : -1;
}

[[gnu::noinline]] int compared_padded(const char* a, const char* b, std::size_t a_length,
                                      std::size_t b_length) {
  const std::size_t common = std::min(a_length, b_length);
  if (const int found = order(a, b, common); found != 0) return found;
  return a_length > b_length ? against_blanks(a + common, a_length - common)
                             : -against_blanks(b + common, b_length - common);
}

/// Below 0 where a sorts before b, above 0 where it sorts after b, 0 where the two are equal, the
/// shorter one padded with blanks. A control character sorts before the end of the shorter one.
int compared(const char* a, const char* b, std::int32_t a_length, std::int32_t b_length) {
  if (a_length == b_length) return order(a, b, extent(a_length));
  return compared_padded(a, b, extent(a_length), extent(b_length));
}

bool are_equal(const char* a, const char* b, std::int32_t a_length, std::int32_t b_length) {
  return compared(a, b, a_length, b_length) == 0;
}

}  // namespace
}  // namespace zrt::character

using namespace zrt::character;

ZRT_VALUE(std::int32_t, lge)(const char* a, const char* b, std::int32_t alen, std::int32_t blen) {
  return compared(a, b, alen, blen) >= 0;
}
ZRT_VALUE(std::int32_t, lgt)(const char* a, const char* b, std::int32_t alen, std::int32_t blen) {
  return compared(a, b, alen, blen) > 0;
}
ZRT_VALUE(std::int32_t, llt)(const char* a, const char* b, std::int32_t alen, std::int32_t blen) {
  return compared(a, b, alen, blen) < 0;
}
ZRT_VALUE(std::int32_t, lle)(const char* a, const char* b, std::int32_t alen, std::int32_t blen) {
  return compared(a, b, alen, blen) <= 0;
}
ZRT_ENTRY_OF_TWO(std::int32_t, cheq, const char*, blocks::are_equal_held, are_equal)
ZRT_ENTRY_OF_TWO(std::int32_t, chne, const char*, !blocks::are_equal_held, !are_equal)

// The byte is signed: from 0x80 on the result is negative.
ZRT_VALUE(std::int32_t, ichar)(const char* p) { return static_cast<signed char>(*p); }

ZRT_VALUE(std::int32_t, char)(std::int32_t i, char* dst) {
  *dst = static_cast<char>(i);
  return 1;
}
