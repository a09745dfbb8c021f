// Converts line by line for check_text.py, under a control word and MXCSR that no conversion may
// notice: rounding upward at 24 bits, FTZ and DAZ on.
//   w STYLE PRECISION HI LO    writes the pair of these bits
//   r TEXT                     reads: outcome, characters taken, bits of hi and lo

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "zorvikrt/text.h"

int main() {
  const std::uint16_t control_word = 0x087F;
  asm volatile("fldcw %0" : : "m"(control_word));
#if defined(__x86_64__)
  const std::uint32_t mxcsr = 0xDFC0;
  asm volatile("ldmxcsr %0" : : "m"(mxcsr));
#endif
  std::vector<char> line(1 << 16);
  while (std::fgets(line.data(), static_cast<int>(line.size()), stdin) != nullptr) {
    line[std::strcspn(line.data(), "\n")] = 0;
    std::uint64_t bits[2];
    zorvikrt_quad value;
    int style, precision;
    if (std::sscanf(line.data(), "w %d %d %" SCNx64 " %" SCNx64, &style, &precision, &bits[0],
                    &bits[1]) == 4) {
      std::memcpy(&value, bits, sizeof value);
      const auto write = [&](char* first, std::size_t size) {
        return zorvikrt_real16_to_chars(first, size, &value, static_cast<zorvikrt_style>(style),
                                        precision);
      };
      const std::size_t length = write(nullptr, 0);
      std::string text(length + 1, '#');
      if (write(text.data(), length) != length || text.back() != '#') return 1;
      text.pop_back();
      std::puts(text.c_str());
    } else if (line[0] == 'r' && line[1] == ' ') {
      const std::size_t size = std::strlen(line.data() + 2);
      zorvikrt_reading reading;
      std::memset(&value, 0, sizeof value);
      const std::size_t taken = zorvikrt_real16_from_chars(line.data() + 2, size, &value, &reading);
      std::memcpy(bits, &value, sizeof bits);
      std::printf("%d %zu %016" PRIx64 " %016" PRIx64 "\n", static_cast<int>(reading), taken,
                  bits[0], bits[1]);
    } else {
      std::fprintf(stderr, "convert: cannot read the line '%s'\n", line.data());
      return 1;
    }
  }
}
