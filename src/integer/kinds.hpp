#pragma once

// What the families of the integer kinds share: INTEGER*1, *2, *4 and *8 as types, their width, and
// arithmetic that wraps to it.
//
// An INTEGER*1 or *2 operand fills a slot of 32 bits. `low` reads it: whatever stands above its 8
// or 16 bits is ignored.

#include <concepts>
#include <cstdint>
#include <type_traits>

#include "int64/signs.hpp"

namespace zrt::integer {

using int64::magnitude;
using int64::negated_by;
using int64::sign_mask;

using integer1 = std::int8_t;
using integer2 = std::int16_t;
using integer4 = std::int32_t;
using integer8 = std::int64_t;

/// The bits of a number of the kind.
template <std::signed_integral Kind>
using bits_of = std::make_unsigned_t<Kind>;

template <std::signed_integral Kind>
inline constexpr int width = static_cast<int>(sizeof(Kind)) * 8;

/// The low bits of x as a number of the kind.
template <std::signed_integral Kind, std::integral Wide>
constexpr Kind low(Wide x) {
  return static_cast<Kind>(x);
}

/// a - b, wrapping.
template <std::signed_integral Kind>
constexpr Kind difference(Kind a, Kind b) {
  return static_cast<Kind>(static_cast<bits_of<Kind>>(a) - static_cast<bits_of<Kind>>(b));
}

}  // namespace zrt::integer
