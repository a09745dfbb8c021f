// REAL*16 and 64-bit integers; whole parts, signs, remainders and exponents of REAL*16.

#include "entries.hpp"
#include "support/quad_results.hpp"
#include "support/results.hpp"

using namespace support;
using zrt::quad;

namespace {

constexpr double inf = infinity8;
constexpr double tiny = 1e-20;

quad of(quad* (*entry)(quad*, quad), quad a) { return result_of(entry, a); }
quad of(quad* (*entry)(quad*, quad, quad), quad a, quad b) { return result_of(entry, a, b); }

struct rounding {
  quad operand, result;
};
void expect_rows(quad* (*entry)(quad*, quad), std::initializer_list<rounding> rows) {
  for (const rounding& row : rows)
    EXPECT_EQ(image_of_quad(of(entry, row.operand)), image_of_quad(row.result))
        << image_of_quad(row.operand);
}

}  // namespace

TEST(QuadFromInteger, IsExact) {
  const auto from = [](std::int64_t k) { return result_of(__zorvik_ll2q, k); };
  EXPECT_QUAD(from(0), {0.0, 0.0});
  EXPECT_QUAD(from(-1), {-1.0, -0.0});
  EXPECT_QUAD(from((std::int64_t{1} << 53) - 1), {0x1.fffffffffffffp52, 0.0});
  EXPECT_QUAD(from(std::int64_t{1} << 53), {0x1p53, 0.0});
  EXPECT_QUAD(from(INT64_MAX), {0x1p63, -1.0});
  EXPECT_QUAD(from(INT64_MIN), {-0x1p63, -0.0});
  EXPECT_QUAD(result_of(__zorvik_ull2q, UINT64_MAX), {0x1p64, -1.0});
  EXPECT_QUAD(result_of(__zorvik_ull2q, std::uint64_t{1} << 63), {0x1p63, 0.0});
}

TEST(QuadFromInteger, ComesBack) {
  std::mt19937_64 random(9);
  for (int i = 0; i < 50000; ++i) {
    const auto k = static_cast<std::int64_t>(random()) >> (1 + random() % 63);
    // Next to 2**63 the leading part rounds up to it, which is out of range.
    if (k > INT64_MAX - 1024 || k < -INT64_MAX + 1024) continue;
    const quad q = result_of(__zorvik_ll2q, k);
    ASSERT_EQ(__zorvik_q2ll(q), k);
    ASSERT_EQ(__zorvik_q2ull(q), static_cast<std::uint64_t>(k));
    ASSERT_EQ(__zorvik_kiqnnt(q), k);
  }
}

TEST(QuadFromInteger, OperandsAreConverted) {
  const quad a{2.5, 0x1p-60};
  const std::int64_t k = (std::int64_t{1} << 60) + 1;
  const quad converted = result_of(__zorvik_ll2q, k);
  const auto same = [](const quad& x, const quad& y) {
    return image_of_quad(x) == image_of_quad(y);
  };
  EXPECT_TRUE(same(result_of(__zorvik_qaddk, a, k), of(__zorvik_qadd, a, converted)));
  EXPECT_TRUE(same(result_of(__zorvik_qsubk, a, k), of(__zorvik_qsub, a, converted)));
  EXPECT_TRUE(same(result_of(__zorvik_ksubq, k, a), of(__zorvik_qsub, converted, a)));
  EXPECT_TRUE(same(result_of(__zorvik_qmulk, a, k), of(__zorvik_qmul, a, converted)));
  EXPECT_TRUE(same(result_of(__zorvik_qdivk, a, k), of(__zorvik_qdiv, a, converted)));
  EXPECT_TRUE(same(result_of(__zorvik_kdivq, k, a), of(__zorvik_qdiv, converted, a)));
}

TEST(QuadToInteger, CountsTheLowPartOnlyWhereTheLeadingOneIsWhole) {
  EXPECT_EQ(__zorvik_q2ll({3.0, -tiny}), 3);
  EXPECT_EQ(__zorvik_q2ll({-3.7, 0.0}), -3);
  EXPECT_EQ(__zorvik_q2ll({0x1p53, -1.5}), (std::int64_t{1} << 53) - 2);
  EXPECT_EQ(__zorvik_q2ll({-0x1p53, 1.5}), -(std::int64_t{1} << 53) + 2);
  EXPECT_EQ(__zorvik_q2ll({0x1p52, nan8}), std::int64_t{1} << 52);
  EXPECT_EQ(__zorvik_q2ll({0x1p52, 1e300}), INT64_MIN + (std::int64_t{1} << 52) - 1);  // wraps
  for (const double x : {0x1p63, -0x1p63, inf, -inf, nan8}) {
    EXPECT_EQ(__zorvik_q2ll({x, -1.0}), INT64_MIN);
    EXPECT_EQ(__zorvik_q2ull({x, -1.0}), UINT64_MAX);
  }
  EXPECT_EQ(__zorvik_q2ull({-2.5, 0.0}), static_cast<std::uint64_t>(-2));
  EXPECT_EQ(__zorvik_q2ull({0x1p62, -1.0}), (std::uint64_t{1} << 62) - 1);
}

TEST(QuadWhole, CeilingAndFloorGoByTheLowPartOfWholeNumbers) {
  expect_rows(__zorvik_floorl, {{{3.0, -tiny}, {2.0, 0.0}},
                                {{3.0, tiny}, {3.0, 0.0}},
                                {{2.5, 0.0}, {2.0, 0.0}},
                                {{-0.5, 0.0}, {-1.0, 0.0}},
                                {{0x1p60, -0.5}, {0x1p60, -1.0}},
                                {{1.0, 2.5}, {3.0, 0.0}},
                                {{nan8, 2.5}, {2.0, 0.0}},
                                {{inf, 1.0}, {inf, 1.0}}});
  expect_rows(__zorvik_ceill, {{{3.0, tiny}, {4.0, 0.0}},
                               {{3.0, -tiny}, {3.0, -0.0}},
                               {{-0.5, 0.0}, {-0.0, 0.0}},
                               {{-0.0, 0.0}, {0.0, 0.0}},
                               {{0x1p60, 0.5}, {0x1p60, 1.0}},
                               {{nan8, 0.0}, {0.0, 0.0}},
                               {{nan8, 2.5}, {3.0, 0.0}},
                               {{-inf, 0.5}, {-inf, 1.0}}});
  expect_rows(__zorvik_qint, {{{-3.0, tiny}, {-2.0, 0.0}},
                              {{3.0, -tiny}, {2.0, 0.0}},
                              {{-2.5, 0.0}, {-2.0, 0.0}},
                              {{nan8, 2.5}, {3.0, 0.0}}});
}

TEST(QuadWhole, NearestLooksAtTheLowPartOfTies) {
  expect_rows(__zorvik_qnint, {{{2.5, 0.0}, {3.0, 0.0}},
                               {{-2.5, 0.0}, {-3.0, 0.0}},
                               {{2.5, -tiny}, {2.0, 0.0}},
                               {{-2.5, tiny}, {-2.0, 0.0}},
                               {{2.5, tiny}, {3.0, 0.0}},
                               {{2.5, nan8}, {2.0, 0.0}},
                               {{-2.5, nan8}, {-3.0, 0.0}},
                               {{0.49999999999999994, 0.0}, {0.0, 0.0}},
                               {{-0.3, 0.0}, {-0.0, 0.0}},
                               {{3.0, 0.5}, {4.0, 0.0}},
                               {{0x1p60, -0.5}, {0x1p60, -1.0}},
                               {{0x1p52, 0.25}, {0x1p52, 0.0}},
                               {{4503599627370495.5, 0.0}, {0x1p52, 0.0}},
                               {{inf, 2.5}, {inf, 3.0}}});
}

// A half is added first, and then only the leading part counts.
TEST(QuadWhole, NearestIntegersGoByTheLeadingPartOfTheSum) {
  EXPECT_EQ(__zorvik_iqnint({2.5, -tiny}), 3);
  EXPECT_EQ(__zorvik_iqnint({-2.5, 0.0}), -3);
  EXPECT_EQ(__zorvik_jiqnnt({2147483646.75, 0.0}), INT32_MAX);
  EXPECT_EQ(__zorvik_iiqnnt({70000.0, 0.0}), 4464);
  EXPECT_EQ(__zorvik_iiqnnt({1e10, 0.0}), 0);
  EXPECT_EQ(__zorvik_kiqnnt({2.5, -tiny}), 3);
  EXPECT_EQ(__zorvik_kiqnnt({0x1p63, -1.0}), INT64_MIN);
  EXPECT_EQ(__zorvik_iceill({2.0, tiny}), 3);
  EXPECT_EQ(__zorvik_ifloorl({-2.0, -tiny}), -3);
  for (const double x : {2147483648.0, -1e10, inf, nan8}) {
    EXPECT_EQ(__zorvik_iqnint({x, 0.0}), INT32_MIN) << x;
    EXPECT_EQ(__zorvik_ifloorl({x, 0.0}), x == x ? INT32_MIN : 0) << x;
  }
}

TEST(QuadSign, MovesBothPartsAndKeepsTheirBits) {
  const double signalling = from_bits(std::uint64_t{0xFFF0000000000001});
  expect_rows(__zorvik_fabsl, {{{-1.0, tiny}, {1.0, -tiny}},
                               {{-0.0, -1.0}, {-0.0, -1.0}},
                               {{-nan8, 1.0}, {-nan8, 1.0}},
                               {{-inf, -0.0}, {inf, 0.0}}});
  quad result;
  const quad operand{1.0, signalling};
  __zorvik_fabsl(&result, operand);
  EXPECT_EQ(bits(result.lo), 0xFFF0000000000001);
  const auto sign = [](quad x, quad y) { return of(__zorvik_copysignl, x, y); };
  EXPECT_QUAD(sign({1.0, -tiny}, {-2.0, 0.0}), {-1.0, tiny});
  EXPECT_QUAD(sign({-1.0, -tiny}, {-2.0, 0.0}), {-1.0, -tiny});
  for (const double y : {0.0, -0.0, nan8, -nan8, inf}) {
    EXPECT_QUAD(sign({-1.0, tiny}, {y, -1.0}), {1.0, -tiny}) << y;
    EXPECT_QUAD(sign({-nan8, 0.0}, {y, -1.0}), {nan8, -0.0}) << y;
  }
}

TEST(QuadDifference, IsZeroBelowZeroAndForNaNs) {
  const auto difference = [](quad a, quad b) { return of(__zorvik_fdiml, a, b); };
  EXPECT_QUAD(difference({5.0, 0.0}, {3.0, 0.0}), {2.0, 0.0});
  EXPECT_QUAD(difference({3.0, 0.0}, {5.0, 0.0}), {0.0, 0.0});
  EXPECT_QUAD(difference({1.0, tiny}, {1.0, 0.0}), {tiny, 0.0});
  EXPECT_QUAD(difference({inf, 0.0}, {1.0, 0.0}), {0.0, 0.0});
}

TEST(QuadRemainder, HasTheSignOfTheDividend) {
  const auto remainder = [](quad a, quad b) { return of(__zorvik_fmodl, a, b); };
  EXPECT_QUAD(remainder({7.5, 0.0}, {2.0, 0.0}), {1.5, 0.0});
  EXPECT_QUAD(remainder({-7.5, 0.0}, {2.0, 0.0}), {-1.5, 0.0});
  EXPECT_QUAD(remainder({4.0, -tiny}, {2.0, 0.0}), {2.0, -tiny});
  for (const double y : {0.0, -0.0, nan8, -nan8})
    EXPECT_QUAD(remainder({1.0, 0.0}, {y, 5.0}), {nan8, 0.0});
  EXPECT_EQ(flags_of([&] { remainder({inf, 0.0}, {0.0, 0.0}); }), 0u);
}

TEST(QuadExponent, IsTakenOffTheBits) {
  struct row {
    quad operand, significand;
    std::int32_t exponent;
  };
  for (const row& r : {row{{8.0, 1.0}, {0.5, 0.0625}, 4},
                       {{8.0, 0x1p-1030}, {0.5, 0.0}, 4},
                       {{8.0, -0.0}, {0.5, -0.0}, 4},
                       {{-3.0, nan8}, {-0.75, nan8}, 2},
                       {{inf, 0.0}, {0.5, 0.0}, 1025},
                       {{-0.0, 5.0}, {0.0, 0.0}, 0},
                       {{nan8, 5.0}, {0.0, 0.0}, 0},
                       // The flush: the exponent field of lo must exceed the exponent.
                       {{0x1p100, -0x1p-922}, {0.5, 0.0}, 101},
                       {{0x1p100, -0x1p-921}, {0.5, -0x1p-1022}, 101},
                       {{0x1p-1022, 0.0}, {0.5, 0.0}, -1021},
                       {{0x1.8p-1070, 0.0}, {0.75, 0.0}, -1069},
                       {{-0x1p-1074, 0.0}, {-0.5, 0.0}, -1073},
                       // A new exponent field of more than 11 bits loses the upper ones.
                       {{0x1p-1000, -0x1p200}, {0.5, -0x1p-849}, -999}}) {
    std::int32_t exponent = 77;
    const quad significand = result_of(__zorvik_frexpl, r.operand, &exponent);
    EXPECT_EQ(image_of_quad(significand), image_of_quad(r.significand)) << image_of_quad(r.operand);
    EXPECT_EQ(exponent, r.exponent) << image_of_quad(r.operand);
  }
}

TEST(QuadPolynomial, RunsByHornersRule) {
  const quad table[] = {{1.0, 0.0}, {0.0, 0.0}, {-1.0, 0.0}};
  const auto top = [&](quad x, std::int32_t n) {
    return result_of(__zorvik_polyN, x, &table[0], n);
  };
  const auto monic = [&](quad x, std::int32_t n) {
    return result_of(__zorvik_polyD, x, &table[1], n);
  };
  EXPECT_QUAD(top({3.0, 0.0}, 2), {8.0, 0.0});
  EXPECT_QUAD(top({nan8, 0.0}, 0), {1.0, 0.0});
  EXPECT_QUAD(monic({3.0, 0.0}, 2), {8.0, 0.0});
  EXPECT_QUAD(monic({3.0, 0.0}, 1), {3.0, 0.0});
  EXPECT_QUAD(monic({3.0, 0.0}, -5), {3.0, 0.0});
}

TEST(QuadReduction, GivesTheNearestQuotientAndWhatIsLeft) {
  struct row {
    quad x, y;
    std::int32_t quotient;
    quad remainder;
  };
  for (const row& r : {row{{7.0, 0.0}, {2.0, 0.0}, 4, {-1.0, 0.0}},
                       {{-7.0, 0.0}, {2.0, 0.0}, -4, {1.0, 0.0}},
                       {{1.0, 0.0}, {2.0, 0.0}, 1, {-1.0, 0.0}},
                       {{0.4, 0.0}, {2.0, 0.0}, 0, {0.4, 0.0}},
                       {{7.0, tiny}, {2.0, 0.0}, 4, {-1.0, tiny}},
                       {{0x1p1000, 0.0}, {3.0, 0.0}, INT32_MIN, {0.0, 0.0}},
                       {{0x1p40, 0.0}, {3.0, 0.0}, INT32_MIN, {1.0, 0.0}},
                       {{inf, 0.0}, {3.0, 0.0}, INT32_MIN, {-nan8, -nan8}},
                       {{1.0, 0.0}, {0.0, 0.0}, 99, {nan8, 0.0}},
                       {{1.0, 0.0}, {-nan8, 0.0}, 99, {nan8, 0.0}}}) {
    std::int32_t quotient = 99;
    quad remainder{};
    __zorvik_qmodr(r.x, r.y, &quotient, &remainder);
    EXPECT_EQ(quotient, r.quotient) << image_of_quad(r.x);
    EXPECT_EQ(image_of_quad(remainder), image_of_quad(r.remainder)) << image_of_quad(r.x);
  }
}
