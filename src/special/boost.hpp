#pragma once

// Boost.Math over REAL*16: constants as 128-bit literals, errors as values.

#define BOOST_MATH_USE_FLOAT128
#define BOOST_NO_EXCEPTIONS
#define BOOST_EXCEPTION_DISABLE

// Boost.Math includes <iostream> and prints nothing: without it the archive needs no C++ runtime.
#include <istream>
#include <ostream>
#define _GLIBCXX_IOSTREAM 1

#include <boost/math/policies/policy.hpp>
#include <boost/math/special_functions/bessel.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/tools/convert_from_string.hpp>

#include "zorvikrt/functions.hpp"
#include "zorvikrt/limits.hpp"
#include "zorvikrt/special.h"
#include "zorvikrt/text.h"

/// The few constants that Boost.Math has as text.
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

namespace zrt::special {

using zorvikrt::real16;

namespace policies = boost::math::policies;

/// Nothing throws and nothing sets errno: a NaN or an infinity comes back.
using errors_as_values =
    policies::policy<policies::domain_error<policies::ignore_error>,
                     policies::pole_error<policies::ignore_error>,
                     policies::overflow_error<policies::ignore_error>,
                     policies::underflow_error<policies::ignore_error>,
                     policies::denorm_error<policies::ignore_error>,
                     policies::evaluation_error<policies::ignore_error>,
                     policies::rounding_error<policies::ignore_error>,
                     policies::indeterminate_result_error<policies::ignore_error>,
                     policies::promote_float<false>, policies::promote_double<false>>;

inline constexpr real16 infinity = std::numeric_limits<real16>::infinity();
inline constexpr real16 invalid = std::numeric_limits<real16>::quiet_NaN();

/// A zero, and not a subnormal number that DAZ takes for one.
inline bool is_zero(const real16& x) { return zorvikrt::detail::image(x.hi) << 1 == 0; }

/// Whether there is nothing behind the point; every number from 2**106 on is whole.
inline bool is_whole(const real16& x) { return trunc(x) == x; }

inline zorvikrt_quad* give(zorvikrt_quad* result, const real16& value) {
  *result = value;
  return result;
}

}  // namespace zrt::special
