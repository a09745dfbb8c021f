/** The steps of REAL*16 arithmetic on doubles, for constant expressions and, on x86-64, in line.
 *
 *  They are the steps of the entries qadd, qmul, qdiv and their kin. An entry computes them in the
 *  exponent range of the x87 register; where every intermediate result is a normal double or a zero
 *  the bits are the same, rounding to nearest provided, and FTZ and DAZ have no part in it. The
 *  guards below tell when that is so; the entry has the other operands.
 *
 *  Every operation is held: no option of the program's compiler (-Ofast, -ffp-contract, -march)
 *  changes a bit.
 */
#ifndef ZORVIKRT_INLINE_ARITHMETIC_HPP
#define ZORVIKRT_INLINE_ARITHMETIC_HPP

#include <zorvikrt/types.hpp>

namespace zorvikrt {
namespace detail {

/// Whether the steps are taken here; where not, a call of the entry. Define ZORVIKRT_NO_INLINE
/// before the first header of the library for calls only.
constexpr bool in_line() {
#if defined(__x86_64__) && !defined(ZORVIKRT_NO_INLINE)
  return true;
#else
  return in_constant();
#endif
}

// --- Operations on doubles ---------------------------------------------------------------------

constexpr double plus(double a, double b) { return held(a + b); }
constexpr double minus(double a, double b) { return held(a - b); }
constexpr double times(double a, double b) { return held(a * b); }

// Instructions of their own, for -Ofast divides by multiplying with a reciprocal.
inline double divided(double a, double b) {
#if defined(__x86_64__) && defined(__AVX__)
  double quotient;
  __asm__("vdivsd %2, %1, %0" : "=x"(quotient) : "x"(a), "xm"(b));
  return quotient;
#elif defined(__x86_64__)
  __asm__("divsd %1, %0" : "+x"(a) : "xm"(b));
  return a;
#else
  return a / b;
#endif
}
inline double root(double a) {
#if defined(__x86_64__) && defined(__AVX__)
  double result;
  __asm__("vsqrtsd %1, %1, %0" : "=x"(result) : "x"(a));
  return result;
#elif defined(__x86_64__)
  __asm__("sqrtsd %0, %0" : "+x"(a));
  return a;
#else
  return __builtin_sqrt(a);
#endif
}
constexpr double over(double a, double b) { return in_constant() ? a / b : divided(a, b); }

/// What s = a + b has lost by rounding (Knuth's two-sum), and s = a - b.
constexpr double sum_error(double a, double b, double s) {
  const double g = minus(a, s);
  return plus(plus(b, g), minus(a, plus(g, s)));
}
constexpr double difference_error(double a, double b, double s) {
  const double g = minus(a, s);
  return plus(minus(g, b), minus(a, plus(g, s)));
}

/// The upper 26 bits of a double, by Veltkamp's method.
constexpr double upper_half(double a) {
  const double t = times(0x1.0000002p27, a);
  return plus(t, minus(a, t));
}
/// a * b - p, exactly, for p = a * b rounded: fused, or by Dekker's four partial products.
constexpr double product_error(double a, double b, double p) {
#ifdef __FMA__
  if (!in_constant()) return held(__builtin_fma(a, b, held(-p)));
#endif
  const double a_high = upper_half(a), a_low = minus(a, a_high);
  const double b_high = upper_half(b), b_low = minus(b, b_high);
  const double upper = minus(times(a_high, b_high), p);
  const double middle = plus(plus(upper, times(a_high, b_low)), times(a_low, b_high));
  return plus(middle, times(a_low, b_low));
}
/// a - b * q, exactly, for q = a / b rounded: fused, or the partial products taken off one by one.
constexpr double remainder_of(double a, double b, double q) {
#ifdef __FMA__
  if (!in_constant()) return held(__builtin_fma(held(-q), b, a));
#endif
  const double q_high = upper_half(q), q_low = minus(q, q_high);
  const double b_high = upper_half(b), b_low = minus(b, b_high);
  const double upper = minus(a, times(q_high, b_high));
  const double middle = minus(minus(upper, times(q_high, b_low)), times(q_low, b_high));
  return minus(middle, times(q_low, b_low));
}

/// s + t of |s| >= |t|, and what that has lost.
constexpr real16 closing_sum(double s, double t) {
  const double hi = plus(s, t);
  return {hi, plus(minus(s, hi), t)};
}

// --- Steps -------------------------------------------------------------------------------------

constexpr real16 sum_of(const real16& a, const real16& b) {
  const double s = plus(a.hi, b.hi);
  return closing_sum(s, plus(plus(sum_error(a.hi, b.hi, s), a.lo), b.lo));
}
constexpr real16 sum_of(const real16& a, double b) {
  const double s = plus(a.hi, b);
  return closing_sum(s, plus(sum_error(a.hi, b, s), a.lo));
}

constexpr real16 difference_of(const real16& a, const real16& b) {
  const double s = minus(a.hi, b.hi);
  return closing_sum(s, minus(plus(difference_error(a.hi, b.hi, s), a.lo), b.lo));
}
constexpr real16 difference_of(const real16& a, double b) {
  const double s = minus(a.hi, b);
  return closing_sum(s, plus(difference_error(a.hi, b, s), a.lo));
}
constexpr real16 difference_of(double a, const real16& b) {
  const double s = minus(a, b.hi);
  return closing_sum(s, minus(difference_error(a, b.hi, s), b.lo));
}

constexpr real16 product_of(const real16& a, const real16& b) {
  const double p = times(a.hi, b.hi);
  const double low = plus(times(plus(a.lo, a.hi), b.lo), times(a.lo, b.hi));
  return closing_sum(p, plus(low, product_error(a.hi, b.hi, p)));
}
constexpr real16 product_of(const real16& a, double b) {
  const double p = times(a.hi, b);
  return closing_sum(p, plus(times(a.lo, b), product_error(a.hi, b, p)));
}
/// By an integer: both products exactly, then their sum. 0, 1 and -1 do not compute.
constexpr real16 multiple_of(const real16& a, double k) {
  const double high = times(a.hi, k), low = times(a.lo, k);
  return sum_of({high, product_error(a.hi, k, high)}, {low, product_error(a.lo, k, low)});
}

constexpr real16 quotient_of(const real16& a, const real16& b) {
  const double q = over(a.hi, b.hi);
  const double r = minus(plus(remainder_of(a.hi, b.hi, q), a.lo), times(q, b.lo));
  return closing_sum(q, over(r, plus(b.lo, b.hi)));
}
constexpr real16 quotient_of(const real16& a, double b) {
  const double q = over(a.hi, b);
  return closing_sum(q, over(plus(remainder_of(a.hi, b, q), a.lo), b));
}
constexpr real16 quotient_of(double a, const real16& b) {
  const double q = over(a, b.hi);
  const double r = minus(remainder_of(a, b.hi, q), times(q, b.lo));
  return closing_sum(q, over(r, plus(b.lo, b.hi)));
}

inline real16 root_of(const real16& a) {
  const double s = root(a.hi);
  const double r = times(plus(remainder_of(a.hi, s, s), a.lo), 0.5);
  return closing_sum(s, over(r, s));
}

// --- Guards ------------------------------------------------------------------------------------
// On the images: the exponent as an integer, the sign shifted out.

/// 2**low <= |x| < 2**high.
constexpr bool between(double x, int low, int high) {
  const std::uint64_t from = static_cast<std::uint64_t>(low + 1023) << 53;
  return (image(x) << 1) - from < static_cast<std::uint64_t>(high - low) << 53;
}
constexpr bool zero_or_between(double x, int low, int high) {
  return between(x, low, high) || image(x) << 1 == 0;
}
template <class... Parts>
constexpr bool all_zero_or_between(int low, int high, Parts... parts) {
  return (zero_or_between(parts, low, high) && ...);
}

constexpr double hi(const real16& a) { return a.hi; }
constexpr double hi(double a) { return a; }
constexpr double lo(const real16& a) { return a.lo; }
constexpr double lo(double) { return 0; }

// Each guard in two steps, the second one for what the first refuses.

/// A low part of 2**-800 or more in the result: what any operation could have lost below 2**-1022
/// lies more than 53 bits below the operand that it meets.
template <class A, class B>
constexpr bool certain_sum(const real16& result, const A&, const B&) {
  return between(result.lo, -800, 1000);
}
/// Parts of 2**-900 or more: every intermediate sum is a multiple of 2**-952.
template <class Result, class A, class B>
constexpr bool certain_sum_of_parts(const Result&, const A& a, const B& b) {
  return all_zero_or_between(-900, 1000, hi(a), lo(a), hi(b), lo(b));
}

/// Leading parts within 2**256 and a low part of 2**-690 or more: the error of the leading product
/// is a multiple of 2**-616, what the low products lose is below that by more than 53 bits, or
/// itself the low part.
template <class A, class B>
constexpr bool certain_product(const real16& result, const A& a, const B& b) {
  return between(hi(a), -256, 256) && between(hi(b), -256, 256) && between(result.lo, -690, 1000);
}
/// Parts within 2**450: every partial product is a multiple of 2**-1004.
template <class A, class B>
constexpr bool certain_product_of_parts(const real16&, const A& a, const B& b) {
  return all_zero_or_between(-450, 450, hi(a), lo(a), hi(b), lo(b));
}

/// Leading parts within 2**128 and a low part of 2**-560 or more: the remainder is a multiple of
/// 2**-489, the divisor at least 2**-182.
template <class A, class B>
constexpr bool certain_quotient(const real16& result, const A& a, const B& b) {
  return between(hi(a), -128, 128) && between(hi(b), -128, 128) && between(result.lo, -560, 1000);
}
/// Parts within 2**225: the remainder is a multiple of 2**-780. A divisor of zero shows in the
/// result.
template <class A, class B>
constexpr bool certain_quotient_of_parts(const real16& result, const A& a, const B& b) {
  return all_zero_or_between(-225, 225, hi(a), lo(a), hi(b), lo(b)) && is_finite(result.hi) &&
         is_finite(result.lo);
}

/// A positive leading part within 2**256 and a low part of 2**-400 or more: the remainder is a
/// multiple of 2**-452.
inline bool certain_root(const real16& a) {
  return between(a.hi, -256, 256) && image(a.hi) >> 63 == 0 && zero_or_between(a.lo, -400, 256);
}

}  // namespace detail
}  // namespace zorvikrt

#endif
