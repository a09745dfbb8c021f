#pragma once

// The REAL*16 logarithm as a kernel, for the rooms above.

#include "frame/entry.hpp"

namespace zrt::quads {

quad logarithm(const quad& x);

}  // namespace zrt::quads
