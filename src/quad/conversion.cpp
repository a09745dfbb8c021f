// REAL*16 and 64-bit integers.

#include "entries.hpp"
#include "int64/conversions.hpp"
#include "quad/by_processor.hpp"
#include "quad/rounding.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;
/// For integers: sums of theirs are exact in both parts.
using exact = direct_arithmetic<steps::value>;

/// An integer of up to 53 bits, exactly.
[[gnu::always_inline]] inline steps::value value_of(std::uint64_t u) {
  return load_integer<steps::value>(static_cast<std::int64_t>(u));
}

/// An unsigned integer, exactly: cut at bit 53 into two exact doubles; the closing sum sorts them.
[[gnu::always_inline]] inline quad from_unsigned(std::uint64_t u) {
  constexpr std::uint64_t low_bits = (std::uint64_t{1} << 53) - 1;
  const quad low{as_double(value_of(u & low_bits)), 0.0};
  return u <= low_bits ? low : exact::add(low, value_of(u >> 53) * 0x1p53);
}

/// A signed integer, by its magnitude; a negative one flips both signs, of the zero too.
[[gnu::always_inline]] inline quad from_signed(std::int64_t k) {
  const auto bits = static_cast<std::uint64_t>(k);
  return k < 0 ? exact::neg(from_unsigned(-bits)) : from_unsigned(bits);
}

// From the exponent of 2**63 on nothing fits; from that of 2**52 on hi has no fraction and lo
// counts.
constexpr int last_exponent = layout<double>::bias + 62;
constexpr int whole_exponent = layout<double>::bias + 52;

// hi cut to an integer, and the floor of lo, which is added where hi is whole.
[[gnu::always_inline]] inline std::uint64_t from_high(reg hi) {
  return static_cast<std::uint64_t>(truncated_to_int64(hi));
}
[[gnu::always_inline]] inline std::uint64_t from_low(reg lo) {
  return static_cast<std::uint64_t>(int64::to_integer(real::floor(lo)));
}

/// Truncation to a signed integer, of a negative number by its magnitude; out of range, infinities
/// and NaNs give the smallest.
[[gnu::always_inline]] inline std::int64_t to_signed(const quad& a) {
  const int exponent = biased_exponent<double>(image(a.hi));
  if (exponent > last_exponent) return int64::smallest;
  const reg hi = load(a.hi);
  std::uint64_t integer = from_high(hi);
  if (less(hi, 0.0)) {
    const reg lo = fchs(load(a.lo));
    asm volatile("" : : "t"(lo));  // its load raises flags, wanted or not
    if (exponent >= whole_exponent) integer -= from_low(lo);
  } else if (exponent >= whole_exponent) {
    integer += from_low(load(a.lo));
  }
  return static_cast<std::int64_t>(integer);
}

/// The same without a sign: from 2**63 on all ones, a negative operand by its two's complement.
[[gnu::always_inline]] inline std::uint64_t to_unsigned(const quad& a) {
  const int exponent = biased_exponent<double>(image(a.hi));
  if (exponent > last_exponent) return UINT64_MAX;
  const std::uint64_t integer = from_high(load(a.hi));
  return exponent < whole_exponent ? integer : integer + from_low(load(a.lo));
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, ll2q)(quad* result, std::int64_t k) { return put(result, from_signed(k)); }
ZRT_VALUE(quad*, ull2q)(quad* result, std::uint64_t k) { return put(result, from_unsigned(k)); }
ZRT_VALUE(quad*, qaddk)(quad* result, quad a, std::int64_t k) {
  return put(result, steps::add(joined(a), from_signed(k)));
}
ZRT_VALUE(quad*, qsubk)(quad* result, quad a, std::int64_t k) {
  return put(result, steps::sub(joined(a), from_signed(k)));
}
ZRT_VALUE(quad*, ksubq)(quad* result, std::int64_t k, quad a) {
  return put(result, steps::sub(from_signed(k), joined(a)));
}
ZRT_VALUE(quad*, qmulk)(quad* result, quad a, std::int64_t k) {
  return by_processor::mul(result, joined(a), from_signed(k));
}
ZRT_VALUE(quad*, qdivk)(quad* result, quad a, std::int64_t k) {
  return by_processor::div(result, joined(a), from_signed(k));
}
ZRT_VALUE(quad*, kdivq)(quad* result, std::int64_t k, quad a) {
  return by_processor::div(result, from_signed(k), joined(a));
}

ZRT_VALUE(std::int64_t, q2ll)(quad a) { return to_signed(joined(a)); }
ZRT_VALUE(std::uint64_t, q2ull)(quad a) { return to_unsigned(joined(a)); }
ZRT_VALUE(std::int64_t, kiqnnt)(quad a) { return to_signed(half_away(joined(a))); }
