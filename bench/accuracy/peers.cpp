#include "peers.hpp"

#include <quadmath.h>
#if defined(ZORVIKRT_BENCH_QD)
#include <qd/dd_real.h>
#endif

#include <cmath>
#include <cstring>

namespace accuracy {
namespace {

using support::operand;

template <class T>
T read(const operand& image) {
  T value;
  std::memcpy(&value, image.bytes.data(), sizeof value);
  return value;
}
template <class T>
operand written(T value) {
  operand image;
  std::memcpy(image.bytes.data(), &value, sizeof value);
  return image;
}
struct pair {
  double hi, lo;
};

template <class T>
auto of(T (*f)(T)) {
  return [f](const operand* a) { return written(f(read<T>(a[0]))); };
}
template <class T>
auto of(T (*f)(T, T)) {
  return [f](const operand* a) { return written(f(read<T>(a[0]), read<T>(a[1]))); };
}

__float128 quad_of(const operand& image) {
  const auto p = read<pair>(image);
  return static_cast<__float128>(p.hi) + p.lo;
}
operand rounded(__float128 value) {
  const auto hi = static_cast<double>(value);
  return written(pair{hi, static_cast<double>(value - hi)});
}
auto of(__float128 (*f)(__float128)) {
  return [f](const operand* a) { return rounded(f(quad_of(a[0]))); };
}
auto of(__float128 (*f)(__float128, __float128)) {
  return [f](const operand* a) { return rounded(f(quad_of(a[0]), quad_of(a[1]))); };
}

#if defined(ZORVIKRT_BENCH_QD)
dd_real dd_of(const operand& image) {
  const auto p = read<pair>(image);
  return {p.hi, p.lo};
}
using dd_one = dd_real (*)(const dd_real&);
auto of(dd_one f) {
  return [f](const operand* a) {
    const dd_real r = f(dd_of(a[0]));
    return written(pair{r.x[0], r.x[1]});
  };
}
#endif

template <class T>
using one = T (*)(T);
template <class T>
using two = T (*)(T, T);

struct row {
  std::string_view stem;
  peer other;
};

const std::vector<row>& all() {
  static const std::vector<row> rows = [] {
    std::vector<row> r;
    using quad_two = __float128 (*)(__float128, __float128);
    const auto quad = [&r](std::string_view stem, auto f) {
      r.push_back({stem, {"libquadmath", of(f)}});
    };
#define ZRT_REAL_PEER(shape, real4, real8, real16, name, mpfr)                \
  r.push_back({#real4, {"libm", of(static_cast<shape<float>>(std::name))}});  \
  r.push_back({#real8, {"libm", of(static_cast<shape<double>>(std::name))}}); \
  quad(#real16, static_cast<shape<__float128>>(name##q));
#include "counterparts.inc"
    quad("qadd", quad_two([](__float128 a, __float128 b) { return a + b; }));
    quad("qsub", quad_two([](__float128 a, __float128 b) { return a - b; }));
    quad("qmul", quad_two([](__float128 a, __float128 b) { return a * b; }));
    quad("qdiv", quad_two([](__float128 a, __float128 b) { return a / b; }));
#if defined(ZORVIKRT_BENCH_QD)
    const auto qd = [&r](std::string_view stem, dd_one f) {
      r.push_back({stem, {"libqd", of(f)}});
    };
    qd("expl", [](const dd_real& a) { return exp(a); });
    qd("logl", [](const dd_real& a) { return log(a); });
    qd("log10l", [](const dd_real& a) { return log10(a); });
    qd("sqrtl", [](const dd_real& a) { return sqrt(a); });
    qd("sinl", [](const dd_real& a) { return sin(a); });
    qd("cosl", [](const dd_real& a) { return cos(a); });
    qd("tanl", [](const dd_real& a) { return tan(a); });
    qd("asinl", [](const dd_real& a) { return asin(a); });
    qd("acosl", [](const dd_real& a) { return acos(a); });
    qd("atanl", [](const dd_real& a) { return atan(a); });
    qd("sinhl", [](const dd_real& a) { return sinh(a); });
    qd("coshl", [](const dd_real& a) { return cosh(a); });
    qd("tanhl", [](const dd_real& a) { return tanh(a); });
#endif
    return r;
  }();
  return rows;
}

}  // namespace

std::vector<peer> peers_of(std::string_view stem) {
  std::vector<peer> found;
  for (const row& r : all())
    if (r.stem == stem) found.push_back(r.other);
  return found;
}

}  // namespace accuracy
