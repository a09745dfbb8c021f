#pragma once

// Sums and dot products as 16 interleaved partial sums: element i joins the sum i modulo 16, in the
// order of i. A run of elements that leaves a lane in doubt is summed again by the entries.

namespace zrt::arrays::ZRT_LEVEL {
namespace {

template <class T>
struct summands {
  view<T> x;
  ZRT_INLINE vector_of<T> lanes(index i, doubt&) const { return fetch(x, i, width); }
  T entry(index i) const { return x.at[i * x.step]; }
};

template <class T>
struct products {
  view<T> x, y;
  bool conjugate;
  ZRT_INLINE vector_of<T> lanes(index i, doubt& check) const {
    vector_of<T> a = fetch(x, i, width);
    const vector_of<T> b = fetch(y, i, width);
    if (conjugate) a = conjugated(a);
    check_factor(check, a);
    check_factor(check, b);
    return mul(as_first(a), as_second(b));
  }
  T entry(index i) const {
    const T a = x.at[i * x.step];
    return scalar::mul(conjugate ? scalar::conjugated(a) : a, y.at[i * y.step]);
  }
};

template <class T, class Terms>
void add_by_entries(index first, index last, const Terms& terms, T* sums) {
  for (index i = first; i < last; ++i)
    sums[i % partial_sums] = scalar::add(sums[i % partial_sums], terms.entry(i));
}

template <class T, class Terms>
ZRT_INLINE void sum_terms(index n, const Terms& terms, T* sums) {
  constexpr index run = 32 * partial_sums, vectors = partial_sums / width;
  const index whole = n - n % partial_sums;
  for (index first = 0; first < whole; first += run) {
    const index last = least(first + run, whole);
    vector_of<T> sum[vectors];
    doubt check[vectors];  // one for each: in one alone the steps of the test wait for one another
#pragma GCC unroll 16
    for (index v = 0; v < vectors; ++v) sum[v] = load(sums + v * width);
    for (index i = first; i < last; i += partial_sums)
#pragma GCC unroll 16
      for (index v = 0; v < vectors; ++v)
        sum[v] = add(sum[v], terms.lanes(i + v * width, check[v]));
    bool any = false;
#pragma GCC unroll 16
    for (index v = 0; v < vectors; ++v) {
      check_finite(check[v], sum[v]);
      any |= check[v].any();
    }
    if (any) [[unlikely]]
      add_by_entries(first, last, terms, sums);
    else
      for (index v = 0; v < vectors; ++v) store(sums + v * width, sum[v]);
  }
  add_by_entries(whole, n, terms, sums);
}

template <class T>
void sum(index n, view<T> x, T* sums) {
  if (x.step == 1)
    sum_terms(n, summands<T>{{x.at, 1}}, sums);
  else
    sum_terms(n, summands<T>{x}, sums);
}
template <class T>
void dot(index n, view<T> x, view<T> y, bool conjugate, T* sums) {
  if (x.step == 1 && y.step == 1)
    sum_terms(n, products<T>{{x.at, 1}, {y.at, 1}, conjugate}, sums);
  else
    sum_terms(n, products<T>{x, y, conjugate}, sums);
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
