#pragma once

// Loops over the elements of REAL*8 and REAL*4 arrays, on lanes and by the entries.

#include "arrays/scalar.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

#if defined(ZRT_WIDTH)

/// Elements first to first + count - 1 of an operand.
template <class F>
ZRT_INLINE values fetch_values(view<F> x, index first, index count) {
  if (x.step == 1) [[likely]]
    return load_values(x.at + first, count);
  F buffer[span];
  for (index j = 0; j < span; ++j) buffer[j] = j < count ? x.at[(first + j) * x.step] : F{1};
  return load_values(buffer, span);
}

/// The results of the lanes; those of the rare ones come from the entry, by `by_entry(i)`.
template <class F, class Entry>
ZRT_INLINE void put_values(array<F> result, index first, index count, const values& r,
                           const choice& rare, const Entry& by_entry) {
  const unsigned which = bits_of(rare) & ((2u << (count - 1)) - 1);
  if (result.step == 1 && which == 0) [[likely]] {
    store_values(result.at + first, count, r);
    return;
  }
  F buffer[span];
  store_values(buffer, span, r);
  for (index j = 0; j < count; ++j) {
    if ((which >> j & 1) != 0) buffer[j] = by_entry(first + j);
    result.at[(first + j) * result.step] = buffer[j];
  }
}

template <class F, values (*function)(const values&, choice&), auto entry>
void over_reals(index n, view<F> x, array<F> result) {
  for (index i = 0; i < n; i += span) {
    const index count = least(span, n - i);
    choice rare;
    const values r = function(fetch_values(x, i, count), rare);
    put_values(result, i, count, r, rare, [&](index j) { return entry(x.at[j * x.step]); });
  }
}

template <class F, values (*function)(const values&, const values&, choice&), auto entry>
void over_reals(index n, view<F> x, view<F> y, array<F> result) {
  for (index i = 0; i < n; i += span) {
    const index count = least(span, n - i);
    choice rare;
    const values r = function(fetch_values(x, i, count), fetch_values(y, i, count), rare);
    put_values(result, i, count, r, rare,
               [&](index j) { return entry(x.at[j * x.step], y.at[j * y.step]); });
  }
}

#else

template <class F, auto entry>
void over_reals(index n, view<F> x, array<F> result) {
  for (index i = 0; i < n; ++i) result.at[i * result.step] = entry(x.at[i * x.step]);
}

template <class F, auto entry>
void over_reals(index n, view<F> x, view<F> y, array<F> result) {
  for (index i = 0; i < n; ++i)
    result.at[i * result.step] = entry(x.at[i * x.step], y.at[i * y.step]);
}

#endif

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
