// Product, quotient, imaginary part and conjugate of COMPLEX*8 and COMPLEX*16.
//
// Everything runs at 53 bits within the exponent range of the registers; a value meets the width of
// its type when it is stored into the result.

#include "complex/models.hpp"
#include "entries.hpp"

namespace zrt::complex {
namespace {

/// The textbook product, with no recovery of infinities.
template <class C>
register_parts product(const C& a, const C& b) {
  const reg ar = load(a.re), ai = load(a.im), br = load(b.re), bi = load(b.im);
  return {ar * br - ai * bi, ai * br + ar * bi};
}

/// Smith's quotient with one ratio r, of the smaller to the larger part of the divisor; two
/// divisions by d. A tie and a NaN take the second form. A divisor of zeros or NaNs alone gives the
/// library's NaN twice, whatever the numerator.
template <class V, class C>
[[gnu::always_inline]] inline parts<V> quotient(const C& a, const C& b) {
  const V br = load<V>(b.re), bi = load<V>(b.im);
  if (both_compare_equal_to_zero(fabs(br), fabs(bi)))
    return {static_cast<V>(quiet_nan), static_cast<V>(quiet_nan)};
  const V ar = load<V>(a.re), ai = load<V>(a.im);
  if (greater(fabs(br), fabs(bi))) {
    const V r = bi / br;
    const V d = bi * r + br;
    return {(ai * r + ar) / d, (ai - r * ar) / d};
  }
  const V r = br / bi;
  const V d = br * r + bi;
  return {(ar * r + ai) / d, (r * ai - ar) / d};
}

}  // namespace
}  // namespace zrt::complex

using namespace zrt;
using namespace zrt::complex;

// Where a call takes less than the test of its operands would, it stays with the registers.
ZRT_VALUE(complex8_result, cmul)(fcomplex a, fcomplex b) {
  return returned_complex8(product(a, b));
}
ZRT_VALUE(dcomplex*, cdmul)(dcomplex* result, dcomplex a, dcomplex b) {
  return returned_complex16(result, product(a, b));
}

ZRT_VALUE(complex8_result, cdiv)(fcomplex a, fcomplex b) {
  return returned_complex8(quotient<reg>(a, b));
}
ZRT_VALUE(dcomplex*, cddiv)(dcomplex* result, dcomplex a, dcomplex b) {
  return complex16_by([&]<class V>(std::type_identity<V>) { return quotient<V>(a, b); }, result, a,
                      b);
}

ZRT_VALUE(real4_result, aimag)(fcomplex z) { return returned<float>(load(z.im)); }
ZRT_VALUE(real8_result, dimag)(dcomplex z) { return returned<double>(load(z.im)); }

// The real part of a COMPLEX*8 is copied, that of a COMPLEX*16 loaded and stored, which quiets a
// signalling NaN. The sign of a NaN flips in both.
ZRT_VALUE(complex8_result, conjg)(fcomplex z) {
  return returned_complex(image(z.re), stored_image<float>(fchs(load(z.im))));
}
ZRT_VALUE(dcomplex*, dconjg)(dcomplex* result, dcomplex z) {
  return returned_complex16(result, register_parts{load(z.re), fchs(load(z.im))});
}
