// Routines over elements whose kernels share no test with the others, against their entries on
// every level: tangent and arctangent, products and quotients of COMPLEX*32.

#include <functional>

#include "arrays.hpp"
#include "support/guarded.hpp"

namespace arrays {
namespace {

template <class T>
using routine = std::function<int(std::ptrdiff_t, const T*, const T*, T*)>;
template <class T>
using entry = std::function<T(const T&, const T&)>;

template <class T>
void compare(const char* name, const routine<T>& over, const entry<T>& of_one,
             const std::function<void(T&)>& adjust) {
  on_every_level([&](const std::string& level) {
    for (int round = 0; round < 12; ++round)
      for (std::ptrdiff_t n = 0; n <= 67; n += n < 34 ? 1 : 11) {
        const int special = round % 3 == 0 ? 8 : 0;
        auto x = drawn_array<T>(n, special), y = drawn_array<T>(n, special);
        for (T& value : x) adjust(value);
        if (round % 4 == 1)
          for (T& value : y) adjust(value);
        std::vector<T> got(x.size()), want;
        for (std::size_t i = 0; i < x.size(); ++i) want.push_back(of_one(x[i], y[i]));
        ASSERT_EQ(over(n, x.data(), y.data(), got.data()), 0);
        ASSERT_TRUE(same(got, want, level + " " + name));
      }
  });
}

/// Of one operand; multiples of the angles at which steps change, a few units off, and all sizes.
void compare_function(const char* name,
                      int (*over)(std::ptrdiff_t, const quad*, std::ptrdiff_t, quad*,
                                  std::ptrdiff_t),
                      quad* (*of_one)(quad*, quad)) {
  const double edges[] = {0x1.921fb54442d18p+0, 0x1.41b2f769cf0ep-4, 0x1.3504f333f9de6p+1,
                          0x1.a827999fcef32p-2, 1.0};  // pi/2, pi/40, tangents of 3 pi/8, pi/8
  compare<quad>(
      name,
      [=](std::ptrdiff_t n, const quad* x, const quad*, quad* r) { return over(n, x, 1, r, 1); },
      [=](const quad& x, const quad&) {
        quad r;
        return *of_one(&r, x);
      },
      [&](quad& x) {
        if (below(2) != 0) return;
        const double tail = x.lo / x.hi;
        x.hi = edges[below(5)] * static_cast<double>(below(3) != 0 ? 1 : below(81) - 40);
        if (below(3) == 0) x.hi = std::ldexp(x.hi, static_cast<int>(below(240)) - 120);
        x.hi *= 1 + static_cast<double>(below(5) - 2) * 0x1p-52;
        x.lo = below(4) == 0 ? 0 : x.hi * tail;
      });
}
TEST(ArraysFunctions, TangentAndArctangent) {
  compare_function("tanl", zorvikrt_array_tanl, __zorvik_tanl);
  compare_function("atanl", zorvikrt_array_atanl, __zorvik_atanl);
}

/// Parts of equal size, zeros and whole numbers among the others.
void adjust_parts(cquad& z) {
  switch (below(6)) {
    case 0:
      z.im = below(2) != 0 ? z.re : minus(z.re);
      break;
    case 1:
      z.im.hi = z.re.hi;
      break;
    case 2:
      z = {{static_cast<double>(below(9) - 4), 0}, {static_cast<double>(below(9) - 4), 0}};
      break;
    case 3:
      (below(2) != 0 ? z.re : z.im) = {0, 0};
      break;
    default:;
  }
}
TEST(ArraysFunctions, ProductsAndQuotientsOfComplex) {
  compare<cquad>(
      "cqmul",
      [](std::ptrdiff_t n, const cquad* x, const cquad* y, cquad* r) {
        return zorvikrt_array_cqmul(n, x, 1, y, 1, r, 1);
      },
      [](const cquad& x, const cquad& y) { return times(x, y); }, adjust_parts);
  compare<cquad>(
      "cqdiv",
      [](std::ptrdiff_t n, const cquad* x, const cquad* y, cquad* r) {
        return zorvikrt_array_cqdiv(n, x, 1, y, 1, r, 1);
      },
      [](const cquad& x, const cquad& y) { return over(x, y); }, adjust_parts);
}

/// Copies at the end of a page, or at the start of one, with nothing behind or before them.
template <class T>
T* placed(support::guarded& room, const std::vector<T>& values, bool at_the_end) {
  const auto* bytes = reinterpret_cast<const char*>(values.data());
  return reinterpret_cast<T*>(room.place({bytes, values.size() * sizeof(T)}, at_the_end));
}
TEST(ArraysFunctions, NothingBeyondTheArraysIsTouched) {
  support::guarded left(1 << 16), right(1 << 16), target(1 << 16);
  on_every_level([&](const std::string&) {
    for (const bool at_the_end : {false, true}) {
      for (std::ptrdiff_t n = 1; n <= 33; ++n) {
        const quad* const x = placed(left, drawn_array<quad>(n), at_the_end);
        quad* const r = placed(target, drawn_array<quad>(n), at_the_end);
        EXPECT_EQ(zorvikrt_array_tanl(n, x, 1, r, 1), 0);
        EXPECT_EQ(zorvikrt_array_logl(n, x, 1, r, 1), 0);
        const cquad* const z = placed(left, drawn_array<cquad>(n), at_the_end);
        const cquad* const w = placed(right, drawn_array<cquad>(n), at_the_end);
        EXPECT_EQ(zorvikrt_array_cqdiv(n, z, 1, w, 1,
                                       placed(target, drawn_array<cquad>(n), at_the_end), 1),
                  0);
      }
      for (std::ptrdiff_t n = 1; n <= 21; ++n) {
        const quad* const a = placed(left, drawn_array<quad>(n * n), at_the_end);
        const quad* const b = placed(right, drawn_array<quad>(n * n), at_the_end);
        quad* const c = placed(target, drawn_array<quad>(n * n), at_the_end);
        std::vector<std::int32_t> pivots(static_cast<std::size_t>(n));
        EXPECT_EQ(zorvikrt_qgemm('N', 'T', n, n, n, a[0], a, n, b, n, b[0], c, n), 0);
        EXPECT_EQ(zorvikrt_qtrsm('R', 'U', 'N', 'U', n, n, a[0], a, n, c, n), 0);
        EXPECT_EQ(zorvikrt_qgetrf(n, n, c, n, pivots.data()), 0);
      }
    }
  });
}

}  // namespace
}  // namespace arrays
