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

const registered libm_peers([] {
  const char* const libm = "libm";
#define ZRT_REAL_PEER(shape, f, d, q, name, mpfr)           \
  add_peer(#f, libm, static_cast<shape<float>>(std::name)); \
  add_peer(#d, libm, static_cast<shape<double>>(std::name));
#define ZRT_COMPLEX_PEER(shape, c, z, x, name, mpc) \
  add_peer(#c, libm, ::name##f);                    \
  add_peer(#z, libm, ::name);
#include "counterparts.inc"
});

}  // namespace
}  // namespace bench
