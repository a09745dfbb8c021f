#pragma once

// Boost.Math over REAL*16: constants as 128-bit literals, errors as values.

#define BOOST_MATH_USE_FLOAT128
#define BOOST_NO_EXCEPTIONS
#define BOOST_EXCEPTION_DISABLE

// Boost.Math includes <iostream> and prints nothing: without it the archive needs no C++ runtime.
#include <istream>
#include <ostream>
#define _GLIBCXX_IOSTREAM 1

#include <boost/math/special_functions/bessel.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>

#include "zorvikrt/boost.hpp"
#include "zorvikrt/special.h"

namespace zrt::special {

using zorvikrt::errors_as_values;
using zorvikrt::real16;

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
