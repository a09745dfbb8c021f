#pragma once

// Double-double arithmetic on REAL*16 values, inline, for everything that computes with them.
//
// A quad is the unevaluated sum hi + lo of two doubles. Every routine takes operands that are
// stored doubles and gives a result that is stored; in between, each operation rounds to 53 bits
// and keeps the register's exponent range. All of it rests on error-free transformations: the
// two-sum of Knuth and the product of Veltkamp and Dekker. No operand is tested. Infinities turn
// into NaNs, because the error terms are differences of an operand with itself.

#include <array>

#include "frame/entry.hpp"
#include "frame/x87.hpp"

namespace zrt::quads {

// --- Values ------------------------------------------------------------------------------------

/// A REAL*16 constant from the images of its parts.
constexpr quad constant(std::uint64_t hi, std::uint64_t lo) {
  return {std::bit_cast<double>(hi), std::bit_cast<double>(lo)};
}

/// Rounds both parts to doubles.
[[gnu::always_inline]] inline quad stored_pair(reg hi, reg lo) {
  return {static_cast<double>(hi), static_cast<double>(lo)};
}

/// (x, 0.0) of a value that is a double already.
[[gnu::always_inline]] inline quad widened(reg x) { return {static_cast<double>(x), 0.0}; }

inline constexpr quad zero = {0.0, 0.0};
inline constexpr quad one = {1.0, 0.0};
/// What a domain error gives.
inline constexpr quad invalid = constant(0x7FF8000000000000, 0);

/// The closing sum of a leading part s and a correction t, a fast two-sum and the only
/// renormalisation: exact for |s| >= |t|. The difference takes the sum as it stands in the
/// register.
[[gnu::always_inline]] inline quad closing_sum(reg s, reg t) {
  const reg hi = s + t;
  return stored_pair(hi, (s - hi) + t);
}

/// The leading part of a result of which nothing else is wanted. The low part is formed and stored
/// all the same: no compiler may leave out the flags that it raises.
[[gnu::always_inline]] inline reg leading(const quad& a) {
  asm volatile("" : : "m"(a.lo));
  return load(a.hi);
}

/// An operand handed back bit for bit: a signalling NaN stays one.
inline quad* as_it_came(quad* result, const quad& a) {
  const std::uint64_t hi = image(a.hi), lo = image(a.lo);
  std::memcpy(&result->hi, &hi, sizeof hi);
  std::memcpy(&result->lo, &lo, sizeof lo);
  return result;
}

/// An operand with both signs flipped, of zeros and NaNs too, and otherwise bit for bit.
inline quad* sign_flipped(quad* result, const quad& a) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  const std::uint64_t hi = image(a.hi) ^ sign, lo = image(a.lo) ^ sign;
  std::memcpy(&result->hi, &hi, sizeof hi);
  std::memcpy(&result->lo, &lo, sizeof lo);
  return result;
}

/// -a and |a|, for the steps inside a function.
[[gnu::always_inline]] inline quad neg(const quad& a) {
  return stored_pair(fchs(load(a.hi)), fchs(load(a.lo)));
}
[[gnu::always_inline]] inline quad magnitude(const quad& a) {
  return less(load(a.hi), 0.0L) ? neg(a) : a;
}

// --- Scaling -----------------------------------------------------------------------------------

/// 2**(64 i) at i + 35, and 2**i: powers that reach from the smallest double beyond the largest and
/// back.
inline constexpr int last_high_power = 35;
inline constexpr auto high_powers = [] {
  std::array<reg, 2 * last_high_power + 1> power{};
  power[last_high_power] = 1.0L;
  for (int i = 1; i <= last_high_power; ++i) {
    power[last_high_power + i] = power[last_high_power + i - 1] * 0x1p64L;
    power[last_high_power - i] = power[last_high_power - i + 1] * 0x1p-64L;
  }
  return power;
}();
inline constexpr auto low_powers = [] {
  std::array<float, 64> power{};
  float p = 1.0F;
  for (float& entry : power) {
    entry = p;
    p *= 2.0F;
  }
  return power;
}();

/// a * 2**n: both factors are exact in the register, so that each part is rounded once, by its
/// store, which is also where it overflows or goes subnormal. Beyond 2240 either way the result of
/// every double is the same.
inline quad scaled(const quad& a, std::int32_t n) {
  constexpr std::int32_t limit = 64 * last_high_power;
  n = n > limit ? limit : n < -limit ? -limit : n;
  const reg high = high_powers[static_cast<std::size_t>((n >> 6) + last_high_power)];
  const reg low = load(low_powers[static_cast<std::size_t>(n & 63)]);
  return stored_pair(load(a.hi) * low * high, load(a.lo) * low * high);
}

/// a * p for a power of two p: exact but for the store.
[[gnu::always_inline]] inline quad scaled_by(const quad& a, reg power) {
  return stored_pair(load(a.hi) * power, load(a.lo) * power);
}

// --- Sums --------------------------------------------------------------------------------------

/// What s = x + y has lost by rounding.
[[gnu::always_inline]] inline reg sum_error(reg x, reg y, reg s) {
  const reg g = x - s;
  return (y + g) + (x - (g + s));
}

/// What s = x - y has lost by rounding.
[[gnu::always_inline]] inline reg difference_error(reg x, reg y, reg s) {
  const reg g = x - s;
  return (g - y) + (x - (g + s));
}

// The low parts join the error of the leading sum, a's first, in rounded additions of their own:
// the error of a sum is about 2**-105 of the larger operand.

[[gnu::always_inline]] inline quad add(const quad& a, const quad& b) {
  const reg x = load(a.hi), y = load(b.hi);
  const reg s = x + y;
  return closing_sum(s, (sum_error(x, y, s) + load(a.lo)) + load(b.lo));
}

[[gnu::always_inline]] inline quad add(const quad& a, reg d) {
  const reg x = load(a.hi);
  const reg s = x + d;
  return closing_sum(s, sum_error(x, d, s) + load(a.lo));
}

[[gnu::always_inline]] inline quad sub(const quad& a, const quad& b) {
  const reg x = load(a.hi), y = load(b.hi);
  const reg s = x - y;
  return closing_sum(s, (difference_error(x, y, s) + load(a.lo)) - load(b.lo));
}

[[gnu::always_inline]] inline quad sub(const quad& a, reg d) {
  const reg x = load(a.hi);
  const reg s = x - d;
  return closing_sum(s, difference_error(x, d, s) + load(a.lo));
}

[[gnu::always_inline]] inline quad sub(reg d, const quad& b) {
  const reg y = load(b.hi);
  const reg s = d - y;
  return closing_sum(s, difference_error(d, y, s) - load(b.lo));
}

// --- Products ----------------------------------------------------------------------------------

/// A significand of 53 bits cut by Veltkamp's method: high has the upper 21 bits, low the rest.
struct split {
  reg high, low;

  [[gnu::always_inline]] explicit split(reg x) {
    const reg t = 0x1.00000001p32L * x;
    high = t + (x - t);
    low = x - high;
  }
};

/// The second operand of a product: its low part of 32 bits is cut once more, so that every partial
/// product below fits 53 bits.
struct two_level_split {
  reg high, middle, low;
  reg rest;  // middle + low

  [[gnu::always_inline]] explicit two_level_split(reg x) {
    const split upper(x);
    high = upper.high;
    rest = upper.low;
    const split lower(rest);
    middle = lower.high;
    low = lower.low;
  }
};

/// a * b - p exactly, for p = a * b rounded: Dekker's product, summed from the leading term down.
/// The parts live in the register's exponent range, so that neither end of a double's range needs
/// scaling.
[[gnu::always_inline]] inline reg product_error(const split& a, const two_level_split& b, reg p) {
  return ((((a.high * b.high - p) + a.high * b.rest) + a.low * b.high) + a.low * b.middle) +
         a.low * b.low;
}

/// a * b exactly, as the rounded product and its error.
[[gnu::always_inline]] inline quad product(reg a, reg b) {
  const reg p = a * b;
  return stored_pair(p, product_error(split(a), two_level_split(b), p));
}

/// The operands do not commute in the low bits: a.lo + a.hi rounds, b.hi does not take part in it.
[[gnu::always_inline]] inline quad mul(const quad& a, const quad& b) {
  const quad p = product(load(a.hi), load(b.hi));
  const reg t = ((load(a.lo) + load(a.hi)) * load(b.lo) + load(a.lo) * load(b.hi)) + load(p.lo);
  return closing_sum(load(p.hi), t);
}

[[gnu::always_inline]] inline quad mul(const quad& a, reg d) {
  const quad p = product(load(a.hi), d);
  return closing_sum(load(p.hi), load(a.lo) * d + load(p.lo));
}

/// a * k for an integer k: both products exact, then one sum. The short ways give a zero whatever a
/// holds, a itself and -a.
inline quad mul_integer(const quad& a, std::int32_t k) {
  if (k == 0) return zero;
  if (k == 1) return a;
  if (k == -1) return neg(a);
  const reg factor = load_integer(k);
  return add(product(load(a.hi), factor), product(load(a.lo), factor));
}

// --- Quotients ---------------------------------------------------------------------------------
// One correction step on the quotient of the leading parts. Of the product divisor times quotient
// it is the quotient that takes the two-level split.

[[gnu::always_inline]] inline quad div(const quad& a, const quad& b) {
  const reg q1 = stored<double>(load(a.hi) / load(b.hi));
  const quad p = product(load(b.hi), q1);
  const reg r = (((load(a.hi) - load(p.hi)) - load(p.lo)) + load(a.lo)) - q1 * load(b.lo);
  const reg q2 = r / (load(b.lo) + load(b.hi));
  return closing_sum(q1, q2);
}

[[gnu::always_inline]] inline quad div(const quad& a, reg d) {
  const reg q1 = stored<double>(load(a.hi) / d);
  const quad p = product(d, q1);
  const reg r = ((load(a.hi) - load(p.hi)) - load(p.lo)) + load(a.lo);
  const reg q2 = r / d;
  return closing_sum(q1, q2);
}

[[gnu::always_inline]] inline quad div(reg d, const quad& b) {
  const reg q1 = stored<double>(d / load(b.hi));
  const quad p = product(load(b.hi), q1);
  const reg r = ((d - load(p.hi)) - load(p.lo)) - q1 * load(b.lo);
  const reg q2 = r / (load(b.lo) + load(b.hi));
  return closing_sum(q1, q2);
}

// --- Comparison --------------------------------------------------------------------------------

/// The order of a and b by the leading part of their difference: 1, 0 or -1. A NaN there counts as
/// equal, and an infinite operand gives one.
inline std::int32_t compare(const quad& a, const quad& b) {
  const reg difference = leading(sub(a, b));
  if (greater(difference, 0.0L)) return 1;
  return compares_equal(difference, 0.0L) ? 0 : -1;
}

/// The tests of the leading part.
[[gnu::always_inline]] inline bool is_zero_or_nan(const quad& a) {
  return compares_equal(load(a.hi), 0.0L);
}
[[gnu::always_inline]] inline bool negative(const quad& a) { return less(load(a.hi), 0.0L); }

}  // namespace zrt::quads
