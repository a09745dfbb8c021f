#pragma once

// The REAL*16 square root as a kernel, for the rooms above.

#include "quad/quad.hpp"

namespace zrt::quads {

/// The root that `fsqrt` gives to 53 bits, and one Newton correction from its exact square:
/// 2**-105, and less near the bottom of the range, where the low part of the square goes subnormal.
/// Below zero the library's NaN; zeros and NaNs give +0.0, infinity NaNs.
[[gnu::always_inline]] inline quad square_root(const quad& a) {
  const reg value = load(a.hi);
  if (less(value, 0.0L)) return invalid;
  if (compares_equal(value, 0.0L)) return zero;
  const reg s = stored<double>(fsqrt(value));
  const quad p = product(s, s);
  const reg r = (((value - load(p.hi)) - load(p.lo)) + load(a.lo)) * 0.5L;
  return closing_sum<by_store>(s, r / s);
}

}  // namespace zrt::quads
