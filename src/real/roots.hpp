#pragma once

// Powers with an INTEGER*4 exponent as kernels, for the general powers.

#include "frame/x87.hpp"

namespace zrt::real {

/// x**n, the product left in the register.
reg integer_power(const double& x, std::int32_t n);
/// x**n, every product stored.
reg integer_power(const float& x, std::int32_t n);

}  // namespace zrt::real
