#pragma once

// Polynomials with REAL*16 coefficients, and the reduction of an argument.

#include "quad/quad.hpp"
#include "real/rounding.hpp"

namespace zrt::quads {

/// c[0] x**n + ... + c[n] by Horner's rule, every step a normalised quad.
[[gnu::always_inline]] inline quad polynomial(const quad& x, const quad* c, std::int32_t n) {
  quad r = c[0];
  for (std::int32_t i = 1; i <= n; ++i) r = add(mul(r, x), c[i]);
  return r;
}

/// x**n + c[0] x**(n-1) + ... + c[n-1]: the leading coefficient 1 is stored nowhere.
[[gnu::always_inline]] inline quad monic_polynomial(const quad& x, const quad* c, std::int32_t n) {
  quad r = add(x, c[0]);
  for (std::int32_t i = 1; i < n; ++i) r = add(mul(r, x), c[i]);
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

/// A numerator over a monic denominator, tables highest power first. In registers the two run side
/// by side on one cut of x, and the last `close_rows` coefficients of each need not exceed what is
/// added to them.
template <class Result, int close_rows = 0, int n, int m>
[[gnu::always_inline]] inline quad rational(const quad& x, const quad (&numerator)[n],
                                            const quad (&denominator)[m]) {
  if constexpr (std::same_as<Result, by_store>) {
    return div(polynomial(x, numerator, n - 1), monic_polynomial(x, denominator, m));
  } else {
    const factor f = as_factor(x);
    quad top = numerator[0], bottom = add_to_larger(x, denominator[0]);
    int i = 1;
    for (; i < n - m + 1; ++i) top = add_to_larger(mul(top, f), numerator[i]);
    for (; i < n - close_rows; ++i) {
      top = add_to_larger(mul(top, f), numerator[i]);
      bottom = add_to_larger(mul(bottom, f), denominator[i - n + m]);
    }
    for (; i < n; ++i) {
      top = add<in_register>(mul(top, f), numerator[i]);
      bottom = add<in_register>(mul(bottom, f), denominator[i - n + m]);
    }
    return div<in_register>(top, bottom);
  }
}

/// An argument less a whole multiple of a modulus.
struct reduction {
  reg quotient;  // the whole number nearest x / y, ties away from zero
  quad remainder;
};

/// x - n y from exact products, the leading term first, for a y that is neither zero nor a NaN. The
/// remainder lies in about [-|y|/2, |y|/2] with the error of y times n. Where the quotient has lost
/// its units the remainder leaves [-|y|, |y|] and is taken for zero. Infinities and NaNs in x give
/// NaNs.
inline reduction reduce(const quad& x, const quad& y) {
  const reg t = leading(div(x, y));
  const double rounded = static_cast<double>(less(t, 0.0L) ? t - 0.5L : t + 0.5L);
  const reg n = real::integral_part(rounded);
  const quad above = sub(widened(load(x.hi)), product(n, load(y.hi)));
  const quad below = add(widened(load(x.lo)), above);
  const quad r = sub(below, product(n, load(y.lo)));
  if (greater_equal(fabs(load(r.hi)), fabs(load(y.hi))) && compare(magnitude(r), magnitude(y)) > 0)
    return {n, zero};
  return {n, r};
}

}  // namespace zrt::quads
