// ABS, DIM, SIGN and MOD by kind, and integer powers.

#include <gtest/gtest.h>

#include <random>

#include "entries.hpp"

namespace {

using std::int16_t;
using std::int32_t;
using std::int64_t;

/// An INTEGER*2 operand in a slot whose upper half holds anything.
int32_t slot(int16_t x, std::uint32_t upper) {
  return static_cast<int32_t>(upper << 16 | static_cast<std::uint16_t>(x));
}

template <class Kind>
Kind wrapped(std::uint64_t x) {
  return static_cast<Kind>(x);
}
template <class Kind>
std::uint64_t raw(Kind x) {
  return static_cast<std::uint64_t>(x);
}

template <class Kind>
Kind corner(std::mt19937_64& random) {
  const std::uint64_t top = std::uint64_t{1} << (sizeof(Kind) * 8 - 1);
  const std::uint64_t near[] = {0, top, random(), random() >> random() % 64};
  return wrapped<Kind>(near[random() % 4] + random() % 5 - 2);
}

}  // namespace

TEST(IntegerArithmetic, WrapsToItsKind) {
  std::mt19937_64 random(51);
  const auto size = [](auto x) { return x < 0 ? 0 - raw(x) : raw(x); };
  const auto transferred = [&](auto a, auto b) { return b < 0 ? 0 - size(a) : size(a); };
  for (int i = 0; i < 200000; ++i) {
    const auto upper = static_cast<std::uint32_t>(random());
    const auto h = corner<int16_t>(random), g = corner<int16_t>(random);
    const auto a = corner<int32_t>(random), b = corner<int32_t>(random);
    const auto k = corner<int64_t>(random), l = corner<int64_t>(random);
    const int32_t hs = slot(h, upper), gs = slot(g, ~upper);

    ASSERT_EQ(__zorvik_iiabs(hs), wrapped<int16_t>(size(h))) << h;
    ASSERT_EQ(__zorvik_iabs(a), wrapped<int32_t>(size(a))) << a;
    ASSERT_EQ(__zorvik_kiabs(k), wrapped<int64_t>(size(k))) << k;

    ASSERT_EQ(__zorvik_iisign(hs, gs), wrapped<int16_t>(transferred(h, g))) << h << ' ' << g;
    ASSERT_EQ(__zorvik_isign(a, b), wrapped<int32_t>(transferred(a, b))) << a << ' ' << b;
    ASSERT_EQ(__zorvik_kisign(k, l), wrapped<int64_t>(transferred(k, l))) << k << ' ' << l;

    const auto short_difference = wrapped<int16_t>(raw(h) - raw(g));
    ASSERT_EQ(__zorvik_iidim(hs, gs), short_difference < 0 ? 0 : short_difference) << h << ' ' << g;
    ASSERT_EQ(__zorvik_idim(a, b), a < b ? 0 : wrapped<int32_t>(raw(a) - raw(b))) << a << ' ' << b;
    ASSERT_EQ(__zorvik_kidim(k, l), k < l ? 0 : wrapped<int64_t>(raw(k) - raw(l))) << k << ' ' << l;

    ASSERT_EQ(__zorvik_imod(hs, gs), g == 0 ? h : h % g) << h << ' ' << g;
    ASSERT_EQ(__zorvik_mod(a, b), b == 0 ? a : int64_t{a} % b) << a << ' ' << b;
    ASSERT_EQ(__zorvik_kmod(k, l), l == 0 ? k : l == -1 ? 0 : k % l) << k << ' ' << l;

    ASSERT_EQ(__zorvik_jiabs(a), __zorvik_iabs(a));
    ASSERT_EQ(__zorvik_jidim(a, b), __zorvik_idim(a, b));
    ASSERT_EQ(__zorvik_jisign(a, b), __zorvik_isign(a, b));
    ASSERT_EQ(__zorvik_jmod(a, b), __zorvik_mod(a, b));
  }
}

TEST(IntegerPowers, AreRepeatedProducts) {
  std::mt19937_64 random(52);
  for (int i = 0; i < 3000; ++i) {
    const auto base = i < 20 ? int64_t{i} - 10 : corner<int64_t>(random);
    const auto short_base = static_cast<int32_t>(base);
    std::uint64_t power = 1, short_power = 1;
    for (int32_t exponent = 0; exponent <= 130; ++exponent) {
      ASSERT_EQ(__zorvik_kitoki(base, exponent), wrapped<int64_t>(power))
          << base << ' ' << exponent;
      ASSERT_EQ(__zorvik_itoi(short_base, exponent), wrapped<int32_t>(short_power))
          << short_base << ' ' << exponent;
      power *= raw(base);
      short_power *= raw(short_base);
    }
  }
  // (a**m)**n = a**(m n) with an exponent of all bits, and the largest exponents.
  const int32_t third = __zorvik_itoi(3, 46341);
  EXPECT_EQ(__zorvik_itoi(third, 46340), __zorvik_itoi(3, 46341 * 46340));
  const int64_t fifth = __zorvik_kitoki(5, 3037000499);
  EXPECT_EQ(__zorvik_kitoki(fifth, 3037000499), __zorvik_kitoki(5, 3037000499 * 3037000499));
}
