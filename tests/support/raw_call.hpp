#pragma once

// A call through raw 32-bit slots, as compiled Fortran makes it on i386, from a stack aligned to
// 4 bytes only, with everything recorded that the called entry must keep.

#if defined(__i386__)

#include <cstdint>
#include <span>

#include "support/bits.hpp"

namespace support {

struct raw_result {
  std::uint32_t eax, edx;
  image80 st0;                 // meaningful when depth is 1
  int depth;                   // values left on the FPU stack
  unsigned flags;              // sticky exception flags raised
  std::uint16_t control_word;  // on return
  bool registers_kept;         // ebx, esi, edi, ebp, esp, and the direction flag
};

/// Calls `entry` with the slots from the lowest address upward. The stack pointer at the call is
/// `offset` (0, 4, 8 or 12) above a multiple of 16.
raw_result raw_call(void (*entry)(), std::span<const std::uint32_t> slots, int offset);

}  // namespace support

#endif
