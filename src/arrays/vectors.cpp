// Sums, vector updates, and matrices times vectors.

#include "arrays/runtime.hpp"

namespace zrt::arrays {
namespace {

/// Elements that a buffer on the stack holds; a multiple of partial_sums.
constexpr index buffered = 256;

quad plus(const quad& a, const quad& b) {
  quad r;
  return *__zorvik_qadd(&r, a, b);
}
cquad plus(const cquad& a, const cquad& b) { return {plus(a.re, b.re), plus(a.im, b.im)}; }
quad conjugated(const quad& x) { return x; }
cquad conjugated(const cquad& x) {
  cquad r = x;
  __zorvik_qneg(&r.im, x.im);
  return r;
}
/// The partial sums of a sum, and its end.
template <class T>
struct partials {
  T sum[partial_sums] = {};
  T total() {
    for (index half = partial_sums / 2; half > 0; half /= 2)
      for (index j = 0; j < half; ++j) sum[j] = plus(sum[j], sum[j + half]);
    return sum[0];
  }
};

template <class T>
int sum(index n, const T* x, index incx, T* result) {
  arguments check;
  check.size(1, n).vector(2, n, x).require(4, result != nullptr);
  if (check.bad()) return check.info();
  const floating_point_state state;
  partials<T> partial;
  linear<T>().sum(n, from_first(n, x, incx), partial.sum);
  *result = partial.total();
  return 0;
}

template <class T>
int dot(index n, const T* x, index incx, const T* y, index incy, bool conjugate, T* result) {
  arguments check;
  check.size(1, n).vector(2, n, x).vector(4, n, y).require(6, result != nullptr);
  if (check.bad()) return check.info();
  const floating_point_state state;
  partials<T> partial;
  linear<T>().dot(n, from_first(n, x, incx), from_first(n, y, incy), conjugate, partial.sum);
  *result = partial.total();
  return 0;
}

template <class T>
int asum(index n, const T* x, index incx, quad* result) {
  arguments check;
  check.size(1, n).vector(2, n, x).require(4, result != nullptr);
  if (check.bad()) return check.info();
  const floating_point_state state;
  const view<T> from = from_first(n, x, incx);
  partials<quad> partial;
  for (index first = 0; first < n; first += buffered) {
    quad sizes[buffered];
    const index count = least(buffered, n - first);
    for (index i = 0; i < count; ++i) sizes[i] = magnitude(from.at[(first + i) * from.step]);
    linear<quad>().sum(count, {sizes, 1}, partial.sum);
  }
  *result = partial.total();
  return 0;
}

/// The exponent by which a norm is scaled.
struct scaling {
  std::uint64_t largest = 0;  // image of the largest |hi|
  void join(const quad& x) {
    const std::uint64_t image = __builtin_bit_cast(std::uint64_t, x.hi) & ~(1ULL << 63);
    if (image > largest) largest = image;
  }
  void join(const cquad& x) {
    join(x.re);
    join(x.im);
  }
  int exponent() const {
    const int e = static_cast<int>(largest >> 52) - 1023;  // of a subnormal -1023
    return e == 1024 || largest == 0 || (e >= -200 && e <= 400) ? 0 : e;
  }
};

quad scaled(const quad& x, int exponent) {
  quad r;
  return exponent == 0 ? x : *__zorvik_ldexpl(&r, x, exponent);
}
quad* write_parts(quad* to, const quad& x, int exponent) {
  *to = scaled(x, exponent);
  return to + 1;
}
quad* write_parts(quad* to, const cquad& x, int exponent) {
  return write_parts(write_parts(to, x.re, exponent), x.im, exponent);
}

template <class T>
int nrm2(index n, const T* x, index incx, quad* result) {
  arguments check;
  check.size(1, n).vector(2, n, x).require(4, result != nullptr);
  if (check.bad()) return check.info();
  const floating_point_state state;
  const view<T> from = from_first(n, x, incx);
  scaling scale;
  for (index i = 0; i < n; ++i) scale.join(from.at[i * from.step]);
  const int exponent = scale.exponent();
  partials<quad> partial;
  const bool as_they_are = exponent == 0 && incx == 1;
  if (as_they_are) {
    const view<quad> parts = {reinterpret_cast<const quad*>(x), 1};
    linear<quad>().dot(n * static_cast<index>(sizeof(T) / sizeof(quad)), parts, parts, false,
                       partial.sum);
  }
  for (index first = as_they_are ? n : 0; first < n; first += buffered) {
    quad parts[2 * buffered];
    quad* end = parts;
    for (index i = first; i < least(first + buffered, n); ++i)
      end = write_parts(end, from.at[i * from.step], -exponent);
    linear<quad>().dot(end - parts, {parts, 1}, {parts, 1}, false, partial.sum);
  }
  quad root;
  const quad total = partial.total();
  __zorvik_sqrtl(&root, total);
  *result = scaled(root, exponent);
  return 0;
}

template <class T>
int iamax(index n, const T* x, index incx, index* result) {
  arguments check;
  check.size(1, n).vector(2, n, x).require(4, result != nullptr);
  if (check.bad()) return check.info();
  const floating_point_state state;
  *result = largest(n, from_first(n, x, incx)) + 1;
  return 0;
}

template <class T>
int axpy(index n, T alpha, const T* x, index incx, T* y, index incy) {
  arguments check;
  check.size(1, n).vector(3, n, x).vector(5, n, y).require(6, incy != 0 || n <= 1);
  if (check.bad()) return check.info();
  check.require(5,
                apart_or_equal(region_of(n, x, incx, sizeof(T)), region_of(n, y, incy, sizeof(T))));
  if (check.bad() || is_zero(alpha)) return check.info();
  const floating_point_state state;
  const view<T> from = from_first(n, x, incx);
  const array<T> to = from_first(n, y, incy);
  in_runs(n, [&](index first, index count) {
    linear<T>().axpy(count, alpha, {from.at + first * from.step, from.step}, false,
                     {to.at + first * to.step, to.step});
  });
  return 0;
}

template <class T>
int scal(index n, T alpha, T* x, index incx) {
  arguments check;
  check.size(1, n).vector(3, n, x).require(4, incx != 0 || n <= 1);
  if (check.bad()) return check.info();
  const floating_point_state state;
  scale(n, alpha, from_first(n, x, incx));
  return 0;
}

/// y += factors[l] * a(:, l), y in runs that stay in the nearest cache. Columns whose elements do
/// not lie together are copied in blocks.
template <class T>
void add_columns(index rows, index columns, const matrix<const T>& a, bool conjugate,
                 const view<T>& factors, const array<T>& y) {
  constexpr index run = 512, wide = 8, high = 64;
  for (index i = 0; i < rows; i += a.row == 1 ? run : high) {
    const index count = least(a.row == 1 ? run : high, rows - i);
    const array<T> target = {y.at + i * y.step, y.step};
    for (index l = 0; l < columns; l += wide) {
      const index group = least(wide, columns - l);
      T block[wide * high];
      if (a.row != 1)
        for (index r = 0; r < count; ++r)
          for (index c = 0; c < group; ++c)
            block[c * high + r] = a.at[(i + r) * a.row + (l + c) * a.column];
      for (index c = 0; c < group; ++c) {
        const view<T> column = {a.row == 1 ? a.at + i + (l + c) * a.column : block + c * high, 1};
        linear<T>().axpy(count, factors.at[(l + c) * factors.step], column, conjugate, target);
      }
    }
  }
}

template <class T>
int gemv(char trans, index m, index n, T alpha, const T* a, index lda, const T* x, index incx,
         T beta, T* y, index incy) {
  const bool plain = trans == 'N';
  const index rows = plain ? m : n, columns = plain ? n : m;
  arguments check;
  check.option(1, trans, "NTC").size(2, m).size(3, n).matrix(5, m, n, a, lda);
  check.vector(7, columns, x).vector(10, rows, y).require(11, incy != 0 || rows <= 1);
  if (check.bad()) return check.info();
  const region written = region_of(rows, y, incy, sizeof(T));
  check.require(10, apart(written, region_of(m, n, a, lda, sizeof(T))) &&
                        apart(written, region_of(columns, x, incx, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  const array<T> to = from_first(rows, y, incy);
  scale(rows, beta, to);
  if (is_zero(alpha)) return 0;
  const view<T> from = from_first(columns, x, incx);
  for (index first = 0; first < columns; first += buffered) {
    T factors[buffered];
    const index count = least(buffered, columns - first);
    for (index l = 0; l < count; ++l) factors[l] = from.at[(first + l) * from.step];
    scale(count, alpha, array<T>{factors, 1});
    const matrix<const T> part =
        plain ? matrix<const T>{a + first * lda, 1, lda} : matrix<const T>{a + first, lda, 1};
    add_columns(rows, count, part, trans == 'C', {factors, 1}, to);
  }
  return 0;
}

template <class T>
int ger(index m, index n, T alpha, const T* x, index incx, const T* y, index incy, bool conjugate,
        T* a, index lda) {
  arguments check;
  check.size(1, m).size(2, n).vector(4, m, x).vector(6, n, y).matrix(8, m, n, a, lda);
  if (check.bad()) return check.info();
  const region written = region_of(m, n, a, lda, sizeof(T));
  check.require(8, apart(written, region_of(m, x, incx, sizeof(T))) &&
                       apart(written, region_of(n, y, incy, sizeof(T))));
  if (check.bad() || is_zero(alpha)) return check.info();
  const floating_point_state state;
  const view<T> column = from_first(m, x, incx), row = from_first(n, y, incy);
  for (index j = 0; j < n; ++j) {
    T factor = row.at[j * row.step];
    if (conjugate) factor = conjugated(factor);
    scale(1, alpha, array<T>{&factor, 1});
    linear<T>().axpy(m, factor, column, false, {a + j * lda, 1});
  }
  return 0;
}

}  // namespace

template <class T>
void scale(index n, const T& beta, array<T> x) {
  if (is_one(beta)) return;
  if (is_zero(beta)) {
    for (index i = 0; i < n; ++i) x.at[i * x.step] = T{};
    return;
  }
  linear<T>().scal(n, beta, x);
}
template void scale(index, const quad&, array<quad>);
template void scale(index, const cquad&, array<cquad>);

}  // namespace zrt::arrays

using namespace zrt::arrays;

#define T quad
#define ZRT_NAME(routine) zorvikrt_q##routine
#include "arrays/vectors.inc"
#undef T
#undef ZRT_NAME
#define T cquad
#define ZRT_NAME(routine) zorvikrt_x##routine
#include "arrays/vectors.inc"
#undef T

ZRT_API int zorvikrt_iqamax(index n, const quad* x, index incx, index* result) {
  return iamax(n, x, incx, result);
}
ZRT_API int zorvikrt_ixamax(index n, const cquad* x, index incx, index* result) {
  return iamax(n, x, incx, result);
}
ZRT_API int zorvikrt_qdot(index n, const quad* x, index incx, const quad* y, index incy,
                          quad* result) {
  return dot(n, x, incx, y, incy, false, result);
}
ZRT_API int zorvikrt_xdotu(index n, const cquad* x, index incx, const cquad* y, index incy,
                           cquad* result) {
  return dot(n, x, incx, y, incy, false, result);
}
ZRT_API int zorvikrt_xdotc(index n, const cquad* x, index incx, const cquad* y, index incy,
                           cquad* result) {
  return dot(n, x, incx, y, incy, true, result);
}
ZRT_API int zorvikrt_qger(index m, index n, quad alpha, const quad* x, index incx, const quad* y,
                          index incy, quad* a, index lda) {
  return ger(m, n, alpha, x, incx, y, incy, false, a, lda);
}
ZRT_API int zorvikrt_xgeru(index m, index n, cquad alpha, const cquad* x, index incx,
                           const cquad* y, index incy, cquad* a, index lda) {
  return ger(m, n, alpha, x, incx, y, incy, false, a, lda);
}
ZRT_API int zorvikrt_xgerc(index m, index n, cquad alpha, const cquad* x, index incx,
                           const cquad* y, index incy, cquad* a, index lda) {
  return ger(m, n, alpha, x, incx, y, incy, true, a, lda);
}
