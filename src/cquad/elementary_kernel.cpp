// COMPLEX*32 exponential, logarithm, sine and cosine: the textbook formulas over the REAL*16
// functions. Special values come out of those.

#include "cquad/elementary.hpp"
#include "cquad/kernels.hpp"
#include "quad/arctangent.hpp"
#include "quad/hyperbolic.hpp"

namespace zrt::cquads {
inline namespace ZRT_MODEL {

using A = general;

cquad exponential(const cquad& z) {
  return is_taken(z) ? exponential_of(z.re, z.im) : x87::exponential(z);
}
cquad logarithm(const cquad& z) {
  return is_taken(z) ? cquad{log_modulus(z), angle(z.im, z.re)} : x87::logarithm(z);
}
cquad sine(const cquad& z) {
  if (!is_taken(z)) return x87::sine(z);
  const sine_and_cosine of_re = both_of_angle(z.re);
  const hyperbolic_sine_and_cosine of_im = both_hyperbolic(z.im);
  return {A::mul(of_re.sine, of_im.cosine), A::mul(of_re.cosine, of_im.sine)};
}
cquad cosine(const cquad& z) {
  if (!is_taken(z)) return x87::cosine(z);
  const sine_and_cosine of_re = both_of_angle(z.re);
  const hyperbolic_sine_and_cosine of_im = both_hyperbolic(z.im);
  return {A::mul(of_re.cosine, of_im.cosine), A::mul(A::neg(of_re.sine), of_im.sine)};
}

}  // namespace ZRT_MODEL
}  // namespace zrt::cquads
