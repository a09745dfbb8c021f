#pragma once

// The operations that fused operations shorten, as entries take them: by the processor on x86-64,
// inline on i386. Each gives the address of its result.

#include "quad/guards.hpp"

namespace zrt::quads {

#if defined(__x86_64__)
ZRT_IN_EACH_MODEL(quad* product(quad* result, double a, double b);
                  quad * mul(quad * result, quad a, quad b);
                  quad * mul(quad * result, quad a, double d);
                  quad * div(quad * result, quad a, quad b);
                  quad * div(quad * result, quad a, double d);
                  quad * div(quad * result, double d, quad b);
                  quad * square_root(quad * result, quad a);)

struct by_processor {
  static quad* product(quad* result, double a, double b) {
    return ZRT_ORDINARY_CALL(product, result, a, b);
  }
  static quad* mul(quad* result, auto a, auto b) { return ZRT_ORDINARY_CALL(mul, result, a, b); }
  static quad* div(quad* result, auto a, auto b) { return ZRT_ORDINARY_CALL(div, result, a, b); }
  static quad* square_root(quad* result, quad a) {
    return ZRT_ORDINARY_CALL(square_root, result, a);
  }
};
#else
struct by_processor {
  using steps = stored_arithmetic;
  [[gnu::always_inline]] static quad* product(quad* result, reg a, reg b) {
    return put(result, steps::product(a, b));
  }
  [[gnu::always_inline]] static quad* mul(quad* result, const quad& a, const quad& b) {
    return put(result, steps::mul(a, b));
  }
  [[gnu::always_inline]] static quad* mul(quad* result, const quad& a, reg d) {
    return put(result, steps::mul(a, d));
  }
  [[gnu::always_inline]] static quad* div(quad* result, const quad& a, const quad& b) {
    return put(result, steps::div(a, b));
  }
  [[gnu::always_inline]] static quad* div(quad* result, const quad& a, reg d) {
    return put(result, steps::div(a, d));
  }
  [[gnu::always_inline]] static quad* div(quad* result, reg d, const quad& b) {
    return put(result, steps::div(d, b));
  }
  [[gnu::always_inline]] static quad* square_root(quad* result, const quad& a) {
    return put(result, steps::square_root(a));
  }
};
#endif

}  // namespace zrt::quads
