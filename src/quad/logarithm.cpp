// The REAL*16 logarithms.

#include "quad/logarithm.hpp"

#include "entries.hpp"
#include "quad/conversion.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
namespace {

constexpr quad sqrt_half = constant(0x3FE6A09E667F3BCD, 0xBC8BDD3413B26458);
// ln 2 in two pieces; the product of the first with an exponent loses nothing.
constexpr quad ln_2_high = constant(0x3FE62E4000000000, 0xB950000000000000);  // 0.693145751953125
constexpr quad ln_2_low = constant(0x3EB7F7D1CF79ABCA, 0xBB3C4C67FC0D0968);  // 1.42860682030941e-06
constexpr quad log10_e = constant(0x3FDBCB7B1526E50E, 0x3C695355BAAAFAC8);

constexpr quad minus_infinity = constant(0xFFF0000000000000, 0);
constexpr quad plus_infinity = constant(0x7FF0000000000000, 0);

#include "quad/logarithm_tables.inc"

// In registers the sums of the last rows near 1 may exceed the coefficients; all others do not.
constexpr int close_rows = 3;
constexpr double near_bound = 0x1.a8279ap-2, far_bound = 0x1.e28p-4;  // sqrt(2) - 1, 0.3432**2
static_assert(exceeds_sums(near_numerator, close_rows, near_bound, false) &&
              exceeds_sums(near_denominator, close_rows, near_bound, true) &&
              exceeds_sums(far_numerator, 0, far_bound, false) &&
              exceeds_sums(far_denominator, 0, far_bound, true));

/// Whether m lies below sqrt(1/2), by the leading part of the difference. With a low part of at
/// most half a unit, and sqrt_half's of 0.44 of a unit less than one half, the leading parts decide
/// unless they are equal.
template <class Result>
bool below_root(const quad& m) {
  if constexpr (std::same_as<Result, by_store>) return less(leading(sub(m, sqrt_half)), 0.0L);
  const reg difference = reg{m.hi} - reg{sqrt_half.hi};
  return less(difference, 0.0L) ||
         (difference == 0.0L && less(reg{m.lo} - reg{sqrt_half.lo}, 0.0L));
}

/// The logarithm of m 2**e for operands near 1, where a small result keeps its relative accuracy.
template <class Result>
quad near_one(const quad& m, std::int32_t e) {
  const bool low = below_root<Result>(m);
  if (low) --e;
  const quad v = sub_exact<Result>(low ? scaled_by<Result>(m, 2.0L) : m, 1.0L);
  const quad w = mul<Result>(v, v);
  const quad c = rational<Result, close_rows>(v, near_numerator, near_denominator);
  quad y = mul<Result>(v, mul<Result>(w, c));
  y = add<Result>(y, mul_integer<Result>(ln_2_low, e));
  y = sub<Result>(y, scaled_by<Result>(w, 0.5L));
  y = add<Result>(y, v);
  return add<Result>(y, mul_integer<Result>(ln_2_high, e));
}

/// The same by z = 2 (m - 1) / (m + 1), formed from m/2 where the exponent moves.
template <class Result>
quad far_from_one(const quad& m, std::int32_t e) {
  quad a = sub_exact<Result>(m, 0.5L), b = m;
  if (below_root<Result>(m)) {
    --e;
    b = a;
  } else {
    a = sub<Result>(a, 0.5L);
  }
  b = add<Result>(mul_by_power<Result>(b, 0.5L), 0.5L);
  const quad z = div<Result>(a, b);
  const quad w = mul<Result>(z, z);
  const quad c = rational<Result>(w, far_numerator, far_denominator);
  quad y = mul<Result>(z, mul<Result>(w, c));
  y = add<Result>(y, mul_integer<Result>(ln_2_low, e));
  y = add<Result>(y, z);
  return add<Result>(y, mul_integer<Result>(ln_2_high, e));
}

template <class Result>
quad of_parts(const quad& m, std::int32_t e) {
  return e > 2 || e < -2 ? far_from_one<Result>(m, e) : near_one<Result>(m, e);
}

/// Whether x, with x.hi between 2**(e-1) and 2**e, is its significand times 2**e part by part, and
/// the significand fit for registers: |e| up to 100, x.lo zero or between 2**(e-101) and 2**(e-54).
bool is_ordinary(const quad& x, int e) {
  if (e < -100 || e > 100) return false;
  const std::uint64_t lo = image(x.lo);
  const int low_exponent = biased_exponent<double>(lo) - (layout<double>::bias - 1);
  return lo << 1 == 0 || (low_exponent >= e - 100 && low_exponent < e - 53);
}

}  // namespace

// x = m 2**e with m in [sqrt(1/2), sqrt(2)) after a step of e; one rational approximation for x
// from 1/8 to 4, another elsewhere; the terms join from the smallest to the largest. The error is
// 2**-104. Zeros give -infinity, +infinity passes; negative operands and NaNs give the library's
// NaN.
quad logarithm(const quad& x) {
  const reg value = load(x.hi);
  if (!greater(value, 0.0L)) return value == 0.0L ? minus_infinity : invalid;
  if (value == infinity) return plus_infinity;
  const int e = biased_exponent<double>(image(x.hi)) - (layout<double>::bias - 1);
  if (is_ordinary(x, e)) {
    const auto power = static_cast<std::uint32_t>(layout<float>::bias - e);
    return of_parts<in_register>(
        scaled_by<in_register>(x, load_image<float>(power << layout<float>::fraction_bits)), e);
  }
  const parts taken_apart = significand_and_exponent(x);
  return of_parts<by_store>(taken_apart.significand(), taken_apart.exponent);
}

}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, logl)(quad* result, quad x) {
  *result = logarithm(x);
  return result;
}
ZRT_VALUE(quad*, log10l)(quad* result, quad x) {
  *result = mul(logarithm(x), log10_e);
  return result;
}
