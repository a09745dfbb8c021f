#pragma once

// Exact conversion between REAL*16 and decimal, on bit patterns and integers alone: neither the x87
// control word nor FTZ and DAZ have a part in it.

#include <cstdint>

#include "natural.hpp"

namespace zrt::text {

/// The bits of the two doubles of a REAL*16; its value is their exact sum.
struct pair_bits {
  std::uint64_t hi, lo;
};

inline constexpr std::uint64_t sign_bit = 0x8000000000000000;
inline constexpr std::uint64_t infinity_bits = 0x7FF0000000000000;
inline constexpr std::uint64_t quiet_nan_bits = 0x7FF8000000000000;
inline constexpr std::uint64_t fraction_mask = 0x000FFFFFFFFFFFFF;

constexpr bool is_negative(std::uint64_t bits) { return (bits & sign_bit) != 0; }
constexpr bool is_finite(std::uint64_t bits) { return (bits & infinity_bits) != infinity_bits; }
constexpr bool is_zero(std::uint64_t bits) { return (bits & ~sign_bit) == 0; }
constexpr bool is_nan(std::uint64_t bits) { return (bits & ~sign_bit) > infinity_bits; }

/// significand * 2**exponent.
struct binary {
  natural significand;
  int exponent = 0;
};

/// Decimal digits of a number: d.ddd * 10**exponent. No digits is the answer 'none'.
struct decimal {
  /// More digits than this the shortest form does not use: a REAL*16 that needs them is written as
  /// a pair.
  static constexpr int shortest_limit = 40;
  /// A binary number of this range has its first significant decimal digit and its last one, the
  /// 1074th behind the point, at most so far apart.
  static constexpr int limit = 1400;

  int count = 0;
  int exponent = 0;
  char digit[limit + 9];  // nine digits are written at a time
};

/// |hi + lo| of finite parts, and its sign. A zero sum has the sign of hi, if hi is zero itself.
binary exact_sum(pair_bits value, bool& negative);

/// The `count` leading digits of a number above zero, the last one rounded to nearest, ties to
/// even. Beyond the last digit that is not zero there may be less.
void leading_digits(const binary& number, int count, decimal& result);

/// The digits down to the given place behind the point, rounded in the same way. Without digits the
/// result is zero.
void digits_to_place(const binary& number, int place, decimal& result);

/// The shortest digits that read back as the same pair, of those the nearest to its value. None if
/// they are more than shortest_limit, or if reading never gives this pair: parts that are not what
/// rounding their sum gives, or a zero lo of negative sign. hi is finite and not zero.
void shortest_digits(pair_bits value, decimal& result);

/// The shortest digits that read back as the same double, which is finite and not zero.
void shortest_digits(std::uint64_t value, decimal& result);

/// digits * 10**exponent, rounded: hi to the nearest double, lo to the nearest double of the exact
/// rest, ties to even. Overflow gives an infinity, with lo +0.0. An exact rest of zero gives +0.0,
/// any other keeps its sign.
pair_bits nearest_pair(natural digits, int exponent, bool negative);

}  // namespace zrt::text
