// The REAL*16 remainder.

#include "quad/rounding.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

// a - trunc(a / b) b. The quotient has some 106 bits; beyond, the result is what these steps
// leave. A zero or NaN divisor gives the library's NaN.
quad remainder(const quad& a, const quad& b) {
  using A = general;
  if (on_doubles && !is_ordinary<-100, 100>(b)) return x87::remainder(a, b);
  if (is_zero_or_nan(b)) return invalid;
  const quad q = A::div(a, b);
  return A::sub(a, A::mul(on_doubles ? truncation(q) : truncation_by<reg>(q), b));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
