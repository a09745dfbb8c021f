#pragma once

// The REAL functions of one operand that compute on doubles where that gives the same bits, each
// beside its kernel on the register. A unit that includes this is compiled as the library is.

#include <span>

#include "entries.hpp"
#include "real/circular_kernel.hpp"
#include "real/exp_log_kernel.hpp"
#include "real/hyperbolic_kernel.hpp"
#include "real/inverse_circular_kernel.hpp"
#include "real/roots_kernel.hpp"
#include "real/rounding.hpp"

namespace support {

using zrt::reg;

template <class F>
struct two_models {
  const char* stem;
  F (*entry)(F);
  F (*on_register)(F);
};

#define ZRT_TWO_MODELS(F, stem, ...)                                        \
  {                                                                         \
#stem, __zorvik_##stem, [](F x) { return static_cast<F>(__VA_ARGS__); } \
  }

/// A function with an INTEGER*4 result, as the image of an F.
#define ZRT_TWO_MODELS_OF_INTEGER(F, stem, ...)                                \
  {                                                                            \
#stem, [](F x) { return integer_image<F>(__zorvik_##stem(x)); },             \
        [](F x) { return integer_image<F>(__VA_ARGS__); } \
  }
template <class F>
F integer_image(std::int32_t value) {
  return std::bit_cast<F>(static_cast<zrt::image_of<F>>(static_cast<std::uint32_t>(value)));
}

template <class F>
F radians(F degrees) {
  return static_cast<F>(zrt::load(degrees) * zrt::real::circular_constants<F>::radians);
}

inline std::span<const two_models<float>> functions(float) {
  using namespace zrt;
  using namespace zrt::real;
  constexpr double degrees8 = arctangent_constants<double>::degrees;
  static const two_models<float> table[] = {
      ZRT_TWO_MODELS(float, exp, natural_exponential<reg>(x)),
      ZRT_TWO_MODELS(float, alog, natural_logarithm<reg>(x)),
      ZRT_TWO_MODELS(float, alog10,
                     natural_logarithm<reg>(x) * logarithm_constants<float>::log10_e),
      ZRT_TWO_MODELS(float, sqrt, square_root<reg>(x)),
      ZRT_TWO_MODELS(float, sin, sine<reg>(x, false)),
      ZRT_TWO_MODELS(float, cos, sine<reg>(x, true)),
      ZRT_TWO_MODELS(float, tan, tangent<reg>(x)),
      ZRT_TWO_MODELS(float, sind, sine<reg>(radians(x), false)),
      ZRT_TWO_MODELS(float, cosd, sine<reg>(radians(x), true)),
      ZRT_TWO_MODELS(float, tand, tangent<reg>(radians(x))),
      ZRT_TWO_MODELS(float, asin, arcsine<reg>(x, 0)),
      ZRT_TWO_MODELS(float, acos, arcsine<reg>(x, 1)),
      ZRT_TWO_MODELS(float, asind, arcsine<reg>(x, 0) * degrees8),
      ZRT_TWO_MODELS(float, acosd, arcsine<reg>(x, 1) * degrees8),
      ZRT_TWO_MODELS(float, atan, arctangent<reg>(x)),
      ZRT_TWO_MODELS(float, atand, arctangent<reg>(x) * arctangent_constants<float>::degrees),
      ZRT_TWO_MODELS(float, sinh, hyperbolic_sine<reg>(x)),
      ZRT_TWO_MODELS(float, tanh, hyperbolic_tangent<reg>(x)),
      ZRT_TWO_MODELS(float, aint, integral_part(x)),
      ZRT_TWO_MODELS(float, abs, magnitude(x)),
      ZRT_TWO_MODELS_OF_INTEGER(float, nint, nearest_integer(x)),
      ZRT_TWO_MODELS_OF_INTEGER(float, ifloor, truncated_to_int32(floor(load(x)))),
      ZRT_TWO_MODELS_OF_INTEGER(float, iceil, truncated_to_int32(ceiling(load(x)))),
      ZRT_TWO_MODELS(float, anint, nearest_whole<reg>(x)),
      ZRT_TWO_MODELS(float, f90floorf, floor(load(x))),
      ZRT_TWO_MODELS(float, f90ceilf, ceiling(load(x)))};
  return table;
}

inline std::span<const two_models<double>> functions(double) {
  using namespace zrt;
  using namespace zrt::real;
  constexpr double degrees = arctangent_constants<double>::degrees;
  static const two_models<double> table[] = {
      ZRT_TWO_MODELS(double, dexp, natural_exponential<reg>(x)),
      ZRT_TWO_MODELS(double, dlog, natural_logarithm<reg>(x)),
      ZRT_TWO_MODELS(double, dlog10,
                     natural_logarithm<reg>(x) * logarithm_constants<double>::log10_e),
      ZRT_TWO_MODELS(double, dsqrt, square_root<reg>(x)),
      ZRT_TWO_MODELS(double, dsin, sine<reg>(x, false)),
      ZRT_TWO_MODELS(double, dcos, sine<reg>(x, true)),
      ZRT_TWO_MODELS(double, dtan, tangent<reg>(x)),
      ZRT_TWO_MODELS(double, dcot, 1.0 / tangent<reg>(x)),
      ZRT_TWO_MODELS(double, dsind, sine<reg>(radians(x), false)),
      ZRT_TWO_MODELS(double, dcosd, sine<reg>(radians(x), true)),
      ZRT_TWO_MODELS(double, dtand, tangent<reg>(radians(x))),
      ZRT_TWO_MODELS(double, dasin, arcsine<reg>(x, 0)),
      ZRT_TWO_MODELS(double, dacos, arcsine<reg>(x, 1)),
      ZRT_TWO_MODELS(double, dasind, arcsine<reg>(x, 0) * degrees),
      ZRT_TWO_MODELS(double, dacosd, arcsine<reg>(x, 1) * degrees),
      ZRT_TWO_MODELS(double, datan, arctangent<reg>(x)),
      ZRT_TWO_MODELS(double, datand, arctangent<reg>(x) * degrees),
      ZRT_TWO_MODELS(double, dsinh, hyperbolic_sine<reg>(x)),
      ZRT_TWO_MODELS(double, dtanh, hyperbolic_tangent<reg>(x)),
      ZRT_TWO_MODELS(double, dint, integral_part(x)),
      ZRT_TWO_MODELS(double, dabs, magnitude(x)),
      ZRT_TWO_MODELS_OF_INTEGER(double, idnint, nearest_integer(x)),
      ZRT_TWO_MODELS_OF_INTEGER(double, idfloor, truncated_to_int32(floor(load(x)))),
      ZRT_TWO_MODELS_OF_INTEGER(double, idceil, truncated_to_int32(ceiling(load(x)))),
      ZRT_TWO_MODELS(double, dnint, nearest_whole<reg>(x)),
      ZRT_TWO_MODELS(double, f90floor, floor(load(x))),
      ZRT_TWO_MODELS(double, f90ceil, ceiling(load(x)))};
  return table;
}

/// The functions of two operands.
template <class F>
struct two_models_of_pairs {
  const char* stem;
  F (*entry)(F, F);
  F (*on_register)(F, F);
};
#define ZRT_TWO_MODELS_OF_PAIRS(F, stem, kernel)                                             \
  {                                                                                          \
#stem, __zorvik_##stem, [](F a, F b) { return static_cast<F>(zrt::real::kernel(a, b)); } \
  }
inline std::span<const two_models_of_pairs<float>> functions_of_pairs(float) {
  static const two_models_of_pairs<float> table[] = {
      ZRT_TWO_MODELS_OF_PAIRS(float, sign, sign_transfer),
      ZRT_TWO_MODELS_OF_PAIRS(float, dim, positive_difference),
      ZRT_TWO_MODELS_OF_PAIRS(float, amod, remainder)};
  return table;
}
inline std::span<const two_models_of_pairs<double>> functions_of_pairs(double) {
  static const two_models_of_pairs<double> table[] = {
      ZRT_TWO_MODELS_OF_PAIRS(double, dsign, sign_transfer),
      ZRT_TWO_MODELS_OF_PAIRS(double, ddim, positive_difference),
      ZRT_TWO_MODELS_OF_PAIRS(double, dmod, remainder)};
  return table;
}

}  // namespace support
