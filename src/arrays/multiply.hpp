#pragma once

// The matrix product: blocks of A and of T packed so that a tile of C stays in registers while it
// goes through the depth of a block. Every element of C takes its products one after the other, in
// the order of l, however the loops are cut. A tile whose factors are not usable, or whose result
// is not finite, runs by the entries.

namespace zrt::arrays::ZRT_LEVEL {
namespace {

ZRT_INLINE void write_packed(double* p, const complex_pairs& x) {
  write_packed(p, x.re);
  write_packed(p + 2 * width, x.im);
}
ZRT_INLINE void read_packed(const double* p, pairs& x) { x = read_packed(p); }
ZRT_INLINE void read_packed(const double* p, complex_pairs& x) {
  x = {read_packed(p), read_packed(p + 2 * width)};
}

/// Rows of a tile, in vectors, and its columns: the accumulators fill half of the registers.
template <class T>
struct tile {
  static constexpr bool is_real = sizeof(T) == sizeof(quad);
  static constexpr index vectors = width == 8 && is_real ? 2 : 1;
  static constexpr index rows = vectors * width;
  static constexpr index columns = is_real ? 4 : 2;
  static constexpr index packed_vector = static_cast<index>(sizeof(T) / sizeof(double)) * width;
  static constexpr index packed_rows = vectors * packed_vector;
  static constexpr index packed_columns = columns * element<T>::parts;
};

template <class T>
struct packed_blocks {
  double *a, *b;
  bool a_usable[most_rows], b_usable[most_columns];  // of each panel
};

template <class T>
void pack_a(const product<T>& task, index i0, index rows, index l0, index depth,
            packed_blocks<T>& packed) {
  double* to = packed.a;
  bool* usable = packed.a_usable;
  for (index i = 0; i < rows; i += tile<T>::rows) {
    doubt check;
    for (index l = 0; l < depth; ++l)
      for (index v = 0; v < tile<T>::vectors; ++v, to += tile<T>::packed_vector) {
        const index first = i + v * width, count = least(width, rows - first);
        const view<T> column = {task.a.at + (l0 + l) * task.a.column, task.a.row};
        vector_of<T> x = fetch(column, i0 + first, count > 0 ? count : 0);
        if (task.conjugate_a) x = conjugated(x);
        check_factor(check, x);
        write_packed(to, x);
      }
    *usable++ = !check.any();
  }
}

/// One column of T.
template <class T>
void make_column(const product<T>& task, index l0, index depth, index j, T* to) {
  const T* from = task.b.at + l0 * task.b.row + j * task.b.column;
  for (index l = 0; l < depth; ++l) {
    to[l] = from[l * task.b.row];
    if (task.conjugate_b) to[l] = scalar::conjugated(to[l]);
  }
  if (task.alpha) scal(depth, *task.alpha, array<T>{to, 1});
  if (task.negate)
    for (index l = 0; l < depth; ++l) to[l] = scalar::negated(to[l]);
}

template <class T>
void pack_b(const product<T>& task, index l0, index depth, index j0, index columns,
            packed_blocks<T>& packed) {
  double* to = packed.b;
  bool* usable = packed.b_usable;
  for (index j = 0; j < columns; j += tile<T>::columns, to += depth * tile<T>::packed_columns) {
    bool fine = true;
    for (index c = 0; c < tile<T>::columns; ++c) {
      T column[most_depth];
      const bool exists = j + c < columns;
      if (exists) make_column(task, l0, depth, j0 + j + c, column);
      for (index l = 0; l < depth; ++l) {
        const T factor = exists ? column[l] : element<T>::one;
        fine = fine & usable_factor(factor);
        write_first(to + l * tile<T>::packed_columns + c * element<T>::parts, factor);
      }
    }
    *usable++ = fine;
  }
}

/// c += the products of two panels, in registers; whether every result is finite.
template <class T>
bool run_tile(index depth, const double* a, const double* b, T* c, index column) {
  vector_of<T> sum[tile<T>::columns][tile<T>::vectors];
#pragma GCC unroll 8
  for (index j = 0; j < tile<T>::columns; ++j)
#pragma GCC unroll 8
    for (index v = 0; v < tile<T>::vectors; ++v) sum[j][v] = load(c + j * column + v * width);
  for (index l = 0; l < depth; ++l) {
    decltype(as_second(sum[0][0])) second[tile<T>::vectors];
#pragma GCC unroll 8
    for (index v = 0; v < tile<T>::vectors; ++v) {
      vector_of<T> x;
      read_packed(a + v * tile<T>::packed_vector, x);
      second[v] = as_second(x);
    }
#pragma GCC unroll 8
    for (index j = 0; j < tile<T>::columns; ++j) {
      decltype(as_first(sum[0][0])) first;
      read_first(b + j * element<T>::parts, first);
#pragma GCC unroll 8
      for (index v = 0; v < tile<T>::vectors; ++v)
        sum[j][v] = add(sum[j][v], mul_beside_sums(first, second[v]));
    }
    a += tile<T>::packed_rows;
    b += tile<T>::packed_columns;
  }
  doubt check;
#pragma GCC unroll 8
  for (index j = 0; j < tile<T>::columns; ++j)
#pragma GCC unroll 8
    for (index v = 0; v < tile<T>::vectors; ++v) check_finite(check, sum[j][v]);
  if (check.any()) [[unlikely]]
    return false;
#pragma GCC unroll 8
  for (index j = 0; j < tile<T>::columns; ++j)
#pragma GCC unroll 8
    for (index v = 0; v < tile<T>::vectors; ++v) store(c + j * column + v * width, sum[j][v]);
  return true;
}

template <class T>
void run_tile_by_entries(index depth, const double* a, const double* b, T* c, index column) {
  for (index l = 0; l < depth; ++l, b += tile<T>::packed_columns)
    for (index v = 0; v < tile<T>::vectors; ++v, a += tile<T>::packed_vector) {
      vector_of<T> packed;
      T second[width];
      read_packed(a, packed);
      store(second, packed);
      for (index j = 0; j < tile<T>::columns; ++j) {
        T first;
        read_value(b + j * element<T>::parts, first);
        for (index r = 0; r < width; ++r) {
          T& target = c[j * column + v * width + r];
          target = scalar::add(target, scalar::mul(first, second[r]));
        }
      }
    }
}

/// Whether (i, j) is to be written, and whether all or none of a rectangle are.
template <class T>
bool written(const product<T>& task, index i, index j) {
  return task.written == part::whole ||
         (task.written == part::lower ? i + task.diagonal >= j : i + task.diagonal <= j);
}
template <class T>
bool all_written(const product<T>& task, index i, index rows, index j, index columns) {
  return written(task, i, j + columns - 1) && written(task, i + rows - 1, j);
}
template <class T>
bool none_written(const product<T>& task, index i, index rows, index j, index columns) {
  return !written(task, i + rows - 1, j) && !written(task, i, j + columns - 1);
}

template <class T>
void update_tile(const product<T>& task, index i, index rows, index j, index columns, index depth,
                 const double* a, const double* b, bool usable) {
  T* const c = task.c.at + i * task.c.row + j * task.c.column;
  const bool whole = rows == tile<T>::rows && columns == tile<T>::columns && task.c.row == 1 &&
                     all_written(task, i, rows, j, columns);
  if (whole) {
    if (!usable || !run_tile(depth, a, b, c, task.c.column)) [[unlikely]]
      run_tile_by_entries(depth, a, b, c, task.c.column);
    return;
  }
  T copy[tile<T>::columns * tile<T>::rows];
  for (index q = 0; q < tile<T>::columns; ++q)
    for (index p = 0; p < tile<T>::rows; ++p)
      copy[q * tile<T>::rows + p] = p < rows && q < columns && written(task, i + p, j + q)
                                        ? c[p * task.c.row + q * task.c.column]
                                        : element<T>::one;
  if (!usable || !run_tile(depth, a, b, copy, tile<T>::rows)) [[unlikely]]
    run_tile_by_entries(depth, a, b, copy, tile<T>::rows);
  for (index q = 0; q < columns; ++q)
    for (index p = 0; p < rows; ++p)
      if (written(task, i + p, j + q))
        c[p * task.c.row + q * task.c.column] = copy[q * tile<T>::rows + p];
}

template <class T>
void multiply(const product<T>& task) {
  packed_blocks<T> packed;
  packed.a = task.packed_a;
  packed.b = task.packed_b;
  for (index j0 = 0; j0 < task.columns; j0 += task.block_columns) {
    const index columns = least(task.block_columns, task.columns - j0);
    for (index l0 = 0; l0 < task.depth; l0 += task.block_depth) {
      const index depth = least(task.block_depth, task.depth - l0);
      pack_b(task, l0, depth, j0, columns, packed);
      for (index i0 = 0; i0 < task.rows; i0 += task.block_rows) {
        const index rows = least(task.block_rows, task.rows - i0);
        if (none_written(task, i0, rows, j0, columns)) continue;
        pack_a(task, i0, rows, l0, depth, packed);
        for (index j = 0; j < columns; j += tile<T>::columns)
          for (index i = 0; i < rows; i += tile<T>::rows) {
            const index high = least(tile<T>::rows, rows - i);
            const index wide = least(tile<T>::columns, columns - j);
            if (none_written(task, i0 + i, high, j0 + j, wide)) continue;
            update_tile(
                task, i0 + i, high, j0 + j, wide, depth,
                packed.a + i / tile<T>::rows * depth * tile<T>::packed_rows,
                packed.b + j * depth * element<T>::parts,
                packed.a_usable[i / tile<T>::rows] && packed.b_usable[j / tile<T>::columns]);
          }
      }
    }
  }
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
