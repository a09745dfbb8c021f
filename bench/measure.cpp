// The driver, and what it finds out about the machine.

#include <cpuid.h>
#include <x86intrin.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>

#include "rows.hpp"

#if defined(__GLIBC__)
#include <gnu/libc-version.h>
#endif

namespace bench {
namespace {

constexpr double run_nanoseconds = 1e6;  // long enough that the clock's resolution does not count
constexpr int rounds = 15;

figures timed(const row& r, long calls) {
  using clock = std::chrono::steady_clock;
  const auto start = clock::now();
  const unsigned long long ticks = __rdtsc();
  r.run(calls);
  const double cycles = static_cast<double>(__rdtsc() - ticks);
  const std::chrono::duration<double, std::nano> elapsed = clock::now() - start;
  return {elapsed.count() / static_cast<double>(calls), cycles / static_cast<double>(calls)};
}

/// The number of calls that one run takes.
long calls_of_a_run(const row& r) {
  r.run(1);
  long calls = 16;
  double once = timed(r, calls).nanoseconds;
  while (once * static_cast<double>(calls) < run_nanoseconds / 4)
    once = timed(r, calls *= 4).nanoseconds;
  return std::max(1L, static_cast<long>(run_nanoseconds / once));
}

}  // namespace

std::vector<figures> measure(const std::vector<row>& chosen) {
  std::vector<figures> all(chosen.size());
  for (std::size_t first = 0, end; first < chosen.size(); first = end) {
    std::vector<long> calls;
    for (end = first; end < chosen.size() && chosen[end].entry == chosen[first].entry; ++end) {
      calls.push_back(calls_of_a_run(chosen[end]));
      all[end] = timed(chosen[end], calls.back());
    }
    for (int round = 1; round < rounds; ++round)
      for (std::size_t i = first; i < end; ++i) {
        const figures again = timed(chosen[i], calls[i - first]);
        if (again.nanoseconds < all[i].nanoseconds) all[i] = again;
      }
  }
  return all;
}

surroundings find_surroundings() {
  surroundings found;
  std::uint32_t registers[4] = {};
  const auto ask = [&](std::uint32_t leaf) {
    return __get_cpuid(leaf, &registers[0], &registers[1], &registers[2], &registers[3]) != 0;
  };
  const auto text = [](std::uint32_t word) {
    char letters[5] = {};
    std::memcpy(letters, &word, sizeof word);
    return std::string(letters);
  };
  ask(0);
  found.maker = text(registers[1]) + text(registers[3]) + text(registers[2]);
  ask(1);
  const std::uint32_t signature = registers[0];
  const int family = signature >> 8 & 15;
  found.family = family == 15 ? family + (signature >> 20 & 255) : family;
  found.model = static_cast<int>((signature >> 4 & 15) | (signature >> 12 & 0xF0));
  for (std::uint32_t leaf = 0x80000002; leaf <= 0x80000004 && ask(leaf); ++leaf)
    for (const std::uint32_t word : registers) found.processor += text(word);
  while (found.processor.ends_with(' ')) found.processor.pop_back();

#if defined(__i386__)
  const std::string width = "i386";
#else
  const std::string width = "x86_64";
#endif
#if defined(_WIN32)
  found.build = "windows-" + width;
  found.c_library = "the system's";
#else
  found.build = "linux-" + width;
#if defined(__GLIBC__)
  found.c_library = std::string("glibc ") + gnu_get_libc_version();
#else
  found.c_library = "unknown";
#endif
#endif
  found.compiler = "GCC " __VERSION__;
  return found;
}

}  // namespace bench
