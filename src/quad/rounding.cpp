// The whole-number, sign and remainder intrinsics of REAL*16. They work part by part; what takes
// care is a whole leading part, where the low part decides.

#include "quad/rounding.hpp"

#include "entries.hpp"
#include "quad/cut_by_words.hpp"
#include "quad/significand.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;

// The general ways: apart, so that the cut by words saves no register for them.
#if defined(__i386__)
#define ZRT_GENERAL [[gnu::noinline]]
#else
#define ZRT_GENERAL [[gnu::always_inline]] inline
#endif
ZRT_GENERAL quad* put_truncation(quad* result, const quad& a) {
  return put(result, truncation(joined(a)));
}
ZRT_GENERAL quad* put_nearest(quad* result, const quad& a) {
  return put(result, nearest(joined(a)));
}
ZRT_GENERAL quad* put_ceiling(quad* result, const quad& a) {
  return put(result, ceiling(joined(a)));
}
ZRT_GENERAL quad* put_floor(quad* result, const quad& a) {
  return put(result, quads::floor(joined(a)));
}

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

ZRT_VALUE(quad*, qint)(quad* result, quad a) {
  return is_cut_by_words<toward::inward>(result, a) ? result : put_truncation(result, a);
}
ZRT_VALUE(quad*, qnint)(quad* result, quad a) {
  return is_cut_by_words<toward::nearest>(result, a) ? result : put_nearest(result, a);
}
ZRT_VALUE(std::int32_t, iqnint)(quad a) { return nearest_integer(joined(a)); }
ZRT_VALUE(std::int32_t, jiqnnt)(quad a) { return nearest_integer(joined(a)); }
// The low 16 bits: nothing saturates.
ZRT_VALUE(std::int32_t, iiqnnt)(quad a) {
  return static_cast<std::int16_t>(nearest_integer(joined(a)));
}
ZRT_VALUE(quad*, ceill)(quad* result, quad a) {
  return is_cut_by_words<toward::above>(result, a) ? result : put_ceiling(result, a);
}
ZRT_VALUE(quad*, floorl)(quad* result, quad a) {
  return is_cut_by_words<toward::below>(result, a) ? result : put_floor(result, a);
}
ZRT_VALUE(std::int32_t, iceill)(quad a) { return truncated_to_int32(load(ceiling(joined(a)).hi)); }
ZRT_VALUE(std::int32_t, ifloorl)(quad a) {
  return truncated_to_int32(load(quads::floor(joined(a)).hi));
}

ZRT_VALUE(quad*, fabsl)(quad* result, quad a) {
  return negative(a) ? sign_flipped(result, a) : as_it_came(result, a);
}
ZRT_VALUE(quad*, copysignl)(quad* result, quad x, quad y) {
  const bool has_sign = image(x.hi) >> 63 != 0;
  return has_sign == negative(y) ? as_it_came(result, x) : sign_flipped(result, x);
}
ZRT_VALUE(quad*, fdiml)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return put(result, positive_difference(o.first(), o.second()));
}
ZRT_VALUE(quad*, fmodl)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return put(result, ZRT_ORDINARY_CALL(remainder, o.first(), o.second()));
}
ZRT_VALUE(quad*, frexpl)(quad* result, quad q, std::int32_t* e) {
  const parts taken_apart = significand_and_exponent(q);
  *e = taken_apart.exponent;
  std::memcpy(&result->hi, &taken_apart.hi, sizeof taken_apart.hi);
  std::memcpy(&result->lo, &taken_apart.lo, sizeof taken_apart.lo);
  return result;
}
