#pragma once

// What tests and benchmarks add to the table of all entries: memory for pointers, and operands to
// call with.

#include <array>
#include <cstdint>
#include <random>

#include "callable.hpp"

namespace support {

using explorer::entry;
using explorer::form;
using explorer::same_in_both_forms;
using explorer::sample;
using explorer::size_of;
using operand = explorer::image;

inline std::span<const entry> all_entries() { return explorer::entries(); }

inline bool result_at_address(const entry& e) {
  return e.result == 'z' || e.result == 'q' || e.result == 'x';
}

/// Memory that the pointer operands of one call point to.
struct workspace {
  std::array<char, 64> text[2];
  std::array<char, 64> target;
  std::array<std::int32_t, 4> integers;
  alignas(8) std::array<double, 2> written;
  std::array<double, 32> table;
};

/// Draws an operand: numbers from the sample (or, without one, from the whole type for integers and
/// from -10..10 for reals), a REAL*16 with a tail below half a unit of its head, addresses into
/// `room`.
operand draw(char code, sample bounds, std::mt19937& random, workspace& room);

}  // namespace support
