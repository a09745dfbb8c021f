// Modulus, exponential, logarithm, square root, sine and cosine of COMPLEX*8 and COMPLEX*16.
//
// Short formulas on the instructions of the x87, at 53 bits within the exponent range of the
// registers; modulus and square root, which need none, are computed on doubles where they can be.
// What NaNs, infinities and overflows give follows from the order of the steps; nothing guards it.
// Where two types differ in their special values, each has its own function.

#include "complex/models.hpp"
#include "entries.hpp"
#include "frame/sections.hpp"
#include "frame/sine_cosine.hpp"
#include "real/evaluation.hpp"
#include "real/hyperbolic.hpp"
#include "real/inverse_circular.hpp"

namespace zrt::complex {
namespace {

/// sqrt(t**2 + 1) times the larger part, t the ratio of the smaller to it.
template <class V>
[[gnu::always_inline]] inline V modulus_by_ratio(V smaller, V larger, V larger_size) {
  const V t = smaller / larger;
  return fsqrt(t * t + 1.0) * larger_size;
}

/// |z| without overflow or underflow. A part that is zero or a NaN drops out, the imaginary one
/// first; two infinities give the default NaN.
template <class V, class C>
[[gnu::always_inline]] inline V modulus(const C& z) {
  const V a = fabs(load<V>(z.re)), b = fabs(load<V>(z.im));
  if (compares_equal(b, 0.0)) return a;
  if (compares_equal(a, 0.0)) return b;
  const bool wide = greater(a, b);
  return modulus_by_ratio(wide ? b : a, wide ? a : b, wide ? a : b);
}

/// e**x (cos y, sin y). An infinite x gives NaNs; from 2**63 on y stands for its own sine and
/// cosine.
template <class C>
register_parts complex_exponential(const C& z) {
  const reg e = exponential(load(z.re));
  const sine_cosine of_y = sine_and_cosine(load(z.im));
  return {of_y.cosine * e, of_y.sine * e};
}

/// ln|z| by fyl2x with ln 2, and the angle by fpatan.
register_parts logarithm(const dcomplex& z) {
  const reg re = fyl2x(ln2<double>, modulus<reg>(z));
  return {re, fpatan(load(z.im), load(z.re))};
}

/// The same with ln 2 rounded to single and the angle of REAL*4, whose zeros and NaNs are its own.
register_parts logarithm(const fcomplex& z) {
  const reg re = fyl2x(ln2<float>, modulus<reg>(z));
  return {re, real::angle(z.im, z.re)};
}

/// sqrt((|z| + |x|) / 2) from halves, so that a modulus beyond the range does no harm.
template <class V>
[[gnu::always_inline]] inline V root_of_halves(V modulus_of_z, V x) {
  return fsqrt(0.5 * modulus_of_z + 0.5 * fabs(x));
}

/// The root of the larger part. The square of x is guarded where y is a zero or a NaN; a NaN x goes
/// through the second arm.
template <class V>
[[gnu::always_inline]] inline V larger_root(const dcomplex& z) {
  const V x = load<V>(z.re), y = load<V>(z.im);
  if (greater(fabs(x), fabs(y))) return root_of_halves(modulus_by_ratio(y, x, fabs(x)), x);
  if (!compares_equal(y, 0.0)) return root_of_halves(modulus_by_ratio(x, y, fabs(y)), x);
  if (stored<double>(x * x) == static_cast<V>(infinity)) return fsqrt(2.0 * (0.5 * fabs(x)));
  return root_of_halves(fsqrt(x * x), x);
}

/// The same for COMPLEX*8, where no square overflows: the tests run the other way round, and so
/// other operands with NaNs reach each arm.
template <class V>
[[gnu::always_inline]] inline V larger_root(const fcomplex& z) {
  const V x = load<V>(z.re), y = load<V>(z.im);
  if (greater_equal(fabs(y), fabs(x)))
    return compares_equal(y, 0.0) ? root_of_halves(fsqrt(x * x), x)
                                  : root_of_halves(modulus_by_ratio(x, y, fabs(y)), x);
  return compares_equal(x, 0.0) ? fsqrt(0.5 * fsqrt(y * y))
                                : root_of_halves(modulus_by_ratio(y, x, fabs(x)), x);
}

/// sqrt(z): the root w of the larger part, stored, and v = |y| / 2w for the other; they change
/// places for a negative or NaN x, and the imaginary part takes the sign of y. A zero or NaN w is
/// the result with +0.0.
template <class V, class F, class C>
[[gnu::always_inline]] inline parts<V> square_root(const C& z) {
  const V w = stored<F>(larger_root<V>(z));
  if (compares_equal(w, 0.0)) return {w, 0.0};
  const V x = load<V>(z.re), y = load<V>(z.im);
  const V v = stored<F>(fabs(y) / (w + w));
  const bool right = greater_equal(x, 0.0);
  return {right ? w : v, negated_if(less(y, 0.0), right ? v : w)};
}

/// (sin x cosh y, cos x sinh y): the instruction's sine and cosine rounded to the type, the
/// hyperbolic functions as the register holds them.
template <class F, class C>
register_parts sine(const C& z) {
  const auto of_y = real::hyperbolic_pair(z.im);
  const sine_cosine of_x = sine_and_cosine(load(z.re));
  return {of_y.cosine * stored<F>(of_x.sine), of_y.sine * stored<F>(of_x.cosine)};
}

/// (cos x cosh y, -(sin x sinh y)), in the same way.
template <class F, class C>
register_parts cosine(const C& z) {
  const auto of_y = real::hyperbolic_pair(z.im);
  const sine_cosine of_x = sine_and_cosine(load(z.re));
  return {of_y.cosine * stored<F>(of_x.cosine), fchs(of_y.sine * stored<F>(of_x.sine))};
}

}  // namespace
}  // namespace zrt::complex

using namespace zrt;
using namespace zrt::complex;

ZRT_VALUE(real4_result, cabs)(fcomplex z) {
  return real_by<float>([&]<class V>(std::type_identity<V>) { return modulus<V>(z); }, z);
}
ZRT_VALUE(real8_result, cdabs)(dcomplex z) {
  return real_by<double>([&]<class V>(std::type_identity<V>) { return modulus<V>(z); }, z);
}

ZRT_VALUE(complex8_result, cexp)(fcomplex z) { return returned_complex8(complex_exponential(z)); }
ZRT_VALUE(dcomplex*, cdexp)(dcomplex* result, dcomplex z) {
  return returned_complex16(result, complex_exponential(z));
}

ZRT_VALUE(complex8_result, clog)(fcomplex z) { return returned_complex8(logarithm(z)); }
ZRT_VALUE(dcomplex*, cdlog)(dcomplex* result, dcomplex z) {
  return returned_complex16(result, logarithm(z));
}

ZRT_VALUE(complex8_result, csqrt)(fcomplex z) {
  return complex8_by([&]<class V>(std::type_identity<V>) { return square_root<V, float>(z); }, z);
}
ZRT_VALUE(dcomplex*, cdsqrt)(dcomplex* result, dcomplex z) {
  return complex16_by([&]<class V>(std::type_identity<V>) { return square_root<V, double>(z); },
                      result, z);
}

ZRT_VALUE(complex8_result, csin)(fcomplex z) { return returned_complex8(sine<float>(z)); }
ZRT_VALUE(dcomplex*, cdsin)(dcomplex* result, dcomplex z) {
  return returned_complex16(result, sine<double>(z));
}

ZRT_VALUE(complex8_result, ccos)(fcomplex z) { return returned_complex8(cosine<float>(z)); }
ZRT_VALUE(dcomplex*, cdcos)(dcomplex* result, dcomplex z) {
  return returned_complex16(result, cosine<double>(z));
}
