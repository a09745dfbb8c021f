#pragma once

// REAL*16 and COMPLEX*32 results, compared bit for bit.

#include <gtest/gtest.h>

#include <random>

#include "frame/entry.hpp"
#include "support/bits.hpp"

namespace support {

/// The images of a REAL*16, equal when every bit is.
struct quad_image {
  std::uint64_t hi, lo;
  bool operator==(const quad_image&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const quad_image& image) {
    return out << std::hex << '(' << image.hi << ", " << image.lo << ')' << std::dec << " = ("
               << from_bits(image.hi) << ", " << from_bits(image.lo) << ')';
  }
};
inline quad_image image_of_quad(const zrt::quad& q) { return std::bit_cast<quad_image>(q); }

/// What an entry with a result address gives.
template <class R, class... A, class... B>
R result_of(R* (*entry)(R*, A...), B... operands) {
  R result;
  EXPECT_EQ(entry(&result, operands...), &result);
  return result;
}

inline constexpr zrt::quad nan_pair = {-__builtin_nan(""), -__builtin_nan("")};
inline constexpr zrt::quad nan_and_zero = {__builtin_nan(""), 0.0};

/// A double of any sign with an exponent from `low` to `high`; one in eight has few bits.
inline double any_double(std::mt19937_64& random, int low, int high) {
  const auto exponent = static_cast<std::uint64_t>(
      1023 + low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1)));
  std::uint64_t fraction = random() >> 12;
  if (random() % 8 == 0) fraction = fraction >> 40 << 40;
  return from_bits((random() & 0x8000000000000000) | exponent << 52 | fraction);
}

/// A REAL*16 whose low part lies below half a unit of the leading one, or is zero.
inline zrt::quad any_quad(std::mt19937_64& random, int low, int high) {
  const double hi = any_double(random, low, high);
  if (random() % 8 == 0) return {hi, 0.0};
  const int exponent = static_cast<int>(bits(hi) >> 52 & 0x7FF) - 1023;
  return {hi, any_double(random, exponent - 64, exponent - 54)};
}

}  // namespace support

#define EXPECT_QUAD(value, ...) \
  EXPECT_EQ(::support::image_of_quad(value), ::support::image_of_quad(zrt::quad(__VA_ARGS__)))
