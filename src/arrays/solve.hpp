#pragma once

// Substitution with a small triangle, as many right-hand sides at once as there are lanes. A group
// of right-hand sides that leaves a lane in doubt runs by the entries.

namespace zrt::arrays::ZRT_LEVEL {
namespace {

ZRT_INLINE pairs divide(const pairs& x, const quad& d, doubt& check) {
  return div(x, broadcast(d), check);
}
ZRT_INLINE complex_pairs divide(const complex_pairs& x, const cquad& d, doubt&) {
  cquad each[width];
  store(each, x);
  for (cquad& value : each) value = scalar::div(value, d);
  return load(each);
}

template <class T>
void solve_by_entries(const triangle<T>& task, index j) {
  const auto a = [&](index i, index k) {
    const T value = task.a.at[i * task.a.row + k * task.a.column];
    return task.conjugate ? scalar::conjugated(value) : value;
  };
  const auto x = [&](index i) -> T& { return task.x.at[i * task.x.row + j * task.x.column]; };
  for (index k = 0; k < task.order; ++k) {
    if (!task.unit) x(k) = scalar::div(x(k), a(k, k));
    const T solved = x(k);
    for (index i = k + 1; i < task.order; ++i) {
      const T f = scalar::negated(task.unknown_first ? solved : a(i, k));
      x(i) = scalar::add(x(i), scalar::mul(f, task.unknown_first ? a(i, k) : solved));
    }
  }
}

template <class T>
void solve(const triangle<T>& task) {
  // The triangle once, as the factors that it gives.
  T values[solve_block][solve_block];
  bool usable = true;
  for (index i = 0; i < task.order; ++i)
    for (index k = 0; k <= i; ++k) {
      T value = task.a.at[i * task.a.row + k * task.a.column];
      if (task.conjugate) value = scalar::conjugated(value);
      if (i > k) {
        usable = usable & usable_factor(value);
        if (!task.unknown_first) value = scalar::negated(value);
      }
      values[i][k] = value;
    }
  for (index j = 0; j < task.columns; j += width) {
    const index count = least(width, task.columns - j);
    vector_of<T> x[solve_block];
    doubt check;
    for (index i = 0; i < task.order; ++i)
      x[i] = fetch(view<T>{task.x.at + i * task.x.row, task.x.column}, j, count);
    for (index k = 0; k < task.order; ++k) {
      if (!task.unit) x[k] = divide(x[k], values[k][k], check);
      check_factor(check, x[k]);
      check_finite(check, x[k]);
      if (task.unknown_first) {
        const auto first = as_first(negated(x[k]));
        for (index i = k + 1; i < task.order; ++i)
          x[i] = add(x[i], mul(first, as_second(broadcast(values[i][k]))));
      } else {
        const auto second = as_second(x[k]);
        for (index i = k + 1; i < task.order; ++i)
          x[i] = add(x[i], mul(as_first(broadcast(values[i][k])), second));
      }
    }
    if (usable && !check.any()) [[likely]]
      for (index i = 0; i < task.order; ++i)
        put(array<T>{task.x.at + i * task.x.row, task.x.column}, j, count, x[i]);
    else
      for (index column = j; column < j + count; ++column) solve_by_entries(task, column);
  }
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
