// SIN, COS, TAN and COTAN of REAL*4 and REAL*8, in radians and in degrees. COTAN of what gives +0.0
// above the limit is its reciprocal.

#include "entries.hpp"
#include "real/circular_kernel.hpp"

namespace zrt::real {
namespace {

/// 1 / tan x, tan by the instruction. Where `fptan` refuses its operand, from 2**63 on, the default
/// NaN and invalid.
reg cotangent(reg x) {
  if (greater_equal(fabs(x), 0x1p63) && less(fabs(x), infinity)) return fsqrt(-1.0L);
  return 1.0L / fptan(x);
}

/// Degrees to radians, stored: no reduction of its own, no exact cases.
template <class V, format F>
[[gnu::always_inline]] inline F radians(const F& degrees) {
  return static_cast<F>(load<V>(degrees) * circular_constants<F>::radians);
}

template <format F>
bool is_ordinary(const F& x) {
  return zero_or_from(x, smallest_normal<F>);
}
template <format F>
bool are_ordinary_degrees(const F& x) {
  return zero_or_from(x, smallest_normal<F> * 64);
}

template <bool cosine, format F>
[[gnu::always_inline]] inline result<F> sine_or_cosine(const F& x) {
  return evaluated_quickly<F>([](const auto& a, auto& y) { return quick_sine<cosine>(a, y); },
                              is_ordinary<F>,
                              []<class V>(const F& a) { return sine<V>(a, cosine); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> sine_of(const F& x) {
  return sine_or_cosine<false>(x);
}
template <format F>
[[gnu::always_inline]] inline result<F> cosine_of(const F& x) {
  return sine_or_cosine<true>(x);
}
template <format F>
[[gnu::always_inline]] inline result<F> tangent_of(const F& x) {
  return evaluated<F>(
      is_ordinary(x), []<class V>(const F& a) { return tangent<V>(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> sine_of_degrees(const F& x) {
  return evaluated<F>(
      are_ordinary_degrees(x), []<class V>(const F& a) { return sine<V>(radians<V>(a), false); },
      x);
}
template <format F>
[[gnu::always_inline]] inline result<F> cosine_of_degrees(const F& x) {
  return evaluated<F>(
      are_ordinary_degrees(x), []<class V>(const F& a) { return sine<V>(radians<V>(a), true); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> tangent_of_degrees(const F& x) {
  return evaluated<F>(
      are_ordinary_degrees(x), []<class V>(const F& a) { return tangent<V>(radians<V>(a)); }, x);
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsin)(real8 x) { return sine_of(x); }
ZRT_VALUE(real8_result, dcos)(real8 x) { return cosine_of(x); }
ZRT_VALUE(real4_result, sin)(real4 x) { return sine_of(x); }
ZRT_VALUE(real4_result, cos)(real4 x) { return cosine_of(x); }

ZRT_VALUE(real8_result, sincos)(real8 x, std::int32_t flag) {
  return flag == 0 ? sine_of(x) : cosine_of(x);
}
ZRT_VALUE(real4_result, sinfcosf)(real4 x, std::int32_t flag) {
  return flag == 0 ? sine_of(x) : cosine_of(x);
}

ZRT_VALUE(real8_result, dsind)(real8 x) { return sine_of_degrees(x); }
ZRT_VALUE(real8_result, dcosd)(real8 x) { return cosine_of_degrees(x); }
ZRT_VALUE(real4_result, sind)(real4 x) { return sine_of_degrees(x); }
ZRT_VALUE(real4_result, cosd)(real4 x) { return cosine_of_degrees(x); }

ZRT_VALUE(real8_result, dtan)(real8 x) { return tangent_of(x); }
ZRT_VALUE(real4_result, tan)(real4 x) { return tangent_of(x); }
ZRT_VALUE(real8_result, dtand)(real8 x) { return tangent_of_degrees(x); }
ZRT_VALUE(real4_result, tand)(real4 x) { return tangent_of_degrees(x); }

ZRT_VALUE(real8_result, dcot)(real8 x) {
  return evaluated<double>(
      is_ordinary(x), []<class V>(const double& a) { return 1.0 / tangent<V>(a); }, x);
}
ZRT_VALUE(real4_result, cot)(real4 x) { return returned<float>(cotangent(load(x))); }
