#pragma once

// Texts in blocks of 16 bytes that are held in registers of SSE2, for where it is usable.
//
// Integer moves and comparisons of SSE2, which leave MXCSR as it is. Written out, for the 32-bit
// builds have SSE off everywhere: so a choice at load needs no function of its own, and no block is
// ever kept on a stack that callers align to 4 bytes. A register that a function saves costs its
// caller a store and a load in a row, 5 cycles for each of its calls that keeps a loop's counter
// there, so that the functions below are kept to three registers, or four.

#include <cstddef>
#include <cstdint>

namespace zrt::character::blocks {

inline constexpr std::size_t size = 16;
inline constexpr unsigned all_equal = 0xFFFF;

#if defined(__SSE2__)
#define ZRT_CHANGES(...) : __VA_ARGS__
#else
#define ZRT_CHANGES(...)
#endif

/// `count` bytes as one operand.
template <std::size_t count>
using bytes = char[count];
template <std::size_t count>
[[gnu::always_inline]] inline const bytes<count>& view(const char* text) {
  return *reinterpret_cast<const bytes<count>*>(text);
}
template <std::size_t count>
[[gnu::always_inline]] inline bytes<count>& view(char* text) {
  return *reinterpret_cast<bytes<count>*>(text);
}

/// One bit for each byte of a block that is the same in both.
[[gnu::always_inline]] inline unsigned equal_bytes(const char* a, const char* b) {
  unsigned bits;
  asm("movdqu %1, %%xmm0\n\t"
      "movdqu %2, %%xmm1\n\t"
      "pcmpeqb %%xmm1, %%xmm0\n\t"
      "pmovmskb %%xmm0, %0"
      : "=r"(bits)
      : "m"(view<size>(a)), "m"(view<size>(b))ZRT_CHANGES("xmm0", "xmm1"));
  return bits;
}
/// The same for blanks.
[[gnu::always_inline]] inline unsigned blank_bytes(const char* text) {
  unsigned bits;
  asm("movl $0x20202020, %0\n\t"
      "movd %0, %%xmm0\n\t"
      "pshufd $0, %%xmm0, %%xmm0\n\t"
      "movdqu %1, %%xmm1\n\t"
      "pcmpeqb %%xmm1, %%xmm0\n\t"
      "pmovmskb %%xmm0, %0"
      : "=&r"(bits)
      : "m"(view<size>(text))ZRT_CHANGES("xmm0", "xmm1"));
  return bits;
}

/// One bit for each place of a block at which `first` stands, and `last` at that place of the
/// other. Both are four times the byte.
[[gnu::always_inline]] inline unsigned places_of_both(const char* firsts, const char* lasts,
                                                      std::uint32_t first, std::uint32_t last) {
  unsigned bits;
  asm("movd %3, %%xmm0\n\t"
      "movd %4, %%xmm1\n\t"
      "movdqu %1, %%xmm2\n\t"
      "movdqu %2, %%xmm3\n\t"
      "pshufd $0, %%xmm0, %%xmm0\n\t"
      "pshufd $0, %%xmm1, %%xmm1\n\t"
      "pcmpeqb %%xmm2, %%xmm0\n\t"
      "pcmpeqb %%xmm3, %%xmm1\n\t"
      "pand %%xmm1, %%xmm0\n\t"
      "pmovmskb %%xmm0, %0"
      : "=r"(bits)
      : "m"(view<size>(firsts)), "m"(view<size>(lasts)), "rm"(first),
        "rm"(last)ZRT_CHANGES("xmm0", "xmm1", "xmm2", "xmm3"));
  return bits;
}

#define ZRT_ALL_OF_FOUR     \
  "pand %%xmm1, %%xmm0\n\t" \
  "pand %%xmm3, %%xmm2\n\t" \
  "pand %%xmm2, %%xmm0\n\t" \
  "pmovmskb %%xmm0, %k0"

/// Whether four blocks are equal, or blank.
[[gnu::always_inline]] inline bool four_are_equal(const char* a, const char* b) {
  unsigned bits;
  asm("movdqu (%1), %%xmm0\n\t"
      "movdqu (%2), %%xmm4\n\t"
      "movdqu 16(%1), %%xmm1\n\t"
      "movdqu 16(%2), %%xmm5\n\t"
      "movdqu 32(%1), %%xmm2\n\t"
      "movdqu 32(%2), %%xmm6\n\t"
      "movdqu 48(%1), %%xmm3\n\t"
      "movdqu 48(%2), %%xmm7\n\t"
      "pcmpeqb %%xmm4, %%xmm0\n\t"
      "pcmpeqb %%xmm5, %%xmm1\n\t"
      "pcmpeqb %%xmm6, %%xmm2\n\t"
      "pcmpeqb %%xmm7, %%xmm3\n\t" ZRT_ALL_OF_FOUR
      : "=r"(bits)
      : "r"(a), "r"(b), "m"(view<4 * size>(a)),
        "m"(view<4 * size>(b))
            ZRT_CHANGES("xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7"));
  return bits == all_equal;
}
/// One register holds the address, then the blanks, then the bits.
[[gnu::always_inline]] inline bool four_are_blank(const char* text) {
  std::size_t held = reinterpret_cast<std::size_t>(text);
  asm("movdqu (%0), %%xmm0\n\t"
      "movdqu 16(%0), %%xmm1\n\t"
      "movdqu 32(%0), %%xmm2\n\t"
      "movdqu 48(%0), %%xmm3\n\t"
      "movl $0x20202020, %k0\n\t"
      "movd %k0, %%xmm4\n\t"
      "pshufd $0, %%xmm4, %%xmm4\n\t"
      "pcmpeqb %%xmm4, %%xmm0\n\t"
      "pcmpeqb %%xmm4, %%xmm1\n\t"
      "pcmpeqb %%xmm4, %%xmm2\n\t"
      "pcmpeqb %%xmm4, %%xmm3\n\t" ZRT_ALL_OF_FOUR
      : "+r"(held)
      : "m"(view<4 * size>(text)) ZRT_CHANGES("xmm0", "xmm1", "xmm2", "xmm3", "xmm4"));
  return static_cast<unsigned>(held) == all_equal;
}

#undef ZRT_ALL_OF_FOUR

// 8 to 16 bytes as two halves of a block, 17 and more as blocks from the front and as many up to
// the end. Both may overlap.

template <std::size_t count>
[[gnu::always_inline]] inline auto& last(auto* text, std::size_t length) {
  return view<count>(text + length - count);
}

#define ZRT_ALL "pcmpeqd %%xmm0, %%xmm0\n\t"
#define ZRT_PAIRS(front, back) \
  "movdqu " front              \
  "(%1), %%xmm1\n\t"           \
  "movdqu " front              \
  "(%2), %%xmm2\n\t"           \
  "movdqu " back               \
  "(%1,%3), %%xmm3\n\t"        \
  "movdqu " back               \
  "(%2,%3), %%xmm4\n\t"        \
  "pcmpeqb %%xmm2, %%xmm1\n\t" \
  "pcmpeqb %%xmm4, %%xmm3\n\t" \
  "pand %%xmm1, %%xmm0\n\t"    \
  "pand %%xmm3, %%xmm0\n\t"
#define ZRT_ARE_EQUAL(name, span, pairs)                                                     \
  [[gnu::always_inline]] inline bool name(const char* a, const char* b, std::size_t count) { \
    unsigned bits;                                                                           \
    asm(pairs "pmovmskb %%xmm0, %0"                                                          \
        : "=r"(bits)                                                                         \
        : "r"(a), "r"(b), "r"(count), "m"(view<span>(a)), "m"(view<span>(b)),                \
          "m"(last<span>(a, count)),                                                         \
          "m"(last<span>(b, count))ZRT_CHANGES("xmm0", "xmm1", "xmm2", "xmm3", "xmm4"));     \
    return bits == all_equal;                                                                \
  }
ZRT_ARE_EQUAL(equal_halves, 8,
              "movq (%1), %%xmm0\n\t"
              "movq (%2), %%xmm1\n\t"
              "movhps -8(%1,%3), %%xmm0\n\t"
              "movhps -8(%2,%3), %%xmm1\n\t"
              "pcmpeqb %%xmm1, %%xmm0\n\t")
ZRT_ARE_EQUAL(equal_2, size, ZRT_ALL ZRT_PAIRS("", "-16"))
ZRT_ARE_EQUAL(equal_4, 2 * size, ZRT_ALL ZRT_PAIRS("", "-16") ZRT_PAIRS("16", "-32"))
ZRT_ARE_EQUAL(equal_8, 4 * size,
              ZRT_ALL ZRT_PAIRS("", "-16") ZRT_PAIRS("16", "-32") ZRT_PAIRS("32", "-48")
                  ZRT_PAIRS("48", "-64"))
#undef ZRT_ARE_EQUAL
#undef ZRT_PAIRS
#undef ZRT_ALL

// All bytes are read before one is stored.
#define ZRT_LOAD(move, front, back, x, y) \
  move " " front "(%3), %%xmm" x "\n\t" move " " back "(%3,%4), %%xmm" y "\n\t"
#define ZRT_STORE(move, front, back, x, y) \
  move " %%xmm" x ", " front "(%2)\n\t" move " %%xmm" y ", " back "(%2,%4)\n\t"
#define ZRT_COPY(name, span, moves, ...)                                                         \
  [[gnu::always_inline]] inline void name(char* target, const char* source, std::size_t count) { \
    asm(moves                                                                                    \
        : "=m"(view<span>(target)), "=m"(last<span>(target, count))                              \
        : "r"(target), "r"(source), "r"(count), "m"(view<span>(source)),                         \
          "m"(last<span>(source, count))ZRT_CHANGES(__VA_ARGS__));                               \
  }
#define ZRT_EACH_2(of) of("movdqu", "", "-16", "0", "1")
#define ZRT_EACH_4(of) ZRT_EACH_2(of) of("movdqu", "16", "-32", "2", "3")
#define ZRT_EACH_8(of) \
  ZRT_EACH_4(of) of("movdqu", "32", "-48", "4", "5") of("movdqu", "48", "-64", "6", "7")
ZRT_COPY(copy_halves, 8, ZRT_LOAD("movq", "", "-8", "0", "1") ZRT_STORE("movq", "", "-8", "0", "1"),
         "xmm0", "xmm1")
ZRT_COPY(copy_2, size, ZRT_EACH_2(ZRT_LOAD) ZRT_EACH_2(ZRT_STORE), "xmm0", "xmm1")
ZRT_COPY(copy_4, 2 * size, ZRT_EACH_4(ZRT_LOAD) ZRT_EACH_4(ZRT_STORE), "xmm0", "xmm1", "xmm2",
         "xmm3")
ZRT_COPY(copy_8, 4 * size, ZRT_EACH_8(ZRT_LOAD) ZRT_EACH_8(ZRT_STORE), "xmm0", "xmm1", "xmm2",
         "xmm3", "xmm4", "xmm5", "xmm6", "xmm7")
#undef ZRT_COPY

/// Stores two blocks of blanks in the same way.
[[gnu::always_inline]] inline void blank_2(char* text, std::size_t count) {
  asm("movd %2, %%xmm0\n\t"
      "pshufd $0, %%xmm0, %%xmm0\n\t"
      "movdqu %%xmm0, %0\n\t"
      "movdqu %%xmm0, %1"
      : "=m"(view<size>(text)), "=m"(last<size>(text, count))
      : "r"(0x20202020)ZRT_CHANGES("xmm0"));
}

/// One bit for each byte of the two halves that is blank.
[[gnu::always_inline]] inline unsigned blank_halves(const char* text, std::size_t count) {
  unsigned bits;
  asm("movl $0x20202020, %0\n\t"
      "movd %0, %%xmm0\n\t"
      "pshufd $0, %%xmm0, %%xmm0\n\t"
      "movq %1, %%xmm1\n\t"
      "movhps %2, %%xmm1\n\t"
      "pcmpeqb %%xmm1, %%xmm0\n\t"
      "pmovmskb %%xmm0, %0"
      : "=&r"(bits)
      : "m"(view<8>(text)), "m"(last<8>(text, count))ZRT_CHANGES("xmm0", "xmm1"));
  return bits;
}

// What the compiler is told to keep loops in three registers and the usual way straight: a jump
// that is taken costs 2 cycles.
constexpr bool is_usual(bool is_so) { return __builtin_expect(is_so, true); }
constexpr bool is_rare(bool is_so) { return __builtin_expect(is_so, false); }
/// Not computed beforehand in a register of its own.
[[gnu::always_inline]] inline void in_place(std::size_t& count) { asm("" : "+r"(count)); }

/// The number of the highest bit that is set.
inline std::size_t top_bit(unsigned bits) {
  return 31 - static_cast<std::size_t>(__builtin_clz(bits));
}

inline constexpr std::size_t least = 8;             // bytes that the functions below take
inline constexpr std::size_t most_held = 8 * size;  // and at most, save for the length

// Few sizes: a branch that is taken costs 2 cycles, as much as four blocks more.

/// Reads every byte before it stores one.
[[gnu::always_inline]] inline void copy_held(char* target, const char* source, std::size_t count) {
  if (is_usual(count <= size)) return copy_halves(target, source, count);
  if (count <= 2 * size) return copy_2(target, source, count);
  if (count <= 4 * size) return copy_4(target, source, count);
  copy_8(target, source, count);
}

[[gnu::always_inline]] inline bool are_equal_held(const char* a, const char* b, std::size_t count) {
  if (is_usual(count <= size)) return equal_halves(a, b, count);
  if (count <= 2 * size) return equal_2(a, b, count);
  if (count <= 4 * size) return equal_4(a, b, count);
  return equal_8(a, b, count);
}

/// The length, at least 8, without the trailing blanks.
[[gnu::always_inline]] inline std::size_t length_by_blocks(const char* text, std::size_t length) {
  if (is_rare(length <= size)) {
    const unsigned others = blank_halves(text, length) ^ all_equal;
    if (others > 0xFF) return length - 15 + top_bit(others);
    return others != 0 ? top_bit(others) + 1 : 0;
  }
  while (is_usual(length > 4 * size) && is_usual(four_are_blank(text + length - 4 * size))) {
    in_place(length);
    length -= 4 * size;
  }
  while (is_rare(length > size)) {
    const unsigned others = blank_bytes(text + length - size) ^ all_equal;
    if (others != 0) return length - 15 + top_bit(others);
    in_place(length);
    length -= size;
  }
  // The block at the front may take in blanks that were counted already.
  const unsigned others = blank_bytes(text) ^ all_equal;
  return is_rare(others != 0) ? top_bit(others) + 1 : 0;
}

}  // namespace zrt::character::blocks
