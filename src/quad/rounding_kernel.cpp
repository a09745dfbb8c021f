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
  return A::sub(a, A::mul(truncation(A::div(a, b)), b));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
