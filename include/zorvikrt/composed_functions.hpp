/** Functions of REAL*16 that are composed, in this header, of entries and arithmetic: the same bits
 * in every build. docs/cxx.md has their errors, measured against MPFR.
 *
 *  NaNs give NaNs, infinities what <cmath> gives for them.
 */
#ifndef ZORVIKRT_COMPOSED_FUNCTIONS_HPP
#define ZORVIKRT_COMPOSED_FUNCTIONS_HPP

#include <climits>
#include <zorvikrt/functions.hpp>
#include <zorvikrt/limits.hpp>

namespace zorvikrt {

namespace detail {

inline constexpr real16 infinity = std::numeric_limits<real16>::infinity();
inline constexpr real16 invalid = std::numeric_limits<real16>::quiet_NaN();
inline constexpr real16 ln_2(0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56);
inline constexpr real16 one_over_ln_2(0x1.71547652b82fep+0, 0x1.777d0ffda0d24p-56);

/// The exponent of a finite hi that is not zero: 2**e <= |hi| < 2**(e + 1).
inline int exponent_of(double hi) {
  const int field = exponent_field(hi);
  if (field != 0) return field - 1023;
  return -1011 - __builtin_clzll(image(hi) << 1 >> 1);
}
/// 2**exponent, or the smallest double.
inline double power_of_two(int exponent) {
  if (exponent < -1074) exponent = -1074;
  return exponent < -1022 ? from_image(std::uint64_t{1} << (exponent + 1074))
                          : from_image(static_cast<std::uint64_t>(exponent + 1023) << 52);
}
/// A whole number that a double holds, in the range of an int.
inline int to_int(const real16& whole) { return static_cast<int>(whole.hi); }

}  // namespace detail

// --- Exponentials and logarithms ---------------------------------------------------------------

/** 2**x: e**(f ln 2) of the fraction f, |f| <= 1/2, scaled by the nearest whole number. */
inline real16 exp2(const real16& x) {
  if (isnan(x)) return detail::invalid;
  if (x.hi >= 1024) return detail::infinity;
  if (x.hi < -1080) return 0.0;
  const real16 whole = round(x);
  return ldexp(exp((x - whole) * detail::ln_2), detail::to_int(whole));
}

/** e**x - 1: near zero 2 sinh(x/8) e**(x/8) is that of x/4, and u (u + 2) doubles the operand
 *  twice; from |x| = 0.4 on the difference itself. */
inline real16 expm1(const real16& x) {
  if (isnan(x)) return detail::invalid;
  if (isinf(x)) return x.hi > 0 ? detail::infinity : real16(-1.0);
  if (x.hi > 710) return detail::infinity;
  if (std::abs(x.hi) < 0x1p-120) return x;
  if (std::abs(x.hi) >= 0.4) return exp(x) - 1.0;
  const real16 half = x * 0.125;
  real16 u = 2.0 * (sinh(half) * exp(half));
  u = u * (u + 2.0);
  return u * (u + 2.0);
}

/** log(1 + x): the logarithm of the rounded sum u, and what u has lost over u. */
inline real16 log1p(const real16& x) {
  if (isnan(x) || x.hi < -1) return detail::invalid;
  if (isinf(x)) return detail::infinity;
  if (std::abs(x.hi) < 0x1p-120) return x;
  const real16 u = 1.0 + x;
  if (u.hi <= 0) return u.hi < 0 ? detail::invalid : -detail::infinity;
  if (x.hi > 0x1p120) return log(x);
  return log(u) + (x - (u - 1.0)) / u;
}

/** The logarithm to base 2: the exponent, and log(m) / ln 2 of the significand m from sqrt(1/2) to
 *  sqrt(2). Exact for powers of two. */
inline real16 log2(const real16& x) {
  if (isnan(x) || x.hi < 0) return x ? detail::invalid : -detail::infinity;
  if (!x) return -detail::infinity;
  if (isinf(x)) return detail::infinity;
  int exponent = detail::exponent_of(x.hi);
  real16 significand = ldexp(x, -exponent);
  if (significand.hi > 1.4142135623730951) {
    significand = significand * 0.5;
    ++exponent;
  }
  return static_cast<double>(exponent) + log(significand) * detail::one_over_ln_2;
}

// --- Roots and sums of squares -----------------------------------------------------------------

/** The cube root: e**(log(m)/3) in REAL*8 of the significand m from 1 to 8, and one step of
 *  Halley's method, which triples its digits. */
inline real16 cbrt(const real16& x) {
  if (isnan(x)) return detail::invalid;
  if (!x || isinf(x)) return x;
  const int exponent = detail::exponent_of(x.hi);
  const int third = (exponent < 0 ? exponent - 2 : exponent) / 3;
  const real16 m = ldexp(abs(x), -3 * third);
  const double seed = static_cast<double>(__zorvik_dexp(__zorvik_dlog(m.hi) / 3));
  const real16 cube = product(seed, seed) * seed;
  const real16 root = seed + seed * ((m - cube) / (2.0 * cube + m));
  return ldexp(x.hi < 0 ? -root : root, third);
}

/** sqrt(x*x + y*y), both scaled by the exponent of the larger. */
inline real16 hypot(const real16& x, const real16& y) {
  if (isinf(x) || isinf(y)) return detail::infinity;
  if (isnan(x) || isnan(y)) return detail::invalid;
  const bool first = std::abs(x.hi) > std::abs(y.hi);
  const real16& larger = first ? x : y;
  const real16& smaller = first ? y : x;
  if (!larger) return first ? abs(larger) : abs(smaller) + abs(larger);
  const int exponent = detail::exponent_of(larger.hi);
  const real16 a = ldexp(larger, -exponent), b = ldexp(smaller, -exponent);
  return ldexp(sqrt(a * a + b * b), exponent);
}
inline real16 hypot(const real16& x, const real16& y, const real16& z) {
  return hypot(hypot(x, y), z);
}

namespace detail {

/// A sum of doubles that loses nothing: parts that do not overlap, the smallest first (Shewchuk).
class exact_sum {
 public:
  void add(double value) {
    for (int i = 0; i < count_; ++i) {
      const double s = plus(part_[i], value);
      part_[i] = sum_error(part_[i], value, s);
      value = s;
    }
    part_[count_++] = value;
  }
  void add(const real16& value) {
    add(value.lo);
    add(value.hi);
  }
  /// The nearest double and what is left, rounded.
  real16 rounded() const {
    real16 sum(0.0, 0.0);
    double rest = 0;
    for (int i = count_ - 1; i >= 0; --i) {
      const double s = plus(sum.hi, part_[i]);
      const double error = sum_error(sum.hi, part_[i], s);
      sum.hi = s;
      rest = plus(rest, error);
    }
    return closing_sum(sum.hi, rest);
  }

 private:
  double part_[12] = {};
  int count_ = 0;
};

}  // namespace detail

/** x*y + z with one rounding: the products of the parts are summed exactly. Where a product of the
 *  parts leaves 2**-500 to 2**500, x*y + z with two. */
inline real16 fma(const real16& x, const real16& y, const real16& z) {
  if (!detail::all_zero_or_between(-250, 250, x.hi, x.lo, y.hi, y.lo) ||
      !detail::all_zero_or_between(-900, 900, z.hi, z.lo))
    return x * y + z;
  detail::exact_sum sum;
  sum.add(product(x.lo, y.lo));
  sum.add(product(x.lo, y.hi));
  sum.add(product(x.hi, y.lo));
  sum.add(product(x.hi, y.hi));
  sum.add(z);
  return sum.rounded();
}

// --- Inverse hyperbolic functions --------------------------------------------------------------

/** log1p(|x| + x*x / (1 + sqrt(1 + x*x))) with the sign of x; log(2|x|) from 2**60 on. */
inline real16 asinh(const real16& x) {
  if (isnan(x)) return detail::invalid;
  if (isinf(x) || std::abs(x.hi) < 0x1p-120) return x;
  const real16 size = abs(x), square = size * size;
  const real16 result = size.hi > 0x1p60 ? log(size) + detail::ln_2
                                         : log1p(size + square / (1.0 + sqrt(1.0 + square)));
  return x.hi < 0 ? -result : result;
}

/** log1p(t + sqrt(2 t + t*t)), t = x - 1; log(2 x) from 2**60 on. */
inline real16 acosh(const real16& x) {
  if (isnan(x) || x.hi < 1) return detail::invalid;
  if (isinf(x)) return x;
  if (x.hi > 0x1p60) return log(x) + detail::ln_2;
  const real16 t = x - 1.0;
  return log1p(t + sqrt(2.0 * t + t * t));
}

/** log1p(2 |x| / (1 - |x|)) / 2 with the sign of x. */
inline real16 atanh(const real16& x) {
  const real16 size = abs(x), rest = 1.0 - size;
  if (isnan(x) || isinf(x) || rest.hi < 0) return detail::invalid;
  if (size.hi < 0x1p-120) return x;
  if (!rest) return x.hi < 0 ? -detail::infinity : detail::infinity;
  const real16 result = log1p(2.0 * size / rest) * 0.5;
  return x.hi < 0 ? -result : result;
}

// --- Rounding, remainders and neighbours -------------------------------------------------------

/** The nearest whole number, ties to even. */
inline real16 rint(const real16& x) {
  if (!isfinite(x)) return x;
  const real16 nearest = round(x);
  const real16 distance = nearest - x;
  const bool tie = std::abs(distance.hi) == 0.5 && distance.lo == 0;
  const bool odd = tie && fmod(nearest, real16(2.0));
  return odd ? nearest - copysign(real16(1.0), distance) : nearest;
}
inline real16 nearbyint(const real16& x) { return rint(x); }
/** rint as an integer, as the conversion has it beyond the range. */
inline std::int64_t llrint(const real16& x) { return static_cast<std::int64_t>(rint(x)); }
inline long lrint(const real16& x) {
  const std::int64_t value = llrint(x);
  return value < LONG_MIN || value > LONG_MAX ? LONG_MIN : static_cast<long>(value);
}

/** trunc(x) in *whole, and the rest with the sign of x. */
inline real16 modf(const real16& x, real16* whole) {
  if (isnan(x) || isinf(x)) {
    *whole = x;
    return isnan(x) ? x : copysign(real16(0.0), x);
  }
  *whole = trunc(x);
  return x - *whole;
}

/** x - n y for the whole number n nearest to x / y, ties to even, as long as n has at most 100
 *  bits; in *quotient the last 30 bits of n, with its sign. */
inline real16 remquo(const real16& x, const real16& y, int* quotient) {
  *quotient = 0;
  if (isnan(x) || isnan(y) || isinf(x) || !y) return detail::invalid;
  if (isinf(y)) return x;
  real16 n = rint(x / y), rest = fma(-n, y, x);
  // The rounded quotient may lie on the other side of a half.
  const real16 size = abs(y), half = size * 0.5, one = copysign(real16(1.0), y);
  if (rest > half) {
    rest -= size;
    n += one;
  }
  if (rest < -half) {
    rest += size;
    n -= one;
  }
  *quotient = static_cast<int>(fmod(n, real16(0x1p30)));
  return rest;
}
inline real16 remainder(const real16& x, const real16& y) {
  int quotient;
  return remquo(x, y, &quotient);
}

/** The smaller and the larger; the other operand, if one is a NaN. */
inline real16 fmin(const real16& a, const real16& b) {
  if (isnan(a)) return b;
  if (isnan(b)) return a;
  const bool ordered = isfinite(a) && isfinite(b);
  return (ordered ? b < a : b.hi < a.hi) ? b : a;
}
inline real16 fmax(const real16& a, const real16& b) {
  if (isnan(a)) return b;
  if (isnan(b)) return a;
  const bool ordered = isfinite(a) && isfinite(b);
  return (ordered ? a < b : a.hi < b.hi) ? b : a;
}

/** The neighbour of x toward y among the numbers of 106 bits: one unit of 2**-105 of the power of
 *  two in x, half of it below a power of two, and at least the smallest double. */
inline real16 nextafter(const real16& x, const real16& y) {
  if (isnan(x) || isnan(y)) return detail::invalid;
  const bool up = isfinite(x) && isfinite(y) ? x < y : x.hi < y.hi;
  const bool down = isfinite(x) && isfinite(y) ? y < x : y.hi < x.hi;
  if (!up && !down) return y;
  constexpr real16 largest = std::numeric_limits<real16>::max();
  if (isinf(x)) return up ? -largest : largest;
  if (isinf(y) && (up ? !(x < largest) : !(-largest < x))) return y;
  const double size = std::abs(x.hi);
  const bool shrinks = x && up == signbit(x);
  const bool at_power = detail::image(size) << 12 == 0;
  // Below a power of two, where lo takes away from it, the unit is the half, too.
  const bool in_lower = at_power && x.lo != 0 && (x.lo < 0) != (x.hi < 0);
  const int exponent = (x ? detail::exponent_of(size) : -1074) - 105 -
                       (in_lower || (at_power && x.lo == 0 && shrinks));
  const double unit = detail::power_of_two(exponent);
  return up ? x + unit : x - unit;
}

// --- Exponents ---------------------------------------------------------------------------------

/** The exponent of 2 in |x|; FP_ILOGB0, INT_MAX and FP_ILOGBNAN for zeros, infinities and NaNs. */
inline int ilogb(const real16& x) {
  if (isnan(x)) return FP_ILOGBNAN;
  if (isinf(x)) return INT_MAX;
  return x ? detail::exponent_of(x.hi) : FP_ILOGB0;
}
inline real16 logb(const real16& x) {
  if (isnan(x)) return detail::invalid;
  if (isinf(x)) return detail::infinity;
  return x ? real16(static_cast<double>(detail::exponent_of(x.hi))) : -detail::infinity;
}
inline real16 scalbn(const real16& x, int n) { return ldexp(x, n); }
inline real16 scalbln(const real16& x, long n) {
  return ldexp(x, n > 10000 ? 10000 : n < -10000 ? -10000 : static_cast<int>(n));
}

// --- Operands of other kinds -------------------------------------------------------------------

#define ZORVIKRT_BINARY(name)                  \
  template <class T, detail::if_number<T> = 0> \
  inline real16 name(const real16& a, T b) {   \
    return name(a, real16(b));                 \
  }                                            \
  template <class T, detail::if_number<T> = 0> \
  inline real16 name(T a, const real16& b) {   \
    return name(real16(a), b);                 \
  }
ZORVIKRT_BINARY(hypot)
ZORVIKRT_BINARY(remainder)
ZORVIKRT_BINARY(fmin)
ZORVIKRT_BINARY(fmax)
ZORVIKRT_BINARY(nextafter)
#undef ZORVIKRT_BINARY

}  // namespace zorvikrt

#endif
