// Product, quotient and root of REAL*16 in each model.

#include "quad/by_processor.hpp"

#if defined(__x86_64__)

namespace zrt::quads {
inline namespace ZRT_MODEL {

quad* product(quad* result, double a, double b) {
  return put(result, general::product(load<ordinary>(a), load<ordinary>(b)));
}
quad* mul(quad* result, quad a, quad b) { return put(result, general::mul(a, b)); }
quad* mul(quad* result, quad a, double d) {
  return put(result, general::mul(a, load<ordinary>(d)));
}
quad* div(quad* result, quad a, quad b) { return put(result, general::div(a, b)); }
quad* div(quad* result, quad a, double d) {
  return put(result, general::div(a, load<ordinary>(d)));
}
quad* div(quad* result, double d, quad b) {
  return put(result, general::div(load<ordinary>(d), b));
}
quad* square_root(quad* result, quad a) { return put(result, general::square_root(a)); }

}  // namespace ZRT_MODEL
}  // namespace zrt::quads

#endif
