#pragma once

// Truncation, floor, ceiling and the nearest whole number as kernels.

#include "frame/sections.hpp"
#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

/// Truncation toward zero on the image of the operand: the fraction bits below the point are
/// cleared. No flag is raised. Fractions and zeros of either sign give +0.0; infinities and NaNs
/// pass.
template <format F>
inline reg integral_part(const F& x) {
  constexpr int last = layout<F>::bias + layout<F>::fraction_bits;  // no fraction bits above it
  const auto bits = image(x);
  const int exponent = biased_exponent<F>(bits);
  if (exponent > last) return load(x);
  if (exponent < layout<F>::bias) return 0.0L;
  if constexpr (std::same_as<F, double>) {
    // Below 2**31 by way of a 32-bit integer: one store of 32 bits, where the cleared image would
    // be two, and the 64-bit load behind them a failed store forwarding (5 ns on i386).
    if (exponent < layout<F>::bias + 31) {
      const std::uint32_t top = static_cast<std::uint32_t>(bits >> 21) | 0x80000000u;  // 1.fraction
      const auto whole = static_cast<std::int32_t>(top >> (31 - (exponent - layout<F>::bias)));
      return load_integer(bits >> 63 != 0 ? -whole : whole);
    }
  }
  const image_of<F> fraction = (image_of<F>{1} << (last - exponent)) - 1;
  return load_image<F>(bits & ~fraction);
}

/// Floor of a positive operand.
template <class V>
[[gnu::always_inline]] inline V floor_of_positive(V x) {
  return truncated(x);
}

/// Ceiling of a positive operand.
template <class V>
[[gnu::always_inline]] inline V ceiling_of_positive(V x) {
  const V t = truncated(x);
  return t == x ? t : t + 1.0;
}

/// Floor. Zeros of either sign and NaNs give +0.0; infinities pass.
template <class V>
[[gnu::always_inline]] inline V floor(V x) {
  if (compares_equal(x, 0.0)) return 0.0;
  return less(x, 0.0) ? fchs(ceiling_of_positive(fchs(x))) : floor_of_positive(x);
}

/// Ceiling. Zeros of either sign and NaNs give +0.0, a negative fraction -0.0; infinities pass.
template <class V>
[[gnu::always_inline]] inline V ceiling(V x) {
  if (compares_equal(x, 0.0)) return 0.0;
  return less(x, 0.0) ? fchs(floor_of_positive(fchs(x))) : ceiling_of_positive(x);
}

/// |x| + 0.5 truncated, with the sign of x: ties away from zero. The sum rounds to 53 bits, which
/// in REAL*8 carries the largest value below 0.5 to 1.0. A NaN passes, -0.0 gives +0.0.
template <class V, format F>
[[gnu::always_inline]] inline V nearest_whole(const F& x) {
  const V value = load<V>(x);
  const bool negative = less(value, 0.0);
  const V rounded = negated_if(negative, truncated(negated_if(negative, value) + 0.5));
  return stored<F>(rounded);
}

/// Ordinary: what a 64-bit integer holds.
template <format F>
[[gnu::always_inline]] inline bool is_ordinary_to_round(const F& x) {
  return zero_or_between(x, smallest_normal<F>, F{0x1p52});
}

/// |x|: the load quiets a signalling NaN; every NaN loses its sign.
template <format F>
inline reg magnitude(const F& x) {
  return fabs(load(x));
}

/// |a| with the sign of b. A zero or NaN b counts as positive.
template <format F>
inline reg sign_transfer(const F& a, const F& b) {
  const bool negative = less(load(b), 0.0L);
  const reg size = fabs(load(a));
  return negative ? fchs(size) : size;
}

/// a - b where it is zero or positive, else +0.0, also for a NaN. Not stored: 2e308 stays finite.
template <format F>
inline reg positive_difference(const F& a, const F& b) {
  const reg difference = load(a) - load(b);
  return greater_equal(difference, 0.0L) ? difference : 0.0L;
}

/// a - trunc(a / p) p, each operation rounded to 53 bits; a quotient of more than 53 bits leaves
/// what these roundings give. A zero or NaN p gives the library's NaN, before a is looked at.
template <format F>
inline reg remainder(const F& a, const F& p) {
  const reg divisor = load(p);
  if (compares_equal(divisor, 0.0L)) return quiet_nan;
  const reg dividend = load(a);
  const reg quotient = truncated(dividend / divisor);
  return dividend - quotient * divisor;
}

/// The nearest 32-bit integer, ties away from zero; out of range and NaN give 0x80000000.
template <format F>
[[gnu::always_inline]] inline std::int32_t nearest_integer(const F& x) {
#if defined(__i386__)
  static constexpr float halves[] = {0.5F, -0.5F};  // without a branch on the sign
  if (__builtin_expect(processor::has_fisttp && leading_size(x) < leading_size(F{0x1p30}), true))
    return fisttp32(load(x) + load(halves[is_negative<F>(image(x))]));
#endif
  const reg value = load(x);
  return truncated_to_int32(greater(0.0L, value) ? value - 0.5L : value + 0.5L);
}

#if defined(__x86_64__)
// --- Quick kernels ------------------------------------------------------------------------------
// By conversions that cut to an integer, by comparisons without a branch and by images.

/// The integers that hold what a quick kernel rounds: conversions of REAL*4 are shorter to 32 bits.
template <format F>
using whole_of = std::conditional_t<std::same_as<F, double>, std::int64_t, std::int32_t>;
template <format F>
inline constexpr F beyond_whole = std::same_as<F, double> ? 0x1p52 : 0x1p30f;

template <format F>
[[gnu::always_inline]] inline F cut(const F& x) {
  return static_cast<F>(static_cast<whole_of<F>>(x));
}

/// The value where a < b, else +0.0.
[[gnu::always_inline]] inline double taken_if_less(double a, double b, double value) {
  const __m128d less = _mm_cmplt_sd(_mm_castsi128_pd(packed(a)), _mm_castsi128_pd(packed(b)));
  return unpacked<double>(_mm_castpd_si128(less) & packed(value));
}
[[gnu::always_inline]] inline float taken_if_less(float a, float b, float value) {
  const __m128 less = _mm_cmplt_ss(_mm_castsi128_ps(packed(a)), _mm_castsi128_ps(packed(b)));
  return unpacked<float>(_mm_castps_si128(less) & packed(value));
}

/// Whether a rounding kernel serves x. A zero gives the result +0.0 of all of them.
template <format F>
[[gnu::always_inline]] inline bool is_quick_to_round(const F& x, F& zero_result) {
  if (size_between(x, smallest_normal<F>, beyond_whole<F>)) [[likely]]
    return true;
  zero_result = 0;
  return false;
}

template <format F>
[[gnu::always_inline]] inline bool quick_integral_part(const F& x, F& result) {
  if (!(leading_size(x) < leading_size(beyond_whole<F>))) return false;
  result = cut(x);
  return true;
}

template <format F>
[[gnu::always_inline]] inline bool quick_floor(const F& x, F& result) {
  if (!is_quick_to_round(x, result)) return size_image(x) == 0;
  const F whole = cut(x);
  result = whole + taken_if_less(x, whole, F{-1});  // +0.0 + +0.0 is +0.0 in every mode
  return true;
}
template <format F>
[[gnu::always_inline]] inline bool quick_ceiling(const F& x, F& result) {
  if (!is_quick_to_round(x, result)) return size_image(x) == 0;
  const F whole = cut(x);
  result = with_sign_of(whole + taken_if_less(whole, x, F{1}), x);
  return true;
}
template <format F>
[[gnu::always_inline]] inline bool quick_nearest_whole(const F& x, F& result) {
  if (!is_quick_to_round(x, result)) return size_image(x) == 0;
  const double sum = load<double>(without_sign(x)) + 0.5;
  result = with_sign_of(static_cast<F>(static_cast<whole_of<F>>(sum)), x);
  return true;
}

/// Below 2**30; floor and ceiling of zeros and normal operands only.
template <format F>
[[gnu::always_inline]] inline bool quick_nearest_integer(const F& x, std::int32_t& result) {
  if (!(leading_size(x) < leading_size(F{0x1p30}))) return false;
  const double value = load<double>(x);
  result = fisttp32(value + with_sign_of(0.5, value));
  return true;
}
template <format F>
[[gnu::always_inline]] inline bool quick_integer_floor(const F& x, std::int32_t& result) {
  if (!zero_or_between(x, smallest_normal<F>, F{0x1p30})) return false;
  const auto whole = static_cast<std::int32_t>(x);
  result = whole - (x < static_cast<F>(whole));
  return true;
}
template <format F>
[[gnu::always_inline]] inline bool quick_integer_ceiling(const F& x, std::int32_t& result) {
  if (!zero_or_between(x, smallest_normal<F>, F{0x1p30})) return false;
  const auto whole = static_cast<std::int32_t>(x);
  result = whole + (static_cast<F>(whole) < x);
  return true;
}

template <format F>
[[gnu::always_inline]] inline bool is_number(const F& x) {
  return size_image(x) <= size_image(infinite<F>);
}
template <format F>
[[gnu::always_inline]] inline bool quick_magnitude(const F& x, F& result) {
  if (!is_number(x)) return false;
  result = without_sign(x);
  return true;
}
template <format F>
[[gnu::always_inline]] inline bool quick_sign_transfer(const F& a, const F& b, F& result) {
  if (!is_number(a)) return false;
  // The images of negative numbers, no zero and no NaN, follow one another.
  const bool negative = image(b) - (sign_bit_of<F> + 1) < image(infinite<F>);
  const image_of<F> sign = image_of<F>{negative} << sign_place<F>;
  result = std::bit_cast<F>(static_cast<image_of<F>>(size_image(a) >> 1 | sign));
  return true;
}

/// Far from what the format cannot hold, so that no difference is subnormal; zeros are seldom.
template <format F>
[[gnu::always_inline]] inline bool are_quick_to_subtract(const F& a, const F& b) {
  constexpr F low = std::same_as<F, double> ? 0x1p-900 : 0x1p-100f, high = infinite<F>;
  if (size_between(a, low, high) & size_between(b, low, high)) [[likely]]
    return true;
  return zero_or_between(a, low, high) && zero_or_between(b, low, high);
}
template <format F>
[[gnu::always_inline]] inline bool quick_positive_difference(const F& a, const F& b, F& result) {
  if (!are_quick_to_subtract(a, b)) return false;
  const double difference = load<double>(a) - load<double>(b);
  const __m128d kept = _mm_cmple_sd(_mm_setzero_pd(), _mm_castsi128_pd(packed(difference)));
  result = static_cast<F>(unpacked<double>(packed(difference) & _mm_castpd_si128(kept)));
  return true;
}

/// The 48-bit product is exact.
[[gnu::always_inline]] inline bool quick_product(const float& a, const float& b, double& result) {
  constexpr float low = smallest_normal<float>, high = infinite<float>;
  if (!(size_between(a, low, high) & size_between(b, low, high))) {
    if (!zero_or_between(a, low, high) || !zero_or_between(b, low, high)) return false;
  }
  result = load<double>(a) * load<double>(b);
  return true;
}

/// Operands within 2**+-(range), quotients below 2**62: no product or difference is subnormal.
template <format F>
[[gnu::always_inline]] inline bool quick_remainder(const F& a, const F& p, F& result) {
  constexpr bool wide = std::same_as<F, double>;
  constexpr F low = wide ? 0x1p-400 : 0x1p-60, high = wide ? 0x1p400 : 0x1p60;
  if (!size_between(p, low, high) || !zero_or_between(a, low, high)) return false;
  const double dividend = load<double>(a), divisor = load<double>(p);
  const double quotient = dividend / divisor;
  if (!less(fabs(quotient), 0x1p62)) return false;
  result = static_cast<F>(dividend - truncated(quotient) * divisor);
  return true;
}
#endif

}  // namespace zrt::real
