// The array library beside loops over libqd and __float128, and its functions of REAL*8 and REAL*4
// beside loops over their entries and libmvec: one call is one routine over the size in the row's
// name.

#if defined(ZORVIKRT_BENCH_ARRAYS)

#include <quadmath.h>
#include <zorvikrt/arrays.h>

#include <memory>
#include <random>

#include "rows.hpp"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#if defined(ZORVIKRT_BENCH_QD)
#include <qd/dd_real.h>
#endif

namespace bench {
namespace {

inline __float128 exp(__float128 x) { return expq(x); }
inline __float128 log(__float128 x) { return logq(x); }
inline __float128 sin(__float128 x) { return sinq(x); }
inline __float128 tan(__float128 x) { return tanq(x); }
inline __float128 atan(__float128 x) { return atanq(x); }

using quad = zorvikrt_quad;
using cquad = zorvikrt_cquad;

template <class T>
std::vector<T> drawn(std::size_t n) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> part(1, 2);
  std::vector<T> values;
  for (std::size_t i = 0; i < n; ++i) values.push_back(static_cast<T>(part(random)));
  return values;
}
template <>
std::vector<quad> drawn<quad>(std::size_t n) {
  std::vector<quad> values;
  for (const double x : drawn<double>(n)) values.push_back({x, x * 0x1p-55});
  return values;
}

template <>
std::vector<cquad> drawn<cquad>(std::size_t n) {
  std::vector<cquad> values;
  for (const quad& x : drawn<quad>(n)) values.push_back({x, {x.hi / 2, x.lo / 2}});
  return values;
}

/// The loops that a program would write.
template <class T>
struct loops {
  static void add(int n, const T* x, const T* y, T* r) {
    for (int i = 0; i < n; ++i) r[i] = x[i] + y[i];
  }
  static void mul(int n, const T* x, const T* y, T* r) {
    for (int i = 0; i < n; ++i) r[i] = x[i] * y[i];
  }
  static void div(int n, const T* x, const T* y, T* r) {
    for (int i = 0; i < n; ++i) r[i] = x[i] / y[i];
  }
  static void exponential(int n, const T* x, const T*, T* r) {
    for (int i = 0; i < n; ++i) r[i] = exp(x[i]);
  }
  static void logarithm(int n, const T* x, const T*, T* r) {
    for (int i = 0; i < n; ++i) r[i] = log(x[i]);
  }
  static void sine(int n, const T* x, const T*, T* r) {
    for (int i = 0; i < n; ++i) r[i] = sin(x[i]);
  }
  static void tangent(int n, const T* x, const T*, T* r) {
    for (int i = 0; i < n; ++i) r[i] = tan(x[i]);
  }
  static void arctangent(int n, const T* x, const T*, T* r) {
    for (int i = 0; i < n; ++i) r[i] = atan(x[i]);
  }
  static void dot(int n, const T* x, const T* y, T* r) {
    T sum = x[0] * y[0];
    for (int i = 1; i < n; ++i) sum += x[i] * y[i];
    *r = sum;
  }
  static void axpy(int n, const T* x, const T* y, T* r) {
    for (int i = 0; i < n; ++i) r[i] = y[i] + x[0] * x[i];
  }
  static void gemm(int n, const T* a, const T* b, T* c) {
    for (int j = 0; j < n; ++j)
      for (int l = 0; l < n; ++l)
        for (int i = 0; i < n; ++i) c[i + j * n] += b[l + j * n] * a[i + l * n];
  }
  static void lu(int n, const T* from, const T*, T* a) {
    for (int i = 0; i < n * n; ++i) a[i] = from[i];
    for (int i = 0; i < n; ++i) a[i + i * n] += T(2.0) * n;  // no exchanges
    for (int k = 0; k < n; ++k) {
      for (int i = k + 1; i < n; ++i) a[i + k * n] /= a[k + k * n];
      for (int j = k + 1; j < n; ++j)
        for (int i = k + 1; i < n; ++i) a[i + j * n] -= a[k + j * n] * a[i + k * n];
    }
  }
};
struct arrays {
  static void add(int n, const quad* x, const quad* y, quad* r) {
    zorvikrt_array_qadd(n, x, 1, y, 1, r, 1);
  }
  static void mul(int n, const quad* x, const quad* y, quad* r) {
    zorvikrt_array_qmul(n, x, 1, y, 1, r, 1);
  }
  static void div(int n, const quad* x, const quad* y, quad* r) {
    zorvikrt_array_qdiv(n, x, 1, y, 1, r, 1);
  }
  static void exponential(int n, const quad* x, const quad*, quad* r) {
    zorvikrt_array_expl(n, x, 1, r, 1);
  }
  static void logarithm(int n, const quad* x, const quad*, quad* r) {
    zorvikrt_array_logl(n, x, 1, r, 1);
  }
  static void sine(int n, const quad* x, const quad*, quad* r) {
    zorvikrt_array_sinl(n, x, 1, r, 1);
  }
  static void tangent(int n, const quad* x, const quad*, quad* r) {
    zorvikrt_array_tanl(n, x, 1, r, 1);
  }
  static void arctangent(int n, const quad* x, const quad*, quad* r) {
    zorvikrt_array_atanl(n, x, 1, r, 1);
  }
  static void complex_mul(int n, const cquad* x, const cquad* y, cquad* r) {
    zorvikrt_array_cqmul(n, x, 1, y, 1, r, 1);
  }
  static void complex_div(int n, const cquad* x, const cquad* y, cquad* r) {
    zorvikrt_array_cqdiv(n, x, 1, y, 1, r, 1);
  }
  static void dot(int n, const quad* x, const quad* y, quad* r) { zorvikrt_qdot(n, x, 1, y, 1, r); }
  static void axpy(int n, const quad* x, const quad* y, quad* r) {
    __builtin_memcpy(r, y, sizeof *y * static_cast<std::size_t>(n));
    zorvikrt_qaxpy(n, x[0], x, 1, r, 1);
  }
  static void gemm(int n, const quad* a, const quad* b, quad* c) {
    zorvikrt_qgemm('N', 'N', n, n, n, {1, 0}, a, n, b, n, {1, 0}, c, n);
  }
  static void lu(int n, const quad* from, const quad*, quad* a) {
    static std::vector<std::int32_t> pivots(static_cast<std::size_t>(n));
    for (int i = 0; i < n * n; ++i) a[i] = from[i];
    for (int i = 0; i < n; ++i) a[i + i * n].hi += 2.0 * n;
    zorvikrt_qgetrf(n, n, a, n, pivots.data());
  }
};

template <class T>
void add_row(const char* name, const char* subject, int n, std::size_t size,
             void (*run)(int, const T*, const T*, T*)) {
  struct memory {
    std::vector<T> x, y, r;
  };
  auto data = std::make_shared<memory>(memory{drawn<T>(size), drawn<T>(size), drawn<T>(size)});
  rows().push_back({name, subject, 0, [=](long calls) {
                      for (long i = 0; i < calls; ++i) {
                        run(n, data->x.data(), data->y.data(), data->r.data());
                        asm volatile("" : : "r"(data->r.data()) : "memory");
                      }
                    }});
}
template <class T, class Routines>
void add_rows(const char* subject) {
  constexpr int n = 1000, order = 256, large = 500;
  add_row<T>("array_qadd_1000", subject, n, n, Routines::add);
  add_row<T>("array_qmul_1000", subject, n, n, Routines::mul);
  add_row<T>("array_qdiv_1000", subject, n, n, Routines::div);
  add_row<T>("array_expl_1000", subject, n, n, Routines::exponential);
  add_row<T>("array_logl_1000", subject, n, n, Routines::logarithm);
  add_row<T>("array_sinl_1000", subject, n, n, Routines::sine);
  add_row<T>("array_tanl_1000", subject, n, n, Routines::tangent);
  add_row<T>("array_atanl_1000", subject, n, n, Routines::arctangent);
  add_row<T>("qdot_1000", subject, n, n, Routines::dot);
  add_row<T>("qaxpy_1000", subject, n, n, Routines::axpy);
  add_row<T>("qgemm_256", subject, order, order * order, Routines::gemm);
  add_row<T>("qgetrf_500", subject, large, large * large, Routines::lu);
}

// --- Functions of REAL*8 and REAL*4 --------------------------------------------------------------

constexpr int reals = 1000;

/// A routine over elements of one operand or two, a loop over its entry, and libmvec's function at
/// the level in use.
template <class F>
struct function_rows {
  const char* name;
  double low, high;  // of the first operand; a second one lies in [0.1, 50]
  void (*avx2)(const F*, F*) = nullptr;
  void (*avx512)(const F*, F*) = nullptr;

  static std::vector<F> drawn(double from, double to) {
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> part(from, to);
    std::vector<F> values(reals + 16);  // the last vector is whole
    for (F& value : values) value = static_cast<F>(part(random));
    return values;
  }
  template <class Run>
  void add(const char* subject, Run run) const {
    struct memory {
      std::vector<F> x, y, r;
    };
    auto data = std::make_shared<memory>(memory{drawn(low, high), drawn(0.1, 50), drawn(0, 1)});
    rows().push_back({std::string("array_") + name + "_1000", subject, 0, [=](long calls) {
                        for (long i = 0; i < calls; ++i) {
                          run(data->x.data(), data->y.data(), data->r.data());
                          asm volatile("" : : "r"(data->r.data()) : "memory");
                        }
                      }});
  }
  using size = std::ptrdiff_t;
  void of(int (*routine)(size, const F*, size, F*, size), F (*entry)(F)) const {
    add(own, [=](const F* x, const F*, F* r) { routine(reals, x, 1, r, 1); });
    add("loop over the entry", [=](const F* x, const F*, F* r) {
      for (int i = 0; i < reals; ++i) r[i] = entry(x[i]);
    });
    const std::string level = zorvikrt_arrays_level();
    const auto peer = level == "avx2" ? avx2 : level == "avx512" ? avx512 : nullptr;
    if (peer != nullptr) add("libmvec", [=](const F* x, const F*, F* r) { peer(x, r); });
  }
  void of(int (*routine)(size, const F*, size, const F*, size, F*, size), F (*entry)(F, F)) const {
    add(own, [=](const F* x, const F* y, F* r) { routine(reals, x, 1, y, 1, r, 1); });
    add("loop over the entry", [=](const F* x, const F* y, F* r) {
      for (int i = 0; i < reals; ++i) r[i] = entry(x[i], y[i]);
    });
  }
};

#if defined(__x86_64__)
#define BENCH_LANES(isa, of, f, loads, stores, lanes, vector, type)         \
  extern "C" vector of(vector);                                             \
  [[gnu::target(isa)]] static void f(const type* x, type* r) {              \
    for (int i = 0; i < reals; i += lanes) stores(r + i, of(loads(x + i))); \
  }
#define BENCH_LIBMVEC(name)                                                                        \
  BENCH_LANES("avx2", _ZGVdN4v_##name, name##_avx2, _mm256_loadu_pd, _mm256_storeu_pd, 4, __m256d, \
              double)                                                                              \
  BENCH_LANES("avx2", _ZGVdN8v_##name##f, name##_avx2, _mm256_loadu_ps, _mm256_storeu_ps, 8,       \
              __m256, float)                                                                       \
  BENCH_LANES("avx512f", _ZGVeN8v_##name, name##_avx512, _mm512_loadu_pd, _mm512_storeu_pd, 8,     \
              __m512d, double)                                                                     \
  BENCH_LANES("avx512f", _ZGVeN16v_##name##f, name##_avx512, _mm512_loadu_ps, _mm512_storeu_ps,    \
              16, __m512, float)
BENCH_LIBMVEC(exp)
BENCH_LIBMVEC(log)
BENCH_LIBMVEC(log10)
BENCH_LIBMVEC(sin)
BENCH_LIBMVEC(cos)
BENCH_LIBMVEC(tan)
BENCH_LIBMVEC(asin)
BENCH_LIBMVEC(acos)
BENCH_LIBMVEC(atan)
#define BENCH_PEER(f) , f##_avx2, f##_avx512
#else
#define BENCH_PEER(f)
#endif

void add_real_rows() {
#define BENCH_FUNCTION(type, stem, low, high, ...) \
  function_rows<type>{#stem, low, high __VA_ARGS__}.of(zorvikrt_array_##stem, __zorvik_##stem);
  BENCH_FUNCTION(double, dexp, -20, 20, BENCH_PEER(exp))
  BENCH_FUNCTION(double, dlog, 1e-3, 1e3, BENCH_PEER(log))
  BENCH_FUNCTION(double, dlog10, 1e-3, 1e3, BENCH_PEER(log10))
  BENCH_FUNCTION(double, dsin, -30, 30, BENCH_PEER(sin))
  BENCH_FUNCTION(double, dcos, -30, 30, BENCH_PEER(cos))
  BENCH_FUNCTION(double, dtan, -30, 30, BENCH_PEER(tan))
  BENCH_FUNCTION(double, dasin, -1, 1, BENCH_PEER(asin))
  BENCH_FUNCTION(double, dacos, -1, 1, BENCH_PEER(acos))
  BENCH_FUNCTION(double, datan, -30, 30, BENCH_PEER(atan))
  BENCH_FUNCTION(double, dsqrt, 1e-3, 1e3)
  BENCH_FUNCTION(double, dint, -1e6, 1e6)
  BENCH_FUNCTION(double, dnint, -1e4, 1e4)
  BENCH_FUNCTION(double, dabs, -1e3, 1e3)
  BENCH_FUNCTION(double, dsind, -1e3, 1e3)
  BENCH_FUNCTION(double, f90floor, -1e4, 1e4)
  BENCH_FUNCTION(double, dmod, -1e3, 1e3)
  BENCH_FUNCTION(double, ddim, -1e3, 1e3)
  BENCH_FUNCTION(double, dsign, -1e3, 1e3)
  BENCH_FUNCTION(float, exp, -20, 20, BENCH_PEER(exp))
  BENCH_FUNCTION(float, alog, 1e-3, 1e3, BENCH_PEER(log))
  BENCH_FUNCTION(float, alog10, 1e-3, 1e3, BENCH_PEER(log10))
  BENCH_FUNCTION(float, sin, -30, 30, BENCH_PEER(sin))
  BENCH_FUNCTION(float, cos, -30, 30, BENCH_PEER(cos))
  BENCH_FUNCTION(float, tan, -30, 30, BENCH_PEER(tan))
  BENCH_FUNCTION(float, asin, -1, 1, BENCH_PEER(asin))
  BENCH_FUNCTION(float, acos, -1, 1, BENCH_PEER(acos))
  BENCH_FUNCTION(float, atan, -30, 30, BENCH_PEER(atan))
  BENCH_FUNCTION(float, sqrt, 1e-3, 1e3)
  BENCH_FUNCTION(float, aint, -1e4, 1e4)
  BENCH_FUNCTION(float, anint, -1e4, 1e4)
  BENCH_FUNCTION(float, amod, -1e3, 1e3)
}

const registered array_rows([] {
  add_real_rows();
  add_rows<quad, arrays>(own);
  add_row<cquad>("array_cqmul_1000", own, 1000, 1000, arrays::complex_mul);
  add_row<cquad>("array_cqdiv_1000", own, 1000, 1000, arrays::complex_div);
#if defined(ZORVIKRT_BENCH_QD)
  add_rows<dd_real, loops<dd_real>>("libqd");
#endif
  add_rows<__float128, loops<__float128>>("__float128");
  using peer = loops<__complex128>;
  add_row<__complex128>("array_cqmul_1000", "__complex128", 1000, 1000, peer::mul);
  add_row<__complex128>("array_cqdiv_1000", "__complex128", 1000, 1000, peer::div);
});

}  // namespace
}  // namespace bench

#endif
