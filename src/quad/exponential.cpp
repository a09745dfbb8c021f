// The REAL*16 exponential.

#include "quad/exponential.hpp"

#include "entries.hpp"
#include "frame/sections.hpp"
#include "quad/quad.hpp"

namespace zrt::quads {
namespace {

/// ln 2, its lo a few units away from the rounded tail.
constexpr quad ln_2 = constant(0x3FE62E42FEFA39EF, 0x3C7ABC9E3B39803C);

constexpr quad overflowed = constant(0x7FF0000000000000, 0);

/// 2**f for |f| <= 1/2: with r = f ln 2 and h = r/2, e**h = 1 + 2w by the [9/9] Pade approximant
/// (B + A h) / (B - A h), good to 2**-120, squared as 1 + 4 w (1 + w), so that the 1 joins only in
/// the last sum.
template <class Result>
quad power_of_two(const quad& f) {
  const quad r = mul<Result>(f, ln_2);
  const quad h = scaled_by<Result>(r, 0.5L);
  const quad s = mul<Result>(h, h);

  quad p = add<Result>(s, 3960.0L);
  quad b = add<Result>(mul_by_short<Result>(s, 90.0L), 110880.0L);
  p = add<Result>(mul<Result>(p, s), 2162160.0L);
  b = add<Result>(mul<Result>(b, s), 30270240.0L);
  p = add<Result>(mul<Result>(p, s), 302702400.0L);
  b = add<Result>(mul<Result>(b, s), 2075673600.0L);
  p = add<Result>(mul<Result>(p, s), 8821612800.0L);
  b = add<Result>(mul<Result>(b, s), 17643225600.0L);
  const quad odd = mul<Result>(h, p);

  const quad w = div<Result>(odd, sub<Result>(b, odd));
  const quad square = mul<Result>(w, add<Result>(w, 1.0L));
  return add<Result>(scaled_by<Result>(square, 4.0L), 1.0L);
}

}  // namespace

// x = (n + f) ln 2 with n whole and |f| <= 1/2. The error is that of ln 2 times n: 2**-106 below
// 0.1, 2**-96 at the ends of the range. Overflow gives an infinite hi, underflow zeros, NaNs and
// infinities give NaNs.
quad exponential(const quad& x) {
  const quad t = div(x, ln_2);
  const reg quotient = load(t.hi);
  const reg v = less(quotient, 0.0L) ? quotient - 0.5L : quotient + 0.5L;
  // Without a 32-bit n the result is beyond every range. An infinite quotient counts so, a NaN goes
  // on.
  if (greater_equal(v, 2147483648.0L)) return overflowed;
  if (less_equal(v, -2147483649.0L)) return zero;
  const std::int32_t n = truncated_to_int32(v);
  const quad f = sub(t, load_integer(n));
  const bool tiny = less(fabs(load(f.hi)), 0x1p-100L);
  return scaled(tiny ? power_of_two<by_store>(f) : power_of_two<in_register>(f), n);
}

}  // namespace zrt::quads

using namespace zrt;

ZRT_VALUE(quad*, expl)(quad* result, quad x) {
  *result = quads::exponential(x);
  return result;
}
