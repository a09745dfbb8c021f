// COMPLEX*32 product and quotient.

#include "cquad/cquad.hpp"
#include "entries.hpp"

namespace zrt::cquads {
namespace {

template <class Result>
[[gnu::always_inline]] inline cquad product_of_parts(const cquad& x, const cquad& y) {
  return {sub(mul<Result>(x.re, y.re), mul<Result>(x.im, y.im)),
          add(mul<Result>(x.re, y.im), mul<Result>(y.re, x.im))};
}

bool is_ordinary(const quad& a) {
  const std::uint64_t hi = image(a.hi);
  const int exponent = biased_exponent<double>(hi) - layout<double>::bias;
  return (exponent >= -900 && exponent < 1000) || hi << 1 == 0;
}

cquad product(const cquad& x, const cquad& y) {
  const bool ordinary =
      is_ordinary(x.re) && is_ordinary(x.im) && is_ordinary(y.re) && is_ordinary(y.im);
  return ordinary ? product_of_parts<by_store_of_ordinary>(x, y) : product_of_parts<by_store>(x, y);
}

/// Smith's method: the ratio of the divisor's parts, the smaller over the larger, keeps its squares
/// in range. The ways differ in the order of operands; equal sizes and NaNs take the second. A
/// divisor that compares as zero gives the library's NaN.
cquad quotient(const cquad& x, const cquad& y) {
  const quad &a = x.re, &b = x.im, &c = y.re, &d = y.im;
  if (is_zero_or_nan(y)) return invalid;
  if (greater(leading(sub(magnitude(c), magnitude(d))), 0.0L)) {
    const quad r = div(d, c);
    const quad den = add(c, mul(d, r));
    return {div(add(a, mul(b, r)), den), div(sub(b, mul(a, r)), den)};
  }
  const quad r = div(c, d);
  const quad den = add(d, mul(c, r));
  return {div(add(b, mul(a, r)), den), div(sub(mul(b, r), a), den)};
}

}  // namespace
}  // namespace zrt::cquads

using namespace zrt;

ZRT_VALUE(cquad*, cqmul)(cquad* result, cquad x, cquad y) {
  *result = cquads::product(x, y);
  return result;
}
ZRT_VALUE(cquad*, cqdiv)(cquad* result, cquad x, cquad y) {
  *result = cquads::quotient(x, y);
  return result;
}
