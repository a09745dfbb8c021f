#pragma once

// Truncation, floor, ceiling and the nearest whole number as kernels.

#include "frame/sections.hpp"
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
}  // namespace zrt::real
