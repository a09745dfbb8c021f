#pragma once

// The largest or smallest element. Lanes hold the best of every width-th element and its number.

namespace zrt::arrays::ZRT_LEVEL {
namespace {

/// Pairs are ordered by the leading parts, then by the low ones, where the low part is less than
/// half a unit of the leading one by 2**-40 of itself: there a difference has the sign of the
/// order.
ZRT_INLINE words not_ordered(const pairs& x) {
  return ~(words)(x.hi + x.lo * 0x1.0000000001p0 == x.hi) |
         ~(words)(magnitude(x.hi) < __builtin_inf());
}

bool extreme(index n, view<quad> x, bool smallest, bool last, index& place) {
  if (n < width) return false;
  const unsigned long long flip = smallest ? sign_bit : 0;  // the largest of the negated elements
  const auto fetched = [&](index i) {
    const pairs e = fetch(x, i, width);
    return pairs{(lanes)((words)e.hi ^ flip), (lanes)((words)e.lo ^ flip)};
  };
  quad numbers[width];  // these go to the lanes as elements do
  for (index j = 0; j < width; ++j) numbers[j] = {static_cast<double>(j), 0.0};
  const lanes order = load(numbers).hi;
  words number;
  for (index j = 0; j < width; ++j) number[j] = static_cast<unsigned long long>(order[j]);
  pairs best = fetched(0);
  words best_number = number, odd = not_ordered(best);
  const auto join = [&](index i) {
    const pairs e = fetched(i);
    odd |= not_ordered(e);
    const words same = (words)(e.hi == best.hi);
    const words more = (words)(e.hi > best.hi) | (same & (words)(e.lo > best.lo));
    const words taken = last ? more | (same & (words)(e.lo == best.lo)) : more;
    best = {(lanes)((taken & (words)e.hi) | (~taken & (words)best.hi)),
            (lanes)((taken & (words)e.lo) | (~taken & (words)best.lo))};
    best_number = (taken & (number + static_cast<unsigned long long>(i))) | (~taken & best_number);
  };
  for (index i = width; i <= n - width; i += width) join(i);
  if (n % width != 0) join(n - width);  // some once more, under their numbers
  if (any_sign(odd)) return false;
  const auto better = [&](index a, index b) {
    if (best.hi[a] != best.hi[b]) return best.hi[a] > best.hi[b];
    if (best.lo[a] != best.lo[b]) return best.lo[a] > best.lo[b];
    return last ? best_number[a] > best_number[b] : best_number[a] < best_number[b];
  };
  index found = 0;
  for (index j = 1; j < width; ++j)
    if (better(j, found)) found = j;
  place = static_cast<index>(best_number[found]);
  return true;
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
