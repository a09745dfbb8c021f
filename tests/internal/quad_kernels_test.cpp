// Double-double arithmetic against exact integers, and its ways against each other: by stores,
// directly, and guarded on doubles.

#include <gtest/gtest.h>

#include <random>

#include "entries.hpp"
#include "quad/guards.hpp"
#include "support/quad_operands.hpp"
#include "support/quad_results.hpp"
#include "support/x87_state.hpp"

using namespace zrt;
using namespace zrt::quads;
using namespace support;

namespace {

constexpr int operands = 200000;

/// A finite double as an integer times a power of two.
struct scaled_integer {
  std::int64_t significand;
  int exponent;
};
scaled_integer taken_apart(double x) {
  const std::uint64_t image = bits(x);
  const auto field = static_cast<int>(image >> 52 & 0x7FF);
  const auto fraction = static_cast<std::int64_t>(image & 0xFFFFFFFFFFFFF);
  const std::int64_t size = field == 0 ? fraction : fraction | std::int64_t{1} << 52;
  return {image >> 63 != 0 ? -size : size, (field == 0 ? 1 : field) - 1075};
}

/// 128-bit integers by halves, which i386 has no type for: sign, high and low 64 bits of the
/// magnitude.
struct wide {
  bool negative = false;
  std::uint64_t high = 0, low = 0;
  bool operator==(const wide&) const = default;
};
wide product_of(std::int64_t a, std::int64_t b) {
  const auto x = static_cast<std::uint64_t>(a < 0 ? -a : a);
  const auto y = static_cast<std::uint64_t>(b < 0 ? -b : b);
  const std::uint64_t x0 = x & 0xFFFFFFFF, x1 = x >> 32, y0 = y & 0xFFFFFFFF, y1 = y >> 32;
  const std::uint64_t middle = x1 * y0 + (x0 * y0 >> 32), other = x0 * y1 + (middle & 0xFFFFFFFF);
  return {(a < 0) != (b < 0) && x != 0 && y != 0, x1 * y1 + (middle >> 32) + (other >> 32),
          other << 32 | (x0 * y0 & 0xFFFFFFFF)};
}
wide shifted(std::int64_t a, int places) {
  const auto size = static_cast<std::uint64_t>(a < 0 ? -a : a);
  if (places >= 64) return {a < 0, size << (places - 64), 0};
  return {a < 0, places == 0 ? 0 : size >> (64 - places), size << places};
}
wide sum(const wide& a, const wide& b) {
  const auto complement = [](const wide& w) {
    return w.negative ? wide{true, ~w.high + (w.low == 0), 0 - w.low} : w;
  };
  const wide x = complement(a), y = complement(b);
  wide s{false, x.high + y.high, x.low + y.low};
  s.high += s.low < x.low;
  s.negative = s.high >> 63 != 0;
  return complement(s);
}

/// A double in units of 2**exponent, of which it is a multiple.
wide in_units(double x, int exponent) {
  scaled_integer value = taken_apart(x);
  for (; value.exponent < exponent && value.significand != 0; ++value.exponent) {
    EXPECT_EQ(value.significand % 2, 0) << x;
    value.significand /= 2;
  }
  return value.significand == 0 ? wide{} : shifted(value.significand, value.exponent - exponent);
}
wide in_units(const quad& q, int exponent) {
  return sum(in_units(q.hi, exponent), in_units(q.lo, exponent));
}

/// The operations that every way has.
template <class A>
struct operation {
  const char* name;
  quad (*run)(const quad&, const quad&);
};
template <class A>
const std::vector<operation<A>>& operations() {
  using V = typename A::value;
  static const std::vector<operation<A>> all = {
      {"add", [](const quad& a, const quad& b) { return A::add(a, b); }},
      {"add a double", [](const quad& a, const quad& b) { return A::add(a, V{b.hi}); }},
      {"sub", [](const quad& a, const quad& b) { return A::sub(a, b); }},
      {"sub a double", [](const quad& a, const quad& b) { return A::sub(a, V{b.hi}); }},
      {"sub from a double", [](const quad& a, const quad& b) { return A::sub(V{a.hi}, b); }},
      {"product", [](const quad& a, const quad& b) { return A::product(V{a.hi}, V{b.hi}); }},
      {"mul", [](const quad& a, const quad& b) { return A::mul(a, b); }},
      {"mul by a double", [](const quad& a, const quad& b) { return A::mul(a, V{b.hi}); }},
      {"div", [](const quad& a, const quad& b) { return A::div(a, b); }},
      {"div by a double", [](const quad& a, const quad& b) { return A::div(a, V{b.hi}); }},
      {"div of a double", [](const quad& a, const quad& b) { return A::div(V{a.hi}, b); }},
      {"short factor",
       [](const quad& a, const quad& b) { return A::mul_by_short(a, V{float(b.hi)}); }},
      {"short divisor",
       [](const quad& a, const quad& b) { return A::div_by_short(a, V{float(b.hi)}); }},
      {"integer",
       [](const quad& a, const quad& b) {
         return A::mul_integer(a, static_cast<std::int32_t>(bits(b.lo) % 2200) - 1100);
       }},
      {"root",
       [](const quad& a, const quad&) {
         return A::square_root(a.hi < 0 ? A::neg(a) : a.hi == 0 ? one : a);
       }},
  };
  return all;
}

/// Holds one way against the steps by stores.
template <class A, class Draw>
void expect_same(int count, Draw draw) {
  const auto& expected = operations<stored_arithmetic>();
  const auto& all = operations<A>();
  for (std::size_t k = 0; k < all.size(); ++k)
    for (int i = 0; i < count; ++i) {
      const auto [a, b] = draw();
      ASSERT_EQ(image_of_quad(all[k].run(a, b)), image_of_quad(expected[k].run(a, b)))
          << all[k].name << ' ' << image_of_quad(a) << ' ' << image_of_quad(b);
    }
}

}  // namespace

TEST(QuadProduct, IsExact) {
  std::mt19937_64 random(1);
  for (int i = 0; i < operands; ++i) {
    const double a = any_double(random, -400, 400), b = any_double(random, -400, 400);
    const scaled_integer x = taken_apart(a), y = taken_apart(b);
    ASSERT_EQ(in_units(stored_arithmetic::product(a, b), x.exponent + y.exponent),
              product_of(x.significand, y.significand))
        << a << ' ' << b;
  }
}

TEST(QuadProduct, NeedsNoScalingAtTheEndsOfTheRange) {
  std::mt19937_64 random(2);
  for (int i = 0; i < operands; ++i) {
    const double a = any_double(random, 960, 1023), b = any_double(random, -1000, 0);
    const quad straight = stored_arithmetic::product(a, b);
    const quad by_scale = stored_arithmetic::scaled(
        stored_arithmetic::product(stored_arithmetic::scaled({a, 0}, -64).hi, b), 64);
    ASSERT_EQ(image_of_quad(straight), image_of_quad(by_scale)) << a << ' ' << b;
    const quad swapped = stored_arithmetic::product(b, a);
    ASSERT_EQ(image_of_quad(swapped),
              image_of_quad(stored_arithmetic::scaled(
                  stored_arithmetic::product(b, stored_arithmetic::scaled({a, 0}, -64).hi), 64)));
  }
}

TEST(QuadProduct, IsTheSameFromFourPartialProducts) {
  using direct = direct_arithmetic<reg>;
  std::mt19937_64 random(3);
  for (int i = 0; i < operands; ++i) {
    const double a = any_double(random, -300, 300), b = any_double(random, -300, 300);
    const reg p = reg{a} * reg{b};
    const double all = static_cast<double>(stored_arithmetic::product_error(a, b, p));
    for (const direct::factor& f : {direct::as_factor({b, 0}), direct::constant_factor({b, 0})})
      ASSERT_EQ(bits(all), bits(static_cast<double>(direct::product_error(a, f, p))));
  }
}

TEST(QuadWays, GiveTheSameBits) {
  std::mt19937_64 random(31);
  expect_same<direct_arithmetic<reg>>(operands, [&] {
    const int range = random() % 2 ? 5 : 100;
    return std::pair{any_quad(random, -range, range), any_quad(random, -range, range)};
  });
  using A = direct_arithmetic<reg>;
  for (int i = 0; i < operands; ++i) {
    quad small = any_quad(random, -5, 5), large = any_quad(random, -5, 5);
    if (std::abs(small.hi) > std::abs(large.hi)) std::swap(small, large);
    ASSERT_EQ(image_of_quad(A::add_to_larger(small, large)),
              image_of_quad(stored_arithmetic::add(small, large)));
  }
}

// Zero operands and an exact cancellation: the sign of every zero.
TEST(QuadWays, GiveTheSameZeros) {
  std::vector<std::pair<quad, quad>> pairs;
  for (const double x : {0.0, -0.0, 1.0, -1.0, 3.0})
    for (const double y : {1.0, -1.0, 0x1.00000001p0}) pairs.push_back({{x, 0.0}, {y, -0.0}});
  std::size_t next = 0;
  expect_same<direct_arithmetic<reg>>(static_cast<int>(pairs.size()),
                                      [&] { return pairs[next++ % pairs.size()]; });
}

// Parts that overlap leave the square anything: under a directed rounding the terms may stay.
TEST(QuadSeries, EndsUnderEveryRounding) {
  const quad overlapping{0x1.e69deab2e9183p+44, -0x1.e69deab2e917ep+44};
  for (const std::uint16_t word : {0x067F, 0x0A7F, 0x0E7F}) {
    const under_word scope(word);
    quad r;
    cquad z;
    __zorvik_sinhl(&r, overlapping);
    __zorvik_csinl(&z, {one, overlapping});
    __zorvik_ccosl(&z, {one, overlapping});
  }
}

// The words of the operands joined or loaded as they are, whole numbers cut by words or by values.
TEST(QuadEntries, AreTheSameWithoutSse2) {
  const bool has_sse2 = processor::has_sse2;
  operand_source from{std::mt19937_64(9)};
  const auto outcomes = [](const quad& a, const quad& b) {
    std::vector<std::string> all;
    for (quad* (*entry)(quad*, quad) :
         {__zorvik_qint, __zorvik_qnint, __zorvik_ceill, __zorvik_floorl, __zorvik_sqrtl}) {
      quad r;
      clear_flags();
      all.push_back(testing::PrintToString(image_of_quad(*entry(&r, a))) +
                    testing::PrintToString(flags() & ~DE));
    }
    for (quad* (*entry)(quad*, quad, quad) : {__zorvik_qadd, __zorvik_qmul, __zorvik_qdiv}) {
      quad r;
      clear_flags();
      all.push_back(testing::PrintToString(image_of_quad(*entry(&r, a, b))) +
                    testing::PrintToString(flags() & ~DE));
    }
    return all;
  };
  for (int i = 0; i < 20000; ++i) {
    const quad a = from.number(-3, 60), b = from.partner(a, -3, 60);
    processor::has_sse2 = false;
    const auto expected = outcomes(a, b);
    processor::has_sse2 = has_sse2;
    ASSERT_EQ(outcomes(a, b), expected) << image_of_quad(a) << ' ' << image_of_quad(b);
  }
}

TEST(QuadScaling, RoundsOnceAtTheStore) {
  // Against a chain of exact steps and one rounding of the fraction by integers.
  std::mt19937_64 random(5);
  for (int i = 0; i < operands; ++i) {
    const double x = any_double(random, -1022, 1023);
    const int n = static_cast<int>(random() % 4400) - 2200;
    const long double exact = __builtin_ldexpl(static_cast<long double>(x), n);
    ASSERT_EQ(bits(stored_arithmetic::scaled({x, 0}, n).hi), bits(static_cast<double>(exact)))
        << x << ' ' << n;
  }
  for (const int n : {2241, 100000, INT32_MAX}) {
    EXPECT_QUAD(stored_arithmetic::scaled({0x1p-1074, -0x1p-1074}, n),
                {__builtin_inf(), -__builtin_inf()});
    EXPECT_QUAD(stored_arithmetic::scaled({0x1.8p1023, -0.0}, -n), {0.0, -0.0});
  }
  EXPECT_QUAD(stored_arithmetic::scaled({0x1.8p1023, -0x1.8p1023}, INT32_MIN), {0.0, -0.0});
}

namespace logarithm_tables {
#include "quad/logarithm_tables.inc"
}
namespace hyperbolic_tables {
#include "quad/hyperbolic_tables.inc"
}
namespace arctangent_tables {
#include "quad/arctangent_tables.inc"
}
namespace circular_tables {
#include "quad/circular_tables.inc"
}

// No result shows the last digits of the leading coefficients, so the tables are held by digests.
TEST(QuadTables, KeepEveryDigit) {
  const auto digest = [](const auto& table) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const quad& row : table)
      for (const std::uint64_t part : {image(row.hi), image(row.lo)})
        sum = (sum ^ part) * 0x100000001B3;
    return sum;
  };
  EXPECT_EQ(digest(logarithm_tables::near_numerator), 0x75658B794F98F1B4u);
  EXPECT_EQ(digest(logarithm_tables::near_denominator), 0x9FD6E94D972DA522u);
  EXPECT_EQ(digest(logarithm_tables::far_numerator), 0x1909D48FDC98DA35u);
  EXPECT_EQ(digest(logarithm_tables::far_denominator), 0xE6C6467C28407C2Bu);
  EXPECT_EQ(digest(hyperbolic_tables::numerator), 0x0ACAE72C6B8422D8u);
  EXPECT_EQ(digest(hyperbolic_tables::denominator), 0x62E44B546C1D372Au);
  EXPECT_EQ(digest(arctangent_tables::numerator), 0xB21DCA0995522EB9u);
  EXPECT_EQ(digest(arctangent_tables::denominator), 0x0B6C03CB89BDED3Au);
  EXPECT_EQ(digest(circular_tables::sines), 0xBE85C393C8ADB967u);
}
