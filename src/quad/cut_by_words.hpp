#pragma once

// Whole parts of REAL*16 values by integer steps on i386.

#include "quad/values.hpp"

namespace zrt::quads {

enum class toward { inward, below, above, nearest };

#if defined(__i386__)

/// Raises inexact, in every mode and precision, without a constant in memory.
[[gnu::always_inline]] inline void raise_inexact() {
  asm volatile("fldpi\n\tfldln2\n\tfmulp\n\tfstp %%st(0)" : : : "st", "st(1)");
}

/// Stores (x, 0.0) for the x of these words.
[[gnu::always_inline]] inline void put_words(quad* result, std::uint32_t high, std::uint32_t low) {
  asm("movd %2, %%xmm0\n\t"
      "movd %3, %%xmm1\n\t"
      "punpckldq %%xmm1, %%xmm0\n\t"
      "movq %%xmm0, %0\n\t"
      "pxor %%xmm1, %%xmm1\n\t"
      "movq %%xmm1, %1"
      : "=m"(result->hi), "=m"(result->lo)
      : "r"(low), "r"(high));
}

/// A leading part with a fraction cut by its words, where the general way would wait for 64-bit
/// loads of a caller's 32-bit stores; false leaves the result to that way. Ties of the nearest
/// number and whole leading parts are decided by the low part. All but the nearest raise inexact,
/// as their truncations do.
template <toward direction>
[[gnu::always_inline]] inline bool is_cut_by_words(quad* result, const quad& a) {
  constexpr unsigned bias = layout<double>::bias;
  constexpr unsigned high_bits = 20;  // of the fraction
  struct words {
    std::uint32_t low, high;
  };
  if (!sse2_is_usable()) return false;
  words x;
  std::memcpy(&x, &a.hi, sizeof x);
  const unsigned field = x.high >> high_bits & 0x7FF;
  if (field - 1 >= bias + layout<double>::fraction_bits - 1) return false;
  const bool is_negative = x.high >> 31 != 0;
  const bool away =
      (direction == toward::below && is_negative) || (direction == toward::above && !is_negative);
  if (__builtin_expect(field < bias, false)) {
    const bool has_half = field == bias - 1;
    if (direction == toward::nearest && has_half && (x.high << 12 | x.low) == 0) return false;
    const bool is_one = away || (direction == toward::nearest && has_half);
    x = {0, (x.high & 0x80000000u) | (is_one ? bias << high_bits : 0)};
  } else if (field < bias + high_bits) {
    const std::uint32_t mask = 0xFFFFFu >> (field - bias), half = (mask >> 1) + 1;
    const std::uint32_t rest = x.high & mask;
    if ((rest | x.low) == 0) return false;
    if (direction == toward::nearest && rest == half && x.low == 0) return false;
    if (direction == toward::nearest) x.high += half;
    if (away) x.high += mask + (x.low != 0);
    x = {0, x.high & ~mask};
  } else {
    const std::uint32_t mask = 0xFFFFFFFFu >> (field - bias - high_bits), half = (mask >> 1) + 1;
    const std::uint32_t rest = x.low & mask;
    if (rest == 0 || (direction == toward::nearest && rest == half)) return false;
    const std::uint32_t added = direction == toward::nearest ? half : away ? mask : 0;
    x.high += x.low + added < added;  // the carry
    x.low = (x.low + added) & ~mask;
  }
  if (direction != toward::nearest) raise_inexact();
  put_words(result, x.high, x.low);
  return true;
}

#else

template <toward>
[[gnu::always_inline]] inline bool is_cut_by_words(quad*, const quad&) {
  return false;
}

#endif

}  // namespace zrt::quads
