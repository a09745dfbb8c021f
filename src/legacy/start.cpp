// The floating-point state of a program on this runtime.

#include <zorvikrt/zorvikrt.h>

/// The library sets flush-to-zero and denormals-are-zero when it is loaded; gfortran's run-time
/// library would read and print subnormal numbers as zeros under them. The program's start clears
/// both (the results do not depend on them) and leaves the x87 word at 53 bits, which they do
/// depend on. The link names this function, so that it is there in every program; where the program
/// calls no entry, the library is not loaded and nothing changes.
#pragma weak __zorvik_dexp
extern "C" [[gnu::constructor]] void zorvikrt_gfortran_start() {
  constexpr uint32_t flush_to_zero = 0x8000, denormals_are_zero = 0x0040;
  if (&__zorvik_dexp == nullptr || !__builtin_cpu_supports("sse")) return;
  uint32_t word;
  asm volatile("stmxcsr %0" : "=m"(word));
  word &= ~(flush_to_zero | denormals_are_zero);
  asm volatile("ldmxcsr %0" : : "m"(word));
}
