#pragma once

// The REAL*16 circular functions as kernels, for the rooms above.

#include "quad/values.hpp"

namespace zrt::quads {

/// Its lo is not the rounded tail of pi.
inline constexpr quad pi = constant(0x400921FB54442D18, 0x3CA1A62633145C02);
inline constexpr quad radians_per_degree = constant(0x3F91DF46A2529D39, 0x3C15C1D8BECDD28C);

struct sine_and_cosine {
  quad sine, cosine;
};

struct tangent_and_cosine {
  quad tangent, cosine;
};

ZRT_IN_EACH_MODEL(quad sine(const quad& x); quad cosine(const quad& x); quad tangent(const quad& x);
                  /// Both by one reduction.
                  sine_and_cosine both_of_angle(const quad& x);
                  tangent_and_cosine tangent_with_cosine(const quad& x);)

}  // namespace zrt::quads
