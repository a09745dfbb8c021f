// The functions of COMPLEX*8 and COMPLEX*16 against MPFR, part by part. The error of a part counts
// in units of the last place of the larger part of the exact result: the smaller one cancels.

#include <gtest/gtest.h>
#include <mpfr.h>

#include <array>
#include <cmath>
#include <random>

#include "support/complex_results.hpp"

using namespace support;
using zrt::dcomplex;
using zrt::fcomplex;

namespace {

constexpr int operands = 4000;

class number {
 public:
  number() { mpfr_init2(value_, 200); }
  number(double value) : number() { mpfr_set_d(value_, value, MPFR_RNDN); }
  ~number() { mpfr_clear(value_); }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
  operator mpfr_ptr() { return value_; }
  operator mpfr_srcptr() const { return value_; }

 private:
  mpfr_t value_;
};

struct exact {
  number re, im;
};

void exponential(exact& result, const exact& z) {
  number size;
  mpfr_exp(size, z.re, MPFR_RNDN);
  mpfr_sin_cos(result.im, result.re, z.im, MPFR_RNDN);
  mpfr_mul(result.re, result.re, size, MPFR_RNDN);
  mpfr_mul(result.im, result.im, size, MPFR_RNDN);
}

void logarithm(exact& result, const exact& z) {
  mpfr_hypot(result.re, z.re, z.im, MPFR_RNDN);
  mpfr_log(result.re, result.re, MPFR_RNDN);
  mpfr_atan2(result.im, z.im, z.re, MPFR_RNDN);
}

/// w = sqrt((|z| + |x|) / 2), v = |y| / 2w.
void square_root(exact& result, const exact& z) {
  number w, v, x;
  mpfr_abs(x, z.re, MPFR_RNDN);
  mpfr_hypot(w, z.re, z.im, MPFR_RNDN);
  mpfr_add(w, w, x, MPFR_RNDN);
  mpfr_div_ui(w, w, 2, MPFR_RNDN);
  mpfr_sqrt(w, w, MPFR_RNDN);
  mpfr_abs(v, z.im, MPFR_RNDN);
  mpfr_div(v, v, w, MPFR_RNDN);
  mpfr_div_ui(v, v, 2, MPFR_RNDN);
  const bool right = mpfr_sgn(static_cast<mpfr_srcptr>(z.re)) >= 0;
  mpfr_set(result.re, right ? w : v, MPFR_RNDN);
  mpfr_setsign(result.im, right ? v : w, mpfr_signbit(static_cast<mpfr_srcptr>(z.im)), MPFR_RNDN);
}

void sine(exact& result, const exact& z) {
  number cosine_of_x, sine_of_y;
  mpfr_sin_cos(result.re, cosine_of_x, z.re, MPFR_RNDN);
  mpfr_sinh_cosh(sine_of_y, result.im, z.im, MPFR_RNDN);
  mpfr_mul(result.re, result.re, result.im, MPFR_RNDN);
  mpfr_mul(result.im, cosine_of_x, sine_of_y, MPFR_RNDN);
}

void cosine(exact& result, const exact& z) {
  number sine_of_x, sine_of_y;
  mpfr_sin_cos(sine_of_x, result.re, z.re, MPFR_RNDN);
  mpfr_sinh_cosh(sine_of_y, result.im, z.im, MPFR_RNDN);
  mpfr_mul(result.re, result.re, result.im, MPFR_RNDN);
  mpfr_mul(result.im, sine_of_x, sine_of_y, MPFR_RNDN);
  mpfr_neg(result.im, result.im, MPFR_RNDN);
}

double error(double got, mpfr_srcptr wanted, mpfr_exp_t exponent, int digits) {
  number difference(got);
  mpfr_sub(difference, difference, wanted, MPFR_RNDN);
  mpfr_mul_2si(difference, difference, digits - exponent, MPFR_RNDN);
  return std::abs(mpfr_get_d(difference, MPFR_RNDN));
}

/// The largest error of a part, over the square of that half-width around zero.
template <class C, class Entry>
double worst(Entry entry, void (*function)(exact&, const exact&), double width) {
  constexpr int digits = sizeof(C) == sizeof(dcomplex) ? 53 : 24;
  using part = decltype(C::re);
  std::mt19937_64 random(13);
  std::uniform_real_distribution<double> spread(-width, width);
  double largest = 0;
  for (int i = 0; i < operands; ++i) {
    const C z{static_cast<part>(spread(random)), static_cast<part>(spread(random))};
    exact operand, result;
    mpfr_set_d(operand.re, z.re, MPFR_RNDN);
    mpfr_set_d(operand.im, z.im, MPFR_RNDN);
    function(result, operand);
    const auto got = called(entry, z);
    const mpfr_exp_t exponent = std::max(mpfr_get_exp(static_cast<mpfr_srcptr>(result.re)),
                                         mpfr_get_exp(static_cast<mpfr_srcptr>(result.im)));
    largest = std::max({largest, error(from_bits(got.re), result.re, exponent, digits),
                        error(from_bits(got.im), result.im, exponent, digits)});
  }
  return largest;
}

}  // namespace

TEST(ComplexAccuracy, OfComplex16) {
  EXPECT_LE(worst<dcomplex>(__zorvik_cdexp, exponential, 3), 0.6);
  EXPECT_LE(worst<dcomplex>(__zorvik_cdexp, exponential, 30), 0.6);
  EXPECT_LE(worst<dcomplex>(__zorvik_cdlog, logarithm, 10), 2.4);
  EXPECT_LE(worst<dcomplex>(__zorvik_cdsqrt, square_root, 10), 1.4);
  EXPECT_LE(worst<dcomplex>(__zorvik_cdsin, sine, 5), 1.9);
  EXPECT_LE(worst<dcomplex>(__zorvik_cdcos, cosine, 5), 1.9);
}

TEST(ComplexAccuracy, OfComplex8) {
  EXPECT_LE(worst<fcomplex>(__zorvik_cexp, exponential, 3), 0.51);
  EXPECT_LE(worst<fcomplex>(__zorvik_clog, logarithm, 10), 1.4);
  EXPECT_LE(worst<fcomplex>(__zorvik_csqrt, square_root, 10), 0.95);
  EXPECT_LE(worst<fcomplex>(__zorvik_csin, sine, 5), 1.8);
  EXPECT_LE(worst<fcomplex>(__zorvik_ccos, cosine, 5), 1.6);
}
