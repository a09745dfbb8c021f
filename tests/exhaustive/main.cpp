// Compares, over all 2**32 operands, each REAL*4 function of one operand that computes on doubles
// with its kernel on the register: whole results, bit by bit.
//
//   zorvikrt_exhaustive [--state FILE] [STEM ...]
//
// Prints a line for each function as it ends, and its progress where standard error is a terminal.
// With a state file a function that is in it is not run again, one that was interrupted goes on
// from the last sixteenth.

#include <unistd.h>

#include <bit>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "support/register_kernels.hpp"

namespace {

constexpr int parts = 16;
constexpr std::uint64_t part_size = (std::uint64_t{1} << 32) / parts;

struct progress {
  int parts_done = 0;
  std::uint64_t differences = 0;
};

std::map<std::string, progress> read_state(const std::string& path) {
  std::map<std::string, progress> state;
  std::ifstream file(path);
  std::string stem;
  progress at;
  while (file >> stem >> at.parts_done >> at.differences) state[stem] = at;
  return state;
}

std::uint64_t differences_in(const support::two_models<float>& f, int part) {
  std::uint64_t found = 0;
  for (std::uint64_t i = part * part_size; i < (part + 1) * part_size; ++i) {
    const float x = std::bit_cast<float>(static_cast<std::uint32_t>(i));
    const auto entry = std::bit_cast<std::uint32_t>(f.entry(x));
    const auto on_register = std::bit_cast<std::uint32_t>(f.on_register(x));
    if (entry == on_register) continue;
    if (found++ == 0)
      std::printf("%s of %08x: %08x, on the register %08x\n", f.stem, static_cast<unsigned>(i),
                  entry, on_register);
  }
  return found;
}

}  // namespace

int main(int count, char** arguments) {
  std::string path;
  std::vector<std::string> stems;
  for (int i = 1; i < count; ++i) {
    if (std::strcmp(arguments[i], "--state") == 0 && i + 1 < count)
      path = arguments[++i];
    else
      stems.emplace_back(arguments[i]);
  }
  for (const std::string& stem : stems) {
    bool known = false;
    for (const auto& f : support::functions(0.0f)) known |= stem == f.stem;
    if (!known) {
      std::fprintf(stderr, "zorvikrt_exhaustive: %s is no function that it compares\n",
                   stem.c_str());
      return 2;
    }
  }
  auto state = read_state(path);
  bool equal = true;
  for (const auto& f : support::functions(0.0f)) {
    bool chosen = stems.empty();
    for (const std::string& stem : stems) chosen |= stem == f.stem;
    if (!chosen) continue;
    progress at = state[f.stem];
    for (; at.parts_done < parts; ++at.parts_done) {
      if (isatty(2)) std::fprintf(stderr, "\r%-10s %2d of %d ", f.stem, at.parts_done, parts);
      at.differences += differences_in(f, at.parts_done);
      if (path.empty()) continue;
      std::ofstream file(path, std::ios::app);
      file << f.stem << ' ' << at.parts_done + 1 << ' ' << at.differences << '\n';
      if (!file.flush()) {
        std::fprintf(stderr, "zorvikrt_exhaustive: cannot write %s\n", path.c_str());
        return 2;
      }
    }
    if (isatty(2)) std::fprintf(stderr, "\r%30s\r", "");
    std::printf("%-10s 4294967296 operands, %llu differ\n", f.stem,
                static_cast<unsigned long long>(at.differences));
    std::fflush(stdout);
    equal = equal && at.differences == 0;
  }
  return equal ? 0 : 1;
}
