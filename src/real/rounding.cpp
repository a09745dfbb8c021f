// AINT, ABS, SIGN, DIM, DPROD, MOD, ANINT, NINT, FLOOR and CEILING of REAL*4 and REAL*8.
//
// Both formats compute in the same 53-bit arithmetic, so the twins are one kernel. Where a result
// is not stored it keeps the register's precision and range: amod and dim hand back more than a
// single.

#include "real/rounding.hpp"

#include "entries.hpp"
#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {
namespace {

template <format F>
[[gnu::always_inline]] inline result<F> integral_part_of(const F& x) {
  return quickly<result<F>>([](const auto& a, auto& y) { return quick_integral_part(a, y); },
                            [](const F& a) { return returned<F>(integral_part(a)); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> magnitude_of(const F& x) {
  return quickly<result<F>>([](const auto& a, auto& y) { return quick_magnitude(a, y); },
                            [](const F& a) { return returned<F>(magnitude(a)); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> sign_transfer_of(const F& a, const F& b) {
  return quickly<result<F>>(
      [](const auto& c, const auto& d, auto& y) { return quick_sign_transfer(c, d, y); },
      [](const F& c, const F& d) { return returned<F>(sign_transfer(c, d)); }, a, b);
}
template <format F>
[[gnu::always_inline]] inline result<F> positive_difference_of(const F& a, const F& b) {
  return quickly<result<F>>(
      [](const auto& c, const auto& d, auto& y) { return quick_positive_difference(c, d, y); },
      [](const F& c, const F& d) { return returned<F>(positive_difference(c, d)); }, a, b);
}
template <format F>
[[gnu::always_inline]] inline result<F> remainder_of(const F& a, const F& p) {
  return quickly<result<F>>(
      [](const auto& c, const auto& d, auto& y) { return quick_remainder(c, d, y); },
      [](const F& c, const F& d) { return returned<F>(remainder(c, d)); }, a, p);
}

template <format F>
[[gnu::always_inline]] inline result<F> nearest_whole_of(const F& x) {
  return evaluated_quickly<F>([](const auto& a, auto& y) { return quick_nearest_whole(a, y); },
                              is_ordinary_to_round<F>,
                              []<class V>(const F& a) { return nearest_whole<V>(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> floor_of(const F& x) {
  return evaluated_quickly<F>([](const auto& a, auto& y) { return quick_floor(a, y); },
                              is_ordinary_to_round<F>,
                              []<class V>(const F& a) { return floor(load<V>(a)); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> ceiling_of(const F& x) {
  return evaluated_quickly<F>([](const auto& a, auto& y) { return quick_ceiling(a, y); },
                              is_ordinary_to_round<F>,
                              []<class V>(const F& a) { return ceiling(load<V>(a)); }, x);
}

template <format F>
[[gnu::always_inline]] inline std::int32_t nearest_integer_of(const F& x) {
  return quickly<std::int32_t>([](const auto& a, auto& y) { return quick_nearest_integer(a, y); },
                               [](const F& a) { return nearest_integer(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline std::int32_t integer_floor_of(const F& x) {
  return quickly<std::int32_t>([](const auto& a, auto& y) { return quick_integer_floor(a, y); },
                               [](const F& a) { return truncated_to_int32(floor(load(a))); }, x);
}
template <format F>
[[gnu::always_inline]] inline std::int32_t integer_ceiling_of(const F& x) {
  return quickly<std::int32_t>([](const auto& a, auto& y) { return quick_integer_ceiling(a, y); },
                               [](const F& a) { return truncated_to_int32(ceiling(load(a))); }, x);
}

/// The low 16 bits of an integer result, sign-extended: nothing saturates.
std::int32_t low_half(std::int32_t value) { return static_cast<std::int16_t>(value); }

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dint)(real8 x) { return integral_part_of(x); }
ZRT_VALUE(real4_result, aint)(real4 x) { return integral_part_of(x); }

ZRT_VALUE(real8_result, dabs)(real8 x) { return magnitude_of(x); }
ZRT_VALUE(real4_result, abs)(real4 x) { return magnitude_of(x); }

ZRT_VALUE(real8_result, dsign)(real8 a, real8 b) { return sign_transfer_of(a, b); }
ZRT_VALUE(real4_result, sign)(real4 a, real4 b) { return sign_transfer_of(a, b); }

ZRT_VALUE(real8_result, ddim)(real8 a, real8 b) { return positive_difference_of(a, b); }
ZRT_VALUE(real4_result, dim)(real4 a, real4 b) { return positive_difference_of(a, b); }

ZRT_VALUE(real8_result, dprod)(real4 a, real4 b) {
  return quickly<real8_result>(
      [](const auto& c, const auto& d, auto& y) { return quick_product(c, d, y); },
      [](const float& c, const float& d) { return returned<double>(load(c) * load(d)); }, a, b);
}

ZRT_VALUE(real8_result, dmod)(real8 a, real8 p) { return remainder_of(a, p); }
ZRT_VALUE(real4_result, amod)(real4 a, real4 p) { return remainder_of(a, p); }

ZRT_VALUE(real8_result, dnint)(real8 x) { return nearest_whole_of(x); }
ZRT_VALUE(real4_result, anint)(real4 x) { return nearest_whole_of(x); }

ZRT_VALUE(std::int32_t, idnint)(real8 x) { return nearest_integer_of(x); }
ZRT_VALUE(std::int32_t, jidnnt)(real8 x) { return nearest_integer_of(x); }
ZRT_VALUE(std::int32_t, iidnnt)(real8 x) { return low_half(nearest_integer_of(x)); }
ZRT_VALUE(std::int32_t, nint)(real4 x) { return nearest_integer_of(x); }
ZRT_VALUE(std::int32_t, jnint)(real4 x) { return nearest_integer_of(x); }
ZRT_VALUE(std::int32_t, inint)(real4 x) { return low_half(nearest_integer_of(x)); }

ZRT_VALUE(real8_result, f90floor)(real8 x) { return floor_of(x); }
ZRT_VALUE(real4_result, f90floorf)(real4 x) { return floor_of(x); }
ZRT_VALUE(std::int32_t, idfloor)(real8 x) { return integer_floor_of(x); }
ZRT_VALUE(std::int32_t, ifloor)(real4 x) { return integer_floor_of(x); }

ZRT_VALUE(real8_result, f90ceil)(real8 x) { return ceiling_of(x); }
ZRT_VALUE(real4_result, f90ceilf)(real4 x) { return ceiling_of(x); }
ZRT_VALUE(std::int32_t, idceil)(real8 x) { return integer_ceiling_of(x); }
ZRT_VALUE(std::int32_t, iceil)(real4 x) { return integer_ceiling_of(x); }
