// REAL*16 hyperbolic functions.

#include "quad/exponential.hpp"
#include "quad/hyperbolic.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

constexpr double series_limit = 0x1.999999999999ap-5;        // 0.05
constexpr double series_tolerance = 0x1.ffffffffffff9p-107;  // seven units below 2**-106
constexpr double rational_limit = 0.625;
constexpr quad saturation_limit = constant(0x40762E42FEFA39EF, 0x3D0A9C9E3B398036);  // 354.89

#include "quad/hyperbolic_tables.inc"

constexpr double bound = 0x1.9001p-2;  // rational_limit**2
static_assert(exceeds_sums(numerator, 0, bound, false) &&
              exceeds_sums(denominator, 0, bound, true));

/// x + x s/3! + x s**2/5! + ..., s = x**2, until a term falls below 2**-106 of x; at 0.05 it takes
/// eight passes. A NaN ends it at once. Parts that overlap make s what it likes: in round to
/// nearest the terms vanish or overflow within 2000 passes, under a directed rounding they may
/// stay.
template <class A>
quad sine_series(const quad& x, const quad& s) {
  constexpr double last_k = 8192.0;
  const ordinary tolerance = stored<double>(fabs(ordinary{x.hi} * series_tolerance));
  ordinary k = 1.0;
  quad term = x, sum = x;
  do {
    k = k + 2.0;
    term = A::div_by_short(A::mul(term, s), k * (k - 1.0));
    sum = A::add(sum, term);
  } while (greater(general::leading(general::sub(general::magnitude(term), tolerance)), 0.0) &&
           less(k, last_k));
  return sum;
}

/// (e + 1/e) / 2 and (e - 1/e) / 2.
template <class A>
auto half_sum(const auto& e) {
  return A::mul_by_power(A::add(e, A::div(1.0, e)), 0.5);
}
template <class A>
auto half_difference(const auto& e) {
  return A::mul_by_power(A::sub(e, A::div(1.0, e)), 0.5);
}

/// 1 - 2 / (e + 1).
template <class A>
auto tangent_of_exponential(const auto& e) {
  return A::sub(1.0, A::div(2.0, A::add(e, 1.0)));
}

/// x + x s P(s)/Q(s).
template <class A>
auto tangent_near_zero(const auto& x, const auto& s) {
  const auto c = rational<A>(s, numerator, denominator);
  return A::add(x, A::mul(x, A::mul(s, c)));
}

/// Whether the functions take the operand on doubles, and whether an exponential keeps what is
/// formed of it and its reciprocal in range.
bool is_argument(const quad& x) {
  return !on_doubles || (within<-100, 10>(x.hi) && zero_or_within<-300, -4>(x.lo));
}
bool is_moderate(const quad& e) { return is_ordinary<-100, 100>(e); }

bool is_small(const quad& x) {
  return !greater(general::leading(general::sub(general::magnitude(x), series_limit)), 0.0);
}
quad sine_of_small(const quad& x) {
  const quad s = general::mul(x, x);
  const bool is_direct = is_ordinary<-100, 100>(x) && is_ordinary<-100, -8>(s);
  return by_magnitude(is_direct, [&](auto way) {
    return sine_series<decltype(way)>(way.is_direct ? loaded(x) : x, s);
  });
}
quad sine_of_exponential(const quad& e) {
  return by_magnitude(is_moderate(e), [&](auto way) { return half_difference<decltype(way)>(e); });
}
quad cosine_of_exponential(const quad& e) {
  return by_magnitude(is_moderate(e), [&](auto way) { return half_sum<decltype(way)>(e); });
}

}  // namespace

// The sine: up to 0.05 the series, beyond it half of e**x - 1/e**x, which gives NaNs where either
// overflows and has the error of the exponential, up to 2**-96. Zeros and NaNs give zero. The
// cosine: half of the sum, and one for zeros and NaNs.

quad hyperbolic_sine(const quad& x) {
  if (!is_argument(x)) return x87::hyperbolic_sine(x);
  if (is_zero_or_nan(x)) return zero;
  return is_small(x) ? sine_of_small(x) : sine_of_exponential(exponential(x));
}
quad hyperbolic_cosine(const quad& x) {
  if (!is_argument(x)) return x87::hyperbolic_cosine(x);
  return is_zero_or_nan(x) ? one : cosine_of_exponential(exponential(x));
}
hyperbolic_sine_and_cosine both_hyperbolic(const quad& x) {
  if (!is_argument(x)) return x87::both_hyperbolic(x);
  if (is_zero_or_nan(x)) return {zero, one};
  const quad e = exponential(x);
  return {is_small(x) ? sine_of_small(x) : sine_of_exponential(e), cosine_of_exponential(e)};
}

// |x| from 0.625 on by the exponential of 2|x|. Below, the rational form, which a NaN takes too.
quad hyperbolic_tangent(const quad& x) {
  using A = general;
  if (!is_argument(x)) return x87::hyperbolic_tangent(x);
  const quad a = A::magnitude(x);
  const bool below_zero = negative(x);
  if (greater(A::leading(A::sub(a, saturation_limit)), 0.0))
    return below_zero ? quad{-1.0, 0.0} : one;
  if (greater_equal(load<ordinary>(a.hi), rational_limit)) {
    const quad e = exponential(A::mul(a, 2.0));
    const quad r = by_magnitude(is_moderate(e),
                                [&](auto way) { return tangent_of_exponential<decltype(way)>(e); });
    return below_zero ? A::neg(r) : r;
  }
  const quad s = A::mul(x, x);
  const bool is_direct = greater(load<ordinary>(s.hi), 0x1p-200) &&
                         less(load<ordinary>(s.hi), ordinary{bound}) && has_ordinary_low(s);
  return by_magnitude(is_direct, [&](auto way) {
    return tangent_near_zero<decltype(way)>(way.is_direct ? loaded(x) : x, s);
  });
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
