#pragma once

// The mode sections: the few steps that need another rounding or precision than the caller's word.
//
// Each comes in two ways with the same results. The plain way stores the control word in the frame
// of the call, loads its own word, does its one step and loads the caller's word back, all in one
// instruction sequence that the compiler cannot break up. The fast way reaches the same value
// without what is slow in the plain one: the change of control word for a truncation, the microcode
// of `frndint` and `fscale` for the exponential. Nobody else writes a control word in numeric code.

#include "model.hpp"

namespace zrt {

// The words leave bit 12 clear, as every caller has it: it has no effect on results, and a change
// of it takes 50 ns on AMD's Zen 4 and 5, one of precision or rounding half a nanosecond.
inline constexpr std::uint16_t chop_mode = 0x0E7F;      // 53 bits, toward zero
inline constexpr std::uint16_t extended_mode = 0x037F;  // 64 bits, to nearest
inline constexpr std::uint16_t integer_mode = 0x0F3F;   // 64 bits, toward zero

namespace plain {

/// `frndint` in chop mode.
inline reg truncated(reg x) {
  std::uint16_t callers;
  asm("fnstcw %1\n\t"
      "fldcw %2\n\t"
      "frndint\n\t"
      "fldcw %1"
      : "+t"(x), "=&m"(callers)
      : "m"(chop_mode));
  return x;
}

/// `fistp` to 32 bits in chop mode; out of range and NaN give 0x80000000.
inline std::int32_t truncated_to_int32(reg x) {
  std::uint16_t callers;
  std::int32_t result;
  asm("fnstcw %1\n\t"
      "fldcw %3\n\t"
      "fistpl %0\n\t"
      "fldcw %1"
      : "=&m"(result), "=&m"(callers)
      : "t"(x), "m"(chop_mode)
      : "st");
  return result;
}

/// `fistp` to 64 bits under the word of the 64-bit integer paths.
inline std::int64_t truncated_to_int64(reg x) {
  std::uint16_t callers;
  std::int64_t result;
  asm("fnstcw %1\n\t"
      "fldcw %3\n\t"
      "fistpll %0\n\t"
      "fldcw %1"
      : "=&m"(result), "=&m"(callers)
      : "t"(x), "m"(integer_mode)
      : "st");
  return result;
}

/// e**x in extended mode: t = x log2(e), n = t to the nearest integer, f = t - n,
/// (f2xm1(f) + 1) 2**n, each step at 64 bits. No range check: an infinite x gives the default NaN.
inline reg exponential(reg x) {
  static constexpr float one = 1.0f;
  std::uint16_t callers;
  reg n;
  asm("fnstcw %2\n\t"
      "fldcw %4\n\t"
      "fldl2e\n\t"
      "fmulp\n\t"
      "fld %%st(0)\n\t"
      "frndint\n\t"
      "fsubr %%st(0), %%st(1)\n\t"
      "fxch\n\t"
      "f2xm1\n\t"
      "fadds %5\n\t"
      "fscale\n\t"
      "fldcw %2"
      : "=&t"(x), "=&u"(n), "=&m"(callers)
      : "0"(x), "m"(extended_mode), "m"(one));
  return x;
}

}  // namespace plain

/// Cut to an integral value. Zeros keep their sign, a fraction gives the zero of its sign; from
/// 2**63 on, infinities and NaNs pass as they came.
[[gnu::always_inline]] inline reg truncated(reg x) {
  if (!processor::has_fisttp) return plain::truncated(x);
  if (!less(fabs(x), 0x1p63L)) return x;
  const std::int64_t whole = fisttp64(x);
  return whole == 0 ? x * 0.0L : load_integer(whole);  // x * 0 is the zero of the sign of x
}

#if defined(__x86_64__)
/// The same below 2**63 in size.
[[gnu::always_inline]] inline double truncated(double x) {
  const double whole = load_integer<double>(std::int64_t{_mm_cvttsd_si64(_mm_set_sd(x))});
  const __m128d sign = _mm_and_pd(_mm_set_sd(-0.0), _mm_set_sd(x));
  return _mm_cvtsd_f64(_mm_or_pd(_mm_set_sd(whole), sign));  // a zero takes the sign of x
}
#endif

/// Cut to a 32-bit integer. Out of range and NaN give 0x80000000 and raise invalid; they take the
/// plain way, so that a caller who unmasks invalid meets the fault where that section leaves it.
[[gnu::always_inline]] inline std::int32_t truncated_to_int32(reg x) {
  if (processor::has_fisttp && less(fabs(x), 0x1p31L)) return fisttp32(x);
  return plain::truncated_to_int32(x);
}

#if defined(__x86_64__)
[[gnu::always_inline]] inline std::int32_t truncated_to_int32(double x) { return fisttp32(x); }
#endif

/// A whole number as an integer and as a value.
template <class V>
struct whole_number {
  std::int32_t integer;
  V value;
};

/// Cut to a 32-bit integer, in both forms from the same memory; the operand lies within (-2**31,
/// 2**31). The caller gives the slot, which must share its address with no later store of the same
/// kernel: on Zen 4 the load here would wait for that store of the call before (dsin 46 for 20 ns).
[[gnu::always_inline]] inline whole_number<reg> truncated_whole(reg x, std::int32_t& slot) {
  if (!processor::has_fisttp) {
    slot = plain::truncated_to_int32(x);
    return {slot, load_integer(slot)};
  }
  asm("fisttpl %0\n\tfildl %0" : "=m"(slot), "+t"(x));
  return {slot, x};
}
#if defined(__x86_64__)
[[gnu::always_inline]] inline whole_number<double> truncated_whole(double x, std::int32_t&) {
  const std::int32_t integer = fisttp32(x);
  return {integer, load_integer<double>(integer)};
}
#endif

/// Cut to a 64-bit integer; the operand lies within (-2**63, 2**63).
[[gnu::always_inline]] inline std::int64_t truncated_to_int64(reg x) {
  return processor::has_fisttp ? fisttp64(x) : plain::truncated_to_int64(x);
}

/// e**x as the 80-bit value that the section gives. Where 2**n is a normal REAL*8, n goes through
/// an integer and the scaling is a product by 2**n, both exact at 64 bits: `frndint` and `fscale`
/// are microcode. The section's mode stays, for the product by log2(e) and the sum need it: the two
/// loads of the word take 1.5 of DCOSH's 12 ns on Zen 5, and integers in their place would need two
/// `fscale` and two more ways through memory.
///
/// Zen 4 and 5 foresee the word that a `fldcw` loads from a table that they index with a hash of
/// the instruction's address; where both have the same index, every call takes 130 ns more. Ends
/// that are 64 bytes apart never do (at any of 2048 places; 72 apart a third does). `fnstcw` is as
/// long as the second `fldcw`, whose operand it has.
[[gnu::always_inline]] inline reg exponential(reg x) {
  if (!less(fabs(x), 700.0L)) return plain::exponential(x);
  static constexpr float one = 1.0f, bias = 1023.0f, field = 0x1p52f;
  std::uint16_t callers;
  std::int32_t n;
  double power;
  asm("1:\tfnstcw %1\n"
      "2:\tfldcw %4\n"
      "3:\tfldl2e\n\t"
      "fmulp\n\t"
      "fistl %2\n\t"
      "fildl %2\n\t"
      "fsubr %%st, %%st(1)\n\t"
      "fadds %6\n\t"
      "fmuls %7\n\t"
      "fistpll %3\n\t"
      "f2xm1\n\t"
      "fadds %5\n\t"
      "fmull %3\n\t"
      ".nops 64 - (. - 3b) - (2b - 1b)\n\t"
      "fldcw %1"
      : "+t"(x), "=&m"(callers), "=&m"(n), "=&m"(power)
      : "m"(extended_mode), "m"(one), "m"(bias), "m"(field)
      : "st(1)");
  return x;
}

}  // namespace zrt
