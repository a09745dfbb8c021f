#pragma once

// The REAL*16 arctangent and the angle of a point as kernels, for the rooms above.

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::quads {
ZRT_IN_EACH_MODEL(quad arctangent(const quad& x);
                  /// The angle of the point (x, y).
                  quad angle(const quad& y, const quad& x);)
}
