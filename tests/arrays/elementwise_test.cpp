// Entries element by element: every routine against its entry, the kernels on every level with
// special lanes in every position, at guard pages, with every stride.

#include <functional>
#include <tuple>

#include "arrays.hpp"
#include "support/guarded.hpp"

namespace arrays {
namespace {

/// An operand of any numeric type: ordinary numbers, and special ones where they exist.
template <class T>
void draw_number(T& x) {
  if constexpr (std::is_integral_v<T>) {
    x = static_cast<T>(below(3) == 0 ? generator()() : generator()() % 64);
  } else if constexpr (std::is_same_v<T, quad> || std::is_same_v<T, cquad>) {
    draw(x, 20);
  } else {
    quad parts[2];
    for (quad& part : parts) draw(part, 10);
    if constexpr (std::is_floating_point_v<T>) {
      x = static_cast<T>(parts[0].hi);
    } else {  // a complex number
      using real = std::conditional_t<sizeof(T) == 8, float, double>;
      const real both[] = {static_cast<real>(parts[0].hi), static_cast<real>(parts[1].hi)};
      std::memcpy(&x, both, sizeof x);
    }
  }
}

template <class R, class... Declared, class... A>
R result_of(R (*entry)(Declared...), const A&... x) {
  return entry(x...);
}
template <class R, class... Declared, class... A>
R result_of(R* (*entry)(R*, Declared...), const A&... x) {
  R result;
  return *entry(&result, x...);
}

/// Calls the routine over 21 elements and the entry 21 times. Operands come as (array, stride).
template <class R, class... A, std::size_t... I, class Routine, class Entry>
void compare(const char* stem, Routine routine, Entry entry, std::index_sequence<I...>) {
  constexpr std::ptrdiff_t n = 21;
  std::tuple<std::array<A, n>...> operands;
  R got[n] = {}, want[n] = {};
  std::apply(
      [](auto&... array) {
        ((std::for_each(array.begin(), array.end(), [](auto& x) { draw_number(x); })), ...);
      },
      operands);
  ASSERT_EQ(std::apply(routine, std::tuple_cat(
                                    std::tuple(n),
                                    std::tuple(static_cast<const A*>(std::get<I>(operands).data()),
                                               std::ptrdiff_t{1})...,
                                    std::tuple(got, std::ptrdiff_t{1}))),
            0);
  for (std::size_t i = 0; i < n; ++i)
    want[i] = static_cast<R>(result_of(entry, std::get<I>(operands)[i]...));
  EXPECT_TRUE(same(got, want, n, stem));
}
// The signature of a routine tells the types: (n, (array, stride)..., result, stride).
template <class... P>
struct split;
template <class R, class... A>
struct split<std::tuple<A...>, R*, std::ptrdiff_t> {
  template <class Routine, class Entry>
  static void run(const char* stem, Routine routine, Entry entry) {
    compare<R, A...>(stem, routine, entry, std::index_sequence_for<A...>());
  }
};
template <class... A, class Next, class... P>
struct split<std::tuple<A...>, const Next*, std::ptrdiff_t, P...>
    : split<std::tuple<A..., Next>, P...> {};
template <class... P, class Entry>
void compare_with(const char* stem, int (*routine)(std::ptrdiff_t, P...), Entry entry) {
  split<std::tuple<>, P...>::run(stem, routine, entry);
}

TEST(ArraysElementwise, EveryRoutineGivesWhatItsEntryGives) {
  on_every_level([](const std::string&) {
#define ZRT_ARRAY_ENTRY(stem, result, codes) \
  compare_with(#stem, zorvikrt_array_##stem, __zorvik_##stem);
#include "array_entry_table.inc"
#undef ZRT_ARRAY_ENTRY
  });
}

/// A routine of one operand or two, as one of two, and its entry.
template <class T>
struct kernel {
  std::string name;
  std::function<int(std::ptrdiff_t, const T*, std::ptrdiff_t, const T*, std::ptrdiff_t, T*,
                    std::ptrdiff_t)>
      routine;
  std::function<T(T, T)> entry;
};

template <class Body, class T, class Entry>
void with_kernel(Body body, const char* stem,
                 int (*routine)(std::ptrdiff_t, const T*, std::ptrdiff_t, T*, std::ptrdiff_t),
                 Entry entry) {
  body(kernel<T>{stem,
                 [=](auto n, auto x, auto incx, auto, auto, auto r, auto incr) {
                   return routine(n, x, incx, r, incr);
                 },
                 [=](T a, T) { return result_of(entry, a); }});
}
template <class Body, class T, class Entry>
void with_kernel(Body body, const char* stem,
                 int (*routine)(std::ptrdiff_t, const T*, std::ptrdiff_t, const T*, std::ptrdiff_t,
                                T*, std::ptrdiff_t),
                 Entry entry) {
  body(kernel<T>{stem, routine, [=](T a, T b) { return result_of(entry, a, b); }});
}

/// Calls body with the kernels of REAL*16.
template <class Body>
void with_quad_kernels(Body body) {
#define ARRAYS_KERNEL(stem) with_kernel(body, #stem, zorvikrt_array_##stem, __zorvik_##stem)
  ARRAYS_KERNEL(qadd);
  ARRAYS_KERNEL(qsub);
  ARRAYS_KERNEL(qmul);
  ARRAYS_KERNEL(qdiv);
  ARRAYS_KERNEL(sqrtl);
  ARRAYS_KERNEL(expl);
  ARRAYS_KERNEL(logl);
  ARRAYS_KERNEL(sinl);
  ARRAYS_KERNEL(cosl);
#undef ARRAYS_KERNEL
}

/// Calls body with every routine whose operands and result are all REAL*8, or all REAL*4.
template <class Body>
void with_real_kernels(Body body) {
  const auto visit = [&]<class R, class... A>(const char* stem, auto routine, R (*entry)(A...)) {
    if constexpr (std::is_floating_point_v<R> && (std::is_same_v<A, R> && ...))
      with_kernel(body, stem, routine, entry);
  };
#define ZRT_ARRAY_ENTRY(stem, result, codes) visit(#stem, zorvikrt_array_##stem, __zorvik_##stem);
#include "array_entry_table.inc"
#undef ZRT_ARRAY_ENTRY
}
template <class Body>
void with_every_kernel(Body body) {
  with_quad_kernels(body);
  with_real_kernels(body);
}

template <class T>
T& element(std::vector<T>& x, std::ptrdiff_t n, std::ptrdiff_t step, std::ptrdiff_t i) {
  return x[static_cast<std::size_t>(step < 0 ? (i - n + 1) * step : i * step)];
}

TEST(ArraysElementwise, KernelsOverLengthsStridesAndSpecialLanes) {
  on_every_level([](const std::string& level) {
    with_every_kernel([&]<class T>(const kernel<T>& k) {
      for (std::ptrdiff_t n = 0; n <= 67; ++n)
        for (int special : {0, 5, 40}) {
          const std::ptrdiff_t strides[] = {0, 1, 1, 2, -1};
          const std::ptrdiff_t incx = strides[below(5)], incy = strides[below(5)],
                               incr = strides[1 + below(4)];
          auto x = drawn_array<T>(2 * n + 1, special), y = drawn_array<T>(2 * n + 1, special);
          auto got = drawn_array<T>(2 * n + 1), want = got;
          ASSERT_EQ(k.routine(n, x.data(), incx, y.data(), incy, got.data(), incr), 0);
          for (std::ptrdiff_t i = 0; i < n; ++i)
            element(want, n, incr, i) = k.entry(element(x, n, incx, i), element(y, n, incy, i));
          ASSERT_TRUE(same(got, want, level + " " + k.name));
        }
    });
  });
}

/// One special lane at a time: every value of `special_part` passes every position.
TEST(ArraysElementwise, OneSpecialElementLeavesItsNeighboursAlone) {
  on_every_level([](const std::string& level) {
    with_every_kernel([&]<class T>(const kernel<T>& k) {
      for (int round = 0; round < 400; ++round) {
        auto x = drawn_array<T>(16), y = drawn_array<T>(16);
        draw(below(2) != 0 ? x[static_cast<std::size_t>(below(16))]
                           : y[static_cast<std::size_t>(below(16))],
             100);
        std::vector<T> want;
        for (std::size_t i = 0; i < 16; ++i) want.push_back(k.entry(x[i], y[i]));
        ASSERT_EQ(k.routine(16, x.data(), 1, y.data(), 1, x.data(), 1), 0);  // in place
        ASSERT_TRUE(same(x, want, level + " " + k.name));
      }
    });
  });
}

TEST(ArraysElementwise, NothingIsReadOrWrittenBeyondTheArrays) {
  support::guarded x(4096), y(4096), r(4096);
  on_every_level([&](const std::string&) {
    with_every_kernel([&]<class T>(const kernel<T>& k) {
      for (std::ptrdiff_t n = 1; n <= 33; ++n)
        for (bool at_the_end : {false, true}) {
          const auto values = drawn_array<T>(n, 5);
          const std::string_view bytes(reinterpret_cast<const char*>(values.data()),
                                       values.size() * sizeof(T));
          const auto place = [&](support::guarded& room) {
            return reinterpret_cast<T*>(room.place(bytes, at_the_end));
          };
          T* const result = place(r);
          ASSERT_EQ(k.routine(n, place(x), 1, place(y), 1, result, 1), 0);
          if constexpr (std::is_same_v<T, quad>) {
            quad sum, dot;
            ASSERT_EQ(zorvikrt_qsum(n, result, 1, &sum), 0);
            ASSERT_EQ(zorvikrt_qdot(n, result, 1, place(y), -1, &dot), 0);
            ASSERT_EQ(zorvikrt_qaxpy(n, values[0], place(x), 1, result, 1), 0);
          }
        }
    });
  });
}

/// Every edge of `real_edges` with its neighbours, either sign, thrice, and ordinary operands.
TEST(ArraysElementwise, RealFunctionsWhereTheirStepsChange) {
  on_every_level([](const std::string& level) {
    with_real_kernels([&]<class T>(const kernel<T>& k) {
      auto x = drawn_array<T>(6000);
      for (const double edge : real_edges) {
        T above = static_cast<T>(edge), below = above;
        for (int units = 0; units < 40; ++units) {
          for (int round = 0; round < 3; ++round) x.insert(x.end(), {above, -above, below, -below});
          above = std::nextafter(above, static_cast<T>(INFINITY));
          below = std::nextafter(below, static_cast<T>(-INFINITY));
        }
      }
      const auto y = drawn_array<T>(static_cast<std::ptrdiff_t>(x.size()), 50);
      std::vector<T> got(x.size()), want;
      for (std::size_t i = 0; i < x.size(); ++i) want.push_back(k.entry(x[i], y[i]));
      ASSERT_EQ(k.routine(std::ssize(x), x.data(), 1, y.data(), 1, got.data(), 1), 0);
      EXPECT_TRUE(same(got, want, level + " " + k.name));
    });
  });
}

std::uint32_t mxcsr_word() {
  std::uint32_t word;
  asm volatile("stmxcsr %0" : "=m"(word));
  return word;
}
void set_mxcsr(std::uint32_t word) { asm volatile("ldmxcsr %0" : : "m"(word)); }

/// Operands of functions where their steps change: multiples of ln 2, of pi/40 and powers of two, a
/// few units off, over all magnitudes.
TEST(ArraysElementwise, FunctionsWhereTheirStepsChange) {
  const double units[] = {0x1.62e42fefa39efp-1, 0x1.41b2f769cf0ep-4, 1.0, 0x1.6a09e667f3bcdp-1};
  std::vector<quad> x(4000);
  for (quad& q : x) {
    draw(q, 0);
    const double tail = q.lo / q.hi;
    const double whole = static_cast<double>(below(2000) - 1000);
    q.hi = units[below(4)] *
           (below(2) != 0 ? whole : std::ldexp(1.0, static_cast<int>(below(240)) - 120));
    q.hi *= 1 + static_cast<double>(below(5) - 2) * 0x1p-52;
    q.lo = below(4) == 0
               ? 0
               : q.hi * (below(4) == 0 ? std::ldexp(tail, -static_cast<int>(below(300))) : tail);
  }
  on_every_level([&](const std::string& level) {
    with_quad_kernels([&](const kernel<quad>& k) {
      std::vector<quad> got(x.size()), want;
      for (const quad& q : x) want.push_back(k.entry(q, q));
      ASSERT_EQ(k.routine(4000, x.data(), 1, x.data(), 1, got.data(), 1), 0);
      EXPECT_TRUE(same(got, want, level + " " + k.name));
    });
  });
}

/// Whatever the thread's state is, bits are the same and the state comes back.
TEST(ArraysElementwise, TheStateOfTheThreadDoesNotMatter) {
  const std::uint16_t extended_up = 0x0B7F;
  std::uint16_t word, after;
  const std::uint32_t mxcsr = mxcsr_word(), flushing_down = 0xBFC0;
  on_every_level([&](const std::string& level) {
    with_every_kernel([&]<class T>(const kernel<T>& k) {
      const auto x = drawn_array<T>(64, 40), y = drawn_array<T>(64, 40);
      std::vector<T> got(64), want(64);
      ASSERT_EQ(k.routine(64, x.data(), 1, y.data(), 1, want.data(), 1), 0);
      asm volatile("fnstcw %0\n\tfldcw %1" : "=m"(word) : "m"(extended_up));
      set_mxcsr(flushing_down);
      k.routine(64, x.data(), 1, y.data(), 1, got.data(), 1);
      const std::uint32_t left = mxcsr_word();
      set_mxcsr(mxcsr);
      asm volatile("fnstcw %0\n\tfldcw %1" : "=m"(after) : "m"(word));
      EXPECT_EQ(left, flushing_down);
      EXPECT_EQ(after, extended_up);
      EXPECT_TRUE(same(got, want, level + " " + k.name));
    });
  });
}

TEST(ArraysElementwise, BadArgumentsAreNamedAndNothingIsTouched) {
  std::vector<quad> x = drawn_array<quad>(40), before = x;
  quad* const p = x.data();
  const auto add = zorvikrt_array_qadd;
  EXPECT_EQ(add(-1, p, 1, p, 1, p, 1), -1);
  EXPECT_EQ(add(4, nullptr, 1, p, 1, p, 1), -2);
  EXPECT_EQ(add(4, p, 1, nullptr, 1, p, 1), -4);
  EXPECT_EQ(add(4, p, 1, p, 1, nullptr, 1), -6);
  EXPECT_EQ(add(4, p, 1, p, 1, p + 8, 0), -7);
  EXPECT_EQ(add(4, p, 1, p + 1, 1, p, 1), -6);      // shifted by one element
  EXPECT_EQ(add(4, p, 1, p, 1, p, -1), -6);         // the other way round
  EXPECT_EQ(add(4, p + 2, 0, p, 1, p, 1), -6);      // a scalar inside the result
  EXPECT_EQ(add(4, p, 2, p + 8, 1, p + 3, 2), -6);  // y inside the result
  EXPECT_TRUE(same(x, before, "operands"));
  EXPECT_EQ(add(4, p, 2, p, 2, p + 1, 2), 0);  // between the operands
  EXPECT_EQ(add(4, p, 1, p, 1, p, 1), 0);
  EXPECT_EQ(add(0, nullptr, 1, nullptr, 1, nullptr, 1), 0);
}

}  // namespace
}  // namespace arrays
