// COMPLEX*32 modulus and square root. Both take the modulus as the larger part times
// sqrt(1 + (smaller / larger)**2), so that only a modulus beyond the range overflows.

#include "quad/root.hpp"

#include "cquad/cquad.hpp"
#include "entries.hpp"

namespace zrt::cquads {
namespace {

/// larger * sqrt(1 + q**2).
quad hypotenuse(const quad& larger, const quad& q) {
  return mul(larger, square_root(add(mul(q, q), 1.0L)));
}

/// The modulus. A part that is zero or a NaN leaves the other one, the imaginary part tested first;
/// infinities turn the comparison of the parts into a NaN, which takes the second way.
quad* modulus(quad* result, const cquad& z) {
  const quad a = magnitude(z.im), b = magnitude(z.re);
  const reg order = leading(sub(b, a));
  if (quads::is_zero_or_nan(a))
    return negative(z.re) ? sign_flipped(result, z.re) : as_it_came(result, z.re);
  if (quads::is_zero_or_nan(b))
    return negative(z.im) ? sign_flipped(result, z.im) : as_it_came(result, z.im);
  *result = greater(order, 0.0L) ? hypotenuse(b, div(a, b)) : hypotenuse(a, div(b, a));
  return result;
}

/// |z| for the square root. On the real axis it is the root of the square, unless that overflows.
quad modulus_for_root(const cquad& z) {
  const quad re = magnitude(z.re), im = magnitude(z.im);
  if (greater(leading(sub(re, im)), 0.0L)) return hypotenuse(re, div(z.im, z.re));
  if (!quads::is_zero_or_nan(im)) return hypotenuse(im, div(z.re, z.im));
  const quad p = mul(z.re, z.re);
  return fabs(load(p.hi)) == infinity ? re : square_root(p);
}

/// w = sqrt((|re| + |z|) / 2) and |im| / 2w, placed by the sign of re and signed by im, where -0.0
/// counts as not negative. A w of zero, which NaNs and infinities give too, gives zeros.
cquad principal_root(const cquad& z) {
  const quad h = modulus_for_root(z);
  const quad w = square_root(add(mul(h, 0.5L), mul(magnitude(z.re), 0.5L)));
  if (quads::is_zero_or_nan(w)) return {w, quads::zero};
  const quad v = div(magnitude(z.im), mul(w, 2.0L));
  const bool right = greater_equal(load(z.re.hi), 0.0L);
  const quad second = right ? v : w;
  return {right ? w : v, greater_equal(load(z.im.hi), 0.0L) ? second : neg(second)};
}

}  // namespace
}  // namespace zrt::cquads

using namespace zrt;

ZRT_VALUE(quad*, cabsl)(quad* result, cquad z) { return cquads::modulus(result, z); }
ZRT_VALUE(cquad*, csqrtl)(cquad* result, cquad z) {
  *result = cquads::principal_root(z);
  return result;
}
