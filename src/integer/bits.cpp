// Zero extension, logical operations, single bits and bit fields by kind. Bit 0 is the least
// significant one.
//
// Nothing guards a position or a length. The kinds up to INTEGER*4 take them modulo 32, as the
// shifter does, also where the kind is narrower; INTEGER*8 takes the low word of a position as it
// stands.

#include "entries.hpp"
#include "int64/shifts.hpp"
#include "integer/kinds.hpp"

namespace zrt::integer {
namespace {

constexpr std::uint32_t all_ones = UINT32_MAX;

/// A position or length as the shifter takes it.
template <class Kind>
constexpr std::uint32_t count(Kind position) {
  return static_cast<std::uint32_t>(position) % 32;
}

// A bit above the kind is out of reach of clearing and setting.
template <class Kind>
Kind clear_bit(Kind x, Kind position) {
  return low<Kind>(static_cast<std::uint32_t>(x) & ~(std::uint32_t{1} << count(position)));
}
template <class Kind>
Kind set_bit(Kind x, Kind position) {
  return low<Kind>(static_cast<std::uint32_t>(x) | std::uint32_t{1} << count(position));
}

// INTEGER*8: a position outside 0 to 63 leaves x alone.
integer8 bit_at(integer8 position) { return int64::shifted_left(1, low<integer4>(position)); }
template <>
integer8 clear_bit(integer8 x, integer8 position) {
  return x & ~bit_at(position);
}
template <>
integer8 set_bit(integer8 x, integer8 position) {
  return x | bit_at(position);
}

/// 0 or 1. INTEGER*1 and *2 are extended to 32 bits first: a position from their width to 31 reads
/// the sign bit.
template <class Kind>
std::int32_t test_bit(Kind x, Kind position) {
  return static_cast<std::int32_t>(x) >> count(position) & 1;
}
/// INTEGER*8: a position outside 0 to 63 reads the sign bit.
integer8 test_bit(integer8 x, integer8 position) {
  return int64::shifted_right_arithmetically(x, low<integer4>(position)) & 1;
}

/// `length` bits from `position` on. The shift is arithmetic: a field that runs past the top fills
/// with copies of the sign bit. The full width of the kind is a field of all ones; 33 is one bit.
template <class Kind>
Kind field(Kind x, Kind position, Kind length) {
  const std::uint32_t mask = length == width<Kind> ? all_ones : ~(all_ones << count(length));
  return low<Kind>(static_cast<std::uint32_t>(static_cast<std::int32_t>(x) >> count(position)) &
                   mask);
}
/// INTEGER*8: a length of 64 or more takes all bits.
template <>
integer8 field(integer8 x, integer8 position, integer8 length) {
  const integer8 mask = ~int64::shifted_left(-1, low<integer4>(length));
  return int64::shifted_right_arithmetically(x, low<integer4>(position)) & mask;
}

}  // namespace
}  // namespace zrt::integer

using namespace zrt::integer;

// A 2 or 4 behind the stem counts the bytes of the operand; `zext` alone takes 2, `izext` and
// `jzext` 1.
ZRT_VALUE(std::int32_t, zext)(std::int32_t x) { return x & 0xFFFF; }
ZRT_VALUE(std::int32_t, izext)(std::int32_t x) { return x & 0xFF; }
ZRT_VALUE(std::int32_t, izext2)(std::int32_t x) { return x & 0xFFFF; }
ZRT_VALUE(std::int32_t, jzext)(std::int32_t x) { return x & 0xFF; }
ZRT_VALUE(std::int32_t, jzext2)(std::int32_t x) { return x & 0xFFFF; }
ZRT_VALUE(std::int32_t, jzext4)(std::int32_t x) { return x; }
ZRT_VALUE(std::int64_t, kzext)(std::int64_t x) { return x & 0xFFFFFFFF; }

ZRT_VALUE(std::int32_t, iiand)(std::int32_t a, std::int32_t b) { return low<integer2>(a & b); }
ZRT_VALUE(std::int32_t, iand)(std::int32_t a, std::int32_t b) { return a & b; }
ZRT_VALUE(std::int32_t, jiand)(std::int32_t a, std::int32_t b) { return a & b; }
ZRT_VALUE(std::int64_t, kiand)(std::int64_t a, std::int64_t b) { return a & b; }

ZRT_VALUE(std::int32_t, iior)(std::int32_t a, std::int32_t b) { return low<integer2>(a | b); }
ZRT_VALUE(std::int32_t, ior)(std::int32_t a, std::int32_t b) { return a | b; }
ZRT_VALUE(std::int32_t, jior)(std::int32_t a, std::int32_t b) { return a | b; }
ZRT_VALUE(std::int64_t, kior)(std::int64_t a, std::int64_t b) { return a | b; }

ZRT_VALUE(std::int32_t, iieor)(std::int32_t a, std::int32_t b) { return low<integer2>(a ^ b); }
ZRT_VALUE(std::int32_t, ieor)(std::int32_t a, std::int32_t b) { return a ^ b; }
ZRT_VALUE(std::int32_t, jieor)(std::int32_t a, std::int32_t b) { return a ^ b; }
ZRT_VALUE(std::int64_t, kieor)(std::int64_t a, std::int64_t b) { return a ^ b; }

ZRT_VALUE(std::int32_t, inot)(std::int32_t a) { return low<integer2>(~a); }
ZRT_VALUE(std::int32_t, not )(std::int32_t a) { return ~a; }
ZRT_VALUE(std::int32_t, jnot)(std::int32_t a) { return ~a; }
ZRT_VALUE(std::int64_t, knot)(std::int64_t a) { return ~a; }

ZRT_VALUE(std::int32_t, iibclr)(std::int32_t x, std::int32_t p) {
  return clear_bit(low<integer2>(x), low<integer2>(p));
}
ZRT_VALUE(std::int32_t, ibclr)(std::int32_t x, std::int32_t p) { return clear_bit(x, p); }
ZRT_VALUE(std::int32_t, jibclr)(std::int32_t x, std::int32_t p) { return clear_bit(x, p); }
ZRT_VALUE(std::int64_t, kibclr)(std::int64_t x, std::int64_t p) { return clear_bit(x, p); }

ZRT_VALUE(std::int32_t, iibset)(std::int32_t x, std::int32_t p) {
  return set_bit(low<integer2>(x), low<integer2>(p));
}
ZRT_VALUE(std::int32_t, ibset)(std::int32_t x, std::int32_t p) { return set_bit(x, p); }
ZRT_VALUE(std::int32_t, jibset)(std::int32_t x, std::int32_t p) { return set_bit(x, p); }
ZRT_VALUE(std::int64_t, kibset)(std::int64_t x, std::int64_t p) { return set_bit(x, p); }

ZRT_VALUE(std::int32_t, bitest)(std::int32_t x, std::int32_t p) {
  return test_bit(low<integer2>(x), low<integer2>(p));
}
ZRT_VALUE(std::int32_t, btest)(std::int32_t x, std::int32_t p) { return test_bit(x, p); }
ZRT_VALUE(std::int32_t, bjtest)(std::int32_t x, std::int32_t p) { return test_bit(x, p); }
ZRT_VALUE(std::int64_t, bktest)(std::int64_t x, std::int64_t p) { return test_bit(x, p); }

ZRT_VALUE(std::int32_t, hibits)(std::int32_t x, std::int32_t pos, std::int32_t len) {
  return field(low<integer1>(x), low<integer1>(pos), low<integer1>(len));
}
ZRT_VALUE(std::int32_t, iibits)(std::int32_t x, std::int32_t pos, std::int32_t len) {
  return field(low<integer2>(x), low<integer2>(pos), low<integer2>(len));
}
ZRT_VALUE(std::int32_t, ibits)(std::int32_t x, std::int32_t pos, std::int32_t len) {
  return field(x, pos, len);
}
ZRT_VALUE(std::int32_t, jibits)(std::int32_t x, std::int32_t pos, std::int32_t len) {
  return field(x, pos, len);
}
ZRT_VALUE(std::int64_t, kibits)(std::int64_t x, std::int64_t pos, std::int64_t len) {
  return field(x, pos, len);
}
