// REAL*16 hyperbolic functions.

#include "quad/hyperbolic.hpp"

#include "entries.hpp"
#include "quad/exponential.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
namespace {

constexpr reg series_limit = 0x1.999999999999ap-5L;        // 0.05
constexpr reg series_tolerance = 0x1.ffffffffffff9p-107L;  // seven units below 2**-106
constexpr reg rational_limit = 0.625L;
constexpr quad saturation_limit = constant(0x40762E42FEFA39EF, 0x3D0A9C9E3B398036);  // 354.89

// tanh x = x + x s P(s)/Q(s) in s = x**2, for |x| < 0.625; Q monic.
constexpr quad numerator[] = {
    constant(0xBEDB496F54584492, 0xBB7482C928F97676),  // -6.505693197948351e-06
    constant(0xBFEF5F8168559A35, 0xBC7CA6CC3E37D9C0),  // -0.980408386018843
    constant(0xC07F9875D11FF0F2, 0x3D15393FBD3AEE58),  // -505.52876389004734
    constant(0xC0F1D72C57FC2FC4, 0x3D911950E23D5158),  // -73074.77148073824
    constant(0xC14AF1AB4B0808D0, 0xBDE1052333DEBEEC),  // -3531606.586182691
    constant(0xC185B3E15BB10114, 0x3E2928816C5EEBCE),  // -45513771.46142784
};
constexpr quad denominator[] = {
    constant(0x4080ABE4797D1108, 0xBD1D3C70E5C91EA4),  // 533.4865598460028
    constant(0x40F3AC8C18E14911, 0xBD93129CE1CEF5E8),  // 80584.75607422391
    constant(0x415002B46185E041, 0x3DF22C0B6DF3DA30),  // 4197073.523796142
    constant(0x418F185E8C191C8B, 0x3E28338E7E14A8A0),  // 65211345.51226147
    constant(0x41A046E904C4C0CF, 0xBE42DE61114730D9),  // 136541314.3842835
};

/// x + x**3/3! + x**5/5! + ... until a term falls below 2**-106 of x; at 0.05 it takes eight
/// passes. A NaN ends it at once.
quad sine_series(const quad& x) {
  const quad s = mul(x, x);
  const reg tolerance = stored<double>(fabs(load(x.hi) * series_tolerance));
  reg k = 1.0L;
  quad term = x, sum = x;
  do {
    k = k + 2.0L;
    term = div(mul(term, s), k * (k - 1.0L));
    sum = add(sum, term);
  } while (greater(leading(sub(magnitude(term), tolerance)), 0.0L));
  return sum;
}

/// |x| from 0.625 on: 1 - 2 / (e**2|x| + 1). Below, the rational form, which a NaN takes too.
quad hyperbolic_tangent(const quad& x) {
  const quad a = magnitude(x);
  const bool below_zero = negative(x);
  if (greater(leading(sub(a, saturation_limit)), 0.0L)) return below_zero ? quad{-1.0, 0.0} : one;
  if (greater_equal(load(a.hi), rational_limit)) {
    const quad e = exponential(mul(a, 2.0L));
    const quad r = sub(1.0L, div(2.0L, add(e, 1.0L)));
    return below_zero ? neg(r) : r;
  }
  const quad s = mul(x, x);
  const quad c = rational<by_store>(s, numerator, denominator);
  return add(x, mul(x, mul(s, c)));
}

}  // namespace

// Zeros and NaNs give zero. Up to 0.05 the series, beyond it half of e**x - 1/e**x, which gives
// NaNs where either overflows and has the error of the exponential, up to 2**-96.
quad hyperbolic_sine(const quad& x) {
  if (is_zero_or_nan(x)) return zero;
  if (!greater(leading(sub(magnitude(x), series_limit)), 0.0L)) return sine_series(x);
  const quad e = exponential(x);
  return mul(sub(e, div(1.0L, e)), 0.5L);
}

// Zeros and NaNs give one; as for the sine, e**x and its reciprocal.
quad hyperbolic_cosine(const quad& x) {
  if (is_zero_or_nan(x)) return one;
  const quad e = exponential(x);
  return mul(add(e, div(1.0L, e)), 0.5L);
}

}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, sinhl)(quad* result, quad x) {
  *result = hyperbolic_sine(x);
  return result;
}
ZRT_VALUE(quad*, coshl)(quad* result, quad x) {
  *result = hyperbolic_cosine(x);
  return result;
}
ZRT_VALUE(quad*, tanhl)(quad* result, quad x) {
  *result = hyperbolic_tangent(x);
  return result;
}
