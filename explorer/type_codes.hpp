#pragma once

// What each type code of the list of exports stands for, at run time.

namespace explorer {

/// How an operand is read, drawn and shown.
enum class nature {
  integer,           // a number of one part
  real,              // REAL and COMPLEX, of one or two parts
  pair,              // REAL*16 and COMPLEX*32, of two parts to a number
  text,              // address of a CHARACTER that is read
  target,            // address of one that is written
  length,            // of the CHARACTER before it
  memory,            // address as a number
  optional_integer,  // address of an INTEGER*4 that is read, or null
  read_integer,      // address of one that is read
  written_integer,   // address of one that is written
  table,             // address of REAL*16 rows
  written_pair,      // address of a REAL*16 that is written
  none               // no result
};

struct type_code {
  char code;
  const char* name;  // `REAL*8` for d, and so on
  int size;          // bytes in memory; of an address those of a pointer
  char part;         // code of the INTEGER or REAL that a number is made of
  int parts;         // how many of them; 0 for what is no number
  nature is;
  bool same_in_both_forms;  // an address or a length, by value and by reference

  constexpr bool is_number() const { return parts != 0; }
  constexpr bool is_address() const { return !is_number() && is != nature::length; }
  constexpr bool is_written() const {
    return is == nature::target || is == nature::written_integer || is == nature::written_pair;
  }
};

inline constexpr type_code type_codes[] = {
#define ZRT_TYPE(code, name, size, part, parts, is, same) \
  {code, name, size, part, parts, nature::is, same},
#include "type_codes.inc"
#undef ZRT_TYPE
    {'v', "nothing", 0, 'v', 0, nature::none, true}};

/// The row of a code; that of `v` for any other character.
constexpr const type_code& type_of(char code) {
  const type_code* row = type_codes;
  while (row->code != code && row->code != 'v') ++row;
  return *row;
}

/// Bytes of an operand or result of this code in memory; 0 for no result.
constexpr int size_of(char code) { return type_of(code).size; }
constexpr bool is_complex(char code) { return code == 'c' || code == 'z' || code == 'x'; }
constexpr bool same_in_both_forms(char code) { return type_of(code).same_in_both_forms; }

}  // namespace explorer
