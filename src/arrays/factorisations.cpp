// LU and Cholesky factorisations in panels of solve_block columns, and their systems.

#include "arrays/runtime.hpp"

namespace zrt::arrays {
namespace {

constexpr index panel = solve_block;

quad negated(const quad& x) {
  quad r;
  return *__zorvik_qneg(&r, x);
}
cquad negated(const cquad& x) { return {negated(x.re), negated(x.im)}; }
quad conjugated(const quad& x) { return x; }
cquad conjugated(const cquad& x) { return {x.re, negated(x.im)}; }
const quad& real_part(const quad& x) { return x; }
const quad& real_part(const cquad& x) { return x.re; }
void set_real(quad& x, const quad& value) { x = value; }
void set_real(cquad& x, const quad& value) { x = {value, {0.0, 0.0}}; }

void divide(index n, const quad& d, array<quad> x) { active().qdiv(n, {x.at, x.step}, {&d, 0}, x); }
void divide(index n, const cquad& d, array<cquad> x) {
  for (index i = 0; i < n; ++i) {
    cquad& element = x.at[i * x.step];
    cquad r;
    element = *__zorvik_cqdiv(&r, element, d);
  }
}

template <class T>
void exchange(index columns, T* a, index lda, index row, index other) {
  if (row == other) return;
  for (index j = 0; j < columns; ++j) {
    const T held = a[row + j * lda];
    a[row + j * lda] = a[other + j * lda];
    a[other + j * lda] = held;
  }
}

/// A pivot that divides: neither zero nor a NaN.
bool usable_pivot(const quad& x) { return x.hi < 0 || x.hi > 0; }
bool usable_pivot(const cquad& x) { return usable_pivot(magnitude(x)); }

/// Columns first to first + width - 1, in all rows from first; exchanges within these columns.
/// The number of the first pivot that does not divide, or 0.
template <class T>
int factor_panel(index m, index first, index width, T* a, index lda, std::int32_t* ipiv) {
  int info = 0;
  const index last = first + width;
  for (index k = first; k < least(last, m); ++k) {
    T* const column = a + k * lda;
    const index pivot = k + largest(m - k, view<T>{column + k, 1});
    ipiv[k] = static_cast<std::int32_t>(pivot + 1);
    if (!usable_pivot(column[pivot])) {
      if (info == 0) info = static_cast<int>(k + 1);
      exchange(width, a + first * lda, lda, k, pivot);
    } else {
      exchange(width, a + first * lda, lda, k, pivot);
      const T divisor = column[k];
      divide(m - k - 1, divisor, array<T>{column + k + 1, 1});
    }
    for (index j = k + 1; j < last; ++j)
      linear<T>().axpy(m - k - 1, negated(a[k + j * lda]), {column + k + 1, 1}, false,
                       {a + k + 1 + j * lda, 1});
  }
  return info;
}

template <class T>
int factor_lu(index m, index n, T* a, index lda, std::int32_t* ipiv) {
  int info = 0;
  const index pivots = least(m, n);
  for (index first = 0; first < pivots; first += panel) {
    const index width = least(panel, pivots - first), next = first + width;
    const int failed = factor_panel(m, first, width, a, lda, ipiv);
    if (info == 0) info = failed;
    for (index k = first; k < next; ++k) {
      exchange(first, a, lda, k, ipiv[k] - 1);
      exchange(n - next, a + next * lda, lda, k, ipiv[k] - 1);
    }
    if (next == n) continue;
    T* const right = a + first + next * lda;
    triangle<T> upper{};
    upper.order = width;
    upper.columns = n - next;
    upper.a = {a + first + first * lda, 1, lda};
    upper.x = {right, 1, lda};
    upper.unit = upper.unknown_first = true;
    solve(upper);
    product<T> update{};
    update.rows = m - next;
    update.columns = n - next;
    update.depth = width;
    update.a = {a + next + first * lda, 1, lda};
    update.b = {right, 1, lda};
    update.c = {a + next + next * lda, 1, lda};
    update.negate = true;
    multiply(update);
  }
  return info;
}

/// The lower triangle of a; an upper one comes with its strides exchanged.
template <class T>
int factor_cholesky(index n, matrix<T> a) {
  const auto at = [&](index i, index j) { return a.at + i * a.row + j * a.column; };
  for (index first = 0; first < n; first += panel) {
    const index next = first + least(panel, n - first);
    for (index j = first; j < next; ++j) {
      T& diagonal = *at(j, j);
      const quad square = real_part(diagonal);
      if (!(square.hi > 0)) return static_cast<int>(j + 1);
      quad root;
      set_real(diagonal, *__zorvik_sqrtl(&root, square));
      const T divisor = diagonal;
      divide(n - j - 1, divisor, array<T>{at(j + 1, j), a.row});
      for (index i = j + 1; i < next; ++i)
        linear<T>().axpy(n - i, negated(conjugated(*at(i, j))), {at(i, j), a.row}, false,
                         {at(i, i), a.row});
    }
    product<T> update{};
    update.rows = update.columns = n - next;
    update.depth = next - first;
    update.a = {at(next, first), a.row, a.column};
    update.b = {at(next, first), a.column, a.row};
    update.c = {at(next, next), a.row, a.column};
    update.conjugate_b = update.negate = true;
    update.written = part::lower;
    multiply(update);
  }
  return 0;
}

template <class T>
matrix<T> triangle_of(char uplo, T* a, index lda) {
  return uplo == 'L' ? matrix<T>{a, 1, lda} : matrix<T>{a, lda, 1};
}

/// x = inverse of the triangle (lower, or upper where from the end) times x.
template <class T>
void substitute(index n, index nrhs, matrix<const T> a, bool lower, bool unit, bool conjugate, T* b,
                index ldb) {
  if (n == 0) return;
  triangle<T> task{};
  task.order = n;
  task.columns = nrhs;
  task.a = a;
  task.x = {b, 1, ldb};
  if (!lower) {
    task.a = {a.at + (n - 1) * (a.row + a.column), -a.row, -a.column};
    task.x = {b + n - 1, -1, ldb};
  }
  task.unit = unit;
  task.conjugate = conjugate;
  task.unknown_first = true;
  solve(task);
}

template <class T>
void solve_lu(char trans, index n, index nrhs, const T* a, index lda, const std::int32_t* ipiv,
              T* b, index ldb) {
  if (trans == 'N') {
    for (index k = 0; k < n; ++k) exchange(nrhs, b, ldb, k, ipiv[k] - 1);
    substitute(n, nrhs, matrix<const T>{a, 1, lda}, true, true, false, b, ldb);
    substitute(n, nrhs, matrix<const T>{a, 1, lda}, false, false, false, b, ldb);
    return;
  }
  const bool conjugate = trans == 'C';
  substitute(n, nrhs, matrix<const T>{a, lda, 1}, true, false, conjugate, b, ldb);
  substitute(n, nrhs, matrix<const T>{a, lda, 1}, false, true, conjugate, b, ldb);
  for (index k = n; k-- > 0;) exchange(nrhs, b, ldb, k, ipiv[k] - 1);
}

template <class T>
void solve_cholesky(char uplo, index n, index nrhs, const T* a, index lda, T* b, index ldb) {
  const matrix<const T> l = triangle_of(uplo, a, lda);
  const matrix<const T> transposed = {l.at, l.column, l.row};
  substitute(n, nrhs, l, true, false, uplo == 'U', b, ldb);
  substitute(n, nrhs, transposed, false, false, uplo == 'L', b, ldb);
}

template <class T>
int getrf(index m, index n, T* a, index lda, std::int32_t* ipiv) {
  arguments check;
  check.size(1, m).size(2, n).matrix(3, m, n, a, lda).vector(5, least(m, n), ipiv);
  if (check.bad()) return check.info();
  const floating_point_state state;
  return factor_lu(m, n, a, lda, ipiv);
}

bool rows_exist(index n, const std::int32_t* ipiv) {
  for (index k = 0; k < n; ++k)
    if (ipiv[k] < 1 || ipiv[k] > n) return false;
  return true;
}

template <class T>
int getrs(char trans, index n, index nrhs, const T* a, index lda, const std::int32_t* ipiv, T* b,
          index ldb) {
  arguments check;
  check.option(1, trans, "NTC").size(2, n).size(3, nrhs).matrix(4, n, n, a, lda);
  check.vector(6, n, ipiv).matrix(7, n, nrhs, b, ldb);
  if (check.bad()) return check.info();
  check.require(6, rows_exist(n, ipiv));
  check.require(7,
                apart(region_of(n, nrhs, b, ldb, sizeof(T)), region_of(n, n, a, lda, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  solve_lu(trans, n, nrhs, a, lda, ipiv, b, ldb);
  return 0;
}

template <class T>
int gesv(index n, index nrhs, T* a, index lda, std::int32_t* ipiv, T* b, index ldb) {
  arguments check;
  check.size(1, n).size(2, nrhs).matrix(3, n, n, a, lda).vector(5, n, ipiv);
  check.matrix(6, n, nrhs, b, ldb);
  if (check.bad()) return check.info();
  check.require(6,
                apart(region_of(n, nrhs, b, ldb, sizeof(T)), region_of(n, n, a, lda, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  const int info = factor_lu(n, n, a, lda, ipiv);
  if (info == 0) solve_lu('N', n, nrhs, a, lda, ipiv, b, ldb);
  return info;
}

template <class T>
int potrf(char uplo, index n, T* a, index lda) {
  arguments check;
  check.option(1, uplo, "LU").size(2, n).matrix(3, n, n, a, lda);
  if (check.bad()) return check.info();
  const floating_point_state state;
  return factor_cholesky(n, triangle_of(uplo, a, lda));
}

template <class T>
int potrs(char uplo, index n, index nrhs, const T* a, index lda, T* b, index ldb) {
  arguments check;
  check.option(1, uplo, "LU").size(2, n).size(3, nrhs).matrix(4, n, n, a, lda);
  check.matrix(6, n, nrhs, b, ldb);
  if (check.bad()) return check.info();
  check.require(6,
                apart(region_of(n, nrhs, b, ldb, sizeof(T)), region_of(n, n, a, lda, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  solve_cholesky(uplo, n, nrhs, a, lda, b, ldb);
  return 0;
}

template <class T>
int posv(char uplo, index n, index nrhs, T* a, index lda, T* b, index ldb) {
  arguments check;
  check.option(1, uplo, "LU").size(2, n).size(3, nrhs).matrix(4, n, n, a, lda);
  check.matrix(6, n, nrhs, b, ldb);
  if (check.bad()) return check.info();
  check.require(6,
                apart(region_of(n, nrhs, b, ldb, sizeof(T)), region_of(n, n, a, lda, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  const int info = factor_cholesky(n, triangle_of(uplo, a, lda));
  if (info == 0) solve_cholesky(uplo, n, nrhs, a, lda, b, ldb);
  return info;
}

}  // namespace
}  // namespace zrt::arrays

using namespace zrt::arrays;

#define T quad
#define ZRT_NAME(routine) zorvikrt_q##routine
#include "arrays/factorisations.inc"
#undef T
#undef ZRT_NAME
#define T cquad
#define ZRT_NAME(routine) zorvikrt_x##routine
#include "arrays/factorisations.inc"
