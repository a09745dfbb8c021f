#pragma once

// Complex operands and results of the value entries, as images.

#include "entries.hpp"
#include "support/results.hpp"

namespace support {

/// The images of both parts.
template <class Image>
struct images {
  Image re, im;
  bool operator==(const images&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const images& z) {
    return out << std::hex << '(' << z.re << ", " << z.im << ')' << std::dec;
  }
};
using images8 = images<std::uint32_t>;
using images16 = images<std::uint64_t>;

/// A COMPLEX*8 result as its parts.
inline images8 of(zrt::complex8_result result) { return std::bit_cast<images8>(result); }
inline images8 of(float re, float im) { return {bits(re), bits(im)}; }
inline images16 of(double re, double im) { return {bits(re), bits(im)}; }
inline images8 of(images8 z) { return z; }

/// Calls an entry whose result goes through an address; it must hand that address back.
template <class... Formal, class... Actual>
images16 called(zrt::dcomplex* (*entry)(zrt::dcomplex*, Formal...), Actual... operands) {
  zrt::dcomplex result;
  EXPECT_EQ(entry(&result, operands...), &result);
  return {bits(result.re), bits(result.im)};
}
/// The same call of a COMPLEX*8 entry.
template <class... Formal, class... Actual>
images8 called(zrt::complex8_result (*entry)(Formal...), Actual... operands) {
  return of(entry(operands...));
}

}  // namespace support
