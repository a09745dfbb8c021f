#pragma once

// Polynomials with REAL*16 coefficients, and the reduction of an argument.

#include "quad/guards.hpp"
#include "real/rounding.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

/// c[0] x**n + ... + c[n] by Horner's rule, every step a normalised quad.
template <class A = general>
[[gnu::always_inline]] inline quad polynomial(const quad& x, const quad* c, std::int32_t n) {
  quad r = c[0];
  for (std::int32_t i = 1; i <= n; ++i) r = A::add(A::mul(r, x), c[i]);
  return r;
}

/// x**n + c[0] x**(n-1) + ... + c[n-1]: the leading coefficient 1 is stored nowhere.
template <class A = general>
[[gnu::always_inline]] inline quad monic_polynomial(const quad& x, const quad* c, std::int32_t n) {
  quad r = A::add(x, c[0]);
  for (std::int32_t i = 1; i < n; ++i) r = A::add(A::mul(r, x), c[i]);
  return r;
}

/// Whether every coefficient but the last `close_rows` exceeds what Horner's rule adds it to, for
/// |x| up to `bound`; of a monic polynomial also the first.
template <int n>
constexpr bool exceeds_sums(const quad (&c)[n], int close_rows, double bound, bool monic) {
  const auto size = [&c](int i) { return c[i].hi < 0 ? -c[i].hi : c[i].hi; };
  double sum = monic ? 1.0 : size(0);
  for (int i = monic ? 0 : 1; i < n - close_rows; ++i) {
    if (!(sum * bound < 0.999 * size(i))) return false;
    sum = sum * bound + size(i);
  }
  return true;
}

/// A numerator over a monic denominator, tables highest power first. Directly the two run side by
/// side on one cut of x, and the last `close_rows` coefficients of each need not exceed what is
/// added to them.
template <class A, int close_rows = 0, int n, int m>
[[gnu::always_inline]] inline auto rational(const auto& x, const quad (&numerator)[n],
                                            const quad (&denominator)[m]) {
  if constexpr (!A::is_direct) {
    return A::div(polynomial<A>(x, numerator, n - 1), monic_polynomial<A>(x, denominator, m));
  } else {
    const auto f = A::as_factor(x);
    typename A::number top = numerator[0], bottom = A::add_to_larger(x, denominator[0]);
    int i = 1;
    for (; i < n - m + 1; ++i) top = A::add_to_larger(A::mul(top, f), numerator[i]);
    for (; i < n - close_rows; ++i) {
      top = A::add_to_larger(A::mul(top, f), numerator[i]);
      bottom = A::add_to_larger(A::mul(bottom, f), denominator[i - n + m]);
    }
    for (; i < n; ++i) {
      top = A::add(A::mul(top, f), numerator[i]);
      bottom = A::add(A::mul(bottom, f), denominator[i - n + m]);
    }
    return A::div(top, bottom);
  }
}

/// An argument less a whole multiple of a modulus.
struct reduction {
  ordinary quotient;  // the whole number nearest x / y, ties away from zero
  quad remainder;
};

/// x - n y from exact products, the leading term first, for a y that is neither zero nor a NaN. The
/// remainder lies in about [-|y|/2, |y|/2] with the error of y times n. Where the quotient has lost
/// its units the remainder leaves [-|y|, |y|] and is taken for zero. Infinities and NaNs in x give
/// NaNs.
inline reduction reduce(const quad& x, const quad& y) {
  using A = general;
  using V = A::value;
  const V t = A::leading(A::div(x, y));
  const double rounded = static_cast<double>(less(t, 0.0) ? t - 0.5 : t + 0.5);
  V n;
  if constexpr (on_doubles)
    n = static_cast<double>(static_cast<std::int64_t>(rounded));  // the quotient is below 2**63
  else
    n = real::integral_part(rounded);
  const quad above = A::sub(widened(A::operand(x.hi)), A::product(n, A::operand(y.hi)));
  const quad below = A::add(widened(A::operand(x.lo)), above);
  const quad r = A::sub(below, A::product(n, A::operand(y.lo)));
  if (greater_equal(fabs(A::operand(r.hi)), fabs(A::operand(y.hi))) &&
      compare(A::magnitude(r), A::magnitude(y)) > 0)
    return {n, zero};
  return {n, r};
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
