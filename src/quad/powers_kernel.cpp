// REAL*16 powers.

#include "int64/conversions.hpp"
#include "quad/exponential.hpp"
#include "quad/guards.hpp"
#include "quad/logarithm.hpp"
#include "quad/powers.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {
namespace {

using A = general;

/// Powers by squaring from the low bit of |n|; a negative n takes one reciprocal at the end. The
/// last product has its operands the other way round. Overflow gives what the products give.
template <class Unsigned>
quad by_squaring(const quad& x, Unsigned count, bool reciprocal) {
  quad y = one, b = x;
  for (;;) {
    const bool bit = (count & 1) != 0;
    count >>= 1;
    if (count == 0) break;
    if (bit) y = A::mul(y, b);
    b = A::mul(b, b);
  }
  y = A::mul(b, y);
  return reciprocal ? A::div(1.0, y) : y;
}

/// x**n. A zero to the power 0 is 1, to a negative one infinity; otherwise it comes back, signs and
/// all, and so does an x whose parts are zeros or NaNs.
template <class Integer>
quad* whole_power(quad* result, const quad& x, Integer n) {
  using Unsigned = std::make_unsigned_t<Integer>;
  const ordinary hi = load<ordinary>(x.hi), lo = load<ordinary>(x.lo);
  if (compares_equal(hi, 0.0) && compares_equal(lo, 0.0)) {
    if (hi != 0.0 || lo != 0.0 || n > 0) return as_it_came(result, x);
    return put(result, n == 0 ? one : plus_infinity);
  }
  if (n == 0) return put(result, one);
  const auto bits = static_cast<Unsigned>(n);
  return put(result, by_squaring(x, n < 0 ? Unsigned{0} - bits : bits, n < 0));
}

/// exp(y log x), with the error of the logarithm times |y log x|: 2**-95 near the ends of the
/// range. Zero gives infinity for a negative y, else zero; a negative or NaN x gives the library's
/// NaN.
quad general_power(const quad& x, const quad& y) {
  const ordinary base = load<ordinary>(x.hi);
  if (greater(base, 0.0)) return exponential(A::mul(y, logarithm(x)));
  if (base != 0.0) return invalid;
  return negative(y) ? plus_infinity : zero;
}

/// Whether x, of an exponent up to 63, is a whole number that 64 bits hold.
bool is_whole(const double& x) {
  const reg value = load(x);
  if (exponent_of(x) < 31) return load_integer(truncated_to_int32(value)) == value;
  return load_integer(int64::to_integer(value)) == value;
}

}  // namespace

quad* integer_power(quad* result, const quad& x, std::int32_t n) {
  if (on_doubles && !is_ordinary<-100, 100>(x)) return x87::integer_power(result, x, n);
  return whole_power(result, x, n);
}
quad* integer_power(quad* result, const quad& x, std::int64_t n) {
  if (on_doubles && !is_ordinary<-100, 100>(x)) return x87::integer_power(result, x, n);
  return whole_power(result, x, n);
}

// x**y: an exponent without a low part that is whole and fits goes to the integer powers. Where
// the low part decides that y is whole, or hi is so large that it must be even, the magnitude of x
// takes the general way. A zero or NaN y gives 1; x = 1 comes back.
quad* power(quad* result, const quad& x, const quad& y) {
  if (on_doubles && !(is_ordinary<-100, 100>(x) && is_ordinary<-100, 100>(y)))
    return x87::power(result, x, y);
  if (is_zero_or_nan(y)) return put(result, one);
  if (compares_equal(load<ordinary>(x.hi), 1.0) && compares_equal(load<ordinary>(x.lo), 0.0))
    return as_it_came(result, x);
  bool even = false;
  if (compares_equal(load<ordinary>(y.lo), 0.0)) {
    const int exponent = exponent_of(y.hi);
    const ordinary whole = load<ordinary>(y.hi);
    if (exponent > 63) {
      even = true;
    } else if (is_whole(y.hi)) {
      return exponent < 31 ? whole_power(result, x, truncated_to_int32(whole))
                           : whole_power(result, x, int64::to_integer(whole));
    }
  } else {
    even = exponent_of(y.lo) > 52 || is_whole(y.lo);
  }
  return put(result, general_power(even ? A::magnitude(x) : x, y));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
