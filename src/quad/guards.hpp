#pragma once

// Which magnitudes are ordinary: one place for the promise that the ways of the arithmetic give
// equal bits, and the arithmetic on doubles that keeps it.
//
// On doubles a step differs from the register's where it leaves the normal range: it overflows, or
// a subnormal is flushed, as an operand or as a result. Each operation below is computed first. Its
// result stands where
//  - `is_sure` finds that what a flush could have changed, at most 2**-765, lies too far below the
//    low part of the result to have shown in any rounding on the way, or
//  - every part is a zero or of a size at which all products, errors and sums are zeros or normal
//    (`are_plain`): these are mostly whole numbers, whose low parts are zeros.
// An overflow, an infinity or a NaN anywhere leaves no finite low part. Everything else goes to
// stored_arithmetic. Zeros have the same signs in both: an exact error is +0.0, fused or not.
//
//   operation     sure: leading parts of operands, low part of the result    plain
//   sum           any,          [2**-800, 2**1000)                           [2**-900, 2**1000)
//   product       [2**-256, 2**256),  [2**-690, 2**1000)                     [2**-450, 2**450)
//   quotient      [2**-128, 2**128),  [2**-560, 2**1000)                     [2**-225, 2**225)
//   root          positive in [2**-256, 2**256), low part zero or in [2**-400, 2**400)
//
// Sum: a flushed part or error of a sum is below 2**-1020; where |t| is below 2**-850, the low part
// of the result is at most 3 |t|. Product: a flushed partial product is below 2**-765, and next to
// a low part of 2**-690 each sum it enters is either above 2**-701, where 2**-765 is less than a
// quarter of a unit, or joins the error of the leading product, zero or at least 2**-616. Quotient:
// where q1 b.lo is flushed, the divisor is at least 2**-128 and r at least 2**-690. Plain: the last
// bit of every term is worth at least 2**-1006.

#include "quad/arithmetic.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

/// Whether this model computes on doubles.
inline constexpr bool on_doubles = !std::same_as<ordinary, reg>;

/// The magnitude of an image and the exponent field of a power of two, both moved up by the sign.
#if defined(__i386__)
using magnitude_image = std::uint32_t;
[[gnu::always_inline]] inline magnitude_image magnitude_of(const double& x) {
  return static_cast<std::uint32_t>(image(x) >> 32) << 1;
}
#else
using magnitude_image = std::uint64_t;
[[gnu::always_inline]] inline magnitude_image magnitude_of(const double& x) {
  return image(x) << 1;
}
#endif
constexpr magnitude_image power_image(int exponent) {
  return static_cast<magnitude_image>(exponent + layout<double>::bias)
         << (8 * sizeof(magnitude_image) - 11);
}

/// Whether |x| lies in [2**low, 2**high).
template <int low, int high>
[[gnu::always_inline]] inline bool within(const double& x) {
  return magnitude_of(x) - power_image(low) < power_image(high) - power_image(low);
}
template <int low, int high>
[[gnu::always_inline]] inline bool zero_or_within(const double& x) {
  return (image(x) << 1 == 0) | within<low, high>(x);
}
/// Whether every part is a zero or lies in [2**-limit, 2**limit).
template <int low, int high, class... Parts>
[[gnu::always_inline]] inline bool are_plain(const Parts&... parts) {
  return (zero_or_within<low, high>(parts) & ...);
}

/// Whether a low part lets a kernel take its direct steps. The register's range takes any; on
/// doubles it is zero or lies between 2**-300 and 2**100.
[[gnu::always_inline]] inline bool has_ordinary_low(const quad& a) {
  return !on_doubles || zero_or_within<-300, 100>(a.lo);
}
/// The same for a leading part in [2**low, 2**high).
template <int low, int high>
[[gnu::always_inline]] inline bool is_ordinary(const quad& a) {
  return within<low, high>(a.hi) & has_ordinary_low(a);
}

#if defined(__x86_64__)
}  // namespace ZRT_MODEL

/// The operations of stored_arithmetic as functions, for the rare operands.
namespace rare {
quad add(quad a, quad b);
quad add(quad a, double d);
quad sub(quad a, quad b);
quad sub(quad a, double d);
quad sub(double d, quad b);
quad product(double a, double b);
quad mul(quad a, quad b);
quad mul(quad a, double d);
quad div(quad a, quad b);
quad div(quad a, double d);
quad div(double d, quad b);
quad square_root(quad a);
quad scaled(quad a, std::int32_t n);
quad scaled_by(quad a, double power);
}  // namespace rare

inline namespace ZRT_MODEL {

/// direct_arithmetic on doubles for all operands.
struct guarded_arithmetic {
  using value = double;
  using steps = direct_arithmetic<double>;
  static constexpr bool is_direct = false;

  [[gnu::always_inline]] static double operand(double x) { return x; }
  [[gnu::always_inline]] static double part_of(double x) { return x; }
  [[gnu::always_inline]] static quad neg(const quad& a) { return steps::neg(a); }
  [[gnu::always_inline]] static quad magnitude(const quad& a) { return steps::magnitude(a); }
  [[gnu::always_inline]] static double leading(const quad& a) { return a.hi; }

  template <class... Parts>
  [[gnu::always_inline]] static bool is_sum(const quad& r, const Parts&... parts) {
    return within<-800, 1000>(r.lo) || are_plain<-900, 1000>(parts...);
  }
  [[gnu::always_inline]] static quad add(const quad& a, const quad& b) {
    const quad r = steps::add(a, b);
    return is_sum(r, a.hi, a.lo, b.hi, b.lo) ? r : rare::add(a, b);
  }
  [[gnu::always_inline]] static quad add(const quad& a, double d) {
    const quad r = steps::add(a, d);
    return is_sum(r, a.hi, a.lo, d) ? r : rare::add(a, d);
  }
  [[gnu::always_inline]] static quad sub(const quad& a, const quad& b) {
    const quad r = steps::sub(a, b);
    return is_sum(r, a.hi, a.lo, b.hi, b.lo) ? r : rare::sub(a, b);
  }
  [[gnu::always_inline]] static quad sub(const quad& a, double d) {
    const quad r = steps::sub(a, d);
    return is_sum(r, a.hi, a.lo, d) ? r : rare::sub(a, d);
  }
  [[gnu::always_inline]] static quad sub(double d, const quad& b) {
    const quad r = steps::sub(d, b);
    return is_sum(r, d, b.hi, b.lo) ? r : rare::sub(d, b);
  }
  [[gnu::always_inline]] static quad sub_exact(const quad& a, double d) { return sub(a, d); }

  template <class... Parts>
  [[gnu::always_inline]] static bool is_product(const quad& r, double x, double y,
                                                const Parts&... parts) {
    return (within<-256, 256>(x) & within<-256, 256>(y) & within<-690, 1000>(r.lo)) ||
           are_plain<-450, 450>(x, y, parts...);
  }
  [[gnu::always_inline]] static quad product(double a, double b) {
    const quad r = steps::product(a, b);
    return are_plain<-450, 450>(a, b) ? r : rare::product(a, b);
  }
  [[gnu::always_inline]] static quad mul(const quad& a, const quad& b) {
    const quad r = steps::mul(a, b);
    return is_product(r, a.hi, b.hi, a.lo, b.lo) ? r : rare::mul(a, b);
  }
  [[gnu::always_inline]] static quad mul(const quad& a, double d) {
    const quad r = steps::mul(a, d);
    return is_product(r, a.hi, d, a.lo) ? r : rare::mul(a, d);
  }
  [[gnu::always_inline]] static quad mul_by_short(const quad& a, double d) { return mul(a, d); }
  [[gnu::always_inline]] static quad mul_by_power(const quad& a, double d) { return mul(a, d); }
  [[gnu::always_inline]] static quad mul_integer(const quad& a, std::int32_t k) {
    if (k == 0) return zero;
    if (k == 1) return a;
    if (k == -1) return neg(a);
    return add(product(a.hi, k), product(a.lo, k));
  }

  template <class... Parts>
  [[gnu::always_inline]] static bool is_quotient(const quad& r, double x, double y,
                                                 const Parts&... parts) {
    return (within<-128, 128>(x) & within<-128, 128>(y) & within<-560, 1000>(r.lo)) ||
           (are_plain<-225, 225>(x, y, parts...) && zero_or_within<-1000, 1000>(r.lo));
  }
  [[gnu::always_inline]] static quad div(const quad& a, const quad& b) {
    const quad r = steps::div(a, b);
    return is_quotient(r, a.hi, b.hi, a.lo, b.lo) ? r : rare::div(a, b);
  }
  [[gnu::always_inline]] static quad div(const quad& a, double d) {
    const quad r = steps::div(a, d);
    return is_quotient(r, a.hi, d, a.lo) ? r : rare::div(a, d);
  }
  [[gnu::always_inline]] static quad div_by_short(const quad& a, double d) { return div(a, d); }
  [[gnu::always_inline]] static quad div(double d, const quad& b) {
    const quad r = steps::div(d, b);
    return is_quotient(r, d, b.hi, b.lo) ? r : rare::div(d, b);
  }

  [[gnu::always_inline]] static quad square_root(const quad& a) {
    const bool positive = image(a.hi) >> 63 == 0;
    return positive & within<-256, 256>(a.hi) & zero_or_within<-400, 400>(a.lo)
               ? steps::square_root(a)
               : rare::square_root(a);
  }

  /// Exact where each part is zero or its multiple normal.
  [[gnu::always_inline]] static bool is_multiple(const quad& r, const quad& a) {
    return ((magnitude_of(a.hi) == 0) | within<-1000, 1000>(r.hi)) &
           ((magnitude_of(a.lo) == 0) | within<-1000, 1000>(r.lo));
  }
  [[gnu::always_inline]] static quad scaled(const quad& a, std::int32_t n) {
    if (n <= -1000 || n >= 1000) return rare::scaled(a, n);
    const quad r = steps::scaled(a, n);
    return is_multiple(r, a) ? r : rare::scaled(a, n);
  }
  [[gnu::always_inline]] static quad scaled_by(const quad& a, double power) {
    const quad r = steps::scaled_by(a, power);
    return is_multiple(r, a) ? r : rare::scaled_by(a, power);
  }
};
#endif

// --- What a kernel takes ------------------------------------------------------------------------

/// For an entry's own steps, on doubles where the build has them.
#if defined(__x86_64__)
using at_entry = guarded_arithmetic;
#else
using at_entry = stored_arithmetic;
#endif

/// For ordinary magnitudes.
using direct = direct_arithmetic<ordinary>;
/// For all operands of a kernel of this model.
#if defined(__x86_64__)
using general = std::conditional_t<on_doubles, guarded_arithmetic, stored_arithmetic>;
#else
using general = stored_arithmetic;
#endif

/// The operand of an entry for routines that work in registers: loaded, so that no NaN in it
/// signals.
[[gnu::always_inline]] inline quad loaded(const quad& a) {
  return {as_double(load<ordinary>(a.hi)), as_double(load<ordinary>(a.lo))};
}

/// Runs the steps directly where the operands are ordinary, else by the general arithmetic.
template <class Steps>
[[gnu::always_inline]] inline auto by_magnitude(bool is_ordinary, Steps steps) {
  return is_ordinary ? steps(direct{}) : steps(general{});
}

/// The order of a and b by the leading part of their difference: 1, 0 or -1. A NaN there counts as
/// equal, and an infinite operand gives one.
[[gnu::always_inline]] inline std::int32_t compare(const quad& a, const quad& b) {
  const ordinary difference = general::leading(general::sub(a, b));
  if (greater(difference, 0.0)) return 1;
  return compares_equal(difference, 0.0) ? 0 : -1;
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
