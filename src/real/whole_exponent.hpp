#pragma once

// Which exponents the general powers take for whole numbers, by their bits.

#include "frame/x87.hpp"

namespace zrt::real {

/// Whole and, in REAL*8, within the leading 20 fraction bits; in size at least 1 and below 2**31,
/// and from 2**21 (REAL*4: 2**24) on a power of two.
inline bool whole_by_leading_bits(const double& y) {
  const auto bits = image(y);
  const std::int32_t exponent = unbiased_exponent<double>(bits);
  const auto low = static_cast<std::uint32_t>(bits);
  const auto high = static_cast<std::uint32_t>(bits >> 32) & 0xFFFFF;
  if (exponent < 0 || exponent > 30 || low != 0) return false;
  return high == 0 || (exponent <= 20 && (high & (0xFFFFFu >> exponent)) == 0);
}
inline bool whole_by_leading_bits(const float& y) {
  const auto bits = image(y);
  const std::int32_t exponent = unbiased_exponent<float>(bits);
  const std::uint32_t fraction = bits & 0x7FFFFF;
  if (exponent < 0 || exponent > 30) return false;
  return fraction == 0 || (exponent <= 23 && (fraction & (0x7FFFFFu >> exponent)) == 0);
}

}  // namespace zrt::real
