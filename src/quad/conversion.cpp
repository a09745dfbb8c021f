// REAL*16 and 64-bit integers, and the whole-number, sign and remainder intrinsics of REAL*16. They
// work part by part; what takes care is a whole leading part, where the low part decides.

#include "quad/conversion.hpp"

#include "entries.hpp"
#include "int64/conversions.hpp"

namespace zrt::quads {
namespace {

/// An unsigned integer, exactly: cut at bit 53 into two exact doubles; the closing sum sorts them.
quad from_unsigned(std::uint64_t u) {
  constexpr std::uint64_t low_bits = (std::uint64_t{1} << 53) - 1;
  if (u <= low_bits) return widened(int64::cvtulld(u));
  const std::uint64_t low = u & low_bits, high = u & ~low_bits;
  return add(widened(int64::cvtulld(low)), int64::cvtulld(high));
}

/// A signed integer, by its magnitude; a negative one flips both signs, of the zero too.
quad from_signed(std::int64_t k) {
  const auto bits = static_cast<std::uint64_t>(k);
  return k < 0 ? neg(from_unsigned(-bits)) : from_unsigned(bits);
}

// From the exponent of 2**63 on nothing fits; from that of 2**52 on hi has no fraction and lo
// counts.
constexpr int last_exponent = layout<double>::bias + 62;
constexpr int whole_exponent = layout<double>::bias + 52;

/// hi and, where it is whole, the floor of lo, cut to integers and added in 64 bits.
std::uint64_t magnitude_to_integer(const quad& m, int exponent) {
  const auto high = static_cast<std::uint64_t>(int64::cvtdll(load(m.hi)));
  if (exponent < whole_exponent) return high;
  return high + static_cast<std::uint64_t>(int64::cvtdll(real::floor(load(m.lo))));
}

/// Truncation to a signed integer; out of range, infinities and NaNs give the smallest.
std::int64_t to_signed(const quad& a) {
  const int exponent = biased_exponent<double>(image(a.hi));
  if (exponent > last_exponent) return int64::smallest;
  if (!negative(a)) return static_cast<std::int64_t>(magnitude_to_integer(a, exponent));
  return static_cast<std::int64_t>(-magnitude_to_integer(neg(a), exponent));
}

/// The same without a sign: from 2**63 on all ones, a negative operand by its two's complement.
std::uint64_t to_unsigned(const quad& a) {
  const int exponent = biased_exponent<double>(image(a.hi));
  return exponent > last_exponent ? UINT64_MAX : magnitude_to_integer(a, exponent);
}

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
  return greater_equal(load(a.hi), 0.0L) ? add(a, 0.5L) : sub(a, 0.5L);
}

/// The nearest 32-bit integer by hi of the sum alone; out of range and NaN give 0x80000000.
std::int32_t nearest_integer(const quad& a) { return truncated_to_int32(leading(half_away(a))); }

/// a - b, or zero where that is negative or a NaN.
quad positive_difference(const quad& a, const quad& b) {
  const quad d = sub(a, b);
  return greater_equal(leading(d), 0.0L) ? d : zero;
}

/// a - trunc(a / b) b. The quotient has some 106 bits; beyond, the result is what these steps
/// leave. A zero or NaN divisor gives the library's NaN.
quad remainder(const quad& a, const quad& b) {
  if (is_zero_or_nan(b)) return invalid;
  return sub(a, mul(truncation(div(a, b)), b));
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, ll2q)(quad* result, std::int64_t k) {
  *result = from_signed(k);
  return result;
}
ZRT_VALUE(quad*, ull2q)(quad* result, std::uint64_t k) {
  *result = from_unsigned(k);
  return result;
}
ZRT_VALUE(quad*, qaddk)(quad* result, quad a, std::int64_t k) {
  *result = add(a, from_signed(k));
  return result;
}
ZRT_VALUE(quad*, qsubk)(quad* result, quad a, std::int64_t k) {
  *result = sub(a, from_signed(k));
  return result;
}
ZRT_VALUE(quad*, ksubq)(quad* result, std::int64_t k, quad a) {
  *result = sub(from_signed(k), a);
  return result;
}
ZRT_VALUE(quad*, qmulk)(quad* result, quad a, std::int64_t k) {
  *result = mul(a, from_signed(k));
  return result;
}
ZRT_VALUE(quad*, qdivk)(quad* result, quad a, std::int64_t k) {
  *result = div(a, from_signed(k));
  return result;
}
ZRT_VALUE(quad*, kdivq)(quad* result, std::int64_t k, quad a) {
  *result = div(from_signed(k), a);
  return result;
}

ZRT_VALUE(std::int64_t, q2ll)(quad a) { return to_signed(a); }
ZRT_VALUE(std::uint64_t, q2ull)(quad a) { return to_unsigned(a); }

ZRT_VALUE(quad*, qint)(quad* result, quad a) {
  *result = truncation(a);
  return result;
}
ZRT_VALUE(quad*, qnint)(quad* result, quad a) {
  *result = nearest(a);
  return result;
}
ZRT_VALUE(std::int32_t, iqnint)(quad a) { return nearest_integer(a); }
ZRT_VALUE(std::int32_t, jiqnnt)(quad a) { return nearest_integer(a); }
// The low 16 bits: nothing saturates.
ZRT_VALUE(std::int32_t, iiqnnt)(quad a) { return static_cast<std::int16_t>(nearest_integer(a)); }
ZRT_VALUE(std::int64_t, kiqnnt)(quad a) { return to_signed(half_away(a)); }
ZRT_VALUE(quad*, ceill)(quad* result, quad a) {
  *result = ceiling(a);
  return result;
}
ZRT_VALUE(quad*, floorl)(quad* result, quad a) {
  *result = quads::floor(a);
  return result;
}
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
  *result = positive_difference(a, b);
  return result;
}
ZRT_VALUE(quad*, fmodl)(quad* result, quad a, quad b) {
  *result = quads::remainder(a, b);
  return result;
}
ZRT_VALUE(quad*, frexpl)(quad* result, quad q, std::int32_t* e) {
  const parts taken_apart = significand_and_exponent(q);
  *e = taken_apart.exponent;
  std::memcpy(&result->hi, &taken_apart.hi, sizeof taken_apart.hi);
  std::memcpy(&result->lo, &taken_apart.lo, sizeof taken_apart.lo);
  return result;
}
