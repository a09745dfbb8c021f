// EXP, LOG and LOG10 of REAL*4 and REAL*8.

#include "entries.hpp"
#include "real/exp_log_kernel.hpp"

namespace zrt::real {
namespace {

template <format F>
[[gnu::always_inline]] inline result<F> exponential_of(const F& x) {
  return evaluated_quickly<F>([](const auto& a, auto& y) { return quick_exponential(a, y); },
                              has_ordinary_exponential<F>,
                              []<class V>(const F& a) { return natural_exponential<V>(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> logarithm_of(const F& x) {
  return evaluated<F>(
      has_ordinary_logarithm(x), []<class V>(const F& a) { return natural_logarithm<V>(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> common_logarithm_of(const F& x) {
  return evaluated<F>(
      has_ordinary_logarithm(x),
      []<class V>(const F& a) { return natural_logarithm<V>(a) * logarithm_constants<F>::log10_e; },
      x);
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dexp)(real8 x) { return exponential_of(x); }
ZRT_VALUE(real4_result, exp)(real4 x) { return exponential_of(x); }

ZRT_VALUE(real8_result, dlog)(real8 x) { return logarithm_of(x); }
ZRT_VALUE(real4_result, alog)(real4 x) { return logarithm_of(x); }

ZRT_VALUE(real8_result, dlog10)(real8 x) { return common_logarithm_of(x); }
ZRT_VALUE(real4_result, alog10)(real4 x) { return common_logarithm_of(x); }
