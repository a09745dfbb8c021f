#pragma once

// Kernels of the sine, cosine and tangent of REAL*4 and REAL*8.
//
// Cody and Waite's methods in 53-bit arithmetic: N = x / pi to the nearest integer, the argument
// reduced by N times pi in two pieces, a polynomial or a rational form. Above a limit, where the
// reduction would lose its digits, and for infinities and NaNs, every function gives +0.0.
//
// On doubles all operands are ordinary but subnormals, of which the degrees' product is one too
// below 2**-1016 (REAL*4: 2**-120): a reduced argument is zero or above 2**-70 unless it is x
// itself.

#include "frame/sections.hpp"
#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

template <format F>
struct circular_constants;

template <>
struct circular_constants<double> {
  static constexpr double radians = 0x1.1df46a2529d39p-6;  // a degree, pi / 180
  static constexpr double half_pi = 0x1.921fb54442d18p+0;
  static constexpr double limit = 0x1.1c5832329691ap+28;  // 298156835.16176
  static constexpr double reciprocal_pi = 0x1.45f306dc9c883p-2;
  static constexpr double pi_leading = 0x1.922p+1;           // 3.1416015625
  static constexpr double pi_rest = -0x1.2aeef4b9ee59ep-17;  // -8.908910206761538e-6
  static constexpr double clear = 2.46739;                   // (pi/2 - 2**-19)**2

  static constexpr double r[] = {0x1.880ff6993df95p-49,   // 2.7204790957888847e-15
                                 -0x1.ae420dc08499cp-41,  // -7.642917806891047e-13
                                 0x1.6123c686ad43p-33,    // 1.605893649037159e-10
                                 -0x1.ae6454b5dc0abp-26,  // -2.5052106798274583e-8
                                 0x1.71de3a524f063p-19,   // 2.7557319210152756e-6
                                 -0x1.a01a01a013e1ap-13,  // -1.984126984120184e-4
                                 0x1.11111111110bp-7,     // 8.333333333333165e-3
                                 -0x1.5555555555555p-3};  // -0.16666666666666666
};

template <>
struct circular_constants<float> {
  static constexpr double radians = 0x1.1df46ap-6;  // a degree, pi / 180
  static constexpr double half_pi = 0x1.921fb6p+0;
  static constexpr double limit = 0x1p+13;
  static constexpr double reciprocal_pi = 0x1.45f306p-2;
  static constexpr double pi_leading = 0x1.92p+1;    // 3.140625
  static constexpr double pi_rest = 0x1.fb5446p-11;  // 9.676536428742111e-4
  static constexpr double clear = 2.464;             // (pi/2 - 2**-10)**2
  static constexpr double r[] = {0x1.5d38b6p-19,     // 2.6019031338364584e-6
                                 -0x1.9f6444p-13,    // -1.9807417993433774e-4
                                 0x1.110e7cp-7,      // 8.333025500178337e-3
                                 -0x1.555548p-3};    // -0.16666656732559204
};

/// The argument less N pi, pi in two pieces.
template <format F, class V>
[[gnu::always_inline]] inline V less_multiple_of_pi(V a, V multiple) {
  using c = circular_constants<F>;
  return less_exact_product(a, multiple, c::pi_leading) - multiple * c::pi_rest;
}

/// f + f**3 R(f**2) for f from the threshold to pi/2 and a rounding, not stored.
template <format F, class V>
[[gnu::always_inline]] inline V sine_polynomial(V f) {
  const V g = f * f;
  const V r = polynomial(g, circular_constants<F>::r);
  if constexpr (std::same_as<F, double>) return f + g * (r * f);
  return f + f * (r * g);
}

/// Sine, and cosine as the sine of |x| + pi/2: the shift goes into the multiple N - 1/2, while |x|
/// itself is reduced. |f| is at most pi/2 and a rounding; its sine is f + f**3 R(f**2). Within two
/// units of the last place (REAL*4: 0.8), and 2**-70 (2**-34) for each multiple of pi taken off.
/// Above the limit, with the shift for the cosine, +0.0.
template <class V, format F>
[[gnu::always_inline]] inline V sine(const F& x, bool cosine) {
  using c = circular_constants<F>;
  const auto bits = image(x);
  const V a = fabs(load<V>(x));
  V y = a;
  if (cosine) {
    y = a + c::half_pi;
    if constexpr (std::same_as<F, float>) y = stored<float>(y);
  }
  // Of the sine, the integers settle it for all but the last operands below the limit.
  const bool surely_below = leading_size(x) < leading_size(static_cast<F>(c::limit));
  if ((cosine || !surely_below) && !less_equal(y, c::limit)) return 0.0;
  kernel_slots<F> slots;
  const whole_number<V> n = truncated_whole(y * c::reciprocal_pi + 0.5, slots.whole);
  const unsigned odd = n.integer & 1;
  const unsigned negative = cosine ? odd : odd ^ is_negative<F>(bits);
  const V f = less_multiple_of_pi<F>(a, cosine ? n.value - 0.5 : n.value);
  if (less(fabs(f), identity_below<F>)) {
    if constexpr (std::same_as<F, double>) return signed_by(negative, f);
    return signed_by(negative, stored_in(slots.result, f));
  }
  return signed_by(negative, stored_in(slots.result, sine_polynomial<F>(f)));
}

#if defined(__x86_64__)
/// The same for operands below the limit. f tells that N is that of the steps: x / pi is N + f / pi
/// within a bound, so that f**2 below `clear` leaves it further from a half than that; in REAL*4
/// the reciprocal of pi and the sum with pi/2 cost 2608 2**-23, in REAL*8 all together 2**-26.
template <bool cosine, format F>
[[gnu::always_inline]] inline bool quick_sine(const F& x, F& result) {
  using c = circular_constants<F>;
  constexpr F threshold = static_cast<F>(identity_below<F>);
  // The cosine's limit is that of |x| + pi/2.
  constexpr F end = static_cast<F>(c::limit) - (cosine ? 2 : 0);
  if constexpr (cosine) {
    if (!size_between(x, smallest_normal<F>, end)) return false;
  } else if (!size_between(x, threshold, end)) {
    if (!(size_image(x) < size_image(threshold))) return false;
    const F size = unpacked<F>(packed(x) & ~sign_image<F>);
    result = size_image(x) == 0 ? size - size : x;
    return true;
  }
  const double a = fabs(load<double>(x));
  const double turns = a * c::reciprocal_pi;
  const quick_whole<> n(cosine ? turns + 0.5 : turns);
  const double f = less_multiple_of_pi<F>(a, cosine ? n.value - 0.5 : n.value);
  const double g = f * f;
  if (!less(g, c::clear) || less(g, std::same_as<F, double> ? 0x1p-53 : 0x1p-24)) return false;
  __m128i sign = moved_up<F>(packed(n.shifted), sign_place<F>);
  if constexpr (!cosine) sign ^= packed(x) & sign_image<F>;
  result = unpacked<F>(packed(static_cast<F>(sine_polynomial<F>(f))) ^ sign);
  return true;
}
#endif

template <format F>
struct tangent_constants;

template <>
struct tangent_constants<double> {
  static constexpr double limit = 0x1.1c5832329691ap+27;  // 149078417.58088
  static constexpr double reciprocal_half_pi = 0x1.45f306dc9c883p-1;
  static constexpr double half_pi_leading = 0x1.922p+0;           // 1.57080078125
  static constexpr double half_pi_rest = -0x1.2aeef4b9ee59ep-18;  // -4.454455103380769e-6
  static constexpr double p[] = {-0x1.2bab72ea2c724p-16,          // -1.7861707342254428e-5
                                 0x1.c0e82a63baadfp-9,            // 3.424887823589059e-3
                                 -0x1.112b5e54d09p-3};            // -0.13338350006421962
  static constexpr double q[] = {0x1.0b774f07678e9p-21,           // 4.981943399378651e-7
                                 -0x1.46f6499094841p-12,          // -3.1181531907010027e-4
                                 0x1.a479ea17e2159p-6,            // 2.5663832289440112e-2
                                 -0x1.ddeb047fbd9d5p-2,           // -0.46671683339755293
                                 0x1p+0};
};

template <>
struct tangent_constants<float> {
  static constexpr double limit = 0x1.921fb6p+13;  // 12867.9638671875
  static constexpr double reciprocal_half_pi = 0x1.45f306p-1;
  static constexpr double half_pi_leading = 0x1.92p+0;    // 1.5703125
  static constexpr double half_pi_rest = 0x1.fb5444p-12;  // 4.838267923332751e-4
  static constexpr double p[] = {-0x1.88677p-4};          // -9.580177068710327e-2
  static constexpr double q[] = {0x1.3e66eap-7,           // 9.71685815602541e-3
                                 -0x1.b76f5ep-2,          // -0.4291357696056366
                                 0x1p+0};
};

template <format F, class V>
[[gnu::always_inline]] inline V less_multiple_of_half_pi(V x, V multiple) {
  using c = tangent_constants<F>;
  return less_exact_product(x, multiple, c::half_pi_leading) - multiple * c::half_pi_rest;
}

/// Numerator and denominator of tan f, to be stored.
template <format F, class V>
[[gnu::always_inline]] inline V tangent_numerator(V f, V g) {
  return polynomial(g, tangent_constants<F>::p) * g * f + f;
}
template <format F, class V>
[[gnu::always_inline]] inline V tangent_denominator(V g) {
  return polynomial(g, tangent_constants<F>::q);
}

/// Tangent: x = N pi/2 + f, tan f = f (1 + g P(g)) / Q(g) with g = f**2, and for an odd N the
/// negative of its reciprocal. Numerator and denominator are stored; the quotient is not. Within
/// 2.6 units of the last place up to pi/2 (REAL*4: 2.1). N is negated as an integer, so
/// that N = 0 is +0.0.
template <class V, format F>
[[gnu::always_inline]] inline V tangent(const F& operand) {
  using c = tangent_constants<F>;
  const V x = load<V>(operand);
  const V a = fabs(x);
  if (!less_equal(a, c::limit)) return 0.0;
  std::int32_t n = truncated_to_int32(a * c::reciprocal_half_pi + 0.5);
  if (is_negative<F>(image(operand))) n = -n;
  const V multiple = load_integer<V>(n);
  const V f = less_multiple_of_half_pi<F>(x, multiple);
  const bool odd = (n & 1) != 0;
  if (less(fabs(f), identity_below<F>)) {
    V numerator = f;
    if constexpr (std::same_as<F, float>) numerator = stored<float>(f);
    return odd ? 1.0 / fchs(numerator) : numerator / 1.0;
  }
  const V g = f * f;
  // Two slots, numerator and denominator, which change places for an odd N.
  F slots[2];
  slots[0] = static_cast<F>(tangent_numerator<F>(f, g));
  slots[1] = static_cast<F>(tangent_denominator<F>(g));
  return load<V>(slots[odd]) / negated_if(odd, load<V>(slots[!odd]));
}

}  // namespace zrt::real
