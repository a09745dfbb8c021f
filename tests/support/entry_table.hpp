#pragma once

// Every export as a row: what the generator knows of it, its address, and operands to call it with.

#include <array>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>

namespace support {

/// Bounds of random operands; both zero where the list gives none.
struct sample {
  double low, high;
};

enum class form { value, reference, plain };

struct entry {
  const char* symbol;
  const char* stem;
  const char* family;
  form kind;
  char result;             // type codes as in the head of exports.list
  std::string_view codes;  // one for each operand
  std::array<sample, 6> samples;
  void (*address)();

  bool result_at_address() const { return result == 'z' || result == 'q' || result == 'x'; }
};

std::span<const entry> all_entries();

/// Bytes of an operand or result of this code in memory; 0 for none.
int size_of(char code);

/// The operand stays what it is in a reference entry: addresses and lengths.
bool same_in_both_forms(char code);

/// Memory that the pointer operands of one call point to.
struct workspace {
  std::array<char, 64> text[2];
  std::array<char, 64> target;
  std::array<std::int32_t, 4> integers;
  alignas(8) std::array<double, 2> written;
  std::array<double, 32> table;
};

/// The image of one operand, in the first size_of(code) bytes.
struct operand {
  alignas(16) std::array<unsigned char, 32> bytes{};
};

/// Draws an operand: numbers from the sample (or, without one, from the whole type for integers and
/// from -10..10 for reals), a REAL*16 with a tail below half a unit of its head, addresses into
/// `room`.
operand draw(char code, sample bounds, std::mt19937& random, workspace& room);

}  // namespace support
