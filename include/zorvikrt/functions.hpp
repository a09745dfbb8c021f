/** Functions of REAL*16 and COMPLEX*32, one entry of the library each.
 *
 *  entries.md tells operands, special values and methods, under the name of the entry.
 */
#ifndef ZORVIKRT_FUNCTIONS_HPP
#define ZORVIKRT_FUNCTIONS_HPP

#include <cmath>
#include <zorvikrt/limits.hpp>  // before a call of isnan looks at it in libc++

namespace zorvikrt {

// --- Functions of REAL*16 ----------------------------------------------------------------------

#define ZORVIKRT_UNARY(name, entry) \
  inline real16 name(const real16& x) { return detail::real(__zorvik_##entry, x); }
/** |x|, by the sign of hi. */
ZORVIKRT_UNARY(abs, fabsl)
/** |x|, by the sign of hi. */
ZORVIKRT_UNARY(fabs, fabsl)
/** Truncated toward zero. */
ZORVIKRT_UNARY(trunc, qint)
/** The nearest whole number, ties away from zero. */
ZORVIKRT_UNARY(round, qnint)
/** The largest whole number not above x. */
ZORVIKRT_UNARY(floor, floorl)
/** The smallest whole number not below x. */
ZORVIKRT_UNARY(ceil, ceill)
/** e**x. */
ZORVIKRT_UNARY(exp, expl)
/** Natural logarithm. */
ZORVIKRT_UNARY(log, logl)
/** Logarithm to base 10. */
ZORVIKRT_UNARY(log10, log10l)
/** Sine, x in radians. */
ZORVIKRT_UNARY(sin, sinl)
/** Cosine, x in radians. */
ZORVIKRT_UNARY(cos, cosl)
/** Tangent, x in radians. */
ZORVIKRT_UNARY(tan, tanl)
/** Cotangent, x in radians. */
ZORVIKRT_UNARY(cot, cotl)
/** Sine, x in degrees. */
ZORVIKRT_UNARY(sind, sindl)
/** Cosine, x in degrees. */
ZORVIKRT_UNARY(cosd, cosdl)
/** Tangent, x in degrees. */
ZORVIKRT_UNARY(tand, tandl)
/** Arcsine in radians. */
ZORVIKRT_UNARY(asin, asinl)
/** Arccosine in radians. */
ZORVIKRT_UNARY(acos, acosl)
/** Arctangent in radians. */
ZORVIKRT_UNARY(atan, atanl)
/** Arcsine in degrees. */
ZORVIKRT_UNARY(asind, asindl)
/** Arccosine in degrees. */
ZORVIKRT_UNARY(acosd, acosdl)
/** Arctangent in degrees. */
ZORVIKRT_UNARY(atand, atandl)
/** Hyperbolic sine. */
ZORVIKRT_UNARY(sinh, sinhl)
/** Hyperbolic cosine. */
ZORVIKRT_UNARY(cosh, coshl)
/** Hyperbolic tangent. */
ZORVIKRT_UNARY(tanh, tanhl)
#undef ZORVIKRT_UNARY

namespace detail {
[[gnu::noinline]] inline real16 root_elsewhere(real16 a) { return real(__zorvik_sqrtl, a); }
}  // namespace detail
/** Square root. */
inline real16 sqrt(const real16& x) {
  if (!detail::in_line() || !detail::certain_root(x)) return detail::root_elsewhere(x);
  return detail::root_of(x);
}

// One of the operands may be of another kind.
#define ZORVIKRT_BINARY(name, entry)                     \
  inline real16 name(const real16& a, const real16& b) { \
    return detail::real(__zorvik_##entry, a, b);         \
  }                                                      \
  template <class T, detail::if_number<T> = 0>           \
  inline real16 name(const real16& a, T b) {             \
    return name(a, real16(b));                           \
  }                                                      \
  template <class T, detail::if_number<T> = 0>           \
  inline real16 name(T a, const real16& b) {             \
    return name(real16(a), b);                           \
  }
/** |a| with the sign of b, taken by hi; a zero b counts as positive. */
ZORVIKRT_BINARY(copysign, copysignl)
/** a - b where that is not negative, else 0. */
ZORVIKRT_BINARY(fdim, fdiml)
/** a - trunc(a / b) * b. */
ZORVIKRT_BINARY(fmod, fmodl)
/** The angle of the point (b, a), in radians. */
ZORVIKRT_BINARY(atan2, atan2l)
/** The angle of the point (b, a), in degrees. */
ZORVIKRT_BINARY(atan2d, atan2dl)
#undef ZORVIKRT_BINARY

/** x**y: squarings for an integer exponent, or one whose value is whole; exp(y log x) for others.
 */
inline real16 pow(const real16& x, const real16& y) { return detail::real(__zorvik_powl, x, y); }
template <class T, detail::if_number<T> = 0>
inline real16 pow(const real16& x, T y) {
  if constexpr (detail::is_short_integer<T>)
    return detail::real(__zorvik_powli, x, static_cast<std::int32_t>(y));
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_powlk, x, y);
  else if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_powld, x, static_cast<double>(y));
  else
    return pow(x, real16(y));
}
template <class T, detail::if_number<T> = 0>
inline real16 pow(T x, const real16& y) {
  return pow(real16(x), y);
}

/** The exact product of two doubles. */
inline real16 product(double a, double b) { return detail::real(__zorvik_qprod, a, b); }
/** x * 2**n. */
inline real16 ldexp(const real16& x, int n) { return detail::real(__zorvik_ldexpl, x, n); }
/** The significand from 0.5 to 1, and the exponent of 2 in *exponent. */
inline real16 frexp(const real16& x, int* exponent) {
  std::int32_t e;
  const real16 significand = detail::real(__zorvik_frexpl, x, &e);
  *exponent = e;
  return significand;
}
/** The nearest 32-bit integer, ties away from zero; -2147483648 beyond the range. */
inline std::int32_t nint(const real16& x) { return __zorvik_iqnint(x); }
/** The nearest 64-bit integer, ties away from zero; 0x8000000000000000 beyond the range. */
inline std::int64_t llround(const real16& x) { return __zorvik_kiqnnt(x); }
/** The same for a long: of 32 bits, -2147483648 beyond the range. */
inline long lround(const real16& x) {
  if constexpr (sizeof(long) == 4)
    return nint(x);
  else
    return static_cast<long>(llround(x));
}

// --- What hi says ------------------------------------------------------------------------------
// From its image: no option of the compiler has a part in it.

constexpr bool signbit(const real16& x) { return detail::image(x.hi) >> 63 != 0; }
constexpr bool isfinite(const real16& x) { return detail::is_finite(x.hi); }
constexpr bool isinf(const real16& x) { return detail::image(x.hi) << 1 == 0xFFE0000000000000; }
constexpr bool isnan(const real16& x) { return detail::image(x.hi) << 1 > 0xFFE0000000000000; }
constexpr bool isnormal(const real16& x) {
  return isfinite(x) && detail::exponent_field(x.hi) != 0;
}
/** FP_NAN, FP_INFINITE, FP_ZERO, FP_SUBNORMAL or FP_NORMAL of <cmath>. */
constexpr int fpclassify(const real16& x) {
  if (isnan(x)) return FP_NAN;
  if (isinf(x)) return FP_INFINITE;
  if (isnormal(x)) return FP_NORMAL;
  return x ? FP_SUBNORMAL : FP_ZERO;
}
constexpr bool isunordered(const real16& a, const real16& b) { return isnan(a) || isnan(b); }

/** The relations by their names in <cmath>. */
constexpr bool isless(const real16& a, const real16& b) { return a < b; }
constexpr bool islessequal(const real16& a, const real16& b) { return a <= b; }
constexpr bool isgreater(const real16& a, const real16& b) { return a > b; }
constexpr bool isgreaterequal(const real16& a, const real16& b) { return a >= b; }
constexpr bool islessgreater(const real16& a, const real16& b) { return a < b || a > b; }

}  // namespace zorvikrt

#endif
