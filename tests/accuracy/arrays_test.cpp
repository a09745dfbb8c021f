// Linear algebra against MPFR: a product and the residuals of factorisations, exactly formed,
// within what one rounding of 2**-104 for each operation leaves.

#include <gtest/gtest.h>
#include <mpfr.h>
#include <zorvikrt/arrays.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using quad = zorvikrt_quad;

/// Sums of products, exact to 1000 bits, and of their magnitudes.
class exact_sum {
 public:
  exact_sum() {
    for (auto* value : {&sum_, &size_, &term_, &factor_}) mpfr_init2(*value, 1000);
    mpfr_set_zero(sum_, 1);
    mpfr_set_zero(size_, 1);
  }
  ~exact_sum() {
    for (auto* value : {&sum_, &size_, &term_, &factor_}) mpfr_clear(*value);
  }
  exact_sum(const exact_sum&) = delete;
  exact_sum& operator=(const exact_sum&) = delete;

  void add(quad a, quad b, bool negative = false) {
    set(term_, a);
    set(factor_, b);
    mpfr_mul(term_, term_, factor_, MPFR_RNDN);
    (negative ? mpfr_sub : mpfr_add)(sum_, sum_, term_, MPFR_RNDN);
    mpfr_abs(term_, term_, MPFR_RNDN);
    mpfr_add(size_, size_, term_, MPFR_RNDN);
  }
  /// |sum| over the sum of magnitudes, in units of 2**-106.
  double relative() {
    if (mpfr_zero_p(size_)) return 0;
    mpfr_div(term_, sum_, size_, MPFR_RNDN);
    mpfr_mul_2si(term_, term_, 106, MPFR_RNDN);
    return std::abs(mpfr_get_d(term_, MPFR_RNDN));
  }

 private:
  static void set(mpfr_t to, quad q) {
    mpfr_set_d(to, q.hi, MPFR_RNDN);
    mpfr_add_d(to, to, q.lo, MPFR_RNDN);
  }
  mpfr_t sum_, size_, term_, factor_;
};

struct matrix {
  std::ptrdiff_t n;
  std::vector<quad> values;
  explicit matrix(std::ptrdiff_t order)
      : n(order), values(static_cast<std::size_t>(order * order)) {
    static std::mt19937_64 random(7);
    std::uniform_real_distribution<double> part(-1, 1);
    for (quad& q : values) {
      const double hi = part(random);
      q = {hi, 0x1p-54 * hi * part(random)};
    }
  }
  quad& operator()(std::ptrdiff_t i, std::ptrdiff_t j) {
    return values[static_cast<std::size_t>(i + j * n)];
  }
  quad* data() { return values.data(); }
};

constexpr quad one = {1, 0}, zero = {0, 0};
constexpr std::ptrdiff_t order = 60;
/// Each of up to 60 steps adds at most two products and sums, of about four units each.
constexpr double bound = 25;

TEST(ArraysAccuracy, ProductsOfMatrices) {
  matrix a(order), b(order), c(order);
  ASSERT_EQ(zorvikrt_qgemm('N', 'N', order, order, order, one, a.data(), order, b.data(), order,
                           zero, c.data(), order),
            0);
  double worst = 0;
  for (std::ptrdiff_t j = 0; j < order; ++j)
    for (std::ptrdiff_t i = 0; i < order; ++i) {
      exact_sum difference;
      for (std::ptrdiff_t l = 0; l < order; ++l) difference.add(a(i, l), b(l, j));
      difference.add(c(i, j), one, true);
      worst = std::max(worst, difference.relative());
    }
  EXPECT_LT(worst, bound);
  EXPECT_GT(worst, bound / 100);
}

TEST(ArraysAccuracy, ResidualsOfLuAndItsSystems) {
  matrix a(order), lu = a, b(order), x = b;
  std::vector<std::int32_t> pivots(order);
  ASSERT_EQ(zorvikrt_qgesv(order, order, lu.data(), order, pivots.data(), x.data(), order), 0);
  matrix permuted = a;
  for (std::ptrdiff_t k = 0; k < order; ++k)
    for (std::ptrdiff_t j = 0; j < order; ++j)
      std::swap(permuted(k, j), permuted(pivots[static_cast<std::size_t>(k)] - 1, j));
  double factors = 0, solutions = 0;
  for (std::ptrdiff_t j = 0; j < order; ++j)
    for (std::ptrdiff_t i = 0; i < order; ++i) {
      exact_sum product, residual;
      for (std::ptrdiff_t k = 0; k <= std::min(i, j); ++k)
        product.add(k == i ? one : lu(i, k), lu(k, j));
      product.add(permuted(i, j), one, true);
      for (std::ptrdiff_t k = 0; k < order; ++k) residual.add(a(i, k), x(k, j));
      residual.add(b(i, j), one, true);
      factors = std::max(factors, product.relative());
      solutions = std::max(solutions, residual.relative());
    }
  EXPECT_LT(factors, bound);
  EXPECT_LT(solutions, 4 * bound);  // the growth of the factors
  EXPECT_GT(factors, bound / 100);
}

TEST(ArraysAccuracy, ResidualsOfCholesky) {
  matrix a(order);
  for (std::ptrdiff_t j = 0; j < order; ++j) {
    for (std::ptrdiff_t i = 0; i < j; ++i) a(i, j) = a(j, i);
    a(j, j) = {static_cast<double>(order), 0};
  }
  matrix l = a;
  ASSERT_EQ(zorvikrt_qpotrf('L', order, l.data(), order), 0);
  double worst = 0;
  for (std::ptrdiff_t j = 0; j < order; ++j)
    for (std::ptrdiff_t i = j; i < order; ++i) {
      exact_sum product;
      for (std::ptrdiff_t k = 0; k <= j; ++k) product.add(l(i, k), l(j, k));
      product.add(a(i, j), one, true);
      worst = std::max(worst, product.relative());
    }
  EXPECT_LT(worst, bound);
  EXPECT_GT(worst, bound / 100);
}

}  // namespace
