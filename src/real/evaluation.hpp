#pragma once

// What the elementary functions of this room share: polynomials, signs and powers of two without a
// branch. Each helper is exact or does the very operations that its comment names.

#include "frame/model.hpp"

namespace zrt::real {

/// Horner from the top coefficient down: ((c[0] z + c[1]) z + ...) + c[last].
template <int count>
[[gnu::always_inline]] inline reg polynomial(reg z, const reg (&c)[count]) {
  reg sum = c[0];
#pragma GCC unroll 16
  for (int i = 1; i < count; ++i) sum = sum * z + c[i];
  return sum;
}

/// The same with the top coefficient 1, not multiplied: ((z + c[0]) z + ...) + c[last].
template <int count>
[[gnu::always_inline]] inline reg monic_polynomial(reg z, const reg (&c)[count]) {
  reg sum = z + c[0];
#pragma GCC unroll 16
  for (int i = 1; i < count; ++i) sum = sum * z + c[i];
  return sum;
}

inline constexpr float signed_halves[2] = {0.5f, -0.5f};

/// 2**n for a whole n in [-1022, 1023]. The image leaves the FPU in one 64-bit store: two stores of
/// 32 bits would keep the load waiting until both have reached the cache.
[[gnu::always_inline]] inline reg power_of_two(reg n) {
  const reg image = (n + 1023.0L) * 0x1p52L;
  double slot;
  reg result;
  asm("fistpll %1\n\tfldl %1" : "=t"(result), "=m"(slot) : "0"(image));
  return result;
}

}  // namespace zrt::real
