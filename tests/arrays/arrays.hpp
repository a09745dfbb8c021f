#pragma once

// Operands for the array tests, the entries as operators, and every level in turn.

#include <gtest/gtest.h>
#include <zorvikrt/arrays.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "support/bits.hpp"

namespace arrays {

using quad = zorvikrt_quad;
using cquad = zorvikrt_cquad;

// --- The entries -------------------------------------------------------------------------------

inline quad plus(quad a, quad b) {
  quad r;
  return *__zorvik_qadd(&r, a, b);
}
inline quad times(quad a, quad b) {
  quad r;
  return *__zorvik_qmul(&r, a, b);
}
inline quad over(quad a, quad b) {
  quad r;
  return *__zorvik_qdiv(&r, a, b);
}
inline quad minus(quad a) {
  quad r;
  return *__zorvik_qneg(&r, a);
}
inline quad root(quad a) {
  quad r;
  return *__zorvik_sqrtl(&r, a);
}
inline quad size_of(quad a) {
  quad r;
  return *__zorvik_fabsl(&r, a);
}
inline quad conjugate(quad a) { return a; }
inline cquad plus(const cquad& a, const cquad& b) { return {plus(a.re, b.re), plus(a.im, b.im)}; }
inline cquad times(const cquad& a, const cquad& b) {
  cquad r;
  return *__zorvik_cqmul(&r, a, b);
}
inline cquad over(const cquad& a, const cquad& b) {
  cquad r;
  return *__zorvik_cqdiv(&r, a, b);
}
inline cquad minus(const cquad& a) { return {minus(a.re), minus(a.im)}; }
inline cquad root(const cquad& a) { return {root(a.re), {0, 0}}; }
inline quad size_of(const cquad& a) { return plus(size_of(a.re), size_of(a.im)); }
inline cquad conjugate(const cquad& a) { return {a.re, minus(a.im)}; }
inline const quad& real_part(const quad& a) { return a; }
inline const quad& real_part(const cquad& a) { return a.re; }

// --- Operands ----------------------------------------------------------------------------------

inline std::mt19937_64& generator() {
  static std::mt19937_64 random(13);
  return random;
}
inline std::ptrdiff_t below(std::ptrdiff_t n) {
  return static_cast<std::ptrdiff_t>(generator()() % static_cast<std::uint64_t>(n));
}

/// Parts at the edges of what lanes take, and beyond; any bits but a signalling NaN.
inline double special_part() {
  static const double edges[] = {
      0.0,       -0.0,       INFINITY,  -INFINITY, NAN,
      0x1p-480,  0x1p-481,   0x1p543,   0x1p544,   -0x1.8p-480,
      0x1p-1074, -0x1p-1022, 0x1p-1023, 0x1p1023,  -0x1.fffffffffffffp1023,
      0x1p-969,  0x1p-540,   0x1p600,   0x1p-1000, 1.0};
  if (below(2) == 0) return edges[below(std::size(edges))];
  const double drawn = support::from_bits(generator()());
  return drawn != drawn ? -NAN : drawn;
}

/// An ordinary value, or one of `special` in a hundred.
inline void draw(quad& q, int special) {
  const auto fraction = [] {
    return static_cast<double>(static_cast<std::int64_t>(generator()())) * 0x1p-63;
  };
  q.hi = std::ldexp(fraction(), static_cast<int>(below(24)) - 12);
  q.lo = q.hi * 0x1p-53 * fraction();
  if (below(100) >= special) return;
  switch (below(4)) {
    case 0:
      q = {special_part(), special_part()};
      break;
    case 1:
      q.lo = special_part();
      break;
    case 2:
      q = {0.0, below(2) != 0 ? -0.0 : 0.0};
      break;
    default:
      q = {special_part(), 0.0};
      q.lo = q.hi * 0x1p-54;
  }
}
inline void draw(cquad& z, int special) {
  draw(z.re, special);
  draw(z.im, special);
}
/// Where functions of REAL*8 and REAL*4 change their steps or leave their range, in size: the ends
/// of the formats, of e**x, of ln x near 1, of sin x and tan x, of degrees, of their inverses, and
/// whole numbers.
// clang-format off
inline constexpr double real_edges[] = {
    0.0, INFINITY, 0x1p-1074, 0x1p-149, 0x1p-1022, 0x1p-126, 0x1p-900, 0x1p1023, 0x1p127, 708.0,
    0x1.628b76e3a7b6p+9, 0x1.6232bdd7abcd1p+9, 87.0, 0x1.601e6ap+6, 0x1.5fe05cp+6,
    0x1.e0fabfbc702a6p-1, 0x1.1082b577d34fp+0, 0x1.e0facp-1, 0x1.1082b6p+0, 0x1.1c5832329691ap+28,
    0x1p13, 0x1.1c5832329691ap+27, 0x1.921fb6p+13, 0x1p-1017, 0x1p-1019, 0x1p-121,
    0x1.6a09e667f3bc8p-27, 0x1p-12, 0.5, 1.0, 0x1.126145e9ecd56p-2, 0x1.126146p-2, 0x1p23, 0x1p24,
    0x1p31, 0x1p52, 0x1p53, 0x1p63};
// clang-format on

/// An ordinary number, among them whole ones, halves and multiples of pi/2 and ln 2 / 2 a few units
/// off; or one of `special` in a hundred, at an edge or of any bits but a signalling NaN.
template <class F>
requires std::is_floating_point_v<F>
void draw(F& x, int special) {
  const double fraction = static_cast<double>(static_cast<std::int64_t>(generator()())) * 0x1p-63;
  const double whole = static_cast<double>(below(2001) - 1000);
  const double ordinary[] = {fraction,
                             20 * fraction,
                             1000 * fraction,
                             1 + fraction / 8,
                             whole / 2,
                             whole * 0x1.921fb54442d18p+0,
                             whole * 0x1.62e42fefa39efp-2,
                             std::ldexp(fraction, static_cast<int>(below(100)) - 50)};
  x = static_cast<F>(ordinary[below(std::size(ordinary))]);
  if (below(100) < special) {
    if (below(4) == 0) {
      const std::uint64_t bits = generator()();
      std::memcpy(&x, &bits, sizeof x);
      if (x != x) x = static_cast<F>(below(2) != 0 ? NAN : -NAN);
      return;
    }
    x = static_cast<F>(real_edges[below(std::size(real_edges))]);
    if (below(2) != 0) x = -x;
  }
  for (std::ptrdiff_t units = below(3); units > 0; --units)
    x = std::nextafter(x, static_cast<F>(below(2) != 0 ? INFINITY : -INFINITY));
}
template <class T>
T drawn(int special = 0) {
  T value;
  draw(value, special);
  return value;
}
template <class T>
std::vector<T> drawn_array(std::ptrdiff_t n, int special = 0) {
  std::vector<T> values(static_cast<std::size_t>(n));
  for (T& value : values) draw(value, special);
  return values;
}

// --- Comparison --------------------------------------------------------------------------------

template <class T>
::testing::AssertionResult same(const T* got, const T* want, std::size_t n,
                                const std::string& what) {
  for (std::size_t i = 0; i < n; ++i)
    if (std::memcmp(got + i, want + i, sizeof(T)) != 0)
      return ::testing::AssertionFailure() << what << " differs at " << i << " of " << n;
  return ::testing::AssertionSuccess();
}
template <class T>
::testing::AssertionResult same(const std::vector<T>& got, const std::vector<T>& want,
                                const std::string& what) {
  return same(got.data(), want.data(), want.size(), what);
}

/// Runs `body` with each level that the machine has.
template <class Body>
void on_every_level(Body body) {
  for (const char* name : {"plain", "sse2", "avx2", "avx512"}) {
    ASSERT_EQ(zorvikrt_arrays_set_level(name), 0);
    if (std::string(zorvikrt_arrays_level()) == name) body(std::string(name));
  }
  zorvikrt_arrays_set_level(nullptr);
}

// The routines of both types under one name.
#define ARRAYS_BOTH(routine)               \
  template <class T>                       \
  constexpr auto routine = [] {            \
    if constexpr (std::is_same_v<T, quad>) \
      return &zorvikrt_q##routine;         \
    else                                   \
      return &zorvikrt_x##routine;         \
  }();
ARRAYS_BOTH(sum)
ARRAYS_BOTH(asum)
ARRAYS_BOTH(nrm2)
ARRAYS_BOTH(axpy)
ARRAYS_BOTH(scal)
ARRAYS_BOTH(gemv)
ARRAYS_BOTH(gemm)
ARRAYS_BOTH(syrk)
ARRAYS_BOTH(trsm)
ARRAYS_BOTH(getrf)
ARRAYS_BOTH(getrs)
ARRAYS_BOTH(potrf)
ARRAYS_BOTH(potrs)
ARRAYS_BOTH(gesv)
ARRAYS_BOTH(posv)
template <class T>
constexpr auto iamax = [] {
  if constexpr (std::is_same_v<T, quad>)
    return &zorvikrt_iqamax;
  else
    return &zorvikrt_ixamax;
}();

}  // namespace arrays
