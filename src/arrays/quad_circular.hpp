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

ZRT_INLINE pairs div_by_short(const pairs& a, double d) {
  const lanes q = a.hi / d;
  return closing_sum(q, (remainder_of(a.hi, cut_of(q), cut_of(all(d))) + a.lo) / d);
}

/// One step of a series: t becomes t r / i and joins the sum, with its low part or without.
struct series_step {
  pairs& t;
  const pairs& r;
  bool plus;

  ZRT_INLINE void join(pairs& sum, double i, bool power, words running) const {
    const words is_long = (words)(magnitude(t.hi) > quad_limit) & running;
    pairs next = t, joined = sum;
    if (any_sign(is_long)) {
      const pairs product = mul(t, r);
      const pairs term = power ? arithmetic::scaled_by(product, 1.0 / i) : div_by_short(product, i);
      next = select(is_long, term, next);
      joined = select(is_long, plus ? add(sum, term) : sub(sum, term), joined);
    }
    const words is_short = running & ~is_long;
    if (any_sign(is_short)) {
      const lanes term = t.hi * r.hi / i;
      next.hi = select(is_short, term, next.hi);
      joined.lo = select(is_short, plus ? sum.lo + term : sum.lo - term, joined.lo);
    }
    t = next;
    sum = joined;
  }
};

/// sin r and cos r for |r| <= pi/80.
ZRT_INLINE void series(const pairs& r, pairs& cosine, pairs& sine) {
  pairs c = {}, s = {}, t = r;
  bool plus = false;
  for (int i = 2;; plus = !plus) {
    const words running = (words)(magnitude(t.hi) > series_end);
    if (!any_sign(running)) break;
    const series_step next = {t, r, plus};
    next.join(c, i, i == 2 || i == 4 || i == 8, running);
    ++i;
    next.join(s, i, false, running);
    ++i;
  }
  cosine = arithmetic::add(c, 1.0);
  sine = add(s, r);
}

/// What of an angle both functions take.
struct angle {
  pairs cos_r{}, sin_r{}, cos_k{}, sin_k{};
  lanes sign{};  // of cos n pi

  ZRT_INLINE angle(const pairs& x, doubt& check) {
    check.at_least(x.hi, 0x1p-90);
    check.zero_or_at_least(x.lo, 0x1p-300);
    const reduced first = reduce(x, half_turn, check);
    const reduced second = reduce(first.remainder, step, check);
    const pairs& r = second.remainder;
    check.below(second.quotient, 20.5);
    check.at_least(r.hi, 0x1.0000000000001p-100);
    check.zero_or_at_least(r.lo, 0x1p-300);
    if (check.any()) [[unlikely]]
      return;
    double k[width], n[width], sine[2][width], cosine[2][width], turn[width];
    write(k, second.quotient);
    write(n, first.quotient);
    for (index j = 0; j < width; ++j) {
      const int number = static_cast<int>(k[j]), size = number < 0 ? -number : number;
      sine[0][j] = number < 0 ? -sines[size].hi : sines[size].hi;
      sine[1][j] = number < 0 ? -sines[size].lo : sines[size].lo;
      cosine[0][j] = sines[20 - size].hi;
      cosine[1][j] = sines[20 - size].lo;
      turn[j] = (static_cast<int>(n[j]) & 1) != 0 ? -1.0 : 1.0;
    }
    sin_k = {read(sine[0]), read(sine[1])};
    cos_k = {read(cosine[0]), read(cosine[1])};
    sign = read(turn);
    series(r, cos_r, sin_r);
  }
  ZRT_INLINE pairs with_turns(const pairs& a) const { return {a.hi * sign, a.lo * sign}; }
};

ZRT_INLINE pairs sine(const pairs& x, doubt& check) {
  const angle of(x, check);
  return of.with_turns(add(mul(of.cos_r, of.sin_k), mul(of.sin_r, of.cos_k)));
}
ZRT_INLINE pairs cosine(const pairs& x, doubt& check) {
  const angle of(x, check);
  return of.with_turns(sub(mul(of.cos_r, of.cos_k), mul(of.sin_r, of.sin_k)));
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
