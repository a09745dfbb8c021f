// The operations of REAL*16 on the x87 as functions, for what the arithmetic on doubles does not
// take.

#include "quad/rounding.hpp"

#if defined(__x86_64__)

namespace zrt::quads::rare {

using steps = stored_arithmetic;

quad add(quad a, quad b) { return steps::add(a, b); }
quad add(quad a, double d) { return steps::add(a, load(d)); }
quad sub(quad a, quad b) { return steps::sub(a, b); }
quad sub(quad a, double d) { return steps::sub(a, load(d)); }
quad sub(double d, quad b) { return steps::sub(load(d), b); }
quad product(double a, double b) { return steps::product(load(a), load(b)); }
quad mul(quad a, quad b) { return steps::mul(a, b); }
quad mul(quad a, double d) { return steps::mul(a, load(d)); }
quad div(quad a, quad b) { return steps::div(a, b); }
quad div(quad a, double d) { return steps::div(a, load(d)); }
quad div(double d, quad b) { return steps::div(load(d), b); }
quad square_root(quad a) { return steps::square_root(a); }
quad scaled(quad a, std::int32_t n) { return steps::scaled(a, n); }
quad scaled_by(quad a, double power) { return steps::scaled_by(a, load(power)); }

quad ceiling(quad a) { return ceiling_by<reg>(a); }
quad floor(quad a) { return floor_by<reg>(a); }
quad truncation(quad a) { return truncation_by<reg>(a); }
quad nearest(quad a) { return nearest_by<reg>(a); }

}  // namespace zrt::quads::rare

#endif
