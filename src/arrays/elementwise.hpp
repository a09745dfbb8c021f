#pragma once

// Loops over the elements of arrays. Every vector that is in doubt runs by the entries, from the
// operands as they stand in memory: results are written after that is known.

namespace zrt::arrays::ZRT_LEVEL {
namespace {

struct sum_of {
  static ZRT_INLINE pairs lanes(const pairs& x, const pairs& y, doubt& check) {
    const pairs r = add(x, y);
    check.finite(r);
    return r;
  }
  static quad entry(const quad& x, const quad& y) { return scalar::add(x, y); }
};
struct difference_of {
  static ZRT_INLINE pairs lanes(const pairs& x, const pairs& y, doubt& check) {
    const pairs r = sub(x, y);
    check.finite(r);
    return r;
  }
  static quad entry(const quad& x, const quad& y) { return scalar::sub(x, y); }
};
struct product_of {
  template <class V>
  static ZRT_INLINE V lanes(const V& x, const V& y, doubt& check) {
    check_factor(check, x);
    check_factor(check, y);
    const V r = mul(as_first(x), as_second(y));
    check_finite(check, r);
    return r;
  }
  template <class T>
  static T entry(const T& x, const T& y) {
    return scalar::mul(x, y);
  }
};
struct quotient_of {
  static ZRT_INLINE pairs lanes(const pairs& x, const pairs& y, doubt& check) {
    const pairs r = div(x, y, check);
    check.finite(r);
    return r;
  }
  static quad entry(const quad& x, const quad& y) { return scalar::div(x, y); }
};
/// A function of one REAL*16 operand: on lanes, and by its entry.
template <pairs (*function)(const pairs&, doubt&), quad (*by_entry)(const quad&)>
struct function_of {
  static ZRT_INLINE pairs lanes(const pairs& x, const pairs&, doubt& check) {
    const pairs r = function(x, check);
    check.finite(r);
    return r;
  }
  static quad entry(const quad& x, const quad&) { return by_entry(x); }
};

template <class Operation, class T>
void over_elements(index n, view<T> x, view<T> y, array<T> result) {
  for (index i = 0; i < n; i += width) {
    const index count = least(width, n - i);
    doubt check;
    const auto r = Operation::lanes(fetch(x, i, count), fetch(y, i, count), check);
    if (!check.any()) [[likely]] {
      put(result, i, count, r);
      continue;
    }
    for (index j = i; j < i + count; ++j)
      result.at[j * result.step] = Operation::entry(x.at[j * x.step], y.at[j * y.step]);
  }
}
template <class Operation>
void over_elements(index n, view<quad> x, array<quad> result) {
  over_elements<Operation>(n, x, x, result);
}

template <class T>
void scal(index n, const T& alpha, array<T> x) {
  over_elements<product_of, T>(n, {&alpha, 0}, {x.at, x.step}, x);
}

template <class T>
void axpy(index n, const T& alpha, view<T> x, bool conjugate, array<T> y) {
  const vector_of<T> factor = broadcast(alpha);
  const auto first = as_first(factor);
  const bool usable = usable_factor(alpha);
  for (index i = 0; i < n; i += width) {
    const index count = least(width, n - i);
    vector_of<T> with = fetch(x, i, count);
    if (conjugate) with = conjugated(with);
    const vector_of<T> r = add(fetch(view<T>{y.at, y.step}, i, count), mul(first, as_second(with)));
    doubt check;
    check_factor(check, with);
    check_finite(check, r);
    if (usable && !check.any()) [[likely]] {
      put(y, i, count, r);
      continue;
    }
    for (index j = i; j < i + count; ++j) {
      const T element = x.at[j * x.step];
      T& target = y.at[j * y.step];
      target = scalar::add(target,
                           scalar::mul(alpha, conjugate ? scalar::conjugated(element) : element));
    }
  }
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
