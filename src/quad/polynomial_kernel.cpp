// Polynomials of any degree in each model.

#include "quad/polynomial_kernel.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

quad evaluated(const quad& x, const quad* c, std::int32_t n) { return polynomial(x, c, n); }
quad evaluated_monic(const quad& x, const quad* c, std::int32_t n) {
  return monic_polynomial(x, c, n);
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
