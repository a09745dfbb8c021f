/** Eigen with REAL*16 and COMPLEX*32 as scalars:
 *
 *      Eigen::Matrix<zorvikrt::real16, Eigen::Dynamic, Eigen::Dynamic> a;
 *
 *  Eigenvalues of matrices that are not symmetric are std::complex<real16> in Eigen.
 */
#ifndef ZORVIKRT_EIGEN_HPP
#define ZORVIKRT_EIGEN_HPP

#include <Eigen/Core>
#include <zorvikrt/complex_functions.hpp>
#include <zorvikrt/limits.hpp>
#include <zorvikrt/text.hpp>

namespace Eigen {

template <>
struct NumTraits<zorvikrt::real16> : GenericNumTraits<zorvikrt::real16> {
  enum { RequireInitialization = 0, ReadCost = 2, AddCost = 13, MulCost = 20 };
  /** What isApprox and its kin let differ: 2**-93. */
  static constexpr Real dummy_precision() { return {0x1p-93, 0}; }
};

template <>
struct NumTraits<zorvikrt::complex32> : GenericNumTraits<zorvikrt::complex32> {
  using Real = zorvikrt::real16;
  enum { IsComplex = 1, RequireInitialization = 0, ReadCost = 4, AddCost = 26, MulCost = 106 };
  static constexpr Real epsilon() { return NumTraits<Real>::epsilon(); }
  static constexpr Real dummy_precision() { return NumTraits<Real>::dummy_precision(); }
  static constexpr int digits10() { return NumTraits<Real>::digits10(); }
};

// Products and sums of one with the other.
template <class Operation>
struct ScalarBinaryOpTraits<zorvikrt::complex32, zorvikrt::real16, Operation> {
  using ReturnType = zorvikrt::complex32;
};
template <class Operation>
struct ScalarBinaryOpTraits<zorvikrt::real16, zorvikrt::complex32, Operation> {
  using ReturnType = zorvikrt::complex32;
};

}  // namespace Eigen

#endif
