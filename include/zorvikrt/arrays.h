/** Arrays of REAL*16 and COMPLEX*32: linear algebra, and every numeric entry element by element;
 *  library zorvikrt_arrays.
 *
 *  The bits of every result are those of the library's entries called one after the other in the
 *  order that is stated here, on every processor, build and number of threads. Which vector unit
 *  does the work is chosen when the library is loaded. Each call runs with the x87 control word
 *  0x027F and MXCSR 0x1F80 (all exceptions masked, to nearest, gradual underflow), whatever the
 *  thread has, and puts both back.
 *
 *  Matrices lie in columns, as in Fortran: element (i, j) of a with leading dimension lda stands at
 *  a[i + j * lda]. Element i of a vector x stands at x[i * incx], for a negative incx at
 *  x[(i - n + 1) * incx]: the first element read is the last in memory. Arguments have the order
 *  and names of BLAS and LAPACK. Every function returns 0, or -i where argument i (from 1) is bad:
 *  a negative size, a null array of elements, a leading dimension below the rows, an array written
 *  that has stride 0 or overlaps an operand in another way than element upon element (matrices: at
 *  all). It has touched nothing then. Factorisations return a positive number where the matrix is
 *  the reason.
 */
#ifndef ZORVIKRT_ARRAYS_H
#define ZORVIKRT_ARRAYS_H

#include <stddef.h>
#include <zorvikrt/zorvikrt.h>

#ifdef __cplusplus
extern "C" {
#endif

/* --- Which processor, how many threads ------------------------------------------------------- */

/** The level in use: "plain", "sse2", "avx2" (with fused operations) or "avx512". */
const char* zorvikrt_arrays_level(void);

/** Narrows the choice to the best level that the machine has up to `name`; null gives the best.
 *  Results do not change. The environment variable ZORVIKRT_ARRAYS_LEVEL does the same at load.
 *  Returns -1 for a name that is none of the four. Not while another thread computes. */
int zorvikrt_arrays_set_level(const char* name);

/** Part `number` of a computation. */
typedef void (*zorvikrt_part)(void* computation, int number);
/** Runs parts 0 to parts - 1, each once, on up to `threads` threads, and returns when all are done.
 */
typedef void (*zorvikrt_runner)(int threads, int parts, zorvikrt_part run, void* computation);

/** Lets long computations run on up to `threads` threads, which `runner` provides; the library
 *  starts none itself. A null runner or one thread: in the calling thread, as at load. Returns -1
 *  for fewer than one thread. Not while another thread computes. */
int zorvikrt_arrays_set_threads(int threads, zorvikrt_runner runner);

#ifdef _OPENMP
/** The runner of a program that is built with OpenMP. */
static inline void zorvikrt_openmp_runner(int threads, int parts, zorvikrt_part run,
                                          void* computation) {
  int i;
#pragma omp parallel for num_threads(threads) schedule(dynamic)
  for (i = 0; i < parts; ++i) run(computation, i);
}
/** Long computations on up to `threads` threads of OpenMP. */
static inline int zorvikrt_arrays_use_openmp(int threads) {
  return zorvikrt_arrays_set_threads(threads, zorvikrt_openmp_runner);
}
#endif

/* --- Sums --------------------------------------------------------------------------------------
 * A sum of n terms is taken in 16 partial sums: s[j] is 0, then s[j] + t[i] for the terms i = j,
 * j + 16, ... in turn. Then s[j] + s[j + 8] for j < 8, s[j] + s[j + 4] for j < 4, s[0] + s[2] and
 * s[1] + s[3], and their sum is the result. Each + is qadd, part by part for COMPLEX*32. */

/** result = sum of x. */
int zorvikrt_qsum(ptrdiff_t n, const zorvikrt_quad* x, ptrdiff_t incx, zorvikrt_quad* result);
int zorvikrt_xsum(ptrdiff_t n, const zorvikrt_cquad* x, ptrdiff_t incx, zorvikrt_cquad* result);

/** result = sum of |x|, for COMPLEX*32 of |re| + |im|. */
int zorvikrt_qasum(ptrdiff_t n, const zorvikrt_quad* x, ptrdiff_t incx, zorvikrt_quad* result);
int zorvikrt_xasum(ptrdiff_t n, const zorvikrt_cquad* x, ptrdiff_t incx, zorvikrt_quad* result);

/** result = sum of x * y (qmul, cqmul); xdotc takes the conjugates of x. */
int zorvikrt_qdot(ptrdiff_t n, const zorvikrt_quad* x, ptrdiff_t incx, const zorvikrt_quad* y,
                  ptrdiff_t incy, zorvikrt_quad* result);
int zorvikrt_xdotu(ptrdiff_t n, const zorvikrt_cquad* x, ptrdiff_t incx, const zorvikrt_cquad* y,
                   ptrdiff_t incy, zorvikrt_cquad* result);
int zorvikrt_xdotc(ptrdiff_t n, const zorvikrt_cquad* x, ptrdiff_t incx, const zorvikrt_cquad* y,
                   ptrdiff_t incy, zorvikrt_cquad* result);

/** result = Euclidean norm: the root (sqrtl) of the sum of squares. The parts of COMPLEX*32 count
 *  as elements. Where the largest leading part, with exponent e, lies outside 2**-200 to 2**401 and
 *  all are finite, x * 2**-e is taken and the root multiplied by 2**e (ldexpl). */
int zorvikrt_qnrm2(ptrdiff_t n, const zorvikrt_quad* x, ptrdiff_t incx, zorvikrt_quad* result);
int zorvikrt_xnrm2(ptrdiff_t n, const zorvikrt_cquad* x, ptrdiff_t incx, zorvikrt_quad* result);

/** result = number, from 1, of the first element of largest magnitude: by |hi|, then by lo in the
 *  direction of hi; for COMPLEX*32 of |re| + |im|. NaNs are passed over; 1 where all are NaNs, 0
 *  for n = 0. */
int zorvikrt_iqamax(ptrdiff_t n, const zorvikrt_quad* x, ptrdiff_t incx, ptrdiff_t* result);
int zorvikrt_ixamax(ptrdiff_t n, const zorvikrt_cquad* x, ptrdiff_t incx, ptrdiff_t* result);

/* --- Vectors and matrices ----------------------------------------------------------------------
 * One rule holds for all that follows. A scalar is the first factor of a product; each element is
 * updated by one product after the other, c = c + f * g. An alpha or beta that is 1 (1.0 and a
 * zero, without imaginary part) is not multiplied by. Where alpha is 0 nothing is added and what it
 * would multiply is not read; where beta is 0 the array is set to zeros and not read. */

/** y = y + alpha * x. */
int zorvikrt_qaxpy(ptrdiff_t n, zorvikrt_quad alpha, const zorvikrt_quad* x, ptrdiff_t incx,
                   zorvikrt_quad* y, ptrdiff_t incy);
int zorvikrt_xaxpy(ptrdiff_t n, zorvikrt_cquad alpha, const zorvikrt_cquad* x, ptrdiff_t incx,
                   zorvikrt_cquad* y, ptrdiff_t incy);

/** x = alpha * x, with alpha in the part of a beta. */
int zorvikrt_qscal(ptrdiff_t n, zorvikrt_quad alpha, zorvikrt_quad* x, ptrdiff_t incx);
int zorvikrt_xscal(ptrdiff_t n, zorvikrt_cquad alpha, zorvikrt_cquad* x, ptrdiff_t incx);

/** y = beta * y, then y = y + (alpha * x[l]) * op(a)(:, l) for l = 0, 1, ... in turn; op(a) is a
 * for trans 'N', its transpose for 'T', the conjugate transpose for 'C'; a has m rows and n
 * columns. */
int zorvikrt_qgemv(char trans, ptrdiff_t m, ptrdiff_t n, zorvikrt_quad alpha,
                   const zorvikrt_quad* a, ptrdiff_t lda, const zorvikrt_quad* x, ptrdiff_t incx,
                   zorvikrt_quad beta, zorvikrt_quad* y, ptrdiff_t incy);
int zorvikrt_xgemv(char trans, ptrdiff_t m, ptrdiff_t n, zorvikrt_cquad alpha,
                   const zorvikrt_cquad* a, ptrdiff_t lda, const zorvikrt_cquad* x, ptrdiff_t incx,
                   zorvikrt_cquad beta, zorvikrt_cquad* y, ptrdiff_t incy);

/** a(i, j) = a(i, j) + (alpha * y[j]) * x[i]; xgerc takes the conjugates of y. */
int zorvikrt_qger(ptrdiff_t m, ptrdiff_t n, zorvikrt_quad alpha, const zorvikrt_quad* x,
                  ptrdiff_t incx, const zorvikrt_quad* y, ptrdiff_t incy, zorvikrt_quad* a,
                  ptrdiff_t lda);
int zorvikrt_xgeru(ptrdiff_t m, ptrdiff_t n, zorvikrt_cquad alpha, const zorvikrt_cquad* x,
                   ptrdiff_t incx, const zorvikrt_cquad* y, ptrdiff_t incy, zorvikrt_cquad* a,
                   ptrdiff_t lda);
int zorvikrt_xgerc(ptrdiff_t m, ptrdiff_t n, zorvikrt_cquad alpha, const zorvikrt_cquad* x,
                   ptrdiff_t incx, const zorvikrt_cquad* y, ptrdiff_t incy, zorvikrt_cquad* a,
                   ptrdiff_t lda);

/** c = beta * c, then c(i, j) = c(i, j) + (alpha * op(b)(l, j)) * op(a)(i, l) for l = 0 to k - 1 in
 *  turn; c has m rows and n columns. */
int zorvikrt_qgemm(char transa, char transb, ptrdiff_t m, ptrdiff_t n, ptrdiff_t k,
                   zorvikrt_quad alpha, const zorvikrt_quad* a, ptrdiff_t lda,
                   const zorvikrt_quad* b, ptrdiff_t ldb, zorvikrt_quad beta, zorvikrt_quad* c,
                   ptrdiff_t ldc);
int zorvikrt_xgemm(char transa, char transb, ptrdiff_t m, ptrdiff_t n, ptrdiff_t k,
                   zorvikrt_cquad alpha, const zorvikrt_cquad* a, ptrdiff_t lda,
                   const zorvikrt_cquad* b, ptrdiff_t ldb, zorvikrt_cquad beta, zorvikrt_cquad* c,
                   ptrdiff_t ldc);

/** The triangle `uplo` ('L' or 'U') of the symmetric c: what gemm gives of a and its transpose,
 *  trans 'N', or of the transpose and a, 'T'. The other triangle is neither read nor written. */
int zorvikrt_qsyrk(char uplo, char trans, ptrdiff_t n, ptrdiff_t k, zorvikrt_quad alpha,
                   const zorvikrt_quad* a, ptrdiff_t lda, zorvikrt_quad beta, zorvikrt_quad* c,
                   ptrdiff_t ldc);
int zorvikrt_xsyrk(char uplo, char trans, ptrdiff_t n, ptrdiff_t k, zorvikrt_cquad alpha,
                   const zorvikrt_cquad* a, ptrdiff_t lda, zorvikrt_cquad beta, zorvikrt_cquad* c,
                   ptrdiff_t ldc);

/** Solves op(a) * x = alpha * b (side 'L') or x * op(a) = alpha * b ('R') for the m by n matrix x,
 *  which replaces b; a is the triangle `uplo`, with ones on the diagonal for diag 'U', else 'N'.
 *  b = alpha * b; then by substitution: an unknown is divided (qdiv, cqdiv) by its diagonal element
 *  as soon as all before it are subtracted, each as b + (-f) * g in the order in which they were
 *  found, f the unknown and g the element of a for side 'L', the other way round for 'R'. */
int zorvikrt_qtrsm(char side, char uplo, char transa, char diag, ptrdiff_t m, ptrdiff_t n,
                   zorvikrt_quad alpha, const zorvikrt_quad* a, ptrdiff_t lda, zorvikrt_quad* b,
                   ptrdiff_t ldb);
int zorvikrt_xtrsm(char side, char uplo, char transa, char diag, ptrdiff_t m, ptrdiff_t n,
                   zorvikrt_cquad alpha, const zorvikrt_cquad* a, ptrdiff_t lda, zorvikrt_cquad* b,
                   ptrdiff_t ldb);

/* --- Factorisations --------------------------------------------------------------------------- */

/** a = P * L * U by Gaussian elimination with row exchanges, in place: for each column the row of
 *  the iqamax of what is left of it comes up, the rest of the column is divided by the pivot, and
 *  a(i, j) = a(i, j) + (-u(k, j)) * l(i, k) for k = 0, 1, ... in turn. ipiv[k] is the row, from 1,
 *  that was exchanged with row k + 1. Returns k + 1 for the first pivot k that is zero or a NaN;
 * its column stays undivided and the factorisation goes on. */
int zorvikrt_qgetrf(ptrdiff_t m, ptrdiff_t n, zorvikrt_quad* a, ptrdiff_t lda, int32_t* ipiv);
int zorvikrt_xgetrf(ptrdiff_t m, ptrdiff_t n, zorvikrt_cquad* a, ptrdiff_t lda, int32_t* ipiv);

/** Solves op(a) * x = b for nrhs columns with what getrf has left in a and ipiv; x replaces b. */
int zorvikrt_qgetrs(char trans, ptrdiff_t n, ptrdiff_t nrhs, const zorvikrt_quad* a, ptrdiff_t lda,
                    const int32_t* ipiv, zorvikrt_quad* b, ptrdiff_t ldb);
int zorvikrt_xgetrs(char trans, ptrdiff_t n, ptrdiff_t nrhs, const zorvikrt_cquad* a, ptrdiff_t lda,
                    const int32_t* ipiv, zorvikrt_cquad* b, ptrdiff_t ldb);

/** getrf, and getrs unless a pivot is zero. */
int zorvikrt_qgesv(ptrdiff_t n, ptrdiff_t nrhs, zorvikrt_quad* a, ptrdiff_t lda, int32_t* ipiv,
                   zorvikrt_quad* b, ptrdiff_t ldb);
int zorvikrt_xgesv(ptrdiff_t n, ptrdiff_t nrhs, zorvikrt_cquad* a, ptrdiff_t lda, int32_t* ipiv,
                   zorvikrt_cquad* b, ptrdiff_t ldb);

/** a = L * L**H (uplo 'L') or U**H * U ('U') of a symmetric or Hermitian positive definite matrix,
 *  of which only that triangle is read and written: a(i, j) = a(i, j) + (-conj(l(j, k))) * l(i, k)
 *  for k = 0, 1, ... in turn, then the root (sqrtl) of the diagonal element and the division of the
 *  column by it. Returns j + 1 for the first diagonal element that is not positive then. */
int zorvikrt_qpotrf(char uplo, ptrdiff_t n, zorvikrt_quad* a, ptrdiff_t lda);
int zorvikrt_xpotrf(char uplo, ptrdiff_t n, zorvikrt_cquad* a, ptrdiff_t lda);

/** Solves a * x = b for nrhs columns with what potrf has left in a; x replaces b. */
int zorvikrt_qpotrs(char uplo, ptrdiff_t n, ptrdiff_t nrhs, const zorvikrt_quad* a, ptrdiff_t lda,
                    zorvikrt_quad* b, ptrdiff_t ldb);
int zorvikrt_xpotrs(char uplo, ptrdiff_t n, ptrdiff_t nrhs, const zorvikrt_cquad* a, ptrdiff_t lda,
                    zorvikrt_cquad* b, ptrdiff_t ldb);

/** potrf, and potrs where it succeeds. */
int zorvikrt_qposv(char uplo, ptrdiff_t n, ptrdiff_t nrhs, zorvikrt_quad* a, ptrdiff_t lda,
                   zorvikrt_quad* b, ptrdiff_t ldb);
int zorvikrt_xposv(char uplo, ptrdiff_t n, ptrdiff_t nrhs, zorvikrt_cquad* a, ptrdiff_t lda,
                   zorvikrt_cquad* b, ptrdiff_t ldb);

/* --- Entries element by element ----------------------------------------------------------------
 */

#include <zorvikrt/array_entries.h>

#ifdef __cplusplus
}
#endif

#endif
