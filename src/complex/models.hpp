#pragma once

// On x86-64 the functions whose steps need no x87 instruction compute on doubles, with the bits of
// the registers, where no intermediate leaves the normal doubles:
//  - COMPLEX*16: each part of the operands a zero or in [2**-250, 2**250). A ratio of two parts is
//    at least 2**-500, its square and its product with a part at least 2**-1000, and a sum that
//    cancels is a multiple of 2**-304 or of the last place of such a product. Results lie between
//    2**-1001 and 2**501.
//  - COMPLEX*8: each part a zero or in [2**-60, 2**60), so that what is stored as a single on the
//    way is a zero or at least 2**-92.
// Everything else, NaNs, infinities and subnormals among it, runs in registers.

#include "complex/parts.hpp"

namespace zrt::complex {

#if defined(__x86_64__)

/// Whether x is a zero or |x| lies in [2**low, 2**high): by the image moved up by the sign.
template <int low, int high, format F>
[[gnu::always_inline]] inline bool zero_or_within(const F& x) {
  constexpr int exponent_place = layout<F>::fraction_bits + 1;
  constexpr auto from = static_cast<image_of<F>>(low + layout<F>::bias) << exponent_place;
  constexpr auto width = static_cast<image_of<F>>(high - low) << exponent_place;
  const auto magnitude = static_cast<image_of<F>>(image(x) << 1);
  return (magnitude == 0) | (static_cast<image_of<F>>(magnitude - from) < width);
}

[[gnu::always_inline]] inline bool is_ordinary(const dcomplex& z) {
  return zero_or_within<-250, 250>(z.re) & zero_or_within<-250, 250>(z.im);
}
[[gnu::always_inline]] inline bool is_ordinary(const fcomplex& z) {
  return zero_or_within<-60, 60>(z.re) & zero_or_within<-60, 60>(z.im);
}
#endif

/// The steps in registers; on x86-64 out of the way of the ordinary call, so that no function
/// computes in both units.
#if defined(__x86_64__)
template <class Steps>
[[gnu::noinline]] auto in_registers(Steps steps) {
  return steps(std::type_identity<reg>{});
}
#else
template <class Steps>
[[gnu::always_inline]] inline auto in_registers(Steps steps) {
  return steps(std::type_identity<reg>{});
}
#endif

// The result of `steps`, called with the type of values that the operands allow.
template <class Steps, class... Operands>
[[gnu::always_inline]] inline complex8_result complex8_by(
    Steps steps, [[maybe_unused]] const Operands&... operands) {
#if defined(__x86_64__)
  if ((is_ordinary(operands) & ...)) return returned_complex8(steps(std::type_identity<double>{}));
#endif
  return returned_complex8(in_registers(steps));
}
template <class Steps, class... Operands>
[[gnu::always_inline]] inline dcomplex* complex16_by(Steps steps, dcomplex* result,
                                                     [[maybe_unused]] const Operands&... operands) {
#if defined(__x86_64__)
  if ((is_ordinary(operands) & ...))
    return returned_complex16(result, steps(std::type_identity<double>{}));
#endif
  return returned_complex16(result, in_registers(steps));
}
template <format F, class Steps, class Operand>
[[gnu::always_inline]] inline result<F> real_by(Steps steps,
                                                [[maybe_unused]] const Operand& operand) {
#if defined(__x86_64__)
  if (is_ordinary(operand)) return static_cast<F>(steps(std::type_identity<double>{}));
#endif
  return returned<F>(in_registers(steps));
}

}  // namespace zrt::complex
