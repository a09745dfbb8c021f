// ASIN, ACOS, ATAN and ATAN2 of REAL*4 and REAL*8.

#include "entries.hpp"
#include "support/results.hpp"

using namespace support;

namespace {
constexpr double pi = 3.141592653589793, half_pi = 1.5707963267948966;
}  // namespace

TEST(Arcsine, AtTheEndsAndBeyond) {
  EXPECT_REAL8(__zorvik_dasin(1.0), half_pi);
  EXPECT_REAL8(__zorvik_dasin(-1.0), -half_pi);
  EXPECT_REAL8(__zorvik_dacos(1.0), 0.0);
  EXPECT_REAL8(__zorvik_dacos(-1.0), pi);
  for (const double x : {beyond(1.0), -beyond(1.0), -2.0, infinity8, -infinity8}) {
    const float single = static_cast<float>(x * 1.001);
    EXPECT_REAL8(__zorvik_dasin(x), nan8);
    EXPECT_REAL8(__zorvik_dacos(x), nan8);
    EXPECT_REAL4(__zorvik_asin(single), nan4);
    EXPECT_REAL4(__zorvik_acos(single), nan4);
  }
  EXPECT_EQ(flags_of([] { __zorvik_dasin(2.0); }), 0u);
}

TEST(Arcsine, PassesNaNs) {
  for (const std::uint64_t image :
       {0x7FF8000000000000u, 0xFFF8000000000000u, 0x7FF8DEAD00000001u}) {
    const double x = from_bits(image);
    EXPECT_REAL8(__zorvik_dasin(x), x);
    EXPECT_REAL8(__zorvik_dacos(x), x);
    EXPECT_REAL8(__zorvik_datan(x), x);
  }
  EXPECT_REAL4(__zorvik_asin(-nan4), -nan4);
  EXPECT_REAL4(__zorvik_atan(-nan4), -nan4);
}

TEST(Arcsine, EveryFunctionSignAndRange) {
  EXPECT_REAL8(__zorvik_dacos(0.5), 1.0471975511965976);
  EXPECT_REAL8(__zorvik_dasind(0.5), 30.000000000000004);
  for (const double x : {0.1, 0.5, beyond(0.5), 0.7, 0.999}) {
    // Above one half the arccosine is the kernel's value and the arcsine its complement.
    const double arcsine = static_cast<double>(__zorvik_dasin(x));
    const double arccosine = static_cast<double>(__zorvik_dacos(x));
    EXPECT_REAL8(__zorvik_dasin(-x), -arcsine);
    EXPECT_NEAR(arcsine + arccosine, half_pi, 0x1p-51);
    EXPECT_NEAR(static_cast<double>(__zorvik_dacos(-x)), pi - arccosine, 0x1p-50);
    EXPECT_NEAR(static_cast<double>(__zorvik_dsin(arcsine)), x, 0x1p-51);
  }
  for (const double zero : {0.0, -0.0}) {
    EXPECT_REAL8(__zorvik_dasin(zero), zero);
    EXPECT_REAL8(__zorvik_dacos(zero), half_pi);
  }
  for (const double x : {1e-300, -1e-300, 1.05e-8}) EXPECT_REAL8(__zorvik_dasin(x), x);
}

TEST(Arcsine, FlagsOfTheKernels) {
  for (const double x : {-0.8, -0.3, 0.3, 0.8}) {
    const float single = static_cast<float>(x);
    EXPECT_REGISTER(__zorvik_asinacos(x, 0), __zorvik_dasin(x));
    EXPECT_REGISTER(__zorvik_asinacos(x, 1), __zorvik_dacos(x));
    EXPECT_REGISTER(__zorvik_asinfacosf(single, 0), __zorvik_asin(single));
    EXPECT_REGISTER(__zorvik_asinfacosf(single, 1), __zorvik_acos(single));
    // Another flag counts by its low bit.
    EXPECT_REGISTER(__zorvik_asinacos(x, 2), __zorvik_dasin(x));
    EXPECT_REGISTER(__zorvik_asinacos(x, -1), __zorvik_dacos(x));
  }
}

TEST(Arcsine, WidthsInReal4) {
  EXPECT_REGISTER(__zorvik_asind(1.0f), 90.00000250447816);
#if defined(__i386__)
  const auto rounded = [](long double value) { return static_cast<float>(value) == value; };
  EXPECT_TRUE(rounded(__zorvik_asin(0.3f)));
  EXPECT_TRUE(rounded(__zorvik_asin(-0.3f)));
  EXPECT_TRUE(rounded(__zorvik_acos(0.7f)));
  EXPECT_FALSE(rounded(__zorvik_asin(0.95f)));
  EXPECT_FALSE(rounded(__zorvik_asin(-0.95f)));
  EXPECT_FALSE(rounded(__zorvik_acos(0.3f)));
  EXPECT_FALSE(rounded(__zorvik_acos(-0.95f)));
  EXPECT_TRUE(rounded(__zorvik_atan(0.7f)));
#endif
}

TEST(Arctangent, EveryRange) {
  EXPECT_REAL8(__zorvik_datan(infinity8), half_pi);
  EXPECT_REAL8(__zorvik_datan(-infinity8), -half_pi);
  EXPECT_REAL8(__zorvik_datan(1.0), 0.7853981633974483);
  EXPECT_REAL8(__zorvik_datan(-0.0), -0.0);
  EXPECT_REAL4(__zorvik_atan(-0.0f), -0.0f);
  EXPECT_REGISTER(__zorvik_atand(1.0f), 45.00000177751531);
  const double reduced = 0x1.126145e9ecd56p-2;  // 2 - sqrt(3)
  for (const double x :
       {1e-300, 0.1, reduced, beyond(reduced), 0.5, 1.0, beyond(1.0), 3.0, 1e300}) {
    EXPECT_REAL8(__zorvik_datan(-x), -__zorvik_datan(x));
    if (x < 1e10) {
      EXPECT_NEAR(static_cast<double>(__zorvik_dtan(static_cast<double>(__zorvik_datan(x))) / x), 1,
                  0x1p-49);
    }
  }
}

TEST(Angle, OfZerosNaNsAndInfinities) {
  const struct {
    double y, x, angle;
  } cases[] = {{0.0, 0.0, 0.0},
               {-0.0, -0.0, 0.0},
               {0.0, -0.0, 0.0},
               {nan8, 0.0, 0.0},
               {-0.0, nan8, 0.0},
               {nan8, nan8, 0.0},
               {1.0, nan8, half_pi},
               {1.0, 0.0, half_pi},
               {1.0, -0.0, half_pi},
               {-1.0, 0.0, -half_pi},
               {-1.0, nan8, -half_pi},
               {nan8, 1.0, nan8},
               {-nan8, 1.0, -nan8},
               {0.0, -1.0, pi},
               {-0.0, -1.0, -pi},
               {-0.0, 1.0, -0.0},
               {1.0, -1.0, 2.356194490192345},
               {infinity8, 1.0, half_pi},
               {1.0, infinity8, 0.0},
               {1.0, -infinity8, pi},
               {infinity8, infinity8, nan8},
               {-infinity8, infinity8, -nan8},
               {1e308, 1e-308, half_pi}};
  for (const auto& [y, x, angle] : cases) {
    EXPECT_REAL8(__zorvik_datan2(y, x), angle) << y << ' ' << x;
    if (angle == 0 || angle != angle) {
      EXPECT_REAL4(__zorvik_atan2(static_cast<float>(y), static_cast<float>(x)),
                   static_cast<float>(angle))
          << y << ' ' << x;
    }
  }
  EXPECT_REAL4(__zorvik_atan2(0.0f, -1.0f), 3.1415927410125732f);
  EXPECT_REAL4(__zorvik_atan2(1.0f, 0.0f), 1.5707963705062866f);
}

TEST(Angle, AgreesWithTheArctangent) {
  for (double y = -3; y < 3; y += 0.37)
    for (double x = 0.2; x < 3; x += 0.31) {
      const double right = static_cast<double>(__zorvik_datan2(y, x));
      EXPECT_NEAR(right, static_cast<double>(__zorvik_datan(y / x)), 0x1p-51);
      EXPECT_NEAR(static_cast<double>(__zorvik_datan2(y, -x)), (y < 0 ? -pi : pi) - right, 0x1p-50);
      EXPECT_REGISTER(__zorvik_datan2d(y, x), __zorvik_datan2(y, x) * 0x1.ca5dc1a63c1f8p+5L);
    }
}
