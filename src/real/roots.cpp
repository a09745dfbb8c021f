// SQRT of REAL*4 and REAL*8.

#include "entries.hpp"
#include "real/roots_kernel.hpp"

namespace zrt::real {
namespace {

template <format F>
[[gnu::always_inline]] inline result<F> root_of(const F& x) {
  return evaluated_quickly<F>([](const auto& a, auto& y) { return quick_root(a, y); },
                              has_ordinary_root<F>,
                              []<class V>(const F& a) { return square_root<V>(a); }, x);
}

#if defined(__i386__)
/// What the quick root leaves: apart, so that the entry saves no register for it.
[[gnu::noinline]] reg root_by_steps(float x) { return square_root<reg>(x); }

[[gnu::always_inline]] inline reg root_of(const float& x) {
  reg y;
  return __builtin_expect(quick_root(x, y), true) ? y : root_by_steps(x);
}
#endif

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsqrt)(real8 x) { return root_of(x); }
ZRT_VALUE(real4_result, sqrt)(real4 x) { return root_of(x); }
