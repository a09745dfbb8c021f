// The C library's elementary functions beside those of the real families.

#include <cmath>

#include "calls.hpp"

namespace bench {

static const registered real_peers([] {
  using one = double (*)(double);
  using onef = float (*)(float);
  using two = double (*)(double, double);
  using twof = float (*)(float, float);
  const char* const libm = "libm";
  add_peer("dexp", libm, one(std::exp));
  add_peer("dlog", libm, one(std::log));
  add_peer("dlog10", libm, one(std::log10));
  add_peer("dsqrt", libm, one(std::sqrt));
  add_peer("dsin", libm, one(std::sin));
  add_peer("dcos", libm, one(std::cos));
  add_peer("dtan", libm, one(std::tan));
  add_peer("dasin", libm, one(std::asin));
  add_peer("dacos", libm, one(std::acos));
  add_peer("datan", libm, one(std::atan));
  add_peer("datan2", libm, two(std::atan2));
  add_peer("dsinh", libm, one(std::sinh));
  add_peer("dcosh", libm, one(std::cosh));
  add_peer("dtanh", libm, one(std::tanh));
  add_peer("dtod", libm, two(std::pow));
  add_peer("exp", libm, onef(std::exp));
  add_peer("alog", libm, onef(std::log));
  add_peer("alog10", libm, onef(std::log10));
  add_peer("sqrt", libm, onef(std::sqrt));
  add_peer("sin", libm, onef(std::sin));
  add_peer("cos", libm, onef(std::cos));
  add_peer("tan", libm, onef(std::tan));
  add_peer("asin", libm, onef(std::asin));
  add_peer("acos", libm, onef(std::acos));
  add_peer("atan", libm, onef(std::atan));
  add_peer("atan2", libm, twof(std::atan2));
  add_peer("sinh", libm, onef(std::sinh));
  add_peer("cosh", libm, onef(std::cosh));
  add_peer("tanh", libm, onef(std::tanh));
  add_peer("ftof", libm, twof(std::pow));
});

}  // namespace bench
