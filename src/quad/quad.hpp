#pragma once

// Double-double arithmetic on REAL*16 values, inline, for everything that computes with them.
//
// A quad is the unevaluated sum hi + lo of two doubles. Every routine takes operands that are
// stored doubles and gives a result that is stored; in between, each operation rounds to 53 bits
// and keeps the register's exponent range. All of it rests on error-free transformations: the
// two-sum of Knuth and the product of Veltkamp and Dekker. No operand is tested. Infinities turn
// into NaNs, because the error terms are differences of an operand with itself.
//
// A store costs the next routine some ten cycles, and most stores change nothing. So each routine
// comes in two ways with the same bits: `by_store` for all operands, and `in_register` for kernels
// that know their magnitudes.

#include <array>

#include "frame/entry.hpp"
#include "frame/x87.hpp"

namespace zrt::quads {

// --- Values ------------------------------------------------------------------------------------

/// A REAL*16 constant from the images of its parts.
constexpr quad constant(std::uint64_t hi, std::uint64_t lo) {
  return {std::bit_cast<double>(hi), std::bit_cast<double>(lo)};
}

/// Results are rounded to doubles by stores, whatever they are.
struct by_store {
  [[gnu::always_inline]] static double part(reg x) { return static_cast<double>(x); }
  /// Operands come through loads of their own: a signalling NaN is quiet before it meets another
  /// NaN.
  [[gnu::always_inline]] static reg value(const double& x) { return load(x); }
  [[gnu::always_inline]] static reg cut_part(reg x) { return x; }
};

/// Results stay in registers where a store would not change them, for kernels whose operands have
/// leading parts that are zero or lie between 2**-400 and 2**400.
///  - A product of leading parts is normal, and its error a multiple of 2**-1022 or more.
///  - The leading part of a product or quotient has about its size; where a large low part cancels
///    it, it is a multiple of that part's last bit.
///  - Both parts of a sum are sums of doubles: multiples of 2**-1074, and thus doubles.
///  - The low part of a product or quotient may be as small as it likes: that one is stored.
/// An infinity or a NaN is the same before and after its store.
struct in_register {
  /// The promise that `x` is a double, with no instruction: a spill takes 64 bits.
  [[gnu::always_inline]] static double part(reg x) {
    double held;
    asm("" : "=t"(held) : "0"(x));
    return held;
  }
  [[gnu::always_inline]] static reg value(const double& x) { return x; }
};

/// by_store for leading parts that are zero or lie between 2**-900 and 2**1000: the parts they are
/// cut into are normal doubles, too, which saves long spills where several products share an
/// operand.
struct by_store_of_ordinary : by_store {
  [[gnu::always_inline]] static double cut_part(reg x) { return in_register::part(x); }
};

/// The operand of an entry for routines that work in registers: loaded, so that no NaN in it
/// signals.
[[gnu::always_inline]] inline quad loaded(const quad& a) {
  return {in_register::part(load(a.hi)), in_register::part(load(a.lo))};
}

/// Rounds both parts to doubles.
[[gnu::always_inline]] inline quad stored_pair(reg hi, reg lo) {
  return {by_store::part(hi), by_store::part(lo)};
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
template <class Leading, class Low = Leading>
[[gnu::always_inline]] inline quad closing_sum(reg s, reg t) {
  const reg hi = s + t;
  return {Leading::part(hi), Low::part((s - hi) + t)};
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
template <class Result = by_store>
[[gnu::always_inline]] inline quad scaled_by(const quad& a, reg power) {
  return {Result::part(Result::value(a.hi) * power), by_store::part(Result::value(a.lo) * power)};
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

template <class Result = by_store>
[[gnu::always_inline]] inline quad add(const quad& a, const quad& b) {
  const reg x = Result::value(a.hi), y = Result::value(b.hi);
  const reg s = x + y;
  return closing_sum<Result>(s, (sum_error(x, y, s) + Result::value(a.lo)) + Result::value(b.lo));
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad add(const quad& a, reg d) {
  const reg x = Result::value(a.hi);
  const reg s = x + d;
  return closing_sum<Result>(s, sum_error(x, d, s) + Result::value(a.lo));
}

/// a + b where the leading part of b is known not to be the smaller one: the error of the leading
/// sum by a fast two-sum.
[[gnu::always_inline]] inline quad add_to_larger(const quad& a, const quad& b) {
  const reg x = a.hi, y = b.hi;
  const reg s = x + y;
  return closing_sum<in_register>(s, ((x - (s - y)) + reg{a.lo}) + reg{b.lo});
}
[[gnu::always_inline]] inline quad add_to_larger(const quad& a, reg d) {
  const reg x = a.hi;
  const reg s = x + d;
  return closing_sum<in_register>(s, (x - (s - d)) + reg{a.lo});
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad sub(const quad& a, const quad& b) {
  const reg x = Result::value(a.hi), y = Result::value(b.hi);
  const reg s = x - y;
  return closing_sum<Result>(
      s, (difference_error(x, y, s) + Result::value(a.lo)) - Result::value(b.lo));
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad sub(const quad& a, reg d) {
  const reg x = Result::value(a.hi);
  const reg s = x - d;
  return closing_sum<Result>(s, difference_error(x, d, s) + Result::value(a.lo));
}

/// a - d where the difference of the leading parts is exact.
template <class Result>
[[gnu::always_inline]] inline quad sub_exact(const quad& a, reg d) {
  if constexpr (std::same_as<Result, by_store>) return sub(a, d);
  return closing_sum<in_register>(reg{a.hi} - d, 0.0L + reg{a.lo});
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad sub(reg d, const quad& b) {
  const reg y = Result::value(b.hi);
  const reg s = d - y;
  return closing_sum<Result>(s, difference_error(d, y, s) - Result::value(b.lo));
}

// --- Products ----------------------------------------------------------------------------------

/// A significand of 53 bits cut by Veltkamp's method, 2**k + 1 leaving 53 - k bits in `high`.
template <int k>
struct cut {
  reg high, low;

  [[gnu::always_inline]] explicit cut(reg x) {
    constexpr reg splitter = (std::int64_t{1} << k) + 1;
    const reg t = splitter * x;
    high = t + (x - t);
    low = x - high;
  }
};

/// a * b - p exactly, for p = a * b rounded: Dekker's product, summed from the leading term down.
/// The operands are cut at 32 bits and the low part of b once more, so that every partial product
/// fits 53 bits; which operands raise inexact follows from these cuts. The parts live in the
/// register's exponent range, so that neither end of a double's range needs scaling.
template <class Result = by_store>
[[gnu::always_inline]] inline reg product_error(reg a, reg b, reg p) {
  const cut<32> x(a), y(b), rest(y.low);
  const auto x_high = Result::cut_part(x.high), x_low = Result::cut_part(x.low);
  const auto y_high = Result::cut_part(y.high), y_low = Result::cut_part(y.low);
  const auto middle = Result::cut_part(rest.high), last = Result::cut_part(rest.low);
  return ((((reg{x_high} * reg{y_high} - p) + reg{x_high} * reg{y_low}) +
           reg{x_low} * reg{y_high}) +
          reg{x_low} * reg{middle}) +
         reg{x_low} * reg{last};
}

/// A factor or divisor cut in the middle, for several uses: four partial products do then.
struct factor {
  quad value;
  double high, low;

  constexpr reg hi() const { return value.hi; }
  constexpr reg lo() const { return value.lo; }
};
[[gnu::always_inline]] inline factor as_factor(const quad& a) {
  const cut<27> halves(a.hi);
  return {a, in_register::part(halves.high), in_register::part(halves.low)};
}
/// Of a constant, cut by its image.
constexpr factor constant_factor(const quad& a) {
  constexpr std::uint64_t low_bits = (std::uint64_t{1} << 27) - 1;
  const auto high = std::bit_cast<double>(std::bit_cast<std::uint64_t>(a.hi) & ~low_bits);
  return {a, high, static_cast<double>(reg{a.hi} - reg{high})};
}

/// The same number as above from four partial products.
[[gnu::always_inline]] inline reg product_error(const cut<27>& a, const factor& b, reg p) {
  return (((a.high * reg{b.high} - p) + a.high * reg{b.low}) + a.low * reg{b.high}) +
         a.low * reg{b.low};
}

/// a * b exactly, as the rounded product and its error.
template <class Result = by_store>
[[gnu::always_inline]] inline quad product(reg a, reg b) {
  const reg p = a * b;
  return stored_pair(p, product_error<Result>(a, b, p));
}

/// The same for a b of at most 26 bits.
[[gnu::always_inline]] inline quad product_with_short(reg a, reg b) {
  const reg p = a * b;
  const cut<27> halves(a);
  return {in_register::part(p), in_register::part((halves.high * b - p) + halves.low * b)};
}

/// The operands do not commute in the low bits: a.lo + a.hi rounds, b.hi does not take part in it.
[[gnu::always_inline]] inline quad mul(const quad& a, const factor& b) {
  const reg x = a.hi, low = a.lo;
  const reg p = x * b.hi();
  const reg error = product_error(cut<27>(x), b, p);
  return closing_sum<in_register, by_store>(p, ((low + x) * b.lo() + low * b.hi()) + error);
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad mul(const quad& a, const quad& b) {
  if constexpr (std::same_as<Result, in_register>) {
    return mul(a, as_factor(b));
  } else {
    const quad p = product<Result>(load(a.hi), load(b.hi));
    const reg t = ((load(a.lo) + load(a.hi)) * load(b.lo) + load(a.lo) * load(b.hi)) + load(p.lo);
    return closing_sum<by_store>(load(p.hi), t);
  }
}

[[gnu::always_inline]] inline quad mul(const quad& a, reg d) {
  const quad p = product(load(a.hi), d);
  return closing_sum<by_store>(load(p.hi), load(a.lo) * d + load(p.lo));
}

/// By a number of at most 26 bits.
template <class Result>
[[gnu::always_inline]] inline quad mul_by_short(const quad& a, reg d) {
  if constexpr (std::same_as<Result, by_store>) return mul(a, d);
  const quad p = product_with_short(a.hi, d);
  return closing_sum<in_register, by_store>(p.hi, reg{a.lo} * d + reg{p.lo});
}

/// By a power of two: the product of the leading part has no error.
template <class Result>
[[gnu::always_inline]] inline quad mul_by_power(const quad& a, reg power) {
  if constexpr (std::same_as<Result, by_store>) return mul(a, power);
  return closing_sum<in_register, by_store>(reg{a.hi} * power, reg{a.lo} * power + 0.0L);
}

/// a * k for an integer k: both products exact, then one sum. The short ways give a zero whatever a
/// holds, a itself and -a.
template <class Result = by_store>
[[gnu::always_inline]] inline quad mul_integer(const quad& a, std::int32_t k) {
  if (k == 0) return zero;
  if (k == 1) return a;
  if (k == -1) return neg(a);
  const reg multiple = load_integer(k);
  if constexpr (std::same_as<Result, in_register>)
    return add<in_register>(product_with_short(a.hi, multiple), product_with_short(a.lo, multiple));
  return add(product(load(a.hi), multiple), product(load(a.lo), multiple));
}

// --- Quotients ---------------------------------------------------------------------------------
// One correction step on the quotient of the leading parts. Of the product divisor times quotient
// it is the quotient that takes the two-level split. Its difference from the dividend is a double,
// which comes out the same without the rounded product between.

[[gnu::always_inline]] inline reg remainder_of(reg dividend, reg quotient, const factor& b) {
  const cut<27> q(quotient);
  return (((dividend - q.high * reg{b.high}) - q.high * reg{b.low}) - q.low * reg{b.high}) -
         q.low * reg{b.low};
}

[[gnu::always_inline]] inline quad div(const quad& a, const factor& b) {
  const reg q1 = reg{a.hi} / b.hi();
  const reg r = (remainder_of(a.hi, q1, b) + reg{a.lo}) - q1 * b.lo();
  return closing_sum<in_register, by_store>(q1, r / (b.lo() + b.hi()));
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad div(const quad& a, const quad& b) {
  if constexpr (std::same_as<Result, in_register>) return div(a, as_factor(b));
  const reg q1 = stored<double>(load(a.hi) / load(b.hi));
  const quad p = product(load(b.hi), q1);
  const reg r = (((load(a.hi) - load(p.hi)) - load(p.lo)) + load(a.lo)) - q1 * load(b.lo);
  return closing_sum<by_store>(q1, r / (load(b.lo) + load(b.hi)));
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad div(const quad& a, reg d) {
  if constexpr (std::same_as<Result, in_register>) {
    const reg q1 = reg{a.hi} / d;
    const reg r = remainder_of(a.hi, q1, as_factor(widened(d))) + reg{a.lo};
    return closing_sum<in_register, by_store>(q1, r / d);
  }
  const reg q1 = stored<double>(load(a.hi) / d);
  const quad p = product(d, q1);
  const reg r = ((load(a.hi) - load(p.hi)) - load(p.lo)) + load(a.lo);
  return closing_sum<by_store>(q1, r / d);
}

/// By a number of at most 26 bits.
template <class Result>
[[gnu::always_inline]] inline quad div_by_short(const quad& a, reg d) {
  if constexpr (std::same_as<Result, by_store>) return div(a, d);
  const reg q1 = reg{a.hi} / d;
  const cut<27> q(q1);
  const reg r = ((reg{a.hi} - q.high * d) - q.low * d) + reg{a.lo};
  return closing_sum<in_register, by_store>(q1, r / d);
}

template <class Result = by_store>
[[gnu::always_inline]] inline quad div(reg d, const quad& b) {
  if constexpr (std::same_as<Result, in_register>) {
    const reg q1 = d / reg{b.hi};
    const reg r = remainder_of(d, q1, as_factor(b)) - q1 * reg{b.lo};
    return closing_sum<in_register, by_store>(q1, r / (reg{b.lo} + reg{b.hi}));
  }
  const reg q1 = stored<double>(d / load(b.hi));
  const quad p = product(load(b.hi), q1);
  const reg r = ((d - load(p.hi)) - load(p.lo)) - q1 * load(b.lo);
  return closing_sum<by_store>(q1, r / (load(b.lo) + load(b.hi)));
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
