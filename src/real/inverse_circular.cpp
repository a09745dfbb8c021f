// ASIN, ACOS, ATAN and ATAN2 of REAL*4 and REAL*8, in radians and in degrees.
//
// Rational forms after Cody and Waite, in 53-bit arithmetic; only ATAN2 runs the arctangent
// instruction. The degree forms multiply the result as the register holds it.

#include "real/inverse_circular.hpp"

#include "entries.hpp"
#include "real/evaluation.hpp"

namespace zrt::real {
namespace {

template <format F>
struct arcsine_constants;

template <>
struct arcsine_constants<double> {
  static constexpr reg threshold = 0x1.6a09e667f3bc8p-27L;  // 2**-26.5
  static constexpr reg p[] = {-0x1.64bbdb5e61e65p-1L,       // -0.6967457344735065
                              0x1.44e1764ec3927p+3L,        // 10.152522233806463
                              -0x1.3d82ca9a6da9fp+5L,       // -39.68886299750488
                              0x1.c9aa7360ad48ap+5L,        // 57.20822787789173
                              -0x1.b5e55a83a0a62p+4L};      // -27.368494524164255
  static constexpr reg q[] = {-0x1.7d2e86ef9861fp+4L,       // -23.823859153670238
                              0x1.2de7c96591c7p+7L,         // 150.95270841030606
                              -0x1.7ddcefc56a848p+8L,       // -381.8630336175015
                              0x1.a124f101eb843p+8L,        // 417.14430248260413
                              -0x1.486c03e2b87ccp+7L};      // -164.2109671449856
  static constexpr double quarter_pi = 0x1.921fb54442d18p-1;
  static constexpr double half_pi = 0x1.921fb54442d18p+0;
};

template <>
struct arcsine_constants<float> {
  static constexpr reg threshold = 0x1p-12L;
  static constexpr reg p[] = {-0x1.0240cap-1L,  // -0.5044005513191223
                              0x1.de2cd6p-1L};  // 0.933935821056366
  static constexpr reg q[] = {-0x1.631a16p+2L,  // -5.54846715927124
                              0x1.66a1ep+2L};   // 5.603630065917969
  static constexpr float quarter_pi = 0x1.921fb6p-1f;
  static constexpr float half_pi = 0x1.921fb6p+0f;
};

/// asin y for y in [0, 1/2] as y + y g P(g) / Q(g), g = y**2; above 1/2 the same of
/// sqrt((1 - y) / 2) = sqrt(g), doubled, as pi/2 - acos. Which function, sign and range it is then
/// says the index: bit 0 the arccosine, bit 1 a negative x, bit 2 above 1/2. Within 2.2 units of
/// the last place (REAL*4: 2.4). |x| above 1 gives the library's NaN, a NaN
/// itself.
template <format F>
[[gnu::always_inline]] inline reg arcsine_kernel(const F& operand, int flag) {
  using c = arcsine_constants<F>;
  const reg x = load(operand);
  int index = flag;
  const bool negative = greater(0.0L, x);
  if (negative) index += 2;
  const reg size = negated_if(negative, x);
  reg y = size;
  if (!less_equal(size, c::threshold)) {
    reg g;
    if (!greater(size, 0.5L)) {
      g = size * size;
    } else {
      if (greater(size, 1.0L)) return quiet_nan;
      index += 4;
      g = ((0.5L - size) + 0.5L) * 0.5L;
      const reg root = fsqrt(g);
      y = stored<F>(root + root);
    }
    const reg p = polynomial(g, c::p) * g;
    const reg q = monic_polynomial(g, c::q);
    y = stored<F>(y + y * (p / q));
  }
  // The closing sums are (k - y) + k, (k + y) + k and, for a negative k, (y - |k|) - |k|.
  struct closing {
    float sign;
    F k;
  };
  static constexpr closing closings[8] = {{1.0f, 0},
                                          {-1.0f, c::quarter_pi},
                                          {-1.0f, 0},
                                          {1.0f, c::quarter_pi},
                                          {-1.0f, c::quarter_pi},
                                          {1.0f, 0},
                                          {1.0f, -c::quarter_pi},
                                          {-1.0f, c::half_pi}};
  const closing& end = closings[index];
  y = y * load(end.sign);
  constexpr unsigned without_sum = 1 << 0 | 1 << 2 | 1 << 5;
  if (without_sum >> index & 1) return y;
  const reg k = load(end.k);
  return (k + y) + k;
}

template <format F>
struct arctangent_constants;

template <>
struct arctangent_constants<double> {
  static constexpr reg degrees = 0x1.ca5dc1a63c1f8p+5L;        // 180 / pi
  static constexpr reg reduced = 0x1.126145e9ecd56p-2L;        // 2 - sqrt(3)
  static constexpr reg root_less_one = 0x1.76cf5d0b09955p-1L;  // sqrt(3) - 1
  static constexpr reg root = 0x1.bb67ae8584caap+0L;           // sqrt(3)
  static constexpr reg threshold = 0x1.6a09e667f3bc8p-27L;     // 2**-26.5
  static constexpr reg p[] = {-0x1.acd7ad9b187bdp-1L,          // -0.8375829936815006
                              -0x1.0fd3f5c8d6a63p+3L,          // -8.494624035132068
                              -0x1.4817fb9e2bccbp+4L,          // -20.505855195861653
                              -0x1.b60a651061ce2p+3L};         // -13.688768894191927
  static constexpr reg q[] = {0x1.e0c49e14ac71p+3L,            // 15.024001160028575
                              0x1.dca0a320da3d7p+5L,           // 59.57843614259735
                              0x1.58a12040b6da5p+6L,           // 86.15734959713025
                              0x1.4887cbcc495a9p+5L};          // 41.06630668257578
  static constexpr double summand[4] = {0, 0x1.0c152382d7366p-1, 0x1.921fb54442d18p+0,
                                        0x1.0c152382d7366p+0};  // pi/6, pi/2, pi/3
  static constexpr double half_pi[2] = {0x1.921fb54442d18p+0, -0x1.921fb54442d18p+0};
  static constexpr reg pi = 0x1.921fb54442d18p+1L;
};

template <>
struct arctangent_constants<float> {
  static constexpr reg degrees = 0x1.ca5dc2p+5L;        // 180 / pi
  static constexpr reg reduced = 0x1.126146p-2L;        // 2 - sqrt(3)
  static constexpr reg root_less_one = 0x1.76cf5ep-1L;  // sqrt(3) - 1
  static constexpr reg root = 0x1.bb67aep+0L;           // sqrt(3)
  static constexpr reg threshold = 0x1p-12L;
  static constexpr reg p[] = {-0x1.a10d22p-5L,   // -5.0909582525491714e-2
                              -0x1.e221ecp-2L};  // -0.4708325266838074
  static constexpr reg q[] = {0x1.6999a6p+0L};   // 1.4125007390975952
  static constexpr float summand[4] = {0, 0x1.0c1524p-1f, 0x1.921fb6p+0f,
                                       0x1.0c1524p+0f};  // pi/6, pi/2, pi/3
  static constexpr float half_pi[2] = {0x1.921fb6p+0f, -0x1.921fb6p+0f};
  static constexpr reg pi = 0x1.921fb6p+1L;
};

/// atan f by Cody and Waite: 1 / f above 1, then (f sqrt(3) - 1) / (f + sqrt(3)) above 2 - sqrt(3),
/// a rational form, and pi/6, pi/2 or pi/3. Stored behind every step. Within 2.6 units of the last
/// place (REAL*4: 1.6). Zeros and NaNs give themselves.
template <format F>
reg arctangent(const F& operand) {
  using c = arctangent_constants<F>;
  const reg x = load(operand);
  const bool negative = greater(0.0L, x);
  reg f = negated_if(negative, x);
  int n = 0;
  if (greater(f, 1.0L)) {
    f = stored<F>(1.0L / f);
    n = 2;
  }
  if (!less_equal(f, c::reduced)) {
    ++n;
    f = stored<F>((((c::root_less_one * f - 0.5L) - 0.5L) + f) / (f + c::root));
  }
  if (greater(fabs(f), c::threshold)) {
    const reg g = f * f;
    const reg p = polynomial(g, c::p) * g;
    f = stored<F>(f + (p / monic_polynomial(g, c::q)) * f);
  }
  if (n > 1) f = fchs(f);
  if (n > 0) f = stored<F>(f + load(c::summand[n]));
  return negated_if(negative, f);
}

}  // namespace

template <format F>
reg arcsine_or_arccosine(const F& x, int flag) {
  return arcsine_kernel(x, flag);
}
template reg arcsine_or_arccosine(const double& x, int flag);
template reg arcsine_or_arccosine(const float& x, int flag);

/// The angle by `fpatan` of |y / x|, which neither overflows nor underflows in the register; below
/// the x axis's left half pi less that; each stored. A zero or NaN x gives +-pi/2 by the sign of y,
/// and +0.0 where y is a zero or NaN too. Otherwise the sign bit of y is that of the result.
template <format F>
reg angle(const F& y, const F& x) {
  using c = arctangent_constants<F>;
  const reg abscissa = load(x);
  const reg ordinate = load(y);
  if (compares_equal(abscissa, 0.0L)) {
    if (compares_equal(ordinate, 0.0L)) return 0.0L;
    return load(c::half_pi[less(ordinate, 0.0L)]);  // loaded, else a product with it narrows to SSE
  }
  reg t = stored<F>(fpatan(fabs(ordinate / abscissa), 1.0L));
  if (less(abscissa, 0.0L)) t = stored<F>(c::pi - t);
  return (image(y) >> (8 * sizeof y - 1)) != 0 ? fchs(t) : t;
}
template reg angle(const double& y, const double& x);
template reg angle(const float& y, const float& x);

namespace {

/// The degree forms. Those of the REAL*4 arcsine and arccosine have the factor of REAL*8.
constexpr reg degrees = arctangent_constants<double>::degrees;

template <format F>
reg in_degrees(reg radians) {
  return radians * arctangent_constants<F>::degrees;
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dasin)(real8 x) { return returned<double>(arcsine_kernel(x, 0)); }
ZRT_VALUE(real8_result, dacos)(real8 x) { return returned<double>(arcsine_kernel(x, 1)); }
ZRT_VALUE(real4_result, asin)(real4 x) { return returned<float>(arcsine_kernel(x, 0)); }
ZRT_VALUE(real4_result, acos)(real4 x) { return returned<float>(arcsine_kernel(x, 1)); }

ZRT_VALUE(real8_result, asinacos)(real8 x, std::int32_t flag) {
  return returned<double>(arcsine_or_arccosine<double>(x, flag & 1));
}
ZRT_VALUE(real4_result, asinfacosf)(real4 x, std::int32_t flag) {
  return returned<float>(arcsine_or_arccosine<float>(x, flag & 1));
}

ZRT_VALUE(real8_result, dasind)(real8 x) {
  return returned<double>(arcsine_kernel(x, 0) * degrees);
}
ZRT_VALUE(real8_result, dacosd)(real8 x) {
  return returned<double>(arcsine_kernel(x, 1) * degrees);
}
ZRT_VALUE(real4_result, asind)(real4 x) { return returned<float>(arcsine_kernel(x, 0) * degrees); }
ZRT_VALUE(real4_result, acosd)(real4 x) { return returned<float>(arcsine_kernel(x, 1) * degrees); }

ZRT_VALUE(real8_result, datan)(real8 x) { return returned<double>(arctangent(x)); }
ZRT_VALUE(real4_result, atan)(real4 x) { return returned<float>(arctangent(x)); }
ZRT_VALUE(real8_result, datand)(real8 x) {
  return returned<double>(in_degrees<double>(arctangent(x)));
}
ZRT_VALUE(real4_result, atand)(real4 x) {
  return returned<float>(in_degrees<float>(arctangent(x)));
}

ZRT_VALUE(real8_result, datan2)(real8 y, real8 x) { return returned<double>(angle<double>(y, x)); }
ZRT_VALUE(real4_result, atan2)(real4 y, real4 x) { return returned<float>(angle<float>(y, x)); }
ZRT_VALUE(real8_result, datan2d)(real8 y, real8 x) {
  return returned<double>(in_degrees<double>(angle<double>(y, x)));
}
ZRT_VALUE(real4_result, atan2d)(real4 y, real4 x) {
  return returned<float>(in_degrees<float>(angle<float>(y, x)));
}
