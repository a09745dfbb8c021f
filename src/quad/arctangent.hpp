#pragma once

// The angle of a point in REAL*16 as a kernel, for the rooms above.

#include "frame/entry.hpp"

namespace zrt::quads {

/// The angle of the point (x, y).
quad angle(const quad& y, const quad& x);

}  // namespace zrt::quads
