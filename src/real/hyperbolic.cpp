// SINH, COSH and TANH of REAL*4 and REAL*8.

#include "real/hyperbolic.hpp"

#include "entries.hpp"
#include "real/hyperbolic_kernel.hpp"

namespace zrt::real {
namespace {

template <format F>
[[gnu::always_inline]] inline result<F> hyperbolic_sine_of(const F& x) {
  return evaluated<F>(
      has_ordinary_hyperbolic_sine(x), []<class V>(const F& a) { return hyperbolic_sine<V>(a); },
      x);
}
template <format F>
[[gnu::always_inline]] inline result<F> hyperbolic_tangent_of(const F& x) {
  return evaluated<F>(
      has_ordinary_hyperbolic_tangent(x),
      []<class V>(const F& a) { return hyperbolic_tangent<V>(a); }, x);
}

}  // namespace

template <format F>
hyperbolic_values hyperbolic_pair(const F& operand) {
  const reg x = load(operand);
  const reg e = exponential(fabs(x));
  const reg reciprocal = 1.0 / e;
  const reg sine = greater(fabs(x), 1.0)
                       ? negated_if(is_negative<F>(image(operand)), sine_of(e, reciprocal))
                       : sine_up_to_one<F>(x);
  return {sine, cosine_of(e, reciprocal)};
}
template hyperbolic_values hyperbolic_pair(const double& x);
template hyperbolic_values hyperbolic_pair(const float& x);

}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsinh)(real8 x) { return hyperbolic_sine_of(x); }
ZRT_VALUE(real8_result, dcosh)(real8 x) { return returned<double>(hyperbolic_cosine<double>(x)); }
ZRT_VALUE(real8_result, dtanh)(real8 x) { return hyperbolic_tangent_of(x); }
ZRT_VALUE(real4_result, sinh)(real4 x) { return hyperbolic_sine_of(x); }
ZRT_VALUE(real4_result, cosh)(real4 x) { return returned<float>(hyperbolic_cosine<float>(x)); }
ZRT_VALUE(real4_result, tanh)(real4 x) { return hyperbolic_tangent_of(x); }
