#pragma once

// Texts of more than 16 bytes in blocks of 16, by SSE2; without it, and where a text is so long
// that a call costs nothing beside the work, by the memory functions of the C library.

#include "character/held_blocks.hpp"

namespace zrt::character {
namespace [[gnu::visibility("hidden")]] blocks {

/// Each takes `count` above `size`. Copying reads every byte before it stores one.
void copy(char* target, const char* source, std::size_t count);
void fill_blanks(char* text, std::size_t count);
/// Below, at or above 0.
int order(const char* a, const char* b, std::size_t count);
/// The length without the trailing blanks, and the number of leading ones.
std::size_t length_without_trailing(const char* text, std::size_t length);
std::size_t leading_blanks(const char* text, std::size_t length);

}  // namespace gnu::visibility("hidden")]]blocks
}  // namespace zrt::character
