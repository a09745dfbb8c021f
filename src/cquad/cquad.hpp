#pragma once

// Products of COMPLEX*32 values as kernels: compositions of the REAL*16 arithmetic, part by part,
// with no scaling and no special case.

#include "quad/quad.hpp"

namespace zrt::cquads {

using namespace quads;

inline constexpr cquad zero = {{0.0, 0.0}, {0.0, 0.0}};
inline constexpr cquad one = {{1.0, 0.0}, {0.0, 0.0}};
inline constexpr cquad invalid = {quads::invalid, quads::invalid};

/// Both leading parts are zeros or NaNs.
inline bool is_zero_or_nan(const cquad& z) {
  return quads::is_zero_or_nan(z.re) && quads::is_zero_or_nan(z.im);
}

/// re**2 + im**2.
inline quad square_of_modulus(const cquad& z) { return add(mul(z.re, z.re), mul(z.im, z.im)); }

}  // namespace zrt::cquads
