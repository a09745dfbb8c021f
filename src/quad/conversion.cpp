// REAL*16 and 64-bit integers.

#include "entries.hpp"
#include "int64/conversions.hpp"
#include "quad/by_processor.hpp"
#include "quad/rounding.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;

/// An integer of up to 53 bits, exactly.
[[gnu::always_inline]] inline steps::value value_of(std::uint64_t u) {
  return load_integer<steps::value>(static_cast<std::int64_t>(u));
}

/// An unsigned integer, exactly: cut at bit 53 into two exact doubles; the closing sum sorts them.
quad from_unsigned(std::uint64_t u) {
  constexpr std::uint64_t low_bits = (std::uint64_t{1} << 53) - 1;
  if (u <= low_bits) return widened(value_of(u));
  return steps::add(widened(value_of(u & low_bits)), value_of(u >> 53) * 0x1p53);
}

/// A signed integer, by its magnitude; a negative one flips both signs, of the zero too.
quad from_signed(std::int64_t k) {
  const auto bits = static_cast<std::uint64_t>(k);
  return k < 0 ? steps::neg(from_unsigned(-bits)) : from_unsigned(bits);
}

// From the exponent of 2**63 on nothing fits; from that of 2**52 on hi has no fraction and lo
// counts.
constexpr int last_exponent = layout<double>::bias + 62;
constexpr int whole_exponent = layout<double>::bias + 52;

/// hi and, where it is whole, the floor of lo, cut to integers and added in 64 bits.
std::uint64_t magnitude_to_integer(const quad& m, int exponent) {
  const auto high = static_cast<std::uint64_t>(int64::to_integer(load(m.hi)));
  if (exponent < whole_exponent) return high;
  return high + static_cast<std::uint64_t>(int64::to_integer(real::floor(load(m.lo))));
}

/// Truncation to a signed integer; out of range, infinities and NaNs give the smallest.
std::int64_t to_signed(const quad& a) {
  const int exponent = biased_exponent<double>(image(a.hi));
  if (exponent > last_exponent) return int64::smallest;
  if (!negative(a)) return static_cast<std::int64_t>(magnitude_to_integer(a, exponent));
  return static_cast<std::int64_t>(-magnitude_to_integer(stored_arithmetic::neg(a), exponent));
}

/// The same without a sign: from 2**63 on all ones, a negative operand by its two's complement.
std::uint64_t to_unsigned(const quad& a) {
  const int exponent = biased_exponent<double>(image(a.hi));
  return exponent > last_exponent ? UINT64_MAX : magnitude_to_integer(a, exponent);
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
