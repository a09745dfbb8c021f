#pragma once

// One value at a time by the entries themselves. Nothing is ever in doubt.

#include "arrays/scalar.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

inline constexpr index width = 1;

using pairs = quad;
struct complex_pairs {
  pairs re, im;
};
using first_factor = pairs;
using second_factor = pairs;

ZRT_INLINE pairs load(const quad* p) { return *p; }
ZRT_INLINE void store(quad* p, const pairs& x) { *p = x; }
ZRT_INLINE pairs broadcast(const quad& x) { return x; }
using scalar::add;
using scalar::mul;
using scalar::negated;
using scalar::sub;
ZRT_INLINE pairs read_packed(const double* p) {
  quad a;
  __builtin_memcpy(&a, p, sizeof a);
  return a;
}
ZRT_INLINE void write_packed(double* p, const pairs& a) { __builtin_memcpy(p, &a, sizeof a); }
ZRT_INLINE complex_pairs load(const cquad* p) { return {p->re, p->im}; }
ZRT_INLINE void store(cquad* p, const complex_pairs& x) { *p = {x.re, x.im}; }

struct doubt {
  static void factor(const pairs&) {}
  static void finite(const pairs&) {}
  static bool any() { return false; }
};

ZRT_INLINE pairs div(const pairs& a, const pairs& b, doubt&) { return scalar::div(a, b); }

inline constexpr index group = 1;
template <class V>
struct grouped {
  V v[group];
};
using several = grouped<pairs>;
template <class Of>
ZRT_INLINE several in_group(const Of& of) {
  return {{of(0)}};
}
template <class Do>
ZRT_INLINE void for_group(const Do& once) {
  once(0);
}
ZRT_INLINE bool any_of(const grouped<doubt>&) { return false; }
ZRT_INLINE pairs mark_of(const doubt&) { return {}; }
#define ZRT_FUNCTION(name) \
  ZRT_INLINE several name(const several& x, grouped<doubt>&) { return {{scalar::name(x.v[0])}}; }
ZRT_FUNCTION(root)
ZRT_FUNCTION(exponential)
ZRT_FUNCTION(logarithm)
ZRT_FUNCTION(sine)
ZRT_FUNCTION(cosine)
ZRT_FUNCTION(tangent)
ZRT_FUNCTION(arctangent)
#undef ZRT_FUNCTION

inline constexpr index first_parts = 2;
ZRT_INLINE pairs as_first(const pairs& a) { return a; }
ZRT_INLINE pairs as_second(const pairs& b) { return b; }
ZRT_INLINE pairs second_of(const pairs& a) { return a; }
ZRT_INLINE void write_first(double* parts, const quad& a) { write_packed(parts, a); }
ZRT_INLINE quad first_value(const double* parts) { return read_packed(parts); }
ZRT_INLINE first_factor read_first(const double* parts) { return read_packed(parts); }
ZRT_INLINE pairs mul_beside_sums(const pairs& a, const pairs& b) { return scalar::mul(a, b); }
ZRT_INLINE bool usable_factor(const quad&) { return true; }

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
