#pragma once

// Which operands the functions of this room compute on doubles, and how an entry takes its model.
//
// On x86-64 a kernel runs on doubles where each of its intermediates is zero or a normal double:
// then 53 bits of the register and of a double are the same. Subnormals never are ordinary
// (flush-to-zero and denormals-are-zero may be on). 32-bit builds have the register alone.

#include <limits>

#include "frame/entry.hpp"
#include "frame/model.hpp"

namespace zrt::real {

/// Whether a kernel on V meets all operands, not the ordinary ones alone.
template <class V>
inline constexpr bool takes_all_operands = std::same_as<V, reg>;

/// Twice the image, which drops the sign: sizes compare as these integers do.
template <format F>
[[gnu::always_inline]] constexpr image_of<F> size_image(const F& x) {
  return static_cast<image_of<F>>(std::bit_cast<image_of<F>>(x) << 1);
}

/// Its leading 32 bits.
template <format F>
[[gnu::always_inline]] constexpr std::uint32_t leading_size(const F& x) {
  return static_cast<std::uint32_t>(std::bit_cast<image_of<F>>(x) >> (8 * sizeof x - 32)) << 1;
}

template <format F>
inline constexpr F infinite = std::numeric_limits<F>::infinity();
template <format F>
inline constexpr F smallest_normal = std::same_as<F, double> ? 0x1p-1022 : 0x1p-126f;

/// low <= |x| < high. An infinity or NaN lies below no `high`.
template <format F>
[[gnu::always_inline]] inline bool size_between(const F& x, F low, F high) {
  return size_image(x) - size_image(low) < size_image(high) - size_image(low);
}
/// A zero, or |x| of at least `low`; infinities and NaNs too.
template <format F>
[[gnu::always_inline]] inline bool zero_or_from(const F& x, F low) {
  return size_image(x) - 1 >= size_image(low) - 1;
}
template <format F>
[[gnu::always_inline]] inline bool zero_or_between(const F& x, F low, F high) {
  return size_between(x, low, high) || size_image(x) == 0;
}
/// low <= x < high for positive limits: no sign is dropped.
template <format F>
[[gnu::always_inline]] inline bool positive_between(const F& x, F low, F high) {
  return image(x) - image(low) < image(high) - image(low);
}

/// Positive and normal.
template <format F>
[[gnu::always_inline]] inline bool is_positive_normal(const F& x) {
  return positive_between(x, smallest_normal<F>, infinite<F>);
}

#if defined(__x86_64__)
/// Out of the way of the ordinary call.
template <format F, class Kernel, class... Operands>
[[gnu::noinline]] result<F> on_register(Kernel kernel, Operands... operands) {
  return returned<F>(kernel.template operator()<reg>(operands...));
}
/// What a quick kernel leaves.
template <class R, class Steps, class... Operands>
[[gnu::noinline]] R by_steps(Steps steps, Operands... operands) {
  return steps(operands...);
}
#endif

/// Runs a kernel, a template on the type of its values, on the model that serves the operands.
template <format F, class Kernel, class... Operands>
[[gnu::always_inline]] inline result<F> evaluated([[maybe_unused]] bool ordinary, Kernel kernel,
                                                  const Operands&... operands) {
#if defined(__x86_64__)
  if (__builtin_expect(ordinary, true))
    return static_cast<F>(kernel.template operator()<double>(operands...));
  return on_register<F>(kernel, operands...);
#else
  return returned<F>(kernel.template operator()<reg>(operands...));
#endif
}

/// What `steps` give, on x86-64 with a quick kernel ahead: that gives their bits where it returns
/// true, and leaves to them what it cannot tell.
template <class R, class Quick, class Steps, class... Operands>
[[gnu::always_inline]] inline R quickly([[maybe_unused]] Quick quick, Steps steps,
                                        const Operands&... operands) {
#if defined(__x86_64__)
  R y;
  if (__builtin_expect(quick(operands..., y), true)) return y;
  return by_steps<R>(steps, operands...);
#else
  return steps(operands...);
#endif
}

/// The same for a function with a kernel on both models.
template <format F, class Quick, class Ordinary, class Kernel>
[[gnu::always_inline]] inline result<F> evaluated_quickly(Quick quick, Ordinary is_ordinary,
                                                          Kernel kernel, const F& x) {
  return quickly<result<F>>(
      quick, [=](const F& a) { return evaluated<F>(is_ordinary(a), kernel, a); }, x);
}

}  // namespace zrt::real
