#pragma once

// REAL*16 functions on lanes: the steps of the rooms that have them.

#include "arrays/lanes_model.hpp"
#include "quad/exponential_steps.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

/// Groups of vectors as the arithmetic of a kernel's steps, for magnitudes that need no doubt.
struct arithmetic {
  template <class Constant>
  static ZRT_INLINE several constant(const Constant& x) {
    return ZRT_EACH((pairs{all(x.hi), all(x.lo)}));
  }
  static ZRT_INLINE several add(const several& a, const several& b) {
    return ZRT_EACH(ZRT_LEVEL::add(a.v[g], b.v[g]));
  }
  static ZRT_INLINE several add(const several& a, double d) {
    return ZRT_EACH(ZRT_LEVEL::add(a.v[g], d));
  }
  static ZRT_INLINE several add_to_larger(const several& a, const several& b) {
    return ZRT_EACH(ZRT_LEVEL::add_to_larger(a.v[g], b.v[g]));
  }
  static ZRT_INLINE several sub(const several& a, const several& b) {
    return ZRT_EACH(ZRT_LEVEL::sub(a.v[g], b.v[g]));
  }
  static ZRT_INLINE several mul(const several& a, const several& b) {
    return ZRT_EACH(ZRT_LEVEL::mul(a.v[g], b.v[g]));
  }
  static ZRT_INLINE several mul(const several& a, const zrt::quad& b) {
    return mul(a, constant(b));
  }
  static ZRT_INLINE several mul_by_short(const several& a, double d) {
    return ZRT_EACH(ZRT_LEVEL::mul_by_short(a.v[g], d));
  }
  static ZRT_INLINE several scaled_by(const several& a, double power) {
    return ZRT_EACH(ZRT_LEVEL::scaled_by(a.v[g], power));
  }
  static ZRT_INLINE several div(const several& a, const several& b) {
    doubt none;
    return ZRT_EACH(ZRT_LEVEL::div(a.v[g], b.v[g], none));
  }
};

/// A numerator over a monic denominator, tables highest power first. All but the last `close_rows`
/// coefficients exceed what they are added to, as the room of the function asserts.
template <int close_rows = 0, int n, int m>
ZRT_INLINE several rational(const several& x, const quad (&numerator)[n],
                            const quad (&denominator)[m]) {
  using A = arithmetic;
  several top = A::constant(numerator[0]);
  several bottom = A::add_to_larger(x, A::constant(denominator[0]));
  for (int i = 1; i < n; ++i) {
    const several next = A::constant(numerator[i]);
    top = A::mul(top, x);
    top = i < n - close_rows ? A::add_to_larger(top, next) : A::add(top, next);
    if (i < n - m + 1) continue;
    const several below = A::constant(denominator[i - n + m]);
    bottom = A::mul(bottom, x);
    bottom = i < n - close_rows ? A::add_to_larger(bottom, below) : A::add(bottom, below);
  }
  return A::div(top, bottom);
}

ZRT_INLINE several root(const several& x, grouped<doubt>& check) {
  return ZRT_EACH(root(x.v[g], check.v[g]));
}

// --- Exponential ---------------------------------------------------------------------------------

/// Ordinary: the result between 2**-800 and 2**800, and neither f nor its low part small.
ZRT_INLINE several exponential(const several& x, grouped<doubt>& check) {
  grouped<lanes> power;
  const pairs by_ln_2 = {all(quads::ln_2.hi), all(quads::ln_2.lo)};
  const auto reduced = [&](index g) ZRT_ALWAYS {
    const pairs t = div(x.v[g], by_ln_2, check.v[g]);
    const whole n = truncated(t.hi + with_sign_of(all(0.5), t.hi));
    const pairs f = sub(t, n.value);
    check.v[g].below(t.hi, 800.0);
    check.v[g].at_least(f.hi, 0x1p-100);
    check.v[g].zero_or_at_least(f.lo, 0x1p-300);
    power.v[g] = power_of_two(n);
    return f;
  };
  const several r = quads::power_of_two<arithmetic>(in_group(reduced));
  return ZRT_EACH((pairs{r.v[g].hi * power.v[g], r.v[g].lo * power.v[g]}));
}

// --- Logarithm ---------------------------------------------------------------------------------

constexpr quad constant(unsigned long long hi, unsigned long long lo) {
  return {__builtin_bit_cast(double, hi), __builtin_bit_cast(double, lo)};
}
constexpr quad sqrt_half = constant(0x3FE6A09E667F3BCD, 0xBC8BDD3413B26458);
constexpr quad ln_2_high = constant(0x3FE62E4000000000, 0xB950000000000000);
constexpr quad ln_2_low = constant(0x3EB7F7D1CF79ABCA, 0xBB3C4C67FC0D0968);
#include "quad/logarithm_tables.inc"

/// a * k for whole numbers k of few bits.
ZRT_INLINE pairs mul_integer(const quad& a, lanes k) {
  const lanes hi = all(a.hi) * k, lo = all(a.lo) * k;
  return add({hi, product_error(cut_of(all(a.hi)), cut_of(k), hi)},
             {lo, product_error(cut_of(all(a.lo)), cut_of(k), lo)});
}

/// Operands as m 2**e; `low` where m lies below sqrt(1/2).
struct significands {
  several m;
  grouped<lanes> e;
  grouped<words> low;
};

/// ln (m 2**e) near 1 and elsewhere.
ZRT_INLINE several logarithm_near_one(const significands& x) {
  using A = arithmetic;
  const several v = in_group([&](index g) ZRT_ALWAYS {
    const lanes twice = select(x.low.v[g], all(2.0), all(1.0));
    // The leading difference is exact.
    return closing_sum(x.m.v[g].hi * twice - 1.0, 0.0 + x.m.v[g].lo * twice);
  });
  const several w = A::mul(v, v);
  const several c = rational<3>(v, near_numerator, near_denominator);
  several y = A::mul(v, A::mul(w, c));
  y = A::add(y, ZRT_EACH(mul_integer(ln_2_low, x.e.v[g])));
  y = A::sub(y, A::scaled_by(w, 0.5));
  y = A::add(y, v);
  return A::add(y, ZRT_EACH(mul_integer(ln_2_high, x.e.v[g])));
}
ZRT_INLINE several logarithm_far_from_one(const significands& x) {
  using A = arithmetic;
  const several a = ZRT_EACH(sub(x.m.v[g], all(0.5)));
  const several above = ZRT_EACH(select(x.low.v[g], a.v[g], sub(a.v[g], all(0.5))));
  const several half = in_group([&](index g) ZRT_ALWAYS {
    const pairs b = select(x.low.v[g], a.v[g], x.m.v[g]);
    return closing_sum(b.hi * 0.5, b.lo * 0.5 + 0.0);
  });
  const several z = A::div(above, A::add(half, 0.5));
  const several w = A::mul(z, z);
  const several c = rational(w, far_numerator, far_denominator);
  several y = A::mul(z, A::mul(w, c));
  y = A::add(y, ZRT_EACH(mul_integer(ln_2_low, x.e.v[g])));
  y = A::add(y, z);
  return A::add(y, ZRT_EACH(mul_integer(ln_2_high, x.e.v[g])));
}

/// Ordinary: x.hi in [2**-100, 2**100), and x.lo fit for direct steps.
ZRT_INLINE several logarithm(const several& x, grouped<doubt>& check) {
  significands parts;
  const grouped<words> far = in_group([&](index g) ZRT_ALWAYS {
    const pairs& value = x.v[g];
    const words biased = (words)value.hi >> 52;
    const lanes exponent = (lanes)(biased | 0x4330000000000000ULL) - (0x1p52 + 1022.0);
    const lanes power = (lanes)((2045ULL - biased) << 52);
    const pairs m = {value.hi * power, value.lo * power};
    check.v[g].sign |= (words)value.hi;
    check.v[g].at_least(value.hi, 0x1p-100);
    check.v[g].below(value.hi, 0x1p99);
    check.v[g].zero_or_at_least(m.lo, 0x1p-101);
    check.v[g].below(m.lo, 0x1p-54);
    check.v[g].sign |= (words)(value.hi == 1.0) & (words)(value.lo == 0.0);
    const lanes difference = m.hi - sqrt_half.hi;
    const words low = (words)(difference < 0.0) |
                      ((words)(difference == 0.0) & (words)(m.lo - sqrt_half.lo < 0.0));
    parts.m.v[g] = m;
    parts.low.v[g] = low;
    parts.e.v[g] = exponent - select(low, all(1.0), all(0.0));
    return (words)(magnitude(exponent) > 2.0);
  });
  if (!any_of(ZRT_EACH(~far.v[g]))) return logarithm_far_from_one(parts);
  const several near = logarithm_near_one(parts);
  if (!any_of(far)) return near;
  const several elsewhere = logarithm_far_from_one(parts);
  return ZRT_EACH(select(far.v[g], elsewhere.v[g], near.v[g]));
}

// --- Arctangent --------------------------------------------------------------------------------

namespace arctangents {
constexpr quad tan_3pi_8 = constant(0x4003504F333F9DE6, 0x3CA21165F626CDD4);
constexpr quad tan_pi_8 = constant(0x3FDA827999FCEF32, 0x3C708B2FB1366EA5);
constexpr quad half_pi = constant(0x3FF921FB54442D18, 0x3C91A62633145C02);
constexpr quad quarter_pi = constant(0x3FE921FB54442D18, 0x3C81A62633145C04);
constexpr double bound = 0x1.5f7p-3;
#include "quad/arctangent_tables.inc"
}  // namespace arctangents

/// Ordinary: x.hi in [2**-90, 2**90), no low part small, and the argument of the series below
/// tan(pi/8).
ZRT_INLINE several arctangent(const several& x, grouped<doubt>& check) {
  using namespace arctangents;
  using A = arithmetic;
  several base;
  const several y = in_group([&](index g) ZRT_ALWAYS {
    const pairs& value = x.v[g];
    const pairs a = absolute(value);
    check.v[g].at_least(a.hi, 0x1p-90);
    check.v[g].below(a.hi, 0x1p90);
    check.v[g].zero_or_at_least(a.lo, 0x1p-300);
    check.v[g].below(a.lo, 0x1p90);
    const words steep = (words)(sub(a, broadcast(tan_3pi_8)).hi > 0.0);
    const words moderate = (words)(sub(a, broadcast(tan_pi_8)).hi > 0.0) & ~steep;
    base.v[g] = select(steep, broadcast(half_pi),
                       select(moderate, broadcast(quarter_pi), pairs{lanes{}, lanes{}}));
    doubt of_quotient;
    const pairs quotient = div(select(steep, pairs{all(-1.0), lanes{}}, sub(a, all(1.0))),
                               select(steep, a, add(a, 1.0)), of_quotient);
    check.v[g].sign |= of_quotient.signs() & (steep | moderate);
    return select(steep | moderate, quotient, a);
  });
  const several z = A::mul(y, y);
  for_group([&](index g) ZRT_ALWAYS {
    check.v[g].at_least(z.v[g].hi, 0x1p-199);
    check.v[g].below(z.v[g].hi, bound);
    check.v[g].zero_or_at_least(z.v[g].lo, 0x1p-300);
    check.v[g].zero_or_at_least(y.v[g].lo, 0x1p-300);
  });
  const several w = A::mul(A::mul(rational(z, numerator, denominator), z), y);
  const several value = A::add(base, A::add(w, y));
  return ZRT_EACH(flipped(value.v[g], (words)x.v[g].hi));
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
