#pragma once

// REAL*16 functions on lanes: the steps of the rooms that have them.

#include "arrays/lanes_model.hpp"
#include "quad/exponential_steps.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

/// Lanes as the arithmetic of a kernel's steps, for magnitudes that need no doubt.
struct arithmetic {
  static ZRT_INLINE pairs constant(const zrt::quad& x) { return {all(x.hi), all(x.lo)}; }
  static ZRT_INLINE pairs add(const pairs& a, const pairs& b) { return ZRT_LEVEL::add(a, b); }
  static ZRT_INLINE pairs add(const pairs& a, double d) {
    const lanes s = a.hi + d;
    const lanes g = a.hi - s;
    return closing_sum(s, ((d + g) + (a.hi - (g + s))) + a.lo);
  }
  static ZRT_INLINE pairs sub(const pairs& a, const pairs& b) { return ZRT_LEVEL::sub(a, b); }
  static ZRT_INLINE pairs sub(const pairs& a, lanes d) {
    const lanes s = a.hi - d;
    const lanes g = a.hi - s;
    return closing_sum(s, ((g - d) + (a.hi - (g + s))) + a.lo);
  }
  static ZRT_INLINE pairs mul(const pairs& a, const pairs& b) { return ZRT_LEVEL::mul(a, b); }
  static ZRT_INLINE pairs mul(const pairs& a, const zrt::quad& b) { return mul(a, constant(b)); }
  static ZRT_INLINE pairs mul_by_short(const pairs& a, double d) {
    const lanes p = a.hi * d;
    return closing_sum(p, a.lo * d + product_error(cut_of(a.hi), cut_of(all(d)), p));
  }
  static ZRT_INLINE pairs scaled_by(const pairs& a, double power) {
    return {a.hi * power, a.lo * power};
  }
  static ZRT_INLINE pairs div(const pairs& a, const pairs& b) {
    doubt none;
    return ZRT_LEVEL::div(a, b, none);
  }
};

/// Ordinary: the result between 2**-800 and 2**800, and neither f nor its low part small.
ZRT_INLINE pairs exponential(const pairs& x, doubt& check) {
  const pairs t = div(x, arithmetic::constant(quads::ln_2), check);
  const whole n = truncated(t.hi + with_sign_of(all(0.5), t.hi));
  const pairs f = arithmetic::sub(t, n.value);
  check.below(t.hi, 800.0);
  check.at_least(f.hi, 0x1p-100);
  check.zero_or_at_least(f.lo, 0x1p-300);
  const lanes power = power_of_two(n);
  const pairs r = quads::power_of_two<arithmetic>(f);
  return {r.hi * power, r.lo * power};
}

// --- Logarithm ---------------------------------------------------------------------------------

constexpr quad constant(unsigned long long hi, unsigned long long lo) {
  return {__builtin_bit_cast(double, hi), __builtin_bit_cast(double, lo)};
}
constexpr quad sqrt_half = constant(0x3FE6A09E667F3BCD, 0xBC8BDD3413B26458);
constexpr quad ln_2_high = constant(0x3FE62E4000000000, 0xB950000000000000);
constexpr quad ln_2_low = constant(0x3EB7F7D1CF79ABCA, 0xBB3C4C67FC0D0968);
#include "quad/logarithm_tables.inc"

ZRT_INLINE lanes select(words mask, lanes a, lanes b) {
  return (lanes)(((words)a & mask) | ((words)b & ~mask));
}
ZRT_INLINE pairs select(words mask, const pairs& a, const pairs& b) {
  return {select(mask, a.hi, b.hi), select(mask, a.lo, b.lo)};
}

/// A numerator over a monic denominator, tables highest power first.
template <int n, int m>
ZRT_INLINE pairs rational(const pairs& x, const quad (&numerator)[n],
                          const quad (&denominator)[m]) {
  pairs top = broadcast(numerator[0]), bottom = add(x, broadcast(denominator[0]));
  for (int i = 1; i < n; ++i) top = add(mul(top, x), broadcast(numerator[i]));
  for (int i = 1; i < m; ++i) bottom = add(mul(bottom, x), broadcast(denominator[i]));
  return arithmetic::div(top, bottom);
}

/// a * k for whole numbers k of few bits.
ZRT_INLINE pairs mul_integer(const quad& a, lanes k) {
  const lanes hi = all(a.hi) * k, lo = all(a.lo) * k;
  return add({hi, product_error(cut_of(all(a.hi)), cut_of(k), hi)},
             {lo, product_error(cut_of(all(a.lo)), cut_of(k), lo)});
}

/// ln (m 2**e) near 1 and elsewhere; `low` where m lies below sqrt(1/2).
ZRT_INLINE pairs logarithm_near_one(const pairs& m, lanes e, words low) {
  const lanes twice = select(low, all(2.0), all(1.0));
  const pairs v = arithmetic::sub({m.hi * twice, m.lo * twice}, all(1.0));
  const pairs w = mul(v, v);
  const pairs c = rational(v, near_numerator, near_denominator);
  pairs y = mul(v, mul(w, c));
  y = add(y, mul_integer(ln_2_low, e));
  y = sub(y, arithmetic::scaled_by(w, 0.5));
  y = add(y, v);
  return add(y, mul_integer(ln_2_high, e));
}
ZRT_INLINE pairs logarithm_far_from_one(const pairs& m, lanes e, words low) {
  const pairs a = arithmetic::sub(m, all(0.5));
  const pairs above = select(low, a, arithmetic::sub(a, all(0.5)));
  const pairs b = select(low, a, m);
  const pairs half = closing_sum(b.hi * 0.5, b.lo * 0.5 + 0.0);
  const pairs z = arithmetic::div(above, arithmetic::add(half, 0.5));
  const pairs w = mul(z, z);
  const pairs c = rational(w, far_numerator, far_denominator);
  pairs y = mul(z, mul(w, c));
  y = add(y, mul_integer(ln_2_low, e));
  y = add(y, z);
  return add(y, mul_integer(ln_2_high, e));
}

/// Ordinary: x.hi in [2**-100, 2**100), and x.lo fit for direct steps.
ZRT_INLINE pairs logarithm(const pairs& x, doubt& check) {
  const words biased = (words)x.hi >> 52;
  const lanes exponent = (lanes)(biased | 0x4330000000000000ULL) - (0x1p52 + 1022.0);
  const lanes power = (lanes)((2045ULL - biased) << 52);
  const pairs m = {x.hi * power, x.lo * power};
  check.sign |= (words)x.hi;
  check.at_least(x.hi, 0x1p-100);
  check.below(x.hi, 0x1p99);
  check.zero_or_at_least(m.lo, 0x1p-101);
  check.below(m.lo, 0x1p-54);
  check.sign |= (words)(x.hi == 1.0) & (words)(x.lo == 0.0);
  const lanes difference = m.hi - sqrt_half.hi;
  const words low =
      (words)(difference < 0.0) | ((words)(difference == 0.0) & (words)(m.lo - sqrt_half.lo < 0.0));
  const words far = (words)(magnitude(exponent) > 2.0);
  const lanes e = exponent - select(low, all(1.0), all(0.0));
  if (!any_sign(~far)) return logarithm_far_from_one(m, e, low);
  const pairs near = logarithm_near_one(m, e, low);
  return any_sign(far) ? select(far, logarithm_far_from_one(m, e, low), near) : near;
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
