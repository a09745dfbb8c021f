// REAL*16 circular functions.

#include "quad/circular.hpp"

#include "entries.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
namespace {

constexpr quad one_degree = constant(0x3F91DF46A2529D39, 0x3C15C1D8BECDD28C);  // pi/180
/// What the tangent gives where the cosine is zero.
constexpr quad pole = constant(0x7FEFFFFFFFFFFFFB, 0);

constexpr reg series_end = 0x1.4484bfeebc2ap-100L;  // 1e-30
constexpr reg quad_limit = 0x1.203af9ee75616p-50L;  // 1e-15: smaller terms need no low part

#include "quad/circular_tables.inc"
constexpr std::int32_t last_row = 20;

/// The sines of negative k, too, at k + 20, as factors.
constexpr auto sine_factors = [] {
  std::array<factor, 2 * last_row + 1> table{};
  for (std::size_t k = 0; k <= last_row; ++k) {
    table[last_row - k] = constant_factor({-sines[k].hi, -sines[k].lo});
    table[last_row + k] = constant_factor(sines[k]);
  }
  return table;
}();

/// A modulus of the reduction, its parts as factors.
struct modulus {
  quad value;
  factor hi, lo;
  reg reciprocal;
};
constexpr modulus modulus_of(const quad& y, reg reciprocal) {
  return {y, constant_factor({y.hi, 0.0}), constant_factor({y.lo, 0.0}), reciprocal};
}
constexpr modulus half_turn = modulus_of(pi, 0x1.45f306dc9c883p-2L);
constexpr modulus step = modulus_of(constant(0x3FB41B2F769CF0E0, 0x3C4C3D09EB53C670),  // pi/40
                                    0x1.976fc893c3aa4p+3L);

/// n * y.hi or n * y.lo exactly, for an n of at most 26 bits.
[[gnu::always_inline]] inline quad multiple(reg n, const factor& y) {
  const reg p = n * y.hi();
  return {in_register::part(p), in_register::part((n * reg{y.high} - p) + n * reg{y.low})};
}

/// What `reduce` gives, for quotients up to 2**20 that lie clear of a half: the product with the
/// reciprocal and the true quotient have the same nearest whole number, and x.hi - n y.hi has no
/// error. An x that is not so, or that is not normalised, gives false.
[[gnu::always_inline]] inline bool reduce_short(const quad& x, const modulus& y,
                                                reduction& result) {
  const reg q = reg{x.hi} * y.reciprocal;
  if (!less(fabs(q), 0x1p20L) || !greater(fabs(q), 0x1p-100L) || !less(fabs(reg{x.lo}), 0x1p-20L))
    return false;
  const reg n = load_integer(fistp32(q));
  if (!less(fabs(q - n), 0.499L)) return false;
  const quad p1 = multiple(n, y.hi), p2 = multiple(n, y.lo);
  const quad above = closing_sum<in_register>(reg{x.hi} - reg{p1.hi}, 0.0L - reg{p1.lo});
  const quad below = add<in_register>({x.lo, 0.0}, above);
  result = {n, sub<in_register>(below, p2)};
  return true;
}

/// The parity of a whole number of any size; beyond 2**63, and for infinities and NaNs, even. What
/// does not fit 32 bits raises invalid, as the store of such a quotient does.
bool is_odd(reg n) {
  const std::int32_t short_n = fistp32(n);
  if (short_n != INT32_MIN) return (short_n & 1) != 0;
  return less(fabs(n), 0x1p63L) && (fistp64(n) & 1) != 0;
}

/// sin r and cos r for |r| <= pi/80: the two Taylor series in one loop, term by term, t the running
/// term. Terms up to quad_limit go in double precision into the low parts alone. The leading 1 and
/// r come last.
template <class Result>
[[gnu::always_inline]] inline void series(const quad& r, quad& cosine, quad& sine) {
  quad c = zero, s = zero, t = r;
  bool plus = false;
  std::int32_t i = 2;
  const auto is_long = [&t] { return greater(fabs(Result::value(t.hi)), quad_limit); };
  // Both terms of a pass have the same sign.
  const auto join = [&plus, &t](quad& sum) {
    sum = plus ? add<Result>(sum, t) : sub<Result>(sum, t);
  };
  const auto short_term = [&plus, &t, &r, &i](quad& sum) {
    const reg term = Result::value(t.hi) * Result::value(r.hi) / load_integer(i);
    t.hi = Result::part(term);
    const reg lo = Result::value(sum.lo);
    sum.lo = Result::part(plus ? lo + Result::value(t.hi) : lo - Result::value(t.hi));
  };
  while (greater(fabs(Result::value(t.hi)), series_end)) {
    if (is_long()) {
      t = mul<Result>(t, r);
      if (i == 2 || i == 4 || i == 8)
        t = scaled_by<Result>(t, i == 2 ? 0.5L : i == 4 ? 0.25L : 0.125L);
      else
        t = div_by_short<Result>(t, load_integer(i));
      join(c);
    } else {
      short_term(c);
    }
    ++i;
    if (is_long()) {
      t = div_by_short<Result>(mul<Result>(t, r), load_integer(i));
      join(s);
    } else {
      short_term(s);
    }
    ++i;
    plus = !plus;
  }
  cosine = add<Result>(c, 1.0L);
  sine = add<Result>(s, r);
}

/// Argument reduction in two stages, to n pi + k pi/40 + r, Taylor series of r, and the addition
/// formulas. A k outside the table means that the first remainder has lost its meaning: it counts
/// as zero. A NaN takes k = 0 and stays in r.
struct angle_parts {
  quad cos_r, sin_r;
  factor cos_k, sin_k;
  reg sign;       // of cos n pi
  bool ordinary;  // as in_register wants it

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
    sign = load(signs[is_odd(first.quotient)]);
    ordinary = greater(fabs(reg{second.remainder.hi}), 0x1p-100L);
    if (ordinary)
      series<in_register>(second.remainder, cos_r, sin_r);
    else
      series<by_store>(second.remainder, cos_r, sin_r);
  }

  [[gnu::always_inline]] quad times(const quad& a, const factor& b) const {
    return ordinary ? mul(a, b) : mul(a, b.value);
  }
  [[gnu::always_inline]] quad sine() const {
    return signed_by_turns(add(times(cos_r, sin_k), times(sin_r, cos_k)));
  }
  [[gnu::always_inline]] quad cosine() const {
    return signed_by_turns(sub(times(cos_r, cos_k), times(sin_r, sin_k)));
  }
  /// A product with 1 or -1 also flips the sign of a zero.
  [[gnu::always_inline]] quad signed_by_turns(const quad& a) const {
    return stored_pair(load(a.hi) * sign, load(a.lo) * sign);
  }
};

}  // namespace

// 4e-31 in absolute terms for moderate x. NaNs and infinities give NaNs, of the tangent its pole.
quad sine(const quad& x) { return angle_parts(x).sine(); }
quad cosine(const quad& x) { return angle_parts(x).cosine(); }
sine_and_cosine::sine_and_cosine(const quad& x) {
  const angle_parts parts(x);
  sine = parts.sine();
  cosine = parts.cosine();
}
quad tangent(const quad& x) {
  const angle_parts parts(x);
  const quad numerator = parts.sine(), denominator = parts.cosine();
  if (is_zero_or_nan(denominator)) return pole;
  return parts.ordinary ? div<in_register>(numerator, denominator) : div(numerator, denominator);
}

}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, sinl)(quad* result, quad x) {
  *result = sine(x);
  return result;
}
ZRT_VALUE(quad*, cosl)(quad* result, quad x) {
  *result = cosine(x);
  return result;
}
ZRT_VALUE(quad*, tanl)(quad* result, quad x) {
  *result = tangent(x);
  return result;
}
ZRT_VALUE(quad*, cotl)(quad* result, quad x) {
  *result = div(1.0L, tangent(x));
  return result;
}
ZRT_VALUE(quad*, sindl)(quad* result, quad x) {
  *result = sine(mul(x, one_degree));
  return result;
}
ZRT_VALUE(quad*, cosdl)(quad* result, quad x) {
  *result = cosine(mul(x, one_degree));
  return result;
}
ZRT_VALUE(quad*, tandl)(quad* result, quad x) {
  *result = tangent(mul(x, one_degree));
  return result;
}
