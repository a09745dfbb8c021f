// REAL*16 arctangent.

#include "quad/arctangent.hpp"

#include "entries.hpp"
#include "quad/circular.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
namespace {

constexpr quad tan_3pi_8 = constant(0x4003504F333F9DE6, 0x3CA21165F626CDD4);  // 1 + sqrt(2)
constexpr quad tan_pi_8 = constant(0x3FDA827999FCEF32, 0x3C708B2FB1366EA5);   // sqrt(2) - 1
constexpr quad half_pi = constant(0x3FF921FB54442D18, 0x3C91A62633145C02);
constexpr quad quarter_pi = constant(0x3FE921FB54442D18, 0x3C81A62633145C04);
constexpr quad degrees = constant(0x404CA5DC1A63C1F8, 0xBCE1E7AB456405FA);  // 180/pi

#include "quad/arctangent_tables.inc"

constexpr double bound = 0x1.5f7p-3;  // tan(pi/8)**2 = 0.17157
static_assert(exceeds_sums(numerator, 0, bound, false) &&
              exceeds_sums(denominator, 0, bound, true));

/// y + y z P(z)/Q(z), z = y**2.
template <class Result>
quad near_zero(const quad& y, const quad& z) {
  const quad r = rational<Result>(z, numerator, denominator);
  return add<Result>(mul<Result>(mul<Result>(r, z), y), y);
}

/// Reduction to |y| <= tan(pi/8) by the addition formula at pi/2 and pi/4, then a rational form;
/// 7.4e-32 in absolute terms. NaNs and infinities give NaNs.
quad arctangent(const quad& x) {
  const bool below_zero = negative(x);
  const quad a = below_zero ? neg(x) : x;
  quad y = a, base = zero;
  if (greater(leading(sub(a, tan_3pi_8)), 0.0L)) {
    y = div(-1.0L, a);
    base = half_pi;
  } else if (greater(leading(sub(a, tan_pi_8)), 0.0L)) {
    y = div(sub(a, 1.0L), add(a, 1.0L));
    base = quarter_pi;
  }
  const quad z = mul(y, y);
  const bool ordinary = greater(load(z.hi), 0x1p-200L) && less(load(z.hi), reg{bound});
  const quad w = ordinary ? near_zero<in_register>(loaded(y), z) : near_zero<by_store>(y, z);
  const quad value = add(base, w);
  return below_zero ? neg(value) : value;
}

/// Whether a value lies well within the range of in_register, with no low part beyond it.
bool is_ordinary(const quad& a) {
  const reg size = fabs(load(a.hi));
  return greater(size, 0x1p-100L) && less(size, 0x1p100L) && less(fabs(load(a.lo)), 0x1p100L);
}

}  // namespace

// One Newton step on the tangent, theta - (tan theta - y/x) cos(theta)**2, from the double theta of
// `fpatan`. From |y/x| = 2**53 on the tangent of a double no longer follows the quotient: there the
// angle is +-pi/2 less x/y. On the axis and for NaNs in x the angle is +-pi/2, at the origin 0;
// other NaNs, infinities and overflowing quotients give NaNs.
quad angle(const quad& y, const quad& x) {
  const reg opposite = load(y.hi), adjacent = load(x.hi);
  if (compares_equal(adjacent, 0.0L)) {
    if (compares_equal(opposite, 0.0L)) return zero;
    return greater_equal(opposite, 0.0L) ? half_pi : neg(half_pi);
  }
  const quad theta = widened(fpatan(opposite, adjacent));
  const bool ordinary = is_ordinary(y) && is_ordinary(x);
  const quad t = ordinary ? div<in_register>(loaded(y), loaded(x)) : div(y, x);
  const reg size = fabs(reg{t.hi});
  if (greater_equal(size, 0x1p53L) && less(size, infinity))
    return sub(greater_equal(opposite, 0.0L) ? half_pi : neg(half_pi), div(x, y));
  const quad u = tangent(theta);
  const reg cosine = fcos(load(theta.hi));
  const reg c = stored<double>(cosine * cosine);
  return sub(theta, mul(ordinary ? sub<in_register>(u, t) : sub(u, t), c));
}

}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, atanl)(quad* result, quad x) {
  *result = arctangent(x);
  return result;
}
ZRT_VALUE(quad*, atan2l)(quad* result, quad y, quad x) {
  *result = angle(y, x);
  return result;
}
ZRT_VALUE(quad*, atandl)(quad* result, quad x) {
  *result = mul(arctangent(x), degrees);
  return result;
}
ZRT_VALUE(quad*, atan2dl)(quad* result, quad y, quad x) {
  *result = mul(angle(y, x), degrees);
  return result;
}
