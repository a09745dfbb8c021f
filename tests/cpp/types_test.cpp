// The C++ types beyond their entries: constants, kinds of 80 and 128 bits, orders, neighbours, and
// the complex functions by identities.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <complex>
#include <random>

#include "support/bits.hpp"
#include "zorvikrt/zorvikrt.hpp"

using support::bits;
using zorvikrt::complex32;
using zorvikrt::real16;
using namespace zorvikrt::literals;

namespace {

bool same(const real16& a, const real16& b) {
  return bits(a.hi) == bits(b.hi) && bits(a.lo) == bits(b.lo);
}

constexpr std::array operands = {real16(1),
                                 real16(-3),
                                 real16(0.1L),
                                 real16(0x1.999999999999ap-4, -0x1.999999999999ap-58),
                                 real16(0x1.5555555555555p-2, 0x1.5555555555555p-56),
                                 real16(-7.25, 0x1p-60),
                                 real16(0x1p100, -0x1p40),
                                 real16(-0x1.fffffffffffffp-50, 0x1p-110)};

template <class Operation>
constexpr auto table_of(Operation operation) {
  std::array<real16, operands.size() * operands.size()> table{};
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = operation(operands[i / operands.size()], operands[i % operands.size()]);
  return table;
}
constexpr auto sums = table_of([](const real16& a, const real16& b) { return a + b; });
constexpr auto differences = table_of([](const real16& a, const real16& b) { return a - b; });
constexpr auto products = table_of([](const real16& a, const real16& b) { return a * b; });
constexpr auto quotients = table_of([](const real16& a, const real16& b) { return a / b; });
constexpr auto mixed = table_of(
    [](const real16& a, const real16& b) { return 2 * a - b * 0.1 + std::int64_t{1} / a; });

static_assert(operands[1] < operands[0] && operands[2] == operands[2] && real16(2, -1) == 1);
static_assert(isless(operands[0], operands[1]) == (operands[0] < operands[1]) &&
              !islessgreater(operands[0], operands[0]) && isgreater(real16(2), real16(1)));
static_assert(!isnan(operands[0]) && isinf(std::numeric_limits<real16>::infinity()));
static_assert((operands[0] <=> operands[1]) == std::partial_ordering::greater);
constexpr complex32 square = complex32(1, 2) * complex32(1, 2);
static_assert(square == complex32(-3, 4));

}  // namespace

TEST(CppConstants, HaveTheBitsOfTheEntries) {
  const auto entry = [](auto f, const auto&... x) { return zorvikrt::detail::real(f, x...); };
  for (std::size_t i = 0; i < sums.size(); ++i) {
    const real16 a = operands[i / operands.size()], b = operands[i % operands.size()];
    EXPECT_TRUE(same(sums[i], entry(__zorvik_qadd, a, b))) << i;
    EXPECT_TRUE(same(differences[i], entry(__zorvik_qsub, a, b))) << i;
    EXPECT_TRUE(same(products[i], entry(__zorvik_qmul, a, b))) << i;
    EXPECT_TRUE(same(quotients[i], entry(__zorvik_qdiv, a, b))) << i;
    EXPECT_TRUE(same(mixed[i], 2 * a - b * 0.1 + std::int64_t{1} / a)) << i;
  }
  constexpr std::int64_t lowest = INT64_MIN, large = (std::int64_t{1} << 62) + 1;
  constexpr real16 constants[] = {lowest, large, -large, std::int64_t{-1}};
  std::size_t i = 0;
  for (const std::int64_t k : {lowest, large, -large, std::int64_t{-1}}) {
    EXPECT_TRUE(same(constants[i], entry(__zorvik_ll2q, k)));
    EXPECT_TRUE(same(real16(k), constants[i++]));
    const auto u = static_cast<std::uint64_t>(k);
    EXPECT_TRUE(same(real16(u), entry(__zorvik_ull2q, u)));
  }
}

TEST(CppKinds, LongDoubleGoesThereAndBack) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 1000; ++i) {
    const long double x =
        std::ldexp(static_cast<long double>(random() | 1), static_cast<int>(random() % 600) - 300);
    EXPECT_EQ(static_cast<long double>(real16(x)), x);
    EXPECT_EQ(static_cast<long double>(-real16(x)), -x);
  }
  EXPECT_TRUE(isinf(real16(-0x1p2000L)));
  const real16 a = 1.5;
  EXPECT_TRUE(same(a + 0.1L, a + real16(0.1L)) && 0.1L < a && a != 0.1L);
}

#ifdef ZORVIKRT_HAS_INT128
TEST(CppKinds, IntegersOf128Bits) {
  using zorvikrt::detail::int128;
  using zorvikrt::detail::uint128;
  const int128 one = 1;
  for (const int128 k : {(one << 100) + 12345, -(one << 100) + 1, (one << 105) - 1, one << 126}) {
    EXPECT_TRUE(static_cast<int128>(real16(k)) == k);
    EXPECT_TRUE(same(real16(k) + 1, k + real16(1)));
  }
  const uint128 all = ~uint128{0};
  EXPECT_TRUE(same(real16(all), {0x1p128, -1}));
  EXPECT_TRUE(static_cast<uint128>(real16(all)) == all);
  EXPECT_TRUE(static_cast<uint128>(real16(0x1p128)) == all &&
              static_cast<uint128>(real16(-1)) == all);
  EXPECT_TRUE(static_cast<int128>(real16(0x1p127)) == static_cast<int128>(uint128{1} << 127));
  EXPECT_TRUE(static_cast<int128>(real16(-0x1p127, 0.5)) == -static_cast<int128>(all >> 1));
}

TEST(CppKinds, Float128GoesThereAndBack) {
  using zorvikrt::detail::float128;
  std::mt19937_64 random(6);
  for (int i = 0; i < 1000; ++i) {
    const float128 x = static_cast<float128>(random()) * static_cast<float128>(random() >> 24);
    EXPECT_TRUE(static_cast<float128>(real16(x)) == x);
  }
}
#endif

TEST(CppTypes, CountsAndOrders) {
  real16 x = 0x1p-80;
  EXPECT_TRUE(same(x++, 0x1p-80) && same(x, {1, 0x1p-80}) && same(--x, 0x1p-80));
  std::array<real16, 4> values = {real16(1, 0x1p-90), real16(-2), real16(1), real16(0.5)};
  std::ranges::sort(values, [](auto& a, auto& b) { return (a <=> b) < 0; });
  EXPECT_TRUE(values[0] == -2 && values[2] == 1 && same(values[3], {1, 0x1p-90}));
  EXPECT_TRUE((1 <=> values[0]) > 0 && (values[0] <=> NAN) == std::partial_ordering::unordered);
  const real16 smallest = 0x1p-1074;  // under DAZ
  EXPECT_TRUE(smallest && fpclassify(smallest) == FP_SUBNORMAL && !isnormal(smallest));
  EXPECT_EQ(fpclassify(-0.0_r16), FP_ZERO);
}

// Function and inverse, quotients of functions, and std::complex<double> for the branch.
TEST(CppComplex, Identities) {
  std::mt19937_64 random(8);
  const auto draw = [&] { return static_cast<double>(random() >> 11) * 0x1p-51 - 2; };
  const auto near = [](const complex32& a, const complex32& b) {
    return abs(a - b) <= 0x1p-94 * (1 + abs(b));
  };
  const auto double_near = [](const complex32& a, const std::complex<double>& b) {
    return std::abs(static_cast<std::complex<double>>(a) - b) <= 1e-13 * (1 + std::abs(b));
  };
  for (int i = 0; i < 500; ++i) {
    const complex32 z(draw(), draw());
    const auto w = static_cast<std::complex<double>>(z);
    EXPECT_TRUE(near(tan(z) * cos(z), sin(z)) && near(tanh(z) * cosh(z), sinh(z))) << z;
    EXPECT_TRUE(near(sin(asin(z)), z) && near(cos(acos(z)), z) && near(tan(atan(z)), z)) << z;
    EXPECT_TRUE(near(sinh(asinh(z)), z) && near(cosh(acosh(z)), z) && near(tanh(atanh(z)), z)) << z;
    EXPECT_TRUE(near(exp(z), cosh(z) + sinh(z)) && near(pow(complex32(10), log10(z)), z)) << z;
    EXPECT_TRUE(near(polar(abs(z), arg(z)), z) && near(norm(z), z * conj(z))) << z;
    EXPECT_TRUE(double_near(asin(z), std::asin(w)) && double_near(acos(z), std::acos(w)) &&
                double_near(atan(z), std::atan(w)) && double_near(asinh(z), std::asinh(w)) &&
                double_near(acosh(z), std::acosh(w)) && double_near(atanh(z), std::atanh(w)))
        << z;
  }
  EXPECT_FALSE(isgreaterequal(std::numeric_limits<real16>::quiet_NaN(), real16(1)));
  const complex32 infinite = proj(complex32(1, -std::numeric_limits<real16>::infinity()));
  EXPECT_TRUE(isinf(infinite.re) && signbit(infinite.im) &&
              proj(complex32(1, 2)) == complex32(1, 2));
  EXPECT_TRUE(near(tan(complex32(0.5, 300)), {0, 1}) && near(tanh(complex32(-300, 0.5)), -1));
}
