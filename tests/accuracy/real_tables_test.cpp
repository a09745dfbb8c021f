// The tables of the logarithms and of the REAL*4 power against their rules.

#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>

#include "support/bits.hpp"

using namespace support;

namespace {

template <class F>
struct log_row {
  F leading, rest, reciprocal;
};
constexpr log_row<double> real8[] = {
#include "real/log_rows_real8.inc"
};
constexpr log_row<float> real4[] = {
#include "real/log_rows_real4.inc"
};
#include "real/power_rows.inc"

class number {
 public:
  number() { mpfr_init2(value_, 200); }
  ~number() { mpfr_clear(value_); }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
  operator mpfr_ptr() { return value_; }
  /// Rounded to the format.
  template <class F>
  F as() {
    return sizeof(F) == 8 ? static_cast<F>(mpfr_get_d(value_, MPFR_RNDN))
                          : static_cast<F>(mpfr_get_flt(value_, MPFR_RNDN));
  }

 private:
  mpfr_t value_;
};

template <class F, std::size_t rows>
void expect_logarithms(const log_row<F> (&table)[rows], int unit, auto kept) {
  ASSERT_EQ(rows, 129u);
  for (int j = 0; j <= 128; ++j) {
    number node, exact, leading;
    mpfr_set_d(node, 1 + j / 128.0, MPFR_RNDN);
    mpfr_log(exact, node, MPFR_RNDN);
    mpfr_mul_2si(leading, exact, -unit, MPFR_RNDN);
    mpfr_rint(leading, leading, MPFR_RNDN);
    mpfr_mul_2si(leading, leading, unit, MPFR_RNDN);
    EXPECT_EQ(bits(table[j].leading), bits(leading.as<F>())) << j;
    mpfr_sub(exact, exact, leading, MPFR_RNDN);
    if (!kept(j)) {
      EXPECT_EQ(bits(table[j].rest), bits(exact.as<F>())) << j;
    }
    mpfr_ui_div(node, 1, node, MPFR_RNDN);
    EXPECT_EQ(bits(table[j].reciprocal), bits(node.as<F>())) << j;
  }
}

}  // namespace

TEST(RealTables, OfReal8Logarithm) {
  expect_logarithms(real8, -39, [](int j) { return j == 72 || j == 78 || j == 81; });
  // Three rows whose second piece is not the rounded rest.
  EXPECT_EQ(bits(real8[72].rest), 0x3D5A21AC25DB1EF3u);
  EXPECT_EQ(bits(real8[78].rest), 0x3D3E1F8BF68DBCF3u);
  EXPECT_EQ(bits(real8[81].rest), 0x3D645639A2B61E5Bu);
}

TEST(RealTables, OfReal4Logarithm) {
  expect_logarithms(real4, -16, [](int) { return false; });
}

TEST(RealTables, OfReal4Power) {
  ASSERT_EQ(std::size(power_leading), 17u);
  ASSERT_EQ(std::size(power_rest), 8u);
  for (int k = 0; k <= 16; ++k) {
    number power, leading;
    mpfr_set_d(power, -k / 16.0, MPFR_RNDN);
    mpfr_exp2(power, power, MPFR_RNDN);
    const float nearest = power.as<float>();
    EXPECT_EQ(bits(power_leading[k]), bits(nearest)) << k;
    mpfr_sub_d(leading, power, nearest, MPFR_RNDN);
    if (k % 2 == 1) {
      EXPECT_EQ(bits(power_rest[k / 2]), bits(leading.as<float>())) << k;
    }
  }
}
