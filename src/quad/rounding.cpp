// The whole-number, sign and remainder intrinsics of REAL*16. They work part by part; what takes
// care is a whole leading part, where the low part decides.

#include "quad/rounding.hpp"

#include "entries.hpp"
#include "quad/significand.hpp"

namespace zrt::quads {
namespace {

using steps = stored_arithmetic;

/// The whole number nearest x, ties away from zero. Keeps the sign of a zero; whole numbers,
/// infinities and NaNs pass.
reg nearest_whole(const double& x) {
  const reg value = load(x), size = fabs(value);
  if (!less(size, 0x1p52L)) return value;
  const reg whole = fabs(real::integral_part(x));
  const reg rounded = greater_equal(size - whole, 0.5L) ? whole + 1.0L : whole;
  return sign_bit(value) ? fchs(rounded) : rounded;
}

/// The nearest whole number. Of a whole hi, or a NaN, the low part decides; otherwise it counts
/// only at a tie of hi, where one that lies toward zero takes the result a step toward zero. A NaN
/// lo counts as negative there.
quad nearest(const quad& a) {
  const reg hi = load(a.hi);
  const reg q = nearest_whole(a.hi);
  if (compares_equal(hi, q)) return joined(q, nearest_whole(a.lo));
  if (fabs(q - hi) == 0.5L) {
    if (greater(hi, 0.0L)) {
      if (!greater_equal(load(a.lo), 0.0L)) return widened(q - 1.0L);
    } else if (greater(load(a.lo), 0.0L)) {
      return widened(q + 1.0L);
    }
  }
  return widened(q);
}

/// Half a unit away from zero, before a truncation. A NaN counts as negative.
quad half_away(const quad& a) {
  return greater_equal(load(a.hi), 0.0L) ? steps::add(a, 0.5L) : steps::sub(a, 0.5L);
}

/// The nearest 32-bit integer by hi of the sum alone; out of range and NaN give 0x80000000.
std::int32_t nearest_integer(const quad& a) {
  return truncated_to_int32(steps::leading(half_away(a)));
}

/// a - b, or zero where that is negative or a NaN.
quad positive_difference(const quad& a, const quad& b) {
  const quad d = steps::sub(a, b);
  return greater_equal(steps::leading(d), 0.0L) ? d : zero;
}

/// a - trunc(a / b) b. The quotient has some 106 bits; beyond, the result is what these steps
/// leave. A zero or NaN divisor gives the library's NaN.
quad remainder(const quad& a, const quad& b) {
  if (is_zero_or_nan(b)) return invalid;
  return steps::sub(a, steps::mul(truncation(steps::div(a, b)), b));
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, qint)(quad* result, quad a) { return put(result, truncation(a)); }
ZRT_VALUE(quad*, qnint)(quad* result, quad a) { return put(result, nearest(a)); }
ZRT_VALUE(std::int32_t, iqnint)(quad a) { return nearest_integer(a); }
ZRT_VALUE(std::int32_t, jiqnnt)(quad a) { return nearest_integer(a); }
// The low 16 bits: nothing saturates.
ZRT_VALUE(std::int32_t, iiqnnt)(quad a) { return static_cast<std::int16_t>(nearest_integer(a)); }
ZRT_VALUE(quad*, ceill)(quad* result, quad a) { return put(result, ceiling(a)); }
ZRT_VALUE(quad*, floorl)(quad* result, quad a) { return put(result, quads::floor(a)); }
ZRT_VALUE(std::int32_t, iceill)(quad a) { return truncated_to_int32(load(ceiling(a).hi)); }
ZRT_VALUE(std::int32_t, ifloorl)(quad a) { return truncated_to_int32(load(quads::floor(a).hi)); }

ZRT_VALUE(quad*, fabsl)(quad* result, quad a) {
  return negative(a) ? sign_flipped(result, a) : as_it_came(result, a);
}
ZRT_VALUE(quad*, copysignl)(quad* result, quad x, quad y) {
  const bool has_sign = image(x.hi) >> 63 != 0;
  return has_sign == negative(y) ? as_it_came(result, x) : sign_flipped(result, x);
}
ZRT_VALUE(quad*, fdiml)(quad* result, quad a, quad b) {
  return put(result, positive_difference(a, b));
}
ZRT_VALUE(quad*, fmodl)(quad* result, quad a, quad b) {
  return put(result, quads::remainder(a, b));
}
ZRT_VALUE(quad*, frexpl)(quad* result, quad q, std::int32_t* e) {
  const parts taken_apart = significand_and_exponent(q);
  *e = taken_apart.exponent;
  std::memcpy(&result->hi, &taken_apart.hi, sizeof taken_apart.hi);
  std::memcpy(&result->lo, &taken_apart.lo, sizeof taken_apart.lo);
  return result;
}
