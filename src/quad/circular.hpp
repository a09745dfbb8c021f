#pragma once

// The REAL*16 circular functions as kernels, for the rooms above.

#include "quad/quad.hpp"

namespace zrt::quads {

/// Its lo is not the rounded tail of pi.
inline constexpr quad pi = constant(0x400921FB54442D18, 0x3CA1A62633145C02);

quad sine(const quad& x);
quad cosine(const quad& x);
quad tangent(const quad& x);
/// Both by one reduction.
struct sine_and_cosine {
  quad sine, cosine;

  explicit sine_and_cosine(const quad& x);
};

}  // namespace zrt::quads
