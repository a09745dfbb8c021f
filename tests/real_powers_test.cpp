// General powers of REAL*4 and REAL*8.

#include "entries.hpp"
#include "support/results.hpp"

using namespace support;

TEST(Power, SpecialValues) {
  const struct {
    double x, y, eight;
    float four;
  } cases[] = {{2.0, nan8, 1.0, 1.0f},
               {1.0, infinity8, 1.0, 1.0f},
               {nan8, 2.5, 1.0, nan4},
               {nan8, 2.0, 1.0, nan4},
               {0.0, 2.5, 0.0, 0.0f},
               {-0.0, 2.5, -0.0, 0.0f},
               {-0.0, 3.0, -0.0, -0.0f},
               {0.0, -2.5, infinity8, infinity4},
               {-0.0, -2.5, infinity8, infinity4},
               {-0.0, -3.0, infinity8, -infinity4},
               {2.0, -3.0, 0.125, 0.125f},
               {-2.0, 3.0, -8.0, -8.0f},
               {-2.0, -3.0, -0.125, -0.125f},
               {-2.0, 2.5, nan8, nan4},
               {-2.0, 0.5, nan8, nan4},
               {2.0, 0.5, 1.4142135623730951, 1.4142135381698608f},
               {10.0, 2.5, 316.2277660168379, 316.2277526855469f},
               {infinity8, 2.0, infinity8, infinity4},
               {infinity8, -2.0, 0.0, 0.0f},
               {infinity8, 2.5, default_nan8, infinity4},
               {infinity8, -2.5, default_nan8, 0.0f},
               {-infinity8, 3.0, -infinity8, -infinity4},
               {-infinity8, 2.5, nan8, nan4},
               {2.0, infinity8, default_nan8, infinity4},
               {0.5, infinity8, default_nan8, 0.0f},
               {0.5, -infinity8, default_nan8, infinity4}};
  for (const auto& [x, y, eight, four] : cases) {
    EXPECT_REAL8(__zorvik_dtod(x, y), eight) << x << ' ' << y;
    EXPECT_REAL4(__zorvik_ftof(static_cast<float>(x), static_cast<float>(y)), four)
        << x << ' ' << y;
  }
  for (const double x : {0.0, 3.0, -infinity8, nan8})
    for (const double zero : {0.0, -0.0}) {
      EXPECT_REAL8(__zorvik_dtod(x, zero), 1.0);
      EXPECT_REAL4(__zorvik_ftof(static_cast<float>(x), static_cast<float>(zero)), 1.0f);
    }
  EXPECT_REAL8(__zorvik_dtod(2.0, 1e300), infinity8);
  EXPECT_REAL8(__zorvik_dtod(2.0, -1e300), 0.0);
  EXPECT_EQ(flags_of([] { __zorvik_dtod(2.0, nan8); }), unsigned{IE});
  EXPECT_EQ(flags_of([] { __zorvik_ftof(2.0f, nan4); }), 0u);
}

TEST(Power, WhichWholeExponentsReachTheIntegerPower) {
  const struct {
    double y, of_minus_one;
  } eight[] = {{2097151.0, -1.0},     // 2**21 - 1
               {2097152.0, 1.0},      // a power of two
               {2097154.0, nan8},     // 32 zero bits, no power of two
               {2097153.0, -1.0},     // a low bit set
               {2147483647.0, -1.0},  // 2**31 - 1
               {2097153.5, nan8},
               {1048577.0, -1.0},
               {1048576.5, nan8},
               {2147483648.0, 1.0},  // from here on the logarithm, signed by the parity
               {2147483649.0, -1.0},
               {2147483649.5, nan8},
               {4503599627370495.5, nan8},
               {4503599627370497.0, -1.0},
               {9007199254740991.0, -1.0},
               {9007199254740992.0, 1.0},
               {1e300, 1.0}};
  for (const auto& [y, expected] : eight) {
    EXPECT_REAL8(__zorvik_dtod(-1.0, y), expected) << y;
    EXPECT_REAL8(__zorvik_dtod(-1.0, -y), expected) << y;
  }
  const struct {
    float y, of_minus_one;
  } four[] = {{8388607.0f, -1.0f}, {8388607.5f, nan4},  {16777215.0f, -1.0f},
              {16777216.0f, 1.0f}, {16777218.0f, nan4}, {1073741824.0f, 1.0f}};
  for (const auto& [y, expected] : four) {
    EXPECT_REAL4(__zorvik_ftof(-1.0f, y), expected) << y;
    EXPECT_REAL4(__zorvik_ftof(-1.0f, -y), expected) << y;
  }
}

TEST(Power, OfReal4AtTheEndsOfItsRange) {
  EXPECT_REAL4(__zorvik_ftof(8.0f, 1.0f / 3), 2.0f);
  EXPECT_REAL4(__zorvik_ftof(2.0f, 127.9f), 3.174949580367782e+38f);
  EXPECT_REAL4(__zorvik_ftof(2.0f, 128.5f), infinity4);
  EXPECT_REAL4(__zorvik_ftof(2.0f, -125.9f), 1.2598626077235846e-38f);
  EXPECT_REAL4(__zorvik_ftof(2.0f, -126.5f), 0.0f);
  // Beyond 2**27 the exponent leaves the conversions: the direction of the result alone is left.
  EXPECT_REAL4(__zorvik_ftof(1.5f, 0x1.000002p31f), infinity4);
  EXPECT_REAL4(__zorvik_ftof(1.5f, -0x1.000002p31f), 0.0f);
  EXPECT_REAL4(__zorvik_ftof(-0.5f, 0x1p40f), 0.0f);
  EXPECT_REAL4(__zorvik_ftof(3e38f, 1.5e7f), infinity4);
  EXPECT_REAL4(__zorvik_ftof(1e-38f, 1.5e7f), 0.0f);
}

TEST(Power, OfReal4IsMonotonicAcrossTheRowsOfItsTable) {
  // Every row boundary of the base's table lies between neighbours of the sweep.
  float last = 0;
  for (float x = 0.5f; x < 1.0f; x += 0x1p-10f) {
    const float power = static_cast<float>(__zorvik_ftof(x, 2.5f));
    EXPECT_GT(power, last) << x;
    last = power;
  }
}

#if defined(__i386__)
TEST(Power, OfReal8KeepsTheRangeOfTheRegister) {
  EXPECT_EQ(__zorvik_dtod(2.0, 1400.5), __builtin_ldexpl(__zorvik_dtod(2.0, 0.5), 1400));
}
#endif
