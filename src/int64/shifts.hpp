#pragma once

// Shifts of 64-bit integers that are defined for every count: a negative count acts like one of 64
// or more.

#include <cstdint>

namespace zrt::int64 {

/// Left, zero fill.
constexpr std::int64_t shifted_left(std::int64_t x, std::int32_t count) {
  const auto n = static_cast<std::uint32_t>(count);
  return n < 64 ? static_cast<std::int64_t>(static_cast<std::uint64_t>(x) << n) : 0;
}

/// Right, zero fill.
constexpr std::int64_t shifted_right(std::int64_t x, std::int32_t count) {
  const auto n = static_cast<std::uint32_t>(count);
  return n < 64 ? static_cast<std::int64_t>(static_cast<std::uint64_t>(x) >> n) : 0;
}

/// Right, sign fill.
constexpr std::int64_t shifted_right_arithmetically(std::int64_t x, std::int32_t count) {
  const auto n = static_cast<std::uint32_t>(count);
  return x >> (n < 64 ? n : 63);
}

}  // namespace zrt::int64
