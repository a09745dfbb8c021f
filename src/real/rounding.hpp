#pragma once

// Truncation, floor and ceiling as kernels, for the rooms above.

#include "frame/sections.hpp"

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
  const image_of<F> fraction = (image_of<F>{1} << (last - exponent)) - 1;
  return load_image<F>(bits & ~fraction);
}

/// Floor of a positive operand.
inline reg floor_of_positive(reg x) { return truncated(x); }

/// Ceiling of a positive operand.
inline reg ceiling_of_positive(reg x) {
  const reg t = truncated(x);
  return t == x ? t : t + 1.0L;
}

/// Floor. Zeros of either sign and NaNs give +0.0; infinities pass.
inline reg floor(reg x) {
  if (compares_equal(x, 0.0L)) return 0.0L;
  return less(x, 0.0L) ? fchs(ceiling_of_positive(fchs(x))) : floor_of_positive(x);
}

/// Ceiling. Zeros of either sign and NaNs give +0.0, a negative fraction -0.0; infinities pass.
inline reg ceiling(reg x) {
  if (compares_equal(x, 0.0L)) return 0.0L;
  return less(x, 0.0L) ? fchs(floor_of_positive(fchs(x))) : ceiling_of_positive(x);
}

}  // namespace zrt::real
