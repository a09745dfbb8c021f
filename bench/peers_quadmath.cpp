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
  using one = __float128 (*)(__float128);
  using two = __float128 (*)(__float128, __float128);
  using complex_one = __complex128 (*)(__complex128);
  using complex_two = __complex128 (*)(__complex128, __complex128);
  const char* const name = "libquadmath";
  add_peer("qadd", name, two([](__float128 a, __float128 b) { return a + b; }));
  add_peer("qsub", name, two([](__float128 a, __float128 b) { return a - b; }));
  add_peer("qmul", name, two([](__float128 a, __float128 b) { return a * b; }));
  add_peer("qdiv", name, two([](__float128 a, __float128 b) { return a / b; }));
  add_peer("qint", name, one(truncq));
  add_peer("qnint", name, one(roundq));
  add_peer("ceill", name, one(ceilq));
  add_peer("floorl", name, one(floorq));
  add_peer("fmodl", name, two(fmodq));
  add_peer("sqrtl", name, one(sqrtq));
  add_peer("expl", name, one(expq));
  add_peer("logl", name, one(logq));
  add_peer("log10l", name, one(log10q));
  add_peer("powl", name, two(powq));
  add_peer("sinl", name, one(sinq));
  add_peer("cosl", name, one(cosq));
  add_peer("tanl", name, one(tanq));
  add_peer("asinl", name, one(asinq));
  add_peer("acosl", name, one(acosq));
  add_peer("atanl", name, one(atanq));
  add_peer("atan2l", name, two(atan2q));
  add_peer("sinhl", name, one(sinhq));
  add_peer("coshl", name, one(coshq));
  add_peer("tanhl", name, one(tanhq));
  add_peer("cqmul", name, complex_two([](__complex128 a, __complex128 b) { return a * b; }));
  add_peer("cqdiv", name, complex_two([](__complex128 a, __complex128 b) { return a / b; }));
  add_peer("csqrtl", name, complex_one(csqrtq));
  add_peer("cexpl", name, complex_one(cexpq));
  add_peer("clogl", name, complex_one(clogq));
  add_peer("csinl", name, complex_one(csinq));
  add_peer("ccosl", name, complex_one(ccosq));
  add_peer("cpowl", name, complex_two(cpowq));
});

}  // namespace bench
