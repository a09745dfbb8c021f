// Assignment, concatenation and repetition of CHARACTER values into a target of the caller's. Only
// assignment pads with blanks.

#include <algorithm>

#include "character/by_blocks.hpp"
#include "character/strings.hpp"
#include "entries.hpp"

namespace zrt::character {
namespace {

/// Cuts or pads to the target. The two may overlap in any way: every character is read before one
/// is stored over it, and the pad begins behind the last one.
void assign(char* target, std::size_t target_length, const char* source,
            std::size_t source_length) {
  const std::size_t copied = std::min(target_length, source_length);
  copy(target, source, copied);
  fill_blanks(target + copied, target_length - copied);
}

void assign_any(char* target, const char* source, std::int32_t target_length,
                std::int32_t source_length) {
  if (target_length == source_length) return copy(target, source, extent(target_length));
  assign(target, extent(target_length), source, extent(source_length));
}

/// a, then b, as far as they fit; gives the number of characters stored.
std::size_t concatenate(const char* a, std::size_t a_length, const char* b, std::size_t b_length,
                        char* target, std::size_t target_length) {
  const std::size_t from_a = std::min(a_length, target_length);
  const std::size_t from_b = std::min(b_length, target_length - from_a);
  copy(target, a, from_a);
  copy(target + from_a, b, from_b);
  return from_a + from_b;
}

/// Stores `total` characters, whole copies of the source: the first is copied, then what stands
/// there is doubled.
void fill_with_copies(const char* source, std::size_t source_length, char* target,
                      std::size_t total) {
  copy(target, source, source_length);
  for (std::size_t stored = source_length; stored < total;) {
    const std::size_t next = std::min(stored, total - stored);
    std::memcpy(target + stored, target, next);
    stored += next;
  }
}

/// As many whole copies as are asked for and fit; gives the number of characters stored. A negative
/// count of copies stores nothing and gives the negative product, at least the smallest integer.
std::int32_t repeat(const char* source, std::int32_t copies, char* target,
                    std::int32_t source_length, std::int32_t target_length) {
  const std::int64_t source_size = std::max(source_length, 0),
                     target_size = std::max(target_length, 0);
  std::int64_t total = copies * source_size;
  if (total > target_size) {
    const auto fitting =
        static_cast<std::uint32_t>(target_size) / static_cast<std::uint32_t>(source_size);
    total = fitting * source_size;
  }
  if (total > 0)
    fill_with_copies(source, extent(source_length), target, static_cast<std::size_t>(total));
  return static_cast<std::int32_t>(std::max<std::int64_t>(total, INT32_MIN));
}

}  // namespace
}  // namespace zrt::character

using namespace zrt::character;

ZRT_ENTRY_OF_TWO(void, casgn, char*, blocks::copy_held, assign_any)

// The byte in front of the target counts the characters assigned, modulo 256, and is stored first,
// also where it is part of the source.
ZRT_VALUE(void, strcasgn)
(char* dst, const char* src, std::int32_t dstlen, std::int32_t srclen) {
  dst[-1] = static_cast<char>(std::min(extent(dstlen), extent(srclen)));
  assign(dst, extent(dstlen), src, extent(srclen));
}

ZRT_VALUE(std::int32_t, con)
(const char* a, const char* b, char* dst, std::int32_t alen, std::int32_t blen,
 std::int32_t dstlen) {
  return static_cast<std::int32_t>(
      concatenate(a, extent(alen), b, extent(blen), dst, extent(dstlen)));
}

ZRT_VALUE(std::int32_t, repeat)
(const char* src, std::int32_t ncopies, char* dst, std::int32_t srclen, std::int32_t dstlen) {
  return repeat(src, ncopies, dst, srclen, dstlen);
}
