#pragma once

// The x87 register model: the type of a value on the FPU stack, the loads and stores that move it
// to and from memory, the unordered comparisons, and the instructions that the library computes
// with.
//
// Every `+ - * /` on `reg` is one x87 operation in the control word in force: with the library's
// own word 0x027F the significand rounds to 53 bits, to nearest, and the exponent keeps its 15
// bits.

#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>

namespace zrt {

/// A value on the FPU stack: 64-bit significand, 15-bit exponent.
using reg = long double;

inline constexpr reg infinity = __builtin_infl();
/// The quiet NaN that the library gives of its own, positive, with the image 0x7FF8000000000000.
/// The default NaN of the x87 is its negative.
inline constexpr reg quiet_nan = __builtin_nanl("");

template <class F>
concept format = std::same_as<F, float> || std::same_as<F, double>;

/// The integer that holds the image of a format.
template <format F>
using image_of = std::conditional_t<std::same_as<F, double>, std::uint64_t, std::uint32_t>;

/// Field widths of the two storage formats.
template <format F>
struct layout;
template <>
struct layout<float> {
  static constexpr int fraction_bits = 23;
  static constexpr int exponent_mask = 0xFF;
  static constexpr int bias = 127;
};
template <>
struct layout<double> {
  static constexpr int fraction_bits = 52;
  static constexpr int exponent_mask = 0x7FF;
  static constexpr int bias = 1023;
};

// --- Loads, stores and images ------------------------------------------------------------------

/// Loads a stored value (`fld`): exact; a signalling NaN becomes quiet and raises invalid.
/// An instruction of its own, so that no compiler joins a store and a load into nothing or narrows
/// an operation whose operands it knows to be narrow.
[[gnu::always_inline]] inline reg load(const double& slot) {
  reg value;
  asm("fldl %1" : "=t"(value) : "m"(slot));
  return value;
}
[[gnu::always_inline]] inline reg load(const float& slot) {
  reg value;
  asm("flds %1" : "=t"(value) : "m"(slot));
  return value;
}

/// Rounds to a storage format by a store, and loads the stored value back.
template <format F>
[[gnu::always_inline]] inline reg stored(reg value) {
  const F slot = static_cast<F>(value);
  return load(slot);
}

/// The image of a stored value, read as an integer: nothing is rounded and no NaN changes.
template <format F>
[[gnu::always_inline]] inline image_of<F> image(const F& slot) {
  image_of<F> bits;
  std::memcpy(&bits, &slot, sizeof bits);
  return bits;
}

/// The image that a store of `value` leaves.
template <format F>
[[gnu::always_inline]] inline image_of<F> stored_image(reg value) {
  const F slot = static_cast<F>(value);
  return image(slot);
}

/// Loads an image that integer work has made.
template <format F>
[[gnu::always_inline]] inline reg load_image(image_of<F> bits) {
  F slot;
  std::memcpy(&slot, &bits, sizeof slot);
  return load(slot);
}

/// The exponent field of an image, without the sign.
template <format F>
[[gnu::always_inline]] inline int biased_exponent(image_of<F> bits) {
  return static_cast<int>(bits >> layout<F>::fraction_bits) & layout<F>::exponent_mask;
}

/// The same as the exponent of two of a normal number.
template <format F>
[[gnu::always_inline]] inline int unbiased_exponent(image_of<F> bits) {
  return biased_exponent<F>(bits) - layout<F>::bias;
}

/// `fild` of a 64-bit integer: exact.
[[gnu::always_inline]] inline reg load_integer(const std::int64_t& value) {
  reg result;
  asm("fildll %1" : "=t"(result) : "m"(value));
  return result;
}

/// `fild` of a 32-bit integer: exact.
[[gnu::always_inline]] inline reg load_integer(const std::int32_t& value) {
  reg result;
  asm("fildl %1" : "=t"(result) : "m"(value));
  return result;
}

// --- Comparisons -------------------------------------------------------------------------------
// All of them are unordered (`fucom`): a quiet NaN raises no flag. The four relations are false for
// a NaN; `compares_equal` is true for one.

[[gnu::always_inline]] inline bool greater(reg a, reg b) { return __builtin_isgreater(a, b); }
[[gnu::always_inline]] inline bool greater_equal(reg a, reg b) {
  return __builtin_isgreaterequal(a, b);
}
[[gnu::always_inline]] inline bool less(reg a, reg b) { return __builtin_isless(a, b); }
[[gnu::always_inline]] inline bool less_equal(reg a, reg b) { return __builtin_islessequal(a, b); }
/// Neither less nor greater: equal, or a NaN on either side.
[[gnu::always_inline]] inline bool compares_equal(reg a, reg b) {
  return !__builtin_islessgreater(a, b);
}
[[gnu::always_inline]] inline bool is_nan(reg a) { return __builtin_isunordered(a, a); }

/// What `ftst` finds. Unlike the comparisons above it raises invalid for every NaN.
struct zero_test {
  std::uint16_t status;
  bool positive() const { return (status & 0x4500) == 0; }
  bool negative() const { return (status & 0x4500) == 0x0100; }
  /// Zero of either sign, or a NaN.
  bool compares_equal() const { return (status & 0x4000) != 0; }
};
[[gnu::always_inline]] inline zero_test ftst(reg a) {
  zero_test test;
  asm("ftst\n\tfnstsw %0" : "=a"(test.status) : "t"(a));
  return test;
}

// --- Instructions ------------------------------------------------------------------------------

// Sign changes are instructions of their own: a compiler moves a minus through a product or into a
// constant, which gives a NaN result another sign.
[[gnu::always_inline]] inline reg fabs(reg a) {
  asm("fabs" : "+t"(a));
  return a;
}
/// Flips the sign, of a NaN too.
[[gnu::always_inline]] inline reg fchs(reg a) {
  asm("fchs" : "+t"(a));
  return a;
}

/// The value, or `fchs` of it (a NaN's sign flips too), chosen by `fcmov`: the signs of a program's
/// operands are seldom predictable.
[[gnu::always_inline]] inline reg negated_if(bool negative, reg value) {
  asm("testb %2, %2\n\tfcmovne %%st(1), %%st"
      : "+t"(value)
      : "u"(fchs(value)), "q"(negative)
      : "cc");
  return value;
}

/// The sign bit, of a zero or a NaN too.
[[gnu::always_inline]] inline bool sign_bit(reg a) { return __builtin_signbit(a) != 0; }

[[gnu::always_inline]] inline reg fsqrt(reg a) {
  asm("fsqrt" : "+t"(a));
  return a;
}
/// To an integral value in the rounding mode in force.
[[gnu::always_inline]] inline reg frndint(reg a) {
  asm("frndint" : "+t"(a));
  return a;
}
[[gnu::always_inline]] inline reg fsin(reg a) {
  asm("fsin" : "+t"(a));
  return a;
}
[[gnu::always_inline]] inline reg fcos(reg a) {
  asm("fcos" : "+t"(a));
  return a;
}
/// The tangent, for |a| below 2**63; the 1.0 that `fptan` pushes is dropped. Beyond, the
/// instruction pushes nothing, so the caller tests first. Infinities and NaNs are in its domain.
[[gnu::always_inline]] inline reg fptan(reg a) {
  reg one, tangent;
  asm("fptan" : "=t"(one), "=u"(tangent) : "0"(a));
  return tangent;
}
/// arctan(y / x) with the quadrant of the point (x, y).
[[gnu::always_inline]] inline reg fpatan(reg y, reg x) {
  reg angle;
  asm("fpatan" : "=t"(angle) : "0"(x), "u"(y) : "st(1)");
  return angle;
}
/// y * log2(x).
[[gnu::always_inline]] inline reg fyl2x(reg y, reg x) {
  reg result;
  asm("fyl2x" : "=t"(result) : "0"(x), "u"(y) : "st(1)");
  return result;
}
/// 2**a - 1 for a in [-1, 1].
[[gnu::always_inline]] inline reg f2xm1(reg a) {
  asm("f2xm1" : "+t"(a));
  return a;
}
/// a * 2**n, n an integral value.
[[gnu::always_inline]] inline reg fscale(reg a, reg n) {
  asm("fscale" : "+t"(a) : "u"(n));
  return a;
}

/// Stores as a 32-bit integer in the rounding mode in force; out of range gives 0x80000000.
[[gnu::always_inline]] inline std::int32_t fistp32(reg a) {
  std::int32_t result;
  asm("fistpl %0" : "=m"(result) : "t"(a) : "st");
  return result;
}
/// The same for 64 bits.
[[gnu::always_inline]] inline std::int64_t fistp64(reg a) {
  std::int64_t result;
  asm("fistpll %0" : "=m"(result) : "t"(a) : "st");
  return result;
}
/// Stores cut toward zero whatever the control word says; only where `processor::has_fisttp`.
[[gnu::always_inline]] inline std::int32_t fisttp32(reg a) {
  std::int32_t result;
  asm("fisttpl %0" : "=m"(result) : "t"(a) : "st");
  return result;
}
[[gnu::always_inline]] inline std::int64_t fisttp64(reg a) {
  std::int64_t result;
  asm("fisttpll %0" : "=m"(result) : "t"(a) : "st");
  return result;
}

}  // namespace zrt
