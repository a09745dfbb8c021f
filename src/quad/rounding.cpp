// The whole-number, sign and remainder intrinsics of REAL*16. They work part by part; what takes
// care is a whole leading part, where the low part decides.

#include "quad/rounding.hpp"

#include "entries.hpp"
#include "quad/significand.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;

enum class toward { zero, below, above, nearest };

/// On i386 a leading part with a fraction cut by its words, where the general way would wait for
/// 64-bit loads of a caller's 32-bit stores; false leaves the result to that way. Ties of the
/// nearest number and whole leading parts are decided by the low part. All but the nearest raise
/// inexact, as their truncations do.
template <toward direction>
[[gnu::always_inline]] inline bool is_cut_by_words([[maybe_unused]] quad* result,
                                                   [[maybe_unused]] const quad& a) {
#if defined(__i386__)
  constexpr std::uint64_t fraction = (std::uint64_t{1} << layout<double>::fraction_bits) - 1;
  constexpr std::uint64_t one_image = std::uint64_t{layout<double>::bias}
                                      << layout<double>::fraction_bits;
  const std::uint64_t bits = image(a.hi);
  const auto high = static_cast<std::uint32_t>(bits >> 32);
  const int e = exponent_of(a.hi);
  if (!sse2_is_usable() || e >= layout<double>::fraction_bits || e < -1022) return false;
  const bool is_negative = high >> 31 != 0;
  const bool away = direction == toward::below   ? is_negative
                    : direction == toward::above ? !is_negative
                                                 : false;
  std::uint64_t whole;
  if (e < 0) {
    const std::uint64_t sign = std::uint64_t{high & 0x80000000u} << 32;
    if (direction == toward::nearest && e == -1 && (bits & fraction) == 0) return false;
    whole = sign | (away || (direction == toward::nearest && e == -1) ? one_image : 0);
  } else {
    const std::uint64_t mask = fraction >> e, rest = bits & mask, half = (mask >> 1) + 1;
    if (rest == 0 || (direction == toward::nearest && rest == half)) return false;
    whole = (bits + (direction == toward::nearest ? half : away ? mask : 0)) & ~mask;
  }
  if (direction != toward::nearest) {
    static constexpr float tiny = 0x1p-100F;
    asm volatile("fld1\n\tfadds %0\n\tfstp %%st(0)" : : "m"(tiny));
  }
  join_words(&result->hi, &whole);
  result->lo = 0.0;
  return true;
#else
  return false;
#endif
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
  if (is_cut_by_words<toward::zero>(result, a)) return result;
  return put(result, truncation(joined(a)));
}
ZRT_VALUE(quad*, qnint)(quad* result, quad a) {
  if (is_cut_by_words<toward::nearest>(result, a)) return result;
  return put(result, nearest(joined(a)));
}
ZRT_VALUE(std::int32_t, iqnint)(quad a) { return nearest_integer(joined(a)); }
ZRT_VALUE(std::int32_t, jiqnnt)(quad a) { return nearest_integer(joined(a)); }
// The low 16 bits: nothing saturates.
ZRT_VALUE(std::int32_t, iiqnnt)(quad a) {
  return static_cast<std::int16_t>(nearest_integer(joined(a)));
}
ZRT_VALUE(quad*, ceill)(quad* result, quad a) {
  if (is_cut_by_words<toward::above>(result, a)) return result;
  return put(result, ceiling(joined(a)));
}
ZRT_VALUE(quad*, floorl)(quad* result, quad a) {
  if (is_cut_by_words<toward::below>(result, a)) return result;
  return put(result, quads::floor(joined(a)));
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
