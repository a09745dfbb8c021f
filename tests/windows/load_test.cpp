// The DLL as the loader treats it. This program is not linked with it.

#include <gtest/gtest.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstdint>
#include <thread>

#include "support/x87_state.hpp"

using namespace support;

namespace {

struct state {
  unsigned word, mxcsr;
  bool operator==(const state&) const = default;
};
constexpr state librarys{0x023F, 0x9FC0}, other{0x0F3F, 0x5F80};

state current() {
  std::uint32_t mxcsr;
  asm volatile("stmxcsr %0" : "=m"(mxcsr));
  return {control_word() & 0x0F3Fu, mxcsr};
}

void set_other() {
  const std::uint32_t mxcsr = other.mxcsr | 0x3F;  // with flags, which do not survive
  asm volatile("ldmxcsr %0" : : "m"(mxcsr));
  set_control_word(0x0F7F);
}

/// What stands when the DLL has had its notification: the program's own callback comes after it.
/// (At the start of the thread's function the system may have put a state of its own in place.)
state at_attach, at_detach;
void NTAPI notified(void*, DWORD reason, void*) {
  if (reason == DLL_THREAD_ATTACH) at_attach = current();
  if (reason == DLL_THREAD_DETACH) at_detach = current();
}
[[gnu::section(".CRT$XLB"), gnu::used]] const PIMAGE_TLS_CALLBACK callback = notified;

DWORD WINAPI body(void*) {
  set_other();
  return 0;
}

class Dll : public testing::Test {
 protected:
  void SetUp() override {
    handle_ = LoadLibraryA("zorvikrt.dll");
    ASSERT_NE(handle_, nullptr) << GetLastError();
  }
  void TearDown() override { FreeLibrary(handle_); }
  HMODULE handle_;
};

std::uintptr_t entry_point(HMODULE module) {
  const auto base = reinterpret_cast<std::uintptr_t>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  return base + headers->OptionalHeader.AddressOfEntryPoint;
}

/// Calls the entry with three operands; on i386 the stack pointer moves by what the callee leaves.
struct called {
  std::int32_t result;
  std::int32_t left;
};
called call_entry(std::uintptr_t entry, std::uint32_t reason) {
#if defined(__i386__)
  called seen;
  asm volatile(
      "movl %%esp, %%esi\n\t"
      "pushl $0x33\n\t"
      "pushl %3\n\t"
      "pushl $0x11\n\t"
      "call *%2\n\t"
      "subl %%esp, %%esi\n\t"
      "addl %%esi, %%esp"
      : "=&a"(seen.result), "=&S"(seen.left)
      : "D"(entry), "b"(reason)
      : "ecx", "edx", "memory", "cc");
  return seen;
#else
  return {reinterpret_cast<std::int32_t (*)(void*, std::uint32_t, void*)>(entry)(nullptr, reason,
                                                                                 nullptr),
          0};
#endif
}

}  // namespace

TEST_F(Dll, SetsTheStateOfTheThreadThatLoadsIt) {
  FreeLibrary(handle_);
  set_other();
  handle_ = LoadLibraryA("zorvikrt.dll");
  EXPECT_EQ(current(), librarys);
  set_other();
  FreeLibrary(handle_);
  EXPECT_EQ(current(), librarys) << "at process detach";
  handle_ = LoadLibraryA("zorvikrt.dll");
}

TEST_F(Dll, SetsTheStateOfThreadsAtTheirStartAndEnd) {
  set_other();
  at_attach = at_detach = other;
  const HANDLE thread = CreateThread(nullptr, 0, body, nullptr, 0, nullptr);
  ASSERT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  CloseHandle(thread);
  EXPECT_EQ(at_attach, librarys);
  EXPECT_EQ(at_detach, librarys);
  EXPECT_EQ(current().word, other.word) << "only the notifying thread's state is set";
}

TEST_F(Dll, LeavesThreadsAloneThatWereThereBefore) {
  FreeLibrary(handle_);
  state seen{};
  HANDLE loaded = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  std::thread older([&] {
    set_other();
    SetEvent(ready);
    WaitForSingleObject(loaded, INFINITE);
    seen = current();
  });
  WaitForSingleObject(ready, INFINITE);
  handle_ = LoadLibraryA("zorvikrt.dll");
  SetEvent(loaded);
  older.join();
  EXPECT_EQ(seen.word, other.word);
  EXPECT_EQ(seen.mxcsr & 0xFFC0, other.mxcsr);
}

TEST_F(Dll, TakesEveryReasonAndRemovesItsOperands) {
  const std::uintptr_t entry = entry_point(handle_);
  for (const std::uint32_t reason : {0u, 1u, 2u, 3u, 4u, 0xFFFFFFFFu}) {
    set_other();
    const called seen = call_entry(entry, reason);
    EXPECT_EQ(seen.result, 1) << reason;
    EXPECT_EQ(seen.left, 0) << reason;
    EXPECT_EQ(current(), librarys) << reason;
  }
}

#if defined(__i386__)
TEST_F(Dll, LeavesTheChainOfHandlersAsItWas) {
  const auto head = [] {
    std::uintptr_t link;
    asm volatile("movl %%fs:0, %0" : "=r"(link));
    return link;
  };
  const std::uintptr_t before = head();
  call_entry(entry_point(handle_), 1);
  EXPECT_EQ(head(), before);
}
#endif

TEST_F(Dll, ExportsNamesWithoutDecoration) {
  const auto dint = reinterpret_cast<double (*)(double)>(
      reinterpret_cast<void (*)()>(GetProcAddress(handle_, "__zorvik_dint")));
  ASSERT_NE(dint, nullptr);
  EXPECT_EQ(dint(-2.75), -2.0);
  EXPECT_EQ(GetProcAddress(handle_, "___zorvik_dint"), nullptr);
  const auto* largest = reinterpret_cast<const std::uint32_t*>(
      reinterpret_cast<void (*)()>(GetProcAddress(handle_, "__zorvik_FLOAT_MAX")));
  ASSERT_NE(largest, nullptr);
  EXPECT_EQ(*largest, 0x7EFFFFFFu);
}
