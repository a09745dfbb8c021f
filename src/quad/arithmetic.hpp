#pragma once

// Double-double arithmetic, inline, for everything that computes with REAL*16 values. All of it
// rests on error-free transformations: the two-sum of Knuth and the product of Veltkamp and Dekker.
// No operand is tested. Infinities turn into NaNs, because the error terms are differences of an
// operand with itself.
//
// It comes in two ways with the same bits, each a struct with its operations side by side:
//   stored_arithmetic     in registers of the x87, each part rounded by a store: all operands
//   direct_arithmetic<V>  on values V without a store between, for magnitudes at which none would
//                         change anything: V is `reg`, `double`, or lanes of doubles
// guards.hpp tells which magnitudes are these, and adds the arithmetic on doubles for all operands.

#include "quad/values.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

// --- Shared by both ways ------------------------------------------------------------------------

/// What s = x + y has lost by rounding.
template <class V>
[[gnu::always_inline]] inline V sum_error(V x, V y, V s) {
  const V g = x - s;
  return (y + g) + (x - (g + s));
}

/// What s = x - y has lost by rounding.
template <class V>
[[gnu::always_inline]] inline V difference_error(V x, V y, V s) {
  const V g = x - s;
  return (g - y) + (x - (g + s));
}

/// A significand of 53 bits cut by Veltkamp's method, 2**k + 1 leaving 53 - k bits in `high`.
template <int k, class V>
struct cut {
  V high, low;

  [[gnu::always_inline]] explicit cut(V x) {
    constexpr double splitter = (std::int64_t{1} << k) + 1;
    const V t = x * splitter;
    high = t + (x - t);
    low = x - high;
  }
};

// --- By stores ----------------------------------------------------------------------------------

/// Takes operands that are stored doubles, by loads of their own: a signalling NaN is quiet before
/// it meets another NaN. Gives results rounded by stores, whatever they are; in between, each
/// operation rounds to 53 bits and keeps the register's exponent range.
struct stored_arithmetic {
  using value = reg;
  static constexpr bool is_direct = false;

  [[gnu::always_inline]] static reg operand(const double& x) { return load(x); }
  [[gnu::always_inline]] static double part_of(reg x) { return static_cast<double>(x); }

  [[gnu::always_inline]] static quad neg(const quad& a) {
    return stored_pair(fchs(load(a.hi)), fchs(load(a.lo)));
  }
  [[gnu::always_inline]] static quad magnitude(const quad& a) {
    return less(load(a.hi), 0.0) ? neg(a) : a;
  }
  /// The leading part of a result of which nothing else is wanted. The low part is formed and
  /// stored all the same: no compiler may leave out the flags that it raises.
  [[gnu::always_inline]] static reg leading(const quad& a) {
    asm volatile("" : : "m"(a.lo));
    return load(a.hi);
  }

  /// The closing sum of a leading part s and a correction t, a fast two-sum and the only
  /// renormalisation: exact for |s| >= |t|. The difference takes the sum as it stands in the
  /// register.
  [[gnu::always_inline]] static quad closing_sum(reg s, reg t) {
    const reg hi = s + t;
    return stored_pair(hi, (s - hi) + t);
  }

  /// a * 2**n: both factors are exact in the register, so that each part is rounded once, by its
  /// store, which is also where it overflows or goes subnormal. Beyond 2240 either way the result
  /// of every double is the same.
  static quad scaled(const quad& a, std::int32_t n) {
    constexpr std::int32_t limit = 64 * last_high_power;
    n = n > limit ? limit : n < -limit ? -limit : n;
    const reg high = high_powers[static_cast<std::size_t>((n >> 6) + last_high_power)];
    const reg low = load(low_powers[static_cast<std::size_t>(n & 63)]);
    return stored_pair(load(a.hi) * low * high, load(a.lo) * low * high);
  }
  /// a * p for a power of two p: exact but for the store.
  [[gnu::always_inline]] static quad scaled_by(const quad& a, reg power) {
    return stored_pair(load(a.hi) * power, load(a.lo) * power);
  }

  // The low parts join the error of the leading sum, a's first, in rounded additions of their own:
  // the error of a sum is about 2**-105 of the larger operand.
  [[gnu::always_inline]] static quad add(const quad& a, const quad& b) {
    const reg x = load(a.hi), y = load(b.hi);
    const reg s = x + y;
    return closing_sum(s, (sum_error(x, y, s) + load(a.lo)) + load(b.lo));
  }
  [[gnu::always_inline]] static quad add(const quad& a, reg d) {
    const reg x = load(a.hi);
    const reg s = x + d;
    return closing_sum(s, sum_error(x, d, s) + load(a.lo));
  }
  [[gnu::always_inline]] static quad sub(const quad& a, const quad& b) {
    const reg x = load(a.hi), y = load(b.hi);
    const reg s = x - y;
    return closing_sum(s, (difference_error(x, y, s) + load(a.lo)) - load(b.lo));
  }
  [[gnu::always_inline]] static quad sub(const quad& a, reg d) {
    const reg x = load(a.hi);
    const reg s = x - d;
    return closing_sum(s, difference_error(x, d, s) + load(a.lo));
  }
  [[gnu::always_inline]] static quad sub(reg d, const quad& b) {
    const reg y = load(b.hi);
    const reg s = d - y;
    return closing_sum(s, difference_error(d, y, s) - load(b.lo));
  }
  [[gnu::always_inline]] static quad sub_exact(const quad& a, reg d) { return sub(a, d); }

  /// a * b - p exactly, for p = a * b rounded: Dekker's product, summed from the leading term down.
  /// The operands are cut at 32 bits and the low part of b once more, so that every partial product
  /// fits 53 bits; which operands raise inexact follows from these cuts. The parts live in the
  /// register's exponent range, so that neither end of a double's range needs scaling; where they
  /// are known to be doubles, `Part` says so, which saves long spills.
  template <class Part = reg>
  [[gnu::always_inline]] static reg product_error(reg a, reg b, reg p) {
    const auto part = [](reg x) -> Part {
      if constexpr (std::same_as<Part, double>)
        return as_double(x);
      else
        return x;
    };
    const cut<32, reg> x(a), y(b), rest(y.low);
    const Part x_high = part(x.high), x_low = part(x.low);
    const Part y_high = part(y.high), y_low = part(y.low);
    const Part middle = part(rest.high), last = part(rest.low);
    return ((((reg{x_high} * reg{y_high} - p) + reg{x_high} * reg{y_low}) +
             reg{x_low} * reg{y_high}) +
            reg{x_low} * reg{middle}) +
           reg{x_low} * reg{last};
  }
  /// a * b exactly, as the rounded product and its error.
  template <class Part = reg>
  [[gnu::always_inline]] static quad product(reg a, reg b) {
    const reg p = a * b;
    return stored_pair(p, product_error<Part>(a, b, p));
  }

  /// The operands do not commute in the low bits: a.lo + a.hi rounds, b.hi does not take part in
  /// it.
  template <class Part = reg>
  [[gnu::always_inline]] static quad mul(const quad& a, const quad& b) {
    const quad p = product<Part>(load(a.hi), load(b.hi));
    const reg t = ((load(a.lo) + load(a.hi)) * load(b.lo) + load(a.lo) * load(b.hi)) + load(p.lo);
    return closing_sum(load(p.hi), t);
  }
  [[gnu::always_inline]] static quad mul(const quad& a, reg d) {
    const quad p = product(load(a.hi), d);
    return closing_sum(load(p.hi), load(a.lo) * d + load(p.lo));
  }
  [[gnu::always_inline]] static quad mul_by_short(const quad& a, reg d) { return mul(a, d); }
  [[gnu::always_inline]] static quad mul_by_power(const quad& a, reg power) {
    return mul(a, power);
  }
  /// a * k for an integer k: both products exact, then one sum. The short ways give a zero whatever
  /// a holds, a itself and -a.
  [[gnu::always_inline]] static quad mul_integer(const quad& a, std::int32_t k) {
    if (k == 0) return zero;
    if (k == 1) return a;
    if (k == -1) return neg(a);
    const reg multiple = load_integer(k);
    return add(product(load(a.hi), multiple), product(load(a.lo), multiple));
  }

  // One correction step on the quotient of the leading parts. Of the product divisor times quotient
  // it is the quotient that takes the two-level split.
  [[gnu::always_inline]] static quad div(const quad& a, const quad& b) {
    const reg q1 = stored<double>(load(a.hi) / load(b.hi));
    const quad p = product(load(b.hi), q1);
    const reg r = (((load(a.hi) - load(p.hi)) - load(p.lo)) + load(a.lo)) - q1 * load(b.lo);
    return closing_sum(q1, r / (load(b.lo) + load(b.hi)));
  }
  [[gnu::always_inline]] static quad div(const quad& a, reg d) {
    const reg q1 = stored<double>(load(a.hi) / d);
    const quad p = product(d, q1);
    const reg r = ((load(a.hi) - load(p.hi)) - load(p.lo)) + load(a.lo);
    return closing_sum(q1, r / d);
  }
  [[gnu::always_inline]] static quad div_by_short(const quad& a, reg d) { return div(a, d); }
  [[gnu::always_inline]] static quad div(reg d, const quad& b) {
    const reg q1 = stored<double>(d / load(b.hi));
    const quad p = product(load(b.hi), q1);
    const reg r = ((d - load(p.hi)) - load(p.lo)) - q1 * load(b.lo);
    return closing_sum(q1, r / (load(b.lo) + load(b.hi)));
  }

  /// The root that `fsqrt` gives to 53 bits, and one Newton correction from its exact square:
  /// 2**-105, and less near the bottom of the range, where the low part of the square goes
  /// subnormal. Below zero the library's NaN; zeros and NaNs give +0.0, infinity NaNs.
  [[gnu::always_inline]] static quad square_root(const quad& a) {
    const reg x = load(a.hi);
    if (less(x, 0.0)) return invalid;
    if (compares_equal(x, 0.0)) return zero;
    const reg s = stored<double>(fsqrt(x));
    const quad p = product(s, s);
    const reg r = (((x - load(p.hi)) - load(p.lo)) + load(a.lo)) * 0.5;
    return closing_sum(s, r / s);
  }
};

// --- Without stores -----------------------------------------------------------------------------

/// The type of a part, and of a pair of them, for values V. For `reg` a part is the promise that
/// the register holds a double.
template <class V>
struct parts_of {
  using part = double;
  using number = quad;
};

[[gnu::always_inline]] inline double rounded(reg x) { return static_cast<double>(x); }
[[gnu::always_inline]] inline double rounded(double x) { return x; }

/// For operands whose leading parts are zero or lie between 2**-400 and 2**400.
///  - A product of leading parts is normal, and its error a multiple of 2**-1022 or more.
///  - The leading part of a product or quotient has about its size; where a large low part cancels
///    it, it is a multiple of that part's last bit.
///  - Both parts of a sum are sums of doubles: multiples of 2**-1074, and thus doubles.
///  - The low part of a product or quotient may be as small as it likes: a register's is rounded.
/// An infinity or a NaN is the same before and after its store.
template <class V>
struct direct_arithmetic {
  using value = V;
  using part = typename parts_of<V>::part;
  using number = typename parts_of<V>::number;
  static constexpr bool is_direct = true;
  static constexpr bool fused = has_fused_operations && !std::same_as<V, reg>;

  [[gnu::always_inline]] static V operand(part x) { return x; }
  [[gnu::always_inline]] static part part_of(V x) { return as_double(x); }
  [[gnu::always_inline]] static number neg(const number& a) {
    return {as_double(fchs(V{a.hi})), as_double(fchs(V{a.lo}))};
  }
  [[gnu::always_inline]] static number magnitude(const number& a) {
    return less(V{a.hi}, 0.0) ? neg(a) : a;
  }
  [[gnu::always_inline]] static V leading(const number& a) { return a.hi; }

  [[gnu::always_inline]] static number closing_sum(V s, V t) {
    const V hi = s + t;
    return {as_double(hi), as_double((s - hi) + t)};
  }
  /// The same of a product or quotient.
  [[gnu::always_inline]] static number closing_product(V s, V t) {
    const V hi = s + t;
    return {as_double(hi), rounded((s - hi) + t)};
  }

  /// a * 2**n for a power within the range of doubles.
  [[gnu::always_inline]] static number scaled(const number& a, std::int32_t n) {
    const auto field = static_cast<std::uint64_t>(n + layout<double>::bias);
    return scaled_by(a, load_image<double, V>(field << layout<double>::fraction_bits));
  }
  [[gnu::always_inline]] static number scaled_by(const number& a, V power) {
    return {as_double(a.hi * power), rounded(a.lo * power)};
  }

  [[gnu::always_inline]] static number add(const number& a, const number& b) {
    const V x = a.hi, y = b.hi;
    const V s = x + y;
    return closing_sum(s, (sum_error(x, y, s) + a.lo) + b.lo);
  }
  [[gnu::always_inline]] static number add(const number& a, V d) {
    const V x = a.hi;
    const V s = x + d;
    return closing_sum(s, sum_error(x, d, s) + a.lo);
  }
  /// a + b where the leading part of b is known not to be the smaller one: the error of the leading
  /// sum by a fast two-sum.
  [[gnu::always_inline]] static number add_to_larger(const number& a, const number& b) {
    const V x = a.hi, y = b.hi;
    const V s = x + y;
    return closing_sum(s, ((x - (s - y)) + a.lo) + b.lo);
  }
  [[gnu::always_inline]] static number add_to_larger(const number& a, V d) {
    const V x = a.hi;
    const V s = x + d;
    return closing_sum(s, (x - (s - d)) + a.lo);
  }
  [[gnu::always_inline]] static number sub(const number& a, const number& b) {
    const V x = a.hi, y = b.hi;
    const V s = x - y;
    return closing_sum(s, (difference_error(x, y, s) + a.lo) - b.lo);
  }
  [[gnu::always_inline]] static number sub(const number& a, V d) {
    const V x = a.hi;
    const V s = x - d;
    return closing_sum(s, difference_error(x, d, s) + a.lo);
  }
  [[gnu::always_inline]] static number sub(V d, const number& b) {
    const V y = b.hi;
    const V s = d - y;
    return closing_sum(s, difference_error(d, y, s) - b.lo);
  }
  /// a - d where the difference of the leading parts is exact.
  [[gnu::always_inline]] static number sub_exact(const number& a, V d) {
    const V x = a.hi, low = a.lo;
    return closing_sum(x - d, 0.0 + low);
  }

  /// A factor or divisor cut in the middle, for several uses: four partial products do then. Fused
  /// operations leave the pieces unused.
  struct factor {
    number value;
    part high, low;

    constexpr V hi() const { return value.hi; }
    constexpr V lo() const { return value.lo; }
  };
  [[gnu::always_inline]] static factor as_factor(const number& a) {
    const cut<27, V> halves(a.hi);
    return {a, as_double(halves.high), as_double(halves.low)};
  }
  /// Of a constant, cut by its image.
  static constexpr factor constant_factor(const quad& a) {
    constexpr std::uint64_t low_bits = (std::uint64_t{1} << 27) - 1;
    const auto high = std::bit_cast<double>(std::bit_cast<std::uint64_t>(a.hi) & ~low_bits);
    return {a, high, static_cast<double>(reg{a.hi} - reg{high})};
  }

  /// a * b.hi - p exactly, for p = a * b.hi rounded.
  [[gnu::always_inline]] static V product_error(V a, const factor& b, V p) {
    if constexpr (fused) {
      return fused_sum(a, b.hi(), -p);
    } else {
      const cut<27, V> x(a);
      return (((x.high * b.high - p) + x.high * b.low) + x.low * b.high) + x.low * b.low;
    }
  }
  [[gnu::always_inline]] static number product(V a, V b) {
    const V p = a * b;
    return {as_double(p), rounded(product_error(a, as_factor(widened(b)), p))};
  }
  /// a * b exactly for a b of at most 26 bits.
  [[gnu::always_inline]] static number product_with_short(V a, V b) {
    const V p = a * b;
    if constexpr (fused) {
      return {as_double(p), as_double(fused_sum(a, b, -p))};
    } else {
      const cut<27, V> halves(a);
      return {as_double(p), as_double((halves.high * b - p) + halves.low * b)};
    }
  }

  /// The same for an a of at most 26 bits.
  [[gnu::always_inline]] static number multiple(V a, const factor& b) {
    const V p = a * b.hi();
    if constexpr (fused)
      return {as_double(p), as_double(fused_sum(a, b.hi(), -p))};
    else
      return {as_double(p), as_double((a * b.high - p) + a * b.low)};
  }

  [[gnu::always_inline]] static number mul(const number& a, const factor& b) {
    const V x = a.hi, low = a.lo;
    const V p = x * b.hi();
    const V error = product_error(x, b, p);
    return closing_product(p, ((low + x) * b.lo() + low * b.hi()) + error);
  }
  [[gnu::always_inline]] static number mul(const number& a, const number& b) {
    return mul(a, as_factor(b));
  }
  [[gnu::always_inline]] static number mul(const number& a, V d) {
    const V x = a.hi, low = a.lo;
    const V p = x * d;
    return closing_product(p, low * d + product_error(x, as_factor(widened(d)), p));
  }
  /// By a number of at most 26 bits.
  [[gnu::always_inline]] static number mul_by_short(const number& a, V d) {
    const number p = product_with_short(a.hi, d);
    const V low = a.lo;
    return closing_product(p.hi, low * d + p.lo);
  }
  /// By a power of two: the product of the leading part has no error.
  [[gnu::always_inline]] static number mul_by_power(const number& a, V power) {
    return closing_product(a.hi * power, a.lo * power + 0.0);
  }
  [[gnu::always_inline]] static number mul_integer(const number& a, std::int32_t k) {
    if (k == 0) return zero;
    if (k == 1) return a;
    if (k == -1) return neg(a);
    const V multiple = load_integer<V>(k);
    return add(product_with_short(a.hi, multiple), product_with_short(a.lo, multiple));
  }

  /// dividend - quotient * b.hi, a double: the same without the rounded product between.
  [[gnu::always_inline]] static V remainder_of(V dividend, V quotient, const factor& b) {
    if constexpr (fused) {
      return fused_sum(-quotient, b.hi(), dividend);
    } else {
      const cut<27, V> q(quotient);
      return (((dividend - q.high * b.high) - q.high * b.low) - q.low * b.high) - q.low * b.low;
    }
  }
  [[gnu::always_inline]] static number div(const number& a, const factor& b) {
    const V q1 = V{a.hi} / b.hi();
    const V r = (remainder_of(a.hi, q1, b) + a.lo) - q1 * b.lo();
    return closing_product(q1, r / (b.lo() + b.hi()));
  }
  [[gnu::always_inline]] static number div(const number& a, const number& b) {
    return div(a, as_factor(b));
  }
  [[gnu::always_inline]] static number div(const number& a, V d) {
    const V q1 = V{a.hi} / d;
    const V r = remainder_of(a.hi, q1, as_factor(widened(d))) + a.lo;
    return closing_product(q1, r / d);
  }
  /// By a number of at most 26 bits.
  [[gnu::always_inline]] static number div_by_short(const number& a, V d) {
    const V x = a.hi;
    const V q1 = x / d;
    if constexpr (fused) {
      return closing_product(q1, (fused_sum(-q1, d, x) + a.lo) / d);
    } else {
      const cut<27, V> q(q1);
      return closing_product(q1, (((x - q.high * d) - q.low * d) + a.lo) / d);
    }
  }
  [[gnu::always_inline]] static number div(V d, const number& b) {
    const V q1 = d / b.hi, low = b.lo;
    const V r = remainder_of(d, q1, as_factor(b)) - q1 * low;
    return closing_product(q1, r / (low + b.hi));
  }

  /// Of a positive number.
  [[gnu::always_inline]] static number square_root(const number& a) {
    const V x = a.hi;
    const V s = fsqrt(x);
    const V r = (remainder_of(x, s, as_factor(widened(s))) + a.lo) * 0.5;
    return closing_product(s, r / s);
  }
};

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
