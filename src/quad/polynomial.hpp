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

/// A numerator of degree n over a monic denominator of degree d, tables highest power first.
template <std::size_t numerator_rows, std::size_t denominator_rows>
[[gnu::always_inline]] inline quad rational(const quad& x, const quad (&numerator)[numerator_rows],
                                            const quad (&denominator)[denominator_rows]) {
  const quad top = polynomial(x, numerator, numerator_rows - 1);
  return div(top, monic_polynomial(x, denominator, denominator_rows));
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
