// Conversions between INTEGER*8 and the floating types, and the 64-bit shifts.

#include <gtest/gtest.h>

#include <random>

#include "entries.hpp"
#include "support/bits.hpp"
#include "support/x87_state.hpp"

using namespace support;

namespace {

/// A REAL*8 around the range: any sign, an exponent from 2**-3 to 2**66, some low bits clear.
double around_the_range(std::mt19937_64& random) {
  const std::uint64_t fraction = random() >> 12 << random() % 53 & 0xFFFFFFFFFFFFF;
  return from_bits((random() & 0x8000000000000000) | (1020 + random() % 70) << 52 | fraction);
}

/// x cut toward zero by its bits.
std::int64_t cut(double x) {
  const std::uint64_t image = bits(x),
                      significand = (image & 0xFFFFFFFFFFFFF) | std::uint64_t{1} << 52;
  const int exponent = static_cast<int>(image >> 52 & 0x7FF) - 1075;
  if (exponent > 10) return image >> 63 != 0 ? INT64_MIN : INT64_MAX;
  const std::uint64_t size = exponent >= 0    ? significand << exponent
                             : exponent > -64 ? significand >> -exponent
                                              : 0;
  return static_cast<std::int64_t>(image >> 63 != 0 ? 0 - size : size);
}

/// The highest `kept` bits of a magnitude, the rest cleared.
std::uint64_t cut_to(int kept, std::uint64_t size) {
  int length = 0;
  while (length < 64 && size >> length != 0) ++length;
  return length > kept ? size >> (length - kept) << (length - kept) : size;
}

}  // namespace

TEST(ToInteger8, CutsAndSaturates) {
  std::mt19937_64 random(41);
  for (int i = 0; i < 300000; ++i) {
    const double x = around_the_range(random);
    ASSERT_EQ(__zorvik_cvtdll(x), cut(x)) << x;
    ASSERT_EQ(__zorvik_slow_cvtdll(x), cut(x)) << x;
    const float y = static_cast<float>(x);
    ASSERT_EQ(__zorvik_cvtfll(y), cut(y)) << y;
    ASSERT_EQ(__zorvik_slow_cvtfll(y), cut(y)) << y;
  }
}

TEST(ToInteger8, KeepsTheControlWord) {
  const under_word upward(0x0A7F);
  EXPECT_EQ(__zorvik_cvtdll(1.5), 1);
  EXPECT_EQ(__zorvik_cvtdll(-1.5), -1);
  EXPECT_EQ(control_word(), 0x0A7F);
}

TEST(FromInteger8, IsExactOnTheStackAndCutsInTheSlowForms) {
  const auto expect_signed = [](std::int64_t a) {
    const auto size = a < 0 ? 0 - static_cast<std::uint64_t>(a) : static_cast<std::uint64_t>(a);
    const auto exact = static_cast<long double>(a);
    const auto cut = [a, size](int kept) {
      const auto top = static_cast<long double>(cut_to(kept, size));
      return a < 0 ? -top : top;
    };
    ASSERT_EQ(double_bits(__zorvik_cvtlld(a)), double_bits(exact)) << a;
    ASSERT_EQ(single_bits(__zorvik_cvtllf(a)), single_bits(exact)) << a;
    ASSERT_EQ(double_bits(__zorvik_slow_cvtlld(a)), double_bits(cut(53))) << a;
    ASSERT_EQ(single_bits(__zorvik_slow_cvtllf(a)), single_bits(cut(24))) << a;
#if defined(__i386__)
    ASSERT_EQ(register_image(__zorvik_cvtlld(a)), register_image(exact)) << a;
    ASSERT_EQ(register_image(__zorvik_cvtllf(a)), register_image(exact)) << a;
#endif
  };
  const auto expect_unsigned = [](std::uint64_t a) {
    const auto to_double = static_cast<long double>(cut_to(53, a));
    const auto to_single = static_cast<long double>(cut_to(24, a));
    const bool upper = a >> 63 != 0;
    const auto exact = static_cast<long double>(static_cast<std::int64_t>(a));
    ASSERT_EQ(double_bits(__zorvik_cvtulld(a)), double_bits(upper ? to_double : exact)) << a;
    ASSERT_EQ(single_bits(__zorvik_cvtullf(a)), single_bits(upper ? to_single : exact)) << a;
    ASSERT_EQ(double_bits(__zorvik_slow_cvtulld(a)), double_bits(to_double)) << a;
    ASSERT_EQ(single_bits(__zorvik_slow_cvtullf(a)), single_bits(to_single)) << a;
  };
  std::mt19937_64 random(42);
  for (int i = 0; i < 200000; ++i) {
    const std::uint64_t a = random() >> random() % 64;
    expect_unsigned(a);
    expect_signed(static_cast<std::int64_t>(random() % 2 != 0 ? 0 - a : a));
  }
  for (const std::int64_t a : {std::int64_t{0}, INT64_MIN, INT64_MAX, std::int64_t{-1}}) {
    expect_signed(a);
    expect_unsigned(static_cast<std::uint64_t>(a));
  }
}

TEST(Nearest8, RoundsTheMovedOperandToDoubleFirst) {
  const under_word extended(0x037F);
  EXPECT_EQ(__zorvik_kidnnt(0.49999999999999994), 1) << "also where the sum itself does not round";
}

TEST(Shifts64, FillForEveryCount) {
  std::mt19937_64 random(43);
  for (int i = 0; i < 1000; ++i) {
    const auto x = static_cast<std::int64_t>(random());
    std::uint64_t left = static_cast<std::uint64_t>(x), right = left;
    std::int64_t arithmetic = x;
    for (std::int32_t n = 0; n < 70; ++n) {
      ASSERT_EQ(__zorvik_llshift(x, n), static_cast<std::int64_t>(left)) << x << ' ' << n;
      ASSERT_EQ(__zorvik_rlshift(x, n), static_cast<std::int64_t>(right)) << x << ' ' << n;
      ASSERT_EQ(__zorvik_arlshift(x, n), arithmetic) << x << ' ' << n;
      left *= 2;
      right /= 2;
      arithmetic = (arithmetic - (arithmetic & 1)) / 2;
    }
    for (const std::int32_t n : {-1, 1000, 0x100, INT32_MIN}) {
      ASSERT_EQ(__zorvik_llshift(x, n), 0);
      ASSERT_EQ(__zorvik_rlshift(x, n), 0);
      ASSERT_EQ(__zorvik_arlshift(x, n), x < 0 ? -1 : 0);
    }
  }
}
