// Integer powers of an integer base, by squaring and multiplying. All arithmetic wraps.

#include "entries.hpp"
#include "integer/kinds.hpp"

namespace zrt::integer {
namespace {

/// base**exponent modulo 2 to the width. A negative exponent leaves 0 of every base but 1 and -1, 0
/// included; 0**0 is 1.
template <class Kind>
Kind power(Kind base, Kind exponent) {
  if (exponent < 0) {
    if (base == 1) return 1;
    if (base == -1) return (exponent & 1) != 0 ? Kind{-1} : Kind{1};
    return 0;
  }
  if (exponent == 0) return 1;
  bits_of<Kind> product = 1, square = static_cast<bits_of<Kind>>(base);
  for (auto rest = static_cast<bits_of<Kind>>(exponent);;) {
    const bool bit = (rest & 1) != 0;
    rest >>= 1;
    if (rest == 0) return static_cast<Kind>(square * product);
    if (bit) product *= square;
    square *= square;
  }
}

}  // namespace
}  // namespace zrt::integer

using zrt::integer::power;

ZRT_VALUE(std::int32_t, itoi)(std::int32_t base, std::int32_t exponent) {
  return power(base, exponent);
}
ZRT_VALUE(std::int64_t, kitoki)(std::int64_t base, std::int64_t exponent) {
  return power(base, exponent);
}
