// ISHFT and ISHFTC by kind. A positive count shifts left.

#include "entries.hpp"
#include "int64/arithmetic.hpp"
#include "integer/kinds.hpp"

namespace zrt::integer {
namespace {

/// Shifts within the kind, with zero fill on both sides. A count whose size reaches the width gives
/// 0; the smallest integer has a size beyond every width.
template <class Kind>
Kind logical_shift(Kind x, Kind count) {
  const bits_of<Kind> size = magnitude(count);
  if (size >= width<Kind>) return 0;
  const auto bits = static_cast<bits_of<Kind>>(x);
  return static_cast<Kind>(count >= 0 ? bits << size : bits >> size);
}

template <class Kind>
Kind remainder(Kind a, Kind b) {
  return static_cast<Kind>(a % b);
}
template <>
integer8 remainder(integer8 a, integer8 b) {
  return int64::remainder(a, b);
}

/// Rotates the low `size` bits of x left by `count`, any count; the bits above them stay. A size of
/// 0 or less leaves x alone, one above the width counts as the width.
template <class Kind>
Kind circular_shift(Kind x, Kind count, Kind size) {
  using bits = std::conditional_t<sizeof(Kind) == 8, std::uint64_t, std::uint32_t>;
  if (size <= 0) return x;
  if (size > width<Kind>) size = width<Kind>;
  if (count < 0 || count >= size) {
    count = remainder(count, size);
    if (count < 0) count = static_cast<Kind>(count + size);
  }
  if (count == 0) return x;
  // From here on every shift is by less than the size.
  const bits mask = static_cast<bits>(~bits{0}) >> (width<std::make_signed_t<bits>> - size);
  const bits field = static_cast<bits>(x) & mask;
  const bits rotated = field << count | field >> (size - count);
  return static_cast<Kind>((rotated & mask) | (static_cast<bits>(x) & ~mask));
}

}  // namespace
}  // namespace zrt::integer

using namespace zrt::integer;

ZRT_VALUE(std::int32_t, hishft)(std::int32_t x, std::int32_t n) {
  return logical_shift(low<integer1>(x), low<integer1>(n));
}
ZRT_VALUE(std::int32_t, iishft)(std::int32_t x, std::int32_t n) {
  return logical_shift(low<integer2>(x), low<integer2>(n));
}
ZRT_VALUE(std::int32_t, ishft)(std::int32_t x, std::int32_t n) { return logical_shift(x, n); }
ZRT_VALUE(std::int32_t, jishft)(std::int32_t x, std::int32_t n) { return logical_shift(x, n); }
ZRT_VALUE(std::int32_t, shift)(std::int32_t x, std::int32_t n) { return logical_shift(x, n); }
ZRT_VALUE(std::int64_t, kishft)(std::int64_t x, std::int64_t n) { return logical_shift(x, n); }

ZRT_VALUE(std::int32_t, ishftc_k1)(std::int32_t x, std::int32_t s, std::int32_t size) {
  return circular_shift(low<integer1>(x), low<integer1>(s), low<integer1>(size));
}
ZRT_VALUE(std::int32_t, ishftc_k2)(std::int32_t x, std::int32_t s, std::int32_t size) {
  return circular_shift(low<integer2>(x), low<integer2>(s), low<integer2>(size));
}
ZRT_VALUE(std::int32_t, iishftc)(std::int32_t x, std::int32_t s, std::int32_t size) {
  return circular_shift(low<integer2>(x), low<integer2>(s), low<integer2>(size));
}
ZRT_VALUE(std::int32_t, ishftc)(std::int32_t x, std::int32_t s, std::int32_t size) {
  return circular_shift(x, s, size);
}
ZRT_VALUE(std::int32_t, jishftc)(std::int32_t x, std::int32_t s, std::int32_t size) {
  return circular_shift(x, s, size);
}
ZRT_VALUE(std::int64_t, kishftc)(std::int64_t x, std::int64_t s, std::int64_t size) {
  return circular_shift(x, s, size);
}
