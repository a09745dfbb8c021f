#pragma once

// What the COMPLEX*32 logarithm and powers share.

#include "cquad/cquad.hpp"
#include "quad/circular.hpp"
#include "quad/exponential.hpp"
#include "quad/logarithm.hpp"
#include "quad/root.hpp"

namespace zrt::cquads {

/// log |z|, by the squares of the parts: -infinity where they vanish, overflow or are NaNs.
inline quad log_modulus(const cquad& z) { return logarithm(square_root(square_of_modulus(z))); }

/// e**x (cos y + i sin y).
inline cquad exponential(const quad& x, const quad& y) {
  const quad e = quads::exponential(x);
  const sine_and_cosine of_y(y);
  return {mul(e, of_y.cosine), mul(e, of_y.sine)};
}

}  // namespace zrt::cquads
