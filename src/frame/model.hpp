#pragma once

// The models that a kernel's steps run on, with the same bits.
//
//   x87  `reg`                       every build, all operands; the only one of 32-bit builds
//   sse  `double`                    64-bit builds, ordinary operands: every intermediate is a
//   normal
//                                    double, so that 53 bits of the register and of a double are
//                                    one
//   fma  `double`, fused operations  the same on processors that have them
//
// A translation unit computes on one model: `ZRT_MODEL` is its name, `ordinary` the type of its
// values. What a header defines and the compiler may emit stands in `inline namespace ZRT_MODEL`,
// so that the linker takes no model's code for another's. Entries stand in units of the x87 model;
// the kernels that they call are compiled once for each model.
//
// A kernel uses the operations below, which exist for each type of value: + - * /, loads, stores,
// comparisons, signs and the root. Its constants carry no L. The compiler sees each of
// them as it stands: no constant is folded in another precision (-frounding-math), no product and
// sum are fused (-ffp-contract=off), and no minus moves through a product.

#include "processor.hpp"
#include "x87.hpp"

#if !defined(ZRT_MODEL)
#define ZRT_MODEL x87
#define ZRT_ORDINARY reg
#endif

#if defined(__x86_64__)
#include <emmintrin.h>
/// Declares kernels in every model's namespace.
#define ZRT_IN_EACH_MODEL(...)  \
  inline namespace ZRT_MODEL {} \
  namespace x87 {               \
  __VA_ARGS__                   \
  }                             \
  namespace sse {               \
  __VA_ARGS__                   \
  }                             \
  namespace fma {               \
  __VA_ARGS__                   \
  }
/// Calls a kernel by the processor. On i386 it is that of the x87.
#define ZRT_ORDINARY_CALL(kernel, ...) \
  (processor::has_fma ? fma::kernel(__VA_ARGS__) : sse::kernel(__VA_ARGS__))
#else
#define ZRT_IN_EACH_MODEL(...) \
  inline namespace x87 {       \
  __VA_ARGS__                  \
  }
#define ZRT_ORDINARY_CALL(kernel, ...) x87::kernel(__VA_ARGS__)
#endif

namespace zrt {

/// The values of this translation unit's model.
using ordinary = ZRT_ORDINARY;

#if defined(__FMA__)
inline constexpr bool has_fused_operations = true;
#else
inline constexpr bool has_fused_operations = false;
#endif

#if defined(__x86_64__)

namespace sse_operations {
/// A value that the compiler does not see through; no instruction.
[[gnu::always_inline]] inline double held(double a) {
  asm("" : "+x"(a));
  return a;
}
}  // namespace sse_operations

// --- Loads and stores ---------------------------------------------------------------------------

template <std::same_as<double> V, format F>
[[gnu::always_inline]] inline V load(const F& slot) {
  return sse_operations::held(double{slot});
}
template <format F>
[[gnu::always_inline]] inline double stored(double value) {
  if constexpr (std::same_as<F, double>) return value;
  return sse_operations::held(double{static_cast<float>(value)});
}
template <format F>
[[gnu::always_inline]] inline image_of<F> stored_image(double value) {
  return std::bit_cast<image_of<F>>(static_cast<F>(value));
}
template <format F, std::same_as<double> V>
[[gnu::always_inline]] inline V load_image(image_of<F> bits) {
  return load<V>(std::bit_cast<F>(bits));
}
template <std::same_as<double> V>
[[gnu::always_inline]] inline V load_integer(std::int32_t value) {
  return value;
}
/// Exact for integers of up to 53 bits only.
template <std::same_as<double> V>
[[gnu::always_inline]] inline V load_integer(std::int64_t value) {
  return static_cast<double>(value);
}

// --- Signs, root and conversions ----------------------------------------------------------------

[[gnu::always_inline]] inline double fabs(double a) {
  return sse_operations::held(__builtin_fabs(sse_operations::held(a)));
}
[[gnu::always_inline]] inline double fchs(double a) {
  return sse_operations::held(-sse_operations::held(a));
}
[[gnu::always_inline]] inline bool sign_bit(double a) {
  return std::bit_cast<std::uint64_t>(a) >> 63 != 0;
}
[[gnu::always_inline]] inline bool sign_bit(float a) {
  return std::bit_cast<std::uint32_t>(a) >> 31 != 0;
}
[[gnu::always_inline]] inline double negated_if(bool negative, double value) {
  const std::uint64_t sign = std::uint64_t{negative} << 63;
  return sse_operations::held(std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) ^ sign));
}
/// In place: the other half of the register is nobody's result.
[[gnu::always_inline]] inline double fsqrt(double a) {
#if defined(__AVX__)
  asm("vsqrtsd %0, %0, %0" : "+x"(a));
#else
  asm("sqrtsd %0, %0" : "+x"(a));
#endif
  return a;
}
[[gnu::always_inline]] inline float fsqrt(float a) {
#if defined(__AVX__)
  asm("vsqrtss %0, %0, %0" : "+x"(a));
#else
  asm("sqrtss %0, %0" : "+x"(a));
#endif
  return a;
}
/// In the rounding mode in force; out of range and NaN give 0x80000000.
[[gnu::always_inline]] inline std::int32_t fistp32(double a) {
  return _mm_cvtsd_si32(_mm_set_sd(a));
}
/// Cut toward zero; out of range and NaN give 0x80000000.
[[gnu::always_inline]] inline std::int32_t fisttp32(double a) {
  return _mm_cvttsd_si32(_mm_set_sd(a));
}

#if defined(__FMA__)
/// a * b + c with one rounding.
[[gnu::always_inline]] inline double fused_sum(double a, double b, double c) {
  return __builtin_fma(a, b, c);
}
#endif

// --- Comparisons --------------------------------------------------------------------------------
// As those of `reg`: a quiet NaN raises no flag, and the four relations are false for it. The
// second operand takes the type of the first.

template <std::same_as<double> V>
[[gnu::always_inline]] inline bool greater(V a, std::type_identity_t<V> b) {
  return __builtin_isgreater(a, b);
}
template <std::same_as<double> V>
[[gnu::always_inline]] inline bool greater_equal(V a, std::type_identity_t<V> b) {
  return __builtin_isgreaterequal(a, b);
}
template <std::same_as<double> V>
[[gnu::always_inline]] inline bool less(V a, std::type_identity_t<V> b) {
  return __builtin_isless(a, b);
}
template <std::same_as<double> V>
[[gnu::always_inline]] inline bool less_equal(V a, std::type_identity_t<V> b) {
  return __builtin_islessequal(a, b);
}
template <std::same_as<double> V>
[[gnu::always_inline]] inline bool compares_equal(V a, std::type_identity_t<V> b) {
  return !__builtin_islessgreater(a, b);
}

#endif

// --- The register's way of what only names the type of its value
// ----------------------------------

template <std::same_as<reg> V, format F>
[[gnu::always_inline]] inline V load(const F& slot) {
  return load(slot);
}
template <format F, std::same_as<reg> V>
[[gnu::always_inline]] inline V load_image(image_of<F> bits) {
  return load_image<F>(bits);
}
template <std::same_as<reg> V, std::signed_integral Integer>
[[gnu::always_inline]] inline V load_integer(const Integer& value) {
  return load_integer(value);
}

}  // namespace zrt
