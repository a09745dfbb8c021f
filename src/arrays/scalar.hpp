#pragma once

// One value at a time by the entries themselves: what every lane agrees with.

#include "arrays/kernels.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

#define ZRT_ALWAYS __attribute__((always_inline))
#define ZRT_INLINE inline ZRT_ALWAYS

namespace scalar {

ZRT_INLINE quad add(const quad& a, const quad& b) {
  quad r;
  __zorvik_qadd(&r, a, b);
  return r;
}
ZRT_INLINE quad sub(const quad& a, const quad& b) {
  quad r;
  __zorvik_qsub(&r, a, b);
  return r;
}
ZRT_INLINE quad mul(const quad& a, const quad& b) {
  quad r;
  __zorvik_qmul(&r, a, b);
  return r;
}
ZRT_INLINE quad div(const quad& a, const quad& b) {
  quad r;
  __zorvik_qdiv(&r, a, b);
  return r;
}
ZRT_INLINE quad root(const quad& a) {
  quad r;
  __zorvik_sqrtl(&r, a);
  return r;
}
ZRT_INLINE quad exponential(const quad& a) {
  quad r;
  __zorvik_expl(&r, a);
  return r;
}
ZRT_INLINE quad logarithm(const quad& a) {
  quad r;
  __zorvik_logl(&r, a);
  return r;
}
ZRT_INLINE quad sine(const quad& a) {
  quad r;
  __zorvik_sinl(&r, a);
  return r;
}
ZRT_INLINE quad cosine(const quad& a) {
  quad r;
  __zorvik_cosl(&r, a);
  return r;
}
ZRT_INLINE quad tangent(const quad& a) {
  quad r;
  __zorvik_tanl(&r, a);
  return r;
}
ZRT_INLINE quad arctangent(const quad& a) {
  quad r;
  __zorvik_atanl(&r, a);
  return r;
}
ZRT_INLINE quad negated(const quad& a) {
  quad r;
  __zorvik_qneg(&r, a);
  return r;
}
ZRT_INLINE quad conjugated(const quad& a) { return a; }

ZRT_INLINE cquad add(const cquad& a, const cquad& b) { return {add(a.re, b.re), add(a.im, b.im)}; }
ZRT_INLINE cquad mul(const cquad& a, const cquad& b) {
  cquad r;
  __zorvik_cqmul(&r, a, b);
  return r;
}
ZRT_INLINE cquad div(const cquad& a, const cquad& b) {
  cquad r;
  __zorvik_cqdiv(&r, a, b);
  return r;
}
ZRT_INLINE cquad negated(const cquad& a) { return {negated(a.re), negated(a.im)}; }
ZRT_INLINE cquad conjugated(const cquad& a) { return {a.re, negated(a.im)}; }

}  // namespace scalar

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
