// REAL*16 and COMPLEX*32 in std::format. A program by itself: the compiler of the other tests may
// lack <format>, another one with a C++ library of its own then builds this one.

#include <cstdio>
#include <limits>
#include <zorvikrt/format.hpp>
#include <zorvikrt/zorvikrt.hpp>

#if !defined(__cpp_lib_format)
#error "std::format is missing"
#endif

using namespace zorvikrt;

int main() {
  const real16 x = 0.1_r16, half = -0.5;
  const complex32 z(1, 2);
  int cases = 0, faults = 0;
  const auto check = [&](const std::string& got, const char* wanted) {
    ++cases;
    if (got == wanted) return;
    ++faults;
    std::printf("'%s' is written, not '%s'\n", got.c_str(), wanted);
  };
#define WRITTEN(wanted, ...) check(std::format(__VA_ARGS__), wanted);
#define REFUSED(wrong)                                                     \
  try {                                                                    \
    const char* const text = "text";                                       \
    check(std::vformat(wrong, std::make_format_args(x, text)), "refused"); \
  } catch (const std::format_error&) {                                     \
    ++cases;                                                               \
  }
#include "format_cases.inc"
  std::printf("%d cases, %d faults\n", cases, faults);
  return faults != 0 || cases < 10;
}
