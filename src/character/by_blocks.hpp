#pragma once

// Entries that take blocks held in registers, where SSE2 is usable and the length fits, or another
// way. On i386 they jump to either with the operands where they are, in assembler: the compiler
// loads all operands first, saves registers for that, and stores the operands again.

#include "character/held_blocks.hpp"
#include "frame/entry.hpp"

#if defined(__i386__)

#define ZRT_TEXT_OF(text) #text
#define ZRT_TEXT(text) ZRT_TEXT_OF(text)
#define ZRT_NAME(name) ZRT_TEXT(__USER_LABEL_PREFIX__) #name
#if defined(__ELF__)
#define ZRT_TEST_SSE2 ZRT_COMPARE_HAS_SSE2("%eax")
#else
#define ZRT_TEST_SSE2 "cmpb $0, " ZRT_NAME(_ZN3zrt9processor8has_sse2E) "\n\t"
#endif
// Each begins at a line of code: LEN_TRIM of 80 took 3.3 to 5.3 ns as its instructions lay.
#define ZRT_WAY(type, name) extern "C" __attribute__((aligned(64))) type name

/// Two texts of the same length go to `held`.
#define ZRT_ENTRY_OF_TWO(type, stem, target, held, otherwise)                                       \
  static_assert(zrt::character::blocks::least == 8 && zrt::character::blocks::most_held == 128);    \
  ZRT_WAY(type, zorvikrt_##stem##_held)(target a, const char* b, std::size_t length) {              \
    return held(a, b, length);                                                                      \
  }                                                                                                 \
  ZRT_WAY(type, zorvikrt_##stem##_otherwise)                                                        \
  (target a, const char* b, std::int32_t a_length, std::int32_t b_length) {                         \
    return otherwise(a, b, a_length, b_length);                                                     \
  }                                                                                                 \
  ZRT_VALUE(type __attribute__((naked, aligned(64))), stem)                                         \
  (target, const char*, std::int32_t, std::int32_t) {                                               \
    asm("movl 12(%esp), %eax\n\t"                                                                 \
        "cmpl 16(%esp), %eax\n\t"                                                                 \
        "jne " ZRT_NAME(zorvikrt_##stem##_otherwise) "\n\t"                                       \
        "subl $8, %eax\n\t"                                                                       \
        "cmpl $120, %eax\n\t"                                                                     \
        "ja " ZRT_NAME(zorvikrt_##stem##_otherwise) "\n\t"                                        \
        ZRT_TEST_SSE2                                                                             \
        "je " ZRT_NAME(zorvikrt_##stem##_otherwise) "\n\t"                                        \
        "jmp " ZRT_NAME(zorvikrt_##stem##_held)); \
  }
/// The length of a text without its trailing blanks: one that ends with a blank goes to `held`.
#define ZRT_ENTRY_OF_LENGTH(stem, held, otherwise)                                               \
  ZRT_WAY(std::size_t, zorvikrt_##stem##_held)(const char* text, std::size_t length) {           \
    return held(text, length);                                                                   \
  }                                                                                              \
  ZRT_WAY(std::size_t, zorvikrt_##stem##_otherwise)                                              \
  (const char* text, std::int32_t length) { return otherwise(text, extent(length)); }            \
  ZRT_VALUE(std::int32_t __attribute__((naked, aligned(64))), stem)(const char*, std::int32_t) { \
    asm("movl 8(%esp), %eax\n\t"                                                           \
        "movl 4(%esp), %ecx\n\t"                                                           \
        "cmpl $8, %eax\n\t"                                                                \
        "jl " ZRT_NAME(zorvikrt_##stem##_otherwise) "\n\t"                                 \
        "cmpb $' ', -1(%ecx,%eax)\n\t"                                                     \
        "jne 1f\n\t"                                                                       \
        ZRT_TEST_SSE2                                                                      \
        "je " ZRT_NAME(zorvikrt_##stem##_otherwise) "\n\t"                                 \
        "jmp " ZRT_NAME(zorvikrt_##stem##_held) "\n"                                       \
        "1: ret");     \
  }

#else

#define ZRT_ENTRY_OF_TWO(type, stem, target, held, otherwise)                          \
  ZRT_VALUE(type __attribute__((aligned(64))), stem)                                   \
  (target a, const char* b, std::int32_t a_length, std::int32_t b_length) {            \
    const auto length = static_cast<std::uint32_t>(a_length);                          \
    if (blocks::is_usual(a_length == b_length &&                                       \
                         length - blocks::least <= blocks::most_held - blocks::least)) \
      return held(a, b, length);                                                       \
    return otherwise(a, b, a_length, b_length);                                        \
  }
#define ZRT_ENTRY_OF_LENGTH(stem, held, otherwise)                                    \
  ZRT_VALUE(std::int32_t __attribute__((aligned(64))), stem)                          \
  (const char* text, std::int32_t length) {                                           \
    if (length < static_cast<std::int32_t>(blocks::least))                            \
      return static_cast<std::int32_t>(otherwise(text, extent(length)));              \
    if (text[length - 1] != ' ') return length;                                       \
    return static_cast<std::int32_t>(held(text, static_cast<std::uint32_t>(length))); \
  }

#endif
