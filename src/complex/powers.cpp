// Powers with a complex base: COMPLEX*8 and COMPLEX*16 to an INTEGER*4 and to their own type.

#include "complex/parts.hpp"
#include "entries.hpp"
#include "frame/sections.hpp"
#include "frame/sine_cosine.hpp"
#include "real/inverse_circular.hpp"
#include "real/whole_exponent.hpp"

namespace zrt::complex {
namespace {

/// z**n by binary powers from the lowest bit, in registers. A negative n starts from the
/// reciprocal, its parts stored; the smallest integer counts as -2**31. A base of zeros or NaNs
/// alone gives (1.0, 0.0) for n = 0 and (0.0, 0.0) for any other n.
template <class F, class C>
register_parts integer_power(const C& z, std::int32_t n) {
  reg x = load(z.re), y = load(z.im);
  if (both_compare_equal_to_zero(x, y)) return {n == 0 ? 1.0L : 0.0L, 0.0L};
  auto left = static_cast<std::uint32_t>(n);
  if (n < 0) {
    const reg d = x * x + y * y;
    x = stored<F>(x / d);
    y = stored<F>(fchs(y) / d);
    left = 0 - left;
  }
  reg re = 1.0L, im = 0.0L;
  for (; left != 0; left >>= 1) {
    if (left & 1) {
      const reg product = re * x - im * y;
      im = re * y + im * x;
      re = product;
    }
    // The last square is not used, but the flags that it raises are part of the result.
    const reg square = x * x - y * y;
    y = x * y + x * y;
    x = square;
  }
  return {re, im};
}

/// log z: ln|z| with no scaling, and the angle by fpatan.
register_parts logarithm(const dcomplex& z) {
  const reg x = load(z.re), y = load(z.im);
  const reg size = fyl2x(ln2<double>, fsqrt(x * x + y * y));
  return {size, fpatan(y, x)};
}

/// The same with ln 2 rounded to single, ln|z| stored, and the angle of REAL*4.
register_parts logarithm(const fcomplex& z) {
  const reg x = load(z.re), y = load(z.im);
  const reg size = stored<float>(fyl2x(ln2<float>, fsqrt(x * x + y * y)));
  return {size, real::angle(z.im, z.re)};
}

/// z**w = exp(w log z). 'Nothing' is a value whose parts are zeros or NaNs. Where z is nothing the
/// result is (0.0, 0.0), and where w is nothing as well the library's NaN twice. Where the
/// imaginary part of w is a zero or a NaN, it is left out: a whole real part goes to the integer
/// power, any other into a product with log z of two multiplications instead of four.
template <class F, class C>
register_parts power(const C& z, const C& w) {
  const bool zero_base = both_compare_equal_to_zero(load(z.re), load(z.im));
  const reg c = load(w.re), d = load(w.im);
  const bool real_exponent = compares_equal(d, 0.0L);
  if (zero_base) {
    const bool zero_exponent = compares_equal(c, 0.0L) && real_exponent;
    const reg both = zero_exponent ? quiet_nan : 0.0L;
    return {both, both};
  }
  if (real_exponent && real::whole_by_leading_bits(w.re))
    return integer_power<F>(z, truncated_to_int32(c));
  const register_parts log = logarithm(z);
  const reg u = real_exponent ? log.re * c : log.re * c - log.im * d;
  const reg v = real_exponent ? log.im * c : log.re * d + log.im * c;
  const reg e = exponential(u);
  const sine_cosine of_v = sine_and_cosine(v);
  return {of_v.cosine * e, of_v.sine * e};
}

}  // namespace
}  // namespace zrt::complex

using namespace zrt;
using namespace zrt::complex;

ZRT_VALUE(complex8_result, ctoi)(fcomplex z, std::int32_t n) {
  return returned_complex8(integer_power<float>(z, n));
}
ZRT_VALUE(dcomplex*, cdtoi)(dcomplex* result, dcomplex z, std::int32_t n) {
  return returned_complex16(result, integer_power<double>(z, n));
}

ZRT_VALUE(complex8_result, ctoc)(fcomplex z, fcomplex w) {
  return returned_complex8(power<float>(z, w));
}
ZRT_VALUE(dcomplex*, cdtocd)(dcomplex* result, dcomplex z, dcomplex w) {
  return returned_complex16(result, power<double>(z, w));
}
