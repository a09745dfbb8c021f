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

constexpr int operands = 40000;

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
  expect<double, real8>({{"dexp", __zorvik_dexp, -30, 9, 0x2027A959C81BDD52},
                         {"dlog", __zorvik_dlog, -1022, 1023, 0xE61BFD0FC32B9B85},
                         {"dlog near 1", __zorvik_dlog, -1, 0, 0xA0D98C788D743B7E},
                         {"dlog10", __zorvik_dlog10, -40, 40, 0x44D5BF72EA1A8AA3},
                         {"dsqrt", __zorvik_dsqrt, -1022, 1023, 0x524285210BA59935},
                         {"dsin", __zorvik_dsin, -28, 27, 0xC0766D7748C0DF54},
                         {"dcos", __zorvik_dcos, -28, 27, 0x8F66979275D54FE3},
                         {"dsind", __zorvik_dsind, -10, 20, 0x6D96254578F35DF1},
                         {"dtan", __zorvik_dtan, -28, 26, 0x2775D8559160528F},
                         {"dcot", __zorvik_dcot, -28, 26, 0xF6949B962CF2297C},
                         {"dasin", __zorvik_dasin, -28, -1, 0xB17365D495A9E6CC},
                         {"dacos", __zorvik_dacos, -28, -1, 0x23FE15DF80A5F9E3},
                         {"dacosd", __zorvik_dacosd, -28, -1, 0xA999379284DADB5B},
                         {"datan", __zorvik_datan, -28, 60, 0x68CCE0FB888DB0A4},
                         {"datand", __zorvik_datand, -28, 60, 0x2239317AB53138E1},
                         {"dnint", __zorvik_dnint, -3, 55, 0x98A881AC344A247F},
                         {"f90floor", __zorvik_f90floor, -3, 55, 0x452A3173D242D707}});
}

TEST(Results, KeepTheirBitsInReal4) {
  expect<float, real4>({{"exp", __zorvik_exp, -14, 6, 0xE6149451E02F2A54},
                        {"alog", __zorvik_alog, -126, 127, 0x133447ADEC012B80},
                        {"alog near 1", __zorvik_alog, -1, 0, 0xAFE130EBD24F2886},
                        {"alog10", __zorvik_alog10, -40, 40, 0x4897868E95F71158},
                        {"sqrt", __zorvik_sqrt, -126, 127, 0x6C0D0314C722E847},
                        {"sin", __zorvik_sin, -13, 12, 0xDA37AA6BBA677E24},
                        {"cos", __zorvik_cos, -13, 12, 0xAA2586873414A8EF},
                        {"cosd", __zorvik_cosd, -6, 14, 0x7DD9E0953ADCA2B9},
                        {"tan", __zorvik_tan, -13, 13, 0x83AA5131EE18616F},
                        {"asin", __zorvik_asin, -13, -1, 0xEAA0614902D22E24},
                        {"acos", __zorvik_acos, -13, -1, 0xB528BB0DC36E1741},
                        {"asind", __zorvik_asind, -13, -1, 0xB908738B323810E1},
                        {"atan", __zorvik_atan, -13, 30, 0x678503942A755F0F},
                        {"atand", __zorvik_atand, -13, 30, 0x7BEB69A16DBAEA03}});
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
  EXPECT_EQ(remainder.value(), 0xD931C0314631D4CCu) << std::hex << " dmod 0x" << remainder.value();
  EXPECT_EQ(power.value(), 0xD2EDCA32C8045735u) << std::hex << " ftof 0x" << power.value();
  EXPECT_EQ(integer_power.value(), 0xA5855DD013E90A8Du)
      << std::hex << " dtoi 0x" << integer_power.value();
  EXPECT_EQ(single_power.value(), 0xE00C6C7AEB54EB71u)
      << std::hex << " ftoi 0x" << single_power.value();
}
