#pragma once

// Images of values, for comparisons that tell zeros and NaNs apart.

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <ostream>

namespace support {

/// The 80-bit image of a register value.
struct image80 {
  std::uint64_t significand = 0;
  std::uint16_t sign_exponent = 0;
  bool operator==(const image80&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const image80& image) {
    return out << std::hex << image.sign_exponent << ':' << image.significand << std::dec;
  }
};

inline image80 register_image(long double value) {
  image80 image;
  std::memcpy(&image.significand, &value, 8);
  std::memcpy(&image.sign_exponent, reinterpret_cast<const char*>(&value) + 8, 2);
  return image;
}

inline std::uint64_t bits(double value) { return std::bit_cast<std::uint64_t>(value); }
inline std::uint32_t bits(float value) { return std::bit_cast<std::uint32_t>(value); }

/// The image after a store to the format.
inline std::uint64_t double_bits(long double value) { return bits(static_cast<double>(value)); }
inline std::uint32_t single_bits(long double value) { return bits(static_cast<float>(value)); }

inline double from_bits(std::uint64_t image) { return std::bit_cast<double>(image); }
inline float from_bits(std::uint32_t image) { return std::bit_cast<float>(image); }

}  // namespace support
