// 64-bit arithmetic by the lengths of the operands, beside the compiler's own helpers, which i386
// code calls for the same operations.

#include "calls.hpp"

#if defined(__i386__)
extern "C" {
std::int64_t __muldi3(std::int64_t, std::int64_t);
std::int64_t __divdi3(std::int64_t, std::int64_t);
std::int64_t __moddi3(std::int64_t, std::int64_t);
std::uint64_t __udivdi3(std::uint64_t, std::uint64_t);
std::uint64_t __umoddi3(std::uint64_t, std::uint64_t);
}
#endif

namespace bench {
namespace {

struct lengths {
  const char* name;
  sample a, b;
};
// Divisors are positive: the helpers trap on a zero.
constexpr lengths classes[] = {
    {" word by word", {0, 0x1p31}, {1, 0x1p31}},
    {" word by word, signed", {-0x1p31, 0x1p31}, {1, 0x1p31}},
    {" long by word", {0, 0x1p63}, {1, 0x1p31}},
    {" long by word, signed", {-0x1p63, 0x1p63}, {1, 0x1p31}},
    {" long by long", {0, 0x1p63}, {0x1p32, 0x1p48}},
    {" long by long, signed", {-0x1p63, 0x1p63}, {0x1p32, 0x1p48}},
    {" long by longest", {0, 0x1p63}, {0x1p32, 0x1p63}},
};

template <class Number>
void add_pair(const std::string& stem, Number (*function)(Number, Number),
              [[maybe_unused]] Number (*helper)(Number, Number), std::string_view codes) {
  for (const lengths& of : classes) {
    if (codes == "uu" && of.a.low < 0) continue;
    add(stem + of.name, own, function, codes, {of.a, of.b});
    if (helper != nullptr) add(stem + of.name, "libgcc", helper, codes, {of.a, of.b});
  }
}

const registered int64_rows([] {
#if defined(__i386__)
  const auto multiply = __muldi3, divide = __divdi3, remainder = __moddi3;
  const auto divide_unsigned = __udivdi3, remainder_unsigned = __umoddi3;
#else
  std::int64_t (*const multiply)(std::int64_t, std::int64_t) = nullptr;
  std::uint64_t (*const divide_unsigned)(std::uint64_t, std::uint64_t) = nullptr;
  const auto divide = multiply, remainder = multiply;
  const auto remainder_unsigned = divide_unsigned;
#endif
  add_pair("lmul", __zorvik_lmul, multiply, "kk");
  add_pair("ldiv", __zorvik_ldiv, divide, "kk");
  add_pair("lmod", __zorvik_lmod, remainder, "kk");
  add_pair("uldiv", __zorvik_uldiv, divide_unsigned, "uu");
  add_pair("ulmod", __zorvik_ulmod, remainder_unsigned, "uu");
});

}  // namespace
}  // namespace bench
