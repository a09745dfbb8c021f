// Prints one line for each export: its name and a digest of its results over fixed operands; where
// REAL results travel on the FPU stack, also one of their 80-bit images. The builds compute the
// same results, so they print the same lines.
//
//   zorvikrt_digest                  all lines
//   zorvikrt_digest --trace NAME     each call of one entry, operands and result in hexadecimal

#include <cstdio>
#include <cstring>
#include <string>

#include "support/entry_table.hpp"
#include "zorvikrt/zorvikrt.h"

using namespace support;

namespace {

constexpr int calls_of_each = 6000;

/// A reference entry is called with the operands of its value entry.
std::uint64_t seed_of(std::string_view name) {
  if (name.starts_with("I_")) name.remove_prefix(2);
  hash seed;
  seed(name.data(), name.size());
  return seed.value();
}

std::string hexadecimal(const void* data, int size) {
  static constexpr char digits[] = "0123456789abcdef";
  const unsigned char* bytes = static_cast<const unsigned char*>(data);
  std::string text;
  for (int i = 0; i < size; ++i) {
    text += digits[bytes[i] >> 4];
    text += digits[bytes[i] & 15];
  }
  return text;
}

std::string hexadecimal(std::uint64_t value, int digits) {
  char text[17];
  for (int i = 0; i < digits; ++i)
    text[i] = "0123456789abcdef"[value >> (4 * (digits - 1 - i)) & 15];
  return std::string(text, static_cast<std::size_t>(digits));
}

struct digests {
  hash results, registers;
};

digests digests_of(const explorer::entry& e, bool trace) {
  generator random(seed_of(e.name));
  digests sums;
  tuple call;
  const bool writes = e.codes.find_first_of("AmIQ") != std::string_view::npos;
  const int result_size = e.result == 'b' || e.result == 'w' ? 4 : size_of(e.result);
  for (int i = 0; i < calls_of_each; ++i) {
    support::draw(e, random, call);
    std::string line;
    if (trace)
      for (std::size_t operand = 0; operand < e.codes.size(); ++operand)
        line +=
            explorer::type_of(e.codes[operand]).is_address()
                ? std::string("* ")
                : hexadecimal(call.operands[operand].bytes.data(), size_of(e.codes[operand])) + ' ';
    const explorer::outcome out = e({call.operands.data(), e.codes.size()});
    hash& sum = sums.results;
    sum(out.result.bytes.data(), static_cast<std::size_t>(result_size));
    if (out.in_register) sums.registers(out.register_image.data(), out.register_image.size());
    if (writes) {
      sum(call.room.target.data(), call.room.target.size());
      sum(call.room.integers.data(), sizeof call.room.integers);
      sum(call.room.written.data(), call.room.written.size());
    }
    if (trace) {
      line += "-> " + hexadecimal(out.result.bytes.data(), result_size) + " flags " +
              hexadecimal(out.flags, 2);
      if (writes)
        line += " target " + hexadecimal(call.room.target.data(), 64) + " integers " +
                hexadecimal(call.room.integers.data(), 16) + " written " +
                hexadecimal(call.room.written.data(), 16);
      std::puts(line.c_str());
    }
  }
  return sums;
}

}  // namespace

int main(int count, char** arguments) {
  zorvikrt_set_thread_state();
  const bool trace = count == 3 && std::strcmp(arguments[1], "--trace") == 0;
  if (count != 1 && !trace) {
    std::fputs("usage: zorvikrt_digest [--trace NAME]\n", stderr);
    return 2;
  }
  if (trace) {
    for (const explorer::entry& e : explorer::entries())
      if (std::strcmp(e.name, arguments[2]) == 0) {
        digests_of(e, true);
        return 0;
      }
    std::fprintf(stderr, "zorvikrt_digest: there is no entry %s\n", arguments[2]);
    return 2;
  }
  for (const explorer::constant& c : explorer::constants())
    std::printf("%s %s\n", c.name, hexadecimal(c.bits, c.width / 4).c_str());
  for (const explorer::entry& e : explorer::entries()) {
    const digests sums = digests_of(e, false);
    std::printf("%s %s", e.name, hexadecimal(sums.results.value(), 16).c_str());
#if defined(__i386__)
    if (e.result == 'f' || e.result == 'd')
      std::printf(" %s", hexadecimal(sums.registers.value(), 16).c_str());
#endif
    std::puts("");
  }
  return 0;
}
