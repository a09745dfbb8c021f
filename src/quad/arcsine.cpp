// REAL*16 arcsine and arccosine.

#include "entries.hpp"
#include "quad/circular.hpp"
#include "quad/root.hpp"
#include "real/inverse_circular.hpp"

namespace zrt::quads {
namespace {

constexpr reg branch_point = 0x1.bb645a1cac083p-1L;  // 0.866, just under sin(pi/3)
constexpr quad degrees = constant(0x404CA5DC1A63C1F8, 0xBCE1E7AB456405FA);  // 180/pi

/// The REAL*8 kernel as a starting value.
quad start(const double& x, int flag) { return widened(real::arcsine_or_arccosine(x, flag)); }
/// The Newton divisors, doubles of the starting value.
reg sine_divisor(const quad& y0) { return stored<double>(fsin(load(y0.hi))); }
reg cosine_divisor(const quad& y0) { return stored<double>(fcos(load(y0.hi))); }

bool out_of_domain(const quad& x) { return less(load(x.hi), -1.0L) || greater(load(x.hi), 1.0L); }
bool beyond_branch_point(const quad& x) { return greater_equal(fabs(load(x.hi)), branch_point); }

/// The Newton steps y0 +- difference / divisor.
quad plus_error(const quad& y0, const quad& difference, reg divisor) {
  return add(y0, div(difference, divisor));
}
quad minus_error(const quad& y0, const quad& difference, reg divisor) {
  return sub(y0, div(difference, divisor));
}

// One Newton step from a REAL*8 value on the sine or cosine, whichever keeps the divisor away from
// zero; the sine of the result comes back to x within 1.3e-31. A leading part outside [-1, 1] gives
// the library's NaN, NaNs give NaNs, and so does a tail that takes |x| above 1.

quad arcsine(const quad& x) {
  if (out_of_domain(x)) return invalid;
  if (!beyond_branch_point(x)) {
    const quad y0 = start(x.hi, 0);
    return plus_error(y0, sub(x, sine(y0)), cosine_divisor(y0));
  }
  const quad c = square_root(sub(one, mul(x, x)));
  const quad y0 = start(c.hi, 1);
  const quad r = plus_error(y0, sub(cosine(y0), c), sine_divisor(y0));
  return greater_equal(load(x.hi), 0.0L) ? r : neg(r);
}

/// Beyond the branch point by the sine of half the angle.
quad arccosine(const quad& x) {
  if (out_of_domain(x)) return invalid;
  if (!beyond_branch_point(x)) {
    const quad y0 = start(x.hi, 1);
    return plus_error(y0, sub(cosine(y0), x), sine_divisor(y0));
  }
  const quad s = square_root(div(sub(one, magnitude(x)), 2.0L));
  const quad y0 = start(s.hi, 0);
  const quad r = mul(minus_error(y0, sub(sine(y0), s), cosine_divisor(y0)), 2.0L);
  return greater_equal(load(x.hi), 0.0L) ? r : sub(pi, r);
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, asinl)(quad* result, quad x) {
  *result = arcsine(x);
  return result;
}
ZRT_VALUE(quad*, acosl)(quad* result, quad x) {
  *result = arccosine(x);
  return result;
}
ZRT_VALUE(quad*, asindl)(quad* result, quad x) {
  *result = mul(arcsine(x), degrees);
  return result;
}
ZRT_VALUE(quad*, acosdl)(quad* result, quad x) {
  *result = mul(arccosine(x), degrees);
  return result;
}
