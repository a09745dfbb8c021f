// Truncation, rounding, sign and remainder.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "entries.hpp"
#include "support/bits.hpp"
#include "support/x87_state.hpp"

using namespace support;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double a_nan = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t library_nan = 0x7FF8000000000000, default_nan = 0xFFF8000000000000;
constexpr std::uint64_t minus_zero = 0x8000000000000000;

#define EXPECT_BITS(call, expected) EXPECT_EQ(double_bits(call), bits(double{expected})) << #call

}  // namespace

TEST(Truncation, ClearsTheFraction) {
  EXPECT_BITS(__zorvik_dint(-0.5), 0.0);
  EXPECT_BITS(__zorvik_dint(-0.0), 0.0);
  EXPECT_BITS(__zorvik_aint(-0.5f), 0.0);
  EXPECT_BITS(__zorvik_dint(-inf), -inf);
  EXPECT_EQ(double_bits(__zorvik_dint(from_bits(0xFFF8000000001234u))), 0xFFF8000000001234u);
  // Both sides of 2**31, 2**32 and 2**52, where the steps change.
  for (const double whole : {0x1p31, 0x1p32, 0x1p42, 0x1p51, 0x1p52, 0x1p53, 0x1p60})
    for (const double x : {whole, std::nextafter(whole, 0), std::nextafter(whole, inf)}) {
      EXPECT_BITS(__zorvik_dint(x), std::trunc(x));
      EXPECT_BITS(__zorvik_dint(-x), -std::trunc(x));
    }
  std::mt19937_64 random(11);
  for (int i = 0; i < 200000; ++i) {
    const std::uint64_t image = (random() & 0x800FFFFFFFFFFFFF) | (1000 + random() % 80) << 52;
    const double x = from_bits(image);
    ASSERT_EQ(double_bits(__zorvik_dint(x)), bits(std::trunc(x) + 0.0)) << x;
    const float y = static_cast<float>(x);
    ASSERT_EQ(single_bits(__zorvik_aint(y)), bits(std::trunc(y) + 0.0f)) << y;
  }
  EXPECT_EQ(flags_of([] { (void)__zorvik_dint(2.5); }), 0u) << "bit work is never inexact";
}

TEST(Sign, TreatsZerosAndNansAsPositive) {
  EXPECT_EQ(double_bits(__zorvik_dabs(from_bits(0xFFF8000000000007u))), 0x7FF8000000000007u);
  EXPECT_EQ(single_bits(__zorvik_abs(-0.0f)), 0u);
  for (const double b : {0.0, -0.0, a_nan, 1.0}) {
    EXPECT_BITS(__zorvik_dsign(3.0, b), 3.0);
    EXPECT_BITS(__zorvik_dsign(-3.0, b), 3.0);
    EXPECT_BITS(__zorvik_sign(-3.0f, static_cast<float>(b)), 3.0);
  }
  EXPECT_BITS(__zorvik_dsign(3.0, -5e-324), -3.0);
  EXPECT_EQ(double_bits(__zorvik_dsign(a_nan, -1.0)), default_nan);
}

TEST(PositiveDifference, KeepsTheRegistersPrecisionAndRange) {
  for (const auto& [a, b] : {std::pair{2.0, 3.0}, {a_nan, 1.0}, {1.0, a_nan}, {inf, inf}})
    EXPECT_BITS(__zorvik_ddim(a, b), 0.0);
  EXPECT_EQ(double_bits(__zorvik_ddim(-0.0, 0.0)), minus_zero);
#if defined(__i386__)
  EXPECT_EQ(__zorvik_ddim(1e308, -1e308), 2 * static_cast<long double>(1e308));
  EXPECT_EQ(__zorvik_dim(1.0f, 0x1p-40f), 1 - 0x1p-40L);
#endif
}

TEST(Product, IsExact) {
  EXPECT_BITS(__zorvik_dprod(0x1.fffffep0f, 0x1.fffffep0f), 0x1.fffffc000002p1);
}

TEST(Remainder, HasItsSpecialValues) {
  EXPECT_BITS(__zorvik_dmod(5.5, 3.0), 2.5);
  EXPECT_BITS(__zorvik_dmod(-5.5, 3.0), -2.5);
  EXPECT_BITS(__zorvik_dmod(5.5, -3.0), 2.5);
  EXPECT_BITS(__zorvik_dmod(-6.0, 3.0), 0.0);
  EXPECT_BITS(__zorvik_dmod(-0.0, 3.0), 0.0);
  EXPECT_BITS(__zorvik_dmod(1e300, 3.0), 0.0);
  for (const double p : {0.0, -0.0, a_nan})
    EXPECT_EQ(double_bits(__zorvik_dmod(5.0, p)), library_nan);
  EXPECT_EQ(double_bits(__zorvik_amod(5.0f, 0.0f)), library_nan);
  EXPECT_EQ(double_bits(__zorvik_dmod(from_bits(0x7FF8000000000099u), 3.0)), 0x7FF8000000000099u);
  EXPECT_EQ(double_bits(__zorvik_dmod(inf, 3.0)), default_nan);
  EXPECT_EQ(double_bits(__zorvik_dmod(3.0, inf)), default_nan);
  EXPECT_EQ(flags_of([] { (void)__zorvik_dmod(inf, 3.0); }), IE + 0u);
  EXPECT_EQ(flags_of([] { (void)__zorvik_dmod(3.0, a_nan); }), 0u) << "a quiet NaN raises nothing";
}

TEST(Remainder, IsExactWhereItsProductIs) {
  // A divisor of 20 bits and a quotient below 2**30: every step is exact but the quotient, which
  // may only reach the next whole number from below.
  std::mt19937_64 random(12);
  for (int i = 0; i < 200000; ++i) {
    const double p = static_cast<double>(random() % 0xFFFFF + 1);
    const double a = static_cast<double>(random() % (std::uint64_t{1} << 50)) * 0.125;
    if (a / p >= 0x1p30) continue;
    ASSERT_EQ(double_bits(__zorvik_dmod(a, p)), bits(std::fmod(a, p))) << a << ' ' << p;
  }
}

TEST(Nearest, TakesTiesAwayFromZero) {
  EXPECT_BITS(__zorvik_dnint(0.5), 1.0);
  EXPECT_BITS(__zorvik_dnint(-0.5), -1.0);
  EXPECT_BITS(__zorvik_dnint(2.5), 3.0);
  EXPECT_BITS(__zorvik_dnint(0.49999999999999994), 1.0);  // the sum rounds up
  EXPECT_BITS(__zorvik_anint(0.49999997f), 0.0);          // the sum is exact
  EXPECT_BITS(__zorvik_dnint(4503599627370497.0), 4503599627370498.0);
  EXPECT_EQ(double_bits(__zorvik_dnint(-0.3)), minus_zero);
  EXPECT_BITS(__zorvik_dnint(-0.0), 0.0);
  EXPECT_BITS(__zorvik_dnint(-inf), -inf);
  std::mt19937_64 random(13);
  std::uniform_real_distribution<double> wide(-3e9, 3e9), narrow(-100, 100);
  for (int i = 0; i < 100000; ++i)
    for (const double x : {wide(random), std::round(narrow(random) * 4) / 4}) {
      const double rounded = std::round(x);
      ASSERT_EQ(double_bits(__zorvik_dnint(x)), bits(x == 0 ? 0.0 : rounded)) << x;
      const bool fits = rounded >= -0x1p31 && rounded < 0x1p31;
      const std::int32_t expected = fits ? static_cast<std::int32_t>(rounded) : INT32_MIN;
      ASSERT_EQ(__zorvik_idnint(x), expected) << x;
      ASSERT_EQ(__zorvik_jidnnt(x), expected);
      ASSERT_EQ(__zorvik_iidnnt(x), static_cast<std::int16_t>(expected)) << x;
    }
}

TEST(Nearest, GivesTheIntegerIndefiniteOutOfRange) {
  EXPECT_EQ(__zorvik_idnint(2147483647.0), INT32_MAX);
  EXPECT_EQ(__zorvik_idnint(2147483647.49), INT32_MAX);
  for (const double x : {2147483647.5, -2147483648.0, -2147483648.5, -1e300, a_nan, inf, -inf}) {
    EXPECT_EQ(__zorvik_idnint(x), INT32_MIN) << x;
    EXPECT_EQ(__zorvik_iidnnt(x), 0) << x;
    EXPECT_EQ(__zorvik_nint(static_cast<float>(x)), INT32_MIN) << x;
  }
  EXPECT_EQ(__zorvik_iidnnt(32768.0), -32768);
  EXPECT_EQ(__zorvik_inint(-32769.0f), 32767);
}

TEST(FloorAndCeiling, UseEachOther) {
  for (const double x : {0.0, -0.0, a_nan}) {
    EXPECT_BITS(__zorvik_f90floor(x), 0.0);
    EXPECT_BITS(__zorvik_f90ceil(x), 0.0);
    EXPECT_EQ(__zorvik_idfloor(x), 0);
  }
  EXPECT_BITS(__zorvik_f90floor(-0.5), -1.0);
  EXPECT_EQ(double_bits(__zorvik_f90ceil(-0.5)), minus_zero);
  EXPECT_BITS(__zorvik_f90ceil(5e-324), 1.0);
  EXPECT_BITS(__zorvik_f90floor(-5e-324), -1.0);
  EXPECT_BITS(__zorvik_f90floor(-inf), -inf);
  EXPECT_BITS(__zorvik_f90ceilf(HUGE_VALF), inf);
  EXPECT_EQ(__zorvik_idfloor(2147483647.5), INT32_MAX);
  EXPECT_EQ(__zorvik_idceil(2147483647.5), INT32_MIN);
  std::mt19937_64 random(14);
  for (int i = 0; i < 100000; ++i) {
    const double x = from_bits((random() & 0x800FFFFFFFFFFFFF) | (1013 + random() % 50) << 52);
    ASSERT_EQ(double_bits(__zorvik_f90floor(x)), bits(std::floor(x))) << x;
    ASSERT_EQ(double_bits(__zorvik_f90ceil(x)), bits(std::ceil(x))) << x;
    const float y = static_cast<float>(x);
    ASSERT_EQ(double_bits(__zorvik_f90floorf(y)), bits(std::floor(static_cast<double>(y)))) << y;
    if (std::fabs(x) < 2e9) {
      ASSERT_EQ(__zorvik_idceil(x), static_cast<std::int32_t>(std::ceil(x)));
      ASSERT_EQ(__zorvik_ifloor(y), static_cast<std::int32_t>(std::floor(y)));
    }
  }
}

TEST(Nearest, TruncatesUnderEveryCallersWord) {
  // Rounding upward the sum goes up; the truncation still cuts.
  const under_word upward(0x0A7F);
  EXPECT_EQ(double_bits(__zorvik_dnint(2.25)), bits(2.0));
  EXPECT_EQ(double_bits(__zorvik_dnint(-2.25)), bits(-2.0));
  EXPECT_EQ(__zorvik_idnint(2.75), 3);
  EXPECT_EQ(control_word() & 0x0F3F, 0x0A3F);
}
