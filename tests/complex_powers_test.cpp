// Powers with a complex base.

#include "support/complex_results.hpp"

using namespace support;
using zrt::dcomplex;
using zrt::fcomplex;

TEST(ComplexIntegerPower, OfZerosAndNaNs) {
  for (const double re : {0.0, -0.0, nan8})
    for (const double im : {0.0, -0.0, nan8}) {
      const fcomplex single{static_cast<float>(re), static_cast<float>(im)};
      EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{re, im}, 0), of(1.0, 0.0));
      EXPECT_EQ(called(__zorvik_ctoi, single, 0), of(1.0f, 0.0f));
      for (const int n : {5, -5, INT32_MIN}) {
        EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{re, im}, n), of(0.0, 0.0));
        EXPECT_EQ(called(__zorvik_ctoi, single, n), of(0.0f, 0.0f));
      }
    }
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{nan8, 1}, 0), of(1.0, 0.0));
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{nan8, 1}, 2), of(nan8, nan8));
}

TEST(ComplexIntegerPower, BySquaring) {
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{0, 1}, 3), of(-0.0, -1.0));
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{0, 1}, INT32_MAX), of(-0.0, -1.0));
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{0, 1}, INT32_MIN), of(1.0, 0.0));
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{1, 2}, 5), of(41.0, -38.0));
  EXPECT_EQ(called(__zorvik_ctoi, fcomplex{2, 0}, -1), of(0.5f, 0.0f));
  EXPECT_EQ(called(__zorvik_ctoi, fcomplex{1, 1}, 20), of(-1024.0f, 0.0f));
  // A square behind the last bit overflows without harm.
  EXPECT_EQ(called(__zorvik_cdtoi, dcomplex{1e308, 0}, 1), of(1e308, 0.0));
  // A negative power of COMPLEX*8 starts from the rounded reciprocal.
  const long double third = 0x1.555556p-2L;
  EXPECT_EQ(called(__zorvik_ctoi, fcomplex{3, 0}, -2),
            (images8{single_bits(third * third), bits(0.0f)}));
}

TEST(ComplexPower, OfZero) {
  for (const dcomplex w : {dcomplex{-1, 0}, {0, 1}, {2.5, 0}, {nan8, 1}})
    EXPECT_EQ(called(__zorvik_cdtocd, dcomplex{0, -0.0}, w), of(0.0, 0.0));
  for (const dcomplex w : {dcomplex{0, 0}, {-0.0, nan8}, {nan8, 0}}) {
    EXPECT_EQ(called(__zorvik_cdtocd, dcomplex{0, 0}, w), of(nan8, nan8));
    EXPECT_EQ(called(__zorvik_ctoc, fcomplex{0, nan4},
                     fcomplex{static_cast<float>(w.re), static_cast<float>(w.im)}),
              of(nan4, nan4));
  }
}

TEST(ComplexPower, WhichExponentsAreIntegers) {
  // An integer power of a real base stays real; through the logarithm a negative base leaves the
  // axis.
  const struct {
    double exponent;
    bool real;
  } eight[] = {{2, true},          {2097151, true},    {2097152, true},     {2097153, false},
               {2097154, false},   {1073741824, true}, {2147483648, false}, {1.5, false},
               {1048576.5, false}, {-3, true}};
  for (const auto& [exponent, real] : eight) {
    const images16 power = called(__zorvik_cdtocd, dcomplex{-1, 0}, dcomplex{exponent, 0});
    EXPECT_EQ((power.im & ~(std::uint64_t{1} << 63)) == 0, real) << exponent;
  }
  const struct {
    float exponent;
    bool real;
  } four[] = {{2, true},         {16777215, true},   {16777216, true},
              {16777218, false}, {1073741824, true}, {8388607.5f, false}};
  for (const auto& [exponent, real] : four) {
    const images8 power = called(__zorvik_ctoc, fcomplex{-1, 0}, fcomplex{exponent, 0});
    EXPECT_EQ((power.im & 0x7FFFFFFF) == 0, real) << exponent;
  }
  EXPECT_EQ(called(__zorvik_cdtocd, dcomplex{2, 0}, dcomplex{3, 0}), of(8.0, 0.0));
  // A NaN imaginary part of the exponent counts as zero.
  EXPECT_EQ(called(__zorvik_cdtocd, dcomplex{2, 0}, dcomplex{3, nan8}), of(8.0, 0.0));
}

TEST(ComplexPower, ByTheLogarithm) {
  EXPECT_EQ(called(__zorvik_cdtocd, dcomplex{2, 3}, dcomplex{0, 0}), of(1.0, 0.0));
  EXPECT_EQ(called(__zorvik_cdtocd, dcomplex{1, 0}, dcomplex{0.5, 0}), of(1.0, 0.0));
  const images16 far = called(__zorvik_cdtocd, dcomplex{1e200, 0}, dcomplex{0.5, 0});
  EXPECT_NEAR(from_bits(far.re) * 1e-100, 1, 1e-13);
  const images16 root = called(__zorvik_cdtocd, dcomplex{-8, 0}, dcomplex{0.5, 0});
  EXPECT_NE(root.re & ~(std::uint64_t{1} << 63), 0u);
  for (double x = -2; x < 2; x += 0.31)
    for (double y = -2; y < 2; y += 0.37) {
      const dcomplex z{x, y}, w{y + 0.13, x - 0.21};
      dcomplex log, product, expected;
      __zorvik_cdlog(&log, z);
      __zorvik_cdmul(&product, log, w);
      __zorvik_cdexp(&expected, product);
      const images16 power = called(__zorvik_cdtocd, z, w);
      const double scale = static_cast<double>(__zorvik_cdabs(expected));
      EXPECT_NEAR(from_bits(power.re), expected.re, scale * 0x1p-48);
      EXPECT_NEAR(from_bits(power.im), expected.im, scale * 0x1p-48);
      const auto single = [](dcomplex value) {
        return fcomplex{static_cast<float>(value.re), static_cast<float>(value.im)};
      };
      const images8 power8 = called(__zorvik_ctoc, single(z), single(w));
      EXPECT_NEAR(from_bits(power8.re), expected.re, scale * 0x1p-19);
      EXPECT_NEAR(from_bits(power8.im), expected.im, scale * 0x1p-19);
    }
}
