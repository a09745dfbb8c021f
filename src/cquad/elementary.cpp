// COMPLEX*32 exponential, logarithm, sine and cosine: the textbook formulas over the REAL*16
// functions. Special values come out of those.

#include "cquad/elementary.hpp"

#include "entries.hpp"
#include "quad/arctangent.hpp"
#include "quad/hyperbolic.hpp"

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(cquad*, cexpl)(cquad* result, cquad z) {
  *result = cquads::exponential(z.re, z.im);
  return result;
}
ZRT_VALUE(cquad*, clogl)(cquad* result, cquad z) {
  *result = {cquads::log_modulus(z), angle(z.im, z.re)};
  return result;
}
ZRT_VALUE(cquad*, csinl)(cquad* result, cquad z) {
  const sine_and_cosine of_re(z.re);
  const hyperbolic_sine_and_cosine of_im(z.im);
  *result = {mul(of_re.sine, of_im.cosine), mul(of_re.cosine, of_im.sine)};
  return result;
}
ZRT_VALUE(cquad*, ccosl)(cquad* result, cquad z) {
  const sine_and_cosine of_re(z.re);
  const hyperbolic_sine_and_cosine of_im(z.im);
  *result = {mul(of_re.cosine, of_im.cosine), mul(neg(of_re.sine), of_im.sine)};
  return result;
}
