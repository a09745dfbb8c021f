// COMPLEX*8 and COMPLEX*16: identities and second ways. Single cases are rows.

#include <utility>

#include "support/complex_results.hpp"

using namespace support;
using zrt::dcomplex;
using zrt::fcomplex;

namespace {

template <class... Operand>
dcomplex value(dcomplex* (*entry)(dcomplex*, Operand...), Operand... operands) {
  dcomplex result;
  entry(&result, operands...);
  return result;
}

void expect_near(const dcomplex& got, const dcomplex& expected, double bound) {
  EXPECT_NEAR(got.re, expected.re, bound);
  EXPECT_NEAR(got.im, expected.im, bound);
}
void expect_near(const images8& got, const dcomplex& expected, double bound) {
  expect_near(dcomplex{from_bits(got.re), from_bits(got.im)}, expected, bound);
}
fcomplex single(dcomplex z) { return {static_cast<float>(z.re), static_cast<float>(z.im)}; }

}  // namespace

TEST(Complex, SineAndCosineOnTheAxesAreTheRealFunctions) {
  for (const double y : {1e-12, 0.3, 0.99, 1.0, 1.01, 5.0, 300.0}) {
    EXPECT_EQ(called(__zorvik_cdsin, dcomplex{0, y}),
              (images16{bits(0.0), double_bits(__zorvik_dsinh(y))}));
    EXPECT_EQ(called(__zorvik_cdcos, dcomplex{0, y}),
              (images16{double_bits(__zorvik_dcosh(y)), bits(-0.0)}));
    const double sine = static_cast<double>(zrt::fsin(zrt::load(y)));
    const double zero = zrt::fcos(zrt::load(y)) < 0 ? -0.0 : 0.0;
    EXPECT_EQ(called(__zorvik_cdsin, dcomplex{y, 0}), of(sine, zero));
  }
}

TEST(Complex, FunctionsUndoEachOther) {
  for (double x = -3; x < 3; x += 0.41)
    for (double y = -2.5; y < 2.5; y += 0.37) {
      const dcomplex z{x, y}, w{y - 0.3, x + 0.2};
      const dcomplex s = value(__zorvik_cdsin, z), c = value(__zorvik_cdcos, z);
      const dcomplex s2 = value(__zorvik_cdmul, s, s), c2 = value(__zorvik_cdmul, c, c);
      expect_near(dcomplex{s2.re + c2.re, s2.im + c2.im}, {1, 0}, 0x1p-46);
      expect_near(called(__zorvik_csin, single(z)), s, 1e-5);
      const dcomplex root = value(__zorvik_cdsqrt, z), log = value(__zorvik_cdlog, z);
      EXPECT_GE(root.re, 0);
      expect_near(value(__zorvik_cdmul, root, root), z, 0x1p-49);
      expect_near(value(__zorvik_cdexp, log), z, 0x1p-49);
      expect_near(value(__zorvik_cddiv, value(__zorvik_cdmul, z, w), w), z, 0x1p-48);
    }
}

TEST(Complex, PowersAreExponentialsOfLogarithms) {
  for (double x = -2; x < 2; x += 0.31)
    for (double y = -2; y < 2; y += 0.37) {
      const dcomplex z{x, y}, w{y + 0.13, x - 0.21};
      const dcomplex expected =
          value(__zorvik_cdexp, value(__zorvik_cdmul, value(__zorvik_cdlog, z), w));
      const double scale = static_cast<double>(__zorvik_cdabs(expected));
      expect_near(value(__zorvik_cdtocd, z, w), expected, scale * 0x1p-48);
      expect_near(called(__zorvik_ctoc, single(z), single(w)), expected, scale * 0x1p-19);
    }
}

// An integer power of a real base stays real; through the logarithm a negative base leaves the
// axis.
TEST(Complex, PowersOfWholeExponentsStayReal) {
  for (const auto& [exponent, real] : {std::pair{2.0, true},
                                       {2097151.0, true},
                                       {2097152.0, true},
                                       {2097153.0, false},
                                       {2097154.0, false},
                                       {0x1p30, true},
                                       {0x1p31, false},
                                       {1048576.5, false}})
    EXPECT_EQ(value(__zorvik_cdtocd, dcomplex{-1, 0}, dcomplex{exponent, 0}).im == 0, real)
        << exponent;
  for (const auto& [exponent, real] :
       {std::pair{2.0f, true}, {16777216.0f, true}, {16777218.0f, false}, {8388607.5f, false}})
    EXPECT_EQ((called(__zorvik_ctoc, fcomplex{-1, 0}, fcomplex{exponent, 0}).im << 1) == 0, real)
        << exponent;
}
