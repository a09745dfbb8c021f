#include "support/raw_call.hpp"

#if defined(__i386__)

// What the assembly below reads and writes, at fixed offsets.
struct raw_call_frame {
  void (*entry)();                // 0
  const std::uint32_t* slots;     // 4
  std::uint32_t count;            // 8
  std::uint32_t offset;           // 12
  std::uint32_t eax, edx;         // 16, 20
  std::uint32_t ebx, esi, edi;    // 24, 28, 32
  std::uint32_t ebp, esp;         // 36, 40
  std::uint32_t esp_at_call;      // 44
  std::uint32_t status;           // 48, x87 status word in the low half
  std::uint32_t control;          // 52, control word in the low half
  std::uint32_t eflags;           // 56
  unsigned char st0[12];          // 60
  std::uint16_t environment[14];  // 72: FNSTENV image
};
extern "C" struct raw_call_frame raw_call_frame asm("raw_call_frame");
extern "C" void raw_call_go() asm("raw_call_go");
struct raw_call_frame raw_call_frame;

asm(R"(
    .text
    .globl raw_call_go
raw_call_go:
    pushl %ebp
    pushl %ebx
    pushl %esi
    pushl %edi
    movl %esp, raw_call_saved
    movl raw_call_frame+8, %ecx
    leal 0(,%ecx,4), %eax
    andl $-16, %esp
    subl $256, %esp
    addl raw_call_frame+12, %esp
    cld
    movl raw_call_frame+4, %esi
    movl %esp, %edi
    rep movsl
    movl %esp, raw_call_frame+44
    movl $0x11111111, %ebx
    movl $0x22222222, %esi
    movl $0x33333333, %edi
    movl $0x44444444, %ebp
    fnclex
    call *raw_call_frame+0
    movl %eax, raw_call_frame+16
    movl %edx, raw_call_frame+20
    movl %ebx, raw_call_frame+24
    movl %esi, raw_call_frame+28
    movl %edi, raw_call_frame+32
    movl %ebp, raw_call_frame+36
    movl %esp, raw_call_frame+40
    pushfl
    popl raw_call_frame+56
    fnstenv raw_call_frame+72
    fldenv raw_call_frame+72
    movl $0, raw_call_frame+60
    movl $0, raw_call_frame+64
    movl $0, raw_call_frame+68
    movzwl raw_call_frame+80, %eax
    cmpl $0xFFFF, %eax
    je 1f
    fnclex
    fstpt raw_call_frame+60
1:  fnclex
    cld
    movl raw_call_saved, %esp
    popl %edi
    popl %esi
    popl %ebx
    popl %ebp
    ret
    .lcomm raw_call_saved, 4
)");
#if defined(__ELF__)
asm(".section .note.GNU-stack,\"\",@progbits\n\t.text");
#endif

namespace support {

raw_result raw_call(void (*entry)(), std::span<const std::uint32_t> slots, int offset) {
  struct raw_call_frame& frame = raw_call_frame;
  frame.entry = entry;
  frame.slots = slots.data();
  frame.count = static_cast<std::uint32_t>(slots.size());
  frame.offset = static_cast<std::uint32_t>(offset);
  raw_call_go();

  raw_result result{};
  result.eax = frame.eax;
  result.edx = frame.edx;
  // FNSTENV in 32-bit form: control, status and tag words in the low halves of the first three
  // dwords.
  result.control_word = frame.environment[0];
  result.flags = frame.environment[2] & 0x3Fu;
  for (int tag = 0; tag < 8; ++tag)
    if ((frame.environment[4] >> (2 * tag) & 3) != 3) ++result.depth;
  std::memcpy(&result.st0.significand, frame.st0, 8);
  std::memcpy(&result.st0.sign_exponent, frame.st0 + 8, 2);
  result.registers_kept = frame.ebx == 0x11111111 && frame.esi == 0x22222222 &&
                          frame.edi == 0x33333333 && frame.ebp == 0x44444444 &&
                          frame.esp == frame.esp_at_call && (frame.eflags & 0x400) == 0;
  return result;
}

}  // namespace support

#endif
