#pragma once

// Whole parts, remainders and exponents of REAL*16 values as kernels, for the rooms above.

#include "quad/quad.hpp"
#include "real/rounding.hpp"

namespace zrt::quads {

/// A whole leading part with the whole part of lo added. A sum that is a NaN counts as unchanged.
[[gnu::always_inline]] inline quad joined(reg whole, reg low) {
  const reg s = whole + low;
  if (compares_equal(s, whole)) return stored_pair(whole, low);
  return stored_pair(s, (whole - s) + low);
}

/// Ceiling and floor. A leading part with a fraction decides alone; of a whole one, or a NaN, which
/// rounds to 0.0, the low part decides.
inline quad ceiling(const quad& a) {
  const reg h = real::ceiling(load(a.hi));
  if (!compares_equal(load(a.hi), h)) return widened(h);
  return joined(h, real::ceiling(load(a.lo)));
}
inline quad floor(const quad& a) {
  const reg h = real::floor(load(a.hi));
  if (!compares_equal(load(a.hi), h)) return widened(h);
  return joined(h, real::floor(load(a.lo)));
}

/// Truncation toward zero; a NaN goes by the ceiling.
inline quad truncation(const quad& a) {
  return greater_equal(load(a.hi), 0.0L) ? floor(a) : ceiling(a);
}

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
