// The floating-point state: what the load leaves, what threads inherit, what no call changes.

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "entries.hpp"
#include "frame/control.hpp"
#include "support/bits.hpp"
#include "support/x87_state.hpp"

using namespace support;

namespace {

std::uint32_t mxcsr() {
  std::uint32_t value;
  asm volatile("stmxcsr %0" : "=m"(value));
  return value;
}

constexpr std::uint32_t mxcsr_flags = 0x3F;

}  // namespace

TEST(State, StandsAfterTheLoad) {
  EXPECT_EQ(control_word() & 0x0F3F, 0x023F);
  EXPECT_EQ(mxcsr() & ~mxcsr_flags, 0x9FC0u);
}

#if defined(__ELF__)
TEST(State, IsInheritedByNewThreads) {
  std::thread([] {
    EXPECT_EQ(control_word() & 0x0F3F, 0x023F);
    EXPECT_EQ(mxcsr() & ~mxcsr_flags, 0x9FC0u);
  }).join();
}
#endif

TEST(Mxcsr, IsComposedFromTheControlWord) {
  using zrt::control::composed_mxcsr;
  EXPECT_EQ(composed_mxcsr(0x1027F, 0), 0x9FC0u);
  EXPECT_EQ(composed_mxcsr(0x1027F, 0xFFFF), 0x9FC0u);  // flags do not survive
  EXPECT_EQ(composed_mxcsr(0x0027F, 0x8040), 0x9FC0u);  // selector 0 keeps FTZ and DAZ
  EXPECT_EQ(composed_mxcsr(0x0027F, 0x003F), 0x1F80u);
  EXPECT_EQ(composed_mxcsr(0x0027F, 0x0040), 0x1FC0u);
  EXPECT_EQ(composed_mxcsr(0x2027F, 0xFFFF), 0x1F80u);  // any other clears them
  EXPECT_EQ(composed_mxcsr(0xFFFF027F, 0xFFFF), 0x1F80u);
  EXPECT_EQ(composed_mxcsr(0x10F7F, 0) & 0x6000u, 0x6000u);  // rounding
  EXPECT_EQ(composed_mxcsr(0x1047F, 0) & 0x6000u, 0x2000u);
  for (int bit = 0; bit < 6; ++bit)  // masks
    EXPECT_EQ(composed_mxcsr(1u << bit, 0), 1u << (bit + 7));
  EXPECT_EQ(composed_mxcsr(0x13C0, 0), 0u);  // precision and bit 12 have no counterpart
}

TEST(Mxcsr, KeepsToTheValidBits) {
  EXPECT_EQ(zrt::control::valid_bits(0), 0xFFBFu);
  EXPECT_EQ(zrt::control::valid_bits(0xFFFF), 0xFFFFu);
}

TEST(Sections, KeepThreadsUnderDifferentWordsApart) {
  // Each thread runs under its own word; what comes back must be what a lone thread gets under it,
  // and the word must be there after every call.
  const std::uint16_t words[] = {0x027F, 0x067F, 0x0A7F, 0x0E7F};
  constexpr int calls = 200000;
  const auto run = [](std::uint16_t word) {
    const under_word scope(word);
    std::uint64_t digest = 0;
    for (int i = 0; i < calls; ++i) {
      const double x = 0.37 * (i - calls / 2);
      // The arctangent is rounded by the word in 64-bit builds, too.
      const long double results[] = {__zorvik_dnint(x), __zorvik_dmod(x, 0.7), __zorvik_f90ceil(x),
                                     __zorvik_datan2(x, 0.7)};
      for (const long double result : results)
        digest = digest * 31 + register_image(result).significand;
      digest += static_cast<std::uint32_t>(__zorvik_idnint(x));
      if ((control_word() & 0x0F3F) != (word & 0x0F3F)) return ~std::uint64_t{0};
    }
    return digest;
  };
  std::vector<std::uint64_t> alone, together(std::size(words));
  for (const std::uint16_t word : words) alone.push_back(run(word));
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < std::size(words); ++i)
    threads.emplace_back([&, i] { together[i] = run(words[i]); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(together, alone);
  EXPECT_NE(alone[0], ~std::uint64_t{0});
  EXPECT_NE(alone[0], alone[1]);
}
