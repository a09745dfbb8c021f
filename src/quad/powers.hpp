#pragma once

// REAL*16 powers as kernels; each gives its result's address.

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::quads {
ZRT_IN_EACH_MODEL(quad* integer_power(quad* result, const quad& x, std::int32_t n);
                  quad * integer_power(quad * result, const quad& x, std::int64_t n);
                  quad * power(quad * result, const quad& x, const quad& y);)
}
