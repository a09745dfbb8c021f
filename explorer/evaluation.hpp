#pragma once

// One call from words to words: operands read by their type codes, results written the same way.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "callable.hpp"

namespace explorer {

/// What cannot be read, in one line.
class unreadable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What of a result is shown.
struct columns {
  bool decimal = true, bits = true, in_register = false, flags = false;
};

std::string hexadecimal(std::uint64_t value, int digits);

/// `dmod(a REAL*8, p REAL*8) -> REAL*8`.
std::string signature(const entry& e);

/// How many words a call takes.
std::size_t given_operands(const entry& e);

/// The call of an entry with operands from words.
class evaluation {
 public:
  evaluation(const entry& e, const std::vector<std::string>& words);

  /// A value with its name: the result, or an operand that the call has written.
  struct shown_value {
    std::string name, decimal, bits;
    char code = 0;  // of a number
    image value;    // the number
  };
  std::vector<image> operands;
  std::vector<std::string> words;    // as they were given
  std::vector<shown_value> results;  // the result first, if there is one
  std::string register_image;        // empty where there is none
  std::string flags;
};

std::string text_row(const entry& e, const evaluation& call, columns shown);
/// With more cells at the end.
std::string csv_head(const entry& e, columns shown, const std::vector<std::string>& more = {});
std::string csv_row(const evaluation& call, columns shown,
                    const std::vector<std::string>& more = {});

/// The operand of a table that runs from one value to another, both included.
class running_operand {
 public:
  running_operand(const entry& e, std::size_t place, const std::string& from, const std::string& to,
                  long steps);
  std::string at(long step) const;

 private:
  char code_;
  image from_, to_;
  long steps_;
};

}  // namespace explorer
