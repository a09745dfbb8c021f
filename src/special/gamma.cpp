// The gamma function and the logarithm of its magnitude.

#include "special/boost.hpp"

namespace zrt::special {
namespace {

constexpr real16 pi(0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53);

/// sin(pi x) by the distance to the nearest whole number.
real16 sine_of_half_turns(const real16& x) {
  const real16 whole = round(x);
  const real16 sine = sin(pi * (x - whole));
  return fmod(whole, real16(2.0)) == 0 ? sine : -sine;
}

/// The reflection pi / (sin(pi x) gamma(y)), y = 1 - x, where gamma(y) may be beyond the range: its
/// last factors y - 1, y - 2, ... divide one by one.
real16 far_below_zero(const real16& x) {
  const real16 y = 1.0 - x;
  const real16 steps = ceil(y - 150.0);
  real16 factor = y - steps;
  real16 quotient = pi / boost::math::tgamma(factor, errors_as_values()) / sine_of_half_turns(x);
  for (; factor < y && !is_zero(quotient); factor += 1.0) quotient /= factor;
  return quotient;
}

real16 gamma(const real16& x) {
  if (isnan(x)) return invalid;
  if (is_zero(x)) return copysign(infinity, signbit(x) ? -1.0 : 1.0);
  if (x.hi < 0 && (isinf(x) || is_whole(x))) return invalid;
  if (x.hi > 172) return infinity;
  const real16 y = x + 0.0;
  if (x.hi < -150) return far_below_zero(y);
  const real16 result = boost::math::tgamma(y, errors_as_values());
  return isfinite(result) ? result : copysign(infinity, x);
}

real16 logarithm_of_gamma(const real16& x) {
  if (isnan(x)) return invalid;
  if (isinf(x) || (x.hi <= 0 && is_whole(x))) return infinity;
  const real16 result = boost::math::lgamma(x + 0.0, errors_as_values());
  return isfinite(result) ? result : infinity;
}

}  // namespace
}  // namespace zrt::special

using namespace zrt::special;

zorvikrt_quad* zorvikrt_special_gamma(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, gamma(x));
}
zorvikrt_quad* zorvikrt_special_log_gamma(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, logarithm_of_gamma(x));
}
