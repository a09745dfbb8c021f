#pragma once

// What the character families share: lengths, blanks and blank runs.
//
// A CHARACTER operand is an address and a length, without a terminator. The blank is the byte 0x20
// and no other. Nothing here reads or writes a byte outside an operand.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zrt::character {

inline constexpr char blank = ' ';

/// A length as a count of bytes: a negative one counts as 0.
constexpr std::size_t extent(std::int32_t length) {
  return length > 0 ? static_cast<std::size_t>(length) : 0;
}

/// Stores `count` blanks.
inline void fill_blanks(char* text, std::size_t count) { std::memset(text, blank, count); }

namespace blanks {

// Runs are compared in blocks by the C library, at the speed of memory, then in words.
inline constexpr std::size_t block_size = 256;
struct block {
  char text[block_size];
  constexpr block() : text() {
    for (char& byte : text) byte = blank;
  }
};
inline constexpr block one_block;

using word = std::uint64_t;
inline constexpr word one_word = 0x2020202020202020;

/// What differs from blanks in the word at `text`: 0 for eight blanks.
inline word excess(const char* text) {
  word value;
  std::memcpy(&value, text, sizeof value);
  return value ^ one_word;
}

inline bool is_block(const char* text) {
  return std::memcmp(text, one_block.text, block_size) == 0;
}

}  // namespace blanks

/// The number of characters that stand before the trailing blanks.
inline std::size_t length_without_trailing(const char* text, std::size_t length) {
  if (length == 0 || text[length - 1] != blank) return length;
  while (length >= blanks::block_size && blanks::is_block(text + length - blanks::block_size))
    length -= blanks::block_size;
  for (; length >= sizeof(blanks::word); length -= sizeof(blanks::word)) {
    const blanks::word excess = blanks::excess(text + length - sizeof(blanks::word));
    if (excess != 0) return length - static_cast<std::size_t>(std::countl_zero(excess)) / 8;
  }
  while (length > 0 && text[length - 1] == blank) --length;
  return length;
}

/// The number of leading blanks.
inline std::size_t leading_blanks(const char* text, std::size_t length) {
  if (length == 0 || text[0] != blank) return 0;
  std::size_t at = 0;
  while (length - at >= blanks::block_size && blanks::is_block(text + at)) at += blanks::block_size;
  for (; length - at >= sizeof(blanks::word); at += sizeof(blanks::word)) {
    const blanks::word excess = blanks::excess(text + at);
    if (excess != 0) return at + static_cast<std::size_t>(std::countr_zero(excess)) / 8;
  }
  while (at < length && text[at] == blank) ++at;
  return at;
}

}  // namespace zrt::character
