// REAL*16 arithmetic by its entries: special values, the order of operands, signalling NaNs.

#include "entries.hpp"
#include "support/quad_results.hpp"
#include "support/results.hpp"

using namespace support;
using zrt::quad;

namespace {

constexpr double inf = infinity8;
const double largest = from_bits(std::uint64_t{0x7FEFFFFFFFFFFFFF});

quad call(quad* (*entry)(quad*, quad, quad), quad a, quad b) { return result_of(entry, a, b); }

}  // namespace

TEST(QuadProductEntry, SplitsIntoHeadAndTail) {
  const auto product = [](double a, double b) { return result_of(__zorvik_qprod, a, b); };
  EXPECT_QUAD(product(1 + 0x1p-52, 1 + 0x1p-52), {1 + 0x1p-51, 0x1p-104});
  EXPECT_QUAD(product(0x1p1000, 0x1p-1000), {1.0, 0.0});
  EXPECT_QUAD(product(-0x1p1000, 0x1p-1000), {-1.0, 0.0});
  EXPECT_QUAD(product(largest, 2.0), {inf, 0.0});
  EXPECT_QUAD(product(-1.0, 0.0), {-0.0, 0.0});
  EXPECT_QUAD(product(inf, 2.0), {inf, -nan8});
  EXPECT_QUAD(product(3.0, -inf), {-inf, -nan8});
  EXPECT_QUAD(product(inf, 0.0), {-nan8, -nan8});
  EXPECT_QUAD(product(0x1p-1000, 0x1.8p-74), {from_bits(std::uint64_t{2}), 0.0});
  // A tail below the range is rounded by its store.
  EXPECT_QUAD(product(0x1.0000000000001p-500, 0x1.0000000000001p-500),
              {0x1.0000000000002p-1000, 0.0});
}

TEST(QuadSums, TurnInfinitiesIntoNaNsAndOverflowIntoInfinities) {
  for (const auto entry : {__zorvik_qadd, __zorvik_qsub}) {
    EXPECT_QUAD(call(entry, {inf, 0.0}, {1.0, 0.0}), {-nan8, -nan8});
    EXPECT_QUAD(call(entry, {1.0, 0.0}, {nan8, 0.0}), {nan8, nan8});
  }
  EXPECT_QUAD(call(__zorvik_qadd, {largest, 0.0}, {largest, 0.0}), {inf, 0.0});
  EXPECT_QUAD(call(__zorvik_qsub, {-largest, 0.0}, {largest, 0.0}), {-inf, 0.0});
  EXPECT_QUAD(call(__zorvik_qadd, {1.0, 0.0}, {-1.0, 0.0}), {0.0, 0.0});
  EXPECT_QUAD(call(__zorvik_qadd, {-0.0, -0.0}, {-0.0, -0.0}), {0.0, 0.0});
}

TEST(QuadSums, TakeDoublesAsTheirFullForms) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 20000; ++i) {
    const quad a = any_quad(random, -4, 4);
    const double d = any_double(random, -60, 10);
    const quad wide{d, 0.0};
    EXPECT_EQ(image_of_quad(result_of(__zorvik_qaddd, a, d)),
              image_of_quad(result_of(__zorvik_qadd, a, wide)));
    EXPECT_EQ(image_of_quad(result_of(__zorvik_qsubd, a, d)),
              image_of_quad(result_of(__zorvik_qsub, a, wide)));
    EXPECT_EQ(image_of_quad(result_of(__zorvik_dsubq, d, a)),
              image_of_quad(result_of(__zorvik_qsub, wide, a)));
    EXPECT_EQ(image_of_quad(result_of(__zorvik_qmuld, a, d)),
              image_of_quad(result_of(__zorvik_qmul, a, wide)));
    EXPECT_EQ(image_of_quad(result_of(__zorvik_qdivd, a, d)),
              image_of_quad(result_of(__zorvik_qdiv, a, wide)));
    EXPECT_EQ(image_of_quad(result_of(__zorvik_ddivq, d, a)),
              image_of_quad(result_of(__zorvik_qdiv, wide, a)));
  }
}

TEST(QuadProducts, OfSpecialValues) {
  EXPECT_QUAD(call(__zorvik_qmul, {largest, 0.0}, {2.0, 0.0}), {inf, -nan8});
  EXPECT_QUAD(call(__zorvik_qmul, {-1.0, 0.0}, {0.0, 0.0}), {0.0, 0.0});
  EXPECT_QUAD(call(__zorvik_qmul, {inf, 0.0}, {0.0, 0.0}), {-nan8, -nan8});
  EXPECT_QUAD(call(__zorvik_qmul, {inf, 0.0}, {2.0, 0.0}), {-nan8, -nan8});
}

// a.lo joins a.hi by a rounded sum before it meets b.lo, b.hi does not: operands that are not
// normalised tell the order.
TEST(QuadProducts, DoNotCommuteInTheLastBits) {
  std::mt19937_64 random(8);
  int different = 0;
  for (int i = 0; i < 2000; ++i) {
    const quad a{any_double(random, 0, 1), any_double(random, -20, -1)};
    const quad b{any_double(random, 0, 1), any_double(random, -20, -1)};
    different +=
        image_of_quad(call(__zorvik_qmul, a, b)) != image_of_quad(call(__zorvik_qmul, b, a));
  }
  EXPECT_GT(different, 100);
}

TEST(QuadProducts, ByIntegersTakeShortWays) {
  const auto times = [](quad a, std::int32_t k) { return result_of(__zorvik_qmuli, a, k); };
  for (const double x : {nan8, inf, -3.5}) EXPECT_QUAD(times({x, x}, 0), {0.0, 0.0});
  EXPECT_QUAD(times({1.5, -0.0}, 1), {1.5, -0.0});
  EXPECT_QUAD(times({1.5, -0.0}, -1), {-1.5, 0.0});
  EXPECT_QUAD(times({nan8, 0.0}, -1), {-nan8, -0.0});
  EXPECT_QUAD(times({1.5, 0x1p-60}, 1000), {1500.0, 1000 * 0x1p-60});
  EXPECT_QUAD(times({1.0, 0.0}, INT32_MIN), {-0x1p31, 0.0});
}

TEST(QuadQuotients, OfSpecialValues) {
  EXPECT_QUAD(call(__zorvik_qdiv, {3.0, 0.0}, {1.0, 0.0}), {3.0, 0.0});
  EXPECT_QUAD(call(__zorvik_qdiv, {1.0, 0.0}, {3.0, 0.0}), {1 / 3.0, 0x1.5555555555555p-56});
  for (const auto& [x, y] :
       {std::pair{1.0, 0.0}, {0.0, 0.0}, {inf, 2.0}, {2.0, inf}, {0x1p1000, 0x1p-100}}) {
    EXPECT_QUAD(call(__zorvik_qdiv, {x, 0.0}, {y, 0.0}), {-nan8, -nan8}) << x << ' ' << y;
    EXPECT_QUAD(result_of(__zorvik_qdivd, quad{x, 0.0}, y), {-nan8, -nan8}) << x << ' ' << y;
    EXPECT_QUAD(result_of(__zorvik_ddivq, x, quad{y, 0.0}), {-nan8, -nan8}) << x << ' ' << y;
  }
}

TEST(QuadSigns, FlipBitForBit) {
  EXPECT_QUAD(result_of(__zorvik_qneg, quad{0.0, 0.0}), {-0.0, -0.0});
  EXPECT_QUAD(result_of(__zorvik_qneg, quad{nan8, -1.0}), {-nan8, 1.0});
}

TEST(QuadComparison, CountsInfinitiesAsUnordered) {
  const quad one{1.0, 0.0}, above{1.0, 0x1p-1074}, two{2.0, 0.0}, infinite{inf, 0.0},
      invalid{nan8, 0.0};
  struct row {
    quad a, b;
    std::int32_t bits, order;
  };
  for (const row& r : {row{one, two, 0x0100, -1},
                       {two, one, 0, 1},
                       {one, one, 0x4000, 0},
                       {above, one, 0, 1},
                       {one, above, 0x0100, -1},
                       {infinite, one, 0x4500, 0},
                       {one, {-inf, 0.0}, 0x4500, 0},
                       {invalid, one, 0x4500, 0},
                       {{1.0, inf}, one, 0, 1},
                       {{1.0, nan8}, one, 0x0100, 0},
                       {{largest, 0.0}, {-largest, 0.0}, 0, 1},
                       {{0.0, 0.0}, {-0.0, 0.0}, 0x4000, 0}}) {
    EXPECT_EQ(__zorvik_qcmp(r.a, r.b), r.bits) << image_of_quad(r.a) << image_of_quad(r.b);
    EXPECT_EQ(__zorvik_qcompare(r.a, r.b), r.order) << image_of_quad(r.a) << image_of_quad(r.b);
  }
}

// The low part of the difference is formed although only its leading part is looked at.
TEST(QuadComparison, RaisesWhatTheWholeDifferenceRaises) {
  EXPECT_EQ(flags_of([] { __zorvik_qcompare({0.0, inf}, {0.0, 0.0}); }) & IE, unsigned{IE});
}

TEST(QuadScalingEntry, RoundsEachPartByItself) {
  const auto scale = [](quad q, std::int32_t n) { return result_of(__zorvik_ldexpl, q, n); };
  EXPECT_QUAD(scale({1.0, -0x1p-60}, 3), {8.0, -0x1p-57});
  EXPECT_QUAD(scale({1.0, 0x1.8p-60}, -1014), {0x1p-1014, from_bits(std::uint64_t{2})});
  EXPECT_QUAD(scale({0x1p1000, 0x1p940}, 80), {inf, 0x1p1020});
  EXPECT_QUAD(scale({-0.0, inf}, -5000), {-0.0, inf});
  EXPECT_QUAD(scale({nan8, 0x1p-1074}, INT32_MAX), {nan8, inf});
}
