#pragma once

// 64-bit multiplication, division and remainder as kernels, for the rooms above. Division and
// remainder are the entries themselves.

#include "frame/entry.hpp"
#include "int64/signs.hpp"

namespace zrt::int64 {

/// What signed division gives for a zero divisor.
inline constexpr std::int64_t signed_by_zero = INT64_MAX;

/// The low 64 bits of a * b, the same for signed and unsigned numbers.
constexpr std::int64_t product(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

/// a / b toward zero. A zero divisor gives the largest integer; the smallest integer by -1 wraps.
std::int64_t quotient(std::int64_t a, std::int64_t b) ZRT_DIRECT(ldiv);

/// The remainder, with the sign of a. A zero divisor gives the largest integer.
std::int64_t remainder(std::int64_t a, std::int64_t b) ZRT_DIRECT(lmod);

}  // namespace zrt::int64
