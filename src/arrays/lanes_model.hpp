#pragma once

// REAL*16 arithmetic on lanes: the steps of src/quad/quad.hpp, each on ZRT_WIDTH doubles at once.
//
// The bits are those of the entries while every intermediate is a double with all its bits, for
// MXCSR as `floating_point_state` sets it (to nearest, gradual underflow). That is so
//  - of a sum, when no part of the result overflows: sums of doubles are multiples of 2**-1074;
//  - of a product, when the parts of both factors are zero or 2**-480 or more and the result is
//    finite: errors are multiples of 2**-1064, the other terms are 2**-960 or more, and what
//    overflows on the way ends in no finite result;
//  - of a quotient, when besides the quotient of the leading parts and its correction are zero or
//    in [2**-480, 2**544); the remainder is then a double, exactly;
//  - of a root, when the leading part is in that range and the low part zero or in it.
// `doubt` gathers the lanes of which this is not known; whoever finds one runs the entries instead.
// Infinities and NaNs end in a low part that is not finite.

#include "arrays/width.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

ZRT_INLINE words twice_image(lanes x) { return (words)x + (words)x; }

#if ZRT_WIDTH < 8
ZRT_INLINE words not_finite(lanes x) {
  return ~(words)((lanes)(twice_image(x) >> 1) < all(__builtin_inf()));
}
#endif

constexpr unsigned long long sign_bit = 1ULL << 63;
ZRT_INLINE lanes magnitude(lanes x) { return (lanes)((words)x & ~sign_bit); }
ZRT_INLINE lanes with_sign_of(lanes size, lanes x) {
  return (lanes)((words)size | ((words)x & sign_bit));
}
/// 2**n in the normal range.
ZRT_INLINE lanes power_of_two(const whole& n) { return (lanes)((n.integer + 1023ULL) << 52); }

// --- Values ------------------------------------------------------------------------------------
// Elements lie in the order in which the unpack instructions leave them, the same everywhere.

struct pairs {
  lanes hi, lo;
};
struct complex_pairs {
  pairs re, im;
};

ZRT_INLINE pairs load(const quad* p) {
  const lanes u = read(&p->hi), v = read(&p->hi + width);
  return {heads(u, v), tails(u, v)};
}
ZRT_INLINE void store(quad* p, const pairs& x) {
  write(&p->hi, heads(x.hi, x.lo));
  write(&p->hi + width, tails(x.hi, x.lo));
}
/// Hi and lo side by side, as packed blocks have them.
ZRT_INLINE pairs read_packed(const double* p) { return {read(p), read(p + width)}; }
ZRT_INLINE void write_packed(double* p, const pairs& x) {
  write(p, x.hi);
  write(p + width, x.lo);
}
ZRT_INLINE complex_pairs load(const cquad* p) {
  const double* at = &p->re.hi;
  const lanes a = read(at), b = read(at + width), c = read(at + 2 * width),
              d = read(at + 3 * width);
  const lanes r = evens(a, b), s = evens(c, d), i = odds(a, b), j = odds(c, d);
  return {{heads(r, s), tails(r, s)}, {heads(i, j), tails(i, j)}};
}
ZRT_INLINE void store(cquad* p, const complex_pairs& x) {
  double* at = &p->re.hi;
  const lanes r = heads(x.re.hi, x.re.lo), s = tails(x.re.hi, x.re.lo);
  const lanes i = heads(x.im.hi, x.im.lo), j = tails(x.im.hi, x.im.lo);
  write(at, zip_low(r, i));
  write(at + width, zip_high(r, i));
  write(at + 2 * width, zip_low(s, j));
  write(at + 3 * width, zip_high(s, j));
}
ZRT_INLINE pairs broadcast(const quad& x) { return {all(x.hi), all(x.lo)}; }
ZRT_INLINE pairs negated(const pairs& x) { return {-x.hi, -x.lo}; }

/// With both signs flipped where `mask` has its sign set.
ZRT_INLINE pairs flipped(const pairs& x, words mask) {
  const words sign = mask & sign_bit;
  return {(lanes)((words)x.hi ^ sign), (lanes)((words)x.lo ^ sign)};
}
ZRT_INLINE pairs absolute(const pairs& x) { return flipped(x, (words)(x.hi < 0.0)); }

ZRT_INLINE lanes select(words mask, lanes a, lanes b) {
  return (lanes)(((words)a & mask) | ((words)b & ~mask));
}
ZRT_INLINE pairs select(words mask, const pairs& a, const pairs& b) {
  return {select(mask, a.hi, b.hi), select(mask, a.lo, b.lo)};
}
ZRT_INLINE complex_pairs select(words mask, const complex_pairs& a, const complex_pairs& b) {
  return {select(mask, a.re, b.re), select(mask, a.im, b.im)};
}

/// Vectors that a function takes side by side, for its steps wait for one another. No loop goes
/// over them: in one the compiler keeps them in memory.
inline constexpr index group = 2;
template <class V>
struct grouped {
  V v[group];
};
using several = grouped<pairs>;
template <class Of>
ZRT_INLINE auto in_group(const Of& of) {
  return grouped<decltype(of(0))>{{of(0), of(1)}};
}
template <class Do>
ZRT_INLINE void for_group(const Do& once) {
  once(0);
  once(1);
}
ZRT_INLINE bool any_of(const grouped<words>& mask) { return any_sign(mask.v[0] | mask.v[1]); }
#define ZRT_EACH(expression) \
  in_group([&]([[maybe_unused]] index g) ZRT_ALWAYS { return expression; })

// --- Doubt -------------------------------------------------------------------------------------

struct doubt {
  words sign{};              // set where a lane is in doubt
  lanes least = all(0x1p0);  // magnitude that a factor's part has, zeros left out

  /// Parts of [2**-480, 2**544): the doubled image less that of 2**-480 has its sign clear.
  static ZRT_INLINE words out_of_range(lanes x) { return twice_image(x) - (543ULL << 53); }
  ZRT_INLINE void in_range(lanes x) { sign |= out_of_range(x); }
  ZRT_INLINE void zero_or_in_range(lanes x) {
    sign |= out_of_range(x) & ~(words)(twice_image(x) == 0);
  }
  ZRT_INLINE void below(lanes x, double limit) { sign |= ~(words)(magnitude(x) < limit); }
  ZRT_INLINE void at_least(lanes x, double limit) { sign |= ~(words)(magnitude(x) >= limit); }
  ZRT_INLINE void zero_or_at_least(lanes x, double limit) {
    sign |= ~(words)(magnitude(x) >= limit) & ~(words)(twice_image(x) == 0);
  }
  /// Zero or 2**-480 or more. The image before that of a zero is a NaN, for which the least of two
  /// is the second; the others move down by one unit.
  ZRT_INLINE void part_of_factor(lanes x) {
    least = least_of((lanes)((words)magnitude(x) - 1ULL), least);
  }
  ZRT_INLINE void factor(const pairs& x) {
    part_of_factor(x.hi);
    part_of_factor(x.lo);
  }
  ZRT_INLINE void finite(const pairs& x) { sign |= not_finite(x.lo); }
  ZRT_INLINE words signs() const { return sign | (words)(least < 0x1p-480); }
  ZRT_INLINE bool any() const { return any_sign(signs()); }
  /// All ones where nothing is in doubt.
  ZRT_INLINE words known() const { return (signs() >> 63) - 1; }
};

/// Which elements of a group are in doubt, as signs of their leading parts.
ZRT_INLINE bool any_of(const grouped<doubt>& check) {
  return any_sign(check.v[0].signs() | check.v[1].signs());
}
ZRT_INLINE pairs mark_of(const doubt& check) { return {(lanes)check.signs(), lanes{}}; }

// --- Arithmetic --------------------------------------------------------------------------------

ZRT_INLINE pairs closing_sum(lanes s, lanes t) {
  const lanes hi = s + t;
  return {hi, (s - hi) + t};
}

ZRT_INLINE pairs add(const pairs& a, const pairs& b) {
  const lanes s = a.hi + b.hi;
  const lanes g = a.hi - s;
  return closing_sum(s, (((b.hi + g) + (a.hi - (g + s))) + a.lo) + b.lo);
}
/// a + b where the leading part of b is known not to be the smaller one.
ZRT_INLINE pairs add_to_larger(const pairs& a, const pairs& b) {
  const lanes s = a.hi + b.hi;
  return closing_sum(s, ((a.hi - (s - b.hi)) + a.lo) + b.lo);
}
ZRT_INLINE pairs sub(const pairs& a, const pairs& b) {
  const lanes s = a.hi - b.hi;
  const lanes g = a.hi - s;
  return closing_sum(s, (((g - b.hi) + (a.hi - (g + s))) + a.lo) - b.lo);
}

ZRT_INLINE pairs add(const pairs& a, double d) {
  const lanes s = a.hi + d;
  const lanes g = a.hi - s;
  return closing_sum(s, ((d + g) + (a.hi - (g + s))) + a.lo);
}
ZRT_INLINE pairs sub(const pairs& a, lanes d) {
  const lanes s = a.hi - d;
  const lanes g = a.hi - s;
  return closing_sum(s, ((g - d) + (a.hi - (g + s))) + a.lo);
}
/// By a power of two that keeps both parts normal.
ZRT_INLINE pairs scaled_by(const pairs& a, double power) { return {a.hi * power, a.lo * power}; }

#ifdef ZRT_FUSED

#if ZRT_WIDTH == 8
ZRT_INLINE lanes fused(lanes a, lanes b, lanes c) { return _mm512_fmadd_pd(a, b, c); }
#else
ZRT_INLINE lanes fused(lanes a, lanes b, lanes c) { return _mm256_fmadd_pd(a, b, c); }
#endif

/// a + b as 1 * a + b, which rounds as often.
ZRT_INLINE lanes plus(lanes a, lanes b) {
  lanes one = all(1.0);
  asm("" : "+v"(one));  // or the compiler makes an addition of it
  return fused(a, one, b);
}

/// A factor whose leading part takes part in an exact product.
struct cut {
  lanes value;
};
ZRT_INLINE cut cut_of(lanes x) { return {x}; }
/// a * b - p and c - a * b, exactly.
ZRT_INLINE lanes product_error(const cut& a, const cut& b, lanes p) {
  return fused(a.value, b.value, -p);
}
ZRT_INLINE lanes remainder_of(lanes c, const cut& a, const cut& b) {
  return fused(-a.value, b.value, c);
}
/// A factor that many products share lies in memory as parts: hi, lo, their sum, and what the cut
/// needs.
inline constexpr index first_parts = 3;
ZRT_INLINE void write_cut(double*, double) {}
ZRT_INLINE cut read_cut(const double* parts) { return {all(parts[0])}; }

#else

ZRT_INLINE lanes plus(lanes a, lanes b) { return a + b; }

/// Halves by Veltkamp's method: four partial products, each exact.
struct cut {
  lanes value, high, low;
};
ZRT_INLINE cut cut_of(lanes x) {
  const lanes t = x * 0x8000001p0;
  const lanes high = t + (x - t);
  return {x, high, x - high};
}
ZRT_INLINE lanes product_error(const cut& a, const cut& b, lanes p) {
  return (((a.high * b.high - p) + a.high * b.low) + a.low * b.high) + a.low * b.low;
}
ZRT_INLINE lanes remainder_of(lanes c, const cut& a, const cut& b) {
  return (((c - a.high * b.high) - a.high * b.low) - a.low * b.high) - a.low * b.low;
}
inline constexpr index first_parts = 5;
ZRT_INLINE void write_cut(double* parts, double hi) {
  const double t = hi * 0x8000001p0;
  parts[3] = t + (hi - t);
  parts[4] = hi - parts[3];
}
ZRT_INLINE cut read_cut(const double* parts) {
  return {all(parts[0]), all(parts[3]), all(parts[4])};
}

#endif

/// The operands of a product do not commute in the low bits.
struct first_factor {
  cut hi;
  lanes lo, sum;
};
struct second_factor {
  cut hi;
  lanes lo;
};
ZRT_INLINE first_factor as_first(const pairs& a) { return {cut_of(a.hi), a.lo, a.lo + a.hi}; }
ZRT_INLINE second_factor as_second(const pairs& b) { return {cut_of(b.hi), b.lo}; }
ZRT_INLINE void write_first(double* parts, const quad& a) {
  parts[0] = a.hi;
  parts[1] = a.lo;
  parts[2] = a.lo + a.hi;
  write_cut(parts, a.hi);
}
ZRT_INLINE first_factor read_first(const double* parts) {
  return {read_cut(parts), all(parts[1]), all(parts[2])};
}
ZRT_INLINE second_factor second_of(const first_factor& a) { return {a.hi, a.lo}; }
ZRT_INLINE quad first_value(const double* parts) { return {parts[0], parts[1]}; }

ZRT_INLINE pairs mul(const first_factor& a, const second_factor& b) {
  const lanes p = a.hi.value * b.hi.value;
  return closing_sum(p, (a.sum * b.lo + a.lo * b.hi.value) + product_error(a.hi, b.hi, p));
}
/// The same with its sums on the units that multiply, for loops that keep the adders busy: a matrix
/// product takes 1.15 times as long without.
ZRT_INLINE pairs mul_beside_sums(const first_factor& a, const second_factor& b) {
  const lanes p = a.hi.value * b.hi.value;
  const lanes t = plus(plus(a.sum * b.lo, a.lo * b.hi.value), product_error(a.hi, b.hi, p));
  const lanes hi = plus(p, t);
  return {hi, plus(plus(p, -hi), t)};
}
ZRT_INLINE pairs mul(const pairs& a, const pairs& b) { return mul(as_first(a), as_second(b)); }

ZRT_INLINE pairs mul_by_short(const pairs& a, double d) {
  const lanes p = a.hi * d;
  return closing_sum(p, a.lo * d + product_error(cut_of(a.hi), cut_of(all(d)), p));
}

/// a / d, rounded, for a whole number d from 1 to last_divisor and an a that is zero or 2**-900 or
/// more. With fused operations from q = a (1/d) by its exact remainder: what is then rounded
/// differs from a / d by 2**-51 of a unit, and no quotient comes that close to a half of one, from
/// which it is a unit over 2 d away or more.
inline constexpr int last_divisor = 23;
ZRT_INLINE lanes rounded_quotient(lanes a, int d) {
#ifdef ZRT_FUSED
  constexpr double reciprocals[last_divisor + 1] = {
      0,
      1,
      0.5,
      0x1.5555555555555p-2,
      0.25,
      0x1.999999999999ap-3,
      0x1.5555555555555p-3,
      0x1.2492492492492p-3,
      0.125,
      0x1.c71c71c71c71cp-4,
      0x1.999999999999ap-4,
      0x1.745d1745d1746p-4,
      0x1.5555555555555p-4,
      0x1.3b13b13b13b14p-4,
      0x1.2492492492492p-4,
      0x1.1111111111111p-4,
      0.0625,
      0x1.e1e1e1e1e1e1ep-5,
      0x1.c71c71c71c71cp-5,
      0x1.af286bca1af28p-5,
      0x1.999999999999ap-5,
      0x1.8618618618618p-5,
      0x1.745d1745d1746p-5,
      0x1.642c8590b2164p-5,
  };
  const lanes reciprocal = all(reciprocals[d]), q = a * reciprocal;
  return fused(fused(-q, all(d), a), reciprocal, q);
#else
  return a / all(d);
#endif
}

ZRT_INLINE pairs div(const pairs& a, const pairs& b, doubt& check) {
  const lanes q = a.hi / b.hi;
  const lanes r = (remainder_of(a.hi, cut_of(q), cut_of(b.hi)) + a.lo) - q * b.lo;
  const lanes t = r / (b.lo + b.hi);
  check.factor(a);
  check.in_range(b.hi);
  check.zero_or_in_range(b.lo);
  check.zero_or_in_range(q);
  check.zero_or_in_range(t);
  return closing_sum(q, t);
}

ZRT_INLINE pairs root(const pairs& a, doubt& check) {
  const lanes s = square_root(a.hi);
  const cut halves = cut_of(s);
  const lanes r = (remainder_of(a.hi, halves, halves) + a.lo) * 0.5;
  check.in_range(a.hi);
  check.sign |= (words)a.hi;
  check.zero_or_in_range(a.lo);
  return closing_sum(s, r / s);
}

/// Whether every part lies where products are exact, of values that are stored one by one.
ZRT_INLINE bool usable_factor(const quad& x) {
  const auto usable = [](double part) {
    const unsigned long long twice = __builtin_bit_cast(unsigned long long, part) << 1;
    return twice == 0 || (long long)(twice - (543ULL << 53)) >= 0;
  };
  return usable(x.hi) & usable(x.lo);
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
