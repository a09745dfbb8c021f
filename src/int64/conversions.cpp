// Conversions between INTEGER*8 and the floating types.
//
// The fast forms run on the x87 unit, whose 64-bit significand holds every INTEGER*8 exactly:
// whoever stores the result rounds it. The slow forms use 32-bit integer instructions alone and cut
// toward zero to the format. The two layers differ beyond the range and for a NaN.

#include "int64/conversions.hpp"

#include "entries.hpp"
#include "int64/signs.hpp"

namespace zrt::int64 {
namespace {

/// x moved by a half away from zero, rounded to REAL*8, then cut: the nearest integer, ties away
/// from zero. A NaN takes the upper branch and saturates upward.
std::int64_t nearest(reg x) {
  return to_integer(stored<double>(greater(0.0L, x) ? x - 0.5L : x + 0.5L));
}

/// Beyond the range the sign bit decides, of a NaN too.
std::int64_t saturated(bool negative) { return negative ? smallest : largest; }

std::int64_t signed_value(std::uint64_t magnitude, bool negative) {
  return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

/// The significand moves one bit at a time to the weight of an integer; what leaves it on the right
/// is cut. Zeros and subnormals end at 0.
std::int64_t slow_to_integer(const double& x) {
  constexpr int weight_one = 1075;  // biased exponent at which bit 0 of the significand counts 1
  const std::uint64_t bits = image(x);
  const bool negative = bits >> 63 != 0;
  int exponent = biased_exponent<double>(bits);
  if (exponent > 1085) return saturated(negative);
  std::uint64_t m = (bits & 0xFFFFFFFFFFFFF) | std::uint64_t{1} << 52;
  for (; exponent < weight_one && m != 0; ++exponent) m >>= 1;
  for (; exponent > weight_one; --exponent) m <<= 1;
  return signed_value(m, negative);
}

/// By the exponent field the 24-bit significand falls into the low word, across both or into the
/// high word.
std::int64_t slow_to_integer(const float& x) {
  const std::uint32_t bits = image(x);
  const bool negative = bits >> 31 != 0;
  const int exponent = biased_exponent<float>(bits);
  const std::uint32_t m = (bits & 0x7FFFFF) | 0x800000;
  std::uint32_t low = 0, high = 0;
  if (exponent < 127) return 0;
  if (exponent <= 150) {
    low = m >> (150 - exponent);
  } else if (exponent <= 158) {
    low = m << (exponent - 150);
  } else if (exponent <= 181) {
    low = m << (exponent - 150) % 32;
    high = m >> (182 - exponent);
  } else if (exponent <= 189) {
    high = m << (exponent - 182);
  } else {
    return saturated(negative);
  }
  return signed_value(std::uint64_t{high} << 32 | low, negative);
}

/// Cut toward zero to 53 bits: normalised one bit at a time, no rounding. 0 gives +0.0.
reg slow_to_real8(std::uint64_t m, bool negative) {
  if (m == 0) return 0.0L;
  std::uint64_t exponent = 1075;
  for (; m >> 53 != 0; ++exponent) m >>= 1;
  for (; m >> 52 == 0; --exponent) m <<= 1;
  return load_image<double>(std::uint64_t{negative} << 63 | exponent << 52 | (m & 0xFFFFFFFFFFFFF));
}

/// Cut toward zero to 24 bits: the high word is normalised, bits of the low word following from
/// below; with a zero high word the low word is. 0 gives +0.0.
reg slow_to_real4(std::uint64_t magnitude, bool negative) {
  if (magnitude == 0) return 0.0L;
  const auto high = static_cast<std::uint32_t>(magnitude >> 32);
  auto low = static_cast<std::uint32_t>(magnitude);
  std::uint32_t m = high, exponent = 182;
  if (high == 0) {
    m = low;
    low = 0;
    exponent = 150;
  }
  for (; m > 0xFFFFFF; ++exponent) m >>= 1;
  for (; m < 0x800000; --exponent) {
    m = m << 1 | low >> 31;
    low <<= 1;
  }
  return load_image<float>(std::uint32_t{negative} << 31 | exponent << 23 | (m & 0x7FFFFF));
}

}  // namespace
}  // namespace zrt::int64

using namespace zrt;
using namespace zrt::int64;

ZRT_VALUE(std::int64_t, cvtdll)(real8 x) { return to_integer(load(x)); }
ZRT_VALUE(std::int64_t, cvtfll)(real4 x) { return to_integer(load(x)); }
ZRT_VALUE(real8_result, cvtlld)(integer8 a) { return returned<double>(load_integer(joined(a))); }
ZRT_VALUE(real4_result, cvtllf)(integer8 a) { return returned<float>(load_integer(joined(a))); }
ZRT_VALUE(real8_result, cvtulld)(unsigned8 a) {
  return returned<double>(from_unsigned<double>(joined(a)));
}
ZRT_VALUE(real4_result, cvtullf)(unsigned8 a) {
  return returned<float>(from_unsigned<float>(joined(a)));
}

ZRT_VALUE(std::int64_t, slow_cvtdll)(real8 x) { return slow_to_integer(x); }
ZRT_VALUE(std::int64_t, slow_cvtfll)(real4 x) { return slow_to_integer(x); }
ZRT_VALUE(real8_result, slow_cvtlld)(integer8 a) {
  return returned<double>(slow_to_real8(magnitude(a), a < 0));
}
ZRT_VALUE(real4_result, slow_cvtllf)(integer8 a) {
  return returned<float>(slow_to_real4(magnitude(a), a < 0));
}
ZRT_VALUE(real8_result, slow_cvtulld)(unsigned8 a) {
  return returned<double>(slow_to_real8(a, false));
}
ZRT_VALUE(real4_result, slow_cvtullf)(unsigned8 a) {
  return returned<float>(slow_to_real4(a, false));
}

ZRT_VALUE(std::int64_t, kidnnt)(real8 x) { return nearest(load(x)); }
ZRT_VALUE(std::int64_t, knint)(real4 x) { return nearest(load(x)); }
