// Bessel functions of both kinds, of whole order.

#include "special/boost.hpp"

namespace zrt::special {
namespace {

/// From here on (e x / 2 n)**n is below 2**-1100: the first kind is zero, the second infinite.
bool is_beyond_order(std::int64_t n, double x) {
  return n > 1100 && static_cast<double>(n) > 2.72 * x;
}

/// -n and -x change the sign for an odd n.
real16 first_kind(std::int64_t n, real16 x) {
  if (isnan(x)) return invalid;
  if (isinf(x)) return 0.0;
  if (is_zero(x)) return n == 0 ? 1.0 : 0.0;
  bool changes = n < 0;
  if (n < 0) n = -n;
  if (x.hi < 0) {
    x = -x;
    changes = !changes;
  }
  if (is_beyond_order(n, x.hi)) return 0.0;
  const real16 value = boost::math::cyl_bessel_j(static_cast<int>(n), x + 0.0, errors_as_values());
  return changes && n % 2 != 0 ? -value : value;
}

real16 second_kind(std::int64_t n, const real16& x) {
  if (isnan(x) || x.hi < 0) return invalid;
  if (isinf(x)) return 0.0;
  const bool changes = n < 0 && n % 2 != 0;
  if (n < 0) n = -n;
  real16 value = -infinity;
  if (!is_zero(x) && !is_beyond_order(n, x.hi)) {
    value = boost::math::cyl_neumann(static_cast<int>(n), x + 0.0, errors_as_values());
    if (!isfinite(value)) value = -infinity;
  }
  return changes ? -value : value;
}

}  // namespace
}  // namespace zrt::special

using namespace zrt::special;

zorvikrt_quad* zorvikrt_special_bessel_j0(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, first_kind(0, x));
}
zorvikrt_quad* zorvikrt_special_bessel_j1(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, first_kind(1, x));
}
zorvikrt_quad* zorvikrt_special_bessel_jn(zorvikrt_quad* result, int32_t n, zorvikrt_quad x) {
  return give(result, first_kind(n, x));
}
zorvikrt_quad* zorvikrt_special_bessel_y0(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, second_kind(0, x));
}
zorvikrt_quad* zorvikrt_special_bessel_y1(zorvikrt_quad* result, zorvikrt_quad x) {
  return give(result, second_kind(1, x));
}
zorvikrt_quad* zorvikrt_special_bessel_yn(zorvikrt_quad* result, int32_t n, zorvikrt_quad x) {
  return give(result, second_kind(n, x));
}
