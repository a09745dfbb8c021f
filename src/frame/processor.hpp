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

}  // namespace zrt
