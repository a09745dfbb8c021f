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
  static void by_entry(quad& r, const quad& x, const quad& y) { __zorvik_qadd(&r, x, y); }
};
struct difference_of {
  static ZRT_INLINE pairs lanes(const pairs& x, const pairs& y, doubt& check) {
    const pairs r = sub(x, y);
    check.finite(r);
    return r;
  }
  static void by_entry(quad& r, const quad& x, const quad& y) { __zorvik_qsub(&r, x, y); }
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
  static void by_entry(quad& r, const quad& x, const quad& y) { __zorvik_qmul(&r, x, y); }
  static void by_entry(cquad& r, const cquad& x, const cquad& y) { __zorvik_cqmul(&r, x, y); }
};
struct quotient_of {
  static ZRT_INLINE pairs lanes(const pairs& x, const pairs& y, doubt& check) {
    const pairs r = div(x, y, check);
    check.finite(r);
    return r;
  }
  static void by_entry(quad& r, const quad& x, const quad& y) { __zorvik_qdiv(&r, x, y); }
};
/// Smith's method, the larger part of the divisor told by the leading part of a difference.
struct complex_quotient_of {
  static ZRT_INLINE complex_pairs lanes(const complex_pairs& x, const complex_pairs& y,
                                        doubt& check) {
    const words first = (words)(sub(absolute(y.re), absolute(y.im)).hi > 0.0);
    const pairs large = select(first, y.re, y.im), small = select(first, y.im, y.re);
    const pairs plain = select(first, x.re, x.im), turned = select(first, x.im, x.re);
    const pairs r = div(small, large, check);
    check.factor(small);
    check.factor(plain);
    check.factor(turned);
    check.factor(r);
    const pairs divisor = add(large, mul(small, r));
    const pairs product = mul(plain, r);
    const complex_pairs quotient = {
        div(add(plain, mul(turned, r)), divisor, check),
        div(sub(select(first, turned, product), select(first, product, turned)), divisor, check)};
    check_finite(check, quotient);
    return quotient;
  }
  static void by_entry(cquad& r, const cquad& x, const cquad& y) { __zorvik_cqdiv(&r, x, y); }
};

template <class Operation, class T>
ZRT_INLINE void operate(index i, index count, view<T> x, view<T> y, array<T> result) {
  doubt check;
  const auto r = Operation::lanes(fetch(x, i, count), fetch(y, i, count), check);
  if (!check.any()) [[likely]]
    put(result, i, count, r);
  else
    for (index j = i; j < i + count; ++j)
      Operation::by_entry(result.at[j * result.step], x.at[j * x.step], y.at[j * y.step]);
}
/// Elements that lie together go in a loop of their own, in which nothing asks for strides.
template <class Operation, class T>
void over_elements(index n, view<T> x, view<T> y, array<T> result) {
  index i = 0;
  if (x.step == 1 && y.step == 1 && result.step == 1)
    for (; i <= n - width; i += width)
      operate<Operation, T>(i, width, {x.at, 1}, {y.at, 1}, {result.at, 1});
  for (; i < n; i += width) operate<Operation, T>(i, least(width, n - i), x, y, result);
}

/// A function of one REAL*16 operand: on lanes, a group of vectors at once, and by its entry.
template <several (*function)(const several&, grouped<doubt>&), quad (*by_entry)(const quad&)>
void over_elements(index n, view<quad> x, array<quad> result) {
  constexpr index wide = group * width;
  for (index i = 0; i < n; i += wide) {
    const index count = least(wide, n - i);
    quad buffer[wide];  // of elements apart, and at the end, where the last one fills it up
    const bool together = x.step == 1 && count == wide;
    if (!together)
      for (index j = 0; j < wide; ++j) buffer[j] = x.at[(i + least(j, count - 1)) * x.step];
    const quad* const from = together ? x.at + i : buffer;
    grouped<doubt> check{};
    const several r =
        function(in_group([&](index g) ZRT_ALWAYS { return load(from + g * width); }), check);
    for_group([&](index g) ZRT_ALWAYS { check.v[g].finite(r.v[g]); });
    if (any_of(check)) [[unlikely]] {  // these few by the entry
      quad values[wide], marks[wide];
      for_group([&](index g) ZRT_ALWAYS {
        store(values + g * width, r.v[g]);
        store(marks + g * width, mark_of(check.v[g]));
      });
      for (index j = 0; j < count; ++j)
        result.at[(i + j) * result.step] =
            __builtin_signbit(marks[j].hi) ? by_entry(x.at[(i + j) * x.step]) : values[j];
      continue;
    }
    const bool all_lie_together = result.step == 1 && count == wide;
    quad* const to = all_lie_together ? result.at + i : buffer;
    for_group([&](index g) ZRT_ALWAYS { store(to + g * width, r.v[g]); });
    if (!all_lie_together)
      for (index j = 0; j < count; ++j) result.at[(i + j) * result.step] = buffer[j];
  }
}

template <class T>
void scal(index n, const T& alpha, array<T> x) {
  over_elements<product_of, T>(n, {&alpha, 0}, {x.at, x.step}, x);
}

/// Elements i to i + count - 1 of axpy, `first` the factor alpha.
template <class T, class First>
ZRT_INLINE void update(index i, index count, const T& alpha, const First& first, bool usable,
                       view<T> x, bool conjugate, array<T> y) {
  vector_of<T> with = fetch(x, i, count);
  if (conjugate) with = conjugated(with);
  const vector_of<T> r = add(fetch(view<T>{y.at, y.step}, i, count), mul(first, as_second(with)));
  doubt check;
  check_factor(check, with);
  check_finite(check, r);
  if (usable && !check.any()) [[likely]] {
    put(y, i, count, r);
    return;
  }
  for (index j = i; j < i + count; ++j) {
    const T element = x.at[j * x.step];
    T& target = y.at[j * y.step];
    target =
        scalar::add(target, scalar::mul(alpha, conjugate ? scalar::conjugated(element) : element));
  }
}
template <class T>
void axpy(index n, const T& alpha, view<T> x, bool conjugate, array<T> y) {
  const auto first = as_first(broadcast(alpha));
  const bool usable = usable_factor(alpha);
  index i = 0;
  if (x.step == 1 && y.step == 1)
    for (; i <= n - width; i += width)
      update<T>(i, width, alpha, first, usable, {x.at, 1}, conjugate, {y.at, 1});
  for (; i < n; i += width) update(i, least(width, n - i), alpha, first, usable, x, conjugate, y);
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
