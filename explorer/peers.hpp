#pragma once

// The answers of single libraries, as numbers and as they write them.

#include <array>
#include <optional>
#include <span>
#include <string>

#include "callable.hpp"
#include "libraries.hpp"

namespace explorer {

enum class shape { one, two, turned_one, turned_two, complex_one, complex_two, modulus };

/// A row of counterparts.inc.
struct counterpart {
  shape is;
  const char* stems;  // with blanks between them
  const char* name;   // in the C library; - where it has none
  const char* exact;  // behind mpfr_ or mpc_
  void (*single)(),
      (*twice)();  // the C library's for REAL*4 and REAL*8; null in rows of other types

  bool is_complex() const { return is >= shape::complex_one; }
  bool has_function() const { return name[0] != '-'; }
};

std::span<const counterpart> counterparts();

/// A REAL to more than twice the digits of any format: the rest lies below the last place of head.
struct precise {
  wide head = 0, rest = 0;
};

struct peer_answer {
  std::array<precise, 2> parts;
  std::string decimal;
};

/// The real or imaginary part of a number of any type code.
precise part_of(char code, const image& value, int part);
/// value * 2**exponent; infinite or zero beyond the range.
wide scaled(wide value, long exponent);

/// Nothing where the library or the function is missing.
std::optional<peer_answer> c_library_answer(const counterpart& c, const entry& e,
                                            const image* operands);
std::optional<peer_answer> libquadmath_answer(const counterpart& c, const entry& e,
                                              const image* operands);
std::optional<peer_answer> exact_answer(const counterpart& c, const entry& e,
                                        const image* operands);

}  // namespace explorer
