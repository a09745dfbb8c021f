#pragma once

// Every entry of the list, callable at run time: operands and results are images in memory, so that
// no NaN changes on its way in or out, in any build.

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "type_codes.hpp"

namespace explorer {

enum class form { value, reference, plain };

/// Bounds of random operands; both zero where the list gives none.
struct sample {
  double low, high;
};

/// An operand or result as it lies in memory, in the first size_of(code) bytes; an operand by
/// address holds the address.
struct image {
  alignas(16) std::array<unsigned char, 32> bytes{};
};

struct outcome {
  image result;              // a REAL result rounded to its format
  bool in_register = false;  // i386: a REAL result as the FPU register held it
  std::array<unsigned char, 10> register_image{};
  unsigned flags = 0;  // sticky x87 exception flags that the call raised
};

struct entry {
  const char* name;  // the stem, with I_ for a reference entry
  const char* family;
  form kind;
  char result;             // type codes as in the head of exports.list
  std::string_view codes;  // one for each operand
  std::array<sample, 6> samples;
  void (*address)();
  outcome (*call)(const entry&, const image* operands);

  /// REAL*16, COMPLEX*16 and COMPLEX*32 results go through an address.
  bool result_at_address() const { return size_of(result) > 8; }
  outcome operator()(std::span<const image> operands) const { return call(*this, operands.data()); }
};

std::span<const entry> entries();

struct description {
  std::string_view names;     // of the operands, with blanks between them
  const char* documentation;  // lines
};
const description& description_of(const entry& e);

struct constant {
  const char* name;
  int width;  // in bits
  std::uint64_t bits;
};
/// The exported constants, as this process reads them.
std::span<const constant> constants();

}  // namespace explorer
