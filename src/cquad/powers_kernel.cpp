// COMPLEX*32 powers.

#include "cquad/elementary.hpp"
#include "cquad/kernels.hpp"
#include "frame/sections.hpp"
#include "quad/arctangent.hpp"
#include "real/whole_exponent.hpp"

namespace zrt::cquads {
inline namespace ZRT_MODEL {
namespace {

using A = general;

}  // namespace

// z**n by squaring from the low bit of |n|, a negative n on the reciprocal. A zero z gives 1 for n
// = 0 and zero for every other n.
cquad integer_power(const cquad& z, std::int32_t n) {
  if (!is_taken(z)) return x87::integer_power(z, n);
  if (is_zero_or_nan(z)) return n == 0 ? one : zero;
  quad x = z.re, y = z.im;
  auto count = static_cast<std::uint32_t>(n);
  if (n < 0) {
    count = 0 - count;
    const quad s = square_of_modulus(z);
    x = A::div(x, s);
    y = A::div(A::neg(y), s);
  }
  quad r = quads::one, i = quads::zero;
  for (; count != 0; count >>= 1) {
    if ((count & 1) != 0) {
      const quad next = A::sub(A::mul(r, x), A::mul(i, y));
      i = A::add(A::mul(i, x), A::mul(r, y));
      r = next;
    }
    const quad next = A::sub(A::mul(x, x), A::mul(y, y));
    y = A::add(A::mul(y, x), A::mul(x, y));
    x = next;
  }
  return {r, i};
}

// z**w: integer powers where w is real and short, otherwise exp(w log z). A zero z gives zero
// whatever the sign of w, and with a zero w the library's NaN.
cquad power(const cquad& z, const cquad& w) {
  if (!is_taken(z) || !is_taken(w)) return x87::power(z, w);
  const quad &c = w.re, &d = w.im;
  if (is_zero_or_nan(z)) return is_zero_or_nan(w) ? invalid : zero;
  const bool real_exponent = quads::is_zero_or_nan(d);
  if (real_exponent && real::whole_by_leading_bits(c.hi))
    return integer_power(z, truncated_to_int32(load(c.hi)));
  const quad log = log_modulus(z), theta = angle(z.im, z.re);
  if (real_exponent) return exponential_of(A::mul(log, c), A::mul(theta, c));
  return exponential_of(A::sub(A::mul(log, c), A::mul(theta, d)),
                        A::add(A::mul(log, d), A::mul(theta, c)));
}

}  // namespace ZRT_MODEL
}  // namespace zrt::cquads
