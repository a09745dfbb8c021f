#pragma once

// Whole parts of REAL*16 values.

#include "quad/guards.hpp"
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

}  // namespace zrt::quads
