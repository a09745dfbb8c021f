// SIN, COS, TAN and COTAN of REAL*4 and REAL*8.

#include "entries.hpp"
#include "support/results.hpp"

using namespace support;

TEST(Sine, GivesZeroBeyondTheReduction) {
  const double limit = from_bits(std::uint64_t{0x41B1C5832329691A});  // 298156835.16176
  for (const double x : {beyond(limit), -beyond(limit), infinity8, -infinity8, nan8, -nan8}) {
    EXPECT_REAL8(__zorvik_dsin(x), 0.0);
    EXPECT_REAL8(__zorvik_dcos(x), 0.0);
    EXPECT_REAL8(__zorvik_sincos(x, 0), 0.0);
  }
  EXPECT_NE(__zorvik_dsin(limit), 0.0L);
  EXPECT_REAL8(__zorvik_dsin(298156835.0), 0.622220456310617);
  // The cosine's limit counts for x + pi/2.
  EXPECT_NE(__zorvik_dcos(298156833.0), 0.0L);
  EXPECT_REAL8(__zorvik_dcos(298156834.0), 0.0);
  EXPECT_REAL4(__zorvik_sin(8192.0f), -0.9561731815338135f);
  for (const float x : {8192.001f, -8192.001f, infinity4, nan4}) {
    EXPECT_REAL4(__zorvik_sin(x), 0.0f);
    EXPECT_REAL4(__zorvik_cos(x), 0.0f);
  }
  EXPECT_REAL4(__zorvik_cos(8191.0f), 0.0f);
  EXPECT_NE(__zorvik_cos(8190.0f), 0.0L);
}

TEST(Sine, OfSmallOperands) {
  for (const double x : {1e-300, -1e-300, -1e-9, 1.05e-8}) EXPECT_REAL8(__zorvik_dsin(x), x);
  EXPECT_REAL8(__zorvik_dsin(0.0), 0.0);
  EXPECT_REAL8(__zorvik_dsin(-0.0), 0.0);
  EXPECT_REAL4(__zorvik_sin(-0.0f), 0.0f);
  EXPECT_REAL4(__zorvik_sin(-1e-30f), -1e-30f);
  // 2**-26.5 and 2**-12 belong to the polynomial.
  EXPECT_REAL8(__zorvik_dsin(from_bits(std::uint64_t{0x3E46A09E667F3BC8})),
               from_bits(std::uint64_t{0x3E46A09E667F3BC8}));
  EXPECT_REAL4(__zorvik_sin(0x1p-12f), 0x1p-12f);
}

TEST(Sine, TellingValues) {
  EXPECT_REAL8(__zorvik_dcos(0.0), from_bits(std::uint64_t{0x3FEFFFFFFFFFFFFF}));
  EXPECT_REAL8(__zorvik_dcos(1e-300), from_bits(std::uint64_t{0x3FEFFFFFFFFFFFFF}));
  EXPECT_REAL4(__zorvik_cos(0.0f), 1.0f);
  EXPECT_REAL8(__zorvik_dsin(3.141592653589793), 1.2246402351402674e-16);
  EXPECT_REAL8(__zorvik_dcos(3.141592653589793), -1.0);
  EXPECT_REAL8(__zorvik_dsind(180.0), 1.2246402351402674e-16);
  EXPECT_REAL8(__zorvik_dsind(30.0), 0.49999999999999994);
  EXPECT_REAL4(__zorvik_sind(30.0f), 0.5f);
  EXPECT_REAL8(__zorvik_dcosd(60.0), 0.5000000000000001);
}

TEST(Sine, IsOddAndCosineEvenInEveryQuadrant) {
  for (double x = 0.05; x < 400; x *= 1.07) {
    const float single = static_cast<float>(x);
    EXPECT_REAL8(__zorvik_dsin(-x), -__zorvik_dsin(x));
    EXPECT_REAL8(__zorvik_dcos(-x), __zorvik_dcos(x));
    EXPECT_REAL4(__zorvik_sin(-single), -__zorvik_sin(single));
    EXPECT_REAL4(__zorvik_cos(-single), __zorvik_cos(single));
    const long double s = __zorvik_dsin(x), c = __zorvik_dcos(x);
    EXPECT_NEAR(static_cast<double>(s * s + c * c), 1.0, 0x1p-50) << x;
  }
}

TEST(Sine, AnyFlagButZeroIsTheCosine) {
  for (const int flag : {1, 2, -1, 256, INT32_MIN}) {
    EXPECT_REAL8(__zorvik_sincos(0.7, flag), __zorvik_dcos(0.7));
    EXPECT_REAL4(__zorvik_sinfcosf(0.7f, flag), __zorvik_cos(0.7f));
  }
  EXPECT_REAL8(__zorvik_sincos(0.7, 0), __zorvik_dsin(0.7));
  EXPECT_REAL4(__zorvik_sinfcosf(0.7f, 0), __zorvik_sin(0.7f));
}

TEST(Tangent, SpecialValues) {
  const double limit = from_bits(std::uint64_t{0x41A1C5832329691A});  // 149078417.58088
  EXPECT_NE(__zorvik_dtan(limit), 0.0L);
  for (const double x : {beyond(limit), -beyond(limit), infinity8, nan8, 0.0, -0.0}) {
    EXPECT_REAL8(__zorvik_dtan(x), 0.0);
    EXPECT_REAL8(__zorvik_dcot(x), infinity8);
  }
  // The rest of pi/2 has the other sign in REAL*4, and so has the zero.
  EXPECT_REAL4(__zorvik_tan(-0.0f), -0.0f);
  EXPECT_REAL4(__zorvik_tan(0.0f), 0.0f);
  EXPECT_NE(__zorvik_tan(12867.9638671875f), 0.0L);
  for (const float x : {12867.965f, 1e5f, infinity4, nan4}) EXPECT_REAL4(__zorvik_tan(x), 0.0f);
  EXPECT_REAL8(__zorvik_dtan(1.5707963267948966), 16331326887777166.0);
  EXPECT_REAL8(__zorvik_dtand(90.0), 16331326887777166.0);
  EXPECT_REAL8(__zorvik_dtand(45.0), 0.9999999999999999);
  EXPECT_EQ(flags_of([] { __zorvik_dcot(0.0); }) & ZE, unsigned{ZE});
}

TEST(Tangent, IsOddInEveryQuadrant) {
  for (double x = 0.05; x < 400; x *= 1.07) {
    const float single = static_cast<float>(x);
    EXPECT_REAL8(__zorvik_dtan(-x), -__zorvik_dtan(x));
    EXPECT_REAL4(__zorvik_tan(-single), -__zorvik_tan(single));
    EXPECT_NEAR(static_cast<double>(__zorvik_dtan(x) * __zorvik_dcot(x)), 1.0, 0x1p-51) << x;
  }
}

#if defined(__i386__)
TEST(Tangent, OfReal4IsNotRounded) {
  int wide = 0;
  for (float x = 0.1f; x < 1.5f; x += 0.1f) {
    const long double quotient = __zorvik_tan(x);
    wide += static_cast<float>(quotient) != quotient;
  }
  EXPECT_GT(wide, 10);
}
#endif

TEST(Cotangent, OfReal4ByTheInstruction) {
  EXPECT_REAL4(__zorvik_cot(0.0f), infinity4);
  EXPECT_REAL4(__zorvik_cot(-0.0f), -infinity4);
  EXPECT_REAL4(__zorvik_cot(nan4), nan4);
  EXPECT_REAL4(__zorvik_cot(-nan4), -nan4);
  EXPECT_REAL4(__zorvik_cot(infinity4), default_nan4);
  EXPECT_REAL4(__zorvik_cot(0x1p63f), default_nan4);
  EXPECT_REAL4(__zorvik_cot(-0x1p100f), default_nan4);
  EXPECT_EQ(__zorvik_cot(below(0x1p63f)), __zorvik_cot(below(0x1p63f)));
  EXPECT_EQ(flags_of([] { __zorvik_cot(0x1p63f); }), unsigned{IE});
}
