#pragma once

// Whole parts of REAL*16 values, on the register and on doubles.

#include "int64/conversions.hpp"
#include "quad/guards.hpp"
#include "real/rounding.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

/// Whole parts of one part. Zeros of either sign and NaNs have the floor and the ceiling +0.0, a
/// negative fraction has the ceiling -0.0. The nearest whole number takes ties away from zero and
/// keeps the sign of a zero; whole numbers, infinities and NaNs pass.
template <class V>
struct whole;

template <>
struct whole<reg> {
  static reg floor(const double& x) { return real::floor(load(x)); }
  static reg ceiling(const double& x) { return real::ceiling(load(x)); }
  static reg nearest(const double& x) {
    const reg value = load(x), size = fabs(value);
    if (!less(size, 0x1p52)) return value;
    const reg cut = fabs(real::integral_part(x));
    const reg rounded = greater_equal(size - cut, 0.5) ? cut + 1.0 : cut;
    return sign_bit(value) ? fchs(rounded) : rounded;
  }
};

#if defined(__x86_64__)
/// Of zeros and normal numbers.
template <>
struct whole<double> {
  /// A magnitude below 2**52 cut to a whole number; others have no fraction.
  [[gnu::always_inline]] static double cut(double size) {
    return static_cast<double>(static_cast<std::int64_t>(size));
  }
  [[gnu::always_inline]] static bool has_no_fraction(double x) {
    return magnitude_of(x) >= power_image(52);
  }
  [[gnu::always_inline]] static double floor(double x) {
    if (has_no_fraction(x)) return x;
    const double t = cut(x);  // a fraction of either sign gives +0.0
    return t > x ? t - 1.0 : t;
  }
  [[gnu::always_inline]] static double ceiling(double x) {
    if (has_no_fraction(x)) return x;
    const double t = cut(x);
    return t < x ? t + 1.0 : x < 0.0 ? fchs(cut(fabs(x))) : t;
  }
  [[gnu::always_inline]] static double nearest(double x) {
    if (has_no_fraction(x)) return x;
    const double size = fabs(x), t = cut(size);
    return negated_if(sign_bit(x), size - t >= 0.5 ? t + 1.0 : t);
  }
};
#endif

/// A whole leading part with the whole part of lo added. A sum that is a NaN counts as unchanged.
template <class V>
[[gnu::always_inline]] inline quad sum_of_wholes(V whole, V low) {
  const V s = whole + low;
  if (compares_equal(s, whole)) return {static_cast<double>(whole), static_cast<double>(low)};
  return {static_cast<double>(s), static_cast<double>((whole - s) + low)};
}

// Ceiling and floor. A leading part with a fraction decides alone; of a whole one, or a NaN, which
// rounds to 0.0, the low part decides.
template <class V>
[[gnu::always_inline]] inline quad ceiling_by(const quad& a) {
  const V h = whole<V>::ceiling(a.hi);
  if (!compares_equal(load<V>(a.hi), h)) return widened(h);
  return sum_of_wholes(h, whole<V>::ceiling(a.lo));
}
template <class V>
[[gnu::always_inline]] inline quad floor_by(const quad& a) {
  const V h = whole<V>::floor(a.hi);
  if (!compares_equal(load<V>(a.hi), h)) return widened(h);
  return sum_of_wholes(h, whole<V>::floor(a.lo));
}

/// Truncation toward zero; a NaN goes by the ceiling.
template <class V>
[[gnu::always_inline]] inline quad truncation_by(const quad& a) {
  if constexpr (std::same_as<V, reg>) {
    return greater_equal(load(a.hi), 0.0) ? floor_by<V>(a) : ceiling_by<V>(a);
  } else {
    // Without a branch on the sign of a fraction.
    const double hi = a.hi;
    if (!whole<V>::has_no_fraction(hi)) {
      const double h = negated_if(sign_bit(hi), whole<V>::cut(fabs(hi)));
      if (h != hi) return widened(h);
    }
    const double h = hi + 0.0;  // a zero is +0.0
    return sum_of_wholes(h, hi >= 0.0 ? whole<V>::floor(a.lo) : whole<V>::ceiling(a.lo));
  }
}

/// The nearest whole number. Of a whole hi, or a NaN, the low part decides; otherwise it counts
/// only at a tie of hi, where one that lies toward zero takes the result a step toward zero. A NaN
/// lo counts as negative there.
template <class V>
[[gnu::always_inline]] inline quad nearest_by(const quad& a) {
  const V hi = load<V>(a.hi);
  const V q = whole<V>::nearest(a.hi);
  if (compares_equal(hi, q)) return sum_of_wholes(q, whole<V>::nearest(a.lo));
  if (fabs(q - hi) == 0.5) {
    if (greater(hi, 0.0)) {
      if (!greater_equal(load<V>(a.lo), 0.0)) return widened(q - 1.0);
    } else if (greater(load<V>(a.lo), 0.0)) {
      return widened(q + 1.0);
    }
  }
  return widened(q);
}

}  // namespace ZRT_MODEL

// By doubles where the parts are zeros or normal, else by the register.
#if defined(__x86_64__)
namespace rare {
quad ceiling(quad a);
quad floor(quad a);
quad truncation(quad a);
quad nearest(quad a);
}  // namespace rare
#endif
inline namespace ZRT_MODEL {

#if defined(__x86_64__)
[[gnu::always_inline]] inline bool has_plain_parts(const quad& a) {
  return are_plain<-1000, 1000>(a.hi, a.lo);
}
[[gnu::always_inline]] inline quad ceiling(const quad& a) {
  return has_plain_parts(a) ? ceiling_by<double>(a) : rare::ceiling(a);
}
[[gnu::always_inline]] inline quad floor(const quad& a) {
  return has_plain_parts(a) ? floor_by<double>(a) : rare::floor(a);
}
[[gnu::always_inline]] inline quad truncation(const quad& a) {
  return has_plain_parts(a) ? truncation_by<double>(a) : rare::truncation(a);
}
[[gnu::always_inline]] inline quad nearest(const quad& a) {
  return has_plain_parts(a) ? nearest_by<double>(a) : rare::nearest(a);
}
#else
[[gnu::always_inline]] inline quad ceiling(const quad& a) { return ceiling_by<reg>(a); }
[[gnu::always_inline]] inline quad floor(const quad& a) { return floor_by<reg>(a); }
[[gnu::always_inline]] inline quad truncation(const quad& a) { return truncation_by<reg>(a); }
[[gnu::always_inline]] inline quad nearest(const quad& a) { return nearest_by<reg>(a); }
#endif

/// Half a unit away from zero, before a truncation. A NaN counts as negative.
[[gnu::always_inline]] inline quad half_away(const quad& a) {
  return greater_equal(load(a.hi), 0.0) ? stored_arithmetic::add(a, 0.5)
                                        : stored_arithmetic::sub(a, 0.5);
}

}  // namespace ZRT_MODEL

ZRT_IN_EACH_MODEL(quad remainder(const quad& a, const quad& b);)

}  // namespace zrt::quads
