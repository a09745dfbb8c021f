#pragma once

// The REAL*16 exponential as a kernel, for the rooms above.

#include "frame/entry.hpp"

namespace zrt::quads {

quad exponential(const quad& x);

}  // namespace zrt::quads
