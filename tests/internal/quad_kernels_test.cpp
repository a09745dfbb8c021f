// Double-double arithmetic against exact integers, and its two ways, by stores and in registers,
// against each other.

#include <gtest/gtest.h>

#include <random>

#include "quad/quad.hpp"
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

template <class F>
void expect_same_ways(const char* name, F both, int low, int high) {
  std::mt19937_64 random(31);
  for (int i = 0; i < operands; ++i) {
    const quad a = any_quad(random, low, high), b = any_quad(random, low, high);
    const auto [stores, registers] = both(a, b);
    ASSERT_EQ(image_of_quad(stores), image_of_quad(registers))
        << name << ' ' << image_of_quad(a) << ' ' << image_of_quad(b);
  }
}

}  // namespace

TEST(QuadProduct, IsExact) {
  std::mt19937_64 random(1);
  for (int i = 0; i < operands; ++i) {
    const double a = any_double(random, -400, 400), b = any_double(random, -400, 400);
    const scaled_integer x = taken_apart(a), y = taken_apart(b);
    ASSERT_EQ(in_units(product(a, b), x.exponent + y.exponent),
              product_of(x.significand, y.significand))
        << a << ' ' << b;
  }
}

TEST(QuadProduct, NeedsNoScalingAtTheEndsOfTheRange) {
  std::mt19937_64 random(2);
  for (int i = 0; i < operands; ++i) {
    const double a = any_double(random, 960, 1023), b = any_double(random, -1000, 0);
    const quad straight = product(a, b);
    const quad by_scale = scaled(product(scaled({a, 0}, -64).hi, b), 64);
    ASSERT_EQ(image_of_quad(straight), image_of_quad(by_scale)) << a << ' ' << b;
    const quad swapped = product(b, a);
    ASSERT_EQ(image_of_quad(swapped),
              image_of_quad(scaled(product(b, scaled({a, 0}, -64).hi), 64)));
  }
}

TEST(QuadProduct, IsTheSameFromFourPartialProducts) {
  std::mt19937_64 random(3);
  for (int i = 0; i < operands; ++i) {
    const double a = any_double(random, -300, 300), b = any_double(random, -300, 300);
    const reg p = reg{a} * reg{b};
    const double all = static_cast<double>(product_error(a, b, p));
    ASSERT_EQ(bits(all),
              bits(static_cast<double>(product_error(cut<27>(a), as_factor({b, 0}), p))));
    ASSERT_EQ(bits(all),
              bits(static_cast<double>(product_error(cut<27>(a), constant_factor({b, 0}), p))));
  }
}

TEST(QuadWays, GiveTheSameBits) {
  using pair = std::pair<quad, quad>;
  expect_same_ways(
      "add",
      [](const quad& a, const quad& b) {
        return pair{add(a, b), add<in_register>(a, b)};
      },
      -5, 5);
  expect_same_ways(
      "sub",
      [](const quad& a, const quad& b) {
        return pair{sub(a, b), sub<in_register>(a, b)};
      },
      -5, 5);
  expect_same_ways(
      "add_to_larger",
      [](const quad& a, const quad& b) {
        const bool ordered = std::abs(a.hi) <= std::abs(b.hi);
        const quad &small = ordered ? a : b, &large = ordered ? b : a;
        return pair{add(small, large), add_to_larger(small, large)};
      },
      -5, 5);
  expect_same_ways(
      "mul",
      [](const quad& a, const quad& b) {
        return pair{mul(a, b), mul<in_register>(a, b)};
      },
      -399, 399);
  expect_same_ways(
      "div",
      [](const quad& a, const quad& b) {
        return pair{div(a, b), div<in_register>(a, b)};
      },
      -399, 399);
  expect_same_ways(
      "div by a double",
      [](const quad& a, const quad& b) {
        return pair{div(a, b.hi), div<in_register>(a, b.hi)};
      },
      -399, 399);
  expect_same_ways(
      "div of a double",
      [](const quad& a, const quad& b) {
        return pair{div(reg{a.hi}, b), div<in_register>(reg{a.hi}, b)};
      },
      -399, 399);
  expect_same_ways(
      "div by a constant",
      [](const quad& a, const quad& b) {
        return pair{div(a, b), div(a, constant_factor(b))};
      },
      -399, 399);
  expect_same_ways(
      "short factors",
      [](const quad& a, const quad& b) {
        const reg d = static_cast<float>(b.hi);
        return pair{mul(a, d), mul_by_short<in_register>(a, d)};
      },
      -100, 100);
  expect_same_ways(
      "short divisors",
      [](const quad& a, const quad& b) {
        const reg d = static_cast<float>(b.hi);
        return pair{div(a, d), div_by_short<in_register>(a, d)};
      },
      -100, 100);
  expect_same_ways(
      "integers",
      [](const quad& a, const quad& b) {
        const auto k = static_cast<std::int32_t>(bits(b.lo) % 2200) - 1100;
        return pair{mul_integer(a, k), mul_integer<in_register>(a, k)};
      },
      -100, 100);
}

// Zero operands and an exact cancellation: the sign of every zero.
TEST(QuadWays, GiveTheSameZeros) {
  for (const double x : {0.0, -0.0, 1.0, -1.0, 3.0})
    for (const double y : {0.0, -0.0, 1.0, -1.0, 0x1.00000001p0}) {
      const quad a{x, 0.0}, b{y, -0.0};
      EXPECT_EQ(image_of_quad(mul(a, b)), image_of_quad(mul<in_register>(a, b))) << x << ' ' << y;
      EXPECT_EQ(image_of_quad(add(a, b)), image_of_quad(add<in_register>(a, b))) << x << ' ' << y;
      EXPECT_EQ(image_of_quad(sub(a, b)), image_of_quad(sub<in_register>(a, b))) << x << ' ' << y;
      if (y == 0) continue;
      EXPECT_EQ(image_of_quad(div(a, b)), image_of_quad(div<in_register>(a, b))) << x << ' ' << y;
    }
}

TEST(QuadScaling, RoundsOnceAtTheStore) {
  // Against a chain of exact steps and one rounding of the fraction by integers.
  std::mt19937_64 random(5);
  for (int i = 0; i < operands; ++i) {
    const double x = any_double(random, -1022, 1023);
    const int n = static_cast<int>(random() % 4400) - 2200;
    const long double exact = __builtin_ldexpl(static_cast<long double>(x), n);
    ASSERT_EQ(bits(scaled({x, 0}, n).hi), bits(static_cast<double>(exact))) << x << ' ' << n;
  }
  for (const int n : {2241, 100000, INT32_MAX}) {
    EXPECT_QUAD(scaled({0x1p-1074, -0x1p-1074}, n), {__builtin_inf(), -__builtin_inf()});
    EXPECT_QUAD(scaled({0x1.8p1023, -0.0}, -n), {0.0, -0.0});
  }
  EXPECT_QUAD(scaled({0x1.8p1023, -0x1.8p1023}, INT32_MIN), {0.0, -0.0});
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
