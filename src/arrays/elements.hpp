#pragma once

// What kernels over REAL*16 and COMPLEX*32 share: arithmetic of vectors of either under one set of
// names, and the way in and out of arrays of any stride.

namespace zrt::arrays::ZRT_LEVEL {
namespace {

// --- COMPLEX*32, part by part --------------------------------------------------------------------

struct first_complex {
  first_factor re, im;
  second_factor im_second;
};
struct second_complex {
  second_factor re, im;
  first_factor re_first;
};

ZRT_INLINE complex_pairs broadcast(const cquad& x) { return {broadcast(x.re), broadcast(x.im)}; }
ZRT_INLINE complex_pairs negated(const complex_pairs& x) { return {negated(x.re), negated(x.im)}; }
ZRT_INLINE pairs conjugated(const pairs& x) { return x; }
ZRT_INLINE complex_pairs conjugated(const complex_pairs& x) { return {x.re, negated(x.im)}; }
ZRT_INLINE complex_pairs add(const complex_pairs& a, const complex_pairs& b) {
  return {add(a.re, b.re), add(a.im, b.im)};
}
ZRT_INLINE first_complex as_first(const complex_pairs& a) {
  return {as_first(a.re), as_first(a.im), as_second(a.im)};
}
ZRT_INLINE second_complex as_second(const complex_pairs& b) {
  return {as_second(b.re), as_second(b.im), as_first(b.re)};
}
/// The last product takes the second operand's part first.
ZRT_INLINE complex_pairs mul(const first_complex& a, const second_complex& b) {
  return {sub(mul_beside_sums(a.re, b.re), mul_beside_sums(a.im, b.im)),
          add(mul_beside_sums(a.re, b.im), mul_beside_sums(b.re_first, a.im_second))};
}
ZRT_INLINE complex_pairs mul_beside_sums(const first_complex& a, const second_complex& b) {
  return mul(a, b);
}

ZRT_INLINE void check_factor(doubt& check, const pairs& x) { check.factor(x); }
ZRT_INLINE void check_factor(doubt& check, const complex_pairs& x) {
  check.factor(x.re);
  check.factor(x.im);
}
ZRT_INLINE void check_finite(doubt& check, const pairs& x) { check.finite(x); }
ZRT_INLINE void check_finite(doubt& check, const complex_pairs& x) {
  check.finite(x.re);
  check.finite(x.im);
}
ZRT_INLINE bool usable_factor(const cquad& x) { return usable_factor(x.re) & usable_factor(x.im); }

template <class T>
struct element;
template <>
struct element<quad> {
  using vector = pairs;
  static constexpr index parts = first_parts;  // of a first factor in memory
  static constexpr quad one = {1.0, 0.0};
};
template <>
struct element<cquad> {
  using vector = complex_pairs;
  static constexpr index parts = 2 * first_parts;
  static constexpr cquad one = {{1.0, 0.0}, {0.0, 0.0}};
};
template <class T>
using vector_of = typename element<T>::vector;

ZRT_INLINE void write_first(double* parts, const cquad& a) {
  write_first(parts, a.re);
  write_first(parts + first_parts, a.im);
}
ZRT_INLINE void read_first(const double* parts, first_factor& a) { a = read_first(parts); }
ZRT_INLINE void read_first(const double* parts, first_complex& a) {
  a.re = read_first(parts);
  a.im = read_first(parts + first_parts);
  a.im_second = second_of(a.im);
}
ZRT_INLINE void read_value(const double* parts, quad& a) { a = first_value(parts); }
ZRT_INLINE void read_value(const double* parts, cquad& a) {
  a = {first_value(parts), first_value(parts + first_parts)};
}

// --- Arrays --------------------------------------------------------------------------------------

/// Elements first to first + count - 1 of an operand, and ones behind them.
template <class T>
ZRT_INLINE vector_of<T> gather(view<T> x, index first, index count) {
  T buffer[width];
  for (index j = 0; j < width; ++j)
    buffer[j] = j < count ? x.at[(first + j) * x.step] : element<T>::one;
  return load(buffer);
}

template <class T>
ZRT_INLINE vector_of<T> fetch(view<T> x, index first, index count) {
  if (x.step == 1 && count == width) [[likely]]
    return load(x.at + first);
  return gather(x, first, count);
}

template <class T>
ZRT_INLINE void put(array<T> result, index first, index count, const vector_of<T>& x) {
  if (result.step == 1 && count == width) [[likely]] {
    store(result.at + first, x);
    return;
  }
  T buffer[width];
  store(buffer, x);
  for (index j = 0; j < count; ++j) result.at[(first + j) * result.step] = buffer[j];
}

ZRT_INLINE index least(index a, index b) { return a < b ? a : b; }

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
