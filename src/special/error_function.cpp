// The error function, its complement, and the complement scaled.

#include "special/boost.hpp"

namespace zrt::special {
namespace {

/// erfc(x) of finite x is zero from here on: below 2**-1075.
constexpr double underflow_of_erfc = 27.3;

real16 error_function(const real16& x) {
  if (isnan(x)) return invalid;
  if (is_zero(x)) return x;
  if (!(std::abs(x.hi) < 9)) return copysign(real16(1.0), x);  // erfc(9) < 2**-121
  return boost::math::erf(x + 0.0, errors_as_values());
}

real16 complement(const real16& x) {
  if (isnan(x)) return invalid;
  if (x.hi <= -9) return 2.0;
  if (x.hi >= underflow_of_erfc) return 0.0;
  return boost::math::erfc(x + 0.0, errors_as_values());
}

/// e**(x*x) * erfc(x) from 1 on: the continued fraction
///     1/sqrt(pi) / (x + (1/2)/(x + (2/2)/(x + (3/2)/(x + ...)))),
/// from the n-th numerator up. It converges as exp(-2 x sqrt(2 n)): 2**-110 takes n = 730/x**2, and
/// twenty where that is less.
real16 scaled_by_fraction(const real16& x) {
  const double size = x.hi;
  const int terms = 20 + static_cast<int>(730 / (size * size));
  real16 tail = x;
  for (int n = terms; n > 0; --n) tail = x + (n * 0.5) / tail;
  constexpr real16 one_over_root_pi(0x1.20dd750429b6dp-1, 0x1.1ae3a914fed80p-57);
  return one_over_root_pi / tail;
}

real16 scaled_complement(const real16& x) {
  if (isnan(x)) return invalid;
  if (x.hi >= 1) return isinf(x) ? real16(0.0) : scaled_by_fraction(x + 0.0);
  if (x.hi < -26.7) return infinity;  // 2 e**(x*x) beyond 2**1024
  const real16 y = x + 0.0;
  const real16 result = exp(y * y) * boost::math::erfc(y, errors_as_values());
  return isfinite(result) ? result : infinity;
}

}  // namespace
}  // namespace zrt::special

using namespace zrt::special;

zorvikrt_quad* zorvikrt_special_erf(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, error_function(x));
}
zorvikrt_quad* zorvikrt_special_erfc(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, complement(x));
}
zorvikrt_quad* zorvikrt_special_erfc_scaled(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, scaled_complement(x));
}
