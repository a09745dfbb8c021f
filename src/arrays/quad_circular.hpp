#pragma once

// REAL*16 sine and cosine on lanes: the reduction, series and addition formulas of
// src/quad/circular_kernel.cpp. Lanes of a series that has ended keep their sums.

#include "arrays/quad_functions.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

#include "quad/circular_tables.inc"

constexpr double series_end = 0x1.4484bfeebc2ap-100;  // 1e-30
constexpr double quad_limit = 0x1.203af9ee75616p-50;  // 1e-15: smaller terms need no low part
constexpr double clear_of_half = 0x1.fef9db22d0e56p-2;

/// A modulus of the reduction.
struct modulus {
  quad value;
  double reciprocal;
};
constexpr modulus half_turn = {constant(0x400921FB54442D18, 0x3CA1A62633145C02),
                               0x1.45f306dc9c883p-2};
constexpr modulus step = {constant(0x3FB41B2F769CF0E0, 0x3C4C3D09EB53C670),  // pi/40
                          0x1.976fc893c3aa4p+3};

struct reduced {
  lanes quotient;
  pairs remainder;
};

/// x - n y for quotients that lie clear of a half.
ZRT_INLINE reduced reduce(const pairs& x, const modulus& y, doubt& check) {
  const lanes q = x.hi * y.reciprocal;
  check.below(q, 0x1p20);
  check.at_least(q, 0x1.0000000000001p-100);
  check.below(x.lo, 0x1p-20);
  const lanes n = truncated(q + with_sign_of(all(0.5), q)).value;
  check.below(q - n, clear_of_half);
  const lanes p1 = n * y.value.hi, p2 = n * y.value.lo;
  const cut halves = cut_of(n);
  const lanes e1 = product_error(halves, cut_of(all(y.value.hi)), p1);
  const lanes e2 = product_error(halves, cut_of(all(y.value.lo)), p2);
  const pairs above = closing_sum(x.hi - p1, 0.0 - e1);
  const pairs below = add({x.lo, lanes{}}, above);
  return {n, sub(below, {p2, e2})};
}

/// a / d for an a.hi of 2**-900 or more.
ZRT_INLINE pairs div_by_short(const pairs& a, int d) {
  const lanes q = rounded_quotient(a.hi, d);
  return closing_sum(q, (remainder_of(a.hi, cut_of(q), cut_of(all(d))) + a.lo) / all(d));
}

/// The running term t of the two series joins a sum as t r / i, with its low part or without.
ZRT_INLINE void join(several& t, several& sum, const several& r, const grouped<words>& running,
                     int i, bool power, bool plus) {
  const grouped<words> is_long =
      ZRT_EACH((words)(magnitude(t.v[g].hi) > quad_limit) & running.v[g]);
  const several before = t;
  if (any_of(is_long)) {
    several term = arithmetic::mul(t, r);
    term = power ? arithmetic::scaled_by(term, 1.0 / i) : ZRT_EACH(div_by_short(term.v[g], i));
    const several joined = plus ? arithmetic::add(sum, term) : arithmetic::sub(sum, term);
    if (!any_of(ZRT_EACH(~is_long.v[g]))) {
      t = term;
      sum = joined;
      return;
    }
    t = ZRT_EACH(select(is_long.v[g], term.v[g], t.v[g]));
    sum = ZRT_EACH(select(is_long.v[g], joined.v[g], sum.v[g]));
  }
  const grouped<words> is_short = ZRT_EACH(running.v[g] & ~is_long.v[g]);
  if (any_of(is_short)) {
    const grouped<lanes> term = ZRT_EACH(rounded_quotient(before.v[g].hi * r.v[g].hi, i));
    t = ZRT_EACH((pairs{select(is_short.v[g], term.v[g], t.v[g].hi), t.v[g].lo}));
    const grouped<lanes> lo = ZRT_EACH(plus ? sum.v[g].lo + term.v[g] : sum.v[g].lo - term.v[g]);
    sum = ZRT_EACH((pairs{sum.v[g].hi, select(is_short.v[g], lo.v[g], sum.v[g].lo)}));
  }
}

/// sin r and cos r for |r| <= pi/80, whose series end before the term of 18.
ZRT_INLINE void series(const several& r, several& cosine, several& sine) {
  several c = {}, s = {}, t = r;
#pragma GCC unroll 16
  for (int i = 2; i < 20; i += 2) {
    const bool plus = i % 4 == 0;
    const grouped<words> running = ZRT_EACH((words)(magnitude(t.v[g].hi) > series_end));
    if (!any_of(running)) break;
    join(t, c, r, running, i, i == 2 || i == 4 || i == 8, plus);
    join(t, s, r, running, i + 1, false, plus);
  }
  cosine = arithmetic::add(c, 1.0);
  sine = arithmetic::add(s, r);
}

/// What of an angle the functions take.
struct angle {
  several cos_r{}, sin_r{}, cos_k{}, sin_k{};
  grouped<lanes> sign{};  // of cos n pi

  ZRT_INLINE angle(const several& x, grouped<doubt>& check) {
    grouped<lanes> turns, steps;
    const several r = in_group([&](index g) ZRT_ALWAYS {
      check.v[g].at_least(x.v[g].hi, 0x1p-90);
      check.v[g].zero_or_at_least(x.v[g].lo, 0x1p-300);
      const reduced first = reduce(x.v[g], half_turn, check.v[g]);
      const reduced second = reduce(first.remainder, step, check.v[g]);
      check.v[g].below(second.quotient, 20.5);
      check.v[g].at_least(second.remainder.hi, 0x1.0000000000001p-100);
      check.v[g].zero_or_at_least(second.remainder.lo, 0x1p-300);
      const words known = check.v[g].known();  // rows of the tables
      turns.v[g] = (lanes)((words)first.quotient & known);
      steps.v[g] = (lanes)((words)second.quotient & known);
      return second.remainder;
    });
    for_group([&](index g) ZRT_ALWAYS {
      double k[width], n[width], sine[2][width], cosine[2][width], turn[width];
      write(n, turns.v[g]);
      write(k, steps.v[g]);
      for (index j = 0; j < width; ++j) {
        const int number = static_cast<int>(k[j]), size = number < 0 ? -number : number;
        sine[0][j] = number < 0 ? -sines[size].hi : sines[size].hi;
        sine[1][j] = number < 0 ? -sines[size].lo : sines[size].lo;
        cosine[0][j] = sines[20 - size].hi;
        cosine[1][j] = sines[20 - size].lo;
        turn[j] = (static_cast<int>(n[j]) & 1) != 0 ? -1.0 : 1.0;
      }
      sin_k.v[g] = {read(sine[0]), read(sine[1])};
      cos_k.v[g] = {read(cosine[0]), read(cosine[1])};
      sign.v[g] = read(turn);
    });
    series(r, cos_r, sin_r);
  }
  ZRT_INLINE several with_turns(const several& a) const {
    return ZRT_EACH((pairs{a.v[g].hi * sign.v[g], a.v[g].lo * sign.v[g]}));
  }
  ZRT_INLINE several sine() const {
    return with_turns(
        arithmetic::add(arithmetic::mul(cos_r, sin_k), arithmetic::mul(sin_r, cos_k)));
  }
  ZRT_INLINE several cosine() const {
    return with_turns(
        arithmetic::sub(arithmetic::mul(cos_r, cos_k), arithmetic::mul(sin_r, sin_k)));
  }
};

ZRT_INLINE several sine(const several& x, grouped<doubt>& check) { return angle(x, check).sine(); }
ZRT_INLINE several cosine(const several& x, grouped<doubt>& check) {
  return angle(x, check).cosine();
}
ZRT_INLINE several tangent(const several& x, grouped<doubt>& check) {
  const angle of(x, check);
  const several numerator = of.sine(), denominator = of.cosine();
  return ZRT_EACH(div(numerator.v[g], denominator.v[g], check.v[g]));
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
