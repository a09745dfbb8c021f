#pragma once

// Hyperbolic sine and cosine as kernels, for the complex functions. Results are as the register
// holds them, with its range.

#include "frame/x87.hpp"

namespace zrt::real {

/// Sine and cosine of one operand, which share their exponential.
struct hyperbolic_values {
  reg sine, cosine;
};
template <format F>
hyperbolic_values hyperbolic_pair(const F& x);
extern template hyperbolic_values hyperbolic_pair(const double& x);
extern template hyperbolic_values hyperbolic_pair(const float& x);

}  // namespace zrt::real
