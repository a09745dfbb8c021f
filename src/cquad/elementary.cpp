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
  *result = {mul(sine(z.re), hyperbolic_cosine(z.im)), mul(cosine(z.re), hyperbolic_sine(z.im))};
  return result;
}
ZRT_VALUE(cquad*, ccosl)(cquad* result, cquad z) {
  *result = {mul(cosine(z.re), hyperbolic_cosine(z.im)),
             mul(neg(sine(z.re)), hyperbolic_sine(z.im))};
  return result;
}
