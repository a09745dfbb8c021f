// ASIN, ACOS, ATAN and ATAN2 of REAL*4 and REAL*8, in radians and in degrees. Only ATAN2 runs the
// arctangent instruction. The degree forms multiply the result as the register holds it.

#include "real/inverse_circular.hpp"

#include "entries.hpp"
#include "real/inverse_circular_kernel.hpp"

namespace zrt::real {

template <format F>
reg arcsine_or_arccosine(const F& x, int flag) {
  return arcsine<reg>(x, flag);
}
template reg arcsine_or_arccosine(const double& x, int flag);
template reg arcsine_or_arccosine(const float& x, int flag);

/// The angle by `fpatan` of |y / x|, which neither overflows nor underflows in the register; for a
/// negative x pi less that; each stored. A zero or NaN x gives +-pi/2 by the sign of y, and +0.0
/// where y is a zero or NaN too. Otherwise the sign bit of y is that of the result.
template <format F>
reg angle(const F& y, const F& x) {
  using c = arctangent_constants<F>;
  const reg abscissa = load(x);
  const reg ordinate = load(y);
  if (compares_equal(abscissa, 0.0)) {
    if (compares_equal(ordinate, 0.0)) return 0.0;
    return load(c::half_pi[less(ordinate, 0.0)]);  // loaded, else a product with it narrows to SSE
  }
  reg t = stored<F>(fpatan(fabs(ordinate / abscissa), 1.0));
  if (less(abscissa, 0.0)) t = stored<F>(c::pi - t);
  return (image(y) & sign_bit_of<F>) != 0 ? fchs(t) : t;
}
template reg angle(const double& y, const double& x);
template reg angle(const float& y, const float& x);

namespace {

/// The factor of the degree forms. Those of the REAL*4 arcsine and arccosine have that of REAL*8.
constexpr double arcsine_degrees = arctangent_constants<double>::degrees;
template <format F>
constexpr double arctangent_degrees = arctangent_constants<F>::degrees;

template <bool cosine, format F>
[[gnu::always_inline]] inline result<F> arcsine_or_arccosine_of(const F& x) {
  return evaluated_quickly<F>(
      [](const auto& a, auto& y) {
        double angle;
        if (!quick_arcsine<cosine>(a, angle)) return false;
        y = static_cast<F>(angle);
        return true;
      },
      has_ordinary_arcsine<F>, []<class V>(const F& a) { return arcsine<V>(a, cosine); }, x);
}
template <bool cosine, format F>
[[gnu::always_inline]] inline result<F> in_degrees(const F& x) {
  return evaluated_quickly<F>(
      [](const auto& a, auto& y) {
        double angle;
        if (!quick_arcsine<cosine>(a, angle)) return false;
        y = static_cast<F>(angle * arcsine_degrees);
        return true;
      },
      has_ordinary_arcsine<F>,
      []<class V>(const F& a) { return arcsine<V>(a, cosine) * arcsine_degrees; }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> arcsine_of(const F& x) {
  return arcsine_or_arccosine_of<false>(x);
}
template <format F>
[[gnu::always_inline]] inline result<F> arccosine_of(const F& x) {
  return arcsine_or_arccosine_of<true>(x);
}
template <format F>
[[gnu::always_inline]] inline result<F> arcsine_in_degrees(const F& x) {
  return in_degrees<false>(x);
}
template <format F>
[[gnu::always_inline]] inline result<F> arccosine_in_degrees(const F& x) {
  return in_degrees<true>(x);
}
template <format F>
[[gnu::always_inline]] inline result<F> arctangent_of(const F& x) {
  return evaluated<F>(
      has_ordinary_arctangent(x), []<class V>(const F& a) { return arctangent<V>(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> arctangent_in_degrees(const F& x) {
  return evaluated<F>(
      has_ordinary_arctangent(x),
      []<class V>(const F& a) { return arctangent<V>(a) * arctangent_degrees<F>; }, x);
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dasin)(real8 x) { return arcsine_of(x); }
ZRT_VALUE(real8_result, dacos)(real8 x) { return arccosine_of(x); }
ZRT_VALUE(real4_result, asin)(real4 x) { return arcsine_of(x); }
ZRT_VALUE(real4_result, acos)(real4 x) { return arccosine_of(x); }

ZRT_VALUE(real8_result, asinacos)(real8 x, std::int32_t flag) {
  return (flag & 1) == 0 ? arcsine_of(x) : arccosine_of(x);
}
ZRT_VALUE(real4_result, asinfacosf)(real4 x, std::int32_t flag) {
  return (flag & 1) == 0 ? arcsine_of(x) : arccosine_of(x);
}

ZRT_VALUE(real8_result, dasind)(real8 x) { return arcsine_in_degrees(x); }
ZRT_VALUE(real8_result, dacosd)(real8 x) { return arccosine_in_degrees(x); }
ZRT_VALUE(real4_result, asind)(real4 x) { return arcsine_in_degrees(x); }
ZRT_VALUE(real4_result, acosd)(real4 x) { return arccosine_in_degrees(x); }

ZRT_VALUE(real8_result, datan)(real8 x) { return arctangent_of(x); }
ZRT_VALUE(real4_result, atan)(real4 x) {
  return evaluated_quickly<float>([](const auto& a, auto& y) { return quick_arctangent(a, y); },
                                  has_ordinary_arctangent<float>,
                                  []<class V>(const float& a) { return arctangent<V>(a); }, x);
}
ZRT_VALUE(real8_result, datand)(real8 x) { return arctangent_in_degrees(x); }
ZRT_VALUE(real4_result, atand)(real4 x) { return arctangent_in_degrees(x); }

ZRT_VALUE(real8_result, datan2)(real8 y, real8 x) { return returned<double>(angle<double>(y, x)); }
ZRT_VALUE(real4_result, atan2)(real4 y, real4 x) { return returned<float>(angle<float>(y, x)); }
ZRT_VALUE(real8_result, datan2d)(real8 y, real8 x) {
  return returned<double>(angle<double>(y, x) * arctangent_degrees<double>);
}
ZRT_VALUE(real4_result, atan2d)(real4 y, real4 x) {
  return returned<float>(angle<float>(y, x) * arctangent_degrees<float>);
}
