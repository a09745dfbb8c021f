// Product, quotient, imaginary part and conjugate of COMPLEX*8 and COMPLEX*16.

#include "support/complex_results.hpp"

using namespace support;
using zrt::dcomplex;
using zrt::fcomplex;

TEST(ComplexProduct, KeepsTheRangeOfTheRegisterBetween) {
  const dcomplex large{1e308, 1e308};
  EXPECT_EQ(called(__zorvik_cdmul, large, large), of(0.0, infinity8));
  EXPECT_EQ(called(__zorvik_cdmul, dcomplex{1e-200, 1e-200}, dcomplex{1e200, -1e200}),
            of(2.0, 0.0));
  // Products of singles are exact; one rounding at the end.
  const fcomplex a{1 + 0x1p-23f, 1 - 0x1p-24f}, b{1 + 0x1p-23f, 1 - 0x1p-24f};
  EXPECT_EQ(called(__zorvik_cmul, a, b),
            of(static_cast<float>(0x1.8p-22), static_cast<float>(2 + 0x1p-23)));
}

TEST(ComplexProduct, HasNoGuards) {
  EXPECT_EQ(called(__zorvik_cdmul, dcomplex{infinity8, 0}, dcomplex{1, 0}),
            of(infinity8, default_nan8));
  EXPECT_EQ(called(__zorvik_cdmul, dcomplex{infinity8, infinity8}, dcomplex{1, 1}),
            of(default_nan8, infinity8));
  EXPECT_EQ(called(__zorvik_cmul, fcomplex{infinity4, 0}, fcomplex{1, 0}),
            of(infinity4, default_nan4));
}

TEST(ComplexQuotient, ByNothingIsNotANumber) {
  for (const double re : {0.0, -0.0, nan8})
    for (const double im : {0.0, -0.0, nan8})
      for (const double top : {0.0, 1.0, infinity8}) {
        EXPECT_EQ(called(__zorvik_cddiv, dcomplex{top, 0}, dcomplex{re, im}), of(nan8, nan8));
        const auto single = [](double x) { return static_cast<float>(x); };
        EXPECT_EQ(called(__zorvik_cdiv, fcomplex{single(top), 0}, fcomplex{single(re), single(im)}),
                  of(nan4, nan4));
      }
  EXPECT_EQ(flags_of([] { called(__zorvik_cddiv, dcomplex{1, 1}, dcomplex{0, 0}); }), 0u);
  // With one part left the payload goes through.
  const double payload = from_bits(std::uint64_t{0x7FF8000000ABCDEF});
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1, 1}, dcomplex{payload, 1}), of(payload, payload));
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1, 1}, dcomplex{1, payload}), of(payload, payload));
}

TEST(ComplexQuotient, BySmith) {
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1e308, 0}, dcomplex{1e308, 1e308}), of(0.5, -0.5));
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1, 0}, dcomplex{infinity8, 1}), of(0.0, 0.0));
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{infinity8, 1}, dcomplex{1, 0}),
            of(infinity8, default_nan8));
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1, 1}, dcomplex{infinity8, infinity8}),
            of(default_nan8, default_nan8));
  // The imaginary part of the two forms differs in the sign of a zero.
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{2, 1}, dcomplex{2, 1}), of(1.0, 0.0));
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1, 2}, dcomplex{1, 2}), of(1.0, 0.0));
  EXPECT_EQ(called(__zorvik_cddiv, dcomplex{1, -1}, dcomplex{1, -1}), of(1.0, -0.0));
  EXPECT_EQ(called(__zorvik_cdiv, fcomplex{-5, 10}, fcomplex{3, 4}), of(1.0f, 2.0f));
  EXPECT_EQ(called(__zorvik_cdiv, fcomplex{-5, 10}, fcomplex{4, 3}), of(0.4f, 2.2f));
}

TEST(ComplexQuotient, UndoesTheProduct) {
  for (double x = -3; x < 3; x += 0.7)
    for (double y = -3; y < 3; y += 0.9) {
      const dcomplex a{x, y}, b{y - 0.3, x + 0.2};
      dcomplex product, back;
      __zorvik_cdmul(&product, a, b);
      __zorvik_cddiv(&back, product, b);
      EXPECT_NEAR(back.re, x, 0x1p-48);
      EXPECT_NEAR(back.im, y, 0x1p-48);
    }
}

TEST(ComplexParts, SignsAndNaNs) {
  EXPECT_EQ(double_bits(__zorvik_dimag({1, -nan8})), bits(-nan8));
  EXPECT_EQ(single_bits(__zorvik_aimag({1, -0.0f})), bits(-0.0f));
  EXPECT_EQ(called(__zorvik_conjg, fcomplex{1.5f, 0}), of(1.5f, -0.0f));
  EXPECT_EQ(called(__zorvik_dconjg, dcomplex{1, nan8}), of(1.0, -nan8));
  EXPECT_EQ(called(__zorvik_conjg, fcomplex{1, -nan4}), of(1.0f, nan4));
}
