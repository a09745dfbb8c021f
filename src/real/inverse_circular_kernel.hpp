#pragma once

// Kernels of ASIN, ACOS and ATAN of REAL*4 and REAL*8: rational forms after Cody and Waite, in
// 53-bit arithmetic.

#include <limits>

#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

template <format F>
struct arcsine_constants;

template <>
struct arcsine_constants<double> {
  static constexpr double p[] = {-0x1.64bbdb5e61e65p-1,   // -0.6967457344735065
                                 0x1.44e1764ec3927p+3,    // 10.152522233806463
                                 -0x1.3d82ca9a6da9fp+5,   // -39.68886299750488
                                 0x1.c9aa7360ad48ap+5,    // 57.20822787789173
                                 -0x1.b5e55a83a0a62p+4};  // -27.368494524164255
  static constexpr double q[] = {-0x1.7d2e86ef9861fp+4,   // -23.823859153670238
                                 0x1.2de7c96591c7p+7,     // 150.95270841030606
                                 -0x1.7ddcefc56a848p+8,   // -381.8630336175015
                                 0x1.a124f101eb843p+8,    // 417.14430248260413
                                 -0x1.486c03e2b87ccp+7};  // -164.2109671449856
  static constexpr double quarter_pi = 0x1.921fb54442d18p-1;
  static constexpr double half_pi = 0x1.921fb54442d18p+0;
};

template <>
struct arcsine_constants<float> {
  static constexpr double p[] = {-0x1.0240cap-1,  // -0.5044005513191223
                                 0x1.de2cd6p-1};  // 0.933935821056366
  static constexpr double q[] = {-0x1.631a16p+2,  // -5.54846715927124
                                 0x1.66a1ep+2};   // 5.603630065917969
  static constexpr float quarter_pi = 0x1.921fb6p-1f;
  static constexpr float half_pi = 0x1.921fb6p+0f;
};

/// y + y g P(g) / Q(g), stored.
template <format F, class V>
[[gnu::always_inline]] inline V arcsine_form(V y, V g) {
  const V p = polynomial(g, arcsine_constants<F>::p) * g;
  const V q = monic_polynomial(g, arcsine_constants<F>::q);
  return stored<F>(y + y * (p / q));
}

/// asin y for y in [0, 1/2] as y + y g P(g) / Q(g), g = y**2; above 1/2 the same of
/// sqrt((1 - y) / 2) = sqrt(g), doubled, as pi/2 - acos. Which function, sign and range it is then
/// says the index: bit 0 the arccosine, bit 1 a negative x, bit 2 above 1/2. Within 2.2 units of
/// the last place (REAL*4: 2.4). |x| above 1 gives the library's NaN, a NaN
/// itself.
template <class V, format F>
[[gnu::always_inline]] inline V arcsine(const F& operand, int flag) {
  using c = arcsine_constants<F>;
  const V x = load<V>(operand);
  int index = flag;
  const bool negative = less(x, 0.0);
  if (negative) index += 2;
  const V size = negated_if(negative, x);
  V y = size;
  if (!less_equal(size, identity_below<F>)) {
    V g;
    if (!greater(size, 0.5)) {
      g = size * size;
    } else {
      if (greater(size, 1.0)) return static_cast<V>(quiet_nan);
      index += 4;
      g = ((0.5 - size) + 0.5) * 0.5;
      const V root = fsqrt(g);
      y = stored<F>(root + root);
    }
    y = arcsine_form<F>(y, g);
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
  y = y * load<V>(end.sign);
  constexpr unsigned without_sum = 1 << 0 | 1 << 2 | 1 << 5;
  if (without_sum >> index & 1) return y;
  const V k = load<V>(end.k);
  return (k + y) + k;
}

/// Ordinary: |x| up to 1; of what is near an end, (1 - |x|) / 2 is zero or at least 2**-55.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_arcsine(const F& x) {
  return zero_or_between(x, smallest_normal<F>, F{1} + std::numeric_limits<F>::epsilon());
}

#if defined(__x86_64__)
/// The root of (1 - s) / 2 for s in [1/2, 1) from REAL*4: the difference is one of 24 bits, and to
/// round the root to 53 bits ahead of 24 changes nothing in any mode.
[[gnu::always_inline]] inline float stored_double_root(float g) {
  const float root = fsqrt(g);
  return root + root;
}
[[gnu::always_inline]] inline double stored_double_root(double g) {
  const double root = fsqrt(g);
  return root + root;
}

/// y + y g P(g) / Q(g), stored.
template <format F>
[[gnu::always_inline]] inline F arcsine_series(double y, double g) {
  using c = arcsine_constants<F>;
  const double p = polynomial(g, c::p) * g;
  return static_cast<F>(y + y * (p / monic_polynomial(g, c::q)));
}

/// The same for |x| between the threshold and 1, the closing sums each in its place; what is no
/// sum there is one with zeros here, or none. The result before it is rounded to F.
template <bool cosine, format F>
[[gnu::always_inline]] inline bool quick_arcsine(const F& x, double& result) {
  using c = arcsine_constants<F>;
  if (!size_between(x, 2 * static_cast<F>(identity_below<F>), F{1})) return false;
  const F size = without_sign(x);
  const __m128i sign = packed(x) & sign_image<F>;
  const auto signed_like_x = [&](F y) { return load<double>(unpacked<F>(packed(y) ^ sign)); };
  if (size_image(x) <= size_image(F{0.5})) {
    const double y = load<double>(size);
    const F angle = arcsine_series<F>(y, y * y);
    result = signed_like_x(angle);
    if constexpr (cosine) result = (c::quarter_pi - result) + c::quarter_pi;
    return true;
  }
  const F g = ((F{0.5} - size) + F{0.5}) * F{0.5};
  const F angle = arcsine_series<F>(load<double>(stored_double_root(g)), load<double>(g));
  if constexpr (cosine) {
    result = load<double>(angle);
    if (sign_bit(x)) result = (c::half_pi - result) + c::half_pi;
  } else {
    const double k = signed_like_x(c::quarter_pi);
    result = (k - signed_like_x(angle)) + k;
  }
  return true;
}
#endif

template <format F>
struct arctangent_constants;

template <>
struct arctangent_constants<double> {
  static constexpr double degrees = 0x1.ca5dc1a63c1f8p+5;        // 180 / pi
  static constexpr double reduced = 0x1.126145e9ecd56p-2;        // 2 - sqrt(3)
  static constexpr double root_less_one = 0x1.76cf5d0b09955p-1;  // sqrt(3) - 1
  static constexpr double root = 0x1.bb67ae8584caap+0;           // sqrt(3)
  static constexpr double p[] = {-0x1.acd7ad9b187bdp-1,          // -0.8375829936815006
                                 -0x1.0fd3f5c8d6a63p+3,          // -8.494624035132068
                                 -0x1.4817fb9e2bccbp+4,          // -20.505855195861653
                                 -0x1.b60a651061ce2p+3};         // -13.688768894191927
  static constexpr double q[] = {0x1.e0c49e14ac71p+3,            // 15.024001160028575
                                 0x1.dca0a320da3d7p+5,           // 59.57843614259735
                                 0x1.58a12040b6da5p+6,           // 86.15734959713025
                                 0x1.4887cbcc495a9p+5};          // 41.06630668257578
  static constexpr double summand[4] = {0, 0x1.0c152382d7366p-1, 0x1.921fb54442d18p+0,
                                        0x1.0c152382d7366p+0};  // pi/6, pi/2, pi/3
  static constexpr double half_pi[2] = {0x1.921fb54442d18p+0, -0x1.921fb54442d18p+0};
  static constexpr double pi = 0x1.921fb54442d18p+1;
};

template <>
struct arctangent_constants<float> {
  static constexpr double degrees = 0x1.ca5dc2p+5;        // 180 / pi
  static constexpr double reduced = 0x1.126146p-2;        // 2 - sqrt(3)
  static constexpr double root_less_one = 0x1.76cf5ep-1;  // sqrt(3) - 1
  static constexpr double root = 0x1.bb67aep+0;           // sqrt(3)
  static constexpr double p[] = {-0x1.a10d22p-5,          // -5.0909582525491714e-2
                                 -0x1.e221ecp-2};         // -0.4708325266838074
  static constexpr double q[] = {0x1.6999a6p+0};          // 1.4125007390975952
  static constexpr float summand[4] = {0, 0x1.0c1524p-1f, 0x1.921fb6p+0f,
                                       0x1.0c1524p+0f};  // pi/6, pi/2, pi/3
  static constexpr float half_pi[2] = {0x1.921fb6p+0f, -0x1.921fb6p+0f};
  static constexpr double pi = 0x1.921fb6p+1;
};

/// tan(atan f - pi/6), stored, of an f above 2 - sqrt(3).
template <format F, class V>
[[gnu::always_inline]] inline V less_sixth_of_pi(V f) {
  using c = arctangent_constants<F>;
  return stored<F>((((c::root_less_one * f - 0.5) - 0.5) + f) / (f + c::root));
}
/// f + f g P(g) / Q(g), stored.
template <format F, class V>
[[gnu::always_inline]] inline V arctangent_form(V f) {
  const V g = f * f;
  const V p = polynomial(g, arctangent_constants<F>::p) * g;
  return stored<F>(f + (p / monic_polynomial(g, arctangent_constants<F>::q)) * f);
}

/// atan f by Cody and Waite: 1 / f above 1, then (f sqrt(3) - 1) / (f + sqrt(3)) above 2 - sqrt(3),
/// a rational form, and pi/6, pi/2 or pi/3. Stored behind every step. Within 2.6 units of the last
/// place (REAL*4: 1.6). Zeros and NaNs give themselves.
template <class V, format F>
[[gnu::always_inline]] inline V arctangent(const F& operand) {
  using c = arctangent_constants<F>;
  const V x = load<V>(operand);
  const bool negative = less(x, 0.0);
  V f = negated_if(negative, x);
  int n = 0;
  if (greater(f, 1.0)) {
    f = stored<F>(1.0 / f);
    n = 2;
  }
  if (!less_equal(f, c::reduced)) {
    ++n;
    f = less_sixth_of_pi<F>(f);
  }
  if (greater(fabs(f), identity_below<F>)) f = arctangent_form<F>(f);
  if (n > 1) f = fchs(f);
  if (n > 0) f = stored<F>(f + load<V>(c::summand[n]));
  return negated_if(negative, f);
}

#if defined(__x86_64__)
/// The same in REAL*4 with every stored value a float: rounded to 53 bits first, quotients of two
/// floats and the closing sum, which 53 bits hold, come out the same in every mode.
[[gnu::always_inline]] inline bool quick_arctangent(const float& x, float& result) {
  using c = arctangent_constants<float>;
  constexpr float threshold = identity_below<float>;
  if (!size_between(x, 2 * threshold, 0.5f / threshold)) return false;
  float f = without_sign(x);
  int n = 0;
  if (f > 1.0f) {
    f = 1.0f / f;
    n = 2;
  }
  if (f > float{c::reduced}) {
    const double a = load<double>(f);
    ++n;
    f = static_cast<float>((((c::root_less_one * a - 0.5) - 0.5) + a) / (a + c::root));
    if (!(size_image(f) > size_image(threshold))) return false;
  }
  const double a = load<double>(f), g = a * a;
  const double p = polynomial(g, c::p) * g;
  const auto angle = static_cast<float>(a + (p / monic_polynomial(g, c::q)) * a);
  static constexpr __m128i signs[4] = {{0, 0}, {0, 0}, sign_image<float>, sign_image<float>};
  const float sum = unpacked<float>(packed(angle) ^ signs[n]) + c::summand[n];
  result = unpacked<float>(packed(sum) ^ (packed(x) & sign_image<float>));
  return true;
}
#endif

/// Ordinary: the reciprocal is normal too.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_arctangent(const F& x) {
  return zero_or_between(x, smallest_normal<F>, F{1} / smallest_normal<F>);
}

}  // namespace zrt::real
