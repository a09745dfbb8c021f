// The REAL*16 exponential.

#include "frame/sections.hpp"
#include "quad/exponential.hpp"
#include "quad/exponential_steps.hpp"
#include "quad/guards.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
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
