// The REAL*16 exponential.

#include "frame/sections.hpp"
#include "quad/exponential.hpp"
#include "quad/guards.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

/// ln 2, its lo a few units away from the rounded tail.
constexpr quad ln_2 = constant(0x3FE62E42FEFA39EF, 0x3C7ABC9E3B39803C);

/// 2**f for |f| <= 1/2: with r = f ln 2 and h = r/2, e**h = 1 + 2w by the [9/9] Pade approximant
/// (B + A h) / (B - A h), good to 2**-120, squared as 1 + 4 w (1 + w), so that the 1 joins only in
/// the last sum.
template <class A>
auto power_of_two(const auto& f) {
  const auto r = A::mul(f, ln_2);
  const auto h = A::scaled_by(r, 0.5);
  const auto s = A::mul(h, h);

  auto p = A::add(s, 3960.0);
  auto b = A::add(A::mul_by_short(s, 90.0), 110880.0);
  p = A::add(A::mul(p, s), 2162160.0);
  b = A::add(A::mul(b, s), 30270240.0);
  p = A::add(A::mul(p, s), 302702400.0);
  b = A::add(A::mul(b, s), 2075673600.0);
  p = A::add(A::mul(p, s), 8821612800.0);
  b = A::add(A::mul(b, s), 17643225600.0);
  const auto odd = A::mul(h, p);

  const auto w = A::div(odd, A::sub(b, odd));
  const auto square = A::mul(w, A::add(w, 1.0));
  return A::add(A::scaled_by(square, 4.0), 1.0);
}

}  // namespace

// x = (n + f) ln 2 with n whole and |f| <= 1/2. The error is that of ln 2 times n: 2**-106 below
// 0.1, 2**-96 at the ends of the range. Overflow gives an infinite hi, underflow zeros, NaNs and
// infinities give NaNs.
quad exponential(const quad& x) {
  if (on_doubles && !is_ordinary<-100, 10>(x)) return x87::exponential(x);
  const quad t = general::div(x, ln_2);
  const ordinary quotient = load<ordinary>(t.hi);
  const ordinary v = less(quotient, 0.0) ? quotient - 0.5 : quotient + 0.5;
  // Without a 32-bit n the result is beyond every range. An infinite quotient counts so, a NaN goes
  // on.
  if (greater_equal(v, 2147483648.0)) return plus_infinity;
  if (less_equal(v, -2147483649.0)) return zero;
  const std::int32_t n = truncated_to_int32(v);
  const quad f = general::sub(t, load_integer<ordinary>(n));
  const bool tiny = less(fabs(load<ordinary>(f.hi)), 0x1p-100);
  return general::scaled(by_magnitude(!tiny && has_ordinary_low(f),
                                      [&](auto way) { return power_of_two<decltype(way)>(f); }),
                         n);
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
