// 64-bit division and remainder, signed and unsigned, by the processor's own divides.

#include "entries.hpp"
#include "int64/arithmetic.hpp"

using namespace zrt;

#if defined(__i386__)

// Written in assembler: a compiler saves registers and copies operands before the first test, and
// spills within the division of a long number by a long one (9.9 cycles against 13.1).
//
// Words first: a divisor of one word takes one divide, or two where the quotient has two words. A
// divisor d of two words takes one, of the top words of n and d shifted right by k, the length of
// the high word of d:
//     q = floor(floor(n / 2**k) / floor(d / 2**k)) is the quotient or above it by 1,
// for floor(d / 2**k) is at least 2**31 and loses at most 1 - 2**-k, while n/d < 2**(33-k). Above,
// n - q*d is negative; where the high word of n is not below that of d, 64 bits keep its sign. The
// correction goes by that sign, without a branch: the compiler's helper compares low words, which
// is a guess, and a wrong one costs more than the division (33 cycles against 10).

// clang-format off
#define ZRT_LINE(text) text "\n\t"
#if defined(__GCC_HAVE_DWARF2_CFI_ASM)
#define ZRT_UNWIND(text) ZRT_LINE(text)
#else
#define ZRT_UNWIND(text)
#endif
#define ZRT_PUSH(name) \
  ZRT_LINE("pushl %" #name) ZRT_UNWIND(".cfi_adjust_cfa_offset 4") \
  ZRT_UNWIND(".cfi_rel_offset " #name ", 0")
#define ZRT_POP(name) \
  ZRT_LINE("popl %" #name) ZRT_UNWIND(".cfi_adjust_cfa_offset -4") ZRT_UNWIND(".cfi_restore " #name)

// On entry, behind the stack pointer: return address, n low and high at 4 and 8, d low and high at
// 12 and 16. What differs between quotient and remainder has a name that ends so.

// The quotient in eax and the remainder in edx of one divide, as a result.
#define ZRT_UNSIGNED_QUOTIENT ZRT_LINE("xorl %edx, %edx")
#define ZRT_UNSIGNED_REMAINDER ZRT_LINE("movl %edx, %eax") ZRT_LINE("xorl %edx, %edx")
#define ZRT_SIGNED_QUOTIENT ZRT_LINE("cltd")
#define ZRT_SIGNED_REMAINDER ZRT_LINE("movl %edx, %eax") ZRT_LINE("cltd")
#define ZRT_NEGATED_QUOTIENT ZRT_LINE("negl %eax") ZRT_LINE("sbbl %edx, %edx")
#define ZRT_NEGATED_REMAINDER ZRT_LINE("movl %edx, %eax") ZRT_NEGATED_QUOTIENT

// A two-word number in edx and `low` by the word `d`: the remainder of the high word goes before
// the low one. `kept` holds the high word of the quotient.
#define ZRT_BY_WORD_QUOTIENT(low, d, kept) \
  ZRT_LINE("movl %edx, %eax") \
  ZRT_LINE("xorl %edx, %edx") \
  ZRT_LINE("divl " d) \
  ZRT_LINE("movl %eax, " kept) \
  ZRT_LINE("movl " low ", %eax") \
  ZRT_LINE("divl " d) \
  ZRT_LINE("movl " kept ", %edx")
#define ZRT_BY_WORD_REMAINDER(low, d, kept) \
  ZRT_LINE("movl %edx, %eax") \
  ZRT_LINE("xorl %edx, %edx") \
  ZRT_LINE("divl " d) \
  ZRT_LINE("movl " low ", %eax") \
  ZRT_LINE("divl " d) \
  ZRT_UNSIGNED_REMAINDER

// n in edx:eax by d in ecx:ebx, the four at their places in memory as well: q in ecx, n - q*d in
// eax:ebx. Shifts by one and by the rest, for a count of 32 would be one of 0; single ones, for
// shifts of two words by a register are slow on some processors.
#define ZRT_ESTIMATE(n_low, n_high, d_low, d_high) \
  ZRT_LINE("movl %ecx, %esi") \
  ZRT_LINE("bsrl %ecx, %ecx")    /* k - 1 */ \
  ZRT_LINE("shrl %ebx") \
  ZRT_LINE("shrl %cl, %ebx") \
  ZRT_LINE("shrl %eax") \
  ZRT_LINE("shrl %cl, %eax") \
  ZRT_LINE("shrl %edx") \
  ZRT_LINE("shrl %cl, %edx") \
  ZRT_LINE("notl %ecx")          /* as a count 32 - k */ \
  ZRT_LINE("shll %cl, %esi") \
  ZRT_LINE("orl %esi, %ebx") \
  ZRT_LINE("movl " n_high ", %esi") \
  ZRT_LINE("shll %cl, %esi") \
  ZRT_LINE("orl %esi, %eax") \
  ZRT_LINE("divl %ebx") \
  ZRT_LINE("movl %eax, %ecx") \
  ZRT_LINE("movl " d_high ", %ebx") \
  ZRT_LINE("imull %eax, %ebx") \
  ZRT_LINE("mull " d_low) \
  ZRT_LINE("addl %ebx, %edx") \
  ZRT_LINE("movl " n_low ", %ebx") \
  ZRT_LINE("subl %eax, %ebx") \
  ZRT_LINE("movl " n_high ", %eax") \
  ZRT_LINE("sbbl %edx, %eax")
#define ZRT_CORRECTED_QUOTIENT(d_low, d_high) \
  ZRT_LINE("sarl $31, %eax") \
  ZRT_LINE("addl %ecx, %eax") \
  ZRT_LINE("xorl %edx, %edx")
#define ZRT_CORRECTED_REMAINDER(d_low, d_high) \
  ZRT_LINE("movl " d_low ", %ecx") \
  ZRT_LINE("movl %eax, %esi") \
  ZRT_LINE("cltd") \
  ZRT_LINE("andl %edx, %ecx") \
  ZRT_LINE("andl " d_high ", %edx") \
  ZRT_LINE("movl %ebx, %eax") \
  ZRT_LINE("addl %ecx, %eax") \
  ZRT_LINE("adcl %esi, %edx")

// Where n is below d.
#define ZRT_BELOW_QUOTIENT ZRT_LINE("xorl %eax, %eax") ZRT_LINE("xorl %edx, %edx")
#define ZRT_BELOW_REMAINDER ZRT_LINE("movl 4(%esp), %eax")

// n and d as they came, n's high word in edx, d's in ecx.
#define ZRT_BY_LONG(RESULT) \
  ZRT_LINE("cmpl %ecx, %edx") \
  ZRT_LINE("jb 4f") \
  ZRT_PUSH(ebx) \
  ZRT_PUSH(esi) \
  ZRT_LINE("movl 12(%esp), %eax") \
  ZRT_LINE("movl 20(%esp), %ebx") \
  ZRT_ESTIMATE("12(%esp)", "16(%esp)", "20(%esp)", "24(%esp)") \
  ZRT_CORRECTED_##RESULT("20(%esp)", "24(%esp)") \
  ZRT_POP(esi) \
  ZRT_POP(ebx) \
  ZRT_LINE("ret") \
  "4:" ZRT_BELOW_##RESULT \
  ZRT_LINE("ret")

#define ZRT_UNSIGNED_DIVISION(RESULT) \
  ZRT_LINE("movl 16(%esp), %ecx") \
  ZRT_LINE("movl 8(%esp), %edx") \
  ZRT_LINE("testl %ecx, %ecx") \
  ZRT_LINE("jne 3f") \
  ZRT_LINE("movl 12(%esp), %ecx") \
  ZRT_LINE("movl 4(%esp), %eax") \
  ZRT_LINE("cmpl %ecx, %edx") \
  ZRT_LINE("jae 1f") \
  ZRT_LINE("divl %ecx") \
  ZRT_UNSIGNED_##RESULT \
  ZRT_LINE("ret") \
  "1:" \
  ZRT_LINE("testl %ecx, %ecx") \
  ZRT_LINE("je 2f") \
  ZRT_BY_WORD_##RESULT("4(%esp)", "%ecx", "8(%esp)") \
  ZRT_LINE("ret") \
  "2:" /* by zero: signed numbers as long as n could be one */ \
  ZRT_LINE("sarl $31, %edx") \
  ZRT_LINE("orl $0x7FFFFFFF, %edx") \
  ZRT_LINE("movl $-1, %eax") \
  ZRT_LINE("ret") \
  "3:" ZRT_BY_LONG(RESULT)

// Where n and d are positive, as above; where n fits a word and d is a positive one, a signed
// divide; a negative n by a positive word by n's magnitude; all others by both magnitudes. There
// esi and edi are the signs of d and n as masks, and no magnitude is above 2**63, so that n - q*d
// keeps its sign for an n below d as well.
#define ZRT_SIGN_OF_QUOTIENT ZRT_LINE("xorl %esi, %edi")
#define ZRT_SIGN_OF_REMAINDER
#define ZRT_SIGNED_DIVISION(RESULT) \
  ZRT_LINE("movl 16(%esp), %eax") \
  ZRT_LINE("movl 12(%esp), %ecx") \
  ZRT_LINE("movl 8(%esp), %edx") \
  ZRT_LINE("testl %eax, %eax") \
  ZRT_LINE("jne 3f") \
  ZRT_LINE("movl 4(%esp), %eax") \
  ZRT_LINE("cmpl %ecx, %edx") \
  ZRT_LINE("jae 1f") \
  ZRT_LINE("testl %edx, %edx") \
  ZRT_LINE("js 5f") \
  ZRT_LINE("divl %ecx") \
  ZRT_UNSIGNED_##RESULT \
  ZRT_LINE("ret") \
  "1:" \
  ZRT_LINE("cltd") \
  ZRT_LINE("cmpl 8(%esp), %edx") \
  ZRT_LINE("jne 2f") \
  ZRT_LINE("testl %ecx, %ecx") \
  ZRT_LINE("jle 2f") \
  ZRT_LINE("idivl %ecx") \
  ZRT_SIGNED_##RESULT \
  ZRT_LINE("ret") \
  "2:" \
  ZRT_LINE("testl %ecx, %ecx") \
  ZRT_LINE("je 6f") \
  ZRT_LINE("movl 8(%esp), %edx") \
  ZRT_LINE("testl %edx, %edx") \
  ZRT_LINE("js 5f") \
  ZRT_BY_WORD_##RESULT("4(%esp)", "%ecx", "8(%esp)") \
  ZRT_LINE("ret") \
  "3:" \
  ZRT_LINE("movl %eax, %ecx") \
  ZRT_LINE("orl %edx, %eax") \
  ZRT_LINE("js 8f") \
  ZRT_BY_LONG(RESULT) \
  "5:" /* negative by a word */ \
  ZRT_LINE("movl 4(%esp), %eax") \
  ZRT_LINE("negl %eax") \
  ZRT_LINE("adcl $0, %edx") \
  ZRT_LINE("negl %edx") \
  ZRT_LINE("cmpl %ecx, %edx") \
  ZRT_LINE("jae 7f") \
  ZRT_LINE("divl %ecx") \
  ZRT_NEGATED_##RESULT \
  ZRT_LINE("ret") \
  "6:" /* by zero */ \
  ZRT_LINE("movl $-1, %eax") \
  ZRT_LINE("movl $0x7FFFFFFF, %edx") \
  ZRT_LINE("ret") \
  "7:" \
  ZRT_LINE("movl %eax, 4(%esp)") \
  ZRT_BY_WORD_##RESULT("4(%esp)", "%ecx", "8(%esp)") \
  ZRT_LINE("negl %eax") \
  ZRT_LINE("adcl $0, %edx") \
  ZRT_LINE("negl %edx") \
  ZRT_LINE("ret") \
  "8:" \
  ZRT_PUSH(ebx) \
  ZRT_PUSH(esi) \
  ZRT_PUSH(edi) \
  ZRT_LINE("movl %edx, %edi") \
  ZRT_LINE("sarl $31, %edi") \
  ZRT_LINE("movl 16(%esp), %eax") \
  ZRT_LINE("xorl %edi, %eax") \
  ZRT_LINE("xorl %edi, %edx") \
  ZRT_LINE("subl %edi, %eax") \
  ZRT_LINE("sbbl %edi, %edx") \
  ZRT_LINE("movl %ecx, %esi") \
  ZRT_LINE("sarl $31, %esi") \
  ZRT_LINE("movl 24(%esp), %ebx") \
  ZRT_LINE("xorl %esi, %ebx") \
  ZRT_LINE("xorl %esi, %ecx") \
  ZRT_LINE("subl %esi, %ebx") \
  ZRT_LINE("sbbl %esi, %ecx") \
  ZRT_SIGN_OF_##RESULT \
  ZRT_LINE("testl %ecx, %ecx") \
  ZRT_LINE("je 1f") \
  ZRT_LINE("movl %eax, 16(%esp)") \
  ZRT_LINE("movl %edx, 20(%esp)") \
  ZRT_LINE("movl %ebx, 24(%esp)") \
  ZRT_LINE("movl %ecx, 28(%esp)") \
  ZRT_ESTIMATE("16(%esp)", "20(%esp)", "24(%esp)", "28(%esp)") \
  ZRT_CORRECTED_##RESULT("24(%esp)", "28(%esp)") \
  "9:" \
  ZRT_LINE("xorl %edi, %eax") \
  ZRT_LINE("xorl %edi, %edx") \
  ZRT_LINE("subl %edi, %eax") \
  ZRT_LINE("sbbl %edi, %edx") \
  ZRT_UNWIND(".cfi_remember_state") \
  ZRT_POP(edi) \
  ZRT_POP(esi) \
  ZRT_POP(ebx) \
  ZRT_LINE("ret") \
  ZRT_UNWIND(".cfi_restore_state") \
  "1:" \
  ZRT_LINE("cmpl %ebx, %edx") \
  ZRT_LINE("jae 1f") \
  ZRT_LINE("divl %ebx") \
  ZRT_UNSIGNED_##RESULT \
  ZRT_LINE("jmp 9b") \
  "1:" \
  ZRT_LINE("movl %eax, %esi") \
  ZRT_BY_WORD_##RESULT("%esi", "%ebx", "%ecx") \
  ZRT_LINE("jmp 9b")
// clang-format on

#define ZRT_NAKED(type) type __attribute__((naked))
ZRT_VALUE(ZRT_NAKED(std::int64_t), ldiv)(std::int64_t, std::int64_t) {
  asm(ZRT_SIGNED_DIVISION(QUOTIENT));
}
ZRT_VALUE(ZRT_NAKED(std::int64_t), lmod)(std::int64_t, std::int64_t) {
  asm(ZRT_SIGNED_DIVISION(REMAINDER));
}
ZRT_VALUE(ZRT_NAKED(std::uint64_t), uldiv)(std::uint64_t, std::uint64_t) {
  asm(ZRT_UNSIGNED_DIVISION(QUOTIENT));
}
ZRT_VALUE(ZRT_NAKED(std::uint64_t), ulmod)(std::uint64_t, std::uint64_t) {
  asm(ZRT_UNSIGNED_DIVISION(REMAINDER));
}

#else

namespace zrt::int64 {
namespace {

/// Signed numbers as long as the dividend could be one.
constexpr std::uint64_t unsigned_by_zero(std::uint64_t a) {
  return a >> 63 == 0 ? INT64_MAX : UINT64_MAX;
}

}  // namespace
}  // namespace zrt::int64

using namespace zrt::int64;

ZRT_VALUE(std::int64_t, ldiv)(std::int64_t a, std::int64_t b) {
  if (static_cast<std::uint64_t>(b) + 1 > 1) return a / b;  // neither 0 nor -1
  return b == 0 ? signed_by_zero : negated_by(a, std::int64_t{-1});
}
ZRT_VALUE(std::int64_t, lmod)(std::int64_t a, std::int64_t b) {
  if (static_cast<std::uint64_t>(b) + 1 > 1) return a % b;  // neither 0 nor -1
  return b == 0 ? signed_by_zero : 0;
}
ZRT_VALUE(std::uint64_t, uldiv)(std::uint64_t a, std::uint64_t b) {
  return b != 0 ? a / b : unsigned_by_zero(a);
}
ZRT_VALUE(std::uint64_t, ulmod)(std::uint64_t a, std::uint64_t b) {
  return b != 0 ? a % b : unsigned_by_zero(a);
}

#endif
