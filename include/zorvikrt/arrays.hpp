/** Whole arrays of real16 and complex32 in C++20: library zorvikrt_arrays.
 *
 *      std::vector<zorvikrt::real16> x(n), y(n);
 *      zorvikrt::real16 s = zorvikrt::arrays::dot(x, y);
 *      zorvikrt::arrays::matrix a(n, n), b(n, 1);
 *      zorvikrt::arrays::solve(a, b);
 *
 *  Vectors are any contiguous range: std::vector, std::array, std::span, std::valarray, an array.
 *  Bits and order of operations are those of zorvikrt/arrays.h. A bad argument throws
 *  std::invalid_argument with its number.
 */
#ifndef ZORVIKRT_ARRAYS_HPP
#define ZORVIKRT_ARRAYS_HPP

#if __cplusplus < 202002L
#error "zorvikrt/arrays.hpp needs C++20"
#endif

#include <zorvikrt/arrays.h>

#include <limits>
#include <ranges>
#include <span>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>
#include <zorvikrt/zorvikrt.hpp>

namespace zorvikrt::arrays {

/** A contiguous range of T. */
template <class Range, class T>
concept vector_of = std::ranges::contiguous_range<Range> && std::ranges::sized_range<Range> &&
    std::same_as<std::ranges::range_value_t<Range>, T>;
template <class Range>
concept numbers = vector_of<Range, real16> || vector_of<Range, complex32>;

namespace detail {

inline int checked(const char* routine, int info) {
  if (info < 0)
    throw std::invalid_argument(std::string(routine) + ": argument " + std::to_string(-info) +
                                " is bad");
  return info;
}
template <class Range>
std::ptrdiff_t length_of(const Range& x) {
  return static_cast<std::ptrdiff_t>(std::ranges::size(x));
}
template <class X, class Y>
std::ptrdiff_t same_size(const char* routine, const X& x, const Y& y) {
  if (length_of(x) != length_of(y))
    throw std::invalid_argument(std::string(routine) + ": the sizes differ");
  return length_of(x);
}

/** The elements as the library takes them. */
template <class Range>
auto elements(Range& x) {
  using element = std::remove_pointer_t<decltype(std::ranges::data(x))>;
  if constexpr (std::is_same_v<std::remove_const_t<element>, complex32>) {
    static_assert(sizeof(complex32) == sizeof(zorvikrt_cquad));
    using given =
        std::conditional_t<std::is_const_v<element>, const zorvikrt_cquad, zorvikrt_cquad>;
    return reinterpret_cast<given*>(std::ranges::data(x));
  } else {
    return std::ranges::data(x);
  }
}

}  // namespace detail

/** Sum of x, in 16 partial sums. */
template <vector_of<real16> X>
real16 sum(const X& x) {
  real16 s;
  detail::checked("sum", zorvikrt_qsum(detail::length_of(x), detail::elements(x), 1, &s));
  return s;
}
template <vector_of<complex32> X>
complex32 sum(const X& x) {
  zorvikrt_cquad s;
  detail::checked("sum", zorvikrt_xsum(detail::length_of(x), detail::elements(x), 1, &s));
  return s;
}

/** Sum of x * y, in 16 partial sums. */
template <vector_of<real16> X, vector_of<real16> Y>
real16 dot(const X& x, const Y& y) {
  real16 s;
  detail::checked("dot", zorvikrt_qdot(detail::same_size("dot", x, y), detail::elements(x), 1,
                                       detail::elements(y), 1, &s));
  return s;
}
template <vector_of<complex32> X, vector_of<complex32> Y>
complex32 dot(const X& x, const Y& y) {
  zorvikrt_cquad s;
  detail::checked("dot", zorvikrt_xdotu(detail::same_size("dot", x, y), detail::elements(x), 1,
                                        detail::elements(y), 1, &s));
  return s;
}

/** Euclidean norm. */
template <numbers X>
real16 norm(const X& x) {
  real16 s;
  if constexpr (vector_of<X, real16>)
    detail::checked("norm", zorvikrt_qnrm2(detail::length_of(x), detail::elements(x), 1, &s));
  else
    detail::checked("norm", zorvikrt_xnrm2(detail::length_of(x), detail::elements(x), 1, &s));
  return s;
}

/** y = y + alpha * x. */
template <vector_of<real16> X, vector_of<real16> Y>
void axpy(real16 alpha, const X& x, Y&& y) {
  detail::checked("axpy", zorvikrt_qaxpy(detail::same_size("axpy", x, y), alpha,
                                         detail::elements(x), 1, detail::elements(y), 1));
}
template <vector_of<complex32> X, vector_of<complex32> Y>
void axpy(complex32 alpha, const X& x, Y&& y) {
  detail::checked("axpy", zorvikrt_xaxpy(detail::same_size("axpy", x, y), alpha,
                                         detail::elements(x), 1, detail::elements(y), 1));
}

/** Runs one of the routines zorvikrt_array_<stem> over whole ranges:
 *  over_elements(zorvikrt_array_qmul, result, x, y). */
template <class Routine, class Result, class... X>
void over_elements(Routine routine, Result&& result, const X&... x) {
  (detail::same_size("over_elements", result, x), ...);
  const auto arguments = std::tuple_cat(std::tuple(detail::length_of(result)),
                                        std::tuple(detail::elements(x), std::ptrdiff_t{1})...,
                                        std::tuple(detail::elements(result), std::ptrdiff_t{1}));
  detail::checked("over_elements", std::apply(routine, arguments));
}

/** A matrix in columns, all zeros at first. */
class matrix {
 public:
  matrix(std::ptrdiff_t rows, std::ptrdiff_t columns)
      : rows_(rows), columns_(columns), values_(static_cast<std::size_t>(rows * columns)) {}

  std::ptrdiff_t rows() const { return rows_; }
  std::ptrdiff_t columns() const { return columns_; }
  std::ptrdiff_t leading() const { return rows_ > 0 ? rows_ : 1; }
  real16* data() { return values_.data(); }
  const real16* data() const { return values_.data(); }
  real16& operator()(std::ptrdiff_t i, std::ptrdiff_t j) { return values_[at(i, j)]; }
  const real16& operator()(std::ptrdiff_t i, std::ptrdiff_t j) const { return values_[at(i, j)]; }
  std::span<real16> column(std::ptrdiff_t j) {
    return {data() + j * rows_, static_cast<std::size_t>(rows_)};
  }

  /** By gemm. */
  friend matrix operator*(const matrix& a, const matrix& b) {
    if (a.columns_ != b.rows_) throw std::invalid_argument("matrix: the shapes do not fit");
    matrix c(a.rows_, b.columns_);
    detail::checked("gemm", zorvikrt_qgemm('N', 'N', a.rows_, b.columns_, a.columns_, real16(1),
                                           a.data(), a.leading(), b.data(), b.leading(), real16(0),
                                           c.data(), c.leading()));
    return c;
  }

 private:
  std::size_t at(std::ptrdiff_t i, std::ptrdiff_t j) const {
    return static_cast<std::size_t>(i + j * rows_);
  }
  std::ptrdiff_t rows_, columns_;
  std::vector<real16> values_;
};

/** The solution of a * x = b by LU factorisation. Throws std::domain_error for a zero pivot. */
inline matrix solve(matrix a, matrix b) {
  std::vector<std::int32_t> pivots(static_cast<std::size_t>(a.rows()));
  if (a.rows() != a.columns() || a.rows() != b.rows())
    throw std::invalid_argument("solve: the shapes do not fit");
  const int info =
      detail::checked("solve", zorvikrt_qgesv(a.rows(), b.columns(), a.data(), a.leading(),
                                              pivots.data(), b.data(), b.leading()));
  if (info > 0) throw std::domain_error("solve: pivot " + std::to_string(info) + " is zero");
  return b;
}

}  // namespace zorvikrt::arrays

#ifdef _OPENMP
/* Reductions of OpenMP over real16 and complex32. Their order is that of the threads: for sums that
 * do not depend on it, use zorvikrt::arrays::sum. */
namespace zorvikrt {
#pragma omp declare reduction(+ : real16 : omp_out = omp_out + omp_in) initializer(omp_priv = real16(0))
#pragma omp declare reduction(* : real16 : omp_out = omp_out * omp_in) initializer(omp_priv = real16(1))
#pragma omp declare reduction(max:real16                                       \
                              : omp_out = omp_in > omp_out ? omp_in : omp_out) \
    initializer(omp_priv = std::numeric_limits <real16>::lowest())
#pragma omp declare reduction(min:real16                                       \
                              : omp_out = omp_in < omp_out ? omp_in : omp_out) \
    initializer(omp_priv = std::numeric_limits <real16>::max())
#pragma omp declare reduction(+ : complex32 : omp_out = omp_out + omp_in) \
    initializer(omp_priv = complex32(real16(0)))
#pragma omp declare reduction(* : complex32 : omp_out = omp_out * omp_in) \
    initializer(omp_priv = complex32(real16(1)))
}  // namespace zorvikrt
#endif

#endif
