#pragma once

// Sine and cosine of one operand by the instructions of the x87, in two ways with the same results.

#include "processor.hpp"
#include "x87.hpp"

namespace zrt {

struct sine_cosine {
  reg sine, cosine;
};

namespace plain {

inline sine_cosine sine_and_cosine(reg a) { return {fsin(a), fcos(a)}; }

}  // namespace plain

/// Both at once, as `fsin` and `fcos` give them. From 2**63 on they are a itself, for `fsincos`
/// would push nothing; infinities and NaNs go the same way.
[[gnu::always_inline]] inline sine_cosine sine_and_cosine(reg a) {
  if (!processor::fsincos_agrees || !less(fabs(a), 0x1p63L)) return plain::sine_and_cosine(a);
  sine_cosine both;
  asm("fsincos" : "=t"(both.cosine), "=u"(both.sine) : "0"(a));
  return both;
}

}  // namespace zrt
