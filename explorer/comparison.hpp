#pragma once

// What other libraries answer to the call of an entry: the C library, and libquadmath, MPFR and MPC
// where they are installed. They are loaded when they are asked for; nothing is linked to them.

#include <string>
#include <vector>

#include "evaluation.hpp"

namespace explorer {

struct counterpart;
struct peer;

class comparison {
 public:
  /// `unreadable` for an entry that no other library has.
  explicit comparison(const entry& e);

  struct answer {
    std::string library;
    std::string decimal;   // empty where the library is missing,
    std::string distance;  // of ours from it, in units of its last place, 2**-106 of it for REAL*16
    std::string why;       // and why it is
  };
  std::vector<answer> operator()(const evaluation& call) const;

  /// Each answer on a line of its own, behind a row of text.
  std::string text_lines(const evaluation& call) const;
  /// Cells for a row of comma-separated values, and their names.
  std::vector<std::string> csv_cells(const evaluation& call) const;
  std::vector<std::string> csv_names() const;

 private:
  const entry& entry_;
  const counterpart& counterpart_;
  std::vector<const peer*> peers_;
};

}  // namespace explorer
