#pragma once

// Complex values in registers, and how they leave: COMPLEX*8 as the images of its parts, COMPLEX*16
// through the result address.

#include "frame/entry.hpp"

namespace zrt::complex {

/// Both parts as the registers hold them.
struct parts {
  reg re, im;
};

/// Rounds both parts to single and hands them back.
[[gnu::always_inline]] inline complex8_result returned_complex8(parts z) {
  return returned_complex(stored_image<float>(z.re), stored_image<float>(z.im));
}

/// Rounds both parts to double at the result address, and hands that back.
[[gnu::always_inline]] inline dcomplex* returned_complex16(dcomplex* result, parts z) {
  result->re = static_cast<double>(z.re);
  result->im = static_cast<double>(z.im);
  return result;
}

/// Neither part compares unequal to zero: each is a zero of either sign or a NaN.
[[gnu::always_inline]] inline bool both_compare_equal_to_zero(reg re, reg im) {
  return compares_equal(re, 0.0L) && compares_equal(im, 0.0L);
}

}  // namespace zrt::complex
