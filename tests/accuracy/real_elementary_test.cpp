// The elementary functions of REAL*4 and REAL*8 against MPFR. The bounds are those of the methods,
// in units of the last place of the format: a wrong digit in a coefficient, a table row or a piece
// of a constant shows as lost accuracy. The tables are held against their rules.

#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <random>

#include "entries.hpp"
#include "support/bits.hpp"

using namespace support;

namespace {

constexpr int precision = 160;
constexpr int operands = 10000;

class number {
 public:
  number() { mpfr_init2(value_, precision); }
  ~number() { mpfr_clear(value_); }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
  operator mpfr_ptr() { return value_; }

 private:
  mpfr_t value_;
};

using reference = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
using reference_of_two = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

/// Whole degrees into radians, for MPFR builds without functions of degrees.
template <reference function>
int of_degrees(mpfr_ptr result, mpfr_srcptr x, mpfr_rnd_t mode) {
  number radians;
  mpfr_const_pi(radians, mode);
  mpfr_mul(radians, radians, x, mode);
  mpfr_div_ui(radians, radians, 180, mode);
  return function(result, radians, mode);
}
template <reference function>
int in_degrees(mpfr_ptr result, mpfr_srcptr x, mpfr_rnd_t mode) {
  number pi;
  function(result, x, mode);
  mpfr_const_pi(pi, mode);
  mpfr_mul_ui(result, result, 180, mode);
  return mpfr_div(result, result, pi, mode);
}
int angle_in_degrees(mpfr_ptr result, mpfr_srcptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
  number pi;
  mpfr_atan2(result, y, x, mode);
  mpfr_const_pi(pi, mode);
  mpfr_mul_ui(result, result, 180, mode);
  return mpfr_div(result, result, pi, mode);
}

template <class F>
constexpr int digits = sizeof(F) == 8 ? DBL_MANT_DIG : FLT_MANT_DIG;

/// |got - exact| in units of the last place of exact, or of `least` where that is greater.
template <class F>
double error(F got, mpfr_ptr exact, double least) {
  number difference, scale;
  mpfr_set_d(difference, got, MPFR_RNDN);
  mpfr_sub(difference, difference, exact, MPFR_RNDN);
  mpfr_exp_t exponent = mpfr_zero_p(exact) ? mpfr_get_emin() : mpfr_get_exp(exact);
  if (least > 0) exponent = std::max<mpfr_exp_t>(exponent, std::ilogb(least) + 1);
  mpfr_mul_2si(difference, difference, digits<F> - exponent, MPFR_RNDN);
  return std::abs(mpfr_get_d(difference, MPFR_RNDN));
}

/// Half of the operands spread evenly over the interval, half over its exponents.
template <class F>
F draw(double low, double high, std::mt19937_64& random) {
  const double unit = static_cast<double>(random() >> 11) * 0x1p-53;
  if (random() % 2 == 0 || low * high <= 0) return static_cast<F>(low + (high - low) * unit);
  return static_cast<F>(
      std::copysign(std::exp(std::log(std::abs(low)) +
                             (std::log(std::abs(high)) - std::log(std::abs(low))) * unit),
                    low));
}

struct interval {
  double low, high, bound;
  double least = 0;  // the unit is never smaller than that of this value
};

template <class F>
void expect_within(const char* name, F (*function)(F), reference exact_function,
                   std::initializer_list<interval> intervals) {
  for (const interval& range : intervals) {
    std::mt19937_64 random(11);
    double worst = 0, where = 0;
    number x, exact;
    for (int i = 0; i < operands; ++i) {
      const F operand = draw<F>(range.low, range.high, random);
      mpfr_set_d(x, operand, MPFR_RNDN);
      exact_function(exact, x, MPFR_RNDN);
      const double distance = error(function(operand), exact, range.least);
      if (!(distance <= worst)) worst = distance, where = operand;
    }
    EXPECT_LE(worst, range.bound) << name << " at " << where;
  }
}

template <class F, class Second>
void expect_within(const char* name, F (*function)(F, Second), reference_of_two exact_function,
                   interval first, interval second) {
  std::mt19937_64 random(12);
  double worst = 0, where[2] = {};
  number a, b, exact;
  for (int i = 0; i < operands; ++i) {
    const F x = draw<F>(first.low, first.high, random);
    const Second y = static_cast<Second>(draw<F>(second.low, second.high, random));
    mpfr_set_d(a, x, MPFR_RNDN);
    mpfr_set_d(b, static_cast<double>(y), MPFR_RNDN);
    exact_function(exact, a, b, MPFR_RNDN);
    const double distance = error(function(x, y), exact, first.least);
    if (!(distance <= worst)) worst = distance, where[0] = x, where[1] = static_cast<double>(y);
  }
  EXPECT_LE(worst, first.bound) << name << " at " << where[0] << ", " << where[1];
}

#define SYMBOL(stem) __zorvik_##stem
#define EXPECT_WITHIN(stem, exact, ...) expect_within(#stem, SYMBOL(stem), exact, __VA_ARGS__)

}  // namespace

TEST(RealAccuracy, Exponential) {
  EXPECT_WITHIN(dexp, mpfr_exp, {{-708.3, 709.0, 1.6}, {1e-17, 1, 1.5}, {-1, -1e-17, 1.6}});
  EXPECT_WITHIN(exp, mpfr_exp, {{-87.3, 88.0, 0.52}, {1e-9, 1, 0.52}, {-1, -1e-9, 0.52}});
}

TEST(RealAccuracy, Logarithm) {
  // 0.939 to 1.065 is the range of the series near 1, where the result itself goes to zero.
  EXPECT_WITHIN(dlog, mpfr_log, {{1e-307, 1e308, 0.51}, {0.5, 2, 0.7}, {0.93, 1.07, 0.56}});
  EXPECT_WITHIN(alog, mpfr_log, {{1e-37, 1e38, 0.51}, {0.5, 2, 0.52}, {0.93, 1.07, 0.52}});
  EXPECT_WITHIN(dlog10, mpfr_log10, {{1e-307, 1e308, 1.4}, {0.5, 2, 1.7}, {0.93, 1.07, 1.7}});
  EXPECT_WITHIN(alog10, mpfr_log10, {{1e-37, 1e38, 0.92}, {0.5, 2, 0.92}, {0.93, 1.07, 0.92}});
}

TEST(RealAccuracy, Roots) {
  EXPECT_WITHIN(dsqrt, mpfr_sqrt, {{1e-307, 1e308, 0.76}, {1, 4, 0.76}});
  EXPECT_WITHIN(sqrt, mpfr_sqrt, {{1e-37, 1e38, 0.87}, {1, 4, 0.87}});
}

TEST(RealAccuracy, Circular) {
  // Beyond the first turns the error is that of the multiple of pi, 2**-70 (REAL*4: 2**-34) for
  // each, which near the zeros of the function is no longer small beside the result.
  EXPECT_WITHIN(dsin, mpfr_sin, {{1e-300, 1.5, 1.9}, {-1.5, 1.5, 1.9}, {-1e3, 1e3, 1.9, 0.1}});
  EXPECT_WITHIN(dcos, mpfr_cos, {{-1.5, 1.5, 2, 0.1}, {-1e3, 1e3, 1.9, 0.1}});
  EXPECT_WITHIN(dsin, mpfr_sin, {{1e6, 2.9e8, 12000, 0.1}});
  EXPECT_WITHIN(dcos, mpfr_cos, {{1e6, 2.9e8, 12000, 0.1}});
  EXPECT_WITHIN(sin, mpfr_sin, {{1e-30, 1.5, 0.72}, {-1.5, 1.5, 0.72}, {-1e3, 1e3, 2.9, 0.1}});
  EXPECT_WITHIN(cos, mpfr_cos, {{-1.5, 1.5, 0.75, 0.1}, {-1e3, 1e3, 2.9, 0.1}});
  EXPECT_WITHIN(sin, mpfr_sin, {{1e3, 8e3, 20, 0.1}});
  EXPECT_WITHIN(cos, mpfr_cos, {{1e3, 8e3, 20, 0.1}});
  EXPECT_WITHIN(dtan, mpfr_tan, {{1e-300, 1.5, 2.6}, {-1.5, 1.5, 2.6}, {-1e2, 1e2, 2.6, 1}});
  EXPECT_WITHIN(tan, mpfr_tan, {{1e-30, 1.5, 2.1}, {-1.5, 1.5, 2.1}, {-1e2, 1e2, 13, 1}});
  EXPECT_WITHIN(dcot, mpfr_cot, {{1e-300, 1.5, 3.5}, {-1.5, 1.5, 3.5}});
  EXPECT_WITHIN(cot, mpfr_cot, {{1e-30, 1.5, 0.501}, {-1.5, 1.5, 0.501}, {-1e6, 1e6, 0.501}});
  // A degree's factor and the product are rounded before the function sees them.
  EXPECT_WITHIN(dsind, of_degrees<mpfr_sin>, {{-90, 90, 1.9}});
  EXPECT_WITHIN(dcosd, of_degrees<mpfr_cos>, {{-80, 80, 5.2}});
  EXPECT_WITHIN(sind, of_degrees<mpfr_sin>, {{-90, 90, 1.5}});
  EXPECT_WITHIN(cosd, of_degrees<mpfr_cos>, {{-80, 80, 5.2}});
  EXPECT_WITHIN(dtand, of_degrees<mpfr_tan>, {{-80, 80, 6.2}});
  EXPECT_WITHIN(tand, of_degrees<mpfr_tan>, {{-80, 80, 6.2}});
}

TEST(RealAccuracy, InverseCircular) {
  EXPECT_WITHIN(dasin, mpfr_asin, {{1e-300, 1, 2.2}, {-1, 1, 2.2}});
  EXPECT_WITHIN(dacos, mpfr_acos, {{-1, 0.99, 1.2}, {0.99, 1, 1.02}});
  EXPECT_WITHIN(asin, mpfr_asin, {{1e-30, 1, 2.4}, {-1, 1, 2.4}});
  EXPECT_WITHIN(acos, mpfr_acos, {{-1, 0.99, 1.3}, {0.99, 1, 1.02}});
  EXPECT_WITHIN(datan, mpfr_atan, {{1e-300, 1e300, 1.7}, {-4, 4, 2.6}});
  EXPECT_WITHIN(atan, mpfr_atan, {{1e-30, 1e30, 1.6}, {-4, 4, 1.6}});
  EXPECT_WITHIN(datan2, mpfr_atan2, {-10, 10, 1.4}, {-10, 10, 0});
  EXPECT_WITHIN(datan2, mpfr_atan2, {1e-290, 1e300, 1.01}, {1e-10, 1e10, 0});
  EXPECT_WITHIN(atan2, mpfr_atan2, {-10, 10, 1.4}, {-10, 10, 0});
  EXPECT_WITHIN(datan2d, angle_in_degrees, {-10, 10, 2.5}, {-10, 10, 0});
  EXPECT_WITHIN(atan2d, angle_in_degrees, {-10, 10, 2.7}, {-10, 10, 0});
  EXPECT_WITHIN(dasind, in_degrees<mpfr_asin>, {{-1, 1, 4}});
  EXPECT_WITHIN(dacosd, in_degrees<mpfr_acos>, {{-1, 1, 2.6}});
  EXPECT_WITHIN(asind, in_degrees<mpfr_asin>, {{-1, 1, 4.5}});
  EXPECT_WITHIN(acosd, in_degrees<mpfr_acos>, {{-1, 1, 2.2}});
  EXPECT_WITHIN(datand, in_degrees<mpfr_atan>, {{-4, 4, 4.2}});
  EXPECT_WITHIN(atand, in_degrees<mpfr_atan>, {{-4, 4, 3.2}});
}

TEST(RealAccuracy, Hyperbolic) {
  EXPECT_WITHIN(dsinh, mpfr_sinh,
                {{1e-300, 1, 0.85}, {-1, 1, 0.85}, {1, 710, 0.76}, {-2, -1, 0.6}});
  EXPECT_WITHIN(sinh, mpfr_sinh, {{1e-30, 1, 0.9}, {-1, 1, 0.9}, {1, 89, 0.501}, {-2, -1, 0.501}});
  EXPECT_WITHIN(dcosh, mpfr_cosh, {{1e-300, 1, 0.65}, {-710, 710, 0.76}, {-2, 2, 0.65}});
  EXPECT_WITHIN(cosh, mpfr_cosh, {{1e-30, 1, 0.501}, {-89, 89, 0.501}, {-2, 2, 0.501}});
  EXPECT_WITHIN(dtanh, mpfr_tanh, {{1e-300, 0.549, 0.85}, {-0.549, 0.549, 0.85}, {0.55, 20, 1.3}});
  EXPECT_WITHIN(tanh, mpfr_tanh, {{1e-30, 0.549, 0.61}, {-0.549, 0.549, 0.61}, {0.55, 20, 0.501}});
}

TEST(RealAccuracy, Powers) {
  EXPECT_WITHIN(dtod, mpfr_pow, {0.5, 2, 0.65}, {-2, 2, 0});
  EXPECT_WITHIN(dtod, mpfr_pow, {1e-10, 1e10, 0.72}, {-30, 30, 0});
  EXPECT_WITHIN(ftof, mpfr_pow, {0.5, 2, 1.1}, {-2, 2, 0});
  EXPECT_WITHIN(ftof, mpfr_pow, {1e-3, 1e3, 1.2}, {-12.5, 12.5, 0});
  // The logarithm is good to 1e-8, which a large exponent multiplies.
  EXPECT_WITHIN(ftof, mpfr_pow, {0.99, 1.01, 1700}, {-8000, 8000, 0});
  // Half a unit for each of the roundings, squares twice.
  EXPECT_WITHIN(dtoi, mpfr_pow, {0.5, 2, 70}, {-100, 100, 0});
  EXPECT_WITHIN(ftoi, mpfr_pow, {0.5, 2, 70}, {-100, 100, 0});
}
