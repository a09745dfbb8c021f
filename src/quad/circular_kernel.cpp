// REAL*16 circular functions.

#include "quad/circular.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

using factor = direct::factor;

/// What the tangent gives where the cosine is zero.
constexpr quad pole = constant(0x7FEFFFFFFFFFFFFB, 0);

constexpr double series_end = 0x1.4484bfeebc2ap-100;  // 1e-30
constexpr double clear_of_half = 0x1.fef9db22d0e56p-2;
constexpr double quad_limit = 0x1.203af9ee75616p-50;  // 1e-15: smaller terms need no low part

#include "quad/circular_tables.inc"
constexpr std::int32_t last_row = 20;

/// The sines of negative k, too, at k + 20, as factors.
constexpr auto sine_factors = [] {
  std::array<factor, 2 * last_row + 1> table{};
  for (std::size_t k = 0; k <= last_row; ++k) {
    table[last_row - k] = direct::constant_factor({-sines[k].hi, -sines[k].lo});
    table[last_row + k] = direct::constant_factor(sines[k]);
  }
  return table;
}();

/// A modulus of the reduction, its parts as factors.
struct modulus {
  quad value;
  factor hi, lo;
  double reciprocal;
};
constexpr modulus modulus_of(const quad& y, double reciprocal) {
  return {y, direct::constant_factor({y.hi, 0.0}), direct::constant_factor({y.lo, 0.0}),
          reciprocal};
}
constexpr modulus half_turn = modulus_of(pi, 0x1.45f306dc9c883p-2);
constexpr modulus step = modulus_of(constant(0x3FB41B2F769CF0E0, 0x3C4C3D09EB53C670),  // pi/40
                                    0x1.976fc893c3aa4p+3);

/// What `reduce` gives, for quotients up to 2**20 that lie clear of a half: the product with the
/// reciprocal and the true quotient have the same nearest whole number, and x.hi - n y.hi has no
/// error. An x that is not so, or that is not normalised, gives false.
[[gnu::always_inline]] inline bool reduce_short(const quad& x, const modulus& y,
                                                reduction& result) {
  const ordinary q = ordinary{x.hi} * y.reciprocal;
  if (!less(fabs(q), 0x1p20) || !greater(fabs(q), 0x1p-100) || !less(fabs(ordinary{x.lo}), 0x1p-20))
    return false;
  const ordinary n = load_integer<ordinary>(fistp32(q));
  if (!less(fabs(q - n), clear_of_half)) return false;
  const quad p1 = direct::multiple(n, y.hi), p2 = direct::multiple(n, y.lo);
  const quad above = direct::closing_sum(ordinary{x.hi} - p1.hi, 0.0 - ordinary{p1.lo});
  const quad below = direct::add({x.lo, 0.0}, above);
  result = {n, direct::sub(below, p2)};
  return true;
}

/// The parity of a whole number of any size; beyond 2**63, and for infinities and NaNs, even. What
/// does not fit 32 bits raises invalid, as the store of such a quotient does.
bool is_odd(ordinary n) {
  const std::int32_t short_n = fistp32(n);
  if (on_doubles || short_n != INT32_MIN) return (short_n & 1) != 0;
  return less(fabs(n), 0x1p63) && (fistp64(n) & 1) != 0;
}

/// sin r and cos r for |r| <= pi/80: the two Taylor series in one loop, term by term, t the running
/// term. Terms up to quad_limit go in double precision into the low parts alone. The leading 1 and
/// r come last.
template <class A>
[[gnu::always_inline]] inline void series(const quad& r, quad& cosine, quad& sine) {
  quad c = zero, s = zero, t = r;
  bool plus = false;
  std::int32_t i = 2;
  const auto is_long = [&t] { return greater(fabs(A::operand(t.hi)), quad_limit); };
  // Both terms of a pass have the same sign.
  const auto join = [&plus, &t](quad& sum) { sum = plus ? A::add(sum, t) : A::sub(sum, t); };
  const auto short_term = [&plus, &t, &r, &i](quad& sum) {
    const typename A::value term =
        A::operand(t.hi) * A::operand(r.hi) / load_integer<typename A::value>(i);
    t.hi = A::part_of(term);
    const typename A::value lo = A::operand(sum.lo);
    sum.lo = A::part_of(plus ? lo + A::operand(t.hi) : lo - A::operand(t.hi));
  };
  while (greater(fabs(A::operand(t.hi)), series_end)) {
    if (is_long()) {
      t = A::mul(t, r);
      if (i == 2 || i == 4 || i == 8)
        t = A::scaled_by(t, i == 2 ? 0.5 : i == 4 ? 0.25 : 0.125);
      else
        t = A::div_by_short(t, load_integer<typename A::value>(i));
      join(c);
    } else {
      short_term(c);
    }
    ++i;
    if (is_long()) {
      t = A::div_by_short(A::mul(t, r), load_integer<typename A::value>(i));
      join(s);
    } else {
      short_term(s);
    }
    ++i;
    plus = !plus;
  }
  cosine = A::add(c, 1.0);
  sine = A::add(s, r);
}

/// Argument reduction in two stages, to n pi + k pi/40 + r, Taylor series of r, and the addition
/// formulas. A k outside the table means that the first remainder has lost its meaning: it counts
/// as zero. A NaN takes k = 0 and stays in r.
struct angle_parts {
  quad cos_r, sin_r;
  factor cos_k, sin_k;
  ordinary sign;    // of cos n pi
  bool ordinary_r;  // fit for direct steps

  [[gnu::always_inline]] explicit angle_parts(const quad& argument) {
    const quad x = loaded(argument);
    reduction first, second;
    if (!reduce_short(x, half_turn, first)) first = reduce(argument, half_turn.value);
    if (!reduce_short(first.remainder, step, second)) second = reduce(first.remainder, step.value);
    std::int32_t k = fistp32(second.quotient);
    if (k > last_row || k < -last_row) {
      if (!is_nan(second.quotient)) second.remainder = zero;
      k = 0;
    }
    const std::int32_t size = k < 0 ? -k : k;
    sin_k = sine_factors[static_cast<std::size_t>(last_row + k)];
    cos_k = sine_factors[static_cast<std::size_t>(2 * last_row - size)];
    static constexpr float signs[] = {1.0F, -1.0F};
    sign = load<ordinary>(signs[is_odd(first.quotient)]);
    const quad& r = second.remainder;
    ordinary_r = greater(fabs(ordinary{r.hi}), 0x1p-100) && has_ordinary_low(r);
    if (ordinary_r)
      series<direct>(r, cos_r, sin_r);
    else
      series<general>(r, cos_r, sin_r);
  }

  [[gnu::always_inline]] quad times(const quad& a, const factor& b) const {
    return ordinary_r ? direct::mul(a, b) : general::mul(a, b.value);
  }
  [[gnu::always_inline]] quad sine() const {
    return signed_by_turns(general::add(times(cos_r, sin_k), times(sin_r, cos_k)));
  }
  [[gnu::always_inline]] quad cosine() const {
    return signed_by_turns(general::sub(times(cos_r, cos_k), times(sin_r, sin_k)));
  }
  [[gnu::always_inline]] quad tangent() const {
    const quad numerator = sine(), denominator = cosine();
    if (is_zero_or_nan(denominator)) return pole;
    return ordinary_r && has_ordinary_low(numerator) && has_ordinary_low(denominator)
               ? direct::div(numerator, denominator)
               : general::div(numerator, denominator);
  }
  /// A product with 1 or -1 also flips the sign of a zero.
  [[gnu::always_inline]] quad signed_by_turns(const quad& a) const {
    return general::scaled_by(a, sign);
  }
};

/// Whether the angle is one that the steps on doubles take.
bool is_angle(const quad& x) {
  return !on_doubles || (within<-90, 20>(x.hi) && zero_or_within<-300, 20>(x.lo));
}

}  // namespace

// 4e-31 in absolute terms for moderate x. NaNs and infinities give NaNs, of the tangent its pole.
quad sine(const quad& x) { return is_angle(x) ? angle_parts(x).sine() : x87::sine(x); }
quad cosine(const quad& x) { return is_angle(x) ? angle_parts(x).cosine() : x87::cosine(x); }
sine_and_cosine both_of_angle(const quad& x) {
  if (!is_angle(x)) return x87::both_of_angle(x);
  const angle_parts parts(x);
  return {parts.sine(), parts.cosine()};
}
tangent_and_cosine tangent_with_cosine(const quad& x) {
  if (!is_angle(x)) return x87::tangent_with_cosine(x);
  const angle_parts parts(x);
  return {parts.tangent(), parts.cosine()};
}
quad tangent(const quad& x) { return is_angle(x) ? angle_parts(x).tangent() : x87::tangent(x); }

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
