// The elementary functions of REAL*16 as compiled code calls them.

#include "entries.hpp"
#include "quad/arcsine.hpp"
#include "quad/arctangent.hpp"
#include "quad/by_processor.hpp"
#include "quad/circular.hpp"
#include "quad/exponential.hpp"
#include "quad/hyperbolic.hpp"
#include "quad/logarithm.hpp"
#include "quad/powers.hpp"

namespace zrt::quads {
namespace {

constexpr quad log10_e = constant(0x3FDBCB7B1526E50E, 0x3C695355BAAAFAC8);

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, sqrtl)(quad* result, quad x) {
  return by_processor::square_root(result, joined(x));
}
ZRT_VALUE(quad*, expl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(exponential, joined(x)));
}
ZRT_VALUE(quad*, logl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(logarithm, joined(x)));
}
ZRT_VALUE(quad*, log10l)(quad* result, quad x) {
  return by_processor::mul(result, ZRT_ORDINARY_CALL(logarithm, joined(x)), log10_e);
}

ZRT_VALUE(quad*, sinl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(sine, joined(x)));
}
ZRT_VALUE(quad*, cosl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(cosine, joined(x)));
}
ZRT_VALUE(quad*, tanl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(tangent, joined(x)));
}
ZRT_VALUE(quad*, cotl)(quad* result, quad x) {
  return by_processor::div(result, at_entry::value{1.0}, ZRT_ORDINARY_CALL(tangent, joined(x)));
}
ZRT_VALUE(quad*, sindl)(quad* result, quad x) {
  by_processor::mul(result, joined(x), radians_per_degree);
  return put(result, ZRT_ORDINARY_CALL(sine, *result));
}
ZRT_VALUE(quad*, cosdl)(quad* result, quad x) {
  by_processor::mul(result, joined(x), radians_per_degree);
  return put(result, ZRT_ORDINARY_CALL(cosine, *result));
}
ZRT_VALUE(quad*, tandl)(quad* result, quad x) {
  by_processor::mul(result, joined(x), radians_per_degree);
  return put(result, ZRT_ORDINARY_CALL(tangent, *result));
}

ZRT_VALUE(quad*, asinl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(arcsine, joined(x)));
}
ZRT_VALUE(quad*, acosl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(arccosine, joined(x)));
}
ZRT_VALUE(quad*, atanl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(arctangent, joined(x)));
}
ZRT_VALUE(quad*, atan2l)(quad* result, quad y, quad x) {
  return put(result, ZRT_ORDINARY_CALL(angle, joined(y), joined(x)));
}
ZRT_VALUE(quad*, asindl)(quad* result, quad x) {
  return by_processor::mul(result, ZRT_ORDINARY_CALL(arcsine, joined(x)), degrees_per_radian);
}
ZRT_VALUE(quad*, acosdl)(quad* result, quad x) {
  return by_processor::mul(result, ZRT_ORDINARY_CALL(arccosine, joined(x)), degrees_per_radian);
}
ZRT_VALUE(quad*, atandl)(quad* result, quad x) {
  return by_processor::mul(result, ZRT_ORDINARY_CALL(arctangent, joined(x)), degrees_per_radian);
}
ZRT_VALUE(quad*, atan2dl)(quad* result, quad y, quad x) {
  return by_processor::mul(result, ZRT_ORDINARY_CALL(angle, joined(y), joined(x)),
                           degrees_per_radian);
}

ZRT_VALUE(quad*, sinhl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(hyperbolic_sine, joined(x)));
}
ZRT_VALUE(quad*, coshl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(hyperbolic_cosine, joined(x)));
}
ZRT_VALUE(quad*, tanhl)(quad* result, quad x) {
  return put(result, ZRT_ORDINARY_CALL(hyperbolic_tangent, joined(x)));
}

ZRT_VALUE(quad*, powli)(quad* result, quad x, std::int32_t n) {
  return ZRT_ORDINARY_CALL(integer_power, result, joined(x), n);
}
ZRT_VALUE(quad*, powlk)(quad* result, quad x, std::int64_t n) {
  return ZRT_ORDINARY_CALL(integer_power, result, joined(x), n);
}
ZRT_VALUE(quad*, powl)(quad* result, quad x, quad y) {
  return ZRT_ORDINARY_CALL(power, result, joined(x), joined(y));
}
ZRT_VALUE(quad*, powld)(quad* result, quad x, real8 d) {
  const quad y = widened(load(static_cast<const double&>(d)));
  return ZRT_ORDINARY_CALL(power, result, joined(x), y);
}
