// The double-double functions of the QD library, on x86-64, where it is packaged.

#if defined(ZORVIKRT_BENCH_QD)

#include <qd/dd_real.h>

#include "calls.hpp"

namespace bench {

static const registered qd_peers([] {
  using one = dd_real (*)(dd_real);
  using two = dd_real (*)(dd_real, dd_real);
  const char* const name = "libqd";
  add_peer("qadd", name, two([](dd_real a, dd_real b) { return a + b; }));
  add_peer("qsub", name, two([](dd_real a, dd_real b) { return a - b; }));
  add_peer("qmul", name, two([](dd_real a, dd_real b) { return a * b; }));
  add_peer("qdiv", name, two([](dd_real a, dd_real b) { return a / b; }));
  add_peer("qint", name, one([](dd_real a) { return aint(a); }));
  add_peer("qnint", name, one([](dd_real a) { return nint(a); }));
  add_peer("ceill", name, one([](dd_real a) { return ceil(a); }));
  add_peer("floorl", name, one([](dd_real a) { return floor(a); }));
  add_peer("fmodl", name, two([](dd_real a, dd_real b) { return fmod(a, b); }));
  add_peer("sqrtl", name, one([](dd_real a) { return sqrt(a); }));
  add_peer("expl", name, one([](dd_real a) { return exp(a); }));
  add_peer("logl", name, one([](dd_real a) { return log(a); }));
  add_peer("log10l", name, one([](dd_real a) { return log10(a); }));
  add_peer("powl", name, two([](dd_real a, dd_real b) { return pow(a, b); }));
  add_peer("sinl", name, one([](dd_real a) { return sin(a); }));
  add_peer("cosl", name, one([](dd_real a) { return cos(a); }));
  add_peer("tanl", name, one([](dd_real a) { return tan(a); }));
  add_peer("asinl", name, one([](dd_real a) { return asin(a); }));
  add_peer("acosl", name, one([](dd_real a) { return acos(a); }));
  add_peer("atanl", name, one([](dd_real a) { return atan(a); }));
  add_peer("atan2l", name, two([](dd_real a, dd_real b) { return atan2(a, b); }));
  add_peer("sinhl", name, one([](dd_real a) { return sinh(a); }));
  add_peer("coshl", name, one([](dd_real a) { return cosh(a); }));
  add_peer("tanhl", name, one([](dd_real a) { return tanh(a); }));
});

}  // namespace bench

#endif
