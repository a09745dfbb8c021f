// COMPLEX*32 powers.

#include "cquad/elementary.hpp"
#include "entries.hpp"
#include "frame/sections.hpp"
#include "quad/arctangent.hpp"

namespace zrt::cquads {
namespace {

/// z**n by squaring from the low bit of |n|, a negative n on the reciprocal. A zero z gives 1 for n
/// = 0 and zero for every other n.
cquad integer_power(const cquad& z, std::int32_t n) {
  if (is_zero_or_nan(z)) return n == 0 ? one : zero;
  quad x = z.re, y = z.im;
  auto count = static_cast<std::uint32_t>(n);
  if (n < 0) {
    count = 0 - count;
    const quad s = square_of_modulus(z);
    x = div(x, s);
    y = div(neg(y), s);
  }
  quad r = quads::one, i = quads::zero;
  for (; count != 0; count >>= 1) {
    if ((count & 1) != 0) {
      const quad next = sub(mul(r, x), mul(i, y));
      i = add(mul(i, x), mul(r, y));
      r = next;
    }
    const quad next = sub(mul(x, x), mul(y, y));
    y = add(mul(y, x), mul(x, y));
    x = next;
  }
  return {r, i};
}

/// A whole number whose image has a low word of zero, with an exponent from 0 to 30: those below
/// 2**21 in size, and the powers of two up to 2**30.
bool is_short_integer(const double& c) {
  constexpr int high_fraction_bits = layout<double>::fraction_bits - 32;
  const std::uint64_t bits = image(c);
  const int e = biased_exponent<double>(bits) - layout<double>::bias;
  if (static_cast<std::uint32_t>(bits) != 0 || e < 0 || e >= 31) return false;
  const std::uint32_t all = (std::uint32_t{1} << high_fraction_bits) - 1;
  const std::uint32_t fraction = static_cast<std::uint32_t>(bits >> 32) & all;
  return fraction == 0 || (e < 21 && ((all >> e) & fraction) == 0);
}

/// z**w: integer powers where w is real and short, otherwise exp(w log z). A zero z gives zero
/// whatever the sign of w, and with a zero w the library's NaN.
cquad power(const cquad& z, const cquad& w) {
  const quad &c = w.re, &d = w.im;
  if (is_zero_or_nan(z)) return is_zero_or_nan(w) ? invalid : zero;
  const bool real_exponent = quads::is_zero_or_nan(d);
  if (real_exponent && is_short_integer(c.hi))
    return integer_power(z, truncated_to_int32(load(c.hi)));
  const quad log = log_modulus(z), theta = angle(z.im, z.re);
  if (real_exponent) return exponential(mul(log, c), mul(theta, c));
  return exponential(sub(mul(log, c), mul(theta, d)), add(mul(log, d), mul(theta, c)));
}

}  // namespace
}  // namespace zrt::cquads

using namespace zrt;

ZRT_VALUE(cquad*, cqtoi)(cquad* result, cquad z, std::int32_t n) {
  *result = cquads::integer_power(z, n);
  return result;
}
ZRT_VALUE(cquad*, cpowl)(cquad* result, cquad z, cquad w) {
  *result = cquads::power(z, w);
  return result;
}
