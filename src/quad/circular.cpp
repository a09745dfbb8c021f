// REAL*16 circular functions.

#include "quad/circular.hpp"

#include "entries.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
namespace {

constexpr quad pi_40th = constant(0x3FB41B2F769CF0E0, 0x3C4C3D09EB53C670);     // pi/40
constexpr quad one_degree = constant(0x3F91DF46A2529D39, 0x3C15C1D8BECDD28C);  // pi/180
/// What the tangent gives where the cosine is zero.
constexpr quad pole = constant(0x7FEFFFFFFFFFFFFB, 0);

constexpr reg series_end = 0x1.4484bfeebc2ap-100L;  // 1e-30
constexpr reg quad_limit = 0x1.203af9ee75616p-50L;  // 1e-15: smaller terms need no low part

// sin(k pi/40), good to 6.1e-32 as sums; the split is not the nearest one in every row.
constexpr quad sines[] = {
    constant(0x0000000000000000, 0x0000000000000000),  // 0
    constant(0x3FB415E532398E49, 0x3C3B036BA52766E3),  // 1
    constant(0x3FC4060B67A85376, 0xBC7FF119D778119D),  // 2
    constant(0x3FCDE189A594FBCB, 0x3C77BBF36C8DAD22),  // 3
    constant(0x3FD3C6EF372FE951, 0xBC97D418C67F3F46),  // 4
    constant(0x3FD87DE2A6AEA963, 0xBC672CEDD3D5A612),  // 5
    constant(0x3FDD0E2E2B44DE01, 0xBC6DCAD11F226A7D),  // 6
    constant(0x3FE0B84EE8F52E9C, 0x3C930AF4300C1E15),  // 7
    constant(0x3FE2CF2304755A5F, 0xBCA124BD9A522CA2),  // 8
    constant(0x3FE4C8474600EEEF, 0xBCA05B0E7C4676DE),  // 9
    constant(0x3FE6A09E667F3BCD, 0xBC8BDD3413B26458),  // 10
    constant(0x3FE8553EE43DEF14, 0xBC9DE39D5113E28C),  // 11
    constant(0x3FE9E3779B97F4A9, 0xBCA3EA0C633F9FA4),  // 12
    constant(0x3FEB48D406A50540, 0x3C88F8BC804D7A1C),  // 13
    constant(0x3FEC83201D3D2C6E, 0xBCA540BC63B3A950),  // 14
    constant(0x3FED906BCF328D47, 0xBC9AEA067BF73950),  // 15
    constant(0x3FEE6F0E13445500, 0xBC94339123CB9E56),  // 16
    constant(0x3FEF1DA785F71BCE, 0x3C89D1B559B63A92),  // 17
    constant(0x3FEF9B24942FE45C, 0xBC8974E46EFC6628),  // 18
    constant(0x3FEFE6BF2E2660AF, 0x3C6C7B0E73511FFF),  // 19
    constant(0x3FF0000000000000, 0x0000000000000000),  // 20
};
constexpr std::int32_t last_row = 20;

/// An angle reduced to n pi + k pi/40 + r, with the sines and cosines that belong to the three.
struct reduced_angle {
  bool odd;  // n
  quad cos_r, sin_r;
  quad cos_k, sin_k;
};

/// The parity of a whole number of any size; beyond 2**63, and for infinities and NaNs, even. What
/// does not fit 32 bits raises invalid, as the store of such a quotient does.
bool is_odd(reg n) {
  const std::int32_t short_n = fistp32(n);
  if (short_n != INT32_MIN) return (short_n & 1) != 0;
  return less(fabs(n), 0x1p63L) && (fistp64(n) & 1) != 0;
}

/// sin r and cos r for |r| <= pi/80: the two Taylor series in one loop, term by term, t the running
/// term. Terms up to quad_limit go in double precision into the low parts alone. The leading 1 and
/// r come last.
void series(const quad& r, quad& cosine, quad& sine) {
  quad c = zero, s = zero, t = r;
  bool plus = false;
  std::int32_t i = 2;
  // Both terms of a pass have the same sign.
  const auto join = [&plus, &t](quad& sum) { sum = plus ? add(sum, t) : sub(sum, t); };
  const auto join_low = [&plus, &t](quad& sum) {
    const reg lo = load(sum.lo), term = load(t.hi);
    sum.lo = static_cast<double>(plus ? lo + term : lo - term);
  };
  const auto step_low = [&t, &r, &i] {
    t.hi = static_cast<double>(load(t.hi) * load(r.hi) / load_integer(i));
  };
  while (greater(fabs(load(t.hi)), series_end)) {
    if (greater(fabs(load(t.hi)), quad_limit)) {
      t = mul(t, r);
      if (i == 2 || i == 4 || i == 8)
        t = scaled_by(t, i == 2 ? 0.5L : i == 4 ? 0.25L : 0.125L);
      else
        t = div(t, load_integer(i));
      join(c);
    } else {
      step_low();
      join_low(c);
    }
    ++i;
    if (greater(fabs(load(t.hi)), quad_limit)) {
      t = div(mul(t, r), load_integer(i));
      join(s);
    } else {
      step_low();
      join_low(s);
    }
    ++i;
    plus = !plus;
  }
  cosine = add(c, 1.0L);
  sine = add(s, r);
}

/// Reduction by pi and by pi/40. A k outside the table means that the first remainder has lost its
/// meaning: it counts as zero. A NaN takes k = 0 and stays in r.
reduced_angle reduced(const quad& x) {
  const reduction first = reduce(x, pi);
  reduction second = reduce(first.remainder, pi_40th);
  std::int32_t k = fistp32(second.quotient);
  if (k > last_row || k < -last_row) {
    if (!is_nan(second.quotient)) second.remainder = zero;
    k = 0;
  }
  reduced_angle angle;
  angle.odd = is_odd(first.quotient);
  series(second.remainder, angle.cos_r, angle.sin_r);
  angle.sin_k = k >= 0 ? sines[k] : neg(sines[-k]);
  angle.cos_k = k >= 0 ? sines[last_row - k] : sines[last_row + k];
  return angle;
}

quad sine_of(const reduced_angle& a) {
  const quad value = add(mul(a.cos_r, a.sin_k), mul(a.sin_r, a.cos_k));
  return a.odd ? neg(value) : value;
}
quad cosine_of(const reduced_angle& a) {
  const quad value = sub(mul(a.cos_r, a.cos_k), mul(a.sin_r, a.sin_k));
  return a.odd ? neg(value) : value;
}

}  // namespace

// Argument reduction in two stages, Taylor series of the remainder, a table of sin(k pi/40) and the
// addition formulas; 4e-31 in absolute terms for moderate x. NaNs and infinities give NaNs, of the
// tangent its pole.
quad sine(const quad& x) { return sine_of(reduced(x)); }
quad cosine(const quad& x) { return cosine_of(reduced(x)); }
quad tangent(const quad& x) {
  const reduced_angle angle = reduced(x);
  const quad numerator = sine_of(angle), denominator = cosine_of(angle);
  return is_zero_or_nan(denominator) ? pole : div(numerator, denominator);
}

}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, sinl)(quad* result, quad x) {
  *result = sine(x);
  return result;
}
ZRT_VALUE(quad*, cosl)(quad* result, quad x) {
  *result = cosine(x);
  return result;
}
ZRT_VALUE(quad*, tanl)(quad* result, quad x) {
  *result = tangent(x);
  return result;
}
ZRT_VALUE(quad*, cotl)(quad* result, quad x) {
  *result = div(1.0L, tangent(x));
  return result;
}
ZRT_VALUE(quad*, sindl)(quad* result, quad x) {
  *result = sine(mul(x, one_degree));
  return result;
}
ZRT_VALUE(quad*, cosdl)(quad* result, quad x) {
  *result = cosine(mul(x, one_degree));
  return result;
}
ZRT_VALUE(quad*, tandl)(quad* result, quad x) {
  *result = tangent(mul(x, one_degree));
  return result;
}
