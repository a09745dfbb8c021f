// 64-bit multiplication, division and remainder, signed and unsigned.
//
// The fast forms are the processor's own divides; on i386 the x87 route would cost two changes of
// control word. The slow forms use 32-bit integer instructions alone: limbs of 16
// bits, shift and subtract.

#include "int64/arithmetic.hpp"

#include "entries.hpp"

namespace zrt::int64 {
namespace {

using word = std::uint32_t;

/// What the fast unsigned division and remainder give for a zero divisor: signed numbers as long as
/// the dividend could be one.
[[maybe_unused]] constexpr std::uint64_t unsigned_by_zero(std::uint64_t a) {
  return a >> 63 == 0 ? INT64_MAX : UINT64_MAX;
}
/// What the slow ones give.
constexpr std::uint64_t slow_unsigned_by_zero = UINT64_MAX;

constexpr word low_word(std::uint64_t x) { return static_cast<word>(x); }
constexpr word high_word(std::uint64_t x) { return static_cast<word>(x >> 32); }

}  // namespace

#if defined(__i386__)

// Written out, for a compiler saves registers and copies operands before the first test. The cases
// of one 32-bit divide come first: a divisor of one word above the high word of the dividend, and
// in signed division a dividend that fits a word. The rest is left to the compiler's own helpers,
// by a jump with the operands where they are.
#define ZRT_LABEL_OF(prefix, name) #prefix #name
#define ZRT_LABEL(prefix, name) ZRT_LABEL_OF(prefix, name)
#define ZRT_HELPER(name) ZRT_LABEL(__USER_LABEL_PREFIX__, name)
#if defined(__ELF__)
// The C library has helpers of these names as well, which would be reached through the PLT.
asm(".hidden __divdi3, __moddi3, __udivdi3, __umoddi3");
#endif

// clang-format off
// Behind the stack pointer: return address, dividend low and high, divisor low and high.
#define ZRT_DIVISION_BY_A_WORD(helper) \
  "movl 16(%esp), %eax\n\t" \
  "movl 12(%esp), %ecx\n\t" \
  "movl 8(%esp), %edx\n\t" \
  "testl %eax, %eax\n\t" \
  "jne " ZRT_HELPER(helper) "\n\t" \
  "movl 4(%esp), %eax\n\t" \
  "cmpl %ecx, %edx\n\t" \
  "jae 1f\n\t"
#define ZRT_UNSIGNED_DIVISION(helper, result) \
  ZRT_DIVISION_BY_A_WORD(helper) \
  "divl %ecx\n\t" result \
  "xorl %edx, %edx\n\t" \
  "ret\n" \
  "1: testl %ecx, %ecx\n\t" \
  "jne " ZRT_HELPER(helper) "\n\t" \
  "sarl $31, %edx\n\t" \
  "orl $0x7FFFFFFF, %edx\n\t" \
  "movl $-1, %eax\n\t" \
  "ret"
#define ZRT_SIGNED_DIVISION(helper, result) \
  ZRT_DIVISION_BY_A_WORD(helper) \
  "testl %edx, %edx\n\t" \
  "js " ZRT_HELPER(helper) "\n\t" \
  "divl %ecx\n\t" result \
  "xorl %edx, %edx\n\t" \
  "ret\n" \
  "1: cltd\n\t" \
  "cmpl 8(%esp), %edx\n\t" \
  "jne 2f\n\t" \
  "testl %ecx, %ecx\n\t" \
  "jle 2f\n\t" \
  "idivl %ecx\n\t" result \
  "cltd\n\t" \
  "ret\n" \
  "2: testl %ecx, %ecx\n\t" \
  "jne " ZRT_HELPER(helper) "\n\t" \
  "movl $-1, %eax\n\t" \
  "movl $0x7FFFFFFF, %edx\n\t" \
  "ret"
#define ZRT_QUOTIENT ""
#define ZRT_REMAINDER "movl %edx, %eax\n\t"
// clang-format on

#endif

namespace {

/// The carry out of x + y, from the top bits of the addends and of the sum.
constexpr std::uint32_t carry(std::uint32_t x, std::uint32_t y, std::uint32_t sum) {
  return ((x & y) | ((x | y) & ~sum)) >> 31;
}

/// Product modulo 2**64 of limbs of 16 bits: a = h1:h0:a1:a0, b = g1:g0:b1:b0.
std::uint64_t limb_product(std::uint64_t a, std::uint64_t b) {
  const std::uint32_t a0 = low_word(a) & 0xFFFF, a1 = low_word(a) >> 16;
  const std::uint32_t b0 = low_word(b) & 0xFFFF, b1 = low_word(b) >> 16;
  const std::uint32_t h0 = high_word(a) & 0xFFFF, h1 = high_word(a) >> 16;
  const std::uint32_t g0 = high_word(b) & 0xFFFF, g1 = high_word(b) >> 16;

  const std::uint32_t left = a1 * b0, right = a0 * b1;
  const std::uint32_t middle = left + right;
  const std::uint32_t middle_carry = carry(left, right, middle);
  const std::uint32_t bottom = a0 * b0;
  const std::uint32_t low = bottom + (middle << 16);
  std::uint32_t high =
      a1 * b1 + (middle_carry << 16 | middle >> 16) + carry(bottom, middle << 16, low);
  if (high_word(a) != 0) high += h0 * b0 + ((h1 * b0 + h0 * b1) << 16);
  if (high_word(b) != 0) high += a0 * g0 + ((a1 * g0 + a0 * g1) << 16);
  return std::uint64_t{high} << 32 | low;
}

struct divided {
  std::uint64_t quotient, remainder;
};

/// Restoring division with a normalised divisor, for b > 0. The first round halves the divisor, so
/// that from then on doubling the remainder stays in 64 bits; it is scaled back at the end.
divided shift_and_subtract(std::uint64_t a, std::uint64_t b) {
  if (high_word(a) == 0 && high_word(b) == 0)
    return {low_word(a) / low_word(b), low_word(a) % low_word(b)};
  int rounds = 1;
  for (; b >> 63 == 0; ++rounds) b <<= 1;
  std::uint64_t quotient = 0, remainder = a;
  int doubled = 0;
  for (bool first = true; rounds > 0 && remainder != 0; --rounds, first = false) {
    quotient <<= 1;
    if (remainder >= b) {
      remainder -= b;
      quotient |= 1;
    }
    if (first) {
      b >>= 1;
    } else {
      remainder <<= 1;
      ++doubled;
    }
  }
  return {quotient << rounds, remainder >> doubled};
}

/// Both high words positive and a below b: no division is needed. Elsewhere the loop gives the
/// same.
bool plainly_below(std::uint64_t a, std::uint64_t b) {
  return static_cast<std::int32_t>(high_word(a)) > 0 &&
         static_cast<std::int32_t>(high_word(b)) > 0 && a < b;
}

}  // namespace
}  // namespace zrt::int64

using namespace zrt;
using namespace zrt::int64;

ZRT_VALUE(std::int64_t, lmul)(std::int64_t a, std::int64_t b) { return product(a, b); }

#if defined(__i386__)

#define ZRT_NAKED(type) type __attribute__((naked))
ZRT_VALUE(ZRT_NAKED(std::int64_t), ldiv)(std::int64_t, std::int64_t) {
  asm(ZRT_SIGNED_DIVISION(__divdi3, ZRT_QUOTIENT));
}
ZRT_VALUE(ZRT_NAKED(std::int64_t), lmod)(std::int64_t, std::int64_t) {
  asm(ZRT_SIGNED_DIVISION(__moddi3, ZRT_REMAINDER));
}
ZRT_VALUE(ZRT_NAKED(std::uint64_t), uldiv)(std::uint64_t, std::uint64_t) {
  asm(ZRT_UNSIGNED_DIVISION(__udivdi3, ZRT_QUOTIENT));
}
ZRT_VALUE(ZRT_NAKED(std::uint64_t), ulmod)(std::uint64_t, std::uint64_t) {
  asm(ZRT_UNSIGNED_DIVISION(__umoddi3, ZRT_REMAINDER));
}

#else

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

ZRT_VALUE(std::int64_t, slow_lmul)(std::int64_t a, std::int64_t b) {
  return negated_by(static_cast<std::int64_t>(limb_product(magnitude(a), magnitude(b))),
                    sign_mask(a ^ b));
}

ZRT_VALUE(std::int64_t, slow_ldiv)(std::int64_t a, std::int64_t b) {
  const std::uint64_t dividend = magnitude(a), divisor = magnitude(b);
  if (plainly_below(dividend, divisor)) return 0;
  if (divisor == 0) return signed_by_zero;
  return negated_by(static_cast<std::int64_t>(shift_and_subtract(dividend, divisor).quotient),
                    sign_mask(a ^ b));
}
ZRT_VALUE(std::int64_t, slow_lmod)(std::int64_t a, std::int64_t b) {
  const std::uint64_t dividend = magnitude(a), divisor = magnitude(b);
  if (plainly_below(dividend, divisor)) return a;
  if (divisor == 0) return signed_by_zero;
  return negated_by(static_cast<std::int64_t>(shift_and_subtract(dividend, divisor).remainder),
                    sign_mask(a));
}

ZRT_VALUE(std::uint64_t, slow_uldiv)(std::uint64_t a, std::uint64_t b) {
  if (a < b) return 0;
  if (b == 0) return slow_unsigned_by_zero;
  if (b >> 63 != 0) return 1;
  return shift_and_subtract(a, b).quotient;
}
ZRT_VALUE(std::uint64_t, slow_ulmod)(std::uint64_t a, std::uint64_t b) {
  if (a < b) return a;
  if (b == 0) return slow_unsigned_by_zero;
  if (b >> 63 != 0) return a - b;
  return shift_and_subtract(a, b).remainder;
}
