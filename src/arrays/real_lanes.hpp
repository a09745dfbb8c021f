#pragma once

// REAL*8 and REAL*4 on lanes: what the kernels of src/real use of the type of their values.
//
// Both formats compute on doubles, as on the register. Lanes round as the register does wherever an
// intermediate is a normal double; with gradual underflow a sum is exact below that range as well,
// and so is whatever a larger term swallows. A function says which of its lanes are rare: those go
// to the entry.
//
// A value is several vectors: a kernel is one chain of dependent operations, and a processor that
// sees two of them side by side starts one while it waits for the other.

#include "arrays/lanes_model.hpp"
#include "real/circular_kernel.hpp"
#include "real/exp_log_kernel.hpp"
#include "real/inverse_circular_kernel.hpp"
#include "real/roots_kernel.hpp"

namespace zrt::arrays::ZRT_LEVEL {
namespace {

#ifndef ZRT_ABREAST
#define ZRT_ABREAST 2
#endif
inline constexpr int abreast = ZRT_ABREAST;
inline constexpr index span = abreast * width;

/// Constants of the kernels turn into lanes by themselves.
struct values {
  lanes at[abreast];
  values() = default;
  ZRT_INLINE values(double x) {
    for (lanes& part : at) part = all(x);
  }
};

#if ZRT_WIDTH == 8
using condition = __mmask8;
#else
using condition = words;
#endif
struct choice {
  condition at[abreast]{};
};

/// f of the abreast, one after the other.
template <class R, class F, class... A>
ZRT_INLINE R each_part(F f, const A&... x) {
  R r;
#pragma GCC unroll 8
  for (int p = 0; p < abreast; ++p) r.at[p] = f(x.at[p]...);
  return r;
}
template <class F, class... A>
ZRT_INLINE values mapped(F f, const A&... x) {
  return each_part<values>(f, x...);
}
template <class F, class... A>
ZRT_INLINE choice tested(F f, const A&... x) {
  return each_part<choice>(f, x...);
}

ZRT_INLINE values operator+(const values& a, const values& b) {
  return mapped([](lanes x, lanes y) { return x + y; }, a, b);
}
ZRT_INLINE values operator-(const values& a, const values& b) {
  return mapped([](lanes x, lanes y) { return x - y; }, a, b);
}
ZRT_INLINE values operator*(const values& a, const values& b) {
  return mapped([](lanes x, lanes y) { return x * y; }, a, b);
}
ZRT_INLINE values operator/(const values& a, const values& b) {
  return mapped([](lanes x, lanes y) { return x / y; }, a, b);
}

#ifdef ZRT_FUSED
ZRT_INLINE values less_exact_product(const values& a, const values& b, double c) {
  return mapped([=](lanes x, lanes y) { return fused(-y, all(c), x); }, a, b);
}
#endif

/// x - r**2 for a root r of x rounded to 53 bits: exact in every step.
ZRT_INLINE values less_square(const values& x, const values& r) {
  return mapped(
      [](lanes v, lanes root) {
        const cut halves = cut_of(root);
        return remainder_of(v, halves, halves);
      },
      x, r);
}

// --- Comparisons and choice ----------------------------------------------------------------------
// All are false for a NaN.

#if ZRT_WIDTH == 8
ZRT_INLINE choice less(const values& a, const values& b) {
  return tested([](lanes x, lanes y) { return _mm512_cmp_pd_mask(x, y, _CMP_LT_OQ); }, a, b);
}
ZRT_INLINE choice less_equal(const values& a, const values& b) {
  return tested([](lanes x, lanes y) { return _mm512_cmp_pd_mask(x, y, _CMP_LE_OQ); }, a, b);
}
ZRT_INLINE lanes select(condition which, lanes yes, lanes no) {
  return _mm512_mask_mov_pd(no, which, yes);
}
ZRT_INLINE unsigned bits_of(condition a) { return a; }
/// From the sign bits.
ZRT_INLINE condition condition_of(words sign) { return _mm512_movepi64_mask((__m512i)sign); }
#else
ZRT_INLINE choice less(const values& a, const values& b) {
  return tested([](lanes x, lanes y) { return (words)(x < y); }, a, b);
}
ZRT_INLINE choice less_equal(const values& a, const values& b) {
  return tested([](lanes x, lanes y) { return (words)(x <= y); }, a, b);
}
ZRT_INLINE condition condition_of(words sign) {
  return (words)((lanes)(sign | 1ULL << 62) < lanes{});  // no zero
}
#if ZRT_WIDTH == 4
ZRT_INLINE unsigned bits_of(condition a) {
  return static_cast<unsigned>(_mm256_movemask_pd((lanes)a));
}
#else
ZRT_INLINE unsigned bits_of(condition a) {
  return static_cast<unsigned>(_mm_movemask_pd((lanes)a));
}
#endif
#endif

ZRT_INLINE choice greater(const values& a, const values& b) { return less(b, a); }
ZRT_INLINE values chosen(const choice& which, const values& yes, const values& no) {
  return mapped([](condition c, lanes y, lanes n) { return select(c, y, n); }, which, yes, no);
}
ZRT_INLINE choice operator&(const choice& a, const choice& b) {
  return tested([](condition x, condition y) { return static_cast<condition>(x & y); }, a, b);
}
ZRT_INLINE choice operator|(const choice& a, const choice& b) {
  return tested([](condition x, condition y) { return static_cast<condition>(x | y); }, a, b);
}
ZRT_INLINE choice operator~(const choice& a) {
  return tested([](condition x) { return static_cast<condition>(~x); }, a);
}
/// A sign bit where the choice is yes.
ZRT_INLINE values sign_where(const choice& a) { return chosen(a, -0.0, 0.0); }
/// One bit for each element.
ZRT_INLINE unsigned bits_of(const choice& a) {
  unsigned bits = 0;
#pragma GCC unroll 8
  for (int p = 0; p < abreast; ++p) bits |= bits_of(a.at[p]) << (p * static_cast<int>(width));
  return bits;
}
ZRT_INLINE bool any(const choice& a) { return bits_of(a) != 0; }

// --- Signs, whole numbers and formats ------------------------------------------------------------

ZRT_INLINE values fabs(const values& a) { return mapped(magnitude, a); }
ZRT_INLINE values fsqrt(const values& a) { return mapped(square_root, a); }
/// The sign bits alone.
ZRT_INLINE values sign_of(const values& a) {
  return mapped([](lanes x) { return (lanes)((words)x & sign_bit); }, a);
}
ZRT_INLINE values flipped_by(const values& sign, const values& a) {
  return mapped([](lanes s, lanes x) { return (lanes)((words)s ^ (words)x); }, sign, a);
}

// Images as integers.
ZRT_INLINE values masked(const values& a, unsigned long long mask) {
  return mapped([=](lanes x) { return (lanes)((words)x & mask); }, a);
}
ZRT_INLINE values joined(const values& a, const values& b) {
  return mapped([](lanes x, lanes y) { return (lanes)((words)x | (words)y); }, a, b);
}
ZRT_INLINE values image_sum(const values& a, const values& b) {
  return mapped([](lanes x, lanes y) { return (lanes)((words)x + (words)y); }, a, b);
}
ZRT_INLINE values image_plus(const values& a, unsigned long long n) {
  return mapped([=](lanes x) { return (lanes)((words)x + n); }, a);
}
ZRT_INLINE values image_less(const values& a, unsigned long long n) { return image_plus(a, -n); }
ZRT_INLINE choice is_odd_image(const values& a) {
  return tested([](lanes x) { return condition_of((words)x << 63); }, a);
}

/// A whole number near x, |x| below 2**50, and `bias` more of it in the low bits of `shifted`.
template <int bias>
struct near_whole {
  values shifted, value;
  ZRT_INLINE explicit near_whole(const values& x)
      : shifted(x + (0x1.8p52 + bias)), value(shifted - (0x1.8p52 + bias)) {}
};
/// The low bits as an exponent.
ZRT_INLINE values as_exponent(const values& image) {
  return mapped([](lanes x) { return (lanes)((words)x << 52); }, image);
}

/// Cut to a whole number of any size; a zero keeps the sign, a NaN passes.
ZRT_INLINE values truncated(const values& a) {
  return mapped(
      [](lanes x) -> lanes {
#if ZRT_WIDTH == 8
        return _mm512_maskz_roundscale_pd(0xFF, x, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
#elif ZRT_WIDTH == 4
        return _mm256_round_pd(x, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
#else
        const lanes size = magnitude(x), nearest = (size + 0x1p52) - 0x1p52;
        const lanes whole = nearest - (lanes)((words)(nearest > size) & (words)all(1.0));
        return with_sign_of(select((words)(size < 0x1p52), whole, size), x);
#endif
      },
      a);
}

/// A whole number in (-2**31, 2**31), and the same in the low bits of an image.
struct whole_values {
  values value, integer;
};
ZRT_INLINE whole_values truncated_whole(const values& x) {
  whole_values n;
  for (int p = 0; p < abreast; ++p) {
#if ZRT_WIDTH == 4
    n.value.at[p] = _mm256_round_pd(x.at[p], _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    n.integer.at[p] = n.value.at[p] + 0x1.8p52;
#else
    const whole cut = truncated(x.at[p]);
    n.value.at[p] = cut.value;
    n.integer.at[p] = (lanes)cut.integer;
#endif
  }
  return n;
}
/// A sign bit where the number is odd.
ZRT_INLINE values odd_sign(const whole_values& n) {
  return mapped([](lanes integer) { return (lanes)((words)integer << 63); }, n.integer);
}
ZRT_INLINE choice is_odd(const whole_values& n) { return is_odd_image(n.integer); }
template <format F>
ZRT_INLINE values stored(const values& a) {
  if constexpr (std::same_as<F, double>) return a;
  return mapped(
      [](lanes x) -> lanes {
#if ZRT_WIDTH == 8
        return _mm512_maskz_cvtps_pd(0xFF, _mm512_maskz_cvtpd_ps(0xFF, x));
#elif ZRT_WIDTH == 4
        return _mm256_cvtps_pd(_mm256_cvtpd_ps(x));
#else
        return _mm_cvtps_pd(_mm_cvtpd_ps(x));
#endif
      },
      a);
}
// --- Steps that depend on the type ---------------------------------------------------------------

/// Of the double's image; a REAL*4 has the same fraction bits, further up.
template <format F>
ZRT_INLINE values leading_piece(const values& a) {
  constexpr int shift = 52 - layout<F>::fraction_bits + real::logarithm_constants<F>::split_bits;
  return mapped([](lanes x) { return (lanes)((words)x & ~((1ULL << shift) - 1)); }, stored<F>(a));
}

/// A positive normal number as 2**m y with y in [1, 2), and the row of the table that stands for y:
/// the nearest of 1 + j / 128.
struct table_argument {
  values exponent, significand, node, offset;  // of row j, in elements, as an integer
};
ZRT_INLINE table_argument table_argument_of(const values& x) {
  constexpr unsigned long long fraction = (1ULL << 52) - 1, one = 0x3FFULL << 52,
                               rest = (1ULL << 45) - 1;
  table_argument a;
  a.exponent = mapped(
      [](lanes v) { return (lanes)((words)v >> 52 | 0x4330000000000000) - (0x1p52 + 1023.0); }, x);
  a.significand = mapped([](lanes v) { return (lanes)(((words)v & fraction) | one); }, x);
  // A half of the rest does not carry.
  const values rounded =
      mapped([](lanes v) { return (lanes)(((words)v & fraction) + (rest >> 1)); }, x);
  a.node = mapped([](lanes v) { return (lanes)(((words)v & ~rest) + one); }, rounded);
  a.offset = mapped(
      [](lanes v) {
        const words j = (words)v >> 45;
        return (lanes)(j + j + j);
      },
      rounded);
  return a;
}

/// The elements at the offsets.
ZRT_INLINE lanes gathered(const double* table, lanes offset) {
#if ZRT_WIDTH == 8
  return _mm512_mask_i64gather_pd(lanes{}, 0xFF, (__m512i)offset, table, 8);
#elif ZRT_WIDTH == 4
  return _mm256_mask_i64gather_pd(lanes{}, table, (__m256i)offset, (lanes)~words{}, 8);
#else
  const words at = (words)offset;
  return lanes{table[at[0]], table[at[1]]};
#endif
}
ZRT_INLINE lanes gathered(const float* table, lanes offset) {
#if ZRT_WIDTH == 8
  const __m256 row = _mm512_mask_i64gather_ps(__m256{}, 0xFF, (__m512i)offset, table, 4);
  return _mm512_maskz_cvtps_pd(0xFF, row);
#elif ZRT_WIDTH == 4
  const __m128 row =
      _mm256_mask_i64gather_ps(__m128{}, table, (__m256i)offset, (__m128)_mm_set1_epi32(-1), 4);
  return _mm256_cvtps_pd(row);
#else
  const words at = (words)offset;
  return lanes{double{table[at[0]]}, double{table[at[1]]}};
#endif
}
template <class F>
ZRT_INLINE values gathered(const F& first, const values& offset) {
  return mapped([&](lanes at) { return gathered(&first, at); }, offset);
}

// --- Arrays --------------------------------------------------------------------------------------

ZRT_INLINE lanes load_part(const double* p) { return read(p); }
ZRT_INLINE void store_part(double* p, lanes x) { write(p, x); }
#if ZRT_WIDTH == 8
ZRT_INLINE lanes load_part(const float* p) {
  return _mm512_maskz_cvtps_pd(0xFF, _mm256_loadu_ps(p));
}
ZRT_INLINE void store_part(float* p, lanes x) {
  _mm256_storeu_ps(p, _mm512_maskz_cvtpd_ps(0xFF, x));
}
#elif ZRT_WIDTH == 4
ZRT_INLINE lanes load_part(const float* p) { return _mm256_cvtps_pd(_mm_loadu_ps(p)); }
ZRT_INLINE void store_part(float* p, lanes x) { _mm_storeu_ps(p, _mm256_cvtpd_ps(x)); }
#else
ZRT_INLINE lanes load_part(const float* p) {
  return _mm_cvtps_pd((__m128)_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
}
ZRT_INLINE void store_part(float* p, lanes x) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), (__m128i)_mm_cvtpd_ps(x));
}
#endif

/// The first count elements of a vector, 0 to width of them; the lanes behind them hold zeros.
#if ZRT_WIDTH == 8
ZRT_INLINE __mmask8 leading(index count) { return static_cast<__mmask8>((1u << count) - 1); }
ZRT_INLINE lanes load_part(const double* p, index count) {
  return _mm512_maskz_loadu_pd(leading(count), p);
}
ZRT_INLINE void store_part(double* p, index count, lanes x) {
  _mm512_mask_storeu_pd(p, leading(count), x);
}
ZRT_INLINE lanes load_part(const float* p, index count) {
  return _mm512_maskz_cvtps_pd(0xFF, _mm256_maskz_loadu_ps(leading(count), p));
}
ZRT_INLINE void store_part(float* p, index count, lanes x) {
  _mm256_mask_storeu_ps(p, leading(count), _mm512_maskz_cvtpd_ps(0xFF, x));
}
#elif ZRT_WIDTH == 4
constexpr long long leading_words[8] = {-1, -1, -1, -1};
constexpr int leading_halves[8] = {-1, -1, -1, -1};
ZRT_INLINE __m256i leading(index count) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(leading_words + 4 - count));
}
ZRT_INLINE __m128i leading_half(index count) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(leading_halves + 4 - count));
}
ZRT_INLINE lanes load_part(const double* p, index count) {
  return _mm256_maskload_pd(p, leading(count));
}
ZRT_INLINE void store_part(double* p, index count, lanes x) {
  _mm256_maskstore_pd(p, leading(count), x);
}
ZRT_INLINE lanes load_part(const float* p, index count) {
  return _mm256_cvtps_pd(_mm_maskload_ps(p, leading_half(count)));
}
ZRT_INLINE void store_part(float* p, index count, lanes x) {
  _mm_maskstore_ps(p, leading_half(count), _mm256_cvtpd_ps(x));
}
#else
ZRT_INLINE lanes load_part(const double* p, index count) {
  return count == 2 ? read(p) : count == 1 ? _mm_load_sd(p) : lanes{};
}
ZRT_INLINE void store_part(double* p, index count, lanes x) {
  if (count == 2) write(p, x);
  if (count == 1) _mm_store_sd(p, x);
}
ZRT_INLINE lanes load_part(const float* p, index count) {
  const auto* const at = reinterpret_cast<const __m128i*>(p);
  return _mm_cvtps_pd(count == 2 ? (__m128)_mm_loadl_epi64(at)
                      : count == 1 ? _mm_load_ss(p)
                                   : __m128{});
}
ZRT_INLINE void store_part(float* p, index count, lanes x) {
  const __m128 r = _mm_cvtpd_ps(x);
  if (count == 2) _mm_storel_epi64(reinterpret_cast<__m128i*>(p), (__m128i)r);
  if (count == 1) _mm_store_ss(p, r);
}
#endif
ZRT_INLINE index in_part(index count, index p) {
  const index left = count - p * width;
  return left < 0 ? 0 : left < width ? left : width;
}
template <class F>
ZRT_INLINE values load_values(const F* p, index count) {
  values x;
#pragma GCC unroll 8
  for (int i = 0; i < abreast; ++i)
    x.at[i] =
        count == span ? load_part(p + i * width) : load_part(p + i * width, in_part(count, i));
  return x;
}
template <class F>
ZRT_INLINE void store_values(F* p, index count, const values& x) {
#pragma GCC unroll 8
  for (int i = 0; i < abreast; ++i)
    if (count == span)
      store_part(p + i * width, x.at[i]);
    else
      store_part(p + i * width, in_part(count, i), x.at[i]);
}

}  // namespace
}  // namespace zrt::arrays::ZRT_LEVEL
