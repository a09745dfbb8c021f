#pragma once

// The REAL*16 logarithm as a kernel, for the rooms above.

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::quads {
ZRT_IN_EACH_MODEL(quad logarithm(const quad& x);)
}
