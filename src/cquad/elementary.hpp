#pragma once

// What the COMPLEX*32 logarithm and powers share.

#include "cquad/cquad.hpp"
#include "quad/circular.hpp"
#include "quad/exponential.hpp"
#include "quad/logarithm.hpp"

namespace zrt::cquads {
inline namespace ZRT_MODEL {

/// log |z|, by the squares of the parts: -infinity where they vanish, overflow or are NaNs.
[[gnu::always_inline]] inline quad log_modulus(const cquad& z) {
  return logarithm(general::square_root(square_of_modulus(z)));
}

/// e**x (cos y + i sin y).
[[gnu::always_inline]] inline cquad exponential_of(const quad& x, const quad& y) {
  const quad e = quads::exponential(x);
  const sine_and_cosine of_y = both_of_angle(y);
  return {general::mul(e, of_y.cosine), general::mul(e, of_y.sine)};
}

}  // namespace ZRT_MODEL
}  // namespace zrt::cquads
