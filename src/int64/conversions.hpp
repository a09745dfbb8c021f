#pragma once

// Conversion between 64-bit integers and values on the FPU stack, for the rooms above.

#include "frame/sections.hpp"

namespace zrt::int64 {

inline constexpr std::int64_t largest = INT64_MAX;
inline constexpr std::int64_t smallest = INT64_MIN;

/// Cut toward zero, saturated. Every NaN gives the largest integer: it is not below 2**63.
[[gnu::always_inline]] inline std::int64_t to_integer(reg x) {
  if (!greater(0x1p63L, x)) return largest;
  if (!less(-0x1p63L, x)) return smallest;
  return truncated_to_int64(x);
}

/// An integer from 2**63 on, cut toward zero to the significand of F: its top bit is the implicit
/// one.
template <format F>
inline reg upper_half(std::uint64_t a) {
  constexpr image_of<F> exponent = layout<F>::bias + 63;
  constexpr image_of<F> fraction = (image_of<F>{1} << layout<F>::fraction_bits) - 1;
  const auto top = static_cast<image_of<F>>(a >> (63 - layout<F>::fraction_bits));
  return load_image<F>(exponent << layout<F>::fraction_bits | (top & fraction));
}

/// The unsigned integer: exact below 2**63, from there on cut toward zero to the significand of F.
template <format F>
[[gnu::always_inline]] inline reg from_unsigned(const std::uint64_t& a) {
  // A signed and an unsigned integer may share their storage.
  const auto& as_signed = reinterpret_cast<const std::int64_t&>(a);
  return as_signed >= 0 ? load_integer(as_signed) : upper_half<F>(a);
}

}  // namespace zrt::int64
