#include "frame/control.hpp"

#include <cpuid.h>

#include <cstring>

#include "frame/sections.hpp"

namespace zrt {

bool processor::has_sse2 = false;
bool processor::has_fisttp = false;
bool processor::has_fma = false;
bool processor::fsincos_agrees = false;

namespace control {

sse sse_state = sse::not_probed;
static std::uint32_t mxcsr_mask_word = 0;

std::uint32_t mxcsr_get() {
  std::uint32_t value;
  asm volatile("stmxcsr %0" : "=m"(value));
  return value;
}

std::uint32_t mxcsr_valid_mask() {
  if (mxcsr_mask_word == 0) {
    // FXSAVE wants 16-byte alignment, which the stack of a 32-bit caller does not promise.
    constexpr std::uintptr_t size = 512, alignment = 16, mask_offset = 28;
    unsigned char room[size + alignment];
    unsigned char* area =
        room + (alignment - reinterpret_cast<std::uintptr_t>(room) % alignment) % alignment;
    std::uint32_t field = 0;
    std::memcpy(area + mask_offset, &field, sizeof field);
    asm volatile("fxsave %0" : "+m"(*reinterpret_cast<unsigned char(*)[size]>(area)));
    std::memcpy(&field, area + mask_offset, sizeof field);
    mxcsr_mask_word = valid_bits(field);
  }
  return mxcsr_mask_word;
}

std::uint32_t mxcsr_set_masked(std::uint32_t value) {
  const std::uint32_t old = mxcsr_get();
  const std::uint32_t valid = value & mxcsr_valid_mask();
  asm volatile("ldmxcsr %0" : : "m"(valid));
  return old;
}

std::uint16_t x87_set_control(std::uint16_t word) {
  std::uint16_t old;
  asm volatile("fnstcw %0" : "=m"(old));
  asm volatile("fldcw %0" : : "m"(word));
  return old;
}

sse sse_cpuid_test() {
  constexpr unsigned fxsr_and_sse2 = 0x05000000;
  unsigned a, b, c, d;
  return __get_cpuid(1, &a, &b, &c, &d) != 0 && (d & fxsr_and_sse2) == fxsr_and_sse2 ? sse::usable
                                                                                     : sse::absent;
}

static void apply_mxcsr(std::uint32_t word) { mxcsr_set_masked(composed_mxcsr(word, mxcsr_get())); }

void probe(std::uint32_t word) {
  sse_state = sse_cpuid_test();
  if (sse_state == sse::usable) apply_mxcsr(word);
}

void fp_set_control(std::uint32_t word) {
  if (sse_state == sse::usable)
    apply_mxcsr(word);
  else if (sse_state == sse::not_probed)
    guarded_probe(word);
  x87_set_control(static_cast<std::uint16_t>(word));
}

/// Whether the system keeps the upper halves of the vector registers, without which the
/// instructions of AVX and FMA fault.
static bool keeps_avx_state() {
  constexpr unsigned sse_and_avx = 6;
  unsigned low, high;
  asm("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return (low & sse_and_avx) == sse_and_avx;
}

/// The cores on which `fsincos` was measured to give the bits and flags of `fsin` and `fcos`: AMD's
/// Zen 4 over 50 million operands, Zen 5 over 80 million. On Intel's Sapphire Rapids it does not.
struct core {
  unsigned family, first_model, last_model;
};
constexpr core cores_whose_fsincos_agrees[] = {
    {0x19, 0x10, 0x1F}, {0x19, 0x60, 0x7F}, {0x19, 0xA0, 0xAF},  // Zen 4
    {0x1A, 0x00, 0x4F}, {0x1A, 0x60, 0x7F},                      // Zen 5
};

/// By the family and model of the signature in cpuid leaf 1.
static bool fsincos_agrees(unsigned signature) {
  unsigned a, b, c, d;
  if (__get_cpuid(0, &a, &b, &c, &d) == 0 || b != signature_AMD_ebx || c != signature_AMD_ecx ||
      d != signature_AMD_edx)
    return false;
  const unsigned family = (signature >> 8 & 0xF) + (signature >> 20 & 0xFF);
  const unsigned model = (signature >> 4 & 0xF) | (signature >> 12 & 0xF0);
  for (const core& known : cores_whose_fsincos_agrees)
    if (family == known.family && model >= known.first_model && model <= known.last_model)
      return true;
  return false;
}

static void find_processor() {
  unsigned a, b, c, d;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return;
  constexpr unsigned fma = bit_FMA | bit_AVX | bit_OSXSAVE;
  processor::has_fisttp = (c & bit_SSE3) != 0;
  processor::has_fma = (c & fma) == fma && keeps_avx_state();
  processor::fsincos_agrees = fsincos_agrees(a);
}

std::int32_t notified(std::uint32_t reason) {
  constexpr std::uint32_t process_attach = 1;
  if (reason == process_attach) find_processor();
  fp_set_control(load_word);
  processor::has_sse2 = sse_state == sse::usable;
  return 1;
}

}  // namespace control
}  // namespace zrt
