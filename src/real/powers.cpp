// General powers of REAL*4 and REAL*8, two methods and two sets of special cases. Both send
// exponents that they find whole to the integer powers.

#include "entries.hpp"
#include "frame/sections.hpp"
#include "real/evaluation.hpp"
#include "real/roots.hpp"
#include "real/whole_exponent.hpp"

namespace zrt::real {
namespace {

/// The place of a REAL*8 exponent's bits.
struct exponent_parts {
  std::int32_t exponent;  // of two, the sign of y left out
  std::uint32_t low;      // the low 32 fraction bits

  explicit exponent_parts(std::uint64_t bits)
      : exponent(biased_exponent<double>(bits) - layout<double>::bias),
        low(static_cast<std::uint32_t>(bits)) {}

  /// For exponents from 21 to 52, whose units lie in the low word.
  bool whole() const { return exponent == 52 || (low & (0xFFFFFFFFu >> (exponent - 20))) == 0; }
  bool odd() const { return (low >> (52 - exponent) & 1) != 0; }
};

/// Whether the integer powers take y: a whole number below 2**31, save those from 2**21 on that end
/// in 32 zero bits and are no power of two.
bool for_integer_power(const double& y) {
  const exponent_parts parts(image(y));
  return whole_by_leading_bits(y) ||
         (parts.exponent > 20 && parts.exponent <= 30 && parts.low != 0 && parts.whole());
}

/// x**y for x > 0 as 2**t, t = y log2(x): f2xm1 of t less its nearest integer, plus one, scaled.
/// The error of t, one part in 2**64, grows with its size: some 2**-53 |t| of the result. Not
/// stored; the range is the register's. An infinite t gives the default NaN.
reg power_of_positive(reg x, reg y) {
  const reg t = fyl2x(y, x);
  const reg n = frndint(t);
  const reg f = t - n;
  const reg r = f2xm1(f) + 1.0L;
  return fscale(r, n);
}

/// x**y. A zero or NaN y gives 1.0, and so does an x of 1.0 or NaN. A negative x needs a whole y:
/// below 2**31 the integer powers serve it (which not every whole y reaches), from there on the
/// parity of y gives the sign; else the library's NaN. A zero x gives itself to a positive y,
/// +infinity otherwise.
reg power(const double& x, const double& y) {
  const reg exponent = load(y);
  if (ftst(exponent).compares_equal()) return 1.0L;
  const reg base = load(x);
  if (compares_equal(base, 1.0L)) return 1.0L;
  if (for_integer_power(y)) return integer_power(x, fistp32(exponent));
  if (greater(base, 0.0L)) return power_of_positive(base, exponent);
  if (less(base, 0.0L)) {
    const exponent_parts parts(image(y));
    if (parts.exponent <= 30) return quiet_nan;
    if (parts.exponent > 52) return power_of_positive(fchs(base), exponent);
    if (!parts.whole()) return quiet_nan;
    return negated_if(parts.odd(), power_of_positive(fchs(base), exponent));
  }
  return greater(exponent, 0.0L) ? base : infinity;
}

#include "real/power_rows.inc"

constexpr reg sixteenth = 0x1p-4L;

/// Whether 16 v leaves the range of a 32-bit integer.
bool beyond_sixteenths(reg v) { return !less(fabs(v), 0x1p27L); }

/// v cut to a multiple of 1/16, for |v| below 2**27.
reg reduced(reg v) { return truncated_whole(16.0L * v).value * sixteenth; }

/// x**y for x > 0 by Cody and Waite's POWER: log2 of the significand g from a table of 2**(-k/16)
/// and a short series, as u1 (a multiple of 1/16) + u2; the product with y as w1 (such a multiple)
/// + w2, and 2**(w1 + w2) from the table again. The result is a REAL*4, within 1.2 units of the
/// last place for small |y|; the logarithm is good to 1e-8, which a large one multiplies. Above the
/// range +infinity, where the result would be subnormal +0.0.
reg power_of_positive(image_of<float> x, const float& exponent) {
  constexpr std::int32_t half_bias = 126;          // the exponent field of [0.5, 1)
  constexpr reg log2_e_less_one = 0x1.c551dap-2L;  // 0.4426950514316559
  constexpr reg series[] = {0x1.bd51fcp-5L,        // 0.05436038225889206
                            0x1.ebe62ap-3L,        // 0.24018509685993195
                            0x1.62e422p-1L};       // 0.6931467652320862
  const std::int32_t m = biased_exponent<float>(x) - half_bias;
  const auto g_bits = (x & 0x7FFFFF) | half_bias << 23;

  // The table falls, so the row below g is found in three steps; images of positive numbers compare
  // as the numbers do.
  const auto reaches = [g_bits](int row) { return g_bits <= image(power_leading[row]); };
  std::int32_t p = reaches(8) ? 8 : 0;
  p += reaches(p + 4) ? 4 : 0;
  p += reaches(p + 2) ? 2 : 0;

  const reg g = load_image<float>(g_bits);
  const reg a = load(power_leading[p + 1]);
  reg z = ((g - a) - load(power_rest[p / 2])) / (g + a);
  z = z + z;
  const reg v = z * z;
  const reg r = v * 0x1.556eb8p-4L * z;  // 0.0833575427532196
  const reg u2 = ((r + r * log2_e_less_one) + log2_e_less_one * z) + z;
  const reg u1 = load_integer(16 * m - (p + 1)) * sixteenth;

  const reg y = load(exponent);
  const auto beyond = [](reg w) { return less(w, 0.0L) ? 0.0L : infinity; };
  if (beyond_sixteenths(y)) return beyond((u1 + u2) * y);
  const reg y1 = reduced(y);
  const reg y2 = y - y1;
  reg w = u2 * y + y2 * u1;
  reg w1 = reduced(w);
  reg w2 = w - w1;
  w = w1 + u1 * y1;
  if (beyond_sixteenths(w)) return beyond(w);
  w1 = reduced(w);
  w2 = w2 + (w - w1);
  const reg w3 = reduced(w2);
  w = w1 + w3;
  w2 = w2 - w3;
  if (beyond_sixteenths(w)) return beyond(w);
  std::int32_t sixteenths = truncated_whole(16.0L * w).integer;
  if (sixteenths > 2046) return infinity;
  if (sixteenths < -2014) return 0.0L;
  // A fraction of 0 or more gives one sixteenth to the multiple, so that 2**fraction is at most 1.
  static constexpr float steps[2] = {0.0f, 0x1p-4f};
  const bool step = !greater(0.0L, w2);
  sixteenths += step;
  w2 = w2 - load(steps[step]);
  const std::int32_t whole = sixteenths / 16 + (sixteenths > 0 ? 1 : 0);
  const reg leading = load(power_leading[16 * whole - sixteenths]);
  const reg fraction = polynomial(w2, series) * w2;
  const auto result = stored_image<float>(leading + leading * fraction);
  return load_image<float>(result + (static_cast<std::uint32_t>(whole) << 23));
}

/// x**y. A zero or NaN y gives 1.0, an x of 1.0 or NaN itself. A negative x needs a y that the
/// integer powers take, or one from 2**31 on, which is even; else the library's NaN. A zero x gives
/// +0.0 to a positive y, +infinity otherwise.
reg power(const float& x, const float& y) {
  const reg exponent = load(y);
  if (compares_equal(exponent, 0.0L)) return 1.0L;
  const reg base = load(x);
  if (compares_equal(base, 1.0L)) return base;
  if (whole_by_leading_bits(y)) return integer_power(x, truncated_to_int32(exponent));
  if (greater(base, 0.0L)) return power_of_positive(image(x), y);
  if (less(base, 0.0L)) {
    constexpr image_of<float> sign = 0x80000000;
    if (biased_exponent<float>(image(y)) - layout<float>::bias <= 30) return quiet_nan;
    return power_of_positive(image(x) ^ sign, y);
  }
  return greater(exponent, 0.0L) ? 0.0L : infinity;
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dtod)(real8 x, real8 y) { return returned<double>(power(x, y)); }
ZRT_VALUE(real4_result, ftof)(real4 x, real4 y) { return returned<float>(power(x, y)); }
