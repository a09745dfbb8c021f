// Modulus, exponential, logarithm, square root, sine and cosine of COMPLEX*8 and COMPLEX*16.

#include "support/complex_results.hpp"

using namespace support;
using zrt::dcomplex;
using zrt::fcomplex;

namespace {
constexpr double pi = 3.141592653589793;
}  // namespace

TEST(Modulus, DropsZerosAndNaNs) {
  const struct {
    double re, im, modulus;
  } cases[] = {{3, nan8, 3},
               {nan8, -4, 4},
               {-3, 0, 3},
               {0, -4, 4},
               {-nan8, nan8, nan8},
               {0, nan8, 0},
               {infinity8, 1, infinity8},
               {1, -infinity8, infinity8},
               {infinity8, infinity8, default_nan8},
               {3, 4, 5},
               {-4, 3, 5}};
  for (const auto& [re, im, modulus] : cases) {
    EXPECT_REAL8(__zorvik_cdabs({re, im}), modulus) << re << ' ' << im;
    EXPECT_REAL4(__zorvik_cabs({static_cast<float>(re), static_cast<float>(im)}),
                 static_cast<float>(modulus))
        << re << ' ' << im;
  }
  EXPECT_REAL8(__zorvik_cdabs({1.5e308, 1.5e308}), infinity8);
#if defined(__i386__)
  EXPECT_EQ(__zorvik_cdabs({0x1p1023, 0}) * 4, 0x1p1025L);
  EXPECT_LT(__zorvik_cdabs({1.5e308, 1.5e308}), 0x1p1025L);
  const long double wide = __zorvik_cabs({1, 2});
  EXPECT_NE(static_cast<float>(wide), wide);
#endif
}

TEST(ComplexExponential, FollowsItsFormula) {
  for (const double x : {infinity8, -infinity8})
    EXPECT_EQ(called(__zorvik_cdexp, dcomplex{x, 0}), of(default_nan8, default_nan8));
  EXPECT_EQ(called(__zorvik_cdexp, dcomplex{0, 0}), of(1.0, 0.0));
  EXPECT_EQ(called(__zorvik_cdexp, dcomplex{800, 0}), of(infinity8, 0.0));
  EXPECT_EQ(called(__zorvik_cdexp, dcomplex{12000, 0}), of(infinity8, default_nan8));
  EXPECT_EQ(called(__zorvik_cexp, fcomplex{100, 0}), of(infinity4, 0.0f));
  // From 2**63 on the operand stands for its sine and cosine.
  EXPECT_EQ(called(__zorvik_cdexp, dcomplex{0, 0x1p63}), of(0x1p63, 0x1p63));
  EXPECT_EQ(called(__zorvik_cdexp, dcomplex{0, 1}),
            of(static_cast<double>(zrt::fcos(1.0L)), static_cast<double>(zrt::fsin(1.0L))));
}

TEST(ComplexLogarithm, TypesDifferInTheirAngles) {
  EXPECT_EQ(called(__zorvik_cdlog, dcomplex{0, 0}), of(-infinity8, 0.0));
  EXPECT_EQ(called(__zorvik_cdlog, dcomplex{-0.0, 0}), of(-infinity8, pi));
  EXPECT_EQ(called(__zorvik_clog, fcomplex{-0.0f, 0}), of(-infinity4, 0.0f));
  EXPECT_EQ(called(__zorvik_cdlog, dcomplex{-1, 0}), of(0.0, pi));
  EXPECT_EQ(called(__zorvik_cdlog, dcomplex{-1, -0.0}), of(0.0, -pi));
  EXPECT_EQ(called(__zorvik_cdlog, dcomplex{1, nan8}), of(0.0, nan8));
  EXPECT_EQ(called(__zorvik_cdlog, dcomplex{nan8, 1}), of(0.0, nan8));
  EXPECT_EQ(called(__zorvik_clog, fcomplex{nan4, 1}), of(0.0f, 1.5707963705062866f));
  EXPECT_EQ(called(__zorvik_clog, fcomplex{1, 0}), of(0.0f, 0.0f));
  // ln 2 of REAL*4 shows in the logarithm of a power of two.
  EXPECT_EQ(called(__zorvik_clog, fcomplex{0x1p100f, 0}), of(69.3147182464599609375f, 0.0f));
}

TEST(ComplexRoot, SignsAndZeros) {
  for (const double re : {0.0, -0.0})
    for (const double im : {0.0, -0.0}) {
      EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{re, im}), of(0.0, 0.0));
      EXPECT_EQ(called(__zorvik_csqrt, fcomplex{static_cast<float>(re), static_cast<float>(im)}),
                of(0.0f, 0.0f));
    }
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-4, 0}), of(0.0, 2.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-4, -0.0}), of(0.0, 2.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-4, -1e-300}), of(2.5e-301, -2.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-3, 4}), of(1.0, 2.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{3, -4}), of(2.0, -1.0));
  EXPECT_EQ(called(__zorvik_csqrt, fcomplex{-3, -4}), of(1.0f, -2.0f));
}

TEST(ComplexRoot, OfInfinities) {
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{1, infinity8}), of(infinity8, default_nan8));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{infinity8, 1}), of(infinity8, 0.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{infinity8, -1}), of(infinity8, -0.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-infinity8, 1}), of(0.0, infinity8));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-infinity8, -1}), of(0.0, -infinity8));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{infinity8, infinity8}), of(default_nan8, 0.0));
  // A NaN beside a value whose square overflows REAL*8.
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{1e308, nan8}), of(1e154, nan8));
}

TEST(ComplexRoot, TypesDifferAtNaNs) {
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{nan8, 4}), of(nan8, 0.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{4, nan8}), of(2.0, nan8));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{-4, nan8}), of(nan8, 2.0));
  EXPECT_EQ(called(__zorvik_cdsqrt, dcomplex{nan8, 0}), of(nan8, 0.0));
  const float root2 = 1.41421356f;
  EXPECT_EQ(called(__zorvik_csqrt, fcomplex{nan4, 4}), of(root2, root2));
  EXPECT_EQ(called(__zorvik_csqrt, fcomplex{4, nan4}), of(nan4, 0.0f));
  EXPECT_EQ(called(__zorvik_csqrt, fcomplex{-4, nan4}), of(nan4, 0.0f));
  EXPECT_EQ(called(__zorvik_csqrt, fcomplex{nan4, 0}), of(0.0f, 0.0f));
}

TEST(ComplexSine, OnTheAxesIsTheRealFunction) {
  for (const double y : {1e-12, 0.3, 0.99, 1.0, 1.01, 5.0, 300.0}) {
    EXPECT_EQ(called(__zorvik_cdsin, dcomplex{0, y}),
              (images16{bits(0.0), double_bits(__zorvik_dsinh(y))}));
    EXPECT_EQ(called(__zorvik_cdcos, dcomplex{0, y}),
              (images16{double_bits(__zorvik_dcosh(y)), bits(-0.0)}));
    EXPECT_EQ(called(__zorvik_cdsin, dcomplex{0, -y}),
              (images16{bits(0.0), double_bits(-__zorvik_dsinh(y))}));
    EXPECT_EQ(called(__zorvik_cdcos, dcomplex{0, -y}),
              (images16{double_bits(__zorvik_dcosh(y)), bits(0.0)}));
    const double sine = static_cast<double>(zrt::fsin(zrt::load(y)));
    const double zero = zrt::fcos(zrt::load(y)) < 0 ? -0.0 : 0.0;
    EXPECT_EQ(called(__zorvik_cdsin, dcomplex{y, 0}), of(sine, zero));
  }
  // Only the product rounds, so a hyperbolic value beyond the range may come back into it.
  EXPECT_NE(called(__zorvik_cdsin, dcomplex{1e-10, 720}).re, bits(infinity8));
  EXPECT_EQ(called(__zorvik_cdsin, dcomplex{1, 720}).re, bits(infinity8));
  EXPECT_EQ(called(__zorvik_cdsin, dcomplex{0, infinity8}), of(default_nan8, default_nan8));
  // The sign of a NaN flips behind the product.
  EXPECT_EQ(called(__zorvik_cdcos, dcomplex{0, infinity8}), of(default_nan8, nan8));
  EXPECT_EQ(called(__zorvik_cdsin, dcomplex{0x1p63, 0}), of(0x1p63, 0.0));
}

TEST(ComplexSine, AndCosineAddUp) {
  for (double x = -3; x < 3; x += 0.41)
    for (double y = -2.5; y < 2.5; y += 0.37) {
      dcomplex s, c, s2, c2;
      __zorvik_cdsin(&s, {x, y});
      __zorvik_cdcos(&c, {x, y});
      __zorvik_cdmul(&s2, s, s);
      __zorvik_cdmul(&c2, c, c);
      EXPECT_NEAR(s2.re + c2.re, 1, 0x1p-46);
      EXPECT_NEAR(s2.im + c2.im, 0, 0x1p-46);
      const images8 single =
          called(__zorvik_csin, fcomplex{static_cast<float>(x), static_cast<float>(y)});
      EXPECT_NEAR(from_bits(single.re), s.re, 1e-5);
      EXPECT_NEAR(from_bits(single.im), s.im, 1e-5);
    }
}

TEST(ComplexRoot, SquaredAndExponentialOfLogarithmGiveTheOperandBack) {
  for (double x = -3; x < 3; x += 0.41)
    for (double y = -2.5; y < 2.5; y += 0.37) {
      dcomplex w, back;
      __zorvik_cdsqrt(&w, {x, y});
      __zorvik_cdmul(&back, w, w);
      EXPECT_GE(w.re, 0);
      EXPECT_NEAR(back.re, x, 0x1p-49);
      EXPECT_NEAR(back.im, y, 0x1p-49);
      __zorvik_cdlog(&w, {x, y});
      __zorvik_cdexp(&back, w);
      EXPECT_NEAR(back.re, x, 0x1p-49);
      EXPECT_NEAR(back.im, y, 0x1p-49);
    }
}
