// REAL*4 and REAL*8: identities, second ways and random operands. Single cases are rows.

#include <cmath>
#include <random>

#include "entries.hpp"
#include "frame/x87.hpp"
#include "support/results.hpp"

using namespace support;

namespace {

template <class Operand>
void expect_parity(auto entry, Operand x, bool odd) {
  const auto size = entry(x);
  const auto mirrored = entry(-x);
  EXPECT_REGISTER(odd ? -mirrored : mirrored, size) << x;
}

/// A value of either sign with an exponent from `low` to `high`.
double drawn(std::mt19937_64& random, int low, int high) {
  const auto span = static_cast<std::uint64_t>(high - low + 1);
  const auto exponent = static_cast<std::uint64_t>(1023 + low) + random() % span;
  return from_bits((random() & 0x800FFFFFFFFFFFFF) | exponent << 52);
}

}  // namespace

TEST(Real, IsOddOrEvenInEveryQuadrantAndRange) {
  for (double x = 0.05; x < 400; x *= 1.07) {
    const float single = static_cast<float>(x);
    for (const auto entry : {__zorvik_dsin, __zorvik_dtan, __zorvik_dcot, __zorvik_datan,
                             __zorvik_dsinh, __zorvik_dtanh})
      expect_parity(entry, x, true);
    for (const auto entry : {__zorvik_dcos, __zorvik_dcosh}) expect_parity(entry, x, false);
    for (const auto entry : {__zorvik_sin, __zorvik_tan, __zorvik_atan, __zorvik_tanh})
      expect_parity(entry, single, true);
    for (const auto entry : {__zorvik_cos, __zorvik_cosh}) expect_parity(entry, single, false);
    const long double s = __zorvik_dsin(x), c = __zorvik_dcos(x);
    EXPECT_NEAR(static_cast<double>(s * s + c * c), 1.0, 0x1p-50) << x;
    EXPECT_NEAR(static_cast<double>(__zorvik_dtan(x) * __zorvik_dcot(x)), 1.0, 0x1p-51) << x;
  }
}

TEST(Real, FlagsOfTheKernelsChooseAFunction) {
  for (const double x : {-0.8, -0.3, 0.3, 0.8}) {
    const float single = static_cast<float>(x);
    for (const int flag : {0, 1, 2, -1}) {  // the arcsine looks at the low bit alone
      const bool low = flag & 1, any = flag != 0;
      EXPECT_REGISTER(__zorvik_asinacos(x, flag), low ? __zorvik_dacos(x) : __zorvik_dasin(x));
      EXPECT_REGISTER(__zorvik_asinfacosf(single, flag),
                      low ? __zorvik_acos(single) : __zorvik_asin(single));
      EXPECT_REGISTER(__zorvik_sincos(x, flag), any ? __zorvik_dcos(x) : __zorvik_dsin(x));
      EXPECT_REGISTER(__zorvik_sinfcosf(single, flag),
                      any ? __zorvik_cos(single) : __zorvik_sin(single));
    }
  }
}

TEST(Real, CommonLogarithmIsTheNaturalTimesItsFactor) {
  for (double x = 0.01; x < 40; x *= 1.37) {
    EXPECT_REGISTER(__zorvik_dlog10(x), __zorvik_dlog(x) * 0x1.bcb7b1526e50ep-2L);
#if defined(__i386__)
    const float single = static_cast<float>(x);
    EXPECT_REGISTER(__zorvik_alog10(single), __zorvik_alog(single) * 0x1.bcb7b2p-2L);
#endif
  }
}

TEST(Real, AngleAgreesWithTheArctangent) {
  constexpr double pi = 3.141592653589793;
  for (double y = -3; y < 3; y += 0.37)
    for (double x = 0.2; x < 3; x += 0.31) {
      const double right = static_cast<double>(__zorvik_datan2(y, x));
      EXPECT_NEAR(right, static_cast<double>(__zorvik_datan(y / x)), 0x1p-51);
      EXPECT_NEAR(static_cast<double>(__zorvik_datan2(y, -x)), (y < 0 ? -pi : pi) - right, 0x1p-50);
    }
}

TEST(Real, IntegerPowersMultiplyFromTheLowestBit) {
  for (const double x : {1.1, -0.3, 7.77}) {
    const long double x2 = static_cast<long double>(x) * x, x4 = x2 * x2, x8 = x4 * x4;
    EXPECT_REAL8(__zorvik_dtoi(x, 7), static_cast<double>(x * x2 * x4));
    EXPECT_REAL8(__zorvik_dtoi(x, 13), static_cast<double>(x * x4 * x8));
    EXPECT_REAL8(__zorvik_dtoi(x, -13), static_cast<double>(1.0L / (x * x4 * x8)));
    const auto product = [](long double a, long double b) { return zrt::stored<float>(a * b); };
    const float single = static_cast<float>(x);
    const long double s = zrt::load(single), s2 = product(s, s), s4 = product(s2, s2);
    const long double seventh = product(product(s, s2), s4);
    EXPECT_REAL4(__zorvik_ftoi(single, 7), seventh);
    EXPECT_REAL4(__zorvik_ftoi(single, -7), 1.0L / seventh);
  }
}

TEST(Real, PowerOfReal4IsMonotonicAcrossTheRowsOfItsTable) {
  float last = 0;
  for (float x = 0.5f; x < 1.0f; x += 0x1p-10f) {
    const float power = static_cast<float>(__zorvik_ftof(x, 2.5f));
    EXPECT_GT(power, last) << x;
    last = power;
  }
}

// Against the C library, which has other ways: fractions, halves and magnitudes up to 2**66.
TEST(Rounding, AgreesWithTheCLibrary) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 200000; ++i) {
    double x = drawn(random, -10, 66);
    if (i % 4 == 0) x = std::round(std::fmod(x, 0x1p40) * 4) / 4;
    const float y = static_cast<float>(x);
    const double nearest = x == 0 ? 0.0 : std::round(x);
    ASSERT_EQ(double_bits(__zorvik_dint(x)), bits(std::trunc(x) + 0.0)) << x;
    ASSERT_EQ(single_bits(__zorvik_aint(y)), bits(std::trunc(y) + 0.0f)) << y;
    if (std::fabs(x) < 0x1p51) {
      ASSERT_EQ(double_bits(__zorvik_dnint(x)), bits(nearest)) << x;
    }
    const bool fits = nearest >= -0x1p31 && nearest < 0x1p31;
    const std::int32_t integer = fits ? static_cast<std::int32_t>(nearest) : INT32_MIN;
    ASSERT_EQ(__zorvik_idnint(x), integer) << x;
    ASSERT_EQ(__zorvik_iidnnt(x), static_cast<std::int16_t>(integer)) << x;
    if (x != 0) {
      ASSERT_EQ(double_bits(__zorvik_f90floor(x)), bits(std::floor(x))) << x;
      ASSERT_EQ(double_bits(__zorvik_f90ceil(x)), bits(std::ceil(x))) << x;
    }
    if (std::fabs(x) < 2e9) {
      ASSERT_EQ(__zorvik_idceil(x), static_cast<std::int32_t>(std::ceil(x))) << x;
      ASSERT_EQ(__zorvik_ifloor(y), static_cast<std::int32_t>(std::floor(y))) << y;
    }
  }
}

TEST(Rounding, RemainderIsExactWhereItsProductIs) {
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

TEST(Rounding, TruncatesUnderEveryCallersWord) {
  // Rounding upward the sum goes up; the truncation still cuts.
  const under_word upward(0x0A7F);
  EXPECT_REAL8(__zorvik_dnint(2.25), 2.0);
  EXPECT_REAL8(__zorvik_dnint(-2.25), -2.0);
  EXPECT_EQ(__zorvik_idnint(2.75), 3);
  EXPECT_EQ(control_word() & 0x0F3F, 0x0A3F);
}
