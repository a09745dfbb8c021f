// The IEEE quadruple-precision functions of libquadmath, over the operands of the REAL*16 and
// COMPLEX*32 entries, converted beforehand.

#include <quadmath.h>

#include "calls.hpp"

namespace bench {

template <>
struct by_value<__float128> {
  static __float128 from(const support::operand& operand) {
    double parts[2];
    std::memcpy(parts, operand.bytes.data(), sizeof parts);
    return static_cast<__float128>(parts[0]) + parts[1];
  }
};

template <>
struct by_value<__complex128> {
  static __complex128 from(const support::operand& operand) {
    double parts[4];
    std::memcpy(parts, operand.bytes.data(), sizeof parts);
    __complex128 z;
    __real__ z = static_cast<__float128>(parts[0]) + parts[1];
    __imag__ z = static_cast<__float128>(parts[2]) + parts[3];
    return z;
  }
};

static const registered quadmath_peers([] {
  using two = __float128 (*)(__float128, __float128);
  using complex_two = __complex128 (*)(__complex128, __complex128);
  const char* const name = "libquadmath";
#define ZRT_REAL_PEER(shape, f, d, real16, function, mpfr) add_peer(#real16, name, function##q);
#define ZRT_COMPLEX_PEER(shape, c, z, x, function, mpc) add_peer(#x, name, function##q);
#include "counterparts.inc"
  add_peer("qadd", name, two([](__float128 a, __float128 b) { return a + b; }));
  add_peer("qsub", name, two([](__float128 a, __float128 b) { return a - b; }));
  add_peer("qmul", name, two([](__float128 a, __float128 b) { return a * b; }));
  add_peer("qdiv", name, two([](__float128 a, __float128 b) { return a / b; }));
  add_peer("cqmul", name, complex_two([](__complex128 a, __complex128 b) { return a * b; }));
  add_peer("cqdiv", name, complex_two([](__complex128 a, __complex128 b) { return a / b; }));
});

}  // namespace bench
