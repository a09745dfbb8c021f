// The whole-number, sign and remainder intrinsics of REAL*16. They work part by part; what takes
// care is a whole leading part, where the low part decides.

#include "quad/rounding.hpp"

#include "entries.hpp"
#include "quad/significand.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;

enum class toward { zero, below, above, nearest };

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

// The general ways: apart, so that the cut by words saves no register for them.
#if defined(__i386__)
#define ZRT_GENERAL [[gnu::noinline]]
#else
#define ZRT_GENERAL [[gnu::always_inline]] inline
#endif
ZRT_GENERAL quad* put_truncation(quad* result, const quad& a) {
  return put(result, truncation(joined(a)));
}
ZRT_GENERAL quad* put_nearest(quad* result, const quad& a) {
  return put(result, nearest(joined(a)));
}
ZRT_GENERAL quad* put_ceiling(quad* result, const quad& a) {
  return put(result, ceiling(joined(a)));
}
ZRT_GENERAL quad* put_floor(quad* result, const quad& a) {
  return put(result, quads::floor(joined(a)));
}

/// The nearest 32-bit integer by hi of the sum alone; out of range and NaN give 0x80000000.
std::int32_t nearest_integer(const quad& a) {
  return truncated_to_int32(stored_arithmetic::leading(half_away(a)));
}

/// a - b, or zero where that is negative or a NaN.
quad positive_difference(const quad& a, const quad& b) {
  const quad d = steps::sub(a, b);
#if defined(__x86_64__)
  // By the image: denormals may count as zeros.
  const std::uint64_t hi = image(d.hi);
  return hi <= image(plus_infinity.hi) || hi << 1 == 0 ? d : zero;
#else
  return greater_equal(steps::leading(d), 0.0) ? d : zero;
#endif
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, qint)(quad* result, quad a) {
  return is_cut_by_words<toward::zero>(result, a) ? result : put_truncation(result, a);
}
ZRT_VALUE(quad*, qnint)(quad* result, quad a) {
  return is_cut_by_words<toward::nearest>(result, a) ? result : put_nearest(result, a);
}
ZRT_VALUE(std::int32_t, iqnint)(quad a) { return nearest_integer(joined(a)); }
ZRT_VALUE(std::int32_t, jiqnnt)(quad a) { return nearest_integer(joined(a)); }
// The low 16 bits: nothing saturates.
ZRT_VALUE(std::int32_t, iiqnnt)(quad a) {
  return static_cast<std::int16_t>(nearest_integer(joined(a)));
}
ZRT_VALUE(quad*, ceill)(quad* result, quad a) {
  return is_cut_by_words<toward::above>(result, a) ? result : put_ceiling(result, a);
}
ZRT_VALUE(quad*, floorl)(quad* result, quad a) {
  return is_cut_by_words<toward::below>(result, a) ? result : put_floor(result, a);
}
ZRT_VALUE(std::int32_t, iceill)(quad a) { return truncated_to_int32(load(ceiling(joined(a)).hi)); }
ZRT_VALUE(std::int32_t, ifloorl)(quad a) {
  return truncated_to_int32(load(quads::floor(joined(a)).hi));
}

ZRT_VALUE(quad*, fabsl)(quad* result, quad a) {
  return negative(a) ? sign_flipped(result, a) : as_it_came(result, a);
}
ZRT_VALUE(quad*, copysignl)(quad* result, quad x, quad y) {
  const bool has_sign = image(x.hi) >> 63 != 0;
  return has_sign == negative(y) ? as_it_came(result, x) : sign_flipped(result, x);
}
ZRT_VALUE(quad*, fdiml)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return put(result, positive_difference(o.first(), o.second()));
}
ZRT_VALUE(quad*, fmodl)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return put(result, ZRT_ORDINARY_CALL(remainder, o.first(), o.second()));
}
ZRT_VALUE(quad*, frexpl)(quad* result, quad q, std::int32_t* e) {
  const parts taken_apart = significand_and_exponent(q);
  *e = taken_apart.exponent;
  std::memcpy(&result->hi, &taken_apart.hi, sizeof taken_apart.hi);
  std::memcpy(&result->lo, &taken_apart.lo, sizeof taken_apart.lo);
  return result;
}
