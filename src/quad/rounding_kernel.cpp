// The REAL*16 remainder.

#include "quad/cut_by_words.hpp"
#include "quad/rounding.hpp"

namespace zrt::quads {
inline namespace ZRT_MODEL {

namespace {

/// A quotient cut toward zero, most often by its words.
[[gnu::always_inline]] inline quad cut_quotient(const quad& q) {
  if constexpr (on_doubles) {
    return truncation(q);
  } else {
    quad result;
    return is_cut_by_words<toward::inward>(&result, q) ? result : truncation_by<reg>(q);
  }
}

}  // namespace

// a - trunc(a / b) b. The quotient has some 106 bits; beyond, the result is what these steps
// leave. A zero or NaN divisor gives the library's NaN.
quad remainder(const quad& a, const quad& b) {
  using A = general;
  if (on_doubles && !is_ordinary<-100, 100>(b)) return x87::remainder(a, b);
  if (is_zero_or_nan(b)) return invalid;
  const quad q = A::div(a, b);
  return A::sub(a, A::mul(cut_quotient(q), b));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::quads
