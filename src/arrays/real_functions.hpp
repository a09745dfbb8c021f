#pragma once

// Functions of REAL*8 and REAL*4 on lanes: the steps of src/real, with a choice where those branch.

#include "arrays/real_lanes.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

using real::identity_below;

/// Rare: results near the ends of the range and beyond, and operands near half a multiple of ln 2.
template <format F>
ZRT_INLINE values natural_exponential(const values& x, choice& rare) {
  using c = real::exponential_constants<F>;
  const near_whole<1> n(x * c::log2_e);
  const values r = real::less_multiple_of_ln_2<F>(x, n.value);
  rare =
      ~(less(r * r, real::clear_of_half) & less(fabs(x), std::same_as<F, double> ? 708.0 : 87.0));
  return image_sum(stored<F>(real::half_exponential<F>(r)), as_exponent(n.shifted));
}

/// No lane is rare: of a REAL*8 below the identity's limit the polynomial gives f itself.
template <format F, bool is_cosine>
ZRT_INLINE values sine_or_cosine(const values& x, choice&) {
  using c = real::circular_constants<F>;
  const values a = fabs(x);
  const values y = is_cosine ? stored<F>(a + c::half_pi) : a;
  const whole_values n = truncated_whole(y * c::reciprocal_pi + 0.5);
  const values f = real::less_multiple_of_pi<F>(a, is_cosine ? n.value - 0.5 : n.value);
  values r = real::sine_polynomial<F>(f);
  if constexpr (std::same_as<F, float>) r = chosen(less(fabs(f), identity_below<F>), f, r);
  r = flipped_by(odd_sign(n), r);
  if constexpr (!is_cosine) r = flipped_by(sign_of(x + 0.0), r);  // -0.0 is not negative
  return chosen(less_equal(y, c::limit), r, 0.0);
}
template <format F>
ZRT_INLINE values sine(const values& x, choice& rare) {
  return sine_or_cosine<F, false>(x, rare);
}
template <format F>
ZRT_INLINE values cosine(const values& x, choice& rare) {
  return sine_or_cosine<F, true>(x, rare);
}

/// Rare: what is not positive and finite, and subnormals of REAL*4.
template <format F>
ZRT_INLINE values natural_logarithm(const values& x, choice& rare) {
  using c = real::logarithm_constants<F>;
  const choice is_served = std::same_as<F, double> ? greater(x, 0.0) : less_equal(0x1p-126, x);
  rare = rare | ~(is_served & less(x, __builtin_inf()));
  const table_argument a = table_argument_of(x);
  const real::log_row<F>& row = c::rows[0];
  const values u = gathered(row.reciprocal, a.offset) * (a.significand - a.node);
  const values leading = a.exponent * c::ln2_leading + gathered(row.leading, a.offset);
  const values rest = a.exponent * c::ln2_rest + gathered(row.rest, a.offset);
  const values far = real::logarithm_sum<F>(leading, rest, u);
  const choice near = greater(x, c::near_low) & less(x, c::near_high);
  if (!any(near)) [[likely]]
    return far;
  return chosen(near, real::logarithm_near_one<F>(x), far);
}
template <format F>
ZRT_INLINE values common_logarithm(const values& x, choice& rare) {
  return natural_logarithm<F>(x, rare) * real::logarithm_constants<F>::log10_e;
}

/// No lane is rare. N = 0 is +0.0 whatever the sign of x.
template <format F>
ZRT_INLINE values tangent(const values& x, choice&) {
  using c = real::tangent_constants<F>;
  const values a = fabs(x);
  const whole_values n = truncated_whole(a * c::reciprocal_half_pi + 0.5);
  const values multiple = flipped_by(sign_of(x), n.value) + 0.0;
  const values f = real::less_multiple_of_half_pi<F>(x, multiple);
  const values g = f * f;
  values numerator = real::tangent_numerator<F>(f, g);
  values denominator = real::tangent_denominator<F>(g);
  if constexpr (std::same_as<F, float>) {
    const choice tiny = less(fabs(f), identity_below<F>);
    numerator = chosen(tiny, f, numerator);
    denominator = chosen(tiny, 1.0, denominator);
  }
  numerator = stored<F>(numerator);
  denominator = stored<F>(denominator);
  const choice odd = is_odd(n);
  const values below = flipped_by(odd_sign(n), chosen(odd, numerator, denominator));
  return chosen(less_equal(a, c::limit), chosen(odd, denominator, numerator) / below, 0.0);
}

/// Rare: beyond 1, and NaNs. Of a REAL*8 below the identity's limit the form gives y itself.
template <format F>
ZRT_INLINE values arcsine_or_arccosine(const values& x, bool is_cosine, choice& rare) {
  using c = real::arcsine_constants<F>;
  const values size = fabs(x);
  rare = rare | ~less_equal(size, 1.0);
  const choice big = greater(size, 0.5);
  values g = size * size, y = size;
  if (any(big)) {
    const values above = ((0.5 - size) + 0.5) * 0.5;
    const values root = fsqrt(above);
    g = chosen(big, above, g);
    y = chosen(big, stored<F>(root + root), y);
  }
  values r = real::arcsine_form<F>(y, g);
  if constexpr (std::same_as<F, float>) r = chosen(less_equal(size, identity_below<F>), y, r);
  const values sign = sign_of(x);
  // (k - y) + k and (k + y) + k, each with the sign of the whole.
  const double k = c::quarter_pi;
  if (!is_cosine) return flipped_by(sign, chosen(big, (k - r) + k, r));
  const choice negative = less(x, 0.0);
  const values small = (k - flipped_by(sign, r)) + k;
  const double half = c::half_pi;
  return chosen(big, chosen(negative, (half - r) + half, r), small);
}
template <format F>
ZRT_INLINE values arcsine(const values& x, choice& rare) {
  return arcsine_or_arccosine<F>(x, false, rare);
}
template <format F>
ZRT_INLINE values arccosine(const values& x, choice& rare) {
  return arcsine_or_arccosine<F>(x, true, rare);
}

/// Rare: NaNs.
template <format F>
ZRT_INLINE values arctangent(const values& x, choice& rare) {
  using c = real::arctangent_constants<F>;
  const values size = fabs(x);
  rare = rare | ~less_equal(size, __builtin_inf());
  const choice above_one = greater(size, 1.0);
  values f = size, summand = 0.0;
  if (any(above_one)) {
    f = chosen(above_one, stored<F>(1.0 / f), f);
    summand = chosen(above_one, c::summand[2], summand);
  }
  const choice reduced = greater(f, c::reduced);
  if (any(reduced)) {
    f = chosen(reduced, real::less_sixth_of_pi<F>(f), f);
    summand = chosen(reduced, chosen(above_one, c::summand[3], c::summand[1]), summand);
  }
  values r = real::arctangent_form<F>(f);
  if constexpr (std::same_as<F, float>) r = chosen(greater(fabs(f), identity_below<F>), r, f);
  r = flipped_by(sign_where(above_one), r);
  r = chosen(above_one | reduced, stored<F>(r + summand), r);
  return flipped_by(sign_of(x), r);
}

/// The decisions of the kernel from the processor's root; x - r**2 is a double, exactly. Rare: what
/// the kernel leaves to its steps, and operands that are not ordinary.
template <std::same_as<double> F>
ZRT_INLINE values square_root(const values& x, choice& rare) {
  rare = rare | ~(less_equal(0x1p-900, x) & less(x, __builtin_inf()));
  const values r = fsqrt(x);
  const values limit = r * image_less(masked(r, 0x7FF0000000000000), 53ULL << 52);
  const values excess = less_square(x, r);
  const values distance = fabs(excess) - limit;
  // Within 2**-30 of the end of a binade: the upper 29 of the fraction bits, rounded, are zero.
  constexpr unsigned long long end = 1ULL << 22, upper = (1ULL << 52) - 2 * end;
  const values fraction = joined(masked(image_plus(r, end), upper), 1.0);
  rare = rare | less(fabs(distance), limit * 0x1p-20) | ~less(1.0, fraction);
  const values neighbour = chosen(greater(excess, 0.0), image_plus(r, 1), image_less(r, 1));
  return chosen(is_odd_image(r) & greater(distance, 0.0), neighbour, r);
}

/// The root of the significand, unless a midpoint of 24 bits is near, and half of the exponent.
/// Rare: such midpoints, and what is not a positive normal number.
template <std::same_as<float> F>
ZRT_INLINE values square_root(const values& x, choice& rare) {
  rare = rare | ~(less_equal(0x1p-126, x) & less(x, __builtin_inf()));
  constexpr unsigned long long fraction = (1ULL << 52) - 1;
  const values root = fsqrt(joined(masked(x, fraction), 0.5));
  constexpr double midpoint = 0x1p28, margin = 0x1p22 + 4;
  const values rest = joined(masked(root, (1ULL << 29) - 1), 0x1p52);
  rare =
      rare | (less_equal(0x1p52 + midpoint - margin, rest) & less_equal(rest, 0x1p52 + midpoint));
  const values y = stored<F>(root);
  const values exponent = mapped([](lanes v) { return (lanes)((words)v >> 52); }, x);
  const choice odd = is_odd_image(exponent);
  const values half =
      mapped([](lanes e) { return (lanes)(((((words)e + 1) >> 1) - 511ULL) << 52); }, exponent);
  return image_sum(chosen(odd, stored<F>(y * 0x1.6a09e667f3bcdp-1), y), half);
}

/// Neither has a rare lane. A zero is +0.0, but where a negative fraction is rounded.
template <format F>
ZRT_INLINE values integral_part(const values& x, choice&) {
  return truncated(x) + 0.0;
}
template <format F>
ZRT_INLINE values nearest_whole(const values& x, choice&) {
  const values sign = sign_where(less(x, 0.0));
  return flipped_by(sign, truncated(flipped_by(sign, x) + 0.5));
}

/// Rare: what leaves the normal range as radians.
template <format F, values (*function)(const values&, choice&)>
ZRT_INLINE values of_degrees(const values& x, choice& rare) {
  const values a = fabs(x);
  rare = rare | (less(0.0, a) & less(a, 64.0 * real::smallest_normal<F>));
  return function(stored<F>(x * real::circular_constants<F>::radians), rare);
}
template <format F>
ZRT_INLINE values sine_of_degrees(const values& x, choice& rare) {
  return of_degrees<F, sine<F>>(x, rare);
}
template <format F>
ZRT_INLINE values cosine_of_degrees(const values& x, choice& rare) {
  return of_degrees<F, cosine<F>>(x, rare);
}
template <format F>
ZRT_INLINE values tangent_of_degrees(const values& x, choice& rare) {
  return of_degrees<F, tangent<F>>(x, rare);
}

/// Those of the arcsine and arccosine of REAL*4 have the factor of REAL*8. Rare: subnormals.
template <format F, values (*function)(const values&, choice&)>
ZRT_INLINE values in_degrees(const values& x, double factor, choice& rare) {
  const values a = fabs(x);
  rare = rare | (less(0.0, a) & less(a, real::smallest_normal<F>));
  return function(x, rare) * factor;
}
template <format F>
ZRT_INLINE values arcsine_in_degrees(const values& x, choice& rare) {
  return in_degrees<F, arcsine<F>>(x, real::arctangent_constants<double>::degrees, rare);
}
template <format F>
ZRT_INLINE values arccosine_in_degrees(const values& x, choice& rare) {
  return in_degrees<F, arccosine<F>>(x, real::arctangent_constants<double>::degrees, rare);
}
template <format F>
ZRT_INLINE values arctangent_in_degrees(const values& x, choice& rare) {
  return in_degrees<F, arctangent<F>>(x, real::arctangent_constants<F>::degrees, rare);
}

/// Zeros and NaNs give +0.0, a negative fraction rounded up -0.0.
template <format F>
ZRT_INLINE values whole_below(const values& x, choice&) {
  const values t = truncated(x);
  return chosen(less_equal(x, x), chosen(less(x, t), t - 1.0, t) + 0.0, 0.0);
}
template <format F>
ZRT_INLINE values whole_above(const values& x, choice&) {
  const values t = truncated(x);
  return chosen(less(x, 0.0) | less(0.0, x), chosen(less(t, x), t + 1.0, t), 0.0);
}

/// The sum makes a signalling NaN quiet.
template <format F>
ZRT_INLINE values absolute(const values& x, choice&) {
  return fabs(x) + 0.0;
}

/// |a| with the sign of b, which zeros and NaNs do not have.
template <format F>
ZRT_INLINE values sign_transfer(const values& a, const values& b, choice&) {
  return flipped_by(sign_where(less(b, 0.0)), fabs(a) + 0.0);
}
/// +0.0 for what is less, and for NaNs.
template <format F>
ZRT_INLINE values positive_difference(const values& a, const values& b, choice&) {
  const values difference = a - b;
  return chosen(less_equal(0.0, difference), difference, 0.0);
}
/// a - trunc(a / p) p. Rare: where an intermediate of the register exceeds a double's range, and
/// divisors that are zero, infinite or NaNs.
template <format F>
ZRT_INLINE values remainder(const values& a, const values& p, choice& rare) {
  const values quotient = truncated(a / p), size = fabs(p);
  rare = rare | ~(less(fabs(a), 0x1p1023) & less(fabs(quotient), 0x1p1023) & less(0.0, size) &
                  less(size, __builtin_inf()));
  return a - quotient * p;
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
