// REAL*16 arctangent.

#include "quad/arctangent.hpp"
#include "quad/circular.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

constexpr quad tan_3pi_8 = constant(0x4003504F333F9DE6, 0x3CA21165F626CDD4);  // 1 + sqrt(2)
constexpr quad tan_pi_8 = constant(0x3FDA827999FCEF32, 0x3C708B2FB1366EA5);   // sqrt(2) - 1
constexpr quad half_pi = constant(0x3FF921FB54442D18, 0x3C91A62633145C02);
constexpr quad quarter_pi = constant(0x3FE921FB54442D18, 0x3C81A62633145C04);

#include "quad/arctangent_tables.inc"

constexpr double bound = 0x1.5f7p-3;  // tan(pi/8)**2 = 0.17157
static_assert(exceeds_sums(numerator, 0, bound, false) &&
              exceeds_sums(denominator, 0, bound, true));

/// y + y z P(z)/Q(z), z = y**2.
template <class A>
auto near_zero(const auto& y, const auto& z) {
  const auto r = rational<A>(z, numerator, denominator);
  return A::add(A::mul(A::mul(r, z), y), y);
}

/// cos(theta)**2 as the instruction gives it.
ordinary square_by_instruction(const quad& theta) {
  const reg cosine = fcos(load(theta.hi));
  return static_cast<ordinary>(stored<double>(cosine * cosine));
}

/// The same from the cosine in REAL*16, where 2**-61 of it, four units of the instruction's last
/// place, makes no difference: in 95 % of cases. The angle's distance from pi/2 is then so large
/// that the 66 bits of pi in the instruction do not show.
[[gnu::always_inline]] inline ordinary square_of([[maybe_unused]] const quad& cosine,
                                                 const quad& theta) {
  if constexpr (on_doubles)
    if (within<-4, 1>(cosine.hi)) {
      const quad s = direct::mul(cosine, cosine);
      const ordinary margin = s.hi * 0x1p-60;
      const ordinary square = s.hi + (s.lo + margin);
      if (square == s.hi + (s.lo - margin)) return square;
    }
  return square_by_instruction(theta);
}

}  // namespace

// Reduction to |y| <= tan(pi/8) by the addition formula at pi/2 and pi/4, then a rational form;
// 7.4e-32 in absolute terms. NaNs and infinities give NaNs.
quad arctangent(const quad& x) {
  using A = general;
  if (on_doubles && !is_ordinary<-100, 100>(x)) return x87::arctangent(x);
  const bool below_zero = negative(x);
  const quad a = below_zero ? A::neg(x) : x;
  quad y = a, base = zero;
  if (greater(A::leading(A::sub(a, tan_3pi_8)), 0.0)) {
    y = A::div(-1.0, a);
    base = half_pi;
  } else if (greater(A::leading(A::sub(a, tan_pi_8)), 0.0)) {
    y = A::div(A::sub(a, 1.0), A::add(a, 1.0));
    base = quarter_pi;
  }
  const quad z = A::mul(y, y);
  const bool is_small = greater(load<ordinary>(z.hi), 0x1p-200) &&
                        less(load<ordinary>(z.hi), ordinary{bound}) && has_ordinary_low(z) &&
                        has_ordinary_low(y);
  const quad w = by_magnitude(is_small, [&](auto way) {
    return near_zero<decltype(way)>(way.is_direct ? loaded(y) : y, z);
  });
  const quad value = A::add(base, w);
  return below_zero ? A::neg(value) : value;
}

// One Newton step on the tangent, theta - (tan theta - y/x) cos(theta)**2, from the double theta of
// `fpatan`. From |y/x| = 2**53 on the tangent of a double no longer follows the quotient: there the
// angle is +-pi/2 less x/y. On the axis and for NaNs in x the angle is +-pi/2, at the origin 0;
// other NaNs, infinities and overflowing quotients give NaNs.
quad angle(const quad& y, const quad& x) {
  using A = general;
  const bool are_ordinary = is_ordinary<-100, 100>(y) && is_ordinary<-100, 100>(x) &&
                            less(fabs(load<ordinary>(y.lo)), 0x1p100) &&
                            less(fabs(load<ordinary>(x.lo)), 0x1p100);
  if (on_doubles && !are_ordinary) return x87::angle(y, x);
  const ordinary opposite = load<ordinary>(y.hi), adjacent = load<ordinary>(x.hi);
  const auto quarter_turn = [&] {
    return greater_equal(opposite, 0.0) ? half_pi : A::neg(half_pi);
  };
  if (compares_equal(adjacent, 0.0)) return compares_equal(opposite, 0.0) ? zero : quarter_turn();
  const quad theta = widened(fpatan(load(y.hi), load(x.hi)));
  const quad t = are_ordinary ? direct::div(loaded(y), loaded(x)) : A::div(y, x);
  const ordinary size = fabs(ordinary{t.hi});
  if (greater_equal(size, 0x1p53) && less(size, plus_infinity.hi))
    return A::sub(quarter_turn(), A::div(x, y));
  ordinary c;
  quad u;
  if constexpr (on_doubles) {
    const tangent_and_cosine both = tangent_with_cosine(theta);
    u = both.tangent;
    c = square_of(both.cosine, theta);
  } else {
    c = square_by_instruction(theta);  // ahead of the tangent, whose steps run beside it
    u = tangent(theta);
  }
  const quad difference = are_ordinary ? direct::sub(u, t) : A::sub(u, t);
  return A::sub(theta, A::mul(difference, c));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
