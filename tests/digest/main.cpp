// Prints one line for each export: its name and a digest of its results over fixed operands; where
// REAL results travel on the FPU stack, also those of their 80-bit images and of the exception
// flags.
//
//   zorvikrt_digest [--calls N] [--without fma|fisttp|sse2]
//   zorvikrt_digest --trace NAME     each call of one entry, operands and result in hexadecimal
//
// N calls of every entry instead of the usual number; `--without`, in the program that is linked
// from the library's objects, takes the ways for a processor that lacks these instructions.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/entry_table.hpp"
#include "zorvikrt/zorvikrt.h"
#if defined(ZRT_INSIDE)
#include "frame/processor.hpp"
#endif

using namespace support;

namespace {

/// So many that a unit in the last place of a coefficient shows, and that all take some seconds.
/// The forms of an entry differ in their operands' way alone.
int calls_of(const entry& e) {
  if (e.kind == form::reference) return 1000;
  const std::string_view family = e.family;
  if (family.starts_with("real/")) return 200000;
  if (family.starts_with("quad/") || family.starts_with("cquad/")) return 20000;
  return 6000;
}

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

constexpr unsigned denormal = 2;  // a load or a copy of the compiler's raises it, or none

struct digests {
  hash results, registers, flags;
};

digests digests_of(const entry& e, int calls, bool trace) {
  generator random(seed_of(e.name));
  digests sums;
  tuple call;
  const bool writes = e.codes.find_first_of("AmIQ") != std::string_view::npos;
  const int result_size = e.result == 'b' || e.result == 'w' ? 4 : size_of(e.result);
  for (int i = 0; i < calls; ++i) {
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
    const unsigned flags = out.flags & ~denormal;
    sums.flags(&flags, 1);
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

[[noreturn]] void refuse(const std::string& why) {
  std::fprintf(stderr,
               "zorvikrt_digest: %s; usage: zorvikrt_digest [--calls N] [--without fma|fisttp|sse2]"
               " | --trace NAME\n",
               why.c_str());
  std::exit(2);
}

void take_away(const std::string& instructions) {
#if defined(ZRT_INSIDE)
  using zrt::processor;
  for (const auto& [name, flag] : {std::pair("fma", &processor::has_fma),
                                   {"fisttp", &processor::has_fisttp},
                                   {"sse2", &processor::has_sse2}})
    if (instructions == name) {
      *flag = false;
      return;
    }
#endif
  refuse("this program has no way without '" + instructions + "'");
}

void trace(const std::string& name) {
  for (const entry& e : all_entries())
    if (name == e.name) {
      digests_of(e, calls_of(e), true);
      return;
    }
  refuse("there is no entry '" + name + "'");
}

}  // namespace

int main(int count, char** arguments) {
  zorvikrt_set_thread_state();
  int calls = 0;
  for (int i = 1; i < count; i += 2) {
    const std::string option = arguments[i];
    if (i + 1 == count) refuse(option + " needs a value");
    const std::string value = arguments[i + 1];
    if (option == "--trace") {
      trace(value);
      return 0;
    }
    if (option == "--without")
      take_away(value);
    else if (option != "--calls")
      refuse("unknown option '" + option + "'");
    else if ((calls = std::atoi(value.c_str())) <= 0)
      refuse("'" + value + "' is no number of calls");
  }
  for (const explorer::constant& c : explorer::constants())
    std::printf("%s %s\n", c.name, hexadecimal(c.bits, c.width / 4).c_str());
  for (const entry& e : all_entries()) {
    const digests sums = digests_of(e, calls != 0 ? calls : calls_of(e), false);
    std::printf("%s %s", e.name, hexadecimal(sums.results.value(), 16).c_str());
#if defined(__i386__)
    const bool real = e.result == 'f' || e.result == 'd';
    std::printf(" %s %s", real ? hexadecimal(sums.registers.value(), 16).c_str() : "-",
                hexadecimal(sums.flags.value(), 16).c_str());
#endif
    std::puts("");
  }
  return 0;
}
