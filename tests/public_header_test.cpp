// The public C header, from C++: its declarations fit the library, and a thread can take over the
// state.

#include <cpuid.h>
#include <gtest/gtest.h>

#include <cfenv>
#include <csetjmp>
#include <csignal>
#include <cstring>
#include <thread>

#include "support/bits.hpp"
#include "support/x87_state.hpp"

namespace {

bool with_sse = true;

/// In the place of the compiler's for the header below: a processor without SSE where a test wants
/// one.
[[maybe_unused]] int found_cpuid(unsigned leaf, unsigned* a, unsigned* b, unsigned* c,
                                 unsigned* d) {
  const int known = __get_cpuid(leaf, a, b, c, d);
  if (!with_sse) *d &= ~0x06000000u;
  return known;
}

}  // namespace

#define __get_cpuid found_cpuid
#include "zorvikrt/zorvikrt.h"
#undef __get_cpuid

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

#if defined(__i386__)
TEST(PublicHeader, LeavesMxcsrAloneWithoutSse) {
  std::thread([] {
    const std::uint32_t other = 0x5F80;
    support::set_control_word(0x0F7F);
    asm volatile("ldmxcsr %0" : : "m"(other));
    with_sse = false;
    zorvikrt_set_thread_state();
    with_sse = true;
    std::uint32_t mxcsr;
    asm volatile("stmxcsr %0" : "=m"(mxcsr));
    EXPECT_EQ(support::control_word() & 0x0F3F, 0x023F);
    EXPECT_EQ(mxcsr, other);
  }).join();
}
#endif

#if defined(__linux__)
namespace {

struct state {
  unsigned word, mxcsr;
  bool operator==(const state&) const = default;
};
constexpr state librarys{0x023F, 0x9FC0}, systems{0x033F, 0x1F80};

state current() {
  std::uint32_t mxcsr;
  asm volatile("stmxcsr %0" : "=m"(mxcsr));
  return {support::control_word() & 0x0F3Fu, mxcsr & ~0x3Fu};
}

state in_handler, after_remedy;
sigjmp_buf place;
void handler(int number) {
  in_handler = current();
  zorvikrt_set_thread_state();
  after_remedy = current();
  if (number == SIGUSR2) {
    std::fesetenv(FE_DFL_ENV);
    siglongjmp(place, 1);
  }
}

bool product_is_exact() {
  zorvikrt_quad third, product;
  __zorvik_qdiv(&third, {1, 0}, {3, 0});
  __zorvik_qmul(&product, third, third);
  return support::bits(product.hi) == 0x3FBC71C71C71C71C &&
         support::bits(product.lo) == 0x3C5C71C71C71C71C;
}

}  // namespace

TEST(State, IsTheSystemsInSignalHandlersAndComesBack) {
  std::thread([] {
    ASSERT_EQ(current(), librarys);
    std::signal(SIGUSR1, handler);
    std::signal(SIGUSR2, handler);
    std::raise(SIGUSR1);
    EXPECT_EQ(in_handler, systems);
    EXPECT_EQ(after_remedy, librarys);
    EXPECT_EQ(current(), librarys) << "a handler that returns";
    if (sigsetjmp(place, 1) == 0) std::raise(SIGUSR2);
    EXPECT_EQ(current(), systems) << "a handler that is left by a jump";
#if defined(__x86_64__)
    EXPECT_TRUE(product_is_exact()) << "ordinary operands are computed on doubles";
#endif
    zorvikrt_set_thread_state();
    EXPECT_EQ(current(), librarys);
    EXPECT_TRUE(product_is_exact());
    std::fesetenv(FE_DFL_ENV);
    EXPECT_EQ(current(), systems);
    zorvikrt_set_thread_state();
    EXPECT_EQ(current(), librarys);
  }).join();
}
#endif
