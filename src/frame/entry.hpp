#pragma once

// How operands and results cross the boundary, and the two entry forms.
//
// A value entry is written by hand in its family:
//     ZRT_VALUE(real8_result, dsin)(real8 x) { return returned<double>(...); }
// A reference entry is made by the generator from the list of exports:
//     ZRT_REFERENCE(real8_result, dsin)(const void* x) {
//       return forward<real8_result, direct_dsin, operand::real8>(x);
//     }

#include <array>
#include <tuple>

#include "processor.hpp"
#include "x87.hpp"

#if defined(__ELF__) && defined(ZORVIKRT_BUILDING)
#define ZRT_EXPORTED __attribute__((visibility("default")))
// A call of an exported name goes through the PLT, which on i386 needs the address of the GOT in
// ebx. So each value entry has a hidden second name, by which its reference entries call it
// directly. Protected visibility would do that as well, but the address of a protected function
// that a program takes without -fPIC is one in the program, and the two would compare unequal.
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

// --- Operands as words --------------------------------------------------------------------------
// A 64-bit load from a slot that a caller has just written as two 32-bit words waits until both are
// in the cache, some 20 ns. Integer moves of SSE2 join the words on the way to a place of their
// own, where the load finds them: bit for bit, MXCSR untouched. A caller that stores doubles pays
// about 0.3 ns for each. REAL*16 entries do this, and those whose INTEGER*8 goes to the FPU;
// docs/designs.md tells why REAL*8 ones do not.

#if defined(__i386__)

/// Copies 64 bits by way of two 32-bit loads and one store; only where `processor::has_sse2`. The
/// compiler itself uses no xmm register here, and callers expect none to be kept.
[[gnu::always_inline]] inline void join_words(void* place, const void* slots) {
  struct words {
    std::uint32_t low, high;
  };
  const auto& from = *static_cast<const words*>(slots);
  asm("movd %1, %%xmm0\n\t"
      "movd %2, %%xmm1\n\t"
      "punpckldq %%xmm1, %%xmm0\n\t"
      "movq %%xmm0, %0"
      : "=m"(*static_cast<words*>(place))
      : "m"(from.low), "m"(from.high));
}

/// The place of an operand where 64-bit loads find it.
template <class Operand>
struct own_place {
  alignas(8) char bytes[sizeof(Operand)];

  [[gnu::always_inline]] void join(const Operand& slots) {
    static_assert(sizeof slots % 8 == 0);
    for (std::size_t i = 0; i < sizeof slots; i += 8)
      join_words(bytes + i, reinterpret_cast<const char*>(&slots) + i);
  }
  [[gnu::always_inline]] void copy(const Operand& slots) {
    std::memcpy(bytes, &slots, sizeof slots);
  }
  [[gnu::always_inline]] operator const Operand&() const {
    return *reinterpret_cast<const Operand*>(bytes);
  }
};

/// The operand joined, without SSE2 copied.
template <class Operand>
struct joined : own_place<Operand> {
  [[gnu::always_inline]] explicit joined(const Operand& slots) {
    sse2_is_usable() ? this->join(slots) : this->copy(slots);
  }
};

/// Two operands with one test.
template <class First, class Second>
class both_joined {
 public:
  [[gnu::always_inline]] both_joined(const First& first, const Second& second) {
    if (sse2_is_usable()) {
      first_.join(first);
      second_.join(second);
    } else {
      first_.copy(first);
      second_.copy(second);
    }
  }
  [[gnu::always_inline]] const First& first() const { return first_; }
  [[gnu::always_inline]] const Second& second() const { return second_; }

 private:
  own_place<First> first_;
  own_place<Second> second_;
};

#else

template <class Operand>
[[gnu::always_inline]] inline const Operand& joined(const Operand& operand) {
  return operand;
}

template <class First, class Second>
class both_joined {
 public:
  [[gnu::always_inline]] both_joined(const First& first, const Second& second)
      : first_(first), second_(second) {}
  [[gnu::always_inline]] const First& first() const { return first_; }
  [[gnu::always_inline]] const Second& second() const { return second_; }

 private:
  const First& first_;
  const Second& second_;
};

#endif

// --- Reference entries -------------------------------------------------------------------------
// An operand kind says what the reference entry is given, what the value entry is passed, and which
// slots it fills. On i386 nothing that is copied bit for bit goes through the FPU, which would
// quiet a signalling NaN: it is passed as integers, those of 64 bits in one move each where the
// processor has SSE2, so that the value entry's loads need not wait.

namespace operand {

/// Read from the address at the width of `Stored`, passed as `Passed`.
template <class Stored, class Passed = Stored>
struct copied {
  using given = const void*;
  using passed = Passed;
  static constexpr bool is_wide = false;
  static std::tuple<Passed> slots(given address) {
    Stored value;
    std::memcpy(&value, address, sizeof value);
    return {value};
  }
};

/// `count` parts one after the other.
template <class Part, class Passed, int count>
struct parts {
  using given = const void*;
  using passed = Passed;
  static constexpr bool is_wide = sizeof(Part) == 8;
  static auto slots(given address) {
    return [address]<std::size_t... I>(std::index_sequence<I...>) {
      return std::tuple_cat(copied<Part>::slots(static_cast<const Part*>(address) + I)...);
    }
    (std::make_index_sequence<count>{});
  }
};

/// Narrow integers arrive sign-extended in a full slot.
using integer1 = copied<std::int8_t, std::int32_t>;
using integer2 = copied<std::int16_t, std::int32_t>;
using integer4 = copied<std::int32_t>;
using integer8 = copied<std::int64_t>;
using unsigned8 = copied<std::uint64_t>;
#if defined(__i386__)
using real4 = parts<std::uint32_t, float, 1>;
using complex8 = parts<std::uint32_t, fcomplex, 2>;
using real16 = parts<std::uint64_t, quad, 2>;
using complex32 = parts<std::uint64_t, cquad, 4>;
#else
using real4 = copied<float>;
using complex8 = copied<fcomplex>;
using real16 = copied<quad>;
using complex32 = copied<cquad>;
#endif

/// A REAL*8 goes through the FPU: bit for bit, save that a signalling NaN arrives quiet.
struct real8 {
  using given = const void*;
  using passed = double;
  static constexpr bool is_wide = false;
  static double read(given address) {
    return static_cast<double>(load(*static_cast<const double*>(address)));
  }
  static std::tuple<double> slots(given address) { return {read(address)}; }
};
struct complex16 {
  using given = const void*;
  using passed = dcomplex;
  static constexpr bool is_wide = true;  // its result
  static auto slots(given address) {
    const double* parts = static_cast<const double*>(address);
#if defined(__i386__)
    return std::tuple(real8::read(parts), real8::read(parts + 1));
#else
    return std::tuple(dcomplex{real8::read(parts), real8::read(parts + 1)});
#endif
  }
};

/// Addresses and lengths are the same in both forms.
template <class T>
struct as_given {
  using given = T;
  using passed = T;
  static constexpr bool is_wide = false;
  static std::tuple<T> slots(T value) { return {value}; }
};

}  // namespace operand

/// Calls the value entry, through slots that take the same room as its operands.
template <class R, auto value, class... Slots>
[[gnu::always_inline]] inline R call_through(const std::tuple<Slots...>& slots) {
  return std::apply(reinterpret_cast<R (*)(Slots...)>(reinterpret_cast<void (*)()>(value)), slots);
}

template <class R, auto value, class... Kinds>
[[gnu::always_inline]] inline R call_value(typename Kinds::given... operands) {
  return call_through<R, value>(std::tuple_cat(Kinds::slots(operands)...));
}

/// With a temporary as result address, so that the caller's area is written only after the whole
/// computation and may be one of the operands.
template <class Result, auto value, class... Kinds>
[[gnu::always_inline]] inline void* call_value_to(void* area, typename Kinds::given... operands) {
  std::array<std::uint64_t, sizeof(Result) / 8> temporary;
  void* const address = &temporary;
  call_through<void*, value>(std::tuple_cat(std::tuple(address), Kinds::slots(operands)...));
  auto* to = static_cast<unsigned char*>(area);
  // Volatile: part by part, for a wider load would wait for the entry's stores.
  for (const volatile std::uint64_t& stored : temporary) {
    const std::uint64_t part = stored;
    std::memcpy(to, &part, sizeof part);
    to += sizeof part;
  }
  return area;
}

#if defined(__i386__)
#define ZRT_WIDE [[gnu::noinline, gnu::target("sse2"), gnu::force_align_arg_pointer]]
template <class R, auto value, class... Kinds>
ZRT_WIDE R call_value_wide(typename Kinds::given... operands) {
  return call_value<R, value, Kinds...>(operands...);
}
template <class Result, auto value, class... Kinds>
ZRT_WIDE void* call_value_to_wide(void* area, typename Kinds::given... operands) {
  return call_value_to<Result, value, Kinds...>(area, operands...);
}
#undef ZRT_WIDE
#endif

/// Forwards to the value entry; its result stays as it left it.
template <class R, auto value, class... Kinds>
[[gnu::always_inline]] inline R forward(typename Kinds::given... operands) {
#if defined(__i386__)
  if constexpr ((Kinds::is_wide || ...))
    if (sse2_is_usable()) return call_value_wide<R, value, Kinds...>(operands...);
#endif
  return call_value<R, value, Kinds...>(operands...);
}

/// The same for a result at an address.
template <class Result, auto value, class... Kinds>
[[gnu::always_inline]] inline void* forward_to(void* area, typename Kinds::given... operands) {
#if defined(__i386__)
  if constexpr ((Kinds::is_wide || ...))
    if (sse2_is_usable()) return call_value_to_wide<Result, value, Kinds...>(area, operands...);
#endif
  return call_value_to<Result, value, Kinds...>(area, operands...);
}

}  // namespace zrt
