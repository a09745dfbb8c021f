// The C++ header by itself: ranges of every kind, matrices, bad arguments, and OpenMP's reductions
// and threads.

#include <array>
#include <valarray>
#include <zorvikrt/arrays.hpp>

#include "arrays.hpp"

namespace arrays {
namespace {

namespace z = zorvikrt::arrays;
using zorvikrt::complex32;
using zorvikrt::real16;

bool same_bits(const real16& a, const real16& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(ArraysHeader, TakesContiguousRanges) {
  std::vector<real16> x;
  for (int i = 1; i <= 40; ++i) x.push_back(real16(1) / i);
  const std::valarray<real16> values(x.data(), x.size());
  std::array<real16, 40> result;
  real16 list[40] = {};
  z::over_elements(zorvikrt_array_qmul, result, x, values);
  z::axpy(real16(1), x, list);
  zorvikrt_quad dot;
  zorvikrt_qdot(40, x.data(), 1, x.data(), 1, &dot);
  EXPECT_TRUE(same_bits(z::sum(result), real16(dot)));
  EXPECT_TRUE(same_bits(z::dot(std::span(x), list), real16(dot)));
  EXPECT_TRUE(same_bits(z::norm(values), sqrt(real16(dot))));
  EXPECT_TRUE(same_bits(result[6], x[6] * x[6]));

  const std::vector<complex32> turns(7, complex32(real16(0), real16(1)));
  std::vector<complex32> y(7);
  z::axpy(complex32(real16(2)), turns, y);
  EXPECT_EQ(z::sum(y), complex32(real16(0), real16(14)));
  EXPECT_EQ(z::dot(turns, y), complex32(real16(-14)));
}

TEST(ArraysHeader, SolvesAndMultiplies) {
  constexpr int n = 8;
  z::matrix hilbert(n, n), solution(n, 2);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) hilbert(i, j) = real16(1) / (i + j + 1);
    solution(j, 0) = real16(j + 1);
    solution(j, 1) = real16(-j);
  }
  const z::matrix right = hilbert * solution, solved = z::solve(hilbert, right);
  EXPECT_EQ(right.rows(), n);
  EXPECT_EQ(right.columns(), 2);
  for (int j = 0; j < n; ++j) {
    EXPECT_LT(static_cast<double>(abs(solved(j, 0) - solution(j, 0))), 1e-19);  // condition 2e10
    EXPECT_LT(static_cast<double>(abs(solved(j, 1) - solution(j, 1))), 1e-19);
  }
  EXPECT_THROW(z::solve(z::matrix(2, 2), z::matrix(2, 1)), std::domain_error);
  EXPECT_THROW(z::solve(hilbert, z::matrix(2, 1)), std::invalid_argument);
  EXPECT_THROW(hilbert * z::matrix(2, 2), std::invalid_argument);
  EXPECT_THROW(z::dot(hilbert.column(0), solution.column(0).first(3)), std::invalid_argument);
  std::vector<real16> x(4);
  EXPECT_THROW(z::axpy(real16(1), std::span(x).first(3), std::span(x).last(3)),
               std::invalid_argument);
}

TEST(ArraysHeader, ReducesOverThreadsOfOpenMP) {
  for (int threads = 1; threads <= 8; ++threads) {
    real16 sum(0), product(1), largest(-1000), smallest(1000);
    complex32 steps(real16(0)), turns(real16(1));
#pragma omp parallel for num_threads(threads) schedule(static, 1) \
    reduction(+ : sum, steps) reduction(* : product, turns) reduction(max : largest) reduction(min : smallest)
    for (int i = 0; i < 100; ++i) {
      const real16 x = real16(i * 37 % 100) + real16(0x1p-60);  // low parts count
      sum += x;
      steps += complex32(x, -x);
      product *= real16(i % 2 != 0 ? -2 : 2);
      turns *= complex32(real16(0), real16(2));
      largest = x > largest ? x : largest;
      smallest = x < smallest ? x : smallest;
    }
    EXPECT_EQ(sum, real16(4950) + real16(100 * 0x1p-60)) << threads;
    EXPECT_EQ(steps, complex32(sum, -sum)) << threads;
    EXPECT_EQ(product, real16(0x1p100)) << threads;
    EXPECT_EQ(turns, complex32(real16(0x1p100))) << threads;
    EXPECT_EQ(largest, real16(99) + real16(0x1p-60)) << threads;
    EXPECT_EQ(smallest, real16(0x1p-60)) << threads;
  }
}

TEST(ArraysHeader, ThreadsOfOpenMPDoNotChangeABit) {
  constexpr std::ptrdiff_t n = 120, length = 50000;
  const auto x = drawn_array<quad>(length), y = drawn_array<quad>(length);
  std::vector<quad> first(length), first_product(n * n);
  for (int threads = 1; threads <= 8; ++threads) {
    ASSERT_EQ(zorvikrt_arrays_use_openmp(threads), 0);
    std::vector<quad> sums(length), product(n * n);
    ASSERT_EQ(zorvikrt_array_qadd(length, x.data(), 1, y.data(), 1, sums.data(), 1), 0);
    ASSERT_EQ(zorvikrt_qgemm('N', 'N', n, n, n, {1, 0}, x.data(), n, y.data(), n, {0, 0},
                             product.data(), n),
              0);
    if (threads == 1) {
      first = sums;
      first_product = product;
    }
    EXPECT_TRUE(same(sums, first, "qadd"));
    EXPECT_TRUE(same(product, first_product, "qgemm"));
  }
  zorvikrt_arrays_use_openmp(1);
}

}  // namespace
}  // namespace arrays
