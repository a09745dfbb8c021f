#pragma once

// Operands from a fixed integer generator: the same bits in every build and on every machine.

#include <array>
#include <cstdint>
#include <string_view>

#include "callable.hpp"

namespace digest {

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
  alignas(16) std::array<unsigned char, 64> text[2];
  std::array<unsigned char, 64> target;
  std::array<std::int32_t, 4> integers;
  alignas(16) std::array<unsigned char, 16> written;
  alignas(16) std::array<unsigned char, 16 * table_rows> table;
};

/// One call of an entry: its operands, and what their addresses point to.
struct tuple {
  std::array<explorer::image, 6> operands;
  workspace room;
};

void draw(const explorer::entry& e, generator& random, tuple& call);

}  // namespace digest
