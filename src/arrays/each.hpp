#pragma once

// Entries element by element: arrays of their operands in, an array of their results out.

#include <type_traits>

#include "arrays/runtime.hpp"

namespace zrt::arrays {

/// How an operand travels to an entry: on i386 as words, so that no copy goes through the FPU,
/// which would quiet a signalling NaN. A REAL result comes from a load, which does so anyway: there
/// a REAL*8 goes in one piece, for the entry's load behind two stores of 32 bits waits 25 ns.
template <class T, bool for_real>
struct passed {
#if defined(__i386__)
  struct words {
    std::uint32_t word[sizeof(T) / 4];
  };
  using type = std::conditional_t<std::is_integral_v<T> || for_real, T, words>;
#else
  using type = T;
#endif
};
template <class T, class R>
using passed_type =
    typename passed<T, std::is_floating_point_v<R> && std::is_floating_point_v<T>>::type;

template <class R, class T>
passed_type<T, R> operand(view<T> x, index i) {
  passed_type<T, R> value;
  __builtin_memcpy(&value, x.at + i * x.step, sizeof value);
  return value;
}

/// A loop over an entry whose result comes back by value.
template <class Returned, class R, class... A>
struct by_value {
  Returned (*entry)(passed_type<A, R>...);
  void operator()(index n, array<R> result, view<A>... x) const {
    for (index i = 0; i < n; ++i)
      result.at[i * result.step] = static_cast<R>(entry(operand<R>(x, i)...));
  }
};

/// A loop over an entry that writes its result to an address.
template <class R, class... A>
struct by_address {
  R* (*entry)(R*, passed_type<A, R>...);
  void operator()(index n, array<R> result, view<A>... x) const {
    for (index i = 0; i < n; ++i) entry(result.at + i * result.step, operand<R>(x, i)...);
  }
};

/// The entry under the type that takes its operands as they travel.
template <class To, class From>
To as_passed(From entry) {
  return reinterpret_cast<To>(reinterpret_cast<void (*)()>(entry));
}
template <class R, class... A, class Returned, class... Declared>
by_value<Returned, R, A...> by_value_of(Returned (*entry)(Declared...)) {
  return {as_passed<Returned (*)(passed_type<A, R>...)>(entry)};
}
template <class R, class... A, class... Declared>
by_address<R, A...> by_address_of(R* (*entry)(R*, Declared...)) {
  return {as_passed<R* (*)(R*, passed_type<A, R>...)>(entry)};
}

/// A kernel of the level in use.
template <class R, class... A>
struct by_kernel {
  void (*const kernels::*kernel)(index, view<A>..., array<R>);
  void operator()(index n, array<R> result, view<A>... x) const {
    (active().*kernel)(n, x..., result);
  }
};

/// An operand as the program gives it.
template <class A>
struct given {
  const A* x;
  index step;
};

/// Runs `loop` over n elements. The operands are arguments 2, 4, ... of the routine.
template <class Loop, class R, class... A>
int each(index n, const Loop& loop, R* result, index step, given<A>... operands) {
  constexpr int last = 2 + 2 * static_cast<int>(sizeof...(A));
  arguments check;
  check.size(1, n);
  int number = 2;
  ((check.vector(number, n, operands.x), number += 2), ...);
  check.vector(last, n, result).require(last + 1, step != 0 || n <= 1);
  if (check.bad()) return check.info();
  const region written = region_of(n, result, step, sizeof(R));
  check.require(
      last, (apart_or_equal(region_of(n, operands.x, operands.step, sizeof(A)), written) && ...));
  if (check.bad()) return check.info();
  const floating_point_state state;
  const array<R> to = from_first(n, result, step);
  const auto run = [&](index first, index count, view<A>... from) {
    loop(count, {to.at + first * to.step, to.step},
         view<A>{from.at + first * from.step, from.step}...);
  };
  in_runs(n, [&](index first, index count) {
    run(first, count, from_first(n, operands.x, operands.step)...);
  });
  return 0;
}

}  // namespace zrt::arrays
