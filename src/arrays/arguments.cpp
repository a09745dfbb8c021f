// Which arguments are good: where arrays lie in memory, and scalars that stand for a rule.

#include <cstring>

#include "arrays/runtime.hpp"

namespace zrt::arrays {
namespace {

std::uintptr_t address(const void* x) { return reinterpret_cast<std::uintptr_t>(x); }

}  // namespace

region region_of(index n, const void* x, index step, std::size_t size) {
  const index bytes = static_cast<index>(size), stride = step < 0 ? -step : step;
  const index span = n > 0 ? (n - 1) * stride * bytes + bytes : 0;
  const std::uintptr_t low = address(x);
  return {low, low + static_cast<std::uintptr_t>(span), step * bytes, bytes,
          static_cast<const char*>(x) + (step < 0 ? span - bytes : 0)};
}

region region_of(index rows, index columns, const void* a, index leading, std::size_t size) {
  const index bytes = static_cast<index>(size);
  const index span = rows > 0 && columns > 0 ? ((columns - 1) * leading + rows) * bytes : 0;
  const std::uintptr_t low = address(a);
  return {low, low + static_cast<std::uintptr_t>(span), leading * bytes, rows * bytes, a};
}

bool apart(const region& a, const region& b) {
  if (a.high <= b.low || b.high <= a.low) return true;
  const auto step = static_cast<std::uintptr_t>(a.step < 0 ? -a.step : a.step);
  if (step == 0 || (a.step != b.step && a.step != -b.step)) return false;
  // The same step: do the pieces fall into each other's gaps?
  const std::uintptr_t offset =
      b.low >= a.low ? (b.low - a.low) % step : (step - (a.low - b.low) % step) % step;
  return offset >= static_cast<std::uintptr_t>(a.size) &&
         offset + static_cast<std::uintptr_t>(b.size) <= step;
}

bool apart_or_equal(const region& a, const region& b) {
  return (a.first == b.first && a.step == b.step && a.size == b.size) || apart(a, b);
}

arguments& arguments::option(int number, char given, const char* allowed) {
  return require(number, given != '\0' && std::strchr(allowed, given) != nullptr);
}

quad magnitude(const quad& x) {
  quad r;
  return *__zorvik_fabsl(&r, x);
}
quad magnitude(const cquad& x) {
  quad r;
  return *__zorvik_qadd(&r, magnitude(x.re), magnitude(x.im));
}

template <class T>
index largest(index n, view<T> x) {
  index best = -1;
  quad size = {0.0, 0.0};
  for (index i = 0; i < n; ++i) {
    const quad m = magnitude(x.at[i * x.step]);
    if (!(m.hi >= 0)) continue;  // a NaN
    if (best < 0 || m.hi > size.hi || (m.hi == size.hi && m.lo > size.lo)) {
      best = i;
      size = m;
    }
  }
  return n > 0 && best < 0 ? 0 : best;
}
template index largest(index, view<quad>);
template index largest(index, view<cquad>);

index extreme(index n, view<quad> x, bool smallest, bool last) {
  index found = -1;
  if (active().extreme(n, x, smallest, last, found)) return found;
  constexpr std::int32_t less = 0x0100, equal = 0x4000, greater = 0;
  const auto is_nan = [](const quad& q) { return q.hi != q.hi; };
  for (index i = 0; i < n; ++i) {
    const quad& q = x.at[i * x.step];
    if (found < 0) {
      found = i;
      continue;
    }
    const quad& best = x.at[found * x.step];
    const std::int32_t order = __zorvik_qcmp(q, best);
    if (order == (smallest ? less : greater) || (last && order == equal) ||
        (is_nan(best) && !is_nan(q)))
      found = i;
  }
  return found;
}

}  // namespace zrt::arrays
