// SINH, COSH and TANH of REAL*4 and REAL*8.
//
// Large operands go through e**y as an 80-bit value, small ones of sine and tangent through
// rational forms after Cody and Waite in 53-bit arithmetic. Nothing tests for overflow: the
// register's exponent carries large results. An infinite operand of sine and cosine gives the
// default NaN.

#include "real/hyperbolic.hpp"

#include "entries.hpp"
#include "frame/sections.hpp"
#include "real/evaluation.hpp"

namespace zrt::real {
namespace {

template <format F>
struct hyperbolic_sine_constants;

template <>
struct hyperbolic_sine_constants<double> {
  static constexpr reg threshold = 0x1.6a09e667f3bc8p-27L;  // 2**-26.5
  static constexpr reg p[] = {-0x1.944e7b86fc81bp-1L,       // -0.789661274173571
                              -0x1.478416385be4ap+7L,       // -163.7579820263075
                              -0x1.695c2b694149p+13L,       // -11563.521196851769
                              -0x1.5791356533419p+18L};     // -351812.8343017712
  static constexpr reg q[] = {-0x1.15bc381c97ff2p+8L,       // -277.735231196507
                              0x1.1a85723b65ec7p+15L,       // 36162.72310942184
                              -0x1.01ace80be6713p+21L};     // -2110877.0058106272

  static reg closed(reg x, reg p_of_g, reg q_of_g) {
    return stored<double>(p_of_g * x / q_of_g + x);
  }
};

template <>
struct hyperbolic_sine_constants<float> {
  static constexpr reg threshold = 0x1p-12L;
  static constexpr reg p[] = {-0x1.85cd84p-3L,   // -0.19033339619636536
                              -0x1.c8d3ep+2L};   // -7.137931823730469
  static constexpr reg q[] = {-0x1.569f26p+5L};  // -42.82770919799805

  static reg closed(reg x, reg p_of_g, reg q_of_g) {
    return stored<float>(x + p_of_g / q_of_g * x);
  }
};

template <format F>
struct hyperbolic_tangent_constants;

template <>
struct hyperbolic_tangent_constants<double> {
  static constexpr reg one_from = 0x1.30fc1931f09cbp+4L;    // 27.5 ln 2
  static constexpr reg exact_half = 0x1.193ea7aad030bp-1L;  // ln(3) / 2
  static constexpr reg threshold = 0x1.6a09e667f3bc8p-27L;  // 2**-26.5
  static constexpr reg p[] = {-0x1.edc28cefba77fp-1L,       // -0.9643749277722548
                              -0x1.8ce75a1ba5cccp+6L,       // -99.22592967223608
                              -0x1.935a5c9be1e18p+10L};     // -1613.4119023996227
  static constexpr reg q[] = {0x1.c2fa9e1ebf7fap+6L,        // 112.74474380534949
                              0x1.1738b4d01f0f3p+11L,       // 2233.7720718962314
                              0x1.2e83c574e9693p+12L};      // 4840.235707198869
};

template <>
struct hyperbolic_tangent_constants<float> {
  static constexpr reg one_from = 0x1.20597p+3L;     // 13 ln 2
  static constexpr reg exact_half = 0x1.193ea8p-1L;  // ln(3) / 2
  static constexpr reg threshold = 0x1p-12L;
  static constexpr reg p[] = {-0x1.f62364p-9L,   // -3.831010777503252e-3
                              -0x1.a5c58cp-1L};  // -0.8237727880477905
  static constexpr reg q[] = {0x1.3c5434p+1L};   // 2.4713196754455566
};

/// tanh x: 1 above 27.5 ln 2 (REAL*4: 13 ln 2) and for a NaN; above ln(3)/2 by 1 - 2 / (e**2y + 1);
/// below by a rational form, |x| itself below 2**-26.5 (2**-12). Within 1.3 units of the last place
/// (REAL*4: 0.61). The result is of the format. -0.0 gives +0.0.
template <format F>
reg hyperbolic_tangent(const F& operand) {
  using c = hyperbolic_tangent_constants<F>;
  const reg x = load(operand);
  const reg y = fabs(x);
  reg r;
  if (!less_equal(y, c::one_from)) {
    r = 1.0L;
  } else if (greater(y, c::exact_half)) {
    r = stored<F>(2.0L * (0.5L - 1.0L / (exponential(2.0L * y) + 1.0L)));
  } else if (less_equal(y, c::threshold)) {
    r = y;
  } else {
    const reg g = y * y;
    r = stored<F>(y + y * g * polynomial(g, c::p) / monic_polynomial(g, c::q));
  }
  return negated_if(greater(0.0L, x), r);
}

/// sinh x up to 1: by a rational form, stored; x itself below 2**-26.5 (REAL*4: 2**-12).
template <format F>
reg sine_up_to_one(reg x) {
  using c = hyperbolic_sine_constants<F>;
  if (less_equal(fabs(x), c::threshold)) return x;
  const reg g = x * x;
  return c::closed(x, polynomial(g, c::p) * g, monic_polynomial(g, c::q));
}

/// Half of e**y and e**-y together, 53 bits within the range of the register.
reg sine_of(reg e, reg reciprocal) { return (e - reciprocal) * 0.5L; }
reg cosine_of(reg e, reg reciprocal) { return (e + reciprocal) * 0.5L; }

/// sinh x: above 1 from the exponential, else, and for a NaN, by the rational form. Within one unit
/// of the last place.
template <format F>
reg hyperbolic_sine(const F& operand) {
  const reg x = load(operand);
  if (!greater(fabs(x), 1.0L)) return sine_up_to_one<F>(x);
  const reg e = exponential(fabs(x));
  return negated_if(greater(0.0L, x), sine_of(e, 1.0L / e));
}

/// cosh x from the exponential everywhere. Within one unit of the last place.
template <format F>
reg hyperbolic_cosine(const F& operand) {
  const reg e = exponential(fabs(load(operand)));
  return cosine_of(e, 1.0L / e);
}

}  // namespace

template <format F>
hyperbolic_values hyperbolic_pair(const F& operand) {
  const reg x = load(operand);
  const reg e = exponential(fabs(x));
  const reg reciprocal = 1.0L / e;
  const reg sine = greater(fabs(x), 1.0L) ? negated_if(greater(0.0L, x), sine_of(e, reciprocal))
                                          : sine_up_to_one<F>(x);
  return {sine, cosine_of(e, reciprocal)};
}
template hyperbolic_values hyperbolic_pair(const double& x);
template hyperbolic_values hyperbolic_pair(const float& x);

}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsinh)(real8 x) { return returned<double>(hyperbolic_sine<double>(x)); }
ZRT_VALUE(real8_result, dcosh)(real8 x) { return returned<double>(hyperbolic_cosine<double>(x)); }
ZRT_VALUE(real8_result, dtanh)(real8 x) { return returned<double>(hyperbolic_tangent<double>(x)); }
ZRT_VALUE(real4_result, sinh)(real4 x) { return returned<float>(hyperbolic_sine<float>(x)); }
ZRT_VALUE(real4_result, cosh)(real4 x) { return returned<float>(hyperbolic_cosine<float>(x)); }
ZRT_VALUE(real4_result, tanh)(real4 x) { return returned<float>(hyperbolic_tangent<float>(x)); }
