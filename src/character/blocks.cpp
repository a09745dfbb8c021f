#include "character/blocks.hpp"

#include <cstring>

#include "character/held_blocks.hpp"
#include "frame/processor.hpp"

namespace zrt::character::blocks {
namespace {

constexpr char blank = ' ';
constexpr std::size_t most_in_order = 16 * size;  // from here on the C library compares faster

#if defined(__i386__)
bool usable() { return processor::has_sse2; }
#else
constexpr bool usable() { return true; }
#endif

void fill_blocks(char* text, std::size_t count) {
  for (; count > 2 * size; text += size, count -= 2 * size) blank_2(text, count);
  blank_2(text, count);
}

int order_by_blocks(const char* a, const char* b, std::size_t count) {
  std::size_t at = 0;
  while (count - at >= 4 * size && four_are_equal(a + at, b + at)) at += 4 * size;
  while (at < count) {
    if (count - at < size) at = count - size;
    const unsigned others = ~equal_bytes(a + at, b + at) & all_equal;
    if (others != 0) {
      at += static_cast<std::size_t>(__builtin_ctz(others));
      return static_cast<unsigned char>(a[at]) < static_cast<unsigned char>(b[at]) ? -1 : 1;
    }
    at += size;
  }
  return 0;
}

std::size_t leading_by_blocks(const char* text, std::size_t length) {
  std::size_t at = 0;
  while (length - at >= 4 * size && four_are_blank(text + at)) at += 4 * size;
  while (at < length) {
    if (length - at < size) at = length - size;
    const unsigned others = ~blank_bytes(text + at) & all_equal;
    if (others != 0) return at + static_cast<std::size_t>(__builtin_ctz(others));
    at += size;
  }
  return length;
}

}  // namespace

void copy(char* target, const char* source, std::size_t count) {
  if (usable() && count <= most_held)
    copy_held(target, source, count);
  else
    std::memmove(target, source, count);
}

void fill_blanks(char* text, std::size_t count) {
  if (usable() && count <= most_held)
    fill_blocks(text, count);
  else
    std::memset(text, blank, count);
}

int order(const char* a, const char* b, std::size_t count) {
  return usable() && count <= most_in_order ? order_by_blocks(a, b, count)
                                            : std::memcmp(a, b, count);
}

std::size_t length_without_trailing(const char* text, std::size_t length) {
  if (usable()) return length_by_blocks(text, length);
  while (length > 0 && text[length - 1] == blank) --length;
  return length;
}

std::size_t leading_blanks(const char* text, std::size_t length) {
  if (usable()) return leading_by_blocks(text, length);
  std::size_t at = 0;
  while (at < length && text[at] == blank) ++at;
  return at;
}

}  // namespace zrt::character::blocks
