// MVBITS: moving a bit field from one INTEGER*4 to another, in the four spellings that compilers
// give an external name.

#include "entries.hpp"

namespace zrt::integer {
namespace {

/// Copies the `length` bits of `from` at `from_position` to `to` at `to_position`, positions
/// modulo 32. A field that runs past bit 31 of `from` takes in copies of its sign bit, one that
/// runs past bit 31 of `to` loses its top. A length of 0 or less moves nothing, one above 32 counts
/// as 32. Everything is read before `to` is written, so that any of the operands may be `to`
/// itself.
void move_bits(const std::int32_t& from, const std::int32_t& from_position,
               const std::int32_t& length, std::int32_t& to, const std::int32_t& to_position) {
  if (length <= 0) return;
  const std::uint32_t mask = UINT32_MAX >> (length < 32 ? 32 - length : 0);
  const auto field =
      static_cast<std::uint32_t>(from >> (static_cast<std::uint32_t>(from_position) % 32)) & mask;
  const std::uint32_t place = static_cast<std::uint32_t>(to_position) % 32;
  to = static_cast<std::int32_t>((static_cast<std::uint32_t>(to) & ~(mask << place)) |
                                 field << place);
}

}  // namespace
}  // namespace zrt::integer

using zrt::integer::move_bits;

ZRT_PLAIN(void, _mvbits)
(const std::int32_t* from, const std::int32_t* frompos, const std::int32_t* len, std::int32_t* to,
 const std::int32_t* topos) {
  move_bits(*from, *frompos, *len, *to, *topos);
}
ZRT_PLAIN(void, _mvbits_)
(const std::int32_t* from, const std::int32_t* frompos, const std::int32_t* len, std::int32_t* to,
 const std::int32_t* topos) {
  move_bits(*from, *frompos, *len, *to, *topos);
}
ZRT_PLAIN(void, _MVBITS)
(const std::int32_t* from, const std::int32_t* frompos, const std::int32_t* len, std::int32_t* to,
 const std::int32_t* topos) {
  move_bits(*from, *frompos, *len, *to, *topos);
}
ZRT_PLAIN(void, _MVBITS_)
(const std::int32_t* from, const std::int32_t* frompos, const std::int32_t* len, std::int32_t* to,
 const std::int32_t* topos) {
  move_bits(*from, *frompos, *len, *to, *topos);
}
