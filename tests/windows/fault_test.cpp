// The first notification on a system that has not enabled SSE state: the linker puts the probe
// below in the place of the library's.

#include <gtest/gtest.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "frame/control.hpp"
#include "frame/load_windows.hpp"
#include "support/x87_state.hpp"

using namespace zrt::control;

namespace {
int probes = 0;
}

/// As the library's goes: the processor has SSE, then an MXCSR instruction faults.
extern "C" void __wrap__ZN3zrt7control5probeEj(std::uint32_t word) {
  ++probes;
  EXPECT_EQ(word, load_word);
  sse_state = sse_cpuid_test();
  EXPECT_EQ(sse_state, sse::usable);
  asm volatile("ud2");
  ADD_FAILURE() << "went on behind the fault";
}

TEST(FaultingProbe, EndsWithoutSseAndWithTheX87WordSet) {
  ASSERT_EQ(sse_state, sse::not_probed);
  const std::uint32_t mxcsr = 0x5F80;
  asm volatile("ldmxcsr %0" : : "m"(mxcsr));
  support::set_control_word(0x0F7F);
  EXPECT_EQ(load_entry(nullptr, DLL_PROCESS_ATTACH, nullptr), 1);
  EXPECT_EQ(probes, 1);
  EXPECT_EQ(sse_state, sse::absent);
  EXPECT_EQ(support::control_word() & 0x0F3F, 0x023F);
  EXPECT_EQ(mxcsr_get(), mxcsr);

  // What comes later neither probes again nor touches MXCSR.
  for (const DWORD reason : {DLL_THREAD_ATTACH, DLL_THREAD_DETACH, DLL_PROCESS_DETACH}) {
    support::set_control_word(0x0F7F);
    EXPECT_EQ(load_entry(nullptr, reason, nullptr), 1);
    EXPECT_EQ(support::control_word() & 0x0F3F, 0x023F);
    EXPECT_EQ(mxcsr_get(), mxcsr);
  }
  EXPECT_EQ(probes, 1);
}
