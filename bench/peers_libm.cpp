// The C library's functions, over the operands of the entries they stand beside.

#include <cmath>

#include "c_complex.hpp"
#include "calls.hpp"

namespace bench {
namespace {

template <class T>
using one = T (*)(T);
template <class T>
using two = T (*)(T, T);

// By their C names: std::sqrt of a float stands in line, and others are called by way of a wrapper.

const registered libm_peers([] {
  const char* const libm = "libm";
#define ZRT_REAL_PEER(shape, real4, real8, real16, name, mpfr)  \
  add_peer(#real4, libm, static_cast<shape<float>>(::name##f)); \
  add_peer(#real8, libm, static_cast<shape<double>>(::name));
#define ZRT_COMPLEX_PEER(shape, c, z, x, name, mpc) \
  add_peer(#c, libm, ::name##f);                    \
  add_peer(#z, libm, ::name);
#include "counterparts.inc"
});

}  // namespace
}  // namespace bench
