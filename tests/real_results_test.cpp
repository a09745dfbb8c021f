// The bits themselves: digests of the results of every REAL function that rests on additions,
// multiplications and divisions alone, so that they are the same on every processor. They were
// taken when each result agreed with an independent computation; a change of any step or constant
// that any of these operands can show changes them.

#include <gtest/gtest.h>

#include <random>

#include "entries.hpp"
#include "support/bits.hpp"

using namespace support;
using namespace zrt;

namespace {

// So many that a unit in the last place of a coefficient shows.
constexpr int operands = 1000000;

/// A value of either sign with a random significand and an exponent in [low, high].
template <format F>
F drawn(std::mt19937_64& random, int low, int high) {
  using bits_of = image_of<F>;
  constexpr int fraction_bits = layout<F>::fraction_bits;
  const auto exponent = static_cast<bits_of>(
      layout<F>::bias + low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1)));
  const bits_of fraction = static_cast<bits_of>(random() >> (64 - fraction_bits));
  const bits_of sign = static_cast<bits_of>(random() & 1) << (8 * sizeof(F) - 1);
  return from_bits(sign | exponent << fraction_bits | fraction);
}

class digest {
 public:
  template <format F>
  void add(reg result) {
    const F stored = static_cast<F>(result);
    value_ = (value_ ^ bits(stored)) * 0x100000001B3;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325;
};

template <format F, class Operand>
std::uint64_t digest_of(result<F> (*entry)(Operand), int low, int high) {
  std::mt19937_64 random(23);
  digest all;
  for (int i = 0; i < operands; ++i) all.add<F>(entry(drawn<F>(random, low, high)));
  return all.value();
}

template <format F, class Operand>
struct known {
  const char* name;
  result<F> (*entry)(Operand);
  int low, high;  // exponents of the operands
  std::uint64_t expected;
};

template <format F, class Operand>
void expect(std::initializer_list<known<F, Operand>> all) {
  for (const auto& k : all) {
    const std::uint64_t found = digest_of<F>(k.entry, k.low, k.high);
    EXPECT_EQ(found, k.expected) << k.name << std::hex << " 0x" << found;
  }
}

}  // namespace

TEST(Results, KeepTheirBitsInReal8) {
  expect<double, real8>({{"dexp", __zorvik_dexp, -6, 9, 0x1BDCA2DFB8245622},
                         {"dlog", __zorvik_dlog, -60, 60, 0x977CAC39D61F87BC},
                         {"dlog near 1", __zorvik_dlog, -1, 0, 0x6479D6C29434920C},
                         {"dlog10", __zorvik_dlog10, -40, 40, 0x2F37C4AAACADEE49},
                         {"dsqrt", __zorvik_dsqrt, -1022, 1023, 0x1FF9A99C8122D6B2},
                         {"dsin", __zorvik_dsin, -6, 12, 0xD459E5B699946811},
                         {"dcos", __zorvik_dcos, -6, 12, 0xB2D1D106E3138B1C},
                         {"dsind", __zorvik_dsind, -10, 20, 0x76A98CDBCAE865B7},
                         {"dtan", __zorvik_dtan, -6, 12, 0xB07E1371026F69F1},
                         {"dcot", __zorvik_dcot, -6, 12, 0x6DC5A6724276B2DD},
                         {"dasin", __zorvik_dasin, -6, -1, 0x54889F1083296ECE},
                         {"dacos", __zorvik_dacos, -6, -1, 0x5564701523791E37},
                         {"dacosd", __zorvik_dacosd, -6, -1, 0xD2A51D4C7C9699B5},
                         {"datan", __zorvik_datan, -5, 5, 0x29D6F991791EDFA8},
                         {"datand", __zorvik_datand, -5, 5, 0xA138B229B3F00472},
                         {"dsinh by its rational form", __zorvik_dsinh, -8, -1, 0x6EFFEDF71E6C432E},
                         {"dtanh by its rational form", __zorvik_dtanh, -8, -2, 0x6171A985C6BF6346},
                         {"dnint", __zorvik_dnint, -3, 55, 0x5C599F73F7F82C59},
                         {"f90floor", __zorvik_f90floor, -3, 55, 0x9442E3C966A51B51}});
}

TEST(Results, KeepTheirBitsInReal4) {
  expect<float, real4>({{"exp", __zorvik_exp, -6, 6, 0x40DD9A174624E547},
                        {"alog", __zorvik_alog, -20, 20, 0xC0115336CA399CF},
                        {"alog near 1", __zorvik_alog, -1, 0, 0xEFB7A6F8DC655E2},
                        {"alog10", __zorvik_alog10, -40, 40, 0xF7DF872E08CCFAE8},
                        {"sqrt", __zorvik_sqrt, -126, 127, 0x76DA6CA57D7B0ED},
                        {"sin", __zorvik_sin, -6, 8, 0x59EAE999417E675A},
                        {"cos", __zorvik_cos, -6, 8, 0x5332FF5F73F99E3B},
                        {"cosd", __zorvik_cosd, -6, 14, 0xD328781A5AE780C3},
                        {"tan", __zorvik_tan, -6, 8, 0x907466EB3316E2AE},
                        {"asin", __zorvik_asin, -6, -1, 0x20AAC5E0D4CA073B},
                        {"acos", __zorvik_acos, -6, -1, 0x2EEE31E599789582},
                        {"asind", __zorvik_asind, -6, -1, 0xD1E69C322312C501},
                        {"atan", __zorvik_atan, -5, 5, 0x907713F5167DBECC},
                        {"atand", __zorvik_atand, -5, 5, 0xF32F88EF7C499F0},
                        {"sinh by its rational form", __zorvik_sinh, -8, -1, 0xB43C99E5B85CC181},
                        {"tanh by its rational form", __zorvik_tanh, -8, -2, 0xD24511280D9633AE}});
}

TEST(Results, KeepTheirBitsOfTwoOperands) {
  std::mt19937_64 random(29);
  digest remainder, power, integer_power, single_power;
  for (int i = 0; i < operands; ++i) {
    const double a = drawn<double>(random, -3, 60), p = drawn<double>(random, -5, 5);
    remainder.add<double>(__zorvik_dmod(a, p));
    const float base = static_cast<float>(fabs(reg{drawn<float>(random, -8, 8)}));
    const float exponent = drawn<float>(random, -5, 4);
    power.add<float>(__zorvik_ftof(base, exponent));
    const auto n = static_cast<std::int32_t>(random() % 200) - 100;
    integer_power.add<double>(__zorvik_dtoi(drawn<double>(random, -3, 3), n));
    single_power.add<float>(__zorvik_ftoi(drawn<float>(random, -1, 1), n));
  }
  EXPECT_EQ(remainder.value(), 0xD86EFC43419AD9F1u) << std::hex << " dmod 0x" << remainder.value();
  EXPECT_EQ(power.value(), 0x17B1FCE2242607C5u) << std::hex << " ftof 0x" << power.value();
  EXPECT_EQ(integer_power.value(), 0x7CBC7BA518DAD763u)
      << std::hex << " dtoi 0x" << integer_power.value();
  EXPECT_EQ(single_power.value(), 0x02BA080A2069FF38u)
      << std::hex << " ftoi 0x" << single_power.value();
}
