// Powers of REAL*4 and REAL*8, with INTEGER*4 and with real exponents: two methods and two sets of
// special cases. The general powers send exponents that they find whole to the integer powers.

#include "entries.hpp"
#include "real/powers_kernel.hpp"

namespace zrt::real {
namespace {

/// The exponent of two of y, the sign of y left out.
[[gnu::always_inline]] inline std::int32_t exponent_of(const double& y) {
  return unbiased_exponent<double>(image(y));
}

/// For exponents from 21 to 52, where units lie in the low word: whether y is whole, and odd.
[[gnu::always_inline]] inline bool is_whole(std::uint32_t low, std::int32_t exponent) {
  return exponent == 52 || (low & (0xFFFFFFFFu >> (exponent - 20))) == 0;
}
[[gnu::always_inline]] inline bool is_odd(std::uint32_t low, std::int32_t exponent) {
  return (low >> (52 - exponent) & 1) != 0;
}

/// Whether the integer powers take y: a whole number below 2**31, save those from 2**21 on that end
/// in 32 zero bits and are no power of two.
[[gnu::always_inline]] inline bool for_integer_power(const double& y) {
  const auto low = static_cast<std::uint32_t>(image(y));
  const std::int32_t exponent = exponent_of(y);
  return whole_by_leading_bits(y) ||
         (exponent > 20 && exponent <= 30 && low != 0 && is_whole(low, exponent));
}

/// x**y for x > 0 as 2**t, t = y log2(x): f2xm1 of t less its nearest integer, plus one, scaled.
/// The error of t, one part in 2**64, grows with its size: some 2**-53 |t| of the result. Not
/// stored; the range is the register's. An infinite t gives the default NaN.
reg power_by_instruction(reg x, reg y) {
  const reg t = fyl2x(y, x);
  const reg n = frndint(t);
  const reg f = t - n;
  const reg r = f2xm1(f) + 1.0L;
  return fscale(r, n);
}

/// x**y. A zero or NaN y gives 1.0, and so does an x of 1.0 or NaN. A negative x needs a whole y:
/// below 2**31 the integer powers serve it (which not every whole y reaches), from there on the
/// parity of y gives the sign; else the library's NaN. A zero x gives itself to a positive y,
/// +infinity otherwise.
reg power(const double& x, const double& y) {
  const reg exponent = load(y);
  if (ftst(exponent).compares_equal()) return 1.0L;
  const reg base = load(x);
  if (compares_equal(base, 1.0L)) return 1.0L;
  if (for_integer_power(y)) return integer_power<reg>(x, fistp32(exponent));
  if (greater(base, 0.0L)) return power_by_instruction(base, exponent);
  if (less(base, 0.0L)) {
    const auto low = static_cast<std::uint32_t>(image(y));
    const std::int32_t two = exponent_of(y);
    if (two <= 30) return quiet_nan;
    if (two > 52) return power_by_instruction(fchs(base), exponent);
    if (!is_whole(low, two)) return quiet_nan;
    return negated_if(is_odd(low, two), power_by_instruction(fchs(base), exponent));
  }
  return greater(exponent, 0.0L) ? base : infinity;
}

/// x**y. A zero or NaN y gives 1.0, an x of 1.0 or NaN itself. A negative x needs a y that the
/// integer powers take, or one from 2**31 on, which is even; else the library's NaN. A zero x gives
/// +0.0 to a positive y, +infinity otherwise.
reg power(const float& x, const float& y) {
  const reg exponent = load(y);
  if (compares_equal(exponent, 0.0)) return 1.0;
  const reg base = load(x);
  if (compares_equal(base, 1.0)) return base;
  if (whole_by_leading_bits(y)) return integer_power<reg>(x, truncated_to_int32(exponent));
  if (greater(base, 0.0)) return power_of_positive<reg>(image(x), y);
  if (less(base, 0.0)) {
    if (unbiased_exponent<float>(image(y)) <= 30) return quiet_nan;
    return power_of_positive<reg>(image(x) ^ sign_bit_of<float>, y);
  }
  return greater(exponent, 0.0) ? 0.0 : infinity;
}

template <format F>
[[gnu::always_inline]] inline result<F> integer_power_of(const F& x, std::int32_t n) {
  return evaluated<F>(
      has_ordinary_power(x, n),
      []<class V>(const F& a, std::int32_t k) { return integer_power<V>(a, k); }, x, n);
}

#if defined(__x86_64__)
/// A whole exponent is ordinary as that of the integer power; of the others only the REAL*4 power
/// runs without a transcendental instruction.
bool is_ordinary(const double& x, const double& y) {
  return for_integer_power(y) && has_ordinary_power(x, fisttp32(y));
}
bool is_ordinary(const float& x, const float& y) {
  if (whole_by_leading_bits(y)) return has_ordinary_power(x, fisttp32(y));
  return is_positive_normal(x) && image(x) != 0x3F800000 &&
         size_between(y, smallest_normal<float>, 0x1p27f);
}
double ordinary_power(const double& x, const double& y) {
  return integer_power<double>(x, fisttp32(y));
}
double ordinary_power(const float& x, const float& y) {
  return whole_by_leading_bits(y) ? integer_power<double>(x, fisttp32(y))
                                  : power_of_positive<double>(image(x), y);
}
#endif

/// The power by the steps.
template <format F>
[[gnu::always_inline]] inline result<F> power_of(const F& x, const F& y) {
#if defined(__x86_64__)
  if (is_ordinary(x, y)) [[likely]]
    return static_cast<F>(ordinary_power(x, y));
  return on_register<F>([]<class>(const F& a, const F& b) { return power(a, b); }, x, y);
#else
  return returned<F>(power(x, y));
#endif
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dtoi)(real8 x, std::int32_t n) { return integer_power_of<double>(x, n); }
ZRT_VALUE(real4_result, ftoi)(real4 x, std::int32_t n) { return integer_power_of<float>(x, n); }
ZRT_VALUE(real8_result, dtod)(real8 x, real8 y) { return power_of<double>(x, y); }
ZRT_VALUE(real4_result, ftof)(real4 x, real4 y) {
  return quickly<real4_result>(
      [](const auto& a, const auto& b, auto& z) { return quick_power(a, b, z); },
      [](const float& a, const float& b) { return power_of<float>(a, b); }, x, y);
}
