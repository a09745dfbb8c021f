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
/// Smith's method, the larger part of the divisor told by the leading part of a difference.
struct complex_quotient_of {
#ifdef ZRT_WIDTH
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
#else
  static complex_pairs lanes(const complex_pairs& x, const complex_pairs& y, doubt&) {
    const cquad r = scalar::div(cquad{x.re, x.im}, cquad{y.re, y.im});
    return {r.re, r.im};
  }
#endif
  static cquad entry(const cquad& x, const cquad& y) { return scalar::div(x, y); }
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
