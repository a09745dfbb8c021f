#pragma once

// What every call of the array library starts with: its arguments checked, the level, the
// floating-point state of the entries, and threads where the program has given some.

#include <zorvikrt/arrays.h>

#include <cstdint>

#include "arrays/kernels.hpp"

#define ZRT_API extern "C" __attribute__((visibility("default")))

namespace zrt::arrays {

/// The kernels of the level in use.
const kernels& active();
template <class T>
const linear_kernels<T>& linear();
template <>
inline const linear_kernels<quad>& linear<quad>() {
  return active().real;
}
template <>
inline const linear_kernels<cquad>& linear<cquad>() {
  return active().complex;
}

/// The state that the bits rest on, for the duration of a call or of a part that a thread runs.
class floating_point_state {
 public:
  floating_point_state();
  ~floating_point_state();
  floating_point_state(const floating_point_state&) = delete;
  floating_point_state& operator=(const floating_point_state&) = delete;

 private:
  std::uint32_t mxcsr_;
  std::uint16_t x87_word_;
};

int threads();

/// Runs body(0) to body(parts - 1) on the program's threads.
void run_parts(int parts, zorvikrt_part run, void* computation);
template <class Body>
void in_parts(int parts, const Body& body) {
  if (parts == 1) return body(0);
  run_parts(
      parts,
      [](void* computation, int number) {
        const floating_point_state state;
        (*static_cast<const Body*>(computation))(number);
      },
      const_cast<Body*>(&body));
}

/// n elements in runs that are long enough for a thread: body(first, count).
template <class Body>
void in_runs(index n, const Body& body) {
  constexpr index shortest = 4096;
  const index most = n / shortest;
  const int parts =
      most < 2 || threads() == 1 ? 1 : static_cast<int>(most < threads() ? most : threads());
  const auto one = [&](int part) {
    const index first = n / parts * part + (n % parts < part ? n % parts : part);
    body(first, n / parts + (part < n % parts));
  };
  in_parts(parts, one);
}

// --- Arguments ---------------------------------------------------------------------------------

/// Where elements of an array lie: `columns` vectors of `rows` elements each.
struct region {
  std::uintptr_t low, high;  // from the first byte to behind the last
  index step, size;          // of a vector, in bytes
  const void* first;
};
region region_of(index n, const void* x, index step, std::size_t size);
region region_of(index rows, index columns, const void* a, index leading, std::size_t size);
/// No element of the one shares memory with an element of the other, except the same with the same.
bool apart_or_equal(const region& a, const region& b);
bool apart(const region& a, const region& b);

/// Collects the first bad argument.
class arguments {
 public:
  arguments& require(int number, bool good) {
    if (!good && info_ == 0) info_ = -number;
    return *this;
  }
  arguments& size(int number, index n) { return require(number, n >= 0); }
  arguments& option(int number, char given, const char* allowed);
  template <class T>
  arguments& vector(int number, index n, const T* x) {
    return require(number, n <= 0 || x != nullptr);
  }
  /// A matrix and, as the next argument, its leading dimension.
  template <class T>
  arguments& matrix(int number, index rows, index columns, const T* a, index leading) {
    require(number, rows <= 0 || columns <= 0 || a != nullptr);
    return require(number + 1, leading >= (rows > 1 ? rows : 1));
  }
  bool bad() const { return info_ != 0; }
  int info() const { return info_; }

 private:
  int info_ = 0;
};

/// The array of a BLAS vector: element 0 first, whatever the sign of the stride.
template <class T>
array<T> from_first(index n, T* x, index step) {
  return {step < 0 && n > 0 ? x - (n - 1) * step : x, step};
}
template <class T>
view<T> from_first(index n, const T* x, index step) {
  return {step < 0 && n > 0 ? x - (n - 1) * step : x, step};
}

// --- Scalars ------------------------------------------------------------------------------------

/// By their images: with DAZ set, subnormals would compare as zeros.
inline bool is_zero(double x) { return __builtin_bit_cast(std::uint64_t, x) << 1 == 0; }
inline bool is_zero(const quad& x) { return is_zero(x.hi) && is_zero(x.lo); }
inline bool is_zero(const cquad& x) { return is_zero(x.re) && is_zero(x.im); }
inline bool is_one(const quad& x) { return x.hi == 1 && is_zero(x.lo); }
inline bool is_one(const cquad& x) { return is_one(x.re) && is_zero(x.im); }

/// |x|, for COMPLEX*32 |re| + |im|.
quad magnitude(const quad& x);
quad magnitude(const cquad& x);
/// Number, from 0, of the first element of largest magnitude; -1 for none.
template <class T>
index largest(index n, view<T> x);
/// Number, from 0, of the first or last of the smallest or largest elements by the order of qcmp,
/// to which infinities and NaNs compare unordered; a NaN counts only where there is nothing else.
/// -1 for none.
index extreme(index n, view<quad> x, bool smallest, bool last);

// --- Between the routines -----------------------------------------------------------------------
// All with checked arguments, inside a floating_point_state.

/// x = beta * x; for 1 nothing, for 0 zeros.
template <class T>
void scale(index n, const T& beta, array<T> x);
template <class T>
void scale(index rows, index columns, const T& beta, matrix<T> x);
/// product, in blocks and on threads.
template <class T>
void multiply(product<T> task);
/// triangle of any order.
template <class T>
void solve(triangle<T> task);

inline index least(index a, index b) { return a < b ? a : b; }
inline index most(index a, index b) { return a > b ? a : b; }

}  // namespace zrt::arrays
