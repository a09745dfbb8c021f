#pragma once

// The REAL*16 hyperbolic sine and cosine as kernels, for the rooms above.

#include "frame/entry.hpp"

namespace zrt::quads {

quad hyperbolic_sine(const quad& x);
quad hyperbolic_cosine(const quad& x);
/// Both by one exponential.
struct hyperbolic_sine_and_cosine {
  quad sine, cosine;

  explicit hyperbolic_sine_and_cosine(const quad& x);
};

}  // namespace zrt::quads
