#pragma once

// How operands and results cross the boundary, and the two entry forms.
//
// A value entry is written by hand in its family:
//     ZRT_VALUE(real8_result, dsin)(real8 x) { return returned<double>(...); }
// A reference entry is made by the generator from the list of exports:
//     ZRT_REFERENCE(real8_result, dsin)(const void* x) {
//       return forward<operand::real8>(direct_dsin, x);
//     }

#include "x87.hpp"

#if defined(__ELF__) && defined(ZORVIKRT_BUILDING)
#define ZRT_EXPORTED __attribute__((visibility("default")))
// A call of an exported name goes through the PLT, which on i386 needs the address of the GOT in
// ebx. So each value entry has a hidden second name, by which its reference entries call it
// directly.
#define ZRT_VALUE(type, stem)                                            \
  asm(".globl zorvikrt_direct_" #stem "\n.hidden zorvikrt_direct_" #stem \
      "\n.set zorvikrt_direct_" #stem ", __zorvik_" #stem);              \
  extern "C" ZRT_EXPORTED type __zorvik_##stem
#define ZRT_DIRECT(stem) asm("zorvikrt_direct_" #stem) __attribute__((visibility("hidden")))
#else
#define ZRT_EXPORTED
#define ZRT_VALUE(type, stem) extern "C" type __zorvik_##stem
#define ZRT_DIRECT(stem) asm(ZRT_SYMBOL_PREFIX "__zorvik_" #stem)
#define ZRT_SYMBOL_PREFIX_TEXT(prefix) #prefix
#define ZRT_SYMBOL_PREFIX_OF(prefix) ZRT_SYMBOL_PREFIX_TEXT(prefix)
#define ZRT_SYMBOL_PREFIX ZRT_SYMBOL_PREFIX_OF(__USER_LABEL_PREFIX__)
#endif

#define ZRT_REFERENCE(type, stem) extern "C" ZRT_EXPORTED type __zorvik_I_##stem
/// An exported name that carries no prefix.
#define ZRT_PLAIN(type, name) extern "C" ZRT_EXPORTED type name

namespace zrt {

/// COMPLEX*8, COMPLEX*16: re, then im.
struct fcomplex {
  float re, im;
};
struct dcomplex {
  double re, im;
};
/// REAL*16: the unevaluated sum hi + lo.
struct quad {
  double hi, lo;
};
/// COMPLEX*32: re, then im.
struct cquad {
  quad re, im;
};

// --- Operands ---------------------------------------------------------------------------------

/// A REAL*8 or INTEGER*8 operand by value. On i386 its slots are aligned to 4 bytes; a type that
/// says so is used where it lies, one that does not would first be copied word by word, which costs
/// a failed store forwarding at the load.
#if defined(__i386__)
using real8 = double __attribute__((aligned(4)));
using integer8 = std::int64_t __attribute__((aligned(4)));
using unsigned8 = std::uint64_t __attribute__((aligned(4)));
#else
using real8 = double;
using integer8 = std::int64_t;
using unsigned8 = std::uint64_t;
#endif
using real4 = float;

// --- Results -----------------------------------------------------------------------------------
// On i386 a floating result stays on the FPU stack as it stands, and whoever stores it rounds it; a
// COMPLEX*8 result is a 64-bit integer, re in its low half. On x86-64 they travel in xmm registers.
// dcomplex, quad and cquad results go through the result address, which is also handed back.

#if defined(__i386__)
template <format F>
using result = reg;
using complex8_result = std::uint64_t;
#else
template <format F>
using result = F;
using complex8_result = fcomplex;
#endif
using real4_result = result<float>;
using real8_result = result<double>;

/// Hands a floating result back.
template <format F>
[[gnu::always_inline]] inline result<F> returned(reg value) {
  return static_cast<result<F>>(value);
}

/// Hands a COMPLEX*8 back, from the images of its parts.
[[gnu::always_inline]] inline complex8_result returned_complex(std::uint32_t re, std::uint32_t im) {
#if defined(__i386__)
  return std::uint64_t{im} << 32 | re;
#else
  return std::bit_cast<fcomplex>(std::uint64_t{im} << 32 | re);
#endif
}

// --- Reference entries -------------------------------------------------------------------------
// An operand kind says what the reference entry is given, what the value entry is passed, and how
// the one is read from the other. On i386 whatever is copied bit for bit is passed as 32-bit words,
// so that no copy goes through the FPU, which would quiet a signalling NaN.

namespace operand {

template <int count>
struct words {
  std::uint32_t word[count];
};

/// Read from the address at the width of `Stored`, passed as `Passed`.
template <class Stored, class Passed = Stored>
struct copied {
  using given = const void*;
  using passed = Passed;
  static passed read(given address) {
    Stored value;
    std::memcpy(&value, address, sizeof value);
    return value;
  }
};

#if defined(__i386__)
template <class Natural>
using bitwise = copied<words<sizeof(Natural) / 4>>;
#else
template <class Natural>
using bitwise = copied<Natural>;
#endif

/// Narrow integers arrive sign-extended in a full slot.
using integer1 = copied<std::int8_t, std::int32_t>;
using integer2 = copied<std::int16_t, std::int32_t>;
using integer4 = copied<std::int32_t>;
using integer8 = copied<std::int64_t>;
using unsigned8 = copied<std::uint64_t>;
using real4 = bitwise<float>;
using complex8 = bitwise<fcomplex>;
using real16 = bitwise<quad>;
using complex32 = bitwise<cquad>;

/// A REAL*8 goes through the FPU: bit for bit, save that a signalling NaN arrives quiet.
struct real8 {
  using given = const void*;
  using passed = double;
  static double read(given address) {
    return static_cast<double>(load(*static_cast<const double*>(address)));
  }
};
struct complex16 {
  using given = const void*;
  using passed = dcomplex;
  static dcomplex read(given address) {
    const double* parts = static_cast<const double*>(address);
    return {real8::read(parts), real8::read(parts + 1)};
  }
};

/// Addresses and lengths are the same in both forms.
template <class T>
struct as_given {
  using given = T;
  using passed = T;
  static T read(T value) { return value; }
};

}  // namespace operand

/// Forwards to the value entry; its result stays as it left it.
template <class... Kinds, class R>
[[gnu::always_inline]] inline R forward(R (*value)(typename Kinds::passed...),
                                        typename Kinds::given... operands) {
  return value(Kinds::read(operands)...);
}

/// Forwards with a temporary as result address, so that the caller's area is written only after the
/// whole computation and may be one of the operands.
template <class Result, class... Kinds>
[[gnu::always_inline]] inline void* forward_to(void* area,
                                               void* (*value)(void*, typename Kinds::passed...),
                                               typename Kinds::given... operands) {
  operand::words<sizeof(Result) / 4> temporary;
  value(&temporary, Kinds::read(operands)...);
  std::memcpy(area, &temporary, sizeof temporary);
  return area;
}

}  // namespace zrt
