/** Special functions of REAL*16; library zorvikrt_special.
 *
 *  They are those of Boost.Math, computed in the library's own REAL*16 arithmetic. Operands and
 *  results are as those of the entries in zorvikrt.h: operands by value, the result through the
 *  first operand, which is also what the function returns. A NaN gives a NaN. Nothing is set or
 *  thrown: a pole or an overflow gives an infinity, a value outside the domain a NaN.
 *
 *  docs/special.md has the errors, measured against MPFR. Where the x87 control word is not the one
 *  that the library sets when it is loaded they do not hold.
 */
#ifndef ZORVIKRT_SPECIAL_H
#define ZORVIKRT_SPECIAL_H

#include <stdint.h>
#include <zorvikrt/zorvikrt.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The error function, 2/sqrt(pi) times the integral of exp(-t*t) from 0 to x. A zero gives itself,
 *  an infinity 1 with its sign. */
zorvikrt_quad* zorvikrt_special_erf(zorvikrt_quad* result, zorvikrt_quad x);
/** 1 - erf(x). Zero from 27.3 on, 2 for minus infinity. */
zorvikrt_quad* zorvikrt_special_erfc(zorvikrt_quad* result, zorvikrt_quad x);
/** exp(x*x) * erfc(x). Zero for plus infinity, infinite below -26.7. */
zorvikrt_quad* zorvikrt_special_erfc_scaled(zorvikrt_quad* result, zorvikrt_quad x);

/** The gamma function. A zero gives an infinity with its sign, a negative whole number and minus
 *  infinity a NaN. Overflow from 171.62 on. */
zorvikrt_quad* zorvikrt_special_gamma(zorvikrt_quad* result, zorvikrt_quad x);
/** The natural logarithm of |gamma(x)|. Infinite for zero, negative whole numbers and infinities. */
zorvikrt_quad* zorvikrt_special_log_gamma(zorvikrt_quad* result, zorvikrt_quad x);

/** Bessel functions of the first kind, of order 0, 1 and n; of negative n and x too. An infinity
 *  gives 0. */
zorvikrt_quad* zorvikrt_special_bessel_j0(zorvikrt_quad* result, zorvikrt_quad x);
zorvikrt_quad* zorvikrt_special_bessel_j1(zorvikrt_quad* result, zorvikrt_quad x);
zorvikrt_quad* zorvikrt_special_bessel_jn(zorvikrt_quad* result, int32_t n, zorvikrt_quad x);
/** Bessel functions of the second kind, of order 0, 1 and n. Zero gives minus infinity (plus for an
 *  odd negative n), a negative x a NaN, infinity 0. */
zorvikrt_quad* zorvikrt_special_bessel_y0(zorvikrt_quad* result, zorvikrt_quad x);
zorvikrt_quad* zorvikrt_special_bessel_y1(zorvikrt_quad* result, zorvikrt_quad x);
zorvikrt_quad* zorvikrt_special_bessel_yn(zorvikrt_quad* result, int32_t n, zorvikrt_quad x);

#ifdef __cplusplus
}
#endif

#endif
