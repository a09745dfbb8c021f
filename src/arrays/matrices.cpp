// Products and triangular systems of matrices: blocks, work areas and threads around the kernels.

#include <cstdlib>

#include "arrays/runtime.hpp"

namespace zrt::arrays {
namespace {

constexpr index rounded_up(index n, index to) { return (n + to - 1) / to * to; }

/// Doubles of the work area that is always there, on the stack.
constexpr index small_area = 4096;

/// Sets the blocks of a product and gives the doubles that they take; halves the depth until they
/// fit into `room`.
template <class T>
index set_blocks(product<T>& task, index room) {
  constexpr index parts = sizeof(T) / sizeof(quad);
  task.block_rows = least(most_rows, rounded_up(task.rows, 16));
  task.block_columns = least(most_columns, rounded_up(task.columns, 4));
  const index of_depth = parts * (2 * task.block_rows + factor_doubles * task.block_columns);
  task.block_depth = least(most_depth, task.depth);
  while (task.block_depth > 1 && task.block_depth * of_depth > room) task.block_depth /= 2;
  return task.block_depth * of_depth;
}

/// A product in one thread. Without memory for the usual work area it runs with smaller blocks.
template <class T>
void multiply_part(product<T> task) {
  alignas(64) double on_stack[small_area];
  const index wanted = set_blocks(task, PTRDIFF_MAX);
  void* area = nullptr;
  if (wanted > small_area &&
      posix_memalign(&area, 64, static_cast<std::size_t>(wanted) * sizeof(double)) != 0)
    area = nullptr;
  if (area == nullptr) set_blocks(task, small_area);
  task.packed_a = area != nullptr ? static_cast<double*>(area) : on_stack;
  task.packed_b = task.packed_a + 2 * static_cast<index>(sizeof(T) / sizeof(quad)) *
                                      task.block_rows * task.block_depth;
  linear<T>().multiply(task);
  std::free(area);
}

/// Rows or columns `first` to `first + count - 1` of C.
template <class T>
product<T> rows_of(product<T> task, index first, index count) {
  task.rows = count;
  task.a.at += first * task.a.row;
  task.c.at += first * task.c.row;
  task.diagonal += first;
  return task;
}
template <class T>
product<T> columns_of(product<T> task, index first, index count) {
  task.columns = count;
  task.b.at += first * task.b.column;
  task.c.at += first * task.c.column;
  task.diagonal -= first;
  return task;
}

}  // namespace

template <class T>
void multiply(product<T> task) {
  if (task.rows <= 0 || task.columns <= 0 || task.depth <= 0) return;
  constexpr index enough = 1 << 15;  // products worth a thread
  const bool by_rows = task.rows > task.columns;
  const index pieces = by_rows ? (task.rows + 15) / 16 : (task.columns + 3) / 4;
  // Triangles are uneven: more parts than threads.
  const index wanted = threads() * (task.written == part::whole ? 1 : 4);
  const index work = task.rows * task.columns / enough * task.depth;
  const index parts = threads() == 1 || work < 2 ? 1 : least(least(wanted, work), pieces);
  const auto one = [&](int number) {
    const index unit = by_rows ? 16 : 4, size = by_rows ? task.rows : task.columns;
    const index first = pieces * number / parts * unit;
    const index last = least(pieces * (number + 1) / parts * unit, size);
    if (last > first)
      multiply_part(by_rows ? rows_of(task, first, last - first)
                            : columns_of(task, first, last - first));
  };
  in_parts(static_cast<int>(parts), one);
}
template void multiply(product<quad>);
template void multiply(product<cquad>);

template <class T>
void solve(triangle<T> task) {
  const index order = task.order;
  for (index first = 0; first < order; first += solve_block) {
    const index size = least(solve_block, order - first), rest = order - first - size;
    triangle<T> block = task;
    block.order = size;
    block.a.at += first * (task.a.row + task.a.column);
    block.x.at += first * task.x.row;
    const auto columns = [&](index from, index count) {
      triangle<T> some = block;
      some.columns = count;
      some.x.at += from * task.x.column;
      linear<T>().solve(some);
    };
    in_runs(task.columns, columns);
    const matrix<const T> below = {block.a.at + size * task.a.row, task.a.row, task.a.column};
    const matrix<const T> solved = {block.x.at, task.x.row, task.x.column};
    const matrix<T> left = {block.x.at + size * task.x.row, task.x.row, task.x.column};
    product<T> update{};
    update.depth = size;
    update.negate = true;
    update.written = part::whole;
    if (task.unknown_first) {
      update.rows = rest;
      update.columns = task.columns;
      update.a = below;
      update.conjugate_a = task.conjugate;
      update.b = solved;
      update.c = left;
    } else {
      // The same transposed.
      update.rows = task.columns;
      update.columns = rest;
      update.a = {solved.at, solved.column, solved.row};
      update.b = {below.at, below.column, below.row};
      update.conjugate_b = task.conjugate;
      update.c = {left.at, left.column, left.row};
    }
    multiply(update);
  }
}
template void solve(triangle<quad>);
template void solve(triangle<cquad>);

template <class T>
void scale(index rows, index columns, const T& beta, matrix<T> x) {
  for (index j = 0; j < columns; ++j) scale(rows, beta, array<T>{x.at + j * x.column, x.row});
}

namespace {

template <class T>
matrix<const T> operated(char trans, const T* a, index lda) {
  return trans == 'N' ? matrix<const T>{a, 1, lda} : matrix<const T>{a, lda, 1};
}

template <class T>
int gemm(char transa, char transb, index m, index n, index k, T alpha, const T* a, index lda,
         const T* b, index ldb, T beta, T* c, index ldc) {
  const index a_rows = transa == 'N' ? m : k, a_columns = transa == 'N' ? k : m;
  const index b_rows = transb == 'N' ? k : n, b_columns = transb == 'N' ? n : k;
  arguments check;
  check.option(1, transa, "NTC").option(2, transb, "NTC").size(3, m).size(4, n).size(5, k);
  check.matrix(7, a_rows, a_columns, a, lda).matrix(9, b_rows, b_columns, b, ldb);
  check.matrix(12, m, n, c, ldc);
  if (check.bad()) return check.info();
  const region written = region_of(m, n, c, ldc, sizeof(T));
  check.require(12, apart(written, region_of(a_rows, a_columns, a, lda, sizeof(T))) &&
                        apart(written, region_of(b_rows, b_columns, b, ldb, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  scale(m, n, beta, matrix<T>{c, 1, ldc});
  if (is_zero(alpha)) return 0;
  product<T> task{};
  task.rows = m;
  task.columns = n;
  task.depth = k;
  task.a = operated(transa, a, lda);
  task.b = operated(transb, b, ldb);
  task.c = {c, 1, ldc};
  task.alpha = is_one(alpha) ? nullptr : &alpha;
  task.conjugate_a = transa == 'C';
  task.conjugate_b = transb == 'C';
  multiply(task);
  return 0;
}

template <class T>
int syrk(char uplo, char trans, index n, index k, T alpha, const T* a, index lda, T beta, T* c,
         index ldc) {
  const index rows = trans == 'N' ? n : k, columns = trans == 'N' ? k : n;
  arguments check;
  check.option(1, uplo, "LU").option(2, trans, "NT").size(3, n).size(4, k);
  check.matrix(6, rows, columns, a, lda).matrix(9, n, n, c, ldc);
  if (check.bad()) return check.info();
  check.require(
      9, apart(region_of(n, n, c, ldc, sizeof(T)), region_of(rows, columns, a, lda, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  const bool lower = uplo == 'L';
  for (index j = 0; j < n; ++j)
    scale(lower ? n - j : j + 1, beta, array<T>{c + j * ldc + (lower ? j : 0), 1});
  if (is_zero(alpha)) return 0;
  product<T> task{};
  task.rows = task.columns = n;
  task.depth = k;
  task.a = operated(trans, a, lda);
  task.b = {task.a.at, task.a.column, task.a.row};
  task.c = {c, 1, ldc};
  task.alpha = is_one(alpha) ? nullptr : &alpha;
  task.written = lower ? part::lower : part::upper;
  multiply(task);
  return 0;
}

template <class T>
int trsm(char side, char uplo, char transa, char diag, index m, index n, T alpha, const T* a,
         index lda, T* b, index ldb) {
  const bool left = side == 'L';
  const index order = left ? m : n;
  arguments check;
  check.option(1, side, "LR").option(2, uplo, "LU").option(3, transa, "NTC").option(4, diag, "NU");
  check.size(5, m).size(6, n).matrix(8, order, order, a, lda).matrix(10, m, n, b, ldb);
  if (check.bad()) return check.info();
  check.require(
      10, apart(region_of(m, n, b, ldb, sizeof(T)), region_of(order, order, a, lda, sizeof(T))));
  if (check.bad()) return check.info();
  const floating_point_state state;
  scale(m, n, alpha, matrix<T>{b, 1, ldb});
  if (is_zero(alpha)) return 0;
  triangle<T> task{};
  task.order = order;
  task.columns = left ? n : m;
  task.a = operated(transa, a, lda);
  task.x = {b, 1, ldb};
  if (!left) {
    task.a = {task.a.at, task.a.column, task.a.row};
    task.x = {b, ldb, 1};
  }
  // An upper triangle is a lower one from the other end.
  const bool lower = ((uplo == 'L') == (transa == 'N')) == left;
  if (!lower && order > 0) {
    task.a = {task.a.at + (order - 1) * (task.a.row + task.a.column), -task.a.row, -task.a.column};
    task.x = {task.x.at + (order - 1) * task.x.row, -task.x.row, task.x.column};
  }
  task.unit = diag == 'U';
  task.conjugate = transa == 'C';
  task.unknown_first = left;
  solve(task);
  return 0;
}

}  // namespace
}  // namespace zrt::arrays

using namespace zrt::arrays;

#define T quad
#define ZRT_NAME(routine) zorvikrt_q##routine
#include "arrays/matrices.inc"
#undef T
#undef ZRT_NAME
#define T cquad
#define ZRT_NAME(routine) zorvikrt_x##routine
#include "arrays/matrices.inc"
