// REAL*16 powers.

#include "entries.hpp"
#include "int64/conversions.hpp"
#include "quad/exponential.hpp"
#include "quad/logarithm.hpp"
#include "quad/quad.hpp"

namespace zrt::quads {
namespace {

constexpr quad plus_infinity = constant(0x7FF0000000000000, 0);

/// Powers by squaring from the low bit of |n|; a negative n takes one reciprocal at the end. The
/// last product has its operands the other way round. Overflow gives what the products give.
template <class Unsigned>
quad by_squaring(const quad& x, Unsigned count, bool reciprocal) {
  quad y = one, b = x;
  for (;;) {
    const bool bit = (count & 1) != 0;
    count >>= 1;
    if (count == 0) break;
    if (bit) y = mul(y, b);
    b = mul(b, b);
  }
  y = mul(b, y);
  return reciprocal ? div(1.0L, y) : y;
}

/// x**n. A zero to the power 0 is 1, to a negative one infinity; otherwise it comes back, signs and
/// all, and so does an x whose parts are zeros or NaNs.
template <class Integer>
quad* integer_power(quad* result, const quad& x, Integer n) {
  using Unsigned = std::make_unsigned_t<Integer>;
  const reg hi = load(x.hi), lo = load(x.lo);
  if (compares_equal(hi, 0.0L) && compares_equal(lo, 0.0L)) {
    if (hi != 0.0L || lo != 0.0L || n > 0) return as_it_came(result, x);
    *result = n == 0 ? one : plus_infinity;
  } else if (n == 0) {
    *result = one;
  } else {
    const auto bits = static_cast<Unsigned>(n);
    *result = by_squaring(x, n < 0 ? Unsigned{0} - bits : bits, n < 0);
  }
  return result;
}

/// exp(y log x), with the error of the logarithm times |y log x|: 2**-95 near the ends of the
/// range. Zero gives infinity for a negative y, else zero; a negative or NaN x gives the library's
/// NaN.
quad general_power(const quad& x, const quad& y) {
  const reg base = load(x.hi);
  if (greater(base, 0.0L)) return exponential(mul(y, logarithm(x)));
  if (base != 0.0L) return invalid;
  return negative(y) ? plus_infinity : zero;
}

/// The exponent field without its bias.
int unbiased_exponent(const double& x) {
  return biased_exponent<double>(image(x)) - layout<double>::bias;
}

/// Whether x, of an exponent up to 63, is a whole number that 64 bits hold.
bool is_whole(const double& x) {
  const reg value = load(x);
  if (unbiased_exponent(x) < 31) return load_integer(truncated_to_int32(value)) == value;
  return int64::cvtlld(int64::cvtdll(value)) == value;
}

/// x**y: an exponent without a low part that is whole and fits goes to the integer powers. Where
/// the low part decides that y is whole, or hi is so large that it must be even, the magnitude of x
/// takes the general way. A zero or NaN y gives 1; x = 1 comes back.
quad* power(quad* result, const quad& x, const quad& y) {
  if (is_zero_or_nan(y)) {
    *result = one;
    return result;
  }
  if (compares_equal(load(x.hi), 1.0L) && compares_equal(load(x.lo), 0.0L))
    return as_it_came(result, x);
  bool even = false;
  if (compares_equal(load(y.lo), 0.0L)) {
    const int exponent = unbiased_exponent(y.hi);
    const reg whole = load(y.hi);
    if (exponent > 63) {
      even = true;
    } else if (is_whole(y.hi)) {
      return exponent < 31 ? integer_power(result, x, truncated_to_int32(whole))
                           : integer_power(result, x, int64::cvtdll(whole));
    }
  } else {
    even = unbiased_exponent(y.lo) > 52 || is_whole(y.lo);
  }
  *result = general_power(even ? magnitude(x) : x, y);
  return result;
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, powli)(quad* result, quad x, std::int32_t n) {
  return integer_power(result, x, n);
}
ZRT_VALUE(quad*, powlk)(quad* result, quad x, std::int64_t n) {
  return integer_power(result, x, n);
}
ZRT_VALUE(quad*, powl)(quad* result, quad x, quad y) { return power(result, x, y); }
ZRT_VALUE(quad*, powld)(quad* result, quad x, real8 d) {
  return power(result, x, widened(load(d)));
}
