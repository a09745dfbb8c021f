// COMPLEX*32 product and quotient.

#include "cquad/kernels.hpp"

namespace zrt::cquads {
inline namespace ZRT_MODEL {
namespace {

using A = general;

/// The four products by stores, the parts they are cut into kept as doubles.
struct stored_products : stored_arithmetic {
  [[gnu::always_inline]] static quad mul(const quad& a, const quad& b) {
    return stored_arithmetic::mul<double>(a, b);
  }
};
using normal_products = std::conditional_t<on_doubles, direct, stored_products>;

template <class Products>
[[gnu::always_inline]] inline cquad product_of_parts(const cquad& x, const cquad& y) {
  using P = Products;
  return {A::sub(P::mul(x.re, y.re), P::mul(x.im, y.im)),
          A::add(P::mul(x.re, y.im), P::mul(y.re, x.im))};
}

/// Whether the products of these leading parts are cut into normal doubles; on doubles also whether
/// they keep all else in range.
bool has_normal_pieces(const cquad& x, const cquad& y) {
  if constexpr (on_doubles)
    return are_plain<-220, 220>(x.re.hi, x.re.lo, x.im.hi, x.im.lo, y.re.hi, y.re.lo, y.im.hi,
                                y.im.lo);
  else
    return are_plain<-900, 1000>(x.re.hi, x.im.hi, y.re.hi, y.im.hi);
}

}  // namespace

cquad product(const cquad& x, const cquad& y) {
  return has_normal_pieces(x, y) ? product_of_parts<normal_products>(x, y)
                                 : product_of_parts<A>(x, y);
}

// Smith's method: the ratio of the divisor's parts, the smaller over the larger, keeps its squares
// in range. The ways differ in the order of operands; equal sizes and NaNs take the second. A
// divisor that compares as zero gives the library's NaN.
cquad quotient(const cquad& x, const cquad& y) {
  if (!is_taken(x) || !is_taken(y)) return x87::quotient(x, y);
  const quad &a = x.re, &b = x.im, &c = y.re, &d = y.im;
  if (is_zero_or_nan(y)) return invalid;
  if (greater(A::leading(A::sub(A::magnitude(c), A::magnitude(d))), 0.0)) {
    const quad r = A::div(d, c);
    const quad den = A::add(c, A::mul(d, r));
    return {A::div(A::add(a, A::mul(b, r)), den), A::div(A::sub(b, A::mul(a, r)), den)};
  }
  const quad r = A::div(c, d);
  const quad den = A::add(d, A::mul(c, r));
  return {A::div(A::add(b, A::mul(a, r)), den), A::div(A::sub(A::mul(b, r), a), den)};
}

}  // namespace ZRT_MODEL
}  // namespace zrt::cquads
