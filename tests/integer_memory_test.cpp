// Reading and writing memory at a numeric address.

#include <gtest/gtest.h>

#include <array>

#include "entries.hpp"

namespace {

using bytes = std::array<unsigned char, 12>;
constexpr bytes pattern = {0x11, 0x80, 0x91, 0xA2, 0xB3, 0xC4, 0xD5, 0xE6, 0xF7, 0x08, 0x19, 0x2A};

std::uintptr_t address(const bytes& memory, std::size_t at) {
  return reinterpret_cast<std::uintptr_t>(&memory[at]);
}

}  // namespace

TEST(RawMemory, ReadsAtAnyAlignment) {
  for (std::size_t at = 0; at < 8; ++at) {
    const std::uint32_t little_endian = pattern[at] | std::uint32_t{pattern[at + 1]} << 8 |
                                        std::uint32_t{pattern[at + 2]} << 16 |
                                        std::uint32_t{pattern[at + 3]} << 24;
    EXPECT_EQ(__zorvik_byte(address(pattern, at)), static_cast<std::int8_t>(little_endian));
    EXPECT_EQ(__zorvik_word(address(pattern, at)), static_cast<std::int16_t>(little_endian));
    EXPECT_EQ(__zorvik_long(address(pattern, at)), static_cast<std::int32_t>(little_endian));
  }
}

TEST(RawMemory, WritesItsBytesAlone) {
  const auto value = static_cast<std::int32_t>(0xDEADBEEF);
  for (std::size_t at = 1; at < 8; ++at)
    for (const std::size_t size : {1, 2, 4}) {
      bytes memory = pattern, expected = pattern;
      for (std::size_t i = 0; i < size; ++i)
        expected[at + i] = static_cast<unsigned char>(0xDEADBEEF >> 8 * i);
      const auto write = size == 1 ? __zorvik_wbyte : size == 2 ? __zorvik_wword : __zorvik_wlong;
      write(address(memory, at), value);
      EXPECT_EQ(memory, expected) << at << ' ' << size;
    }
}
