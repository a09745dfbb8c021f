// EXP, LOG and LOG10 of REAL*4 and REAL*8.

#include "entries.hpp"
#include "support/results.hpp"

using namespace support;

TEST(Exponential, EndsAtItsLimits) {
  const double upper = from_bits(std::uint64_t{0x408628B76E3A7B60});  // 1023 ln 2
  const double lower = from_bits(std::uint64_t{0xC086232BDD7ABCD1});  // -1022 ln 2
  EXPECT_REAL8(__zorvik_dexp(upper), from_bits(std::uint64_t{0x7FDFFFFFFFFFFD19}));
  EXPECT_REAL8(__zorvik_dexp(beyond(upper)), infinity8);
  EXPECT_REAL8(__zorvik_dexp(lower), from_bits(std::uint64_t{0x001000000000027C}));
  EXPECT_REAL8(__zorvik_dexp(beyond(lower)), 0.0);
  EXPECT_REAL8(__zorvik_dexp(infinity8), infinity8);
  EXPECT_REAL8(__zorvik_dexp(-infinity8), 0.0);
  EXPECT_REAL8(__zorvik_dexp(nan8), infinity8);

  const float upper4 = 88.02970123291016f;
  EXPECT_REAL4(__zorvik_exp(upper4), 1.701427654884183e+38f);
  EXPECT_REAL4(__zorvik_exp(beyond(upper4)), infinity4);
  EXPECT_REAL4(__zorvik_exp(-87.33654f), from_bits(0x00800026u));
  EXPECT_REAL4(__zorvik_exp(-87.33655f), 0.0f);  // no result is subnormal
  EXPECT_REAL4(__zorvik_exp(-87.96910095214844f), 0.0f);
  EXPECT_REAL4(__zorvik_exp(-infinity4), 0.0f);
  EXPECT_REAL4(__zorvik_exp(nan4), infinity4);
}

TEST(Exponential, IsExactAtZeroAndOffByOneAtOne) {
  for (const double zero : {0.0, -0.0}) {
    EXPECT_REAL8(__zorvik_dexp(zero), 1.0);
    EXPECT_REAL4(__zorvik_exp(static_cast<float>(zero)), 1.0f);
  }
  EXPECT_REAL8(__zorvik_dexp(1.0), from_bits(std::uint64_t{0x4005BF0A8B14576A}));
}

TEST(Exponential, OfReal4IsARoundedSingle) {
  for (float x = -80; x < 80; x += 0.37f) {
    const long double result = __zorvik_exp(x);
    EXPECT_EQ(static_cast<float>(result), result) << x;
  }
}

TEST(Exponential, RaisesNothingForWhatTheLimitsCatch) {
  EXPECT_EQ(flags_of([] { __zorvik_dexp(1000.0); }), 0u);
  EXPECT_EQ(flags_of([] { __zorvik_dexp(-1000.0); }), 0u);
  EXPECT_EQ(flags_of([] { __zorvik_dexp(nan8); }), 0u);
}

TEST(Logarithm, OfZerosNegativesAndInfinity) {
  for (const double zero : {0.0, -0.0}) {
    EXPECT_REAL8(__zorvik_dlog(zero), -infinity8);
    EXPECT_REAL8(__zorvik_dlog10(zero), -infinity8);
    EXPECT_REAL4(__zorvik_alog(static_cast<float>(zero)), -infinity4);
    EXPECT_REAL4(__zorvik_alog10(static_cast<float>(zero)), -infinity4);
  }
  for (const double x : {-1.0, -infinity8, nan8, -nan8}) {
    EXPECT_REAL8(__zorvik_dlog(x), nan8);
    EXPECT_REAL8(__zorvik_dlog10(x), nan8);
    EXPECT_REAL4(__zorvik_alog(static_cast<float>(x)), nan4);
    EXPECT_REAL4(__zorvik_alog10(static_cast<float>(x)), nan4);
  }
  EXPECT_REAL8(__zorvik_dlog(infinity8), infinity8);
  EXPECT_REAL4(__zorvik_alog(infinity4), infinity4);
  EXPECT_EQ(flags_of([] { __zorvik_dlog(-1.0); }), 0u);
}

TEST(Logarithm, TakesSubnormalsAsIfNormal) {
  EXPECT_REAL8(__zorvik_dlog(from_bits(std::uint64_t{1})), -709.0895657128241);
  EXPECT_REGISTER(__zorvik_alog(from_bits(1u)), -88.0296918118968);
}

TEST(Logarithm, AtPowersOfTwoAndTen) {
  EXPECT_REAL8(__zorvik_dlog(1.0), 0.0);
  EXPECT_REAL4(__zorvik_alog(1.0f), 0.0f);
  EXPECT_REAL8(__zorvik_dlog(2.0), 0.6931471805599453);
  EXPECT_REAL8(__zorvik_dlog10(100.0), 2.0);
  EXPECT_REGISTER(__zorvik_alog10(100.0f), 2.000000046526158);
  // Far exponents take another way to the significand.
  for (const int m : {-1022, -127, -126, 126, 127, 1023}) {
    const long double whole = m * 0x1.62e42fefa39efp-1L;
    EXPECT_NEAR(static_cast<double>(__zorvik_dlog(__builtin_ldexp(1.5, m)) - __zorvik_dlog(1.5)),
                static_cast<double>(whole), 0x1p-43)
        << m;
  }
}

TEST(Logarithm, MeetsItselfWhereTheSeriesNearOneEnds) {
  // Neighbours on both sides of the two limits differ by no more than their logarithms do.
  for (const double limit : {0x1.e0fabfbc702a6p-1, 0x1.1082b577d34fp+0}) {
    const long double step = (static_cast<long double>(beyond(limit)) - limit) / limit;
    EXPECT_LE(__builtin_fabsl(__zorvik_dlog(beyond(limit)) - __zorvik_dlog(limit) - step),
              0x1p-56L);
    EXPECT_LE(__builtin_fabsl(__zorvik_dlog(limit) - __zorvik_dlog(below(limit)) - step), 0x1p-56L);
  }
}

TEST(Logarithm, CommonIsTheNaturalTimesItsFactor) {
  for (double x = 0.01; x < 40; x *= 1.37) {
    EXPECT_REGISTER(__zorvik_dlog10(x), __zorvik_dlog(x) * 0x1.bcb7b1526e50ep-2L);
#if defined(__i386__)
    const float single = static_cast<float>(x);
    EXPECT_REGISTER(__zorvik_alog10(single), __zorvik_alog(single) * 0x1.bcb7b2p-2L);
#endif
  }
}
