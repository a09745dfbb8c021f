#pragma once

// The significand and exponent of a REAL*16 value, on the bit fields alone.

#include "quad/values.hpp"

namespace zrt::quads {

/// A value taken apart, the significand as images of its parts.
struct parts {
  std::uint64_t hi, lo;
  std::int32_t exponent;

  quad significand() const { return constant(hi, lo); }
};

/// The significand with a leading part in [0.5, 1), on the bit fields alone. Zero and NaN leading
/// parts give zero and the exponent 0, infinite ones 0.5 and 1025. A low part whose exponent would
/// fall below the range becomes +0.0.
inline parts significand_and_exponent(const quad& q) {
  constexpr int fraction_bits = layout<double>::fraction_bits;
  constexpr std::uint64_t exponent_field = std::uint64_t{layout<double>::exponent_mask}
                                           << fraction_bits;
  constexpr int half = layout<double>::bias - 1;
  if (compares_equal(load(q.hi), 0.0L)) return {0, 0, 0};
  std::uint64_t hi = image(q.hi);
  int e = biased_exponent<double>(hi);
  if (e == 0) {
    // Subnormal: the fraction moves up until its leading one is the implicit one.
    const std::uint64_t fraction = hi & ~(std::uint64_t{1} << 63);
    const int shift = std::countl_zero(fraction) - (63 - fraction_bits);
    hi = (hi & std::uint64_t{1} << 63) | fraction << shift;
    e = 1 - shift;
  }
  e -= half;
  hi = (hi & ~exponent_field) | std::uint64_t{half} << fraction_bits;
  std::uint64_t lo = image(q.lo);
  if (!compares_equal(load(q.lo), 0.0L)) {
    const int low_exponent = biased_exponent<double>(lo);
    const auto moved = static_cast<std::uint64_t>(low_exponent - e);
    lo = low_exponent <= e ? 0 : (lo & ~exponent_field) | (moved << fraction_bits & exponent_field);
  }
  return {hi, lo, e};
}

}  // namespace zrt::quads
