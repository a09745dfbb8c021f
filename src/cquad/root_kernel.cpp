// COMPLEX*32 modulus and square root. Both take the modulus as the larger part times
// sqrt(1 + (smaller / larger)**2), so that only a modulus beyond the range overflows.

#include "cquad/kernels.hpp"

namespace zrt::cquads {
inline namespace ZRT_MODEL {
namespace {

using A = general;

/// larger * sqrt(1 + q**2).
quad hypotenuse(const quad& larger, const quad& q) {
  return A::mul(larger, A::square_root(A::add(A::mul(q, q), 1.0)));
}

/// |z| for the square root. On the real axis it is the root of the square, unless that overflows.
quad modulus_for_root(const cquad& z) {
  const quad re = A::magnitude(z.re), im = A::magnitude(z.im);
  if (greater(A::leading(A::sub(re, im)), 0.0)) return hypotenuse(re, A::div(z.im, z.re));
  if (!quads::is_zero_or_nan(im)) return hypotenuse(im, A::div(z.re, z.im));
  const quad p = A::mul(z.re, z.re);
  return fabs(load<ordinary>(p.hi)) == plus_infinity.hi ? re : A::square_root(p);
}

}  // namespace

// The modulus. A part that is zero or a NaN leaves the other one, the imaginary part tested first;
// infinities turn the comparison of the parts into a NaN, which takes the second way.
quad* modulus(quad* result, const cquad& z) {
  if (!is_taken(z)) return x87::modulus(result, z);
  const quad a = A::magnitude(z.im), b = A::magnitude(z.re);
  const ordinary order = A::leading(A::sub(b, a));
  if (quads::is_zero_or_nan(a))
    return negative(z.re) ? sign_flipped(result, z.re) : as_it_came(result, z.re);
  if (quads::is_zero_or_nan(b))
    return negative(z.im) ? sign_flipped(result, z.im) : as_it_came(result, z.im);
  return put(result,
             greater(order, 0.0) ? hypotenuse(b, A::div(a, b)) : hypotenuse(a, A::div(b, a)));
}

// w = sqrt((|re| + |z|) / 2) and |im| / 2w, placed by the sign of re and signed by im, where -0.0
// counts as not negative. A w of zero, which NaNs and infinities give too, gives zeros.
cquad principal_root(const cquad& z) {
  if (!is_taken(z)) return x87::principal_root(z);
  const quad h = modulus_for_root(z);
  const quad w = A::square_root(A::add(A::mul(h, 0.5), A::mul(A::magnitude(z.re), 0.5)));
  if (quads::is_zero_or_nan(w)) return {w, quads::zero};
  const quad v = A::div(A::magnitude(z.im), A::mul(w, 2.0));
  const bool right = greater_equal(load<ordinary>(z.re.hi), 0.0);
  const quad second = right ? v : w;
  return {right ? w : v, greater_equal(load<ordinary>(z.im.hi), 0.0) ? second : A::neg(second)};
}

}  // namespace ZRT_MODEL
}  // namespace zrt::cquads
