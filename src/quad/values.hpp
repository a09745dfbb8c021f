#pragma once

// REAL*16 values: the unevaluated sum hi + lo of two doubles. Constants, tests of the leading part,
// and the copies that keep every bit.

#include <array>

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::quads {

/// A REAL*16 constant from the images of its parts.
constexpr quad constant(std::uint64_t hi, std::uint64_t lo) {
  return {std::bit_cast<double>(hi), std::bit_cast<double>(lo)};
}

inline constexpr quad zero = {0.0, 0.0};
inline constexpr quad one = {1.0, 0.0};
inline constexpr quad plus_infinity = constant(0x7FF0000000000000, 0);
inline constexpr quad minus_infinity = constant(0xFFF0000000000000, 0);
/// What a domain error gives.
inline constexpr quad invalid = constant(0x7FF8000000000000, 0);
inline constexpr quad degrees_per_radian = constant(0x404CA5DC1A63C1F8, 0xBCE1E7AB456405FA);

/// Takes the result of an entry to the caller's area and hands its address back.
template <class Value>
[[gnu::always_inline]] inline Value* put(Value* result, const Value& value) {
  *result = value;
  return result;
}

/// Rounds both parts to doubles.
[[gnu::always_inline]] inline quad stored_pair(reg hi, reg lo) {
  return {static_cast<double>(hi), static_cast<double>(lo)};
}

/// (x, 0.0) of a value that is a double already.
template <class V>
[[gnu::always_inline]] inline quad widened(V x) {
  return {static_cast<double>(x), 0.0};
}

/// The promise that a register holds a double, with no instruction: a spill takes 64 bits.
[[gnu::always_inline]] inline double as_double(reg x) {
  double held;
  asm("" : "=t"(held) : "0"(x));
  return held;
}
[[gnu::always_inline]] inline double as_double(double x) { return x; }

/// An operand handed back bit for bit: a signalling NaN stays one.
inline quad* as_it_came(quad* result, const quad& a) {
  const std::uint64_t hi = image(a.hi), lo = image(a.lo);
  std::memcpy(&result->hi, &hi, sizeof hi);
  std::memcpy(&result->lo, &lo, sizeof lo);
  return result;
}

/// An operand with both signs flipped, of zeros and NaNs too, and otherwise bit for bit.
inline quad* sign_flipped(quad* result, const quad& a) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  const std::uint64_t hi = image(a.hi) ^ sign, lo = image(a.lo) ^ sign;
  std::memcpy(&result->hi, &hi, sizeof hi);
  std::memcpy(&result->lo, &lo, sizeof lo);
  return result;
}

/// The tests of the leading part.
[[gnu::always_inline]] inline bool is_zero_or_nan(const quad& a) {
  return compares_equal(load<ordinary>(a.hi), 0.0);
}
[[gnu::always_inline]] inline bool negative(const quad& a) {
  return less(load<ordinary>(a.hi), 0.0);
}

/// The exponent of a double as a power of two, 1024 for infinities and NaNs, -1023 below the normal
/// range.
[[gnu::always_inline]] inline int exponent_of(const double& x) {
  return unbiased_exponent<double>(image(x));
}

/// 2**(64 i) at i + 35, and 2**i: powers that reach from the smallest double beyond the largest and
/// back.
inline constexpr int last_high_power = 35;
inline constexpr auto high_powers = [] {
  std::array<reg, 2 * last_high_power + 1> power{};
  power[last_high_power] = 1.0L;
  for (int i = 1; i <= last_high_power; ++i) {
    power[last_high_power + i] = power[last_high_power + i - 1] * 0x1p64L;
    power[last_high_power - i] = power[last_high_power - i + 1] * 0x1p-64L;
  }
  return power;
}();
inline constexpr auto low_powers = [] {
  std::array<float, 64> power{};
  float p = 1.0F;
  for (float& entry : power) {
    entry = p;
    p *= 2.0F;
  }
  return power;
}();

}  // namespace zrt::quads
