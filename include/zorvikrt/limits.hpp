/** std::numeric_limits and std::hash of REAL*16 and COMPLEX*32.
 */
#ifndef ZORVIKRT_LIMITS_HPP
#define ZORVIKRT_LIMITS_HPP

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <zorvikrt/arithmetic.hpp>

/** Properties of REAL*16: 106 bits wherever lo has not reached the end of the double's range. */
template <>
class std::numeric_limits<zorvikrt::real16> {
 public:
  static constexpr bool is_specialized = true, is_signed = true, is_integer = false,
                        is_exact = false, has_infinity = true, has_quiet_NaN = true,
                        has_signaling_NaN = true, is_iec559 = false, is_bounded = true,
                        is_modulo = false, traps = false, tinyness_before = false,
                        has_denorm_loss = false;
  static constexpr std::float_denorm_style has_denorm = std::denorm_present;
  static constexpr std::float_round_style round_style = std::round_indeterminate;
  static constexpr int radix = 2, digits = 106, digits10 = 31, max_digits10 = 33;
  /** 2**-969 is the smallest power of two with 106 bits. */
  static constexpr int min_exponent = -968, min_exponent10 = -291;
  static constexpr int max_exponent = 1024, max_exponent10 = 308;
  static constexpr zorvikrt::real16 min() noexcept { return {0x1p-969, 0}; }
  static constexpr zorvikrt::real16 max() noexcept {
    return {0x1.fffffffffffffp+1023, 0x1.fffffffffffffp+969};
  }
  static constexpr zorvikrt::real16 lowest() noexcept {
    return {-0x1.fffffffffffffp+1023, -0x1.fffffffffffffp+969};
  }
  /** 2**-105: the relative error of an operation is a few of these. */
  static constexpr zorvikrt::real16 epsilon() noexcept { return {0x1p-105, 0}; }
  static constexpr zorvikrt::real16 round_error() noexcept { return {1, 0}; }
  static constexpr zorvikrt::real16 denorm_min() noexcept { return {0x1p-1074, 0}; }
  static constexpr zorvikrt::real16 infinity() noexcept { return {__builtin_inf(), 0}; }
  static constexpr zorvikrt::real16 quiet_NaN() noexcept { return {__builtin_nan(""), 0}; }
  static constexpr zorvikrt::real16 signaling_NaN() noexcept { return {__builtin_nans(""), 0}; }
};

/** Equal values have equal hashes, also where their parts differ. */
template <>
struct std::hash<zorvikrt::real16> {
  std::size_t operator()(const zorvikrt::real16& x) const noexcept {
    // The closing sum joins the parts, and adding +0 takes the sign from a zero.
    const zorvikrt::real16 joined = x + 0.0;
    std::uint64_t bits[2];
    std::memcpy(bits, static_cast<const zorvikrt_quad*>(&joined), sizeof bits);
    return static_cast<std::size_t>(mixed(mixed(bits[0]) + bits[1]));
  }

 private:
  /// Brings the high bits, where a double has its own, down to the low ones.
  static std::uint64_t mixed(std::uint64_t bits) {
    bits *= 0x9E3779B97F4A7C15u;
    return bits ^ bits >> 32;
  }
};

/** The hashes of both parts. */
template <>
struct std::hash<zorvikrt::complex32> {
  std::size_t operator()(const zorvikrt::complex32& z) const noexcept {
    const std::hash<zorvikrt::real16> part;
    const std::size_t re = part(z.re);
    return re ^ (part(z.im) + 0x9E3779B9u + (re << 6) + (re >> 2));
  }
};

#endif
