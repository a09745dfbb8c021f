// The whole-number, sign and remainder intrinsics of REAL*16. They work part by part; what takes
// care is a whole leading part, where the low part decides.

#include "quad/rounding.hpp"

#include "entries.hpp"
#include "quad/significand.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;

/// The nearest 32-bit integer by hi of the sum alone; out of range and NaN give 0x80000000.
std::int32_t nearest_integer(const quad& a) {
  return truncated_to_int32(stored_arithmetic::leading(half_away(a)));
}

/// a - b, or zero where that is negative or a NaN.
quad positive_difference(const quad& a, const quad& b) {
  const quad d = steps::sub(a, b);
#if defined(__x86_64__)
  // By the image: denormals may count as zeros.
  const std::uint64_t hi = image(d.hi);
  return hi <= image(plus_infinity.hi) || hi << 1 == 0 ? d : zero;
#else
  return greater_equal(steps::leading(d), 0.0) ? d : zero;
#endif
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, qint)(quad* result, quad a) { return put(result, truncation(a)); }
ZRT_VALUE(quad*, qnint)(quad* result, quad a) { return put(result, nearest(a)); }
ZRT_VALUE(std::int32_t, iqnint)(quad a) { return nearest_integer(a); }
ZRT_VALUE(std::int32_t, jiqnnt)(quad a) { return nearest_integer(a); }
// The low 16 bits: nothing saturates.
ZRT_VALUE(std::int32_t, iiqnnt)(quad a) { return static_cast<std::int16_t>(nearest_integer(a)); }
ZRT_VALUE(quad*, ceill)(quad* result, quad a) { return put(result, ceiling(a)); }
ZRT_VALUE(quad*, floorl)(quad* result, quad a) { return put(result, quads::floor(a)); }
ZRT_VALUE(std::int32_t, iceill)(quad a) { return truncated_to_int32(load(ceiling(a).hi)); }
ZRT_VALUE(std::int32_t, ifloorl)(quad a) { return truncated_to_int32(load(quads::floor(a).hi)); }

ZRT_VALUE(quad*, fabsl)(quad* result, quad a) {
  return negative(a) ? sign_flipped(result, a) : as_it_came(result, a);
}
ZRT_VALUE(quad*, copysignl)(quad* result, quad x, quad y) {
  const bool has_sign = image(x.hi) >> 63 != 0;
  return has_sign == negative(y) ? as_it_came(result, x) : sign_flipped(result, x);
}
ZRT_VALUE(quad*, fdiml)(quad* result, quad a, quad b) {
  return put(result, positive_difference(a, b));
}
ZRT_VALUE(quad*, fmodl)(quad* result, quad a, quad b) {
  return put(result, ZRT_ORDINARY_CALL(remainder, a, b));
}
ZRT_VALUE(quad*, frexpl)(quad* result, quad q, std::int32_t* e) {
  const parts taken_apart = significand_and_exponent(q);
  *e = taken_apart.exponent;
  std::memcpy(&result->hi, &taken_apart.hi, sizeof taken_apart.hi);
  std::memcpy(&result->lo, &taken_apart.lo, sizeof taken_apart.lo);
  return result;
}
