// 64-bit multiplication, division and remainder, signed and unsigned.
//
// On i386 the fast forms are made of the processor's 64-by-32 divide; the x87 route would cost two
// changes of control word. The slow forms use 32-bit integer instructions alone: limbs of 16 bits,
// shift and subtract.

#include "int64/arithmetic.hpp"

#include "entries.hpp"

namespace zrt::int64 {
namespace {

using word = std::uint32_t;

/// What the slow unsigned division gives for a zero divisor.
constexpr std::uint64_t unsigned_by_zero = UINT64_MAX;

/// The fast one counts as signed as long as the dividend could be.
constexpr std::uint64_t quotient_by_zero(std::uint64_t a) {
  return a >> 63 == 0 ? static_cast<std::uint64_t>(signed_by_zero) : unsigned_by_zero;
}

constexpr word low_word(std::uint64_t x) { return static_cast<word>(x); }
constexpr word high_word(std::uint64_t x) { return static_cast<word>(x >> 32); }

}  // namespace

#if defined(__i386__)
namespace {

/// A 64-bit number as its two words: the compiler keeps them in registers where it would spill a
/// number of 64 bits.
struct words {
  word low, high;
};

constexpr words split(std::uint64_t x) { return {low_word(x), high_word(x)}; }
constexpr std::uint64_t joined(words x) { return std::bit_cast<std::uint64_t>(x); }
constexpr word sign_mask(word high) {
  return static_cast<word>(static_cast<std::int32_t>(high) >> 31);
}

/// high:low / divisor for high < divisor, so that the quotient fits a word.
struct divided_words {
  word quotient, remainder;
};
[[gnu::always_inline]] inline divided_words divide_words(word high, word low, word divisor) {
  divided_words result;
  asm("divl %4"
      : "=a"(result.quotient), "=d"(result.remainder)
      : "a"(low), "d"(high), "r"(divisor)
      : "cc");
  return result;
}

/// x where the mask is zero, -x where it is all ones.
[[gnu::always_inline]] inline words negated_by(words x, word mask) {
  asm("xor %2, %0\n\t"
      "xor %2, %1\n\t"
      "sub %2, %0\n\t"
      "sbb %2, %1"
      : "+&r"(x.low), "+&r"(x.high)
      : "r"(mask)
      : "cc");
  return x;
}

[[gnu::always_inline]] inline words magnitude(words x) { return negated_by(x, sign_mask(x.high)); }

constexpr words masked(words x, word mask) { return {x.low & mask, x.high & mask}; }

/// x - y modulo 2**64.
[[gnu::always_inline]] inline words difference(words x, words y) {
  asm("sub %2, %0\n\t"
      "sbb %3, %1"
      : "+&r"(x.low), "+&r"(x.high)
      : "g"(y.low), "g"(y.high)
      : "cc");
  return x;
}

/// x + y modulo 2**64.
[[gnu::always_inline]] inline words sum(words x, words y) {
  asm("add %2, %0\n\t"
      "adc %3, %1"
      : "+&r"(x.low), "+&r"(x.high)
      : "g"(y.low), "g"(y.high)
      : "cc");
  return x;
}

/// All ones for x < y as unsigned numbers, else zero.
[[gnu::always_inline]] inline word mask_of_below(words x, words y) {
  asm("cmp %2, %1\n\t"
      "sbb %3, %0\n\t"
      "sbb %0, %0"
      : "+&r"(x.high)
      : "r"(x.low), "g"(y.low), "g"(y.high)
      : "cc");
  return x.high;
}

[[gnu::always_inline]] inline words product_of_words(word x, word y) {
  words result;
  asm("mull %3" : "=a"(result.low), "=d"(result.high) : "a"(x), "rm"(y) : "cc");
  return result;
}

/// Division by a b of two words, at most 2**63, for a of at least the high word of b: a / 2 is
/// divided by the top word of the normalised b, and scaled back this quotient is the true one or
/// one more (Knuth, algorithm D with one digit). The remainder modulo 2**64 goes with it: it is not
/// below b where the quotient is one more.
struct estimate {
  word quotient;
  words remainder;
};
[[gnu::always_inline]] inline estimate estimated(words a, words b) {
  const int top_bit = __builtin_clz(b.high) ^ 31;
  word top = b.high, half_low = a.low;
  asm("shldl %%cl, %1, %0" : "+r"(top) : "r"(b.low), "c"(~top_bit) : "cc");
  asm("shrdl $1, %1, %0" : "+r"(half_low) : "r"(a.high) : "cc");
  const word quotient = divide_words(a.high >> 1, half_low, top).quotient >> top_bit;
  const words rest = {a.low, a.high - quotient * b.high};
  return {quotient, difference(rest, product_of_words(quotient, b.low))};
}

/// Unsigned division by a divisor of one word, not 0: one divide where the quotient fits a word
/// too.
[[gnu::always_inline]] inline words quotient_by_word(words a, word divisor) {
  if (a.high < divisor) return {divide_words(a.high, a.low, divisor).quotient, 0};
  const auto upper = divide_words(0, a.high, divisor);
  return {divide_words(upper.remainder, a.low, divisor).quotient, upper.quotient};
}
[[gnu::always_inline]] inline words remainder_by_word(words a, word divisor) {
  const word upper = a.high < divisor ? a.high : divide_words(0, a.high, divisor).remainder;
  return {divide_words(upper, a.low, divisor).remainder, 0};
}

/// Unsigned division by b, at most 2**63 and not 0.
[[gnu::always_inline]] inline words quotient_of_words(words a, words b) {
  if (b.high == 0) return quotient_by_word(a, b.low);
  if (a.high < b.high) return {0, 0};
  const auto [quotient, rest] = estimated(a, b);
  return {quotient - 1 - mask_of_below(rest, b), 0};
}
[[gnu::always_inline]] inline words remainder_of_words(words a, words b) {
  if (b.high == 0) return remainder_by_word(a, b.low);
  if (a.high < b.high) return a;
  const words rest = estimated(a, b).remainder;
  return sum(rest, masked(b, ~mask_of_below(rest, b)));
}

/// Unsigned division. A divisor above 2**63 goes into a dividend once or not at all.
[[gnu::always_inline]] inline std::uint64_t unsigned_quotient(std::uint64_t dividend,
                                                              std::uint64_t divisor) {
  const words a = split(dividend), b = split(divisor);
  if (b.high == 0 && a.high < b.low) return divide_words(a.high, a.low, b.low).quotient;
  if (divisor == 0) return quotient_by_zero(dividend);
  if (b.high >> 31 != 0) return 1 + mask_of_below(a, b);
  return joined(quotient_of_words(a, b));
}
[[gnu::always_inline]] inline std::uint64_t unsigned_remainder(std::uint64_t dividend,
                                                               std::uint64_t divisor) {
  const words a = split(dividend), b = split(divisor);
  if (b.high == 0 && a.high < b.low) return divide_words(a.high, a.low, b.low).remainder;
  if (divisor == 0) return quotient_by_zero(dividend);
  if (b.high >> 31 != 0) return joined(difference(a, masked(b, ~mask_of_below(a, b))));
  return joined(remainder_of_words(a, b));
}

std::int64_t as_signed(words x) { return static_cast<std::int64_t>(joined(x)); }

}  // namespace

// Signed division, the cheapest case first: a positive divisor of one word, with a dividend that is
// not negative and takes one divide, or fits a word, or neither; then two numbers that are not
// negative; then any.

std::int64_t quotient(std::int64_t dividend, std::int64_t divisor) {
  const words a = split(static_cast<std::uint64_t>(dividend));
  const words b = split(static_cast<std::uint64_t>(divisor));
  if (b.high == 0) {
    if (a.high < b.low && dividend >= 0) return divide_words(a.high, a.low, b.low).quotient;
    const auto word_divisor = static_cast<std::int32_t>(b.low);
    if (a.high == sign_mask(a.low) && word_divisor > 0)
      return static_cast<std::int32_t>(a.low) / word_divisor;
    if (b.low == 0) return signed_by_zero;
    const word sign = sign_mask(a.high);
    return as_signed(negated_by(quotient_by_word(negated_by(a, sign), b.low), sign));
  }
  if ((dividend | divisor) >= 0) return as_signed(quotient_of_words(a, b));
  const words size = quotient_of_words(magnitude(a), magnitude(b));
  return as_signed(negated_by(size, sign_mask(a.high ^ b.high)));
}

std::int64_t remainder(std::int64_t dividend, std::int64_t divisor) {
  const words a = split(static_cast<std::uint64_t>(dividend));
  const words b = split(static_cast<std::uint64_t>(divisor));
  if (b.high == 0) {
    if (a.high < b.low && dividend >= 0) return divide_words(a.high, a.low, b.low).remainder;
    const auto word_divisor = static_cast<std::int32_t>(b.low);
    if (a.high == sign_mask(a.low) && word_divisor > 0)
      return static_cast<std::int32_t>(a.low) % word_divisor;
    if (b.low == 0) return signed_by_zero;
    const word sign = sign_mask(a.high);
    return as_signed(negated_by(remainder_by_word(negated_by(a, sign), b.low), sign));
  }
  if ((dividend | divisor) >= 0) return as_signed(remainder_of_words(a, b));
  const words size = remainder_of_words(magnitude(a), magnitude(b));
  return as_signed(negated_by(size, sign_mask(a.high)));
}

#else
namespace {

constexpr std::uint64_t unsigned_quotient(std::uint64_t a, std::uint64_t b) {
  return b != 0 ? a / b : quotient_by_zero(a);
}
constexpr std::uint64_t unsigned_remainder(std::uint64_t a, std::uint64_t b) {
  return b != 0 ? a % b : quotient_by_zero(a);
}

}  // namespace

std::int64_t quotient(std::int64_t a, std::int64_t b) {
  if (static_cast<std::uint64_t>(b) + 1 > 1) return a / b;  // neither 0 nor -1
  return b == 0 ? signed_by_zero : negated_by(a, -1);
}

std::int64_t remainder(std::int64_t a, std::int64_t b) {
  if (static_cast<std::uint64_t>(b) + 1 > 1) return a % b;  // neither 0 nor -1
  return b == 0 ? signed_by_zero : 0;
}

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

ZRT_VALUE(std::int64_t, ldiv)(std::int64_t a, std::int64_t b) { return quotient(a, b); }
ZRT_VALUE(std::int64_t, lmod)(std::int64_t a, std::int64_t b) { return remainder(a, b); }

ZRT_VALUE(std::uint64_t, uldiv)(std::uint64_t a, std::uint64_t b) {
  return unsigned_quotient(a, b);
}
ZRT_VALUE(std::uint64_t, ulmod)(std::uint64_t a, std::uint64_t b) {
  return unsigned_remainder(a, b);
}

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
  if (b == 0) return unsigned_by_zero;
  if (b >> 63 != 0) return 1;
  return shift_and_subtract(a, b).quotient;
}
ZRT_VALUE(std::uint64_t, slow_ulmod)(std::uint64_t a, std::uint64_t b) {
  if (a < b) return a;
  if (b == 0) return unsigned_by_zero;
  if (b >> 63 != 0) return a - b;
  return shift_and_subtract(a, b).remainder;
}
