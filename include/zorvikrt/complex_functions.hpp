/** Functions of COMPLEX*32: entries of the library, and what is composed of them in this header.
 *
 *  Of the composed ones the errors are a few 2**-104 of the modulus of the result, where that is
 * not small by cancellation. Branch cuts and signs on them are those of std::complex for normal
 * numbers.
 */
#ifndef ZORVIKRT_COMPLEX_FUNCTIONS_HPP
#define ZORVIKRT_COMPLEX_FUNCTIONS_HPP

#include <zorvikrt/composed_functions.hpp>

namespace zorvikrt {

// --- Parts and entries -------------------------------------------------------------------------

/** The parts. */
inline real16 real(const complex32& z) { return z.re; }
inline real16 imag(const complex32& z) { return z.im; }
/** The conjugate. */
inline complex32 conj(const complex32& z) { return {z.re, -z.im}; }
/** The modulus. */
inline real16 abs(const complex32& z) { return detail::real(__zorvik_cabsl, z); }
/** re**2 + im**2. */
inline real16 norm(const complex32& z) { return z.re * z.re + z.im * z.im; }
/** z, or the one infinity on the real axis for a z with an infinite part. */
inline complex32 proj(const complex32& z) {
  if (!isinf(z.re) && !isinf(z.im)) return z;
  return {std::numeric_limits<real16>::infinity(), copysign(real16(0.0), z.im)};
}
/** From modulus and angle. */
inline complex32 polar(const real16& modulus, const real16& angle) {
  return {modulus * cos(angle), modulus * sin(angle)};
}
/** The angle, from -pi to pi. */
inline real16 arg(const complex32& z) { return atan2(z.im, z.re); }
/** The square root of non-negative real part. */
inline complex32 sqrt(const complex32& z) { return detail::complex(__zorvik_csqrtl, z); }
/** e**z. */
inline complex32 exp(const complex32& z) { return detail::complex(__zorvik_cexpl, z); }
/** The principal logarithm. */
inline complex32 log(const complex32& z) { return detail::complex(__zorvik_clogl, z); }
/** Sine. */
inline complex32 sin(const complex32& z) { return detail::complex(__zorvik_csinl, z); }
/** Cosine. */
inline complex32 cos(const complex32& z) { return detail::complex(__zorvik_ccosl, z); }
/** z**w, and z**n by squarings. */
inline complex32 pow(const complex32& z, const complex32& w) {
  return detail::complex(__zorvik_cpowl, z, w);
}
template <class T, detail::if_number<T> = 0>
inline complex32 pow(const complex32& z, T w) {
  if constexpr (detail::is_short_integer<T>)
    return detail::complex(__zorvik_cqtoi, z, static_cast<std::int32_t>(w));
  else
    return pow(z, complex32(w));
}

// --- Composed ----------------------------------------------------------------------------------

namespace detail {
/// i z and -i z.
inline complex32 turned(const complex32& z) { return {-z.im, z.re}; }
inline complex32 turned_back(const complex32& z) { return {z.im, -z.re}; }
}  // namespace detail

/** Logarithm to base 10. */
inline complex32 log10(const complex32& z) {
  constexpr real16 one_over_ln_10(0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57);
  const complex32 natural = log(z);
  return {natural.re * one_over_ln_10, natural.im * one_over_ln_10};
}
/** Hyperbolic sine and cosine: sin and cos of i z. */
inline complex32 sinh(const complex32& z) { return detail::turned_back(sin(detail::turned(z))); }
inline complex32 cosh(const complex32& z) { return cos(detail::turned(z)); }
/** Tangent: with t = tan(re), s = sinh(im) and b = 1 + t*t, (t + i s c b) / (1 + b s*s), where
 *  c = sqrt(1 + s*s); from |im| = 40 on the imaginary part is 1 with its sign (Kahan). */
inline complex32 tan(const complex32& z) {
  if (std::abs(z.im.hi) >= 40) {
    // 4 sin(re) cos(re) e**(-2|im|) is what the real part comes to.
    const real16 size = exp(-2 * abs(z.im));
    return {4 * sin(z.re) * cos(z.re) * size, copysign(real16(1.0), z.im)};
  }
  const real16 t = tan(z.re), s = sinh(z.im);
  const real16 b = 1 + t * t, c = sqrt(1 + s * s), denominator = 1 + b * s * s;
  return {t / denominator, b * c * s / denominator};
}
inline complex32 tanh(const complex32& z) { return detail::turned_back(tan(detail::turned(z))); }
/** Arcsine and arccosine by square roots of 1 - z and 1 + z (Kahan). */
inline complex32 asin(const complex32& z) {
  const complex32 below = sqrt(1 - z), above = sqrt(1 + z);
  return {atan2(z.re, below.re * above.re - below.im * above.im),
          asinh(below.re * above.im - below.im * above.re)};
}
inline complex32 acos(const complex32& z) {
  const complex32 below = sqrt(1 - z), above = sqrt(1 + z);
  return {2 * atan2(below.re, above.re), asinh(above.re * below.im - above.im * below.re)};
}
/** Arctangent: the angle half of atan2(2 re, 1 - |z|**2), the imaginary part a quarter of
 *  log1p(4 im / (re**2 + (im - 1)**2)). */
inline complex32 atan(const complex32& z) {
  const real16 square = z.re * z.re, gap = z.im - 1;
  const real16 angle = atan2(2 * z.re, (1 - z.im) * (1 + z.im) - square);
  return {angle * 0.5, log1p(4 * z.im / (square + gap * gap)) * 0.25};
}
/** Inverse hyperbolic functions, by the circular ones of i z; arccosine by roots of z - 1 and z
 * + 1. */
inline complex32 asinh(const complex32& z) { return detail::turned_back(asin(detail::turned(z))); }
inline complex32 acosh(const complex32& z) {
  const complex32 below = sqrt(z - 1), above = sqrt(z + 1);
  return {asinh(below.re * above.re + below.im * above.im), 2 * atan2(below.im, above.re)};
}
inline complex32 atanh(const complex32& z) { return detail::turned_back(atan(detail::turned(z))); }

}  // namespace zorvikrt

#endif
