#pragma once

// Kernels of SINH, COSH and TANH of REAL*4 and REAL*8.
//
// Large operands go through e**y as an 80-bit value, small ones of sine and tangent through
// rational forms after Cody and Waite in 53-bit arithmetic; only these run on doubles. Nothing
// tests for overflow: the register's exponent carries large results. An infinite operand of sine
// and cosine gives the default NaN.

#include "frame/sections.hpp"
#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

template <format F>
struct hyperbolic_sine_constants;

template <>
struct hyperbolic_sine_constants<double> {
  static constexpr double p[] = {-0x1.944e7b86fc81bp-1,    // -0.789661274173571
                                 -0x1.478416385be4ap+7,    // -163.7579820263075
                                 -0x1.695c2b694149p+13,    // -11563.521196851769
                                 -0x1.5791356533419p+18};  // -351812.8343017712
  static constexpr double q[] = {-0x1.15bc381c97ff2p+8,    // -277.735231196507
                                 0x1.1a85723b65ec7p+15,    // 36162.72310942184
                                 -0x1.01ace80be6713p+21};  // -2110877.0058106272
};

template <>
struct hyperbolic_sine_constants<float> {
  static constexpr double p[] = {-0x1.85cd84p-3,   // -0.19033339619636536
                                 -0x1.c8d3ep+2};   // -7.137931823730469
  static constexpr double q[] = {-0x1.569f26p+5};  // -42.82770919799805
};

template <format F>
struct hyperbolic_tangent_constants;

template <>
struct hyperbolic_tangent_constants<double> {
  static constexpr double one_from = 0x1.30fc1931f09cbp+4;    // 27.5 ln 2
  static constexpr double exact_half = 0x1.193ea7aad030bp-1;  // ln(3) / 2
  static constexpr double p[] = {-0x1.edc28cefba77fp-1,       // -0.9643749277722548
                                 -0x1.8ce75a1ba5cccp+6,       // -99.22592967223608
                                 -0x1.935a5c9be1e18p+10};     // -1613.4119023996227
  static constexpr double q[] = {0x1.c2fa9e1ebf7fap+6,        // 112.74474380534949
                                 0x1.1738b4d01f0f3p+11,       // 2233.7720718962314
                                 0x1.2e83c574e9693p+12};      // 4840.235707198869
};

template <>
struct hyperbolic_tangent_constants<float> {
  static constexpr double one_from = 0x1.20597p+3;     // 13 ln 2
  static constexpr double exact_half = 0x1.193ea8p-1;  // ln(3) / 2
  static constexpr double p[] = {-0x1.f62364p-9,       // -3.831010777503252e-3
                                 -0x1.a5c58cp-1};      // -0.8237727880477905
  static constexpr double q[] = {0x1.3c5434p+1};       // 2.4713196754455566
};

/// sinh x up to 1 by a rational form, stored; x itself below 2**-26.5 (REAL*4: 2**-12).
template <format F, class V>
[[gnu::always_inline]] inline V sine_up_to_one(V x) {
  using c = hyperbolic_sine_constants<F>;
  if (less_equal(fabs(x), identity_below<F>)) return x;
  const V g = x * x;
  const V p = polynomial(g, c::p) * g;
  const V q = monic_polynomial(g, c::q);
  if constexpr (std::same_as<F, double>) return stored<double>(p * x / q + x);
  return stored<float>(x + p / q * x);
}

/// tanh y for y up to ln(3)/2 by a rational form, stored; y itself up to the threshold.
template <format F, class V>
[[gnu::always_inline]] inline V tangent_up_to_half(V y) {
  using c = hyperbolic_tangent_constants<F>;
  if (less_equal(y, identity_below<F>)) return y;
  const V g = y * y;
  return stored<F>(y + y * g * polynomial(g, c::p) / monic_polynomial(g, c::q));
}

/// Half of e**y and e**-y together, 53 bits within the range of the register.
[[gnu::always_inline]] inline reg sine_of(reg e, reg reciprocal) { return (e - reciprocal) * 0.5; }
[[gnu::always_inline]] inline reg cosine_of(reg e, reg reciprocal) {
  return (e + reciprocal) * 0.5;
}

/// sinh x: above 1 from the exponential, else, and for a NaN, by the rational form. Within one unit
/// of the last place.
template <class V, format F>
[[gnu::always_inline]] inline V hyperbolic_sine(const F& operand) {
  const V x = load<V>(operand);
  if constexpr (takes_all_operands<V>)
    if (greater(fabs(x), 1.0)) {
      const reg e = exponential(fabs(x));
      return negated_if(is_negative<F>(image(operand)), sine_of(e, 1.0 / e));
    }
  return sine_up_to_one<F>(x);
}

/// cosh x from the exponential everywhere. Within one unit of the last place.
template <format F>
[[gnu::always_inline]] inline reg hyperbolic_cosine(const F& operand) {
  const reg e = exponential(fabs(load(operand)));
  return cosine_of(e, 1.0 / e);
}

/// tanh x: 1 above 27.5 ln 2 (REAL*4: 13 ln 2) and for a NaN; above ln(3)/2 by 1 - 2 / (e**2y + 1);
/// below by a rational form, |x| itself below 2**-26.5 (2**-12). Within 1.3 units of the last place
/// (REAL*4: 0.61). The result is of the format. -0.0 gives +0.0.
template <class V, format F>
[[gnu::always_inline]] inline V hyperbolic_tangent(const F& operand) {
  using c = hyperbolic_tangent_constants<F>;
  const V x = load<V>(operand);
  const V y = fabs(x);
  V r;
  if constexpr (takes_all_operands<V>) {
    if (!less_equal(y, c::one_from)) return less(x, 0.0) ? -1.0 : 1.0;
    if (greater(y, c::exact_half))
      r = stored<F>(2.0 * (0.5 - 1.0 / (exponential(2.0 * y) + 1.0)));
    else
      r = tangent_up_to_half<F>(y);
  } else {
    r = tangent_up_to_half<F>(y);
  }
  return signed_by(is_negative<F>(image(operand)), r);
}

/// Ordinary sines and tangents: those of the rational forms.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_hyperbolic_sine(const F& x) {
  return zero_or_between(x, smallest_normal<F>, F{1});
}
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_hyperbolic_tangent(const F& x) {
  return zero_or_between(x, smallest_normal<F>,
                         static_cast<F>(hyperbolic_tangent_constants<F>::exact_half));
}

}  // namespace zrt::real
