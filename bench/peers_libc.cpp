// The C library's own functions, over the operands of the entries they stand beside.

#include <cmath>

#include "calls.hpp"

namespace bench {

static const registered libc_peers([] {
  using one = double (*)(double);
  using onef = float (*)(float);
  using two = double (*)(double, double);
  using twof = float (*)(float, float);
  const char* const libm = "libm";
  add_peer("dint", libm, one(std::trunc));
  add_peer("aint", libm, onef(std::trunc));
  add_peer("dmod", libm, two(std::fmod));
  add_peer("amod", libm, twof(std::fmod));
  add_peer("dnint", libm, one(std::round));
  add_peer("anint", libm, onef(std::round));
  add_peer("ddim", libm, two(std::fdim));
  add_peer("f90floor", libm, one(std::floor));
  add_peer("f90ceil", libm, one(std::ceil));
});

}  // namespace bench
