#pragma once

// COMPLEX*32 values, and what their kernels share: compositions of the REAL*16 arithmetic, part by
// part, with no scaling and no special case.

#include "quad/guards.hpp"

namespace zrt::cquads {

using namespace quads;

inline constexpr cquad zero = {{0.0, 0.0}, {0.0, 0.0}};
inline constexpr cquad one = {{1.0, 0.0}, {0.0, 0.0}};
inline constexpr cquad invalid = {quads::invalid, quads::invalid};

inline namespace ZRT_MODEL {

/// Both leading parts are zeros or NaNs.
[[gnu::always_inline]] inline bool is_zero_or_nan(const cquad& z) {
  return quads::is_zero_or_nan(z.re) && quads::is_zero_or_nan(z.im);
}

/// Whether a model on doubles takes the operand; the register takes all.
[[gnu::always_inline]] inline bool is_taken(const cquad& z) {
  return !on_doubles || are_plain<-300, 300>(z.re.hi, z.re.lo, z.im.hi, z.im.lo);
}

/// re**2 + im**2.
[[gnu::always_inline]] inline quad square_of_modulus(const cquad& z) {
  return general::add(general::mul(z.re, z.re), general::mul(z.im, z.im));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::cquads
