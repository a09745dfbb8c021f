// The exported constants. The library itself never writes them, nor reads them: its own results
// come from constants of the same bits that no program can change.

#include <cstdint>

#if defined(__ELF__)
#define ZRT_DATA(type, name)                                   \
  extern "C" __attribute__((visibility("default"))) type name; \
  type name
#else
#define ZRT_DATA(type, name) \
  extern "C" type name;      \
  type name
#endif

ZRT_DATA(const std::uint32_t, __zorvik_FLOAT_NAN) = 0x7FC00000;
ZRT_DATA(const std::uint32_t, __zorvik_FLOAT_INF) = 0x7F800000;
ZRT_DATA(const std::uint32_t, __zorvik_FLOAT_MAX) = 0x7EFFFFFF;
ZRT_DATA(const std::uint64_t, __zorvik_DOUBLE_NAN) = 0x7FF8000000000000;
ZRT_DATA(const std::uint64_t, __zorvik_DOUBLE_INF) = 0x7FF0000000000000;
ZRT_DATA(const std::uint64_t, __zorvik_DOUBLE_MAX) = 0x7FEFFFFFFFFFFFFF;
ZRT_DATA(std::uint32_t, ___stack_probe_limit) = 0;
