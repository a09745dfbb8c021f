#pragma once

// A table as a picture: the operand that runs on the one axis, every number of the result on the
// other.

#include <string>
#include <vector>

#include "evaluation.hpp"

namespace explorer {

class plot {
 public:
  /// The operand at `place` runs; `unreadable` where an entry gives no number.
  plot(const entry& e, const std::vector<std::string>& words, std::size_t place);

  void add(const evaluation& call);

  /// As SVG; false where the file cannot be written, `unreadable` where no result is finite.
  bool write(const std::string& file) const;

 private:
  struct line {
    std::string name;
    std::vector<long double> values;
  };

  std::string title_, operand_;
  std::size_t place_;
  char operand_code_;
  std::vector<long double> places_;
  std::vector<line> lines_;
};

}  // namespace explorer
