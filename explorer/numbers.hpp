#pragma once

// Numbers as words, by type code: images in memory on the one side, text on the other. What is
// written reads back as the same bits.

#include <cstdint>
#include <string>

#include "callable.hpp"
#include "evaluation.hpp"

namespace explorer {

/// Reads a word as a value of the code; `unreadable` otherwise.
image read_number(char code, const std::string& word);

std::string decimal_of(char code, const image& value);
/// Hexadecimal images of the parts, with commas between them.
std::string bits_of(char code, const image& value);

/// Pieces between separators; those inside parentheses or brackets do not count.
std::vector<std::string> pieces(const std::string& text, char separator);

}  // namespace explorer
