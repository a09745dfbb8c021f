#pragma once

// Hyperbolic sine and cosine as kernels, for the complex functions. Results are as the register
// holds them, with its range.

#include "frame/x87.hpp"

namespace zrt::real {

template <format F>
reg hyperbolic_sine(const F& x);
extern template reg hyperbolic_sine(const double& x);
extern template reg hyperbolic_sine(const float& x);

template <format F>
reg hyperbolic_cosine(const F& x);
extern template reg hyperbolic_cosine(const double& x);
extern template reg hyperbolic_cosine(const float& x);

}  // namespace zrt::real
