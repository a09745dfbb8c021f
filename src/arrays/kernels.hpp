#pragma once

// What a level of the processor offers: a table of kernels, one table for each level. A level's
// code stands in its own translation unit and namespace; this file is all they share, and it holds
// no function.

#include <zorvikrt/zorvikrt.h>

#include <cstddef>

namespace zrt::arrays {

using index = std::ptrdiff_t;
using quad = zorvikrt_quad;
using cquad = zorvikrt_cquad;

/// An array operand: element i stands at at[i * step]; a step of 0 is a scalar.
template <class T>
struct array {
  T* at;
  index step;
};
template <class T>
using view = array<const T>;

/// A matrix operand: element (i, j) stands at at[i * row + j * column].
template <class T>
struct matrix {
  T* at;
  index row, column;
};

/// Which elements of C a product writes.
enum class part { whole, lower, upper };

/// C(i,j) = C(i,j) + T(l,j) * A(i,l) for l = 0 to depth - 1 in turn: the loops of `axpy` over the
/// columns of A. T is b, scaled by `alpha` where that is not null (alpha the first factor),
/// conjugated and negated where asked, in the order conjugate, scale, negate.
template <class T>
struct product {
  index rows, columns, depth;
  matrix<const T> a, b;
  matrix<T> c;
  const T* alpha;
  bool conjugate_a, conjugate_b, negate;
  part written;
  index
      diagonal;  // part::lower writes where i + diagonal >= j, part::upper where i + diagonal <= j
  // Blocks of at most these sizes are packed; a has room for block_rows, rounded up to 16, times
  // block_depth elements, b for block_columns, rounded up to 4, times block_depth factors.
  index block_rows, block_columns, block_depth;
  double *packed_a, *packed_b;  // aligned to 64 bytes
};

/// X(i,:) = (X(i,:) - sum over k < i of A(i,k) X(k,:)) / A(i,i) for i = 0 to order - 1, one
/// subtraction at a time in the order of k, each as X(i,:) + (-f) * g. Where `unknown_first` the
/// factors are f = X(k,:), g = A(i,k), else the other way round. `order` is at most solve_block.
template <class T>
struct triangle {
  index order, columns;
  matrix<const T> a;
  matrix<T> x;
  bool unit, conjugate, unknown_first;
};
inline constexpr index solve_block = 32;

/// Blocks of a product in the usual work area, and doubles that a factor takes at most for each
/// REAL*16.
inline constexpr index most_rows = 96, most_columns = 96, most_depth = 128;
inline constexpr index factor_doubles = 5;

template <class T>
using unary_kernel = void (*)(index n, view<T> x, array<T> result);
template <class T>
using binary_kernel = void (*)(index n, view<T> x, view<T> y, array<T> result);

/// The kernels over one type of element.
template <class T>
struct linear_kernels {
  /// sums[j] += x[j], x[j + 16], ...
  void (*sum)(index n, view<T> x, T* sums);
  /// The same over the products x[i] * y[i], x conjugated where asked.
  void (*dot)(index n, view<T> x, view<T> y, bool conjugate, T* sums);
  /// y[i] = y[i] + alpha * x[i], x conjugated where asked.
  void (*axpy)(index n, const T& alpha, view<T> x, bool conjugate, array<T> y);
  /// x[i] = alpha * x[i].
  void (*scal)(index n, const T& alpha, array<T> x);
  void (*multiply)(const product<T>& task);
  void (*solve)(const triangle<T>& task);
};

/// Whether `place` is the number of the first or last extreme: false where it is not known, which
/// an infinity, a NaN or a part that is too large makes so.
using extreme_kernel = bool (*)(index n, view<quad> x, bool smallest, bool last, index& place);

struct kernels {
  const char* name;
  binary_kernel<quad> qadd, qsub, qmul, qdiv;
  unary_kernel<quad> sqrtl, expl, logl, sinl, cosl, tanl, atanl;
  binary_kernel<cquad> cqmul, cqdiv;
  linear_kernels<quad> real;
  linear_kernels<cquad> complex;
  extreme_kernel extreme;
#define ZRT_REAL_FUNCTION(type, stem, name) unary_kernel<type> stem;
#define ZRT_REAL_OPERATION(type, stem, name) binary_kernel<type> stem;
#include "arrays/real_kernels.inc"
#undef ZRT_REAL_FUNCTION
#undef ZRT_REAL_OPERATION
};

/// Partial sums of a sum.
inline constexpr index partial_sums = 16;

namespace plain {
extern const kernels table;
}
namespace sse2 {
extern const kernels table;
}
namespace avx2 {
extern const kernels table;
}
namespace avx512 {
extern const kernels table;
}

}  // namespace zrt::arrays
