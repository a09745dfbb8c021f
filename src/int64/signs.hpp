#pragma once

// Signs of integers of every width, without a branch and wrapping to the width.

#include <concepts>
#include <type_traits>

namespace zrt::int64 {

/// All ones for a negative x, else zero.
template <std::signed_integral Integer>
constexpr Integer sign_mask(Integer x) {
  return static_cast<Integer>(x >> (8 * sizeof x - 1));
}

/// x where the mask is zero, -x where it is all ones.
template <std::signed_integral Integer>
constexpr Integer negated_by(Integer x, Integer mask) {
  using bits = std::make_unsigned_t<Integer>;
  return static_cast<Integer>(static_cast<bits>(x ^ mask) - static_cast<bits>(mask));
}

/// |x| as an unsigned number; the smallest integer is its own magnitude.
template <std::signed_integral Integer>
constexpr std::make_unsigned_t<Integer> magnitude(Integer x) {
  return static_cast<std::make_unsigned_t<Integer>>(negated_by(x, sign_mask(x)));
}

}  // namespace zrt::int64
