// The elementary functions of REAL*16: special values, both sides of every threshold, exact bits
// where the order of the steps decides them.

#include <cmath>

#include "entries.hpp"
#include "support/quad_results.hpp"
#include "support/results.hpp"

using namespace support;
using zrt::quad;

namespace {

constexpr double inf = infinity8;
constexpr quad pi_half = {0x1.921fb54442d18p+0, 0x1.1a62633145c02p-54};
constexpr quad pi = {0x1.921fb54442d18p+1, 0x1.1a62633145c02p-53};

struct row {
  quad operand, result;
};
void expect_rows(quad* (*entry)(quad*, quad), std::initializer_list<row> rows) {
  for (const row& r : rows)
    EXPECT_EQ(image_of_quad(result_of(entry, r.operand)), image_of_quad(r.result))
        << image_of_quad(r.operand);
}
quad of(quad* (*entry)(quad*, quad), quad a) { return result_of(entry, a); }
quad of(quad* (*entry)(quad*, quad, quad), quad a, quad b) { return result_of(entry, a, b); }

quad negated(const quad& a) { return {-a.hi, -a.lo}; }

/// |a - b| in units of 2**-106 of b.
double distance(const quad& a, const quad& b) {
  const long double difference =
      (static_cast<long double>(a.hi) - b.hi) + (static_cast<long double>(a.lo) - b.lo);
  return static_cast<double>(std::abs(difference / b.hi) * 0x1p106L);
}

}  // namespace

TEST(QuadExponential, OfSpecialValuesAndTheEndsOfTheRange) {
  expect_rows(__zorvik_expl, {{{0.0, 0.0}, {1.0, 0.0}},
                              {{-0.0, 0.0}, {1.0, 0.0}},
                              {{1.0, 0.0}, {2.718281828459045, 1.4456468917292507e-16}},
                              {{inf, 0.0}, nan_pair},
                              {{-inf, 0.0}, nan_pair},
                              {{nan8, 0.0}, {nan8, nan8}},
                              {{1.3e308, 0.0}, nan_pair},  // the quotient overflows
                              {{1.2e308, 0.0}, {inf, 0.0}},
                              {{1e10, 0.0}, {inf, 0.0}},
                              {{-1e10, 0.0}, {0.0, 0.0}}});
  EXPECT_TRUE(std::isfinite(of(__zorvik_expl, {709.0, 0.0}).hi));
  const quad overflowed = of(__zorvik_expl, {710.0, 0.0});
  EXPECT_EQ(overflowed.hi, inf);
  EXPECT_TRUE(std::isfinite(overflowed.lo));  // what the scaling gives, not an infinity of its own
  EXPECT_EQ(bits(of(__zorvik_expl, {-745.0, 0.0}).hi), 1u);
  EXPECT_EQ(of(__zorvik_expl, {-746.0, 0.0}).hi, 0.0);
}

// The quotient by ln 2 as a 32-bit integer: from 2147483647.5 on, and from -2147483648.5 down, none
// fits.
TEST(QuadExponential, EndsWhereNoIntegerFits) {
  const double ln_2 = 0x1.62e42fefa39efp-1;
  for (const double n : {2147483646.0, 2147483647.0, 2147483648.0, 3e9}) {
    EXPECT_EQ(of(__zorvik_expl, {n * ln_2, 0.0}).hi, inf) << n;
    EXPECT_EQ(bits(of(__zorvik_expl, {-n * ln_2, 0.0}).hi), 0u) << n;
  }
  EXPECT_QUAD(of(__zorvik_expl, {3e9, 0.0}), {inf, 0.0});
}

TEST(QuadLogarithm, OfSpecialValues) {
  expect_rows(__zorvik_logl, {{{0.0, 5.0}, {-inf, 0.0}},
                              {{-0.0, 0.0}, {-inf, 0.0}},
                              {{-1.0, 0.0}, {nan8, 0.0}},
                              {{-inf, 0.0}, {nan8, 0.0}},
                              {{-nan8, 0.0}, {nan8, 0.0}},
                              {{inf, nan8}, {inf, 0.0}},
                              {{1.0, 0.0}, {0.0, 0.0}},
                              {{2.0, 0.0}, {0.6931471805599453, 2.3190468138462983e-17}},
                              {{1.0, 1e-20}, {1e-20, -4.9999999999999996e-41}}});
  expect_rows(__zorvik_log10l, {{{0.0, 0.0}, nan_pair},
                                {{-1.0, 0.0}, {nan8, nan8}},
                                {{inf, 0.0}, nan_pair},
                                {{1.0, 0.0}, {0.0, 0.0}}});
}

// The near form ends at exponents -2 and 2, the mantissa is halved at sqrt(1/2); the values meet
// there.
TEST(QuadLogarithm, IsContinuousWhereTheFormsMeet) {
  const quad root{0x1.6a09e667f3bcdp-1, -0x1.bdd3413b26458p-55};
  for (const quad& edge : {quad{0.125, 0.0},
                           {4.0, 0.0},
                           root,
                           {8 * root.hi, 8 * root.lo},
                           {root.hi / 64, root.lo / 64}}) {
    const quad below{edge.hi, edge.lo - 0x1p-100 * edge.hi},
        above{edge.hi, edge.lo + 0x1p-100 * edge.hi};
    EXPECT_LT(distance(of(__zorvik_logl, below), of(__zorvik_logl, above)),
              2 * 64 * 2 / std::abs(std::log(edge.hi)) + 10)
        << image_of_quad(edge);
  }
}

TEST(QuadLogarithm, NormalisesSubnormals) {
  for (const int e : {-1023, -1040, -1074}) {
    const double x = std::ldexp(1.0, e + 100);
    const quad scaled = of(__zorvik_logl, {x, 0.0});
    const quad got = of(__zorvik_logl, {from_bits(std::uint64_t{1} << (e + 1074)), 0.0});
    const quad expected =
        of(__zorvik_qsub, scaled, of(__zorvik_qmul, {100.0, 0.0}, of(__zorvik_logl, {2.0, 0.0})));
    EXPECT_LT(distance(got, expected), 16) << e;
  }
}

TEST(QuadPower, OfIntegers) {
  const auto power = [](quad x, std::int32_t n) { return result_of(__zorvik_powli, x, n); };
  EXPECT_QUAD(power({2.0, 0.0}, 10), {1024.0, 0.0});
  EXPECT_QUAD(power({2.0, 0.0}, -1), {0.5, 0.0});
  EXPECT_QUAD(power({-3.0, 0.0}, 3), {-27.0, 0.0});
  EXPECT_QUAD(power({5.0, 0.0}, 0), {1.0, 0.0});
  EXPECT_QUAD(power({1.0, 0.0}, INT32_MIN), {1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, INT32_MAX), {-1.0, 0.0});
  EXPECT_QUAD(power({0.0, -0.0}, 0), {1.0, 0.0});
  EXPECT_QUAD(power({-0.0, 0.0}, -2), {inf, 0.0});
  EXPECT_QUAD(power({-0.0, -0.0}, 5), {-0.0, -0.0});
  for (const std::int32_t n : {0, -3, 4}) EXPECT_QUAD(power({-nan8, 0.0}, n), {-nan8, 0.0});
  EXPECT_QUAD(power({nan8, 1.0}, 0), {1.0, 0.0});
  EXPECT_QUAD(result_of(__zorvik_powlk, quad{-1.0, 0.0}, INT64_MAX), {-1.0, 0.0});
  EXPECT_QUAD(result_of(__zorvik_powlk, quad{1.0, 0.0}, INT64_MIN), {1.0, 0.0});
  for (std::int32_t n = -40; n < 40; ++n)
    EXPECT_EQ(image_of_quad(power({1.1, 1e-17}, n)),
              image_of_quad(result_of(__zorvik_powlk, quad{1.1, 1e-17}, std::int64_t{n})));
}

// Powers by squaring multiply the running product from the right, and the last one from the left.
TEST(QuadPower, MultipliesInItsOwnOrder) {
  const quad x{1.2345678901234567, 3.3e-17};
  const auto times = [](quad a, quad b) { return of(__zorvik_qmul, a, b); };
  const quad one{1.0, 0.0}, square = times(x, x), fourth = times(square, square);
  const quad seventh = times(fourth, times(times(one, x), square));
  EXPECT_EQ(image_of_quad(result_of(__zorvik_powli, x, 7)), image_of_quad(seventh));
  EXPECT_EQ(image_of_quad(result_of(__zorvik_powli, x, -7)),
            image_of_quad(result_of(__zorvik_ddivq, 1.0, seventh)));
}

TEST(QuadPower, ChoosesTheIntegerWayByTheExponent) {
  const auto power = [](quad x, quad y) { return of(__zorvik_powl, x, y); };
  const quad minus_two{-2.0, 0.0};
  for (const double y : {0.0, -0.0, nan8}) EXPECT_QUAD(power({nan8, 7.0}, {y, 3.0}), {1.0, 0.0});
  EXPECT_QUAD(power({nan8, 0.0}, {2.0, 0.0}), {nan8, 0.0});
  EXPECT_QUAD(power({1.0, nan8}, {inf, 0.0}), {1.0, nan8});
  EXPECT_QUAD(power(minus_two, {3.0, 0.0}), {-8.0, 0.0});
  EXPECT_QUAD(power(minus_two, {3.0, nan8}), {-8.0, 0.0});
  EXPECT_QUAD(power(minus_two, {0.5, 0.0}), {nan8, 0.0});
  EXPECT_QUAD(power(minus_two, {0x1p64, 0.0}), {inf, 0.0});
  EXPECT_QUAD(power(minus_two, {0x1p63, 0.0}), {nan8, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {-0x1p63, 0.0}), {1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {0x1p31, 0.0}), {1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {2147483647.0, 0.0}), {-1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {2147483646.5, 0.0}), {nan8, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {4294967295.0, 0.0}), {-1.0, 0.0});
  // With a low part the magnitude goes the general way where the low part is whole, odd or even.
  EXPECT_QUAD(power({-1.0, 0.0}, {0x1p60, 1.0}), {1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {0x1p60, 0x1p33}), {1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {0x1p120, 0x1p60}), {1.0, 0.0});
  EXPECT_QUAD(power({-1.0, 0.0}, {0x1p52, 0.5}), {nan8, 0.0});
  EXPECT_QUAD(power({2.0, 0.0}, {0x1p60, 1.0}), {inf, 0.0});
  EXPECT_QUAD(power({0.0, 0.0}, {0.5, 0.0}), {0.0, 0.0});
  EXPECT_QUAD(power({-0.0, 0.0}, {-0.5, 0.0}), {inf, 0.0});
  EXPECT_QUAD(power({0.0, 0.0}, {-1.0, 0.0}), {inf, 0.0});
  EXPECT_QUAD(power({inf, 0.0}, {0.5, 0.0}), nan_pair);
  EXPECT_QUAD(power({2.0, 0.0}, {inf, 0.0}), nan_pair);
  EXPECT_EQ(image_of_quad(result_of(__zorvik_powld, quad{3.0, 0.0}, 0.5)),
            image_of_quad(power({3.0, 0.0}, {0.5, 0.0})));
}

TEST(QuadRoot, OfSpecialValues) {
  expect_rows(__zorvik_sqrtl, {{{4.0, 0.0}, {2.0, 0.0}},
                               {{2.0, 0.0}, {1.4142135623730951, -9.667293313452912e-17}},
                               {{-0.0, 5.0}, {0.0, 0.0}},
                               {{nan8, 5.0}, {0.0, 0.0}},
                               {{-1e-300, 0.0}, {nan8, 0.0}},
                               {{inf, 0.0}, nan_pair}});
  EXPECT_EQ(flags_of([] { of(__zorvik_sqrtl, {4.0, 0.0}); }), 0u);
}

TEST(QuadHyperbolic, OfSpecialValues) {
  for (const double x : {0.0, -0.0, nan8}) {
    EXPECT_QUAD(of(__zorvik_sinhl, {x, 1.0}), {0.0, 0.0});
    EXPECT_QUAD(of(__zorvik_coshl, {x, 1.0}), {1.0, 0.0});
  }
  for (const double x : {710.0, -710.0, inf}) {
    EXPECT_TRUE(std::isnan(of(__zorvik_sinhl, {x, 0.0}).hi)) << x;
    EXPECT_TRUE(std::isnan(of(__zorvik_coshl, {x, 0.0}).hi)) << x;
  }
  expect_rows(__zorvik_tanhl, {{{-0.0, 0.0}, {0.0, 0.0}},
                               {{400.0, 0.0}, {1.0, 0.0}},
                               {{-400.0, 0.0}, {-1.0, 0.0}},
                               {{inf, 0.0}, nan_pair},
                               {{nan8, 0.0}, {nan8, nan8}},
                               {{300.0, 0.0}, {1.0, -5.3007931060086215e-261}}});
}

TEST(QuadHyperbolic, ChangesFormsAtItsLimits) {
  // The series takes 0.05 itself, and stops after one term where that is below 2**-106.
  EXPECT_QUAD(of(__zorvik_sinhl, {1e-30, 0.0}), {1e-30, 1.666666666666667e-91});
  const quad exponential_at = of(__zorvik_expl, {0.05, 0.0});
  const quad half_difference = result_of(
      __zorvik_qmuld,
      of(__zorvik_qsub, exponential_at, result_of(__zorvik_ddivq, 1.0, exponential_at)), 0.5);
  EXPECT_NE(image_of_quad(of(__zorvik_sinhl, {0.05, 0.0})), image_of_quad(half_difference));
  EXPECT_LT(distance(of(__zorvik_sinhl, {0.05, 0.0}), half_difference), 64);
  const double next = beyond(0.05);
  const quad e = of(__zorvik_expl, {-next, 0.0});
  EXPECT_EQ(image_of_quad(of(__zorvik_sinhl, {-next, 0.0})),
            image_of_quad(result_of(__zorvik_qmuld,
                                    of(__zorvik_qsub, e, result_of(__zorvik_ddivq, 1.0, e)), 0.5)));
  // The hyperbolic tangent changes at 0.625.
  const quad squared = of(__zorvik_expl, {1.25, 0.0});
  const quad by_exponential = result_of(
      __zorvik_dsubq, 1.0, result_of(__zorvik_ddivq, 2.0, result_of(__zorvik_qaddd, squared, 1.0)));
  EXPECT_EQ(image_of_quad(of(__zorvik_tanhl, {0.625, 0.0})), image_of_quad(by_exponential));
  EXPECT_LT(distance(of(__zorvik_tanhl, {below(0.625), 0.0}), by_exponential), 0x1p54);
  // Saturation begins above its limit, where the exponential overflows.
  const double limit = 0x1.62e42fefa39efp+8, tail = 0x1.a9c9e3b398036p-47;
  EXPECT_QUAD(of(__zorvik_tanhl, {limit, tail}),
              {1.0, from_bits(std::uint64_t{0x8008000000000000})});
  EXPECT_QUAD(of(__zorvik_tanhl, {limit, beyond(tail)}), {1.0, 0.0});
}

TEST(QuadCircular, OfSpecialValues) {
  for (const double x : {0.0, -0.0}) {
    EXPECT_QUAD(of(__zorvik_sinl, {x, 0.0}), {0.0, 0.0});
    EXPECT_QUAD(of(__zorvik_cosl, {x, 0.0}), {1.0, 0.0});
    EXPECT_QUAD(of(__zorvik_tanl, {x, 0.0}), {0.0, 0.0});
    EXPECT_TRUE(std::isnan(of(__zorvik_cotl, {x, 0.0}).hi));
  }
  const double pole = from_bits(std::uint64_t{0x7FEFFFFFFFFFFFFB});
  for (const double x : {inf, -inf, nan8}) {
    EXPECT_TRUE(std::isnan(of(__zorvik_sinl, {x, 0.0}).hi));
    EXPECT_TRUE(std::isnan(of(__zorvik_cosl, {x, 0.0}).lo));
    EXPECT_QUAD(of(__zorvik_tanl, {x, 0.0}), {pole, 0.0});
    EXPECT_EQ(bits(of(__zorvik_cotl, {x, 0.0}).lo), bits(-0.0));
  }
}

TEST(QuadCircular, ExactBits) {
  EXPECT_QUAD(of(__zorvik_sinl, {1.0, 0.0}), {0.8414709848078965, 1.7768450929355377e-18});
  EXPECT_QUAD(of(__zorvik_cosl, {1.0, 0.0}), {0.5403023058681398, -4.7609546126044185e-17});
  EXPECT_QUAD(of(__zorvik_tanl, {1.0, 0.0}), {1.5574077246549023, -6.186464176037591e-17});
  EXPECT_QUAD(of(__zorvik_sindl, {180.0, 0.0}), {-7.395570986446986e-32, -0.0});
  EXPECT_QUAD(of(__zorvik_cosdl, {90.0, 0.0}), {-7.395570986446986e-32, -0.0});
  EXPECT_QUAD(of(__zorvik_sindl, {30.0, 0.0}), {0.5, -1.232595164407831e-32});
  // No pass of the series at 1e-30 and below.
  for (const double x : {1e-30, 1e-31, 1e-200, -0x1p-1074})
    EXPECT_QUAD(of(__zorvik_sinl, {x, 0.0}), {x, 0.0}) << x;
}

// The quotient by pi as a 32-bit integer ends near 6.7e9: the parity must not.
TEST(QuadCircular, KeepsTheParityOfLongQuotients) {
  for (const double n :
       {2147483646.0, 2147483647.0, 2147483648.0, 2147483649.0, 4294967297.0, 1e12 + 1}) {
    const double sign = std::fmod(n, 2.0) == 0 ? 1.0 : -1.0;
    const quad x = of(__zorvik_qadd, result_of(__zorvik_qmuld, pi, n), {0.5, 0.0});
    EXPECT_NEAR(of(__zorvik_sinl, x).hi * sign, 0.479425538604203, 1e-15) << n;
    EXPECT_NEAR(of(__zorvik_cosl, x).hi * sign, 0.8775825618903728, 1e-15) << n;
    EXPECT_NEAR(of(__zorvik_tanl, x).hi, 0.5463024898437905, 1e-14) << n;
    EXPECT_NEAR(of(__zorvik_sinl, negated(x)).hi * sign, -0.479425538604203, 1e-15) << n;
  }
  // Beyond every quotient the remainder counts as zero.
  EXPECT_QUAD(of(__zorvik_sinl, {1e300, 0.0}), {0.0, 0.0});
  EXPECT_QUAD(of(__zorvik_cosl, {1e300, 0.0}), {1.0, 0.0});
  EXPECT_QUAD(of(__zorvik_tanl, {-1e300, 0.0}), {0.0, 0.0});
}

// The index of the table leaves its range near 2**47 pi: no index may.
TEST(QuadCircular, StaysInItsTableForEveryOperand) {
  std::mt19937_64 random(12);
  for (int i = 0; i < 100000; ++i) {
    const quad x = any_quad(random, 40, 110);
    const quad s = of(__zorvik_sinl, x), c = of(__zorvik_cosl, x);
    EXPECT_LE(std::abs(s.hi), 1.0 + 1e-15) << image_of_quad(x);
    EXPECT_LE(std::abs(c.hi), 1.0 + 1e-15) << image_of_quad(x);
  }
}

// The reduction by a reciprocal and the one by the quotient meet at halves of the moduli.
TEST(QuadCircular, AgreesOnBothSidesOfTheHalves) {
  for (int k = -60; k <= 60; ++k) {
    const quad half = result_of(__zorvik_qmuld, pi, (k + 0.5) / 40);
    for (const double step : {-0x1p-9, -0x1p-40, 0.0, 0x1p-40, 0x1p-9}) {
      const quad x = result_of(__zorvik_qaddd, half, step);
      const quad s = of(__zorvik_sinl, x), c = of(__zorvik_cosl, x);
      const quad one = of(__zorvik_qadd, of(__zorvik_qmul, s, s), of(__zorvik_qmul, c, c));
      EXPECT_NEAR((one.hi - 1.0) + one.lo, 0.0, 4e-31) << k << ' ' << step;
      EXPECT_NEAR(s.hi, std::sin(x.hi), 1e-15);
    }
  }
}

TEST(QuadArcsine, OfSpecialValuesAndBothSidesOfItsBranches) {
  expect_rows(__zorvik_asinl, {{{0.5, 0.0}, {0.5235987755982989, -5.3604088322554555e-17}},
                               {{0.0, 0.0}, {0.0, 0.0}},
                               {{-0.0, 0.0}, {0.0, 0.0}},
                               {{1.0, 0.0}, {1.5707963267948966, 6.123233995736755e-17}},
                               {{-1.0, 0.0}, {-1.5707963267948966, -6.123233995736755e-17}},
                               {{1.0, 1e-20}, {nan8, nan8}},
                               {{beyond(1.0), 0.0}, {nan8, 0.0}},
                               {{-inf, 0.0}, {nan8, 0.0}}});
  expect_rows(__zorvik_acosl, {{{1.0, 0.0}, {0.0, 0.0}},
                               {{-1.0, 0.0}, pi},
                               {{0.0, 0.0}, {1.5707963267948966, 6.123233995736755e-17}},
                               {{1.0, -1e-20}, {1.414213562373095e-10, -4.4871777300870026e-27}},
                               {{1.0, 1e-20}, {nan8, nan8}},
                               {{beyond(-1.0), 0.0}, {nan8, 0.0}}});
  EXPECT_TRUE(std::isnan(of(__zorvik_asinl, {nan8, 0.0}).lo));
  EXPECT_QUAD(of(__zorvik_asindl, {1.0, 0.0}), {90.0, -6.7053176943786e-30});
  EXPECT_QUAD(of(__zorvik_acosdl, {-1.0, 0.0}), {180.0, -7.888609052210118e-30});
  for (const double x : {below(0.866), 0.866, -below(0.866), -0.866}) {
    const quad sum = of(__zorvik_qadd, of(__zorvik_asinl, {x, 0.0}), of(__zorvik_acosl, {x, 0.0}));
    EXPECT_LT(distance(sum, pi_half), 40) << x;
  }
}

TEST(QuadArctangent, OfSpecialValuesAndBothSidesOfItsRanges) {
  expect_rows(__zorvik_atanl, {{{2.5, 0.0}, {1.1902899496825317, 7.683333629842063e-17}},
                               {{-0.0, 0.0}, {0.0, 0.0}},
                               {{1.0, 0.0}, {0.7853981633974483, 3.061616997868381e-17}},
                               {{1e300, 0.0}, {pi_half.hi, pi_half.lo}},
                               {{-1e300, 0.0}, negated(pi_half)},
                               {{1e-300, 0.0}, {1e-300, 0.0}},
                               {{inf, 0.0}, nan_pair},
                               {{nan8, 0.0}, {nan8, nan8}}});
  for (const quad& edge : {quad{0x1.a827999fcef32p-2, 0x1.08b2fb1366ea5p-56},
                           {0x1.3504f333f9de6p+1, 0x1.21165f626cdd4p-53}}) {
    const quad below{edge.hi, edge.lo - 0x1p-100}, above{edge.hi, edge.lo + 0x1p-100};
    EXPECT_LT(distance(of(__zorvik_atanl, below), of(__zorvik_atanl, above)), 600);
  }
}

TEST(QuadArctangent, OfAPoint) {
  const auto angle = [](quad y, quad x) { return of(__zorvik_atan2l, y, x); };
  for (const double x : {0.0, -0.0, nan8}) {
    for (const double y : {0.0, -0.0, nan8}) EXPECT_QUAD(angle({y, 1.0}, {x, 1.0}), {0.0, 0.0});
    EXPECT_QUAD(angle({5e-324, 0.0}, {x, 0.0}), {pi_half.hi, pi_half.lo});
    EXPECT_QUAD(angle({-inf, 0.0}, {x, 0.0}), {-pi_half.hi, -pi_half.lo});
  }
  EXPECT_QUAD(angle({0.0, 0.0}, {-1.0, 0.0}), {pi.hi, pi.lo});
  EXPECT_QUAD(angle({-0.0, 0.0}, {-1.0, 0.0}), {-pi.hi, -pi.lo});
  EXPECT_QUAD(angle({-0.0, 0.0}, {1.0, 0.0}), {0.0, 0.0});
  EXPECT_QUAD(angle({1.0, 0.0}, {-1e40, 0.0}), {pi.hi, pi.lo});
  EXPECT_QUAD(angle({1.0, 0.0}, {inf, 0.0}), nan_pair);
  EXPECT_QUAD(angle({inf, 0.0}, {1.0, 0.0}), nan_pair);
  EXPECT_TRUE(std::isnan(angle({nan8, 0.0}, {1.0, 0.0}).hi));
  EXPECT_TRUE(std::isnan(angle({1e300, 0.0}, {1e-300, 0.0}).hi));  // the quotient overflows
  // From a quotient of 2**53 on it is pi/2 less the reciprocal.
  EXPECT_QUAD(angle({0x1p53, 0.0}, {1.0, 0.0}), {pi_half.hi, pi_half.lo - 0x1p-53});
  EXPECT_QUAD(angle({-1e40, 0.0}, {1.0, 0.0}), {-pi_half.hi, -(pi_half.lo - 1e-40)});
  EXPECT_QUAD(angle({1e300, 0.0}, {-1.0, 0.0}), {pi_half.hi, pi_half.lo});
  EXPECT_LT(distance(angle({0x1p53 - 1, 0.0}, {1.0, 0.0}), angle({0x1p53, 0.0}, {1.0, 0.0})),
            0x1p52);
}

// Every bit of the results, those of coefficients that only operands with large low parts bring to
// light included, as an independent computation of the same steps gives them.
TEST(QuadElementary, KeepsEveryBit) {
  struct known {
    const char* name;
    quad* (*entry)(quad*, quad);
    int low, high;  // exponents of the operands
    std::uint64_t digest;
  };
  for (const known& k : {known{"expl", __zorvik_expl, -30, 10, 0x99C562A8EFB425E5},
                         {"logl", __zorvik_logl, -60, 60, 0x9D2BA7E5AD1EB69D},
                         {"log10l", __zorvik_log10l, -1000, 1000, 0x3C0111643AF777CE},
                         {"sqrtl", __zorvik_sqrtl, -1000, 1000, 0x8C53CB06CA248834},
                         {"sinhl", __zorvik_sinhl, -40, 8, 0x71E77D8BADA7D286},
                         {"coshl", __zorvik_coshl, -40, 8, 0xFCA39815C02FAA9C},
                         {"tanhl", __zorvik_tanhl, -40, 8, 0xC13540FB7C0E451A},
                         {"sinl", __zorvik_sinl, -40, 60, 0x3D737FE3F029C954},
                         {"cosl", __zorvik_cosl, -40, 60, 0xB3CB96E9FDFA5449},
                         {"tanl", __zorvik_tanl, -40, 60, 0x9A27C2D13DFC8A97},
                         {"asinl", __zorvik_asinl, -40, -1, 0x466C0A8AC3101919},
                         {"acosl", __zorvik_acosl, -40, -1, 0xBA275371D2B09F1A},
                         {"atanl", __zorvik_atanl, -40, 40, 0x89DF728ADC8A53C5}}) {
    std::mt19937_64 random(17);
    std::uint64_t digest = 0xCBF29CE484222325;
    for (int i = 0; i < 20000; ++i) {
      quad x = any_quad(random, k.low, k.high);
      if (i % 4 == 0) x.lo = any_double(random, k.low, 60);
      const quad_image y = image_of_quad(of(k.entry, x));
      for (const std::uint64_t part : {y.hi, y.lo}) digest = (digest ^ part) * 0x100000001B3;
    }
    EXPECT_EQ(digest, k.digest) << k.name << std::hex << " 0x" << digest;
  }
}
