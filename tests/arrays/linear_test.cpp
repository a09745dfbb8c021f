// Linear algebra against its definition as plain loops over the entries, on levels and threads.

#include <algorithm>
#include <thread>

#include "arrays.hpp"

namespace arrays {
namespace {

quad one(quad) { return {1, 0}; }
cquad one(cquad) { return {{1, 0}, {0, 0}}; }
template <class T>
bool is(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// A scalar that stands for a rule, by its image: zeros of either sign count.
bool is_number(const quad& a, double x) {
  return (a.hi == x && support::bits(a.hi) << 1 == support::bits(x) << 1) &&
         support::bits(a.lo) << 1 == 0;
}
bool is_number(const cquad& a, double x) { return is_number(a.re, x) && is_number(a.im, 0); }

// --- Definitions -------------------------------------------------------------------------------

template <class T>
T sum_of(const std::vector<T>& terms) {
  T s[16] = {};
  for (std::size_t i = 0; i < terms.size(); ++i) s[i % 16] = plus(s[i % 16], terms[i]);
  for (std::size_t half = 8; half > 0; half /= 2)
    for (std::size_t j = 0; j < half; ++j) s[j] = plus(s[j], s[j + half]);
  return s[0];
}

/// A matrix with room around it.
template <class T>
struct matrix {
  std::ptrdiff_t rows, columns, leading;
  std::vector<T> values;
  matrix(std::ptrdiff_t m, std::ptrdiff_t n, int special)
      : rows(m),
        columns(n),
        leading(m + 1 + below(3)),
        values(drawn_array<T>(leading * n + 1, special)) {}
  T& operator()(std::ptrdiff_t i, std::ptrdiff_t j) {
    return values[static_cast<std::size_t>(i + j * leading)];
  }
  T* data() { return values.data(); }
};
template <class T>
T operated(matrix<T>& a, char trans, std::ptrdiff_t i, std::ptrdiff_t j) {
  return trans == 'N' ? a(i, j) : trans == 'T' ? a(j, i) : conjugate(a(j, i));
}
template <class T>
T scaled(const T& factor, const T& x) {
  return is_number(factor, 1) ? x : times(factor, x);
}
template <class T>
T by_beta(const T& beta, const T& x) {
  return is_number(beta, 0) ? T{} : scaled(beta, x);
}

template <class T, class Written>
void multiply(char transa, char transb, std::ptrdiff_t k, T alpha, matrix<T>& a, matrix<T>& b,
              T beta, matrix<T>& c, Written written) {
  for (std::ptrdiff_t j = 0; j < c.columns; ++j) {
    std::vector<T> factors;
    for (std::ptrdiff_t l = 0; l < k && !is_number(alpha, 0); ++l)
      factors.push_back(scaled(alpha, operated(b, transb, l, j)));
    for (std::ptrdiff_t i = 0; i < c.rows; ++i) {
      if (!written(i, j)) continue;
      c(i, j) = by_beta(beta, c(i, j));
      for (std::size_t l = 0; l < factors.size(); ++l)
        c(i, j) = plus(c(i, j),
                       times(factors[l], operated(a, transa, i, static_cast<std::ptrdiff_t>(l))));
    }
  }
}
const auto everywhere = [](std::ptrdiff_t, std::ptrdiff_t) { return true; };

template <class T>
void substitute(char side, char uplo, char trans, char diag, T alpha, matrix<T>& a, matrix<T>& b) {
  const bool left = side == 'L', upward = ((uplo == 'L') == (trans == 'N')) != left;
  const std::ptrdiff_t order = left ? b.rows : b.columns, others = left ? b.columns : b.rows;
  for (std::ptrdiff_t o = 0; o < others; ++o) {
    const auto x = [&](std::ptrdiff_t i) -> T& { return left ? b(i, o) : b(o, i); };
    for (std::ptrdiff_t i = 0; i < order; ++i) x(i) = by_beta(alpha, x(i));
    for (std::ptrdiff_t step = 0; step < order; ++step) {
      const std::ptrdiff_t k = upward ? order - 1 - step : step;
      if (diag == 'N') x(k) = over(x(k), operated(a, trans, k, k));
      for (std::ptrdiff_t i = upward ? 0 : k + 1; i < (upward ? k : order); ++i) {
        const T g = left ? operated(a, trans, i, k) : operated(a, trans, k, i);
        x(i) = plus(x(i), left ? times(minus(x(k)), g) : times(minus(g), x(k)));
      }
    }
  }
}

template <class T>
int eliminate(matrix<T>& a, std::vector<std::int32_t>& pivots) {
  int info = 0;
  for (std::ptrdiff_t k = 0; k < std::min(a.rows, a.columns); ++k) {
    std::ptrdiff_t pivot = 0;
    iamax<T>(a.rows - k, &a(k, k), 1, &pivot);
    pivot += k - 1;
    pivots[static_cast<std::size_t>(k)] = static_cast<std::int32_t>(pivot + 1);
    for (std::ptrdiff_t j = 0; j < a.columns; ++j) std::swap(a(k, j), a(pivot, j));
    const double size = size_of(a(k, k)).hi;
    const bool usable = size < 0 || size > 0;
    if (!usable && info == 0) info = static_cast<int>(k + 1);
    for (std::ptrdiff_t i = k + 1; i < a.rows; ++i) {
      if (usable) a(i, k) = over(a(i, k), a(k, k));
      for (std::ptrdiff_t j = k + 1; j < a.columns; ++j)
        a(i, j) = plus(a(i, j), times(minus(a(k, j)), a(i, k)));
    }
  }
  return info;
}

template <class T>
int cholesky(matrix<T>& a, bool lower) {
  const auto at = [&](std::ptrdiff_t i, std::ptrdiff_t j) -> T& {
    return lower ? a(i, j) : a(j, i);
  };
  for (std::ptrdiff_t j = 0; j < a.columns; ++j) {
    for (std::ptrdiff_t i = j; i < a.rows; ++i)
      for (std::ptrdiff_t k = 0; k < j; ++k)
        at(i, j) = plus(at(i, j), times(minus(conjugate(at(j, k))), at(i, k)));
    if (!(real_part(at(j, j)).hi > 0)) return static_cast<int>(j + 1);
    at(j, j) = root(at(j, j));
    for (std::ptrdiff_t i = j + 1; i < a.rows; ++i) at(i, j) = over(at(i, j), at(j, j));
  }
  return 0;
}

/// A Hermitian matrix with a heavy diagonal.
template <class T>
matrix<T> positive(std::ptrdiff_t n) {
  matrix<T> a(n, n, 0);
  for (std::ptrdiff_t j = 0; j < n; ++j) {
    for (std::ptrdiff_t i = 0; i < j; ++i) a(i, j) = conjugate(a(j, i));
    a(j, j) = {};
    const_cast<quad&>(real_part(a(j, j))).hi = 1e5 + static_cast<double>(j);
  }
  return a;
}

// --- Tests -------------------------------------------------------------------------------------

template <class T>
class ArraysLinear : public ::testing::Test {};
using elements = ::testing::Types<quad, cquad>;
TYPED_TEST_SUITE(ArraysLinear, elements);

TYPED_TEST(ArraysLinear, SumsFollowTheirOrder) {
  using T = TypeParam;
  on_every_level([](const std::string& level) {
    for (std::ptrdiff_t n : {0, 1, 7, 15, 16, 17, 33, 67, 511, 512, 513, 700, 1200})
      for (int special : {0, 0, 1, 30}) {
        const std::ptrdiff_t incx = below(4) - 1;
        const auto x = drawn_array<T>(2 * n + 1, special), y = drawn_array<T>(n + 1, special);
        std::vector<T> terms, products, conjugates;
        std::vector<quad> sizes, squares;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const T e = x[static_cast<std::size_t>(incx < 0 ? n - 1 - i : i * incx)];
          terms.push_back(e);
          products.push_back(times(e, y[static_cast<std::size_t>(i)]));
          conjugates.push_back(times(conjugate(e), y[static_cast<std::size_t>(i)]));
          sizes.push_back(size_of(e));
          quad parts[2];
          std::memcpy(parts, &e, sizeof e);
          for (std::size_t p = 0; p < sizeof e / sizeof(quad); ++p)
            squares.push_back(times(parts[p], parts[p]));
        }
        T got;
        quad size;
        ASSERT_EQ(sum<T>(n, x.data(), incx, &got), 0);
        EXPECT_TRUE(is(got, sum_of(terms))) << level << n;
        if constexpr (std::is_same_v<T, quad>) {
          ASSERT_EQ(zorvikrt_qdot(n, x.data(), incx, y.data(), 1, &got), 0);
        } else {
          ASSERT_EQ(zorvikrt_xdotc(n, x.data(), incx, y.data(), 1, &got), 0);
          EXPECT_TRUE(is(got, sum_of(conjugates))) << level << n;
          ASSERT_EQ(zorvikrt_xdotu(n, x.data(), incx, y.data(), 1, &got), 0);
        }
        EXPECT_TRUE(is(got, sum_of(products))) << level << n;
        ASSERT_EQ(asum<T>(n, x.data(), incx, &size), 0);
        EXPECT_TRUE(is(size, sum_of(sizes))) << level << n;
        if (special != 0) continue;
        ASSERT_EQ(nrm2<T>(n, x.data(), incx, &size), 0);
        EXPECT_TRUE(is(size, n == 0 ? quad{0, 0} : root(sum_of(squares)))) << level << n;
      }
  });
}

TYPED_TEST(ArraysLinear, NormsScaleAndLargestElements) {
  using T = TypeParam;
  auto x = drawn_array<T>(50);
  const auto set = [&](std::size_t i, double hi, double lo) {
    x[i] = {};
    const_cast<quad&>(real_part(x[i])) = {hi, lo};
  };
  for (std::size_t i = 0; i < 50; ++i) set(i, 0x1p900, 0);
  quad norm;
  nrm2<T>(49, x.data(), 1, &norm);
  EXPECT_TRUE(is(norm, quad{7 * 0x1p900, 0}));
  for (std::size_t i = 0; i < 50; ++i) set(i, -0x1p-800, 0);
  nrm2<T>(49, x.data(), 1, &norm);
  EXPECT_TRUE(is(norm, quad{7 * 0x1p-800, 0}));
  for (std::size_t i = 0; i < 50; ++i) set(i, i % 2 != 0 ? 0x1p-1060 : 0, 0);
  nrm2<T>(50, x.data(), 1, &norm);
  EXPECT_TRUE(is(norm, quad{5 * 0x1p-1060, 0}));
  set(3, NAN, 0);
  set(20, -8, 0x1p-60);
  set(30, 8, 0x1p-70);
  set(31, -8, -0x1p-60);
  set(40, 8, 0x1p-60);
  std::ptrdiff_t number = -1;
  iamax<T>(50, x.data(), 1, &number);
  EXPECT_EQ(number, 32);
  iamax<T>(50, x.data(), -1, &number);
  EXPECT_EQ(number, 10);
  iamax<T>(0, x.data(), 1, &number);
  EXPECT_EQ(number, 0);
  iamax<T>(5, &x[3], 0, &number);
  EXPECT_EQ(number, 1);
}

TYPED_TEST(ArraysLinear, VectorsAndMatrices) {
  using T = TypeParam;
  for (int round = 0; round < 60; ++round) {
    const int special = round % 3 * 8;
    const std::ptrdiff_t m = below(80), n = round % 10 == 0 ? 300 : below(20);
    const char trans = "NTC"[below(3)];
    const T alpha = below(5) == 0 ? one(T{}) : below(6) == 0 ? T{} : drawn<T>(special);
    const T beta = below(4) == 0 ? T{} : below(4) == 0 ? one(T{}) : drawn<T>(special);
    matrix<T> a(m, n, special), x(trans == 'N' ? n : m, 1, special),
        y(trans == 'N' ? m : n, 1, special), product = y;
    multiply(trans, 'N', x.rows, alpha, a, x, beta, product, everywhere);
    matrix<T> u(m, 1, special), v(n, 1, special), updated = a, conjugates = v, scaled_by = u;
    multiply('N', 'T', 1, alpha, u, v, one(T{}), updated, everywhere);
    for (T& e : conjugates.values) e = conjugate(e);
    for (std::ptrdiff_t i = 0; i < m; ++i) scaled_by(i, 0) = by_beta(beta, u(i, 0));
    on_every_level([&](const std::string& level) {
      matrix<T> z = y, w = u, b = a;
      ASSERT_EQ(gemv<T>(trans, m, n, alpha, a.data(), a.leading, x.data(), 1, beta, z.data(), 1),
                0);
      ASSERT_TRUE(same(z.values, product.values, level + " gemv " + trans));
      if constexpr (std::is_same_v<T, quad>) {
        ASSERT_EQ(zorvikrt_qger(m, n, alpha, u.data(), 1, v.data(), 1, b.data(), b.leading), 0);
      } else {
        ASSERT_EQ(zorvikrt_xgeru(m, n, alpha, u.data(), 1, v.data(), 1, b.data(), b.leading), 0);
        ASSERT_TRUE(same(b.values, updated.values, level + " geru"));
        b = a;
        ASSERT_EQ(
            zorvikrt_xgerc(m, n, alpha, u.data(), 1, conjugates.data(), 1, b.data(), b.leading), 0);
      }
      ASSERT_TRUE(same(b.values, updated.values, level + " ger"));
      ASSERT_EQ(scal<T>(m, beta, w.data(), 1), 0);
      ASSERT_TRUE(same(w.values, scaled_by.values, level + " scal"));
    });
  }
}

TYPED_TEST(ArraysLinear, ProductsOfMatrices) {
  using T = TypeParam;
  for (int round = 0; round < 26; ++round) {
    const bool long_ones = round % 13 == 0;  // beyond a block
    const int special = long_ones ? 0 : round % 3;
    const std::ptrdiff_t m = long_ones ? 101 : below(40), n = long_ones ? 99 : below(30),
                         k = long_ones ? 131 : below(40);
    const char transa = "NTC"[below(3)], transb = "NTC"[below(3)], uplo = "LU"[below(2)];
    const T alpha = below(3) == 0 ? one(T{}) : drawn<T>(), beta = below(4) == 0   ? T{}
                                                                  : below(4) == 0 ? one(T{})
                                                                                  : drawn<T>();
    matrix<T> a(transa == 'N' ? m : k, transa == 'N' ? k : m, special),
        b(transb == 'N' ? k : n, transb == 'N' ? n : k, special), c(m, n, special),
        product = c, s(m, m, special), square = s;
    multiply(transa, transb, k, alpha, a, b, beta, product, everywhere);
    const char along = transa == 'N' ? 'N' : 'T';
    multiply(along, along == 'N' ? 'T' : 'N', k, alpha, a, a, beta, square,
             [&](auto i, auto j) { return uplo == 'L' ? i >= j : i <= j; });
    on_every_level([&](const std::string& level) {
      matrix<T> d = c, t = s;
      ASSERT_EQ(gemm<T>(transa, transb, m, n, k, alpha, a.data(), a.leading, b.data(), b.leading,
                        beta, d.data(), d.leading),
                0);
      ASSERT_TRUE(same(d.values, product.values, level + " gemm " + transa + transb));
      ASSERT_EQ(syrk<T>(uplo, along, m, k, alpha, a.data(), a.leading, beta, t.data(), t.leading),
                0);
      ASSERT_TRUE(same(t.values, square.values, level + " syrk " + uplo + along));
    });
  }
}

TYPED_TEST(ArraysLinear, TriangularSystems) {
  using T = TypeParam;
  for (int round = 0; round < 48; ++round) {
    const char side = "LR"[round % 2], uplo = "LU"[round / 2 % 2], trans = "NTC"[round / 4 % 3],
               diag = "NU"[below(2)];
    const std::ptrdiff_t m = below(70), n = below(70), order = side == 'L' ? m : n;
    const int special = round % 3 == 0 ? 1 : 0;
    const T alpha = below(3) == 0 ? one(T{}) : drawn<T>();
    matrix<T> a(order, order, special), b(m, n, special), solution = b;
    substitute(side, uplo, trans, diag, alpha, a, solution);
    on_every_level([&](const std::string& level) {
      matrix<T> x = b;
      ASSERT_EQ(
          trsm<T>(side, uplo, trans, diag, m, n, alpha, a.data(), a.leading, x.data(), x.leading),
          0);
      ASSERT_TRUE(same(x.values, solution.values, level + " trsm " + side + uplo + trans + diag));
    });
  }
}

TYPED_TEST(ArraysLinear, LuAndItsSystems) {
  using T = TypeParam;
  for (int round = 0; round < 15; ++round) {
    const std::ptrdiff_t n = below(75), m = round % 4 == 0 ? below(75) : n, nrhs = below(12);
    matrix<T> a(m, n, round % 5 == 4 ? 1 : 0);
    if (round % 7 == 6 && n > 5)
      for (std::ptrdiff_t i = 0; i < m; ++i) a(i, 5) = {};  // a singular one
    matrix<T> lu = a, b(n, nrhs, 0), solution = b;
    std::vector<std::int32_t> pivots(static_cast<std::size_t>(std::min(m, n))), got_pivots = pivots;
    const int info = eliminate(lu, pivots);
    const char trans = "NTC"[below(3)];
    const bool solvable = m == n && info == 0, plain = trans == 'N';
    if (solvable) {
      const auto exchange = [&](std::ptrdiff_t k) {
        for (std::ptrdiff_t j = 0; j < nrhs; ++j)
          std::swap(solution(k, j), solution(pivots[static_cast<std::size_t>(k)] - 1, j));
      };
      for (std::ptrdiff_t k = 0; k < n && plain; ++k) exchange(k);
      substitute('L', plain ? 'L' : 'U', trans, plain ? 'U' : 'N', one(T{}), lu, solution);
      substitute('L', plain ? 'U' : 'L', trans, plain ? 'N' : 'U', one(T{}), lu, solution);
      for (std::ptrdiff_t k = n; k-- > 0 && !plain;) exchange(k);
    }
    on_every_level([&](const std::string& level) {
      matrix<T> factors = a, x = b;
      ASSERT_EQ(getrf<T>(m, n, factors.data(), factors.leading, got_pivots.data()), info) << level;
      ASSERT_EQ(got_pivots, pivots) << level;
      ASSERT_TRUE(same(factors.values, lu.values, level + " getrf"));
      if (!solvable) return;
      ASSERT_EQ(getrs<T>(trans, n, nrhs, lu.data(), lu.leading, pivots.data(), x.data(), x.leading),
                0);
      ASSERT_TRUE(same(x.values, solution.values, level + " getrs " + trans));
    });
  }
}

TYPED_TEST(ArraysLinear, CholeskyAndItsSystems) {
  using T = TypeParam;
  for (int round = 0; round < 12; ++round) {
    const std::ptrdiff_t n = below(75), nrhs = below(12);
    const char uplo = "LU"[round % 2];
    matrix<T> a = positive<T>(n), b(n, nrhs, 0), solution = b;
    if (round % 5 == 1 && n > 2) const_cast<quad&>(real_part(a(2, 2))).hi = -1;
    matrix<T> factor = a;
    const int failed = cholesky(factor, uplo == 'L');
    if (failed == 0) {
      substitute('L', uplo, uplo == 'L' ? 'N' : 'C', 'N', one(T{}), factor, solution);
      substitute('L', uplo, uplo == 'L' ? 'C' : 'N', 'N', one(T{}), factor, solution);
    }
    on_every_level([&](const std::string& level) {
      matrix<T> got = a, x = b;
      ASSERT_EQ(posv<T>(uplo, n, nrhs, got.data(), got.leading, x.data(), x.leading), failed);
      if (failed != 0) return;
      ASSERT_TRUE(same(got.values, factor.values, level + " potrf " + uplo));
      ASSERT_TRUE(same(x.values, solution.values, level + " potrs " + uplo));
    });
  }
}

/// Threads of the test's own.
void run_on_threads(int threads, int parts, zorvikrt_part run, void* computation) {
  std::vector<std::thread> team;
  for (int t = 0; t < threads; ++t)
    team.emplace_back([=] {
      for (int i = t; i < parts; i += threads) run(computation, i);
    });
  for (std::thread& member : team) member.join();
}

TYPED_TEST(ArraysLinear, ThreadsDoNotChangeABit) {
  using T = TypeParam;
  const std::ptrdiff_t n = 150, length = 40000;
  matrix<T> a(n, n, 0), p = positive<T>(n), b(n, 40, 0);
  const auto x = drawn_array<T>(length), y = drawn_array<T>(length);
  const T alpha = drawn<T>();
  std::vector<T> first;
  for (int threads = 1; threads <= 8; ++threads) {
    ASSERT_EQ(zorvikrt_arrays_set_threads(threads, run_on_threads), 0);
    std::vector<std::int32_t> pivots(n);
    matrix<T> c = a, lu = a, solved = b, l = p;
    std::vector<T> z = y;
    gemm<T>('N', 'T', n, n, n, alpha, a.data(), a.leading, p.data(), p.leading, one(T{}), c.data(),
            c.leading);
    syrk<T>('U', 'T', n, n, alpha, a.data(), a.leading, one(T{}), c.data(), c.leading);
    gesv<T>(n, 40, lu.data(), lu.leading, pivots.data(), solved.data(), solved.leading);
    potrf<T>('L', n, l.data(), l.leading);
    axpy<T>(length, alpha, x.data(), 1, z.data(), 1);
    if constexpr (std::is_same_v<T, quad>)
      zorvikrt_array_qmul(length, x.data(), 1, z.data(), 1, z.data(), 1);
    std::vector<T> all;
    for (const auto* part : {&c.values, &lu.values, &solved.values, &l.values, &z})
      all.insert(all.end(), part->begin(), part->end());
    if (threads == 1) first = all;
    EXPECT_TRUE(same(all, first, std::to_string(threads) + " threads"));
  }
  EXPECT_EQ(zorvikrt_arrays_set_threads(0, nullptr), -1);
  zorvikrt_arrays_set_threads(1, nullptr);
}

TEST(ArraysArguments, AreNumberedAndNothingIsTouched) {
  auto room = drawn_array<quad>(64);
  const auto before = room;
  quad* const p = room.data();
  const quad a = {2, 0};
  std::int32_t pivots[4] = {1, 2, 9, 4};
  EXPECT_EQ(zorvikrt_qsum(-1, p, 1, p), -1);
  EXPECT_EQ(zorvikrt_qdot(1, p, 1, nullptr, 1, p), -4);
  EXPECT_EQ(zorvikrt_qaxpy(3, a, p, 1, p + 1, 1), -5);
  EXPECT_EQ(zorvikrt_qscal(3, a, p, 0), -4);
  EXPECT_EQ(zorvikrt_qgemv('X', 2, 2, a, p, 2, p + 8, 1, a, p + 10, 1), -1);
  EXPECT_EQ(zorvikrt_qgemv('N', 2, 2, a, p, 1, p + 8, 1, a, p + 10, 1), -6);
  EXPECT_EQ(zorvikrt_qgemv('N', 2, 2, a, p, 2, p + 8, 1, a, p + 1, 1), -10);
  EXPECT_EQ(zorvikrt_qger(2, 2, a, p, 1, p + 2, 1, p + 1, 2), -8);
  EXPECT_EQ(zorvikrt_qgemm('N', 'N', 2, 2, -1, a, p, 2, p + 8, 2, a, p + 16, 2), -5);
  EXPECT_EQ(zorvikrt_qgemm('N', 'T', 2, 3, 4, a, p, 2, p + 8, 2, a, p + 32, 2), -10);
  EXPECT_EQ(zorvikrt_qgemm('N', 'N', 2, 2, 2, a, p, 2, p + 8, 2, a, p + 10, 2), -12);
  EXPECT_EQ(zorvikrt_qsyrk('L', 'C', 2, 2, a, p, 2, a, p + 8, 2), -2);
  EXPECT_EQ(zorvikrt_qtrsm('L', 'L', 'N', 'N', 2, 2, a, p, 2, p + 3, 2), -10);
  EXPECT_EQ(zorvikrt_qgetrf(2, 2, nullptr, 2, pivots), -3);
  EXPECT_EQ(zorvikrt_qgetrs('N', 4, 1, p, 4, pivots, p + 20, 4), -6);
  EXPECT_EQ(zorvikrt_qpotrf('l', 2, p, 2), -1);
  EXPECT_EQ(zorvikrt_arrays_set_level("avx1024"), -1);
  EXPECT_TRUE(same(room, before, "operands"));
  // Side by side in one larger matrix is apart.
  EXPECT_EQ(zorvikrt_qgemm('N', 'N', 2, 2, 2, a, p, 8, p + 2, 8, a, p + 4, 8), 0);
}

TEST(ArraysLevel, TheEnvironmentNarrowsIt) {
  const char* const asked = std::getenv("ZORVIKRT_ARRAYS_LEVEL");
  if (asked == nullptr) GTEST_SKIP() << "run by the test arrays_environment";
  EXPECT_EQ(zorvikrt_arrays_level(), std::string("plain"));
}

}  // namespace
}  // namespace arrays
