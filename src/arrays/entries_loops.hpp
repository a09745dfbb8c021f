#pragma once

// The kernels of the plain level: loops over the entries, whose results go where they belong.

#include "arrays/scalar.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

// --- Elements ------------------------------------------------------------------------------------

ZRT_INLINE void put_sum(quad& r, const quad& x, const quad& y) { __zorvik_qadd(&r, x, y); }
ZRT_INLINE void put_sum(cquad& r, const cquad& x, const cquad& y) {
  __zorvik_qadd(&r.re, x.re, y.re);
  __zorvik_qadd(&r.im, x.im, y.im);
}
ZRT_INLINE void put_product(quad& r, const quad& x, const quad& y) { __zorvik_qmul(&r, x, y); }
ZRT_INLINE void put_product(cquad& r, const cquad& x, const cquad& y) { __zorvik_cqmul(&r, x, y); }

struct sum_of {
  static void by_entry(quad& r, const quad& x, const quad& y) { put_sum(r, x, y); }
};
struct difference_of {
  static void by_entry(quad& r, const quad& x, const quad& y) { __zorvik_qsub(&r, x, y); }
};
struct product_of {
  template <class T>
  static void by_entry(T& r, const T& x, const T& y) {
    put_product(r, x, y);
  }
};
struct quotient_of {
  static void by_entry(quad& r, const quad& x, const quad& y) { __zorvik_qdiv(&r, x, y); }
};
struct complex_quotient_of {
  static void by_entry(cquad& r, const cquad& x, const cquad& y) { __zorvik_cqdiv(&r, x, y); }
};

template <class Operation, class T>
void over_elements(index n, view<T> x, view<T> y, array<T> result) {
  for (index i = 0; i < n; ++i)
    Operation::by_entry(result.at[i * result.step], x.at[i * x.step], y.at[i * y.step]);
}
template <quad* (*entry)(quad*, quad)>
void over_elements(index n, view<quad> x, array<quad> result) {
  for (index i = 0; i < n; ++i) entry(result.at + i * result.step, x.at[i * x.step]);
}

bool extreme(index, view<quad>, bool, bool, index&) { return false; }

// --- Vectors -------------------------------------------------------------------------------------

template <class T>
ZRT_INLINE T conjugated_if(bool conjugate, const T& x) {
  return conjugate ? scalar::conjugated(x) : x;
}

template <class T>
void sum(index n, view<T> x, T* sums) {
  for (index i = 0; i < n; ++i) {
    T& target = sums[i % partial_sums];
    put_sum(target, target, x.at[i * x.step]);
  }
}
template <class T>
void dot(index n, view<T> x, view<T> y, bool conjugate, T* sums) {
  for (index i = 0; i < n; ++i) {
    T& target = sums[i % partial_sums];
    T product;
    put_product(product, conjugated_if(conjugate, x.at[i * x.step]), y.at[i * y.step]);
    put_sum(target, target, product);
  }
}
template <class T>
void scal(index n, const T& alpha, array<T> x) {
  over_elements<product_of, T>(n, {&alpha, 0}, {x.at, x.step}, x);
}
template <class T>
void axpy(index n, const T& alpha, view<T> x, bool conjugate, array<T> y) {
  const T factor = alpha;
  for (index i = 0; i < n; ++i) {
    T& target = y.at[i * y.step];
    T product;
    put_product(product, factor, conjugated_if(conjugate, x.at[i * x.step]));
    put_sum(target, target, product);
  }
}

// --- Matrices ------------------------------------------------------------------------------------

/// The rows of column j that a product writes, from the first to before the last.
template <class T>
void written_rows(const product<T>& task, index j, index& first, index& last) {
  first = 0;
  last = task.rows;
  if (task.written == part::lower && j - task.diagonal > 0) first = j - task.diagonal;
  if (task.written == part::upper && j - task.diagonal + 1 < last) last = j - task.diagonal + 1;
}

template <class T>
void multiply(const product<T>& task) {
  for (index j = 0; j < task.columns; ++j) {
    index first, last;
    written_rows(task, j, first, last);
    for (index l = 0; l < task.depth; ++l) {
      T factor = conjugated_if(task.conjugate_b, task.b.at[l * task.b.row + j * task.b.column]);
      if (task.alpha) put_product(factor, *task.alpha, factor);
      if (task.negate) factor = scalar::negated(factor);
      const view<T> a = {task.a.at + l * task.a.column + first * task.a.row, task.a.row};
      axpy(last - first, factor, a, task.conjugate_a,
           array<T>{task.c.at + j * task.c.column + first * task.c.row, task.c.row});
    }
  }
}

/// An unknown is divided as soon as all before it are subtracted.
template <class T>
void solve(const triangle<T>& task) {
  const auto a = [&](index i, index k) {
    return conjugated_if(task.conjugate, task.a.at[i * task.a.row + k * task.a.column]);
  };
  for (index j = 0; j < task.columns; ++j) {
    const array<T> x = {task.x.at + j * task.x.column, task.x.row};
    for (index k = 0; k < task.order; ++k) {
      T& solved = x.at[k * x.step];
      if (!task.unit) solved = scalar::div(solved, a(k, k));
      for (index i = k + 1; i < task.order; ++i) {
        T& target = x.at[i * x.step];
        const T factor = scalar::negated(task.unknown_first ? solved : a(i, k));
        T product;
        put_product(product, factor, task.unknown_first ? a(i, k) : solved);
        put_sum(target, target, product);
      }
    }
  }
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
