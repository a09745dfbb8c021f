#pragma once

// What tests, digests and benchmarks add to the table of all entries: memory for pointers, and
// operands to call with. They come from a fixed integer generator: the same bits in every build and
// on every machine.

#include <array>
#include <cstdint>

#include "callable.hpp"

namespace support {

using explorer::entry;
using explorer::form;
using explorer::same_in_both_forms;
using explorer::sample;
using explorer::size_of;
using operand = explorer::image;

inline std::span<const entry> all_entries() { return explorer::entries(); }

/// splitmix64.
class generator {
 public:
  explicit generator(std::uint64_t seed) : state_(seed) {}
  std::uint64_t operator()() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return z ^ z >> 31;
  }
  /// 0 to count - 1.
  std::uint32_t below(std::uint32_t count) { return static_cast<std::uint32_t>((*this)() % count); }

 private:
  std::uint64_t state_;
};

/// FNV-1a, 64 bits.
class hash {
 public:
  void operator()(const void* data, std::size_t size) {
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < size; ++i) value_ = (value_ ^ bytes[i]) * 0x100000001B3;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325;
};

/// Memory that the address operands of one call point to.
struct workspace {
  static constexpr std::uint32_t longest_text = 24, table_rows = 12;
  std::array<char, 64> text[2];
  std::array<char, 64> target;
  std::array<std::int32_t, 4> integers;
  alignas(8) std::array<double, 2> written;
  alignas(8) std::array<double, 2 * table_rows> table;
};

/// Texts that differ little, integers and REAL*16 of every size.
void fill(workspace& room, generator& random);

/// From where operands are taken: the sample of the list (without one, integers from the whole type
/// and REALs from -10 to 10), or that among special values, thresholds, halves and every magnitude.
enum class spread { sampled, everywhere };

/// Draws an operand; addresses point into `room`.
operand draw(char code, sample range, spread over, generator& random, workspace& room);

/// One call of an entry: its operands, and what their addresses point to.
struct tuple {
  std::array<operand, 6> operands;
  workspace room;
};

/// Draws operands from everywhere; beside a table the degree is one that it holds.
void draw(const entry& e, generator& random, tuple& call);

}  // namespace support
