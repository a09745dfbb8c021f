#pragma once

// Expectations on REAL results: what a store to the format leaves, bit for bit, and on i386 what
// the FPU stack holds.

#include <gtest/gtest.h>

#include "support/bits.hpp"
#include "support/x87_state.hpp"

namespace support {

inline constexpr double nan8 = __builtin_nan("");
inline constexpr float nan4 = __builtin_nanf("");
inline constexpr double infinity8 = __builtin_inf();
inline constexpr float infinity4 = __builtin_inff();
/// What the x87 gives for an invalid operation: the negative quiet NaN.
inline constexpr double default_nan8 = -nan8;
inline constexpr float default_nan4 = -nan4;

/// The next value of the format away from zero, or toward it.
inline double beyond(double x) { return from_bits(bits(x) + 1); }
inline double below(double x) { return from_bits(bits(x) - 1); }
inline float beyond(float x) { return from_bits(bits(x) + 1); }
inline float below(float x) { return from_bits(bits(x) - 1); }

}  // namespace support

#define EXPECT_REAL8(call, value) \
  EXPECT_EQ(::support::double_bits(call), ::support::double_bits(value))
#define EXPECT_REAL4(call, value) \
  EXPECT_EQ(::support::single_bits(call), ::support::single_bits(value))

// A result that is not rounded to its format: the 53-bit value that the register holds.
#if defined(__i386__)
#define EXPECT_REGISTER(call, value) \
  EXPECT_EQ(::support::register_image(call), ::support::register_image(value))
#else
#define EXPECT_REGISTER(call, value) \
  EXPECT_EQ(static_cast<decltype(call)>(call), static_cast<decltype(call)>(value))
#endif
