// REAL*16 arcsine and arccosine.

#include "quad/arcsine.hpp"
#include "quad/circular.hpp"
#include "quad/guards.hpp"
#include "real/inverse_circular.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

using A = general;

constexpr double branch_point = 0x1.bb645a1cac083p-1;  // 0.866, just under sin(pi/3)

/// The REAL*8 kernel as a starting value.
quad start(const double& x, int flag) { return widened(real::arcsine_or_arccosine(x, flag)); }
/// The Newton divisors, doubles of the starting value.
ordinary sine_divisor(const quad& y0) {
  return static_cast<ordinary>(stored<double>(fsin(load(y0.hi))));
}
ordinary cosine_divisor(const quad& y0) {
  return static_cast<ordinary>(stored<double>(fcos(load(y0.hi))));
}

bool out_of_domain(const quad& x) {
  return less(load<ordinary>(x.hi), -1.0) || greater(load<ordinary>(x.hi), 1.0);
}
bool beyond_branch_point(const quad& x) {
  return greater_equal(fabs(load<ordinary>(x.hi)), branch_point);
}

/// The Newton steps y0 +- difference / divisor.
quad plus_error(const quad& y0, const quad& difference, ordinary divisor) {
  return A::add(y0, A::div(difference, divisor));
}
quad minus_error(const quad& y0, const quad& difference, ordinary divisor) {
  return A::sub(y0, A::div(difference, divisor));
}

}  // namespace

// One Newton step from a REAL*8 value on the sine or cosine, whichever keeps the divisor away from
// zero; the sine of the result comes back to x within 1.3e-31. A leading part outside [-1, 1] gives
// the library's NaN, NaNs give NaNs, and so does a tail that takes |x| above 1.

quad arcsine(const quad& x) {
  if (on_doubles && !is_ordinary<-100, 100>(x)) return x87::arcsine(x);
  if (out_of_domain(x)) return invalid;
  if (!beyond_branch_point(x)) {
    const quad y0 = start(x.hi, 0);
    return plus_error(y0, A::sub(x, sine(y0)), cosine_divisor(y0));
  }
  const quad c = A::square_root(A::sub(one, A::mul(x, x)));
  const quad y0 = start(c.hi, 1);
  const quad r = plus_error(y0, A::sub(cosine(y0), c), sine_divisor(y0));
  return greater_equal(load<ordinary>(x.hi), 0.0) ? r : A::neg(r);
}

// Beyond the branch point by the sine of half the angle.
quad arccosine(const quad& x) {
  if (on_doubles && !is_ordinary<-100, 100>(x)) return x87::arccosine(x);
  if (out_of_domain(x)) return invalid;
  if (!beyond_branch_point(x)) {
    const quad y0 = start(x.hi, 1);
    return plus_error(y0, A::sub(cosine(y0), x), sine_divisor(y0));
  }
  const quad s = A::square_root(A::div(A::sub(one, A::magnitude(x)), 2.0));
  const quad y0 = start(s.hi, 0);
  const quad r = A::mul(minus_error(y0, A::sub(sine(y0), s), cosine_divisor(y0)), 2.0);
  return greater_equal(load<ordinary>(x.hi), 0.0) ? r : A::sub(pi, r);
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
