#pragma once

// Polynomials of any degree as kernels.

#include "quad/polynomial.hpp"

namespace zrt::quads {
ZRT_IN_EACH_MODEL(quad evaluated(const quad& x, const quad* c, std::int32_t n);
                  quad evaluated_monic(const quad& x, const quad* c, std::int32_t n);)
}
