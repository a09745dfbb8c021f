// REAL*16 as the scalar of Eigen, the real type of Boost.Math and an argument of fmt.

#include <gtest/gtest.h>

#include <Eigen/Dense>
#include <boost/math/quadrature/gauss_kronrod.hpp>
#include <boost/math/quadrature/tanh_sinh.hpp>
#include <boost/math/special_functions/zeta.hpp>
#include <boost/math/tools/roots.hpp>

#include "zorvikrt/boost.hpp"
#include "zorvikrt/eigen.hpp"
#include "zorvikrt/fmt.hpp"
#include "zorvikrt/zorvikrt.hpp"

using zorvikrt::complex32;
using zorvikrt::real16;
using namespace zorvikrt::literals;

namespace {

template <class Scalar>
using matrix = Eigen::Matrix<Scalar, Eigen::Dynamic, Eigen::Dynamic>;

template <class Scalar>
Scalar hilbert_error(int order) {
  matrix<Scalar> a(order, order);
  for (int i = 0; i < order; ++i)
    for (int j = 0; j < order; ++j) a(i, j) = Scalar(1) / Scalar(i + j + 1);
  const Eigen::Matrix<Scalar, Eigen::Dynamic, 1> ones = matrix<Scalar>::Ones(order, 1);
  return (a.fullPivLu().solve(a * ones) - ones).cwiseAbs().maxCoeff();
}

const real16 pi = 4 * atan(real16(1));

}  // namespace

// The condition number is 2e16: nothing is left of a double, half of the digits of a REAL*16.
TEST(Packages, EigenSolvesTheHilbertSystemOfOrder12) {
  EXPECT_GT(hilbert_error<double>(12), 1e-3);
  EXPECT_LT(hilbert_error<real16>(12), 1e-13);
}

TEST(Packages, EigenDecomposes) {
  const int n = 6;
  matrix<real16> a(n, n);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) a(i, j) = i == j ? 2 : std::abs(i - j) == 1 ? -1 : 0;
  const Eigen::SelfAdjointEigenSolver<matrix<real16>> solver(a);
  for (int k = 0; k < n; ++k)
    EXPECT_LT(abs(solver.eigenvalues()(k) - (2 - 2 * cos((k + 1) * pi / (n + 1)))), 0x1p-98);
  const matrix<real16> q = a.householderQr().householderQ();
  EXPECT_TRUE((q * q.transpose()).isIdentity());
  matrix<complex32> c = a.cast<complex32>();
  c(0, 1) = complex32(0, 1);
  const matrix<complex32> inverse = c.partialPivLu().inverse();
  EXPECT_LT((c * inverse - matrix<complex32>::Identity(n, n)).norm(), 0x1p-98);
  EXPECT_TRUE((real16(2) * c - c * 2).isZero());
}

TEST(Packages, BoostIntegratesAndFindsRoots) {
  using boost::math::quadrature::gauss_kronrod;
  using boost::math::quadrature::tanh_sinh;
  const auto semicircle = [](const real16& x) { return sqrt(1 - x * x); };
  EXPECT_LT(
      abs(tanh_sinh<real16>(15, 1e-270).integrate(semicircle, real16(-1), real16(1)) - pi / 2),
      0x1p-95);
  const auto bell = [](const real16& x) { return exp(-x * x); };
  const real16 whole =
      gauss_kronrod<real16, 61>::integrate(bell, real16(-9), real16(9), 12, 1e-28_r16);
  EXPECT_LT(abs(whole - sqrt(pi)), 0x1p-88);
  std::uintmax_t steps = 50;
  const auto kepler = [](const real16& e) {
    return std::make_pair(real16(e - 0.5 * sin(e) - 1), real16(1 - 0.5 * cos(e)));
  };
  const real16 e = boost::math::tools::newton_raphson_iterate(kepler, real16(1), real16(0),
                                                              real16(3), 100, steps);
  EXPECT_LT(abs(e - 0.5 * sin(e) - 1), 0x1p-100);
  EXPECT_LT(abs(boost::math::zeta(real16(2), zorvikrt::errors_as_values()) - pi * pi / 6), 0x1p-98);
}

TEST(Packages, FmtTakesReplacementFields) {
  const real16 x = 0.1_r16, half = -0.5;
  const complex32 z(1, 2);
#define WRITTEN(wanted, ...) EXPECT_EQ(fmt::format(__VA_ARGS__), wanted);
#define REFUSED(wrong) \
  EXPECT_THROW((void)fmt::format(fmt::runtime(wrong), x, "text"), fmt::format_error) << wrong;
#include "format_cases.inc"
}
