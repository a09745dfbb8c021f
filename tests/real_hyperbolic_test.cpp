// SINH, COSH and TANH of REAL*4 and REAL*8.

#include "entries.hpp"
#include "support/results.hpp"

using namespace support;

TEST(HyperbolicSine, SmallOperandsAndSpecialValues) {
  for (const double x : {0.0, -0.0, 1e-300, -1e-300, 1.05e-8}) EXPECT_REAL8(__zorvik_dsinh(x), x);
  for (const float x : {0.0f, -0.0f, 1e-30f, -0x1p-12f}) EXPECT_REAL4(__zorvik_sinh(x), x);
  EXPECT_REAL8(__zorvik_dsinh(1.0), 1.1752011936438014);
  EXPECT_REAL8(__zorvik_dsinh(beyond(1.0)), 1.1752011936438018);
  EXPECT_REAL8(__zorvik_dsinh(710.0), 1.1169973830808555e+308);
  for (const double x : {1000.0, 1e5}) {
    EXPECT_REAL8(__zorvik_dsinh(x), infinity8);
    EXPECT_REAL8(__zorvik_dsinh(-x), -infinity8);
    EXPECT_REAL8(__zorvik_dcosh(-x), infinity8);
  }
  // Infinity less infinity in the exponential, then the sign.
  EXPECT_REAL8(__zorvik_dsinh(infinity8), default_nan8);
  EXPECT_REAL8(__zorvik_dsinh(-infinity8), nan8);
  EXPECT_REAL8(__zorvik_dcosh(infinity8), default_nan8);
  EXPECT_REAL8(__zorvik_dcosh(-infinity8), default_nan8);
  EXPECT_EQ(flags_of([] { __zorvik_dcosh(infinity8); }), unsigned{IE});
  EXPECT_REAL8(__zorvik_dsinh(-nan8), -nan8);
  EXPECT_REAL8(__zorvik_dcosh(nan8), nan8);
  EXPECT_REAL8(__zorvik_dcosh(0.0), 1.0);
}

TEST(HyperbolicSine, AndCosineAreTheTwoHalvesOfTheExponential) {
  for (double x = 1.01; x < 700; x *= 1.09) {
    const long double sine = __zorvik_dsinh(x), cosine = __zorvik_dcosh(x);
    EXPECT_REAL8(__zorvik_dsinh(-x), static_cast<double>(-sine));
    EXPECT_REAL8(__zorvik_dcosh(-x), static_cast<double>(cosine));
    EXPECT_NEAR(static_cast<double>((cosine - sine) * (cosine + sine) / (cosine * cosine)),
                static_cast<double>(1.0L / (cosine * cosine)), 0x1p-51);
    EXPECT_NEAR(static_cast<double>((sine + cosine) / __zorvik_dexp(x)), 1, 0x1p-50);
  }
}

#if defined(__i386__)
TEST(HyperbolicSine, KeepsTheRangeOfTheRegister) {
  const long double root = __zorvik_dexp(500.0);
  EXPECT_NEAR(static_cast<double>(__zorvik_dsinh(1000.0) / (root * root)), 0.5, 0x1p-50);
  EXPECT_EQ(__zorvik_dsinh(1e5), __builtin_infl());
  EXPECT_REGISTER(__zorvik_sinh(89.0f), 2.2448064095871728e+38);
  const auto rounded = [](long double value) { return static_cast<float>(value) == value; };
  EXPECT_TRUE(rounded(__zorvik_sinh(0.9f)));
  EXPECT_FALSE(rounded(__zorvik_sinh(1.1f)));
  EXPECT_FALSE(rounded(__zorvik_cosh(0.9f)));
  EXPECT_TRUE(rounded(__zorvik_tanh(0.9f)));
}
#endif

TEST(HyperbolicTangent, EndsAtOne) {
  const double one_from = 0x1.30fc1931f09cbp+4;  // 27.5 ln 2
  for (const double x : {beyond(one_from), infinity8, nan8, -nan8})
    EXPECT_REAL8(__zorvik_dtanh(x), 1.0);
  EXPECT_REAL8(__zorvik_dtanh(-infinity8), -1.0);
  EXPECT_REAL8(__zorvik_dtanh(one_from), 1.0);
  EXPECT_REAL4(__zorvik_tanh(9.0f), 0.9999999403953552f);
  for (const float x : {9.1f, infinity4, nan4}) EXPECT_REAL4(__zorvik_tanh(x), 1.0f);
  EXPECT_REAL4(__zorvik_tanh(-9.1f), -1.0f);
  // Above the limit nothing is computed, at the limit the exponential is.
  EXPECT_EQ(flags_of([] { __zorvik_dtanh(20.0); }), 0u);
  EXPECT_EQ(flags_of([] { __zorvik_dtanh(0x1.30fc1931f09cbp+4); }) & PE, unsigned{PE});
}

TEST(HyperbolicTangent, AroundItsRanges) {
  EXPECT_REAL8(__zorvik_dtanh(0.5493061443340549), 0.5);
  for (const double x : {0.0, -0.0}) EXPECT_REAL8(__zorvik_dtanh(x), 0.0);
  EXPECT_REAL4(__zorvik_tanh(-0.0f), 0.0f);
  for (const double x : {1e-300, -1e-300, 1.05e-8}) EXPECT_REAL8(__zorvik_dtanh(x), x);
  for (const double x :
       {0.01, 0.5, below(0x1.193ea7aad030bp-1), beyond(0x1.193ea7aad030bp-1), 2.0, 19.0}) {
    EXPECT_REAL8(__zorvik_dtanh(-x), -__zorvik_dtanh(x));
    EXPECT_NEAR(static_cast<double>(__zorvik_dtanh(x) * __zorvik_dcosh(x) / __zorvik_dsinh(x)), 1,
                0x1p-51);
  }
}
