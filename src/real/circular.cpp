// SIN, COS, TAN and COTAN of REAL*4 and REAL*8, in radians and in degrees.
//
// Cody and Waite's methods in 53-bit arithmetic: N = x / pi to the nearest integer, the argument
// reduced by N times pi in two pieces, a polynomial or a rational form. Above a limit, where the
// reduction would lose its digits, and for infinities and NaNs, every function gives +0.0 (COTAN
// its reciprocal).

#include "entries.hpp"
#include "frame/sections.hpp"
#include "real/evaluation.hpp"

namespace zrt::real {
namespace {

template <format F>
struct circular_constants;

template <>
struct circular_constants<double> {
  static constexpr reg radians = 0x1.1df46a2529d39p-6L;  // a degree, pi / 180
  static constexpr reg half_pi = 0x1.921fb54442d18p+0L;
  static constexpr reg limit = 0x1.1c5832329691ap+28L;  // 298156835.16176
  static constexpr reg reciprocal_pi = 0x1.45f306dc9c883p-2L;
  static constexpr reg pi_leading = 0x1.922p+1L;            // 3.1416015625
  static constexpr reg pi_rest = -0x1.2aeef4b9ee59ep-17L;   // -8.908910206761538e-6
  static constexpr reg threshold = 0x1.6a09e667f3bc8p-27L;  // 2**-26.5
  static constexpr reg r[] = {0x1.880ff6993df95p-49L,       // 2.7204790957888847e-15
                              -0x1.ae420dc08499cp-41L,      // -7.642917806891047e-13
                              0x1.6123c686ad43p-33L,        // 1.605893649037159e-10
                              -0x1.ae6454b5dc0abp-26L,      // -2.5052106798274583e-8
                              0x1.71de3a524f063p-19L,       // 2.7557319210152756e-6
                              -0x1.a01a01a013e1ap-13L,      // -1.984126984120184e-4
                              0x1.11111111110bp-7L,         // 8.333333333333165e-3
                              -0x1.5555555555555p-3L};      // -0.16666666666666666

  static reg shifted(reg a) { return a + half_pi; }
  /// The sine below the threshold.
  static reg small(reg f) { return f; }
  static reg closed(reg f, reg g, reg r_of_g) { return stored<double>(f + g * (r_of_g * f)); }
};

template <>
struct circular_constants<float> {
  static constexpr reg radians = 0x1.1df46ap-6L;  // a degree, pi / 180
  static constexpr reg half_pi = 0x1.921fb6p+0L;
  static constexpr reg limit = 0x1p+13L;
  static constexpr reg reciprocal_pi = 0x1.45f306p-2L;
  static constexpr reg pi_leading = 0x1.92p+1L;    // 3.140625
  static constexpr reg pi_rest = 0x1.fb5446p-11L;  // 9.676536428742111e-4
  static constexpr reg threshold = 0x1p-12L;
  static constexpr reg r[] = {0x1.5d38b6p-19L,   // 2.6019031338364584e-6
                              -0x1.9f6444p-13L,  // -1.9807417993433774e-4
                              0x1.110e7cp-7L,    // 8.333025500178337e-3
                              -0x1.555548p-3L};  // -0.16666656732559204

  static reg shifted(reg a) { return stored<float>(a + half_pi); }
  static reg small(reg f) { return stored<float>(f); }
  static reg closed(reg f, reg g, reg r_of_g) { return stored<float>(f + f * (r_of_g * g)); }
};

/// Sine, and cosine as the sine of |x| + pi/2: the shift goes into the multiple N - 1/2, while |x|
/// itself is reduced. |f| is at most pi/2 and a rounding; its sine is f + f**3 R(f**2). Within two
/// units of the last place (REAL*4: 0.8), and 2**-70 (2**-34) for each multiple of pi taken off.
/// Above the limit, with the shift for the cosine, +0.0.
template <format F>
[[gnu::always_inline]] inline reg sine(reg x, bool cosine) {
  using c = circular_constants<F>;
  const reg a = fabs(x);
  const reg y = cosine ? c::shifted(a) : a;
  if (!less_equal(y, c::limit)) return 0.0L;
  const whole_number n = truncated_whole(y * c::reciprocal_pi + 0.5L);
  const bool negative = (!cosine && greater(0.0L, x)) != ((n.integer & 1) != 0);
  const reg multiple = cosine ? n.value - 0.5L : n.value;
  const reg f = (a - multiple * c::pi_leading) - multiple * c::pi_rest;
  if (less(fabs(f), c::threshold)) return negated_if(negative, c::small(f));
  const reg g = f * f;
  return negated_if(negative, c::closed(f, g, polynomial(g, c::r)));
}

template <format F>
struct tangent_constants;

template <>
struct tangent_constants<double> {
  static constexpr reg limit = 0x1.1c5832329691ap+27L;  // 149078417.58088
  static constexpr reg reciprocal_half_pi = 0x1.45f306dc9c883p-1L;
  static constexpr reg half_pi_leading = 0x1.922p+0L;           // 1.57080078125
  static constexpr reg half_pi_rest = -0x1.2aeef4b9ee59ep-18L;  // -4.454455103380769e-6
  static constexpr reg p[] = {-0x1.2bab72ea2c724p-16L,          // -1.7861707342254428e-5
                              0x1.c0e82a63baadfp-9L,            // 3.424887823589059e-3
                              -0x1.112b5e54d09p-3L};            // -0.13338350006421962
  static constexpr reg q[] = {0x1.0b774f07678e9p-21L,           // 4.981943399378651e-7
                              -0x1.46f6499094841p-12L,          // -3.1181531907010027e-4
                              0x1.a479ea17e2159p-6L,            // 2.5663832289440112e-2
                              -0x1.ddeb047fbd9d5p-2L,           // -0.46671683339755293
                              0x1p+0L};
};

template <>
struct tangent_constants<float> {
  static constexpr reg limit = 0x1.921fb6p+13L;  // 12867.9638671875
  static constexpr reg reciprocal_half_pi = 0x1.45f306p-1L;
  static constexpr reg half_pi_leading = 0x1.92p+0L;    // 1.5703125
  static constexpr reg half_pi_rest = 0x1.fb5444p-12L;  // 4.838267923332751e-4
  static constexpr reg p[] = {-0x1.88677p-4L};          // -9.580177068710327e-2
  static constexpr reg q[] = {0x1.3e66eap-7L,           // 9.71685815602541e-3
                              -0x1.b76f5ep-2L,          // -0.4291357696056366
                              0x1p+0L};
};

/// Tangent: x = N pi/2 + f, tan f = f (1 + g P(g)) / Q(g) with g = f**2, and for an odd N the
/// negative of its reciprocal. Numerator and denominator are stored; the quotient is not. Within
/// 2.6 units of the last place up to pi/2 (REAL*4: 2.1). N is negated as an integer, so
/// that N = 0 is +0.0.
template <format F>
reg tangent(reg x) {
  using c = tangent_constants<F>;
  const reg a = fabs(x);
  if (!less_equal(a, c::limit)) return 0.0L;
  std::int32_t n = truncated_to_int32(a * c::reciprocal_half_pi + 0.5L);
  if (greater(0.0L, x)) n = -n;
  const reg multiple = load_integer(n);
  const reg f = (x - multiple * c::half_pi_leading) - multiple * c::half_pi_rest;
  const bool odd = (n & 1) != 0;
  if (less(fabs(f), circular_constants<F>::threshold)) {
    const reg numerator = circular_constants<F>::small(f);
    return odd ? 1.0L / fchs(numerator) : numerator / 1.0L;
  }
  const reg g = f * f;
  // Two slots, numerator and denominator, which change places for an odd N.
  F slots[2];
  slots[0] = static_cast<F>(polynomial(g, c::p) * g * f + f);
  slots[1] = static_cast<F>(polynomial(g, c::q));
  return load(slots[odd]) / negated_if(odd, load(slots[!odd]));
}

/// 1 / tan x, tan by the instruction. Where `fptan` refuses its operand, from 2**63 on, the default
/// NaN and invalid.
reg cotangent(reg x) {
  if (greater_equal(fabs(x), 0x1p63L) && less(fabs(x), infinity)) return fsqrt(-1.0L);
  return 1.0L / fptan(x);
}

/// Degrees to radians, stored: no reduction of its own, no exact cases.
template <format F>
reg radians(const F& degrees) {
  return stored<F>(load(degrees) * circular_constants<F>::radians);
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsin)(real8 x) { return returned<double>(sine<double>(load(x), false)); }
ZRT_VALUE(real8_result, dcos)(real8 x) { return returned<double>(sine<double>(load(x), true)); }
ZRT_VALUE(real4_result, sin)(real4 x) { return returned<float>(sine<float>(load(x), false)); }
ZRT_VALUE(real4_result, cos)(real4 x) { return returned<float>(sine<float>(load(x), true)); }

ZRT_VALUE(real8_result, sincos)(real8 x, std::int32_t flag) {
  return returned<double>(flag == 0 ? sine<double>(load(x), false) : sine<double>(load(x), true));
}
ZRT_VALUE(real4_result, sinfcosf)(real4 x, std::int32_t flag) {
  return returned<float>(flag == 0 ? sine<float>(load(x), false) : sine<float>(load(x), true));
}

ZRT_VALUE(real8_result, dsind)(real8 x) {
  return returned<double>(sine<double>(radians(x), false));
}
ZRT_VALUE(real8_result, dcosd)(real8 x) { return returned<double>(sine<double>(radians(x), true)); }
ZRT_VALUE(real4_result, sind)(real4 x) { return returned<float>(sine<float>(radians(x), false)); }
ZRT_VALUE(real4_result, cosd)(real4 x) { return returned<float>(sine<float>(radians(x), true)); }

ZRT_VALUE(real8_result, dtan)(real8 x) { return returned<double>(tangent<double>(load(x))); }
ZRT_VALUE(real4_result, tan)(real4 x) { return returned<float>(tangent<float>(load(x))); }
ZRT_VALUE(real8_result, dtand)(real8 x) { return returned<double>(tangent<double>(radians(x))); }
ZRT_VALUE(real4_result, tand)(real4 x) { return returned<float>(tangent<float>(radians(x))); }

ZRT_VALUE(real8_result, dcot)(real8 x) { return returned<double>(1.0L / tangent<double>(load(x))); }
ZRT_VALUE(real4_result, cot)(real4 x) { return returned<float>(cotangent(load(x))); }
