// The two ways of each mode section give the same values and flags under every caller's word; the
// layer that sets the floating-point state.

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "entries.hpp"
#include "frame/control.hpp"
#include "frame/model.hpp"

// Every `fisttp` of the sections and every integer that they load by itself is counted, to show
// which way was taken.
static int fisttps = 0, loads = 0;
#define fisttp32(x) (++fisttps, fisttp32(x))
#define fisttp64(x) (++fisttps, fisttp64(x))
#define load_integer(x) (++loads, load_integer(x))
#include "frame/sections.hpp"
#undef fisttp32
#undef fisttp64
#undef load_integer

#include "frame/sine_cosine.hpp"
#include "support/bits.hpp"
#include "support/x87_state.hpp"

extern "C" void* __zorvik_I_qint(void* result, const void* x);

using namespace zrt;
using namespace support;

namespace {

/// Every rounding at 24, 53 and 64 bits, all exceptions masked.
const std::vector<std::uint16_t>& callers_words() {
  static const std::vector<std::uint16_t> words = [] {
    std::vector<std::uint16_t> all;
    for (const unsigned precision : {0x000u, 0x200u, 0x300u})
      for (unsigned rounding = 0; rounding < 4; ++rounding)
        all.push_back(static_cast<std::uint16_t>(0x7F | precision | rounding << 10));
    return all;
  }();
  return words;
}

std::vector<reg> operands() {
  std::vector<reg> values = {0.0L, -0.0L, infinity, -infinity, quiet_nan, -quiet_nan};
  for (const reg edge : {0.5L, 1.0L, 2.0L, 0x1p31L, 0x1p32L, 0x1p52L, 0x1p53L, 0x1p62L, 0x1p63L,
                         0x1p64L, 0x1p-16382L, 0x1p16383L, 0x1p31L - 0.5L, 0x1p31L + 0.5L})
    for (const reg factor : {1.0L, 1.0L - 0x1p-64L, 1.0L + 0x1p-63L}) {
      values.push_back(edge * factor);
      values.push_back(-edge * factor);
    }
  std::mt19937_64 random(7);
  for (int i = 0; i < 20000; ++i) {
    const reg significand = static_cast<reg>(random() | 0x8000000000000000u);
    const int exponent = static_cast<int>(random() % 140) - 70 - 63;
    const reg value = __builtin_ldexpl(significand, exponent);
    values.push_back(random() % 2 ? value : -value);
  }
  return values;
}

template <class Section>
struct outcome {
  decltype(Section{}(0.0L)) value;
  unsigned raised;
};

template <class Fast, class Plain>
void expect_same(Fast fast, Plain plain_way) {
  ASSERT_TRUE(processor::has_fisttp) << "both ways are the same on this processor";
  const std::vector<reg> values = [] {
    const under_word wide(0x037F);
    return operands();
  }();
  for (const std::uint16_t word : callers_words()) {
    const under_word scope(word);
    for (const reg x : values) {
      clear_flags();
      const auto quick = fast(x);
      const unsigned quick_flags = flags() & ~DE;
      EXPECT_EQ(control_word(), word | 0x40);
      clear_flags();
      const auto plain = plain_way(x);
      const unsigned plain_flags = flags() & ~DE;
      if constexpr (std::is_same_v<decltype(quick), const reg>)
        ASSERT_EQ(register_image(quick), register_image(plain))
            << register_image(x) << " under " << word;
      else
        ASSERT_EQ(quick, plain) << register_image(x) << " under " << word;
      ASSERT_EQ(quick_flags, plain_flags) << register_image(x) << " under " << word;
    }
  }
}

}  // namespace

TEST(Sections, TruncateTheSameInBothWays) {
  expect_same([](reg x) { return truncated(x); }, [](reg x) { return plain::truncated(x); });
}

TEST(Sections, ConvertTheSameInBothWays) {
  expect_same([](reg x) { return truncated_to_int32(x); },
              [](reg x) { return plain::truncated_to_int32(x); });
}

TEST(Sections, GiveAWholeNumberInBothForms) {
  for (const bool fisttp : {true, false}) {
    processor::has_fisttp = fisttp;
    for (const reg x :
         {0.0L, -0.0L, 0.9L, -0.9L, 1.0L, -1234567.8L, 0x1p31L - 0.5L, 0.5L - 0x1p31L}) {
      std::int32_t slot;
      const whole_number<reg> whole = truncated_whole(x, slot);
      EXPECT_EQ(whole.integer, plain::truncated_to_int32(x)) << x;
      EXPECT_EQ(register_image(whole.value), register_image(load_integer(whole.integer))) << x;
    }
  }
  processor::has_fisttp = true;
}

TEST(Sections, ComputeTheSameExponentialInBothWays) {
  expect_same([](reg x) { return exponential(x); }, [](reg x) { return plain::exponential(x); });
  // Dense where the functions call it, REAL*8 operands and whole multiples of ln 2 among them.
  std::mt19937_64 random(8);
  const auto unit = [&] {
    return static_cast<reg>(static_cast<std::int64_t>(random())) * 0x1p-63L;
  };
  for (int i = 0; i < 1000000; ++i) {
    const reg scale = std::array{1.0L, 20.0L, 700.0L, 701.0L}[random() % 4];
    const reg near_multiple = static_cast<reg>(static_cast<std::int32_t>(random() % 2020) - 1010) *
                              0.5L * 0x1.62e42fefa39efp-1L;
    const reg x = i % 3 == 0   ? near_multiple * (1.0L + unit() * 0x1p-50L)
                  : i % 3 == 1 ? stored<double>(unit() * scale)
                               : unit() * scale;
    ASSERT_EQ(register_image(exponential(x)), register_image(plain::exponential(x)))
        << register_image(x);
  }
}

TEST(Sections, TakeTheWayOfTheProcessor) {
  for (const bool fast : {true, false}) {
    processor::has_fisttp = fast;
    fisttps = 0;
    EXPECT_EQ(truncated(-2.5L), -2.0L);
    EXPECT_EQ(truncated_to_int32(-2.5L), -2);
    EXPECT_EQ(truncated_to_int64(-0x1p40L - 0.5L), -(std::int64_t{1} << 40));
    EXPECT_EQ(fisttps, fast ? 3 : 0);
    loads = 0;
    std::int32_t slot;
    EXPECT_EQ(truncated_whole(-2.5L, slot).integer, -2);
    EXPECT_EQ(loads, fast ? 0 : 1);  // the fast way stores and loads in one statement
  }
  processor::has_fisttp = true;
}

// A processor that the table of the load takes for one whose fsincos agrees must be one.
TEST(Sections, ComputeTheSameSineAndCosineInBothWays) {
  const bool agrees = processor::fsincos_agrees;
  std::mt19937_64 random(9);
  std::vector<reg> values = operands();
  while (values.size() < 1000000) {
    const reg x = static_cast<reg>(static_cast<std::int64_t>(random())) * 0x1p-63L;
    const reg scales[] = {1.0L, 10.0L, 1000.0L, 0x1p40L};
    values.push_back(stored<double>(x * scales[random() % 4]));
    values.push_back(stored<float>(x * scales[random() % 4]));
  }
  long differences = 0;
  for (const reg x : values) {
    processor::fsincos_agrees = true;
    clear_flags();
    const sine_cosine at_once = sine_and_cosine(x);
    const unsigned raised = flags();
    processor::fsincos_agrees = false;
    clear_flags();
    const sine_cosine in_turn = sine_and_cosine(x);
    differences += register_image(at_once.sine) != register_image(in_turn.sine) ||
                   register_image(at_once.cosine) != register_image(in_turn.cosine) ||
                   raised != flags();
  }
  processor::fsincos_agrees = agrees;
  if (agrees)
    EXPECT_EQ(differences, 0);
  else
    RecordProperty("differences", std::to_string(differences));
}

std::array<unsigned char, sizeof(cquad)> bytes_of(const cquad& operand) {
  std::array<unsigned char, sizeof operand> bytes;
  std::memcpy(&bytes, &operand, sizeof operand);
  return bytes;
}
// Each call asks anew whether SSE2 is usable.
[[gnu::noipa]] auto bytes_joined(const cquad& operand) { return bytes_of(joined(operand)); }
[[gnu::noipa]] auto bytes_both_joined(const cquad& operand) {
  const both_joined halves(operand.re, operand.im);
  return bytes_of({halves.first(), halves.second()});
}

// Bit for bit, signalling NaNs too, into a value entry and out of a reference entry.
TEST(Operands, ArriveTheSameInBothWays) {
  const bool sse2 = processor::has_sse2;
  for (const std::uint64_t bits : {0x7FF4000000000001u, 0x8000000000000001u, 0xC059000000000001u}) {
    const auto z = std::bit_cast<cquad>(std::array{bits, ~bits, bits >> 1, bits << 1});
    std::array<std::array<std::uint64_t, 2>, 2> results;
    for (const bool way : {true, false}) {
      processor::has_sse2 = way;
      EXPECT_EQ(bytes_joined(z), bytes_of(z)) << std::hex << bits;
      EXPECT_EQ(bytes_both_joined(z), bytes_of(z)) << std::hex << bits;
      EXPECT_EQ(__zorvik_I_qint(&results[way], &z), &results[way]);
      EXPECT_EQ(__zorvik_cvtlld(static_cast<std::int64_t>(bits)),
                static_cast<decltype(__zorvik_cvtlld(0))>(static_cast<std::int64_t>(bits)));
    }
    EXPECT_EQ(results[0], results[1]) << std::hex << bits;
  }
  processor::has_sse2 = sse2;
}

TEST(Control, SetsTheWordAndTheMxcsrOfTheThread) {
  using namespace control;
  ASSERT_EQ(sse_state, sse::usable);
  fp_set_control(0x20F7F);
  EXPECT_EQ(control_word(), 0x0F7F);
  EXPECT_EQ(mxcsr_get(), 0x7F80u);
  fp_set_control(0x1027F);
  EXPECT_EQ(control_word(), 0x027F);
  EXPECT_EQ(mxcsr_get(), 0x9FC0u & mxcsr_valid_mask());
  fp_set_control(0x0027F);
  EXPECT_EQ(mxcsr_get(), 0x9FC0u & mxcsr_valid_mask());
}

TEST(Control, FindsTheInstructionsThatTheCompilersTestFinds) {
  EXPECT_EQ(processor::has_fisttp, __builtin_cpu_supports("sse3") != 0);
  EXPECT_EQ(processor::has_fma, __builtin_cpu_supports("fma") != 0);
  EXPECT_EQ(processor::has_sse2, __builtin_cpu_supports("sse2") != 0);
}

TEST(Control, TakesTheValidBitsOfOldProcessorsWhereTheFieldIsZero) {
  EXPECT_EQ(control::valid_bits(0), 0xFFBFu);
  EXPECT_EQ(control::valid_bits(0x2FFFF), 0x2FFFFu);
}

TEST(Control, LeavesMxcsrAloneWithoutSse) {
  using namespace control;
  mxcsr_set_masked(0x1F80);
  sse_state = sse::absent;
  fp_set_control(0x10F7F);
  EXPECT_EQ(mxcsr_get(), 0x1F80u);
  EXPECT_EQ(control_word(), 0x0F7F);
  sse_state = sse::not_probed;  // the first notification probes
  EXPECT_EQ(notified(2), 1);
  EXPECT_EQ(sse_state, sse::usable);
  EXPECT_EQ(control_word(), 0x027F);
  EXPECT_EQ(mxcsr_get(), 0x9FC0u & mxcsr_valid_mask());
}
