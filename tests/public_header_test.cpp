// The public C header, from C++: its declarations fit the library, and a thread can take over the
// state.

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "support/x87_state.hpp"
#include "zorvikrt/zorvikrt.h"

TEST(PublicHeader, DeclaresBothEntryForms) {
  const double a = -5.5, p = 3.0;
  EXPECT_EQ(__zorvik_dmod(a, p), -2.5);
  EXPECT_EQ(__zorvik_I_dmod(&a, &p), -2.5);
  const int16_t narrow = static_cast<int16_t>(__zorvik_iidnnt(32768.0));
  EXPECT_EQ(narrow, -32768);
  EXPECT_EQ(__zorvik_FLOAT_MAX, 0x1.fffffep+126f);
}

TEST(PublicHeader, DeclaresTheConstants){
#define ZRT_VALUE_ENTRY(...)
#define ZRT_REFERENCE_ENTRY(...)
#define ZRT_PLAIN_ENTRY(...)
#define ZRT_DATA(symbol, width, bits)                        \
  {                                                          \
    std::uint##width##_t image;                              \
    static_assert(sizeof image == sizeof symbol);            \
    std::memcpy(&image, &symbol, sizeof image);              \
    EXPECT_EQ(image, std::uint##width##_t{bits}) << #symbol; \
  }
#include "entry_table.inc"
}

TEST(PublicHeader, GivesAnOlderThreadTheState) {
  std::thread([] {
    const std::uint32_t other = 0x1F80 | 0x21;
    support::set_control_word(0x0F7F);
    asm volatile("ldmxcsr %0" : : "m"(other));
    zorvikrt_set_thread_state();
    std::uint32_t mxcsr;
    asm volatile("stmxcsr %0" : "=m"(mxcsr));
    EXPECT_EQ(support::control_word() & 0x0F3F, 0x023F);
    EXPECT_EQ(mxcsr, 0x9FC0u);
  }).join();
}
