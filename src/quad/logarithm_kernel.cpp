// The REAL*16 logarithm.

#include "quad/logarithm.hpp"
#include "quad/polynomial.hpp"
#include "quad/significand.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

constexpr quad sqrt_half = constant(0x3FE6A09E667F3BCD, 0xBC8BDD3413B26458);
// ln 2 in two pieces; the product of the first with an exponent loses nothing.
constexpr quad ln_2_high = constant(0x3FE62E4000000000, 0xB950000000000000);  // 0.693145751953125
constexpr quad ln_2_low = constant(0x3EB7F7D1CF79ABCA, 0xBB3C4C67FC0D0968);  // 1.42860682030941e-06

#include "quad/logarithm_tables.inc"

// Directly the sums of the last rows near 1 may exceed the coefficients; all others do not.
constexpr int close_rows = 3;
constexpr double near_bound = 0x1.a8279ap-2, far_bound = 0x1.e28p-4;  // sqrt(2) - 1, 0.3432**2
static_assert(exceeds_sums(near_numerator, close_rows, near_bound, false) &&
              exceeds_sums(near_denominator, close_rows, near_bound, true) &&
              exceeds_sums(far_numerator, 0, far_bound, false) &&
              exceeds_sums(far_denominator, 0, far_bound, true));

/// Whether m lies below sqrt(1/2), by the leading part of the difference. With a low part of at
/// most half a unit, and sqrt_half's of 0.44 of a unit less than one half, the leading parts decide
/// unless they are equal.
template <class A>
bool below_root(const quad& m) {
  if constexpr (!A::is_direct) return less(A::leading(A::sub(m, sqrt_half)), 0.0);
  const ordinary difference = ordinary{m.hi} - sqrt_half.hi;
  return less(difference, 0.0) || (difference == 0.0 && less(ordinary{m.lo} - sqrt_half.lo, 0.0));
}

/// The logarithm of m 2**e for operands near 1, where a small result keeps its relative accuracy.
template <class A>
quad near_one(const quad& m, std::int32_t e) {
  const bool low = below_root<A>(m);
  if (low) --e;
  const quad v = A::sub_exact(low ? A::scaled_by(m, 2.0) : m, 1.0);
  const quad w = A::mul(v, v);
  const quad c = rational<A, close_rows>(v, near_numerator, near_denominator);
  quad y = A::mul(v, A::mul(w, c));
  y = A::add(y, A::mul_integer(ln_2_low, e));
  y = A::sub(y, A::scaled_by(w, 0.5));
  y = A::add(y, v);
  return A::add(y, A::mul_integer(ln_2_high, e));
}

/// The same by z = 2 (m - 1) / (m + 1), formed from m/2 where the exponent moves.
template <class A>
quad far_from_one(const quad& m, std::int32_t e) {
  quad a = A::sub_exact(m, 0.5), b = m;
  if (below_root<A>(m)) {
    --e;
    b = a;
  } else {
    a = A::sub(a, 0.5);
  }
  b = A::add(A::mul_by_power(b, 0.5), 0.5);
  const quad z = A::div(a, b);
  const quad w = A::mul(z, z);
  const quad c = rational<A>(w, far_numerator, far_denominator);
  quad y = A::mul(z, A::mul(w, c));
  y = A::add(y, A::mul_integer(ln_2_low, e));
  y = A::add(y, z);
  return A::add(y, A::mul_integer(ln_2_high, e));
}

template <class A>
quad of_parts(const quad& m, std::int32_t e) {
  return e > 2 || e < -2 ? far_from_one<A>(m, e) : near_one<A>(m, e);
}

/// Whether x, with x.hi between 2**(e-1) and 2**e, is its significand times 2**e part by part, and
/// the significand fit for direct steps: |e| up to 100, x.lo zero or between 2**(e-101) and
/// 2**(e-54).
bool has_plain_significand(const quad& x, int e) {
  if (e < -100 || e > 100) return false;
  const int low_exponent = exponent_of(x.lo) + 1;
  return image(x.lo) << 1 == 0 || (low_exponent >= e - 100 && low_exponent < e - 53);
}

}  // namespace

// x = m 2**e with m in [sqrt(1/2), sqrt(2)) after a step of e; one rational approximation for x
// from 1/8 to 4, another elsewhere; the terms join from the smallest to the largest. The error is
// 2**-104. Zeros give -infinity, +infinity passes; negative operands and NaNs give the library's
// NaN.
quad logarithm(const quad& x) {
  const int e = exponent_of(x.hi) + 1;
  const bool is_plain = has_plain_significand(x, e);
  const ordinary value = load<ordinary>(x.hi);
  if (on_doubles && (!is_plain || less_equal(value, 0.0) || (value == 1.0 && x.lo == 0.0)))
    return x87::logarithm(x);
  if (!greater(value, 0.0)) return value == 0.0 ? minus_infinity : invalid;
  if (value == plus_infinity.hi) return plus_infinity;
  if (on_doubles || is_plain) {
    const auto power = static_cast<std::uint32_t>(layout<float>::bias - e);
    const auto image = power << layout<float>::fraction_bits;
    return of_parts<direct>(direct::scaled_by(x, load_image<float, ordinary>(image)), e);
  }
  const parts taken_apart = significand_and_exponent(x);
  return of_parts<general>(taken_apart.significand(), taken_apart.exponent);
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
