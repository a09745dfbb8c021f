#pragma once

// The REAL*16 arcsine and arccosine as kernels.

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::quads {
ZRT_IN_EACH_MODEL(quad arcsine(const quad& x); quad arccosine(const quad& x);)
}
