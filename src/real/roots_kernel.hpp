#pragma once

// Kernels of SQRT of REAL*4 and REAL*8. Both run Heron's rule, REAL*8 on the whole operand, REAL*4
// on its significand.

#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

/// Ordinary: the root and what its steps subtract are normal.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_root(const F& x) {
  if constexpr (std::same_as<F, double>)
    return positive_between<double>(x, 0x1p-900, infinite<double>);
  else
    return is_positive_normal(x);
}

/// The first guess of a root: the image halved, which halves the exponent and keeps the leading
/// fraction bits; within 6.1 % for normal operands.
template <class V>
[[gnu::always_inline]] inline V root_guess(const double& x) {
  const auto high = (static_cast<std::uint32_t>(image(x) >> 32) >> 1) + 0x1FF80000;
  if constexpr (std::same_as<V, reg>) {
    // The low word is zero, so that within the range of REAL*4 a single 32-bit store can carry it.
    constexpr std::uint32_t rebias = (1023 - 127) << 20;
    if (high - rebias - (1u << 20) < 254u << 20) return load_image<float>((high - rebias) << 3);
  }
  return load_image<double, V>(std::uint64_t{high} << 32);
}

/// Four steps of Heron's rule y = (y + x / y) / 2 from a guess out of the image, with the factors
/// 1/2 gathered in the second and the fourth.
template <class V>
[[gnu::always_inline]] inline V heron(const double& x) {
  const V value = load<V>(x);
  const V y = root_guess<V>(x);
  const V a = y + value / y;
  const V c = 0.25 * a + value / a;
  const V d = c + value / c;
  return value / d + 0.25 * d;
}

/// The root by Heron's rule: within one unit of the last place. A subnormal is too far from its
/// guess and gets no root. Zeros and NaNs give x, negative operands the library's NaN.
template <std::same_as<reg> V>
[[gnu::always_inline]] inline reg square_root(const double& x) {
  const reg value = load(x);
  if (compares_equal(value, 0.0)) return value;
  if (less(value, 0.0)) return quiet_nan;
  if (value == infinity) return value;
  return heron<reg>(x);
}

/// Whether operations round to nearest.
[[gnu::always_inline]] inline bool rounds_to_nearest(reg) {
  std::uint16_t word;
  asm volatile("fnstcw %0" : "=m"(word));
  return (word & 0x0C00) == 0;
}

#if defined(__x86_64__)
[[gnu::always_inline]] inline bool rounds_to_nearest(double) {
  const double one = sse_operations::held(1.0);
  return !greater(one + 0x1p-60, one - 0x1p-60);
}

template <std::same_as<double> V>
[[gnu::always_inline]] inline double square_root(const double& x) {
  return heron<double>(x);
}

/// The same value as four steps of Heron's rule for a normal positive x in round to nearest, from
/// the correctly rounded root r of the processor.
///
/// The last step adds d/4 and x/d, about half the root s each, where d/2 is s within 2**-39. Where
/// r is not at the end of a binade, d/4 is a multiple of half a unit of r, and x/d rounds to such a
/// multiple; their exact sum is s within 2**-79. So the result is s rounded to half units, and then
/// to units with ties to even: r itself where it is even or |s - r| less than a quarter of a unit,
/// else its neighbour on the side of s. s - r is (x - r**2) / 2 r; in units of the last place of r
/// the numerator is an integer below 2**54, told by the low 64 bits of the square. The steps decide
/// what lies within 2**-19 of a quarter, or at the end of a binade: one operand in 2**19.
[[gnu::always_inline]] inline bool quick_root(const double& x, double& result) {
  if (!has_ordinary_root(x)) return false;
  const double root = fsqrt(x);
  const auto bits = std::bit_cast<std::uint64_t>(root),
             square_bits = std::bit_cast<std::uint64_t>(x);
  const std::uint64_t fraction = bits << 12, r = fraction >> 12 | std::uint64_t{1} << 52;
  const bool even_exponent = (square_bits >> 52 & 1) != 0;
  const std::uint64_t square = square_bits << 52;
  const auto excess = static_cast<std::int64_t>((even_exponent ? square : square + square) - r * r);
  const auto sign = static_cast<std::uint64_t>(excess >> 63);
  const std::uint64_t distance = ((static_cast<std::uint64_t>(excess) ^ sign) - sign) - (r >> 1);
  const bool near_a_quarter = (distance + (std::uint64_t{1} << 33)) >> 34 == 0;
  const bool at_end = (fraction + (std::uint64_t{1} << 34)) >> 35 == 0;  // 2**-30 of r
  if (near_a_quarter || at_end || !rounds_to_nearest(root)) return false;
  const bool to_neighbour = (bits & ~(distance >> 63) & 1) != 0;
  result = std::bit_cast<double>(to_neighbour ? bits + (sign | 1) : bits);
  return true;
}
#endif

/// Two steps of Heron's rule on the significand f in [0.5, 1) from a linear guess.
template <class V>
[[gnu::always_inline]] inline V heron_of_significand(V f) {
  const V y0 = 0x1.2e2974p-1 * f + 0x1.ab535p-2;  // 0.5901600122451782, 0.4173099994659424
  const V y1 = 0.5 * (y0 + f / y0);
  return 0.5 * (y1 + f / y1);
}

/// The same, stored to REAL*4. The steps end less than 2**22 units of 53 bits above the root, so
/// that the processor's root decides where no midpoint of 24 bits lies between. A root of 24 bits
/// takes the steps as well, for their precision flag; so do other rounding modes.
template <class V>
[[gnu::always_inline]] inline V stored_root_of_significand(V f) {
  constexpr std::uint32_t midpoint = 1 << 28, margin = (1 << 22) + 4;
  const V root = fsqrt(f);
  const auto rest = static_cast<std::uint32_t>(stored_image<double>(root)) & (2 * midpoint - 1);
  const bool near_midpoint = rest - (midpoint - margin) <= margin;
  const bool exact = std::same_as<V, reg> && rest == 0;
  if (near_midpoint || exact || !rounds_to_nearest(f))
    return stored<float>(heron_of_significand(f));
  return stored<float>(root);
}

/// The root of the significand, then half of the exponent; an odd exponent takes a factor sqrt(1/2)
/// first. Within one unit of the last place. A subnormal counts as if it had the hidden bit. Zeros
/// and NaNs give x, negative operands the library's NaN. The result is a REAL*4.
template <class V>
[[gnu::always_inline]] inline V square_root(const float& x) {
  constexpr std::uint32_t exponent_field = 0x7F800000;
  constexpr std::int32_t half_bias = 126;  // the exponent field of [0.5, 1)
  const V value = load<V>(x);
  if constexpr (takes_all_operands<V>) {
    if (compares_equal(value, 0.0)) return value;
    if (less(value, 0.0)) return quiet_nan;
    if (value == infinity) return value;
  }
  const auto bits = image(x);
  std::int32_t n = biased_exponent<float>(bits) - half_bias;
  const V f = load_image<float, V>((bits & ~exponent_field) | half_bias << 23);
  V y = stored_root_of_significand(f);
  if (n % 2 != 0) {
    y = y * 0x1.6a09e667f3bcdp-1;  // 0.7071067811865476, of REAL*8
    ++n;
  }
  return load_image<float, V>(stored_image<float>(y) + (static_cast<std::uint32_t>(n / 2) << 23));
}

#if defined(__i386__)
/// The same by the processor's root where neither a midpoint nor a number of 24 bits lies between
/// it and the steps' end, so that both round alike in every mode, and both raise inexact; the steps
/// end at most 2 units of 53 bits below it.
[[gnu::always_inline]] inline bool quick_root(const float& x, reg& result) {
  constexpr std::uint32_t half_unit = 1 << 28, below = 4, above = (1 << 22) + 4;
  if (!is_positive_normal(x)) return false;
  const std::uint32_t bits = image(x);
  const reg root = fsqrt(load_image<float>((bits & 0x7FFFFF) | 0x3F000000));
  const auto rest = static_cast<std::uint32_t>(stored_image<double>(root));
  if (((rest + above) & (half_unit - 1)) <= above + below) return false;
  std::uint32_t y = stored_image<float>(root);
  const auto exponent = static_cast<std::int32_t>(bits >> 23);
  if (exponent % 2 != 0) y = stored_image<float>(load_image<float>(y) * 0x1.6a09e667f3bcdp-1);
  result = load_image<float>(y + static_cast<std::uint32_t>((exponent - 125) >> 1 << 23));
  return true;
}
#endif

#if defined(__x86_64__)
/// The same by the processor's root where neither a midpoint nor a number of 24 bits lies between
/// it and the steps' end, so that both round alike in every mode; the steps end at most 2 units of
/// 53 bits below it. The sum with 1.5 2**28 rounds what lies in [0.5, 1] to 24 bits.
[[gnu::always_inline]] inline bool quick_root(const float& x, float& result) {
  constexpr std::uint32_t half_unit = 1 << 28, below = 4, above = (1 << 22) + 4;
  if (!has_ordinary_root(x)) return false;
  const auto bits = image(x);
  const std::uint64_t fraction = std::uint64_t{bits} << 41 >> 12;
  const double root = fsqrt(std::bit_cast<double>(fraction | std::uint64_t{1022} << 52));
  const auto rest = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(root));
  if (((rest + above) & (half_unit - 1)) < above + below) return false;
  const double y = sse_operations::held(root + 0x1.8p28) - 0x1.8p28;
  // Half of the exponent goes into the factor: 1 or the root of 1/2.
  static constexpr double factors[2] = {0x1p-63, 0x1.6a09e667f3bcdp-64};
  const std::uint32_t exponent = bits >> 23;
  const auto factor = std::bit_cast<std::uint64_t>(factors[exponent & 1]);
  const auto half = static_cast<std::uint64_t>((exponent + 1) / 2) << 52;
  result = static_cast<float>(y * std::bit_cast<double>(factor + half));
  return true;
}
#endif

}  // namespace zrt::real
