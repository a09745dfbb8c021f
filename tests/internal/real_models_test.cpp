// The REAL functions that compute on doubles give the bits of their kernels on the register: at
// every edge of every guard and of every range, under any rounding that both units have, with
// subnormals flushed and not.

#if defined(__x86_64__)

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "frame/control.hpp"
#include "real/powers_kernel.hpp"
#include "support/bits.hpp"
#include "support/register_kernels.hpp"
#include "support/x87_state.hpp"

using namespace zrt;
using namespace support;

namespace {

struct state {
  std::uint16_t word;
  std::uint32_t mxcsr;
};
const std::vector<state>& states() {
  static const std::vector<state> all = [] {
    std::vector<state> made;
    for (const std::uint32_t flush : {0x8040u, 0x8000u, 0x0040u, 0x0000u})
      for (const std::uint32_t rounding : {0u, 1u, 2u, 3u})
        made.push_back(
            {static_cast<std::uint16_t>(0x027F | rounding << 10), 0x1F80 | rounding << 13 | flush});
    return made;
  }();
  return all;
}

/// Each exponent with leading, trailing and random fractions, both signs, and the units around the
/// limits that are no powers of two.
template <class F>
std::vector<F> operands() {
  using image = image_of<F>;
  constexpr int fraction_bits = layout<F>::fraction_bits;
  std::mt19937_64 random(12);
  std::vector<F> values;
  const auto add = [&](image bits) {
    values.push_back(std::bit_cast<F>(bits));
    values.push_back(std::bit_cast<F>(bits ^ real::sign_bit_of<F>));
  };
  for (image exponent = 0; exponent <= image{layout<F>::exponent_mask}; ++exponent) {
    const image start = exponent << fraction_bits;
    for (image unit = 0; unit < 3; ++unit) {
      add(start + unit);
      add(start + (image{1} << fraction_bits) - 1 - unit);
      add(start + (static_cast<image>(random()) & ((image{1} << fraction_bits) - 1)));
    }
  }
  std::vector<double> limits = {
      708.0,
      87.0,
      0x1.628b76e3a7b6p+9,
      0x1.6232bdd7abcd1p+9,
      0x1.601e6ap+6,
      0x1.5fe05cp+6,
      0x1.e0fabfbc702a6p-1,
      0x1.1082b577d34fp+0,
      0x1.e0facp-1,
      0x1.1082b6p+0,
      0x1.6a09e667f3bc8p-27,
      0x1.1c5832329691ap+28,
      0x1.1c5832329691ap+27,
      0x1.ffe6dcp+12,
      0x1.921fb6p+13,
      0x1.193ea7aad030bp-1,
      0x1.30fc1931f09cbp+4,
      0x1.20597p+3,
      0x1.126145e9ecd56p-2,
      0x1.bb67ae8584caap+0,
      0x1.62df2cbaf349cp-2,  // where the rest no longer tells the multiple
      0x1.91d8bbecbf134p+0,
      0x1.921f79fcb8f5cp+0,
      0x1p-1017};
  for (int i = 1; i < 400; ++i) {
    limits.push_back(i * 0x1.921fb54442d18p-1);  // multiples of pi/4 and of 45 degrees
    limits.push_back(i * 0x1.62e42fefa39efp-2);  // of ln(2)/2
    limits.push_back(i * 0.5);
    limits.push_back(i * 45.0);
  }
  for (const double limit : limits)
    for (int unit = -3; unit <= 3; ++unit)
      add(std::bit_cast<image>(static_cast<F>(limit)) + static_cast<image>(unit));
  return values;
}

template <class Check>
void under_every_state(Check check) {
  for (const state& s : states()) {
    const under_word scope(s.word);
    const std::uint32_t callers = control::mxcsr_set_masked(s.mxcsr);
    check(s);
    control::mxcsr_set_masked(callers);
    if (testing::Test::HasFailure()) return;
  }
}

template <class F>
void expect_the_same_in_both_models() {
  const std::vector<F> values = operands<F>();
  under_every_state([&](const state& s) {
    for (const auto& f : functions(F{}))
      for (const F x : values)
        ASSERT_EQ(bits(f.entry(x)), bits(f.on_register(x)))
            << f.stem << " of " << std::hex << bits(x) << " under " << s.word << ' ' << s.mxcsr;
  });
}

}  // namespace

TEST(Models, GiveTheSameBitsInReal4) { expect_the_same_in_both_models<float>(); }
TEST(Models, GiveTheSameBitsInReal8) { expect_the_same_in_both_models<double>(); }

/// Each operand with one near it, one of any size, and itself.
template <class F>
void expect_the_same_of_pairs() {
  const std::vector<F> values = operands<F>();
  std::mt19937_64 random(14);
  under_every_state([&](const state& s) {
    for (const auto& f : functions_of_pairs(F{}))
      for (std::size_t i = 0; i < values.size(); ++i)
        for (const F b : {values[i], values[(i + random() % 64) % values.size()],
                          values[random() % values.size()]})
          ASSERT_EQ(bits(f.entry(values[i], b)), bits(f.on_register(values[i], b)))
              << f.stem << " of " << std::hex << bits(values[i]) << ' ' << bits(b) << " under "
              << s.word << ' ' << s.mxcsr;
  });
}
TEST(Models, GiveTheSameBitsOfPairsInReal4) { expect_the_same_of_pairs<float>(); }
TEST(Models, GiveTheSameBitsOfPairsInReal8) { expect_the_same_of_pairs<double>(); }

TEST(Models, GiveTheSameBitsOfIntegerPowers) {
  constexpr std::uint64_t fraction = 0x8000C0FFEE123;
  under_every_state([](const state&) {
    for (const std::int32_t n :
         {0, 1, 2, 3, 5, 31, 62, 63, 124, 125, 126, 499, 500, 501, 999, 1000, 1001, INT32_MAX})
      for (std::uint64_t exponent = 0; exponent <= 0x7FF; exponent += n > 126 ? 1 : 3)
        for (const std::int32_t power : {n, -n - 1}) {
          const auto x = std::bit_cast<double>(exponent << 52 | fraction);
          const auto y = std::bit_cast<float>(
              static_cast<std::uint32_t>((exponent & 0xFF) << 23 | fraction >> 29));
          ASSERT_EQ(bits(__zorvik_dtoi(x, power)),
                    bits(static_cast<double>(real::integer_power<reg>(x, power))))
              << x << " to " << power;
          ASSERT_EQ(bits(__zorvik_ftoi(y, power)),
                    bits(static_cast<float>(real::integer_power<reg>(y, power))))
              << y << " to " << power;
        }
  });
}

TEST(Models, GiveTheSameBitsOfRealPowers) {
  std::mt19937_64 random(13);
  std::vector<std::pair<float, float>> values;
  for (int i = 0; i < 60000; ++i) {
    // Bases of all sizes and near 1; exponents whose powers are in the range, or of any size.
    const auto any = static_cast<std::uint32_t>(random());
    const float base =
        std::bit_cast<float>(i % 3 == 0 ? 0x3F800000 + (any >> 14) - (1u << 16) : any & 0x7F7FFFFF);
    const auto other = static_cast<std::uint32_t>(random());
    const float exponent = i % 2 == 0
                               ? static_cast<float>(static_cast<std::int32_t>(other)) * 0x1p-24f
                               : std::bit_cast<float>(other & 0xBFFFFFFF);
    if (!real::whole_by_leading_bits(exponent) && base != 1.0f && base > 0 && exponent != 0)
      values.emplace_back(base, exponent);
  }
  under_every_state([&](const state&) {
    for (const auto& [x, y] : values)
      ASSERT_EQ(bits(__zorvik_ftof(x, y)),
                bits(static_cast<float>(real::power_of_positive<reg>(bits(x), y))))
          << std::hex << bits(x) << ' ' << bits(y);
  });
}

#endif
