#pragma once

// Complex values in registers, and how they leave: COMPLEX*8 as the images of its parts, COMPLEX*16
// through the result address.

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::complex {

/// Both parts as the steps leave them, in registers or on doubles.
template <class V>
struct parts {
  V re, im;
};
using register_parts = parts<reg>;

/// Rounds both parts to single and hands them back.
template <class V>
[[gnu::always_inline]] inline complex8_result returned_complex8(parts<V> z) {
  return returned_complex(stored_image<float>(z.re), stored_image<float>(z.im));
}

/// Rounds both parts to double at the result address, and hands that back.
template <class V>
[[gnu::always_inline]] inline dcomplex* returned_complex16(dcomplex* result, parts<V> z) {
  result->re = static_cast<double>(z.re);
  result->im = static_cast<double>(z.im);
  return result;
}

/// Neither part compares unequal to zero: each is a zero of either sign or a NaN.
template <class V>
[[gnu::always_inline]] inline bool both_compare_equal_to_zero(V re, V im) {
  return compares_equal(re, 0.0) && compares_equal(im, 0.0);
}

/// ln 2 rounded to the format.
template <format F>
inline constexpr reg ln2 = std::same_as<F, double> ? 0x1.62e42fefa39efp-1L : 0x1.62e43p-1L;

}  // namespace zrt::complex
