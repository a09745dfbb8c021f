/** Boost.Math with REAL*16 as its real type: special functions, quadrature, root finding.
 *
 *      boost::math::quadrature::tanh_sinh<zorvikrt::real16> integrator(15, 1e-270);
 *
 *  Boost.Math takes the type by its functions and std::numeric_limits; this header tells
 *  it infinities and NaNs, reads the constants that it has as text, and names a policy. Include it
 * before the headers of Boost.Math.
 *
 *  In REAL*16 an infinity does not take part in arithmetic: 1 / infinity is a NaN. So tanh_sinh and
 *  its kin need abscissas that do not overflow, by the second argument as above.
 */
#ifndef ZORVIKRT_BOOST_HPP
#define ZORVIKRT_BOOST_HPP

#include <zorvikrt/text.h>

#include <boost/math/policies/policy.hpp>
#include <boost/math/special_functions/fpclassify.hpp>
#include <boost/math/tools/convert_from_string.hpp>
#include <zorvikrt/complex_functions.hpp>
#include <zorvikrt/limits.hpp>

namespace boost::math {

// By the image: the relations of REAL*16 take an infinity for unordered.
template <>
inline int fpclassify<zorvikrt::real16>(zorvikrt::real16 x) {
  return zorvikrt::fpclassify(x);
}
template <>
inline bool isfinite<zorvikrt::real16>(zorvikrt::real16 x) {
  return zorvikrt::isfinite(x);
}
template <>
inline bool isnormal<zorvikrt::real16>(zorvikrt::real16 x) {
  return zorvikrt::isnormal(x);
}
template <>
inline bool isinf<zorvikrt::real16>(zorvikrt::real16 x) {
  return zorvikrt::isinf(x);
}
template <>
inline bool isnan<zorvikrt::real16>(zorvikrt::real16 x) {
  return zorvikrt::isnan(x);
}

}  // namespace boost::math

namespace boost::math::tools {

template <>
struct convert_from_string_result<zorvikrt::real16> {
  using type = zorvikrt::real16;
};
template <>
inline zorvikrt::real16 convert_from_string<zorvikrt::real16>(const char* text) noexcept {
  zorvikrt::real16 value;
  zorvikrt_real16_from_chars(text, __builtin_strlen(text), &value, nullptr);
  return value;
}

}  // namespace boost::math::tools

namespace zorvikrt {

namespace detail {
namespace policies = boost::math::policies;
}

/** Nothing throws and nothing sets errno: a NaN or an infinity comes back. */
using errors_as_values = detail::policies::policy<
    detail::policies::domain_error<detail::policies::ignore_error>,
    detail::policies::pole_error<detail::policies::ignore_error>,
    detail::policies::overflow_error<detail::policies::ignore_error>,
    detail::policies::underflow_error<detail::policies::ignore_error>,
    detail::policies::denorm_error<detail::policies::ignore_error>,
    detail::policies::evaluation_error<detail::policies::ignore_error>,
    detail::policies::rounding_error<detail::policies::ignore_error>,
    detail::policies::indeterminate_result_error<detail::policies::ignore_error>,
    detail::policies::promote_float<false>, detail::policies::promote_double<false>>;

}  // namespace zorvikrt

#endif
