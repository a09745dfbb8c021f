#pragma once

// What the elementary functions of this room share: polynomials, signs and powers of two without a
// branch. Each helper is exact or does the very operations that its comment names.

#include "frame/model.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

/// Horner from the top coefficient down: ((c[0] z + c[1]) z + ...) + c[last].
template <class V, int count>
[[gnu::always_inline]] inline V polynomial(V z, const double (&c)[count]) {
  V sum = c[0];
#pragma GCC unroll 16
  for (int i = 1; i < count; ++i) sum = sum * z + c[i];
  return sum;
}

/// The same with the top coefficient 1, not multiplied: ((z + c[0]) z + ...) + c[last].
template <class V, int count>
[[gnu::always_inline]] inline V monic_polynomial(V z, const double (&c)[count]) {
  V sum = z + c[0];
#pragma GCC unroll 16
  for (int i = 1; i < count; ++i) sum = sum * z + c[i];
  return sum;
}

/// a - b c for factors of few bits, whose product is exact: lanes may fuse it.
template <class V>
[[gnu::always_inline]] inline V less_exact_product(V a, V b, double c) {
  return a - b * c;
}

/// Sines, tangents, their inverses and their hyperbolic kin are their operand below 2**-26.5
/// (REAL*4: 2**-12), where the cube is less than a rounding.
template <format F>
inline constexpr double identity_below = std::same_as<F, double> ? 0x1.6a09e667f3bc8p-27 : 0x1p-12;

inline constexpr float signed_units[2] = {1.0f, -1.0f};
inline constexpr double signed_halves[2] = {0.5, -0.5};

/// The value or its negative; no NaN, so that on the register a product serves, shorter than
/// `fchs` and `fcmov`.
[[gnu::always_inline]] inline reg signed_by(unsigned negative, reg value) {
  return value * load(signed_units[negative]);
}

/// 2**n for a whole n in [-1022, 1023]. The image leaves the FPU in one 64-bit store: two stores of
/// 32 bits would keep the load waiting until both have reached the cache.
[[gnu::always_inline]] inline reg power_of_two(reg n) {
  const reg image = (n + 1023.0) * 0x1p52;
  double slot;
  reg result;
  asm("fistpll %1\n\tfldl %1" : "=t"(result), "=m"(slot) : "0"(image));
  return result;
}

#if defined(__x86_64__)
[[gnu::always_inline]] inline double signed_by(unsigned negative, double value) {
  return negated_if(negative != 0, value);
}
[[gnu::always_inline]] inline double power_of_two(std::int32_t n) {
  return load_image<double, double>(static_cast<std::uint64_t>(n + 1023) << 52);
}

/// A whole number near x, |x| below 2**50, and `bias` more of it in the low bits of `shifted`: the
/// sum with 1.5 2**52 drops the fraction. That takes 6 cycles where a cut to an integer and the way
/// back take 14, but rounds as the mode in force does. A kernel whose rest shows that the number is
/// the nearest, clear of a half, has the one of the steps in every mode.
template <int bias = 0>
struct quick_whole {
  double shifted, value;
  [[gnu::always_inline]] explicit quick_whole(double x)
      : shifted(sse_operations::held(x + (0x1.8p52 + bias))), value(shifted - (0x1.8p52 + bias)) {}
};

/// The image of a value, where it lies: integer work on it needs no way through other registers.
[[gnu::always_inline]] inline __m128i packed(double value) {
  __m128i image;
  asm("" : "=x"(image) : "0"(value));
  return image;
}
[[gnu::always_inline]] inline __m128i packed(float value) {
  __m128i image;
  asm("" : "=x"(image) : "0"(value));
  return image;
}
template <format F>
[[gnu::always_inline]] inline F unpacked(__m128i image) {
  F value;
  asm("" : "=x"(value) : "0"(image));
  return value;
}
/// The low bits of an image moved up to the place `lowest` of F.
template <format F>
[[gnu::always_inline]] inline __m128i moved_up(__m128i image, int lowest) {
  if constexpr (std::same_as<F, double>) return _mm_slli_epi64(image, lowest);
  return _mm_slli_epi32(image, lowest);
}
template <format F>
inline constexpr __m128i sign_image{std::same_as<F, double> ? INT64_MIN : INT64_C(0x80000000), 0};
template <format F>
inline constexpr int sign_place = 8 * sizeof(F) - 1;
template <format F>
[[gnu::always_inline]] inline F without_sign(const F& x) {
  return unpacked<F>(packed(x) & ~sign_image<F>);
}
template <format F>
[[gnu::always_inline]] inline F with_sign_of(const F& value, const F& x) {
  return unpacked<F>(packed(value) | (packed(x) & sign_image<F>));
}
template <format F>
[[gnu::always_inline]] inline __m128i add_images(__m128i a, __m128i b) {
  if constexpr (std::same_as<F, double>) return _mm_add_epi64(a, b);
  return _mm_add_epi32(a, b);
}
#endif

/// The sign bit of an image.
template <format F>
inline constexpr image_of<F> sign_bit_of = image_of<F>{1} << (8 * sizeof(F) - 1);

/// Whether an image is that of a negative number: no zero.
template <format F>
[[gnu::always_inline]] inline unsigned is_negative(image_of<F> bits) {
  return bits > sign_bit_of<F>;
}

/// The slots of a kernel that cuts to a whole number and stores its result: each has its address.
template <format F>
struct kernel_slots {
  std::int32_t whole;
  F result;
};

/// Rounds to a storage format by a store to a slot of the kernel's.
template <format F>
[[gnu::always_inline]] inline reg stored_in(F& slot, reg value) {
  slot = static_cast<F>(value);
  return load(slot);
}
#if defined(__x86_64__)
template <format F>
[[gnu::always_inline]] inline double stored_in(F&, double value) {
  return stored<F>(value);
}
#endif

}  // namespace zrt::real
