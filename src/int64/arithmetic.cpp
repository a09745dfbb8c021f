// 64-bit multiplication, and its slow form beside those of division and remainder: 32-bit integer
// instructions alone, limbs of 16 bits, shift and subtract. division.cpp has the fast ones.

#include "int64/arithmetic.hpp"

#include "entries.hpp"

namespace zrt::int64 {
namespace {

using word = std::uint32_t;

/// What the slow unsigned division and remainder give for a zero divisor.
constexpr std::uint64_t slow_unsigned_by_zero = UINT64_MAX;

constexpr word low_word(std::uint64_t x) { return static_cast<word>(x); }
constexpr word high_word(std::uint64_t x) { return static_cast<word>(x >> 32); }

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
