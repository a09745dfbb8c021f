/** Special functions of REAL*16 under their C++ names; with the library zorvikrt_special. special.h
 *  tells operands, special values and poles.
 */
#ifndef ZORVIKRT_SPECIAL_HPP
#define ZORVIKRT_SPECIAL_HPP

#include <zorvikrt/special.h>

#include <zorvikrt/types.hpp>

namespace zorvikrt {

/** The error function, its complement, and exp(x*x) times the complement. */
inline real16 erf(const real16& x) { return detail::real(zorvikrt_special_erf, x); }
inline real16 erfc(const real16& x) { return detail::real(zorvikrt_special_erfc, x); }
inline real16 erfc_scaled(const real16& x) { return detail::real(zorvikrt_special_erfc_scaled, x); }
/** The gamma function, and the logarithm of its magnitude. */
inline real16 tgamma(const real16& x) { return detail::real(zorvikrt_special_gamma, x); }
inline real16 lgamma(const real16& x) { return detail::real(zorvikrt_special_log_gamma, x); }
/** Bessel functions of the first and second kind, of whole order. */
inline real16 j0(const real16& x) { return detail::real(zorvikrt_special_bessel_j0, x); }
inline real16 j1(const real16& x) { return detail::real(zorvikrt_special_bessel_j1, x); }
inline real16 jn(int n, const real16& x) { return detail::real(zorvikrt_special_bessel_jn, n, x); }
inline real16 y0(const real16& x) { return detail::real(zorvikrt_special_bessel_y0, x); }
inline real16 y1(const real16& x) { return detail::real(zorvikrt_special_bessel_y1, x); }
inline real16 yn(int n, const real16& x) { return detail::real(zorvikrt_special_bessel_yn, n, x); }

}  // namespace zorvikrt

#endif
