#pragma once

// Kernels of the inverse circular functions for the rooms above.

#include "frame/x87.hpp"

namespace zrt::real {

/// asin x (flag 0) and acos x (flag 1), as the register holds it.
template <format F>
reg arcsine_or_arccosine(const F& x, int flag);
extern template reg arcsine_or_arccosine(const double& x, int flag);
extern template reg arcsine_or_arccosine(const float& x, int flag);

/// The angle of the point (x, y), stored to the format.
template <format F>
reg angle(const F& y, const F& x);
extern template reg angle(const double& y, const double& x);
extern template reg angle(const float& y, const float& x);

}  // namespace zrt::real
