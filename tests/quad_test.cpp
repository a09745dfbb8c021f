// REAL*16 and COMPLEX*32: forms that must agree, the order of operands, ranges. Single cases are
// rows.

#include <cmath>

#include "entries.hpp"
#include "support/quad_results.hpp"
#include "support/results.hpp"

using namespace support;
using zrt::cquad;
using zrt::quad;

namespace {

constexpr quad pi = {0x1.921fb54442d18p+1, 0x1.1a62633145c02p-53};

quad of(quad* (*entry)(quad*, quad), quad a) { return result_of(entry, a); }
quad of(quad* (*entry)(quad*, quad, quad), quad a, quad b) { return result_of(entry, a, b); }

/// |a - b| in units of 2**-106 of b.
double distance(const quad& a, const quad& b) {
  const long double difference =
      (static_cast<long double>(a.hi) - b.hi) + (static_cast<long double>(a.lo) - b.lo);
  return static_cast<double>(std::abs(difference / b.hi) * 0x1p106L);
}

}  // namespace

TEST(Quad, ArithmeticTakesDoublesAsTheirFullForms) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 20000; ++i) {
    const quad a = any_quad(random, -4, 4);
    const double d = any_double(random, -60, 10);
    const quad wide{d, 0.0};
    EXPECT_QUAD(result_of(__zorvik_qaddd, a, d), of(__zorvik_qadd, a, wide));
    EXPECT_QUAD(result_of(__zorvik_qsubd, a, d), of(__zorvik_qsub, a, wide));
    EXPECT_QUAD(result_of(__zorvik_dsubq, d, a), of(__zorvik_qsub, wide, a));
    EXPECT_QUAD(result_of(__zorvik_qmuld, a, d), of(__zorvik_qmul, a, wide));
    EXPECT_QUAD(result_of(__zorvik_qdivd, a, d), of(__zorvik_qdiv, a, wide));
    EXPECT_QUAD(result_of(__zorvik_ddivq, d, a), of(__zorvik_qdiv, wide, a));
  }
}

TEST(Quad, IntegerOperandsAreConvertedAndComeBack) {
  std::mt19937_64 random(9);
  for (int i = 0; i < 50000; ++i) {
    const auto k = static_cast<std::int64_t>(random()) >> random() % 64;
    const quad a = any_quad(random, -4, 4), whole = result_of(__zorvik_ll2q, k);
    EXPECT_QUAD(result_of(__zorvik_qaddk, a, k), of(__zorvik_qadd, a, whole));
    EXPECT_QUAD(result_of(__zorvik_qsubk, a, k), of(__zorvik_qsub, a, whole));
    EXPECT_QUAD(result_of(__zorvik_ksubq, k, a), of(__zorvik_qsub, whole, a));
    EXPECT_QUAD(result_of(__zorvik_qmulk, a, k), of(__zorvik_qmul, a, whole));
    EXPECT_QUAD(result_of(__zorvik_qdivk, a, k), of(__zorvik_qdiv, a, whole));
    EXPECT_QUAD(result_of(__zorvik_kdivq, k, a), of(__zorvik_qdiv, whole, a));
    // Next to 2**63 the leading part rounds up to it, which is out of range.
    if (k > INT64_MAX - 1024 || k < -INT64_MAX + 1024) continue;
    ASSERT_EQ(__zorvik_q2ll(whole), k);
    ASSERT_EQ(__zorvik_q2ull(whole), static_cast<std::uint64_t>(k));
    ASSERT_EQ(__zorvik_kiqnnt(whole), k);
  }
}

// Powers by squaring multiply the running product from the right, and the last one from the left.
TEST(Quad, PowersMultiplyInTheirOwnOrder) {
  const quad x{1.2345678901234567, 3.3e-17};
  const auto times = [](quad a, quad b) { return of(__zorvik_qmul, a, b); };
  const quad one{1.0, 0.0}, square = times(x, x), fourth = times(square, square);
  const quad seventh = times(fourth, times(times(one, x), square));
  EXPECT_QUAD(result_of(__zorvik_powli, x, 7), seventh);
  EXPECT_QUAD(result_of(__zorvik_powli, x, -7), result_of(__zorvik_ddivq, 1.0, seventh));
  for (std::int32_t n = -40; n < 40; ++n)
    EXPECT_QUAD(result_of(__zorvik_powlk, x, std::int64_t{n}), result_of(__zorvik_powli, x, n));
}

// Low parts as large as the leading ones, so that the order of operands shows.
TEST(Quad, ComplexProductsAreMadeOfTheirParts) {
  std::mt19937_64 random(14);
  const auto mul = [](quad a, quad b) { return of(__zorvik_qmul, a, b); };
  for (int i = 0; i < 5000; ++i) {
    const auto part = [&random] {
      return quad{any_double(random, -3, 3), any_double(random, -6, 2)};
    };
    const cquad x{part(), part()}, y{part(), part()};
    const cquad product = result_of(__zorvik_cqmul, x, y);
    EXPECT_QUAD(product.re, of(__zorvik_qsub, mul(x.re, y.re), mul(x.im, y.im)));
    EXPECT_QUAD(product.im, of(__zorvik_qadd, mul(x.re, y.im), mul(y.re, x.im)));
  }
}

// The near form ends at exponents -2 and 2, the mantissa is halved at sqrt(1/2).
TEST(Quad, LogarithmIsContinuousWhereItsFormsMeet) {
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

// The quotient by pi as a 32-bit integer ends near 6.7e9: the parity must not.
TEST(Quad, CircularFunctionsKeepTheParityOfLongQuotients) {
  for (const double n :
       {2147483646.0, 2147483647.0, 2147483648.0, 2147483649.0, 4294967297.0, 1e12 + 1}) {
    const double sign = std::fmod(n, 2.0) == 0 ? 1.0 : -1.0;
    const quad x = of(__zorvik_qadd, result_of(__zorvik_qmuld, pi, n), {0.5, 0.0});
    EXPECT_NEAR(of(__zorvik_sinl, x).hi * sign, 0.479425538604203, 1e-15) << n;
    EXPECT_NEAR(of(__zorvik_cosl, x).hi * sign, 0.8775825618903728, 1e-15) << n;
    EXPECT_NEAR(of(__zorvik_tanl, x).hi, 0.5463024898437905, 1e-14) << n;
  }
}

// The index of the table leaves its range near 2**47 pi: no index may.
TEST(Quad, CircularFunctionsStayInTheirTableForEveryOperand) {
  std::mt19937_64 random(12);
  for (int i = 0; i < 100000; ++i) {
    const quad x = any_quad(random, 40, 110);
    EXPECT_LE(std::abs(of(__zorvik_sinl, x).hi), 1.0 + 1e-15) << image_of_quad(x);
    EXPECT_LE(std::abs(of(__zorvik_cosl, x).hi), 1.0 + 1e-15) << image_of_quad(x);
  }
}

// The reduction by a reciprocal and the one by the quotient meet at halves of the moduli.
TEST(Quad, SineAndCosineAgreeOnBothSidesOfTheHalves) {
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
