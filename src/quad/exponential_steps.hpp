#pragma once

// The straight steps of the REAL*16 exponential on any arithmetic, of one value or of lanes.

#include "frame/entry.hpp"

namespace zrt::quads {
namespace {

/// ln 2, its lo a few units away from the rounded tail.
constexpr quad ln_2 = {0x1.62e42fefa39efp-1, 0x1.abc9e3b39803cp-56};

/// 2**f for |f| <= 1/2: with r = f ln 2 and h = r/2, e**h = 1 + 2w by the [9/9] Pade approximant
/// (B + A h) / (B - A h), good to 2**-120, squared as 1 + 4 w (1 + w), so that the 1 joins only in
/// the last sum.
template <class A>
auto power_of_two(const auto& f) {
  const auto r = A::mul(f, ln_2);
  const auto h = A::scaled_by(r, 0.5);
  const auto s = A::mul(h, h);

  auto p = A::add(s, 3960.0);
  auto b = A::add(A::mul_by_short(s, 90.0), 110880.0);
  p = A::add(A::mul(p, s), 2162160.0);
  b = A::add(A::mul(b, s), 30270240.0);
  p = A::add(A::mul(p, s), 302702400.0);
  b = A::add(A::mul(b, s), 2075673600.0);
  p = A::add(A::mul(p, s), 8821612800.0);
  b = A::add(A::mul(b, s), 17643225600.0);
  const auto odd = A::mul(h, p);

  const auto w = A::div(odd, A::sub(b, odd));
  const auto square = A::mul(w, A::add(w, 1.0));
  return A::add(A::scaled_by(square, 4.0), 1.0);
}

}  // namespace
}  // namespace zrt::quads
