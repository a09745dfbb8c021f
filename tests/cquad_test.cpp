// COMPLEX*32: special values, branches, and the order of operands.

#include <cmath>

#include "entries.hpp"
#include "support/quad_results.hpp"
#include "support/results.hpp"

using namespace support;
using zrt::cquad;
using zrt::quad;

namespace {

constexpr double inf = infinity8;

cquad z(double re, double im) { return {{re, 0.0}, {im, 0.0}}; }
cquad of(cquad* (*entry)(cquad*, cquad), cquad a) { return result_of(entry, a); }
cquad of(cquad* (*entry)(cquad*, cquad, cquad), cquad a, cquad b) { return result_of(entry, a, b); }

const cquad zeros = z(0.0, 0.0);
const cquad no_number = z(nan8, nan8);
const cquad nan_parts = {nan_pair, nan_pair};

}  // namespace

#define EXPECT_CQUAD(value, ...)                                  \
  do {                                                            \
    const cquad got = value, expected = cquad(__VA_ARGS__);       \
    EXPECT_EQ(image_of_quad(got.re), image_of_quad(expected.re)); \
    EXPECT_EQ(image_of_quad(got.im), image_of_quad(expected.im)); \
  } while (false)

TEST(ComplexQuad, ProductAndQuotient) {
  EXPECT_CQUAD(of(__zorvik_cqmul, z(1, 2), z(3, 4)), z(-5, 10));
  EXPECT_CQUAD(of(__zorvik_cqmul, z(inf, 0), z(1, 1)), nan_parts);
  EXPECT_CQUAD(of(__zorvik_cqdiv, z(3, 4), z(2, 0)), z(1.5, 2));
  EXPECT_CQUAD(of(__zorvik_cqdiv, z(1, 1), z(1, 1)), z(1, 0));
  EXPECT_CQUAD(of(__zorvik_cqdiv, z(3, 4), z(0, 2)), z(2, -1.5));
  for (const double x : {0.0, -0.0, nan8})
    for (const double y : {0.0, -0.0, nan8})
      EXPECT_CQUAD(of(__zorvik_cqdiv, z(1, 1), {{x, 5.0}, {y, 5.0}}), no_number);
  EXPECT_CQUAD(of(__zorvik_cqdiv, z(1, 1), z(inf, 1)), nan_parts);
  // The ratio keeps the squares in range.
  EXPECT_EQ(of(__zorvik_cqdiv, z(0x1p900, 0x1p900), z(0x1p901, 0x1p800)).re.hi, 0.5);
}

TEST(ComplexQuad, ProductsAreMadeOfTheirParts) {
  std::mt19937_64 random(14);
  const auto mul = [](quad a, quad b) { return result_of(__zorvik_qmul, a, b); };
  for (int i = 0; i < 5000; ++i) {
    // Low parts as large as the leading ones, so that the order of operands shows.
    const auto part = [&random] {
      return quad{any_double(random, -3, 3), any_double(random, -6, 2)};
    };
    const cquad x{part(), part()}, y{part(), part()};
    EXPECT_CQUAD(of(__zorvik_cqmul, x, y),
                 {result_of(__zorvik_qsub, mul(x.re, y.re), mul(x.im, y.im)),
                  result_of(__zorvik_qadd, mul(x.re, y.im), mul(y.re, x.im))});
  }
}

TEST(ComplexQuad, Modulus) {
  const auto modulus = [](cquad a) { return result_of(__zorvik_cabsl, a); };
  EXPECT_QUAD(modulus(z(3, 4)), {5.0, 0.0});
  EXPECT_QUAD(modulus(z(4, -3)), {5.0, 0.0});
  EXPECT_TRUE(std::isfinite(modulus(z(1e200, 1e200)).hi));
  EXPECT_QUAD(modulus(z(-inf, 0)), {inf, -0.0});
  EXPECT_QUAD(modulus(z(-0.0, inf)), {inf, 0.0});
  EXPECT_QUAD(modulus(z(nan8, -2)), {2.0, -0.0});
  EXPECT_QUAD(modulus(z(-2, nan8)), {2.0, -0.0});
  EXPECT_QUAD(modulus(z(-nan8, nan8)), {-nan8, 0.0});
  EXPECT_QUAD(modulus(z(inf, 2)), {0.0, 0.0});
  EXPECT_QUAD(modulus(z(2, inf)), {-nan8, -nan8});
}

TEST(ComplexQuad, RootLiesInTheRightHalf) {
  const auto root = [](cquad a) { return of(__zorvik_csqrtl, a); };
  for (const cquad& w : {z(2, 1), z(1, 2), z(3, 3), z(1, 0), z(0, 1), z(1e100, 5e99)})
    for (const double sign : {1.0, -1.0}) {
      const cquad v{w.re, {w.im.hi * sign, 0.0}};
      if (v.re.hi == 0 && sign < 0) continue;
      const cquad got = root(of(__zorvik_cqmul, v, v));
      EXPECT_NEAR(got.re.hi / std::abs(v.re.hi + 1e-30), v.re.hi != 0, 1e-15);
      EXPECT_NEAR(got.im.hi, v.im.hi, 1e-15 * std::abs(v.im.hi));
    }
  EXPECT_CQUAD(root(z(4, 0)), z(2, 0));
  EXPECT_CQUAD(root(z(-4, 0)), z(0, 2));
  EXPECT_CQUAD(root({{-1.0, 0.0}, {-0.0, 0.0}}), z(0, 1));  // the upper side for both zeros
  EXPECT_CQUAD(root(z(3, -4)), {{2.0, 0.0}, {-1.0, -0.0}});
  for (const cquad& a : {zeros, z(nan8, 0), z(nan8, 1), z(nan8, nan8), z(0, nan8), z(inf, 0),
                         z(inf, 2), z(2, inf), z(inf, inf)})
    EXPECT_CQUAD(root(a), zeros);
  // A NaN imaginary part counts as negative where it signs the real root.
  EXPECT_QUAD(root(z(-4, nan8)).im, {-2.0, -0.0});
  const cquad thin = root(z(-1e200, 1e40));
  EXPECT_NEAR(thin.re.hi, 5e-61, 1e-75);
  EXPECT_NEAR(thin.im.hi, 1e100, 1e85);
}

TEST(ComplexQuad, Elementary) {
  EXPECT_CQUAD(of(__zorvik_cexpl, zeros), z(1, 0));
  EXPECT_CQUAD(of(__zorvik_cexpl, z(1, 0)),
               {{2.718281828459045, 1.4456468917292507e-16}, {0.0, 0.0}});
  EXPECT_CQUAD(of(__zorvik_cexpl, z(710, 0)), nan_parts);
  EXPECT_CQUAD(of(__zorvik_cexpl, z(-1e5, 1)), zeros);
  EXPECT_CQUAD(of(__zorvik_csinl, z(1, 1)), {{1.2984575814159773, -4.065562834113251e-17},
                                             {0.6349639147847361, -1.9317191086851478e-17}});
  EXPECT_CQUAD(of(__zorvik_ccosl, z(1, 1)), {{0.833730025131149, 2.7095184146620174e-17},
                                             {-0.9888977057628651, -3.173288212567444e-17}});
  EXPECT_CQUAD(of(__zorvik_csinl, zeros), zeros);
  EXPECT_CQUAD(of(__zorvik_ccosl, zeros), z(1, 0));
  EXPECT_QUAD(of(__zorvik_csinl, z(3, 0)).im, {0.0, 0.0});
  EXPECT_QUAD(of(__zorvik_csinl, z(1, nan8)).im, {0.0, 0.0});
  EXPECT_QUAD(of(__zorvik_csinl, z(1, nan8)).re, result_of(__zorvik_sinl, quad{1.0, 0.0}));
  EXPECT_TRUE(std::isnan(of(__zorvik_ccosl, z(1, 800)).re.hi));
}

TEST(ComplexQuad, LogarithmByTheSquares) {
  const auto log = [](cquad a) { return of(__zorvik_clogl, a); };
  EXPECT_QUAD(log(z(3, 4)).re, {1.6094379124341003, 9.280081691085899e-17});
  EXPECT_EQ(log(z(3, 4)).im.hi, 0.9272952180016122);
  EXPECT_EQ(log(z(-1, 0)).im.hi, 3.141592653589793);
  EXPECT_EQ(log({{-1.0, 0.0}, {-0.0, 0.0}}).im.hi, -3.141592653589793);
  for (const cquad& a : {zeros, z(1e200, 0), z(1e-170, 1e-170), z(1, nan8), z(inf, 1)})
    EXPECT_QUAD(log(a).re, {-inf, 0.0});
}

TEST(ComplexQuad, IntegerPower) {
  const auto power = [](cquad a, std::int32_t n) { return result_of(__zorvik_cqtoi, a, n); };
  EXPECT_CQUAD(power(z(1, 1), 3), z(-2, 2));
  EXPECT_CQUAD(power(z(0, 2), -1), {{0.0, 0.0}, {-0.5, 0.0}});
  EXPECT_CQUAD(power(z(5, 6), 0), z(1, 0));
  EXPECT_CQUAD(power(zeros, 0), z(1, 0));
  EXPECT_CQUAD(power(z(nan8, -0.0), 0), z(1, 0));
  for (const std::int32_t n : {-3, 1, 7}) EXPECT_CQUAD(power(z(0, nan8), n), zeros);
  EXPECT_CQUAD(power(z(0, 1), INT32_MIN), z(1, 0));
}

TEST(ComplexQuad, PowerTakesShortIntegersBySquaring) {
  const auto power = [](cquad a, cquad w) { return of(__zorvik_cpowl, a, w); };
  const auto by_squaring = [](cquad a, std::int32_t n) { return result_of(__zorvik_cqtoi, a, n); };
  const cquad base = {{0.6, 1e-17}, {0.8, -1e-17}};
  const auto is_squared = [&](double c) {
    const cquad got = power(base, z(c, 0)),
                squared = by_squaring(base, static_cast<std::int32_t>(c));
    return image_of_quad(got.re) == image_of_quad(squared.re) &&
           image_of_quad(got.im) == image_of_quad(squared.im);
  };
  for (const double c : {1.0, -2.0, 3.0, 2097151.0, -2097151.0, 2097152.0, 0x1p30, -0x1p30})
    EXPECT_TRUE(is_squared(c)) << c;
  for (const double c : {2097153.0, 2097154.0, 0x1p21 + 0x1p20, 1.5})
    EXPECT_FALSE(is_squared(c)) << c;
  EXPECT_CQUAD(power(z(2, 1), {{2.0, 1e-20}, {nan8, 0.0}}), z(3, 4));
  EXPECT_CQUAD(power(z(2, 1), z(-2, 0)),
               {{0.12, 4.440892098500624e-18}, {-0.16, 3.3306690738754726e-18}});
  EXPECT_CQUAD(power(z(2, 1), zeros), z(1, 0));
  EXPECT_CQUAD(power(zeros, zeros), no_number);
  EXPECT_CQUAD(power(z(nan8, 0), z(0, nan8)), no_number);
  EXPECT_CQUAD(power(zeros, z(-2, 0)), zeros);
  EXPECT_EQ(power(z(2, 1), z(1, 1)).re.hi, 0.4188989398077784);
  EXPECT_EQ(power(z(2, 1), z(1, 1)).im.hi, 1.342622568593875);
  EXPECT_CQUAD(power(z(1e200, 1), z(0.5, 0)), nan_parts);
}
