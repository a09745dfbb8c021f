// What the array functions of the Fortran module run on, where it stands in the same program: the
// module's procedure takes the routines when this library is loaded.

#include "arrays/runtime.hpp"

namespace {

using namespace zrt::arrays;

template <class T>
using sum_routine = void (*)(index n, const T* x, T* s);
template <class T>
using dot_routine = void (*)(index n, const T* x, const T* y, T* s);
template <class T>
using multiply_routine = void (*)(index m, index n, index k, const T* a, const T* b, T* c);

/// The derived type array_routines of the module.
struct routines {
  sum_routine<quad> sum_q;
  sum_routine<cquad> sum_x;
  dot_routine<quad> dot_q;
  dot_routine<cquad> dot_x;
  multiply_routine<quad> multiply_q;
  multiply_routine<cquad> multiply_x;
  sum_routine<quad> norm_q;
  index (*extreme_q)(index n, const quad* x, int smallest, int last);
};

/// c = c + a b with the elements of a as the first factors: gemm takes those of its second matrix,
/// so this is the product of the transposes.
template <class T>
void multiply_in_order(index m, index n, index k, const T* a, const T* b, T* c) {
  const floating_point_state state;
  product<T> task{};
  task.rows = n;
  task.columns = m;
  task.depth = k;
  task.a = {b, k, 1};
  task.b = {a, m, 1};
  task.c = {c, m, 1};
  multiply(task);
}

constexpr routines all = {
    [](index n, const quad* x, quad* s) { zorvikrt_qsum(n, x, 1, s); },
    [](index n, const cquad* x, cquad* s) { zorvikrt_xsum(n, x, 1, s); },
    [](index n, const quad* x, const quad* y, quad* s) { zorvikrt_qdot(n, x, 1, y, 1, s); },
    [](index n, const cquad* x, const cquad* y, cquad* s) { zorvikrt_xdotc(n, x, 1, y, 1, s); },
    multiply_in_order<quad>,
    multiply_in_order<cquad>,
    [](index n, const quad* x, quad* s) { zorvikrt_qnrm2(n, x, 1, s); },
    [](index n, const quad* x, int smallest, int last) {
      const floating_point_state state;
      return extreme(n, {x, 1}, smallest != 0, last != 0) + 1;
    },
};

}  // namespace

extern "C" __attribute__((weak, visibility("default"))) void zorvikrt_fortran_take_arrays(
    const routines* given);

[[gnu::constructor]] static void hand_over() {
  if (zorvikrt_fortran_take_arrays != nullptr) zorvikrt_fortran_take_arrays(&all);
}
