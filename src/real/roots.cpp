// SQRT and integer powers of REAL*4 and REAL*8.
//
// The twins differ in method. Both roots run Heron's rule, REAL*8 on the whole operand, REAL*4 on
// its significand; the powers keep their products in registers in REAL*8 and store each one in
// REAL*4.

#include "real/roots.hpp"

#include "entries.hpp"

namespace zrt::real {
namespace {

/// The first guess of a root: the image halved, which halves the exponent and keeps the leading
/// fraction bits; within 6.1 % for normal operands.
reg root_guess(const double& x) {
  const auto high = (static_cast<std::uint32_t>(image(x) >> 32) >> 1) + 0x1FF80000;
  // The low word is zero, so that within the range of REAL*4 a single 32-bit store can carry it.
  constexpr std::uint32_t rebias = (1023 - 127) << 20;
  if (high - rebias - (1u << 20) < 254u << 20) return load_image<float>((high - rebias) << 3);
  return load_image<double>(std::uint64_t{high} << 32);
}

/// Four steps of Heron's rule y = (y + x / y) / 2 from a guess out of the image, with the factors
/// 1/2 gathered in the second and the fourth: within one unit of the last place. A subnormal is too
/// far from its guess and gets no root. Zeros and NaNs give x, negative operands the library's NaN.
reg square_root(const double& x) {
  const reg value = load(x);
  if (compares_equal(value, 0.0L)) return value;
  if (less(value, 0.0L)) return quiet_nan;
  if (value == infinity) return value;
  const reg y = root_guess(x);
  const reg a = y + value / y;
  const reg c = 0.25L * a + value / a;
  const reg d = c + value / c;
  return value / d + 0.25L * d;
}

/// Two steps of Heron's rule on the significand f in [0.5, 1) from a linear guess, then half of the
/// exponent; an odd exponent takes a factor sqrt(1/2) first. Within one unit of the last place. A
/// subnormal counts as if it had the hidden bit. Zeros and NaNs give x, negative operands the
/// library's NaN. The result is a REAL*4.
reg square_root(const float& x) {
  constexpr std::uint32_t exponent_field = 0x7F800000;
  constexpr std::int32_t half_bias = 126;  // the exponent field of [0.5, 1)
  const reg value = load(x);
  if (compares_equal(value, 0.0L)) return value;
  if (less(value, 0.0L)) return quiet_nan;
  const auto bits = image(x);
  std::int32_t n = biased_exponent<float>(bits) - half_bias;
  if (n >= 129) return infinity;
  const reg f = load_image<float>((bits & ~exponent_field) | half_bias << 23);
  const reg y0 = 0x1.2e2974p-1L * f + 0x1.ab535p-2L;  // 0.5901600122451782, 0.4173099994659424
  const reg y1 = 0.5L * (y0 + f / y0);
  reg y2 = 0.5L * (y1 + f / y1);
  if (n % 2 != 0) {
    y2 = stored<float>(y2) * 0x1.6a09e667f3bcdp-1L;  // 0.7071067811865476, of REAL*8
    ++n;
  }
  return load_image<float>(stored_image<float>(y2) + (static_cast<std::uint32_t>(n / 2) << 23));
}

/// |n|; the smallest integer counts as 2**31.
std::uint32_t size(std::int32_t n) {
  return n < 0 ? 0 - static_cast<std::uint32_t>(n) : static_cast<std::uint32_t>(n);
}

}  // namespace

/// Binary powers from the lowest bit of |n|, each product rounded to 53 bits within the exponent
/// range of the register; a negative n takes one reciprocal at the end. n = 0 gives 1.0 whatever x
/// is. A zero or NaN x gives itself for a positive n, +infinity for a negative one.
reg integer_power(const double& x, std::int32_t n) {
  if (n == 0) return 1.0L;
  reg power = load(x);
  if (ftst(power).compares_equal()) return n > 0 ? power : infinity;
  reg product = 1.0L;
  for (std::uint32_t left = size(n); left > 1; left >>= 1) {
    if (left & 1) product = product * power;
    power = power * power;
  }
  product = product * power;
  return n < 0 ? 1.0L / product : product;
}

/// The same with every product stored to single, and no test of x: 0.0 to a negative n divides.
reg integer_power(const float& x, std::int32_t n) {
  if (n == 0) return 1.0L;
  reg power = load(x);
  reg product = 1.0L;
  for (std::uint32_t left = size(n); left > 1; left >>= 1) {
    if (left & 1) product = stored<float>(product * power);
    power = stored<float>(power * power);
  }
  product = stored<float>(power * product);
  return n < 0 ? stored<float>(1.0L / product) : product;
}

}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsqrt)(real8 x) { return returned<double>(square_root(x)); }
ZRT_VALUE(real4_result, sqrt)(real4 x) { return returned<float>(square_root(x)); }

ZRT_VALUE(real8_result, dtoi)(real8 x, std::int32_t n) {
  return returned<double>(integer_power(x, n));
}
ZRT_VALUE(real4_result, ftoi)(real4 x, std::int32_t n) {
  return returned<float>(integer_power(x, n));
}
