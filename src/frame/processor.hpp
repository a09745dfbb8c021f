#pragma once

// What the processor offers; found once at load, read-only afterwards. Tests write it to take the
// other way of a choice.

namespace zrt {

struct [[gnu::visibility("hidden")]] processor {
  static bool has_sse2;    // its registers kept by the system
  static bool has_fisttp;  // SSE3
  static bool has_fma;     // fused multiply and add on doubles, its registers kept by the system
  /// `fsincos` gives the bits and flags of `fsin` and `fcos`.
  static bool fsincos_agrees;
};

#if defined(__i386__) && defined(__ELF__)
/// Compares `has_sse2` with 0, by way of a register and without the address of the GOT, whose
/// function costs two jumps that are taken, some 4 cycles. Processors keep a call of the next
/// instruction out of their predictions of returns.
#define ZRT_COMPARE_HAS_SSE2(register) \
  "call 7f\n"                          \
  "7: popl " register                  \
  "\n\t"                               \
  "cmpb $0, _ZN3zrt9processor8has_sse2E - 7b(" register ")\n\t"
[[gnu::always_inline]] inline bool sse2_is_usable() {
  bool usable;
  const void* here;
  asm(ZRT_COMPARE_HAS_SSE2("%1") : "=@ccne"(usable), "=r"(here));
  return usable;
}
#else
[[gnu::always_inline]] inline bool sse2_is_usable() { return processor::has_sse2; }
#endif

}  // namespace zrt
