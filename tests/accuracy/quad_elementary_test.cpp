// The REAL*16 functions against MPFR at 200 bits, over their whole ranges. The bounds are what the
// methods promise, in units of 2**-106: relative to the result, or of an absolute error where the
// result crosses zero. A wrong digit in a coefficient or a piece of a constant shows as lost
// accuracy.

#include <mpfr.h>

#include <cmath>
#include <functional>
#include <random>

#include "entries.hpp"
#include "support/quad_results.hpp"

using namespace support;
using zrt::quad;

namespace {

constexpr int precision = 200;
constexpr int operands = 4000;

class number {
 public:
  number() { mpfr_init2(value_, precision); }
  explicit number(const quad& q) : number() {
    mpfr_set_d(value_, q.hi, MPFR_RNDN);
    mpfr_add_d(value_, value_, q.lo, MPFR_RNDN);
  }
  ~number() { mpfr_clear(value_); }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
  operator mpfr_ptr() { return value_; }
  operator mpfr_srcptr() const { return value_; }

 private:
  mpfr_t value_;
};

using value_entry = quad* (*)(quad*, quad);
using exact_function = std::function<void(mpfr_ptr, mpfr_srcptr)>;

/// An MPFR function, rounded to nearest.
template <class F>
exact_function exact(F function) {
  return [function](mpfr_ptr result, mpfr_srcptr x) { function(result, x, MPFR_RNDN); };
}
exact_function of_degrees(exact_function function) {
  return [function](mpfr_ptr result, mpfr_srcptr x) {
    number radians;
    mpfr_const_pi(radians, MPFR_RNDN);
    mpfr_mul(radians, radians, x, MPFR_RNDN);
    mpfr_div_ui(radians, radians, 180, MPFR_RNDN);
    function(result, radians);
  };
}
exact_function in_degrees(exact_function function) {
  return [function](mpfr_ptr result, mpfr_srcptr x) {
    number pi;
    mpfr_const_pi(pi, MPFR_RNDN);
    function(result, x);
    mpfr_mul_ui(result, result, 180, MPFR_RNDN);
    mpfr_div(result, result, pi, MPFR_RNDN);
  };
}

/// |got - exact| in units of 2**-106 of `scale`, or of the exact value where scale is zero.
double error(const quad& got, const number& exact_value, double scale) {
  number difference(got), unit;
  mpfr_sub(difference, difference, exact_value, MPFR_RNDN);
  if (scale == 0)
    mpfr_set(unit, exact_value, MPFR_RNDN);
  else
    mpfr_set_d(unit, scale, MPFR_RNDN);
  if (mpfr_zero_p(static_cast<mpfr_ptr>(difference))) return 0;
  mpfr_div(difference, difference, unit, MPFR_RNDN);
  mpfr_mul_2si(difference, difference, 106, MPFR_RNDN);
  return std::abs(mpfr_get_d(difference, MPFR_RNDN));
}

/// A normalised REAL*16 in the interval: half of them spread evenly, half over the exponents.
quad draw(double low, double high, std::mt19937_64& random) {
  const double unit = static_cast<double>(random() >> 11) * 0x1p-53;
  const double hi =
      random() % 2 == 0 || low * high <= 0
          ? low + (high - low) * unit
          : std::copysign(std::exp(std::log(std::abs(low)) + std::log(high / low) * unit), low);
  const double ulp = std::abs(hi) * 0x1p-54;
  return {hi, ulp * (static_cast<double>(random() >> 11) * 0x1p-53 - 0.5)};
}

struct interval {
  double low, high, bound;
  double scale = 0;
};

void expect_within(const char* name, value_entry entry, const exact_function& function,
                   std::initializer_list<interval> intervals) {
  for (const interval& range : intervals) {
    std::mt19937_64 random(23);
    double worst = 0;
    quad where{};
    for (int i = 0; i < operands; ++i) {
      const quad x = draw(range.low, range.high, random);
      number value;
      function(value, number(x));
      const double distance = error(result_of(entry, x), value, range.scale);
      if (!(distance <= worst)) worst = distance, where = x;
    }
    EXPECT_LE(worst, range.bound) << name << " at " << image_of_quad(where);
  }
}

}  // namespace

// The error of ln 2 times the exponent.
TEST(QuadAccuracy, Exponential) {
  expect_within("expl", __zorvik_expl, exact(mpfr_exp),
                {{-1e-30, 1e-30, 1},
                 {-0.1, 0.1, 4},
                 {-3, 3, 20},
                 {-30, 30, 120},
                 {-100, 100, 500},
                 {-630, 709, 3000}});
}

TEST(QuadAccuracy, Logarithms) {
  const std::initializer_list<interval> ranges = {{0.7, 1.5, 8},
                                                  {1 - 1e-9, 1 + 1e-9, 4},
                                                  {0.1251, 3.999, 8},
                                                  {4.001, 1e300, 4},
                                                  {1e-300, 0.1249, 4}};
  expect_within("logl", __zorvik_logl, exact(mpfr_log), ranges);
  expect_within("log10l", __zorvik_log10l, exact(mpfr_log10),
                {{0.7, 1.5, 12}, {1e-300, 1e300, 10}});
}

TEST(QuadAccuracy, SquareRoot) {
  expect_within("sqrtl", __zorvik_sqrtl, exact(mpfr_sqrt), {{1e-250, 1e300, 4}, {0.5, 2, 4}});
}

TEST(QuadAccuracy, Hyperbolic) {
  expect_within("sinhl", __zorvik_sinhl, exact(mpfr_sinh),
                {{1e-200, 0.05, 4}, {0.050001, 1, 40}, {-30, -1, 120}, {30, 700, 3000}});
  expect_within("coshl", __zorvik_coshl, exact(mpfr_cosh),
                {{-1, 1, 4}, {1, 30, 120}, {-630, -30, 3000}});
  expect_within("tanhl", __zorvik_tanhl, exact(mpfr_tanh),
                {{1e-200, 0.6249, 4}, {0.6251, 3, 6}, {-400, -3, 1}});
}

// Absolute errors: the stored pi times the quotient.
TEST(QuadAccuracy, Circular) {
  const std::initializer_list<interval> ranges = {
      {-0.039, 0.039, 1, 1}, {-0.8, 0.8, 12, 1}, {-20, 20, 90, 1}, {-1e6, 1e6, 4e6, 1}};
  expect_within("sinl", __zorvik_sinl, exact(mpfr_sin), ranges);
  expect_within("cosl", __zorvik_cosl, exact(mpfr_cos), ranges);
  expect_within("sindl", __zorvik_sindl, of_degrees(exact(mpfr_sin)), {{-360, 360, 30, 1}});
  expect_within("cosdl", __zorvik_cosdl, of_degrees(exact(mpfr_cos)), {{-360, 360, 30, 1}});
  expect_within("tanl", __zorvik_tanl, exact(mpfr_tan), {{-1.2, 1.2, 20, 1}, {-0.03, 0.03, 1, 1}});
  expect_within("cotl", __zorvik_cotl, exact(mpfr_cot), {{0.4, 1.5, 20, 1}});
  expect_within("tandl", __zorvik_tandl, of_degrees(exact(mpfr_tan)), {{-60, 60, 20, 1}});
}

TEST(QuadAccuracy, ArcsineAndArccosine) {
  const std::initializer_list<interval> ranges = {
      {-0.8659, 0.8659, 30, 1}, {0.8661, 1, 40, 1}, {-1, -0.8661, 20, 1}};
  expect_within("asinl", __zorvik_asinl, exact(mpfr_asin), ranges);
  expect_within("acosl", __zorvik_acosl, exact(mpfr_acos), ranges);
  expect_within("asindl", __zorvik_asindl, in_degrees(exact(mpfr_asin)), {{-1, 1, 30, 57.3}});
  expect_within("acosdl", __zorvik_acosdl, in_degrees(exact(mpfr_acos)), {{-1, 1, 40, 57.3}});
}

TEST(QuadAccuracy, Arctangent) {
  const std::initializer_list<interval> ranges = {
      {1e-200, 0.414, 4}, {-2.414, -0.415, 8}, {2.415, 1e300, 8}};
  expect_within("atanl", __zorvik_atanl, exact(mpfr_atan), ranges);
  expect_within("atandl", __zorvik_atandl, in_degrees(exact(mpfr_atan)), ranges);
}

namespace {

/// The worst error of an entry of two operands over the rectangle.
template <class Exact>
double worst_of_two(quad* (*entry)(quad*, quad, quad), Exact function, interval first,
                    interval second, double scale) {
  std::mt19937_64 random(29);
  double worst = 0;
  for (int i = 0; i < operands; ++i) {
    const quad a = draw(first.low, first.high, random), b = draw(second.low, second.high, random);
    number value;
    function(value, number(a), number(b), MPFR_RNDN);
    worst = std::max(worst, error(result_of(entry, a, b), value, scale));
  }
  return worst;
}

}  // namespace

TEST(QuadAccuracy, Arithmetic) {
  const interval any{1e-100, 1e100, 0}, negative{-1e100, -1e-100, 0};
  EXPECT_LE(worst_of_two(__zorvik_qadd, mpfr_add, any, any, 0), 3);
  EXPECT_LE(worst_of_two(__zorvik_qsub, mpfr_sub, any, negative, 0), 3);
  EXPECT_LE(worst_of_two(__zorvik_qmul, mpfr_mul, any, negative, 0), 3);
  EXPECT_LE(worst_of_two(__zorvik_qdiv, mpfr_div, negative, any, 0), 4);
}

// The error of the logarithm times |y log x|.
TEST(QuadAccuracy, Power) {
  EXPECT_LE(worst_of_two(__zorvik_powl, mpfr_pow, {0.1, 10, 0}, {-10, 10, 0}, 0), 120);
  EXPECT_LE(worst_of_two(__zorvik_powl, mpfr_pow, {1e-12, 1e12, 0}, {-20, 20, 0}, 0), 3000);
}

// One Newton step: the error grows with |y/x|, up to where the quotient gives the angle.
TEST(QuadAccuracy, AngleOfAPoint) {
  const interval unit{0.5, 2, 0}, negative{-2, -0.5, 0};
  EXPECT_LE(worst_of_two(__zorvik_atan2l, mpfr_atan2, unit, unit, 1), 20);
  EXPECT_LE(worst_of_two(__zorvik_atan2l, mpfr_atan2, negative, negative, 1), 20);
  EXPECT_LE(worst_of_two(__zorvik_atan2l, mpfr_atan2, {1e-250, 1e-3, 0}, unit, 0), 8);
  EXPECT_LE(worst_of_two(__zorvik_atan2l, mpfr_atan2, {2e16, 1e30, 0}, unit, 1), 8);
  const auto in_degrees = [](mpfr_ptr result, mpfr_srcptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
    number pi;
    mpfr_const_pi(pi, mode);
    mpfr_atan2(result, y, x, mode);
    mpfr_mul_ui(result, result, 180, mode);
    return mpfr_div(result, result, pi, mode);
  };
  EXPECT_LE(worst_of_two(__zorvik_atan2dl, in_degrees, unit, unit, 57.3), 20);
}
