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

/// |x|: the load quiets a signalling NaN; every NaN loses its sign.
template <format F>
reg magnitude(const F& x) {
  return fabs(load(x));
}

/// |a| with the sign of b. A zero or NaN b counts as positive.
template <format F>
reg sign_transfer(const F& a, const F& b) {
  const bool negative = less(load(b), 0.0L);
  const reg size = fabs(load(a));
  return negative ? fchs(size) : size;
}

/// a - b where it is zero or positive, else +0.0, also for a NaN. Not stored: 2e308 stays finite.
template <format F>
reg positive_difference(const F& a, const F& b) {
  const reg difference = load(a) - load(b);
  return greater_equal(difference, 0.0L) ? difference : 0.0L;
}

/// a - trunc(a / p) p, each operation rounded to 53 bits; a quotient of more than 53 bits leaves
/// what these roundings give. A zero or NaN p gives the library's NaN, before a is looked at.
template <format F>
reg remainder(const F& a, const F& p) {
  const reg divisor = load(p);
  if (compares_equal(divisor, 0.0L)) return quiet_nan;
  const reg dividend = load(a);
  const reg quotient = truncated(dividend / divisor);
  return dividend - quotient * divisor;
}

template <format F>
[[gnu::always_inline]] inline result<F> nearest_whole_of(const F& x) {
  return evaluated<F>(
      is_ordinary_to_round(x), []<class V>(const F& a) { return nearest_whole<V>(a); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> floor_of(const F& x) {
  return evaluated<F>(
      is_ordinary_to_round(x), []<class V>(const F& a) { return floor(load<V>(a)); }, x);
}
template <format F>
[[gnu::always_inline]] inline result<F> ceiling_of(const F& x) {
  return evaluated<F>(
      is_ordinary_to_round(x), []<class V>(const F& a) { return ceiling(load<V>(a)); }, x);
}

/// The nearest 32-bit integer, ties away from zero; out of range and NaN give 0x80000000.
template <format F>
std::int32_t nearest_integer(const F& x) {
  const reg value = load(x);
  return truncated_to_int32(greater(0.0L, value) ? value - 0.5L : value + 0.5L);
}

/// The low 16 bits of an integer result, sign-extended: nothing saturates.
std::int32_t low_half(std::int32_t value) { return static_cast<std::int16_t>(value); }

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dint)(real8 x) { return returned<double>(integral_part(x)); }
ZRT_VALUE(real4_result, aint)(real4 x) { return returned<float>(integral_part(x)); }

ZRT_VALUE(real8_result, dabs)(real8 x) { return returned<double>(magnitude(x)); }
ZRT_VALUE(real4_result, abs)(real4 x) { return returned<float>(magnitude(x)); }

ZRT_VALUE(real8_result, dsign)(real8 a, real8 b) { return returned<double>(sign_transfer(a, b)); }
ZRT_VALUE(real4_result, sign)(real4 a, real4 b) { return returned<float>(sign_transfer(a, b)); }

ZRT_VALUE(real8_result, ddim)(real8 a, real8 b) {
  return returned<double>(positive_difference(a, b));
}
ZRT_VALUE(real4_result, dim)(real4 a, real4 b) {
  return returned<float>(positive_difference(a, b));
}

// The 48-bit product is exact.
ZRT_VALUE(real8_result, dprod)(real4 a, real4 b) { return returned<double>(load(a) * load(b)); }

ZRT_VALUE(real8_result, dmod)(real8 a, real8 p) { return returned<double>(remainder(a, p)); }
ZRT_VALUE(real4_result, amod)(real4 a, real4 p) { return returned<float>(remainder(a, p)); }

ZRT_VALUE(real8_result, dnint)(real8 x) { return nearest_whole_of(x); }
ZRT_VALUE(real4_result, anint)(real4 x) { return nearest_whole_of(x); }

ZRT_VALUE(std::int32_t, idnint)(real8 x) { return nearest_integer(x); }
ZRT_VALUE(std::int32_t, jidnnt)(real8 x) { return nearest_integer(x); }
ZRT_VALUE(std::int32_t, iidnnt)(real8 x) { return low_half(nearest_integer(x)); }
ZRT_VALUE(std::int32_t, nint)(real4 x) { return nearest_integer(x); }
ZRT_VALUE(std::int32_t, jnint)(real4 x) { return nearest_integer(x); }
ZRT_VALUE(std::int32_t, inint)(real4 x) { return low_half(nearest_integer(x)); }

ZRT_VALUE(real8_result, f90floor)(real8 x) { return floor_of(x); }
ZRT_VALUE(real4_result, f90floorf)(real4 x) { return floor_of(x); }
ZRT_VALUE(std::int32_t, idfloor)(real8 x) { return truncated_to_int32(floor(load(x))); }
ZRT_VALUE(std::int32_t, ifloor)(real4 x) { return truncated_to_int32(floor(load(x))); }

ZRT_VALUE(real8_result, f90ceil)(real8 x) { return ceiling_of(x); }
ZRT_VALUE(real4_result, f90ceilf)(real4 x) { return ceiling_of(x); }
ZRT_VALUE(std::int32_t, idceil)(real8 x) { return truncated_to_int32(ceiling(load(x))); }
ZRT_VALUE(std::int32_t, iceil)(real4 x) { return truncated_to_int32(ceiling(load(x))); }
