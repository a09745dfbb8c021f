#pragma once

// The REAL*16 hyperbolic functions as kernels, for the rooms above.

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::quads {

struct hyperbolic_sine_and_cosine {
  quad sine, cosine;
};

ZRT_IN_EACH_MODEL(quad hyperbolic_sine(const quad& x); quad hyperbolic_cosine(const quad& x);
                  quad hyperbolic_tangent(const quad& x);
                  /// Both by one exponential.
                  hyperbolic_sine_and_cosine both_hyperbolic(const quad& x);)

}  // namespace zrt::quads
