// SQRT and integer powers of REAL*4 and REAL*8.

#include <cstdint>

#include "entries.hpp"
#include "frame/x87.hpp"
#include "support/results.hpp"

using namespace support;

TEST(SquareRoot, SpecialValues) {
  for (const double x : {0.0, -0.0, nan8, -nan8, infinity8}) {
    EXPECT_REAL8(__zorvik_dsqrt(x), x);
    EXPECT_REAL4(__zorvik_sqrt(static_cast<float>(x)), static_cast<float>(x));
  }
  for (const double x : {-1.0, -1e-300, -infinity8}) EXPECT_REAL8(__zorvik_dsqrt(x), nan8);
  for (const float x : {-1.0f, -1e-30f, -infinity4}) EXPECT_REAL4(__zorvik_sqrt(x), nan4);
  EXPECT_EQ(flags_of([] { __zorvik_dsqrt(-1.0); }), 0u);
  EXPECT_EQ(flags_of([] { __zorvik_sqrt(-1.0f); }), 0u);
}

TEST(SquareRoot, OfSquaresIsExact) {
  for (int i = 1; i < 3000; ++i) {
    const double root = i / 64.0;
    EXPECT_REAL8(__zorvik_dsqrt(root * root), root);
    EXPECT_REAL4(__zorvik_sqrt(static_cast<float>(i * i)), static_cast<float>(i));
  }
}

TEST(SquareRoot, OverTheWholeRangeOfExponents) {
  // The root scales with the operand: whichever way the guess or the exponent is put together.
  const long double eight[] = {__zorvik_dsqrt(1.5), __zorvik_dsqrt(3.0)};
  const long double four[] = {__zorvik_sqrt(1.5f), __zorvik_sqrt(3.0f)};
  for (int e = -511; e <= 511; ++e)
    for (int i = 0; i < 2; ++i)
      EXPECT_EQ(double_bits(__zorvik_dsqrt(__builtin_ldexp(i ? 3.0 : 1.5, 2 * e))),
                double_bits(__builtin_ldexpl(eight[i], e)))
          << e;
  for (int e = -63; e <= 62; ++e)
    for (int i = 0; i < 2; ++i)
      EXPECT_EQ(single_bits(__zorvik_sqrt(__builtin_ldexpf(i ? 3.0f : 1.5f, 2 * e))),
                single_bits(__builtin_ldexpl(four[i], e)))
          << e;
}

TEST(SquareRoot, IsNotCorrectlyRoundedAndDoesNotServeSubnormals) {
  EXPECT_REAL8(__zorvik_dsqrt(2.0), from_bits(std::uint64_t{0x3FF6A09E667F3BCC}));
  EXPECT_REAL8(__zorvik_dsqrt(1.7976931348623157e+308), 1.3407807929942597e+154);
  EXPECT_REAL4(__zorvik_sqrt(3.4028234663852886e+38f), 1.8446744073709552e+19f);
  EXPECT_REAL8(__zorvik_dsqrt(from_bits(std::uint64_t{1})), 6.99219443550043e-156);
  EXPECT_REAL4(__zorvik_sqrt(from_bits(1u)), 7.666467598445728e-20f);
}

TEST(IntegerPower, SpecialBases) {
  for (const double x : {0.0, -0.0, 3.0, infinity8, nan8}) {
    EXPECT_REAL8(__zorvik_dtoi(x, 0), 1.0);
    EXPECT_REAL4(__zorvik_ftoi(static_cast<float>(x), 0), 1.0f);
  }
  for (const double x : {0.0, -0.0, nan8, -nan8})
    for (const int n : {1, 2, 7, 0x7FFFFFFF}) {
      EXPECT_REAL8(__zorvik_dtoi(x, n), x);
      EXPECT_REAL8(__zorvik_dtoi(x, -n), infinity8);
    }
  EXPECT_REAL4(__zorvik_ftoi(0.0f, 3), 0.0f);
  EXPECT_REAL4(__zorvik_ftoi(-0.0f, 3), -0.0f);
  EXPECT_REAL4(__zorvik_ftoi(-0.0f, 2), 0.0f);
  EXPECT_REAL4(__zorvik_ftoi(0.0f, -1), infinity4);
  EXPECT_REAL4(__zorvik_ftoi(-0.0f, -1), -infinity4);
  EXPECT_REAL4(__zorvik_ftoi(-0.0f, -2), infinity4);
  EXPECT_REAL4(__zorvik_ftoi(nan4, -2), nan4);
  // Only REAL*8 tests its base, by an instruction that a quiet NaN makes invalid.
  EXPECT_EQ(flags_of([] { __zorvik_dtoi(nan8, 2); }), unsigned{IE});
  EXPECT_EQ(flags_of([] { __zorvik_ftoi(nan4, 2); }), 0u);
  EXPECT_EQ(flags_of([] { __zorvik_dtoi(nan8, 0); }), 0u);
}

TEST(IntegerPower, EndsOfTheExponent) {
  EXPECT_REAL8(__zorvik_dtoi(2.0, INT32_MAX), infinity8);
  EXPECT_REAL8(__zorvik_dtoi(2.0, INT32_MIN), 0.0);
  EXPECT_REAL8(__zorvik_dtoi(-1.0, INT32_MIN), 1.0);
  EXPECT_REAL8(__zorvik_dtoi(-1.0, INT32_MAX), -1.0);
  EXPECT_REAL4(__zorvik_ftoi(-1.0f, INT32_MIN), 1.0f);
  EXPECT_REAL4(__zorvik_ftoi(2.0f, INT32_MIN), 0.0f);
  EXPECT_REAL8(__zorvik_dtoi(-2.0, 3), -8.0);
  EXPECT_REAL8(__zorvik_dtoi(-2.0, -3), -0.125);
  EXPECT_REAL4(__zorvik_ftoi(1.0000001192092896f, 1000000), 1.1265718936920166f);
}

TEST(IntegerPower, MultipliesFromTheLowestBit) {
  for (const double x : {1.1, -0.3, 7.77}) {
    const long double x2 = static_cast<long double>(x) * x, x4 = x2 * x2, x8 = x4 * x4;
    EXPECT_REAL8(__zorvik_dtoi(x, 5), static_cast<double>(x * x4));
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

#if defined(__i386__)
TEST(IntegerPower, OfReal8KeepsTheRangeOfTheRegister) {
  const long double square = __zorvik_dtoi(0x1p700, 2);
  EXPECT_EQ(square, 0x1p1400L);
  EXPECT_EQ(__zorvik_dtoi(0x1p700, -20), 0x1p-14000L);
}
#endif
