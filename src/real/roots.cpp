// SQRT of REAL*4 and REAL*8.

#include "entries.hpp"
#include "real/roots_kernel.hpp"

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dsqrt)(real8 x) {
  return evaluated<double>(
      positive_between<double>(x, 0x1p-900, infinite<double>),
      []<class V>(const double& a) { return square_root<V>(a); }, x);
}
ZRT_VALUE(real4_result, sqrt)(real4 x) {
  return evaluated<float>(
      is_positive_normal(x), []<class V>(const float& a) { return square_root<V>(a); }, x);
}
