#pragma once

// One value at a time by the entries themselves: what every lane agrees with.

#include "arrays/kernels.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

#define ZRT_ALWAYS __attribute__((always_inline))
#define ZRT_INLINE inline ZRT_ALWAYS

namespace scalar {

/// The result of an entry.
template <auto entry, class T, class... Others>
ZRT_INLINE T given_by(const T& a, const Others&... others) {
  T r;
  entry(&r, a, others...);
  return r;
}

ZRT_INLINE quad add(const quad& a, const quad& b) { return given_by<__zorvik_qadd>(a, b); }
ZRT_INLINE quad sub(const quad& a, const quad& b) { return given_by<__zorvik_qsub>(a, b); }
ZRT_INLINE quad mul(const quad& a, const quad& b) { return given_by<__zorvik_qmul>(a, b); }
ZRT_INLINE quad div(const quad& a, const quad& b) { return given_by<__zorvik_qdiv>(a, b); }
ZRT_INLINE quad root(const quad& a) { return given_by<__zorvik_sqrtl>(a); }
ZRT_INLINE quad exponential(const quad& a) { return given_by<__zorvik_expl>(a); }
ZRT_INLINE quad logarithm(const quad& a) { return given_by<__zorvik_logl>(a); }
ZRT_INLINE quad sine(const quad& a) { return given_by<__zorvik_sinl>(a); }
ZRT_INLINE quad cosine(const quad& a) { return given_by<__zorvik_cosl>(a); }
ZRT_INLINE quad tangent(const quad& a) { return given_by<__zorvik_tanl>(a); }
ZRT_INLINE quad arctangent(const quad& a) { return given_by<__zorvik_atanl>(a); }
ZRT_INLINE quad negated(const quad& a) { return given_by<__zorvik_qneg>(a); }
ZRT_INLINE quad conjugated(const quad& a) { return a; }

ZRT_INLINE cquad add(const cquad& a, const cquad& b) { return {add(a.re, b.re), add(a.im, b.im)}; }
ZRT_INLINE cquad mul(const cquad& a, const cquad& b) { return given_by<__zorvik_cqmul>(a, b); }
ZRT_INLINE cquad div(const cquad& a, const cquad& b) { return given_by<__zorvik_cqdiv>(a, b); }
ZRT_INLINE cquad negated(const cquad& a) { return {negated(a.re), negated(a.im)}; }
ZRT_INLINE cquad conjugated(const cquad& a) { return {a.re, negated(a.im)}; }

}  // namespace scalar

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
