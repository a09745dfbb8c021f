#include "character/blocks.hpp"

#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/processor.hpp"

// The 32-bit builds have SSE2 in these functions alone. They use integer moves and comparisons,
// which leave MXCSR as it is, and the callers' stack is aligned to 4 bytes.
#if defined(__i386__)
#define ZRT_WITH_SSE2 [[gnu::target("sse2"), gnu::force_align_arg_pointer]]
#define ZRT_INLINE_WITH_SSE2 [[gnu::always_inline, gnu::target("sse2")]] inline
#else
#define ZRT_WITH_SSE2
#define ZRT_INLINE_WITH_SSE2 [[gnu::always_inline]] inline
#endif

namespace zrt::character::blocks {
namespace {

constexpr char blank = ' ';
constexpr std::size_t most_in_registers = 8 * size;  // bytes that are held at once
constexpr std::size_t most_in_order = 16 * size;     // from here on the C library compares faster
constexpr unsigned all_equal = 0xFFFF;

#if defined(__i386__)
bool usable() { return processor::has_sse2; }
#else
constexpr bool usable() { return true; }
#endif

using block = __m128i;

ZRT_INLINE_WITH_SSE2 block load(const char* text) {
  return _mm_loadu_si128(reinterpret_cast<const block*>(text));
}
ZRT_INLINE_WITH_SSE2 void store(char* text, block value) {
  _mm_storeu_si128(reinterpret_cast<block*>(text), value);
}
ZRT_INLINE_WITH_SSE2 block all_blanks() { return _mm_set1_epi8(blank); }

/// One bit for each byte that is the same in both.
ZRT_INLINE_WITH_SSE2 unsigned equal_bytes(block a, block b) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(a, b)));
}

/// Copies `half` blocks from the front and as many up to the end, which may overlap them.
template <std::size_t half>
ZRT_INLINE_WITH_SSE2 void copy_blocks(char* target, const char* source, std::size_t count) {
  block front[half], back[half];
#pragma GCC unroll 4
  for (std::size_t i = 0; i < half; ++i) {
    front[i] = load(source + i * size);
    back[i] = load(source + count - (i + 1) * size);
  }
#pragma GCC unroll 4
  for (std::size_t i = 0; i < half; ++i) {
    store(target + i * size, front[i]);
    store(target + count - (i + 1) * size, back[i]);
  }
}

ZRT_WITH_SSE2 void copy_in_registers(char* target, const char* source, std::size_t count) {
  if (count <= 2 * size)
    copy_blocks<1>(target, source, count);
  else if (count <= 4 * size)
    copy_blocks<2>(target, source, count);
  else
    copy_blocks<4>(target, source, count);
}

ZRT_WITH_SSE2 void fill_blocks(char* text, std::size_t count) {
  const block value = all_blanks();
  char* const last = text + count - size;
  for (; text < last; text += size) store(text, value);
  store(last, value);
}

/// Whether all bits of the comparisons of four blocks are set.
ZRT_INLINE_WITH_SSE2 bool all_four(block a, block b, block c, block d) {
  const block all = _mm_and_si128(_mm_and_si128(a, b), _mm_and_si128(c, d));
  return static_cast<unsigned>(_mm_movemask_epi8(all)) == all_equal;
}
ZRT_INLINE_WITH_SSE2 bool four_are_equal(const char* a, const char* b) {
  return all_four(_mm_cmpeq_epi8(load(a), load(b)), _mm_cmpeq_epi8(load(a + size), load(b + size)),
                  _mm_cmpeq_epi8(load(a + 2 * size), load(b + 2 * size)),
                  _mm_cmpeq_epi8(load(a + 3 * size), load(b + 3 * size)));
}
ZRT_INLINE_WITH_SSE2 bool four_are_blank(const char* text) {
  const block value = all_blanks();
  return all_four(_mm_cmpeq_epi8(load(text), value), _mm_cmpeq_epi8(load(text + size), value),
                  _mm_cmpeq_epi8(load(text + 2 * size), value),
                  _mm_cmpeq_epi8(load(text + 3 * size), value));
}

ZRT_WITH_SSE2 int order_by_blocks(const char* a, const char* b, std::size_t count) {
  std::size_t at = 0;
  while (count - at >= 4 * size && four_are_equal(a + at, b + at)) at += 4 * size;
  while (at < count) {
    if (count - at < size) at = count - size;
    const unsigned others = ~equal_bytes(load(a + at), load(b + at)) & all_equal;
    if (others != 0) {
      at += static_cast<std::size_t>(__builtin_ctz(others));
      return static_cast<unsigned char>(a[at]) < static_cast<unsigned char>(b[at]) ? -1 : 1;
    }
    at += size;
  }
  return 0;
}

ZRT_WITH_SSE2 std::size_t length_by_blocks(const char* text, std::size_t length) {
  std::size_t end = length;
  while (end >= 4 * size && four_are_blank(text + end - 4 * size)) end -= 4 * size;
  // The block at the front may take in blanks that were counted already.
  while (end > 0) {
    const std::size_t at = end > size ? end - size : 0;
    const unsigned others = ~equal_bytes(load(text + at), all_blanks()) & all_equal;
    if (others != 0) return at + 32 - static_cast<std::size_t>(__builtin_clz(others));
    end = at;
  }
  return 0;
}

ZRT_WITH_SSE2 std::size_t leading_by_blocks(const char* text, std::size_t length) {
  std::size_t at = 0;
  while (length - at >= 4 * size && four_are_blank(text + at)) at += 4 * size;
  while (at < length) {
    if (length - at < size) at = length - size;
    const unsigned others = ~equal_bytes(load(text + at), all_blanks()) & all_equal;
    if (others != 0) return at + static_cast<std::size_t>(__builtin_ctz(others));
    at += size;
  }
  return length;
}

}  // namespace

void copy(char* target, const char* source, std::size_t count) {
  if (count <= most_in_registers && usable())
    copy_in_registers(target, source, count);
  else
    std::memmove(target, source, count);
}

void fill_blanks(char* text, std::size_t count) {
  if (count <= most_in_registers && usable())
    fill_blocks(text, count);
  else
    std::memset(text, blank, count);
}

int order(const char* a, const char* b, std::size_t count) {
  return count <= most_in_order && usable() ? order_by_blocks(a, b, count)
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
