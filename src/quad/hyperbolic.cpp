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

#include "quad/hyperbolic_tables.inc"

constexpr double bound = 0x1.9001p-2;  // rational_limit**2
static_assert(exceeds_sums(numerator, 0, bound, false) &&
              exceeds_sums(denominator, 0, bound, true));

/// x + x s/3! + x s**2/5! + ..., s = x**2, until a term falls below 2**-106 of x; at 0.05 it takes
/// eight passes. A NaN ends it at once.
template <class Result>
quad sine_series(const quad& x, const quad& s) {
  const reg tolerance = stored<double>(fabs(reg{x.hi} * series_tolerance));
  reg k = 1.0L;
  quad term = x, sum = x;
  do {
    k = k + 2.0L;
    term = div_by_short<Result>(mul<Result>(term, s), k * (k - 1.0L));
    sum = add<Result>(sum, term);
  } while (greater(leading(sub(magnitude(term), tolerance)), 0.0L));
  return sum;
}

/// Whether a value keeps the results of a few operations on it within the range of in_register.
bool is_ordinary(const quad& a) {
  const reg size = fabs(load(a.hi));
  return greater(size, 0x1p-100L) && less(size, 0x1p100L);
}

/// (e + 1/e) / 2 and (e - 1/e) / 2.
template <class Result>
quad half_sum(const quad& e) {
  return mul_by_power<Result>(add<Result>(e, div<Result>(1.0L, e)), 0.5L);
}
template <class Result>
quad half_difference(const quad& e) {
  return mul_by_power<Result>(sub<Result>(e, div<Result>(1.0L, e)), 0.5L);
}

/// 1 - 2 / (e + 1).
template <class Result>
quad tangent_of_exponential(const quad& e) {
  return sub<Result>(1.0L, div<Result>(2.0L, add<Result>(e, 1.0L)));
}

/// x + x s P(s)/Q(s).
template <class Result>
quad tangent_near_zero(const quad& x, const quad& s) {
  const quad c = rational<Result>(s, numerator, denominator);
  return add<Result>(x, mul<Result>(x, mul<Result>(s, c)));
}

/// |x| from 0.625 on by the exponential of 2|x|. Below, the rational form, which a NaN takes too.
quad hyperbolic_tangent(const quad& x) {
  const quad a = magnitude(x);
  const bool below_zero = negative(x);
  if (greater(leading(sub(a, saturation_limit)), 0.0L)) return below_zero ? quad{-1.0, 0.0} : one;
  if (greater_equal(load(a.hi), rational_limit)) {
    const quad e = exponential(mul(a, 2.0L));
    const quad r = is_ordinary(e) ? tangent_of_exponential<in_register>(e)
                                  : tangent_of_exponential<by_store>(e);
    return below_zero ? neg(r) : r;
  }
  const quad s = mul(x, x);
  return greater(load(s.hi), 0x1p-200L) && less(load(s.hi), reg{bound})
             ? tangent_near_zero<in_register>(loaded(x), s)
             : tangent_near_zero<by_store>(x, s);
}

bool is_small(const quad& x) { return !greater(leading(sub(magnitude(x), series_limit)), 0.0L); }
quad sine_of_small(const quad& x) {
  const quad s = mul(x, x);
  return is_ordinary(x) && is_ordinary(s) && less(load(s.hi), 0x1p-8L)
             ? sine_series<in_register>(loaded(x), s)
             : sine_series<by_store>(x, s);
}
quad sine_of_exponential(const quad& e) {
  return is_ordinary(e) ? half_difference<in_register>(e) : half_difference<by_store>(e);
}
quad cosine_of_exponential(const quad& e) {
  return is_ordinary(e) ? half_sum<in_register>(e) : half_sum<by_store>(e);
}

}  // namespace

// The sine: up to 0.05 the series, beyond it half of e**x - 1/e**x, which gives NaNs where either
// overflows and has the error of the exponential, up to 2**-96. Zeros and NaNs give zero. The
// cosine: half of the sum, and one for zeros and NaNs.

quad hyperbolic_sine(const quad& x) {
  if (is_zero_or_nan(x)) return zero;
  return is_small(x) ? sine_of_small(x) : sine_of_exponential(exponential(x));
}
quad hyperbolic_cosine(const quad& x) {
  return is_zero_or_nan(x) ? one : cosine_of_exponential(exponential(x));
}
hyperbolic_sine_and_cosine::hyperbolic_sine_and_cosine(const quad& x) {
  if (is_zero_or_nan(x)) {
    sine = zero;
    cosine = one;
    return;
  }
  const quad e = exponential(x);
  sine = is_small(x) ? sine_of_small(x) : sine_of_exponential(e);
  cosine = cosine_of_exponential(e);
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
