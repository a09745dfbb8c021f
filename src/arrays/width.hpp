#pragma once

// Vectors of ZRT_WIDTH doubles, and the instructions whose names go by the width.

#include <immintrin.h>

#include "arrays/scalar.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

inline constexpr index width = ZRT_WIDTH;
typedef double lanes __attribute__((vector_size(8 * ZRT_WIDTH)));
typedef unsigned long long words __attribute__((vector_size(8 * ZRT_WIDTH)));

/// Whole numbers of 32 bits, as values and as integers.
struct whole {
  lanes value;
  words integer;
};

#if ZRT_WIDTH == 8
ZRT_INLINE lanes all(double x) { return _mm512_set1_pd(x); }
ZRT_INLINE lanes read(const double* p) { return _mm512_loadu_pd(p); }
ZRT_INLINE void write(double* p, lanes x) { _mm512_storeu_pd(p, x); }
ZRT_INLINE lanes square_root(lanes x) { return _mm512_maskz_sqrt_pd(0xFF, x); }
ZRT_INLINE lanes least_of(lanes x, lanes y) { return _mm512_maskz_min_pd(0xFF, x, y); }
ZRT_INLINE words not_finite(lanes x) {
  return (words)_mm512_movm_epi64(_mm512_fpclass_pd_mask(x, 0x99));
}
ZRT_INLINE bool any_sign(words x) { return _mm512_movepi64_mask((__m512i)x) != 0; }
ZRT_INLINE lanes heads(lanes u, lanes v) {
  return __builtin_shufflevector(u, v, 0, 8, 2, 10, 4, 12, 6, 14);
}
ZRT_INLINE lanes tails(lanes u, lanes v) {
  return __builtin_shufflevector(u, v, 1, 9, 3, 11, 5, 13, 7, 15);
}
ZRT_INLINE whole truncated(lanes x) {
  const __m512i n = _mm512_maskz_cvttpd_epi64(0xFF, x);
  return {_mm512_maskz_cvtepi64_pd(0xFF, n), (words)n};
}
/// The 128-bit pieces of even and of odd number, and back.
ZRT_INLINE lanes evens(lanes u, lanes v) {
  return __builtin_shufflevector(u, v, 0, 1, 4, 5, 8, 9, 12, 13);
}
ZRT_INLINE lanes odds(lanes u, lanes v) {
  return __builtin_shufflevector(u, v, 2, 3, 6, 7, 10, 11, 14, 15);
}
ZRT_INLINE lanes zip_low(lanes u, lanes v) {
  return __builtin_shufflevector(u, v, 0, 1, 8, 9, 2, 3, 10, 11);
}
ZRT_INLINE lanes zip_high(lanes u, lanes v) {
  return __builtin_shufflevector(u, v, 4, 5, 12, 13, 6, 7, 14, 15);
}
#elif ZRT_WIDTH == 4
ZRT_INLINE lanes all(double x) { return _mm256_set1_pd(x); }
ZRT_INLINE lanes read(const double* p) { return _mm256_loadu_pd(p); }
ZRT_INLINE void write(double* p, lanes x) { _mm256_storeu_pd(p, x); }
ZRT_INLINE lanes square_root(lanes x) { return _mm256_sqrt_pd(x); }
ZRT_INLINE lanes least_of(lanes x, lanes y) { return _mm256_min_pd(x, y); }
ZRT_INLINE bool any_sign(words x) { return _mm256_movemask_pd((lanes)x) != 0; }
ZRT_INLINE lanes heads(lanes u, lanes v) { return _mm256_unpacklo_pd(u, v); }
ZRT_INLINE lanes tails(lanes u, lanes v) { return _mm256_unpackhi_pd(u, v); }
ZRT_INLINE whole truncated(lanes x) {
  const __m128i n = _mm256_cvttpd_epi32(x);
  return {_mm256_cvtepi32_pd(n), (words)_mm256_cvtepi32_epi64(n)};
}
ZRT_INLINE lanes evens(lanes u, lanes v) { return _mm256_permute2f128_pd(u, v, 0x20); }
ZRT_INLINE lanes odds(lanes u, lanes v) { return _mm256_permute2f128_pd(u, v, 0x31); }
ZRT_INLINE lanes zip_low(lanes u, lanes v) { return evens(u, v); }
ZRT_INLINE lanes zip_high(lanes u, lanes v) { return odds(u, v); }
#else
ZRT_INLINE lanes all(double x) { return _mm_set1_pd(x); }
ZRT_INLINE lanes read(const double* p) { return _mm_loadu_pd(p); }
ZRT_INLINE void write(double* p, lanes x) { _mm_storeu_pd(p, x); }
ZRT_INLINE lanes square_root(lanes x) { return _mm_sqrt_pd(x); }
ZRT_INLINE lanes least_of(lanes x, lanes y) { return _mm_min_pd(x, y); }
ZRT_INLINE bool any_sign(words x) { return _mm_movemask_pd((lanes)x) != 0; }
ZRT_INLINE lanes heads(lanes u, lanes v) { return _mm_unpacklo_pd(u, v); }
ZRT_INLINE lanes tails(lanes u, lanes v) { return _mm_unpackhi_pd(u, v); }
ZRT_INLINE whole truncated(lanes x) {
  const __m128i n = _mm_cvttpd_epi32(x);
  return {_mm_cvtepi32_pd(n), (words)_mm_unpacklo_epi32(n, _mm_srai_epi32(n, 31))};
}
ZRT_INLINE lanes evens(lanes u, lanes) { return u; }
ZRT_INLINE lanes odds(lanes, lanes v) { return v; }
ZRT_INLINE lanes zip_low(lanes u, lanes) { return u; }
ZRT_INLINE lanes zip_high(lanes, lanes v) { return v; }
#endif

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
