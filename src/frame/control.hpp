#pragma once

// The floating-point state that the library sets at every notification of the loader, and what of
// it does not depend on the loader.

#include <cstdint>

namespace zrt::control {

/// x87 word 0x027F (53 bits, to nearest, all exceptions masked) with selector 1 (FTZ and DAZ set).
inline constexpr std::uint32_t load_word = 0x1027F;

/// What the probe for SSE state has found.
enum class sse : std::int32_t { absent = -1, not_probed = 0, usable = 1 };
extern sse sse_state;

/// The MXCSR that a control word asks for, flags clear: exception masks from bits 0 to 5, rounding
/// from bits 10 and 11; FTZ and DAZ by the selector in the high half: 0 as `current` has them, 1
/// both set, anything else both clear.
constexpr std::uint32_t composed_mxcsr(std::uint32_t word, std::uint32_t current) {
  constexpr std::uint32_t ftz_and_daz = 0x8040;
  const std::int32_t selector = static_cast<std::int32_t>(word) >> 16;
  const std::uint32_t flush = selector == 0   ? current & ftz_and_daz
                              : selector == 1 ? ftz_and_daz
                                              : 0;
  return (word & 0x3F) << 7 | (word & 0xC00) << 3 | flush;
}

/// The valid bits of MXCSR from the MXCSR_MASK field of an FXSAVE image.
constexpr std::uint32_t valid_bits(std::uint32_t mask_field) {
  return mask_field != 0 ? mask_field : 0xFFBF;
}

std::uint32_t mxcsr_get();
/// The valid bits of this processor; found on the first use.
std::uint32_t mxcsr_valid_mask();
/// Writes the valid bits of `value`; gives the old MXCSR.
std::uint32_t mxcsr_set_masked(std::uint32_t value);
/// Loads an x87 control word; gives the old one.
std::uint16_t x87_set_control(std::uint16_t word);

/// FXSR and SSE2 by cpuid leaf 1: usable or absent.
sse sse_cpuid_test();

/// Tests the processor, keeps the result in `sse_state`, and where SSE is usable sets MXCSR by
/// `word`. The MXCSR instructions and the FXSAVE fault where the system has not enabled SSE state.
void probe(std::uint32_t word);

/// Runs `probe` under whatever guard the loader's platform has; a fault leaves `sse_state` at
/// absent. Defined beside the loader's entry.
void guarded_probe(std::uint32_t word);

/// Sets the thread's state: MXCSR where SSE is usable, then the x87 word (the low 16 bits).
void fp_set_control(std::uint32_t word);

/// One notification of the loader: reason 1 is process attach. The state is set whatever the
/// reason. Returns 1.
std::int32_t notified(std::uint32_t reason);

}  // namespace zrt::control
