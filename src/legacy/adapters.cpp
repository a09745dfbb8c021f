// The calls of gfortran that no single entry answers: two results at once, exponents and shifts of
// another kind.

#include "legacy/legacy.hpp"

using namespace zorvikrt_gfortran;

// --- Sine and cosine of one operand -------------------------------------------------------------

extern "C" void zorvikrt_gfortran_sincos(double x, double* sine, double* cosine) {
  *sine = __zorvik_dsin(x);
  *cosine = __zorvik_dcos(x);
}
extern "C" void zorvikrt_gfortran_sincosf(float x, float* sine, float* cosine) {
  *sine = __zorvik_sin(x);
  *cosine = __zorvik_cos(x);
}

// --- Powers with an exponent of another kind ----------------------------------------------------
// The entries take INTEGER*4 exponents of REAL and COMPLEX bases. What does not fit is gfortran's
// own.

extern "C" {
float _gfortran_pow_r4_i8(float, int64_t);
double _gfortran_pow_r8_i8(double, int64_t);
zorvikrt_complex8 _gfortran_pow_c4_i8(zorvikrt_complex8, int64_t);
zorvikrt_complex16 _gfortran_pow_c8_i8(zorvikrt_complex16, int64_t);
}

static bool is_integer4(int64_t n) { return n == static_cast<int32_t>(n); }

extern "C" float zorvikrt_gfortran_gfortran_pow_r4_i8(float x, int64_t n) {
  if (!is_integer4(n)) return _gfortran_pow_r4_i8(x, n);
  return rounded(__zorvik_ftoi(x, static_cast<int32_t>(n)));
}
extern "C" double zorvikrt_gfortran_gfortran_pow_r8_i8(double x, int64_t n) {
  if (!is_integer4(n)) return _gfortran_pow_r8_i8(x, n);
  return rounded(__zorvik_dtoi(x, static_cast<int32_t>(n)));
}
extern "C" zorvikrt_complex8 zorvikrt_gfortran_gfortran_pow_c4_i8(zorvikrt_complex8 z, int64_t n) {
  if (!is_integer4(n)) return _gfortran_pow_c4_i8(z, n);
  return __zorvik_ctoi(z, static_cast<int32_t>(n));
}
extern "C" zorvikrt_complex16 zorvikrt_gfortran_gfortran_pow_c8_i8(zorvikrt_complex16 z,
                                                                   int64_t n) {
  if (!is_integer4(n)) return _gfortran_pow_c8_i8(z, n);
  zorvikrt_complex16 result;
  __zorvik_cdtoi(&result, z, static_cast<int32_t>(n));
  return result;
}
extern "C" int64_t zorvikrt_gfortran_gfortran_pow_i8_i4(int64_t base, int32_t n) {
  return __zorvik_kitoki(base, n);
}
extern "C" int32_t zorvikrt_gfortran_gfortran_pow_i4_i8(int32_t base, int64_t n) {
  return static_cast<int32_t>(__zorvik_kitoki(base, n));
}

// --- INTEGER*8 ----------------------------------------------------------------------------------

extern "C" int64_t zorvikrt_gfortran_gfortran_ishftc8(int64_t x, int32_t shift, int32_t size) {
  return __zorvik_kishftc(x, shift, size);
}
extern "C" int64_t zorvikrt_gfortran_divmoddi4(int64_t a, int64_t b, int64_t* remainder) {
  *remainder = __zorvik_lmod(a, b);
  return __zorvik_ldiv(a, b);
}
