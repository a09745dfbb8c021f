#pragma once

// Functions of REAL*8 and REAL*4 on lanes: the steps of src/real, with a choice where those branch.

#include "arrays/real_lanes.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

using real::identity_below;

/// No lane is rare: within the limits a small r vanishes beside 0.5, and a result at the end of the
/// range is rounded once.
template <format F>
ZRT_INLINE values natural_exponential(const values& x, choice&) {
  using c = real::exponential_constants<F>;
  std::int32_t slot;
  const whole_values n = truncated_whole(x * c::log2_e + with_sign_of(values(0.5), x), slot);
  const values half = real::half_exponential<F>(real::less_multiple_of_ln_2<F>(x, n.value));
  const values r = scaled<F>(stored<F>(half), n);
  const values above = chosen(less_equal(x, c::upper), r, __builtin_inf());
  return chosen(less(x, c::lower), 0.0, above);
}

/// No lane is rare: of a REAL*8 below the identity's limit the polynomial gives f itself.
template <format F, bool is_cosine>
ZRT_INLINE values sine_or_cosine(const values& x, choice&) {
  using c = real::circular_constants<F>;
  const values a = fabs(x);
  const values y = is_cosine ? stored<F>(a + c::half_pi) : a;
  std::int32_t slot;
  const whole_values n = truncated_whole(y * c::reciprocal_pi + 0.5, slot);
  const values f = real::less_multiple_of_pi<F>(a, is_cosine ? n.value - 0.5 : n.value);
  values r = real::sine_polynomial<F>(f);
  if constexpr (std::same_as<F, float>) r = chosen(less(fabs(f), identity_below<F>), f, r);
  r = flipped_by(odd_sign(n), r);
  if constexpr (!is_cosine) r = flipped_by(sign_of(x + 0.0), r);  // -0.0 is not negative
  return chosen(less_equal(y, c::limit), r, 0.0);
}
template <format F>
ZRT_INLINE values sine(const values& x, choice& rare) {
  return sine_or_cosine<F, false>(x, rare);
}
template <format F>
ZRT_INLINE values cosine(const values& x, choice& rare) {
  return sine_or_cosine<F, true>(x, rare);
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
