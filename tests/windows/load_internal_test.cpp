// The guarded probe and the initialiser lists.

#include <gtest/gtest.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstring>
#include <string>

#include "frame/control.hpp"
#include "frame/load_windows.hpp"
#include "support/x87_state.hpp"

using namespace zrt::control;

namespace {

// This program holds the library's objects itself: no loader has called their entry.
const std::int32_t attached = load_entry(nullptr, DLL_PROCESS_ATTACH, nullptr);

#if defined(__i386__)
seh_record* chain() {
  seh_record* head;
  asm volatile("movl %%fs:0, %0" : "=r"(head));
  return head;
}

int bodies_run = 0;
std::uint32_t word_seen = 0;
void harmless(std::uint32_t word) {
  ++bodies_run;
  word_seen = word;
}

/// Faults a few frames down, with the preserved registers changed.
void illegal(std::uint32_t word) {
  ++bodies_run;
  word_seen = word;
  asm volatile(
      "movl $1, %%ebx\n\t"
      "movl $2, %%esi\n\t"
      "movl $3, %%edi\n\t"
      "subl $64, %%esp\n\t"
      "ud2"
      :
      :
      : "ebx", "esi", "edi");
}
#endif

}  // namespace

TEST(Load, AttachesWithTheStateSet) {
  EXPECT_EQ(attached, 1);
  EXPECT_EQ(sse_state, sse::usable);
}

#if defined(__i386__)
TEST(Guard, SurvivesAnIllegalInstruction) {
  seh_record* const before = chain();
  bodies_run = 0;
  // Values that live across the calls sit in the preserved registers.
  int sum = 0;
  for (int i = 1; i <= 100; ++i) {
    const bool survived = survives(i % 2 ? illegal : harmless, static_cast<std::uint32_t>(i));
    EXPECT_EQ(survived, i % 2 == 0);
    EXPECT_EQ(word_seen, static_cast<std::uint32_t>(i));
    EXPECT_EQ(chain(), before);
    sum += i;
  }
  EXPECT_EQ(sum, 5050);
  EXPECT_EQ(bodies_run, 100);
}

TEST(Guard, RewritesTheContextOfAnIllegalInstructionOnly) {
  probe_registers = {1, 2, 3, 4, 5, 6};
  EXCEPTION_RECORD record{};
  CONTEXT context{};
  context.EFlags = 0xFFFFFFFF;
  context.Ecx = 77;
  const CONTEXT untouched = context;
  for (const DWORD code : {0xC0000005u, 0xC0000096u, 0xC000001Cu, 0x80000003u}) {
    record.ExceptionCode = code;
    EXPECT_EQ(probe_fault_handler(&record, nullptr, &context, nullptr), 0);
    EXPECT_EQ(std::memcmp(&context, &untouched, sizeof context), 0) << code;
  }
  record.ExceptionCode = 0xC000001D;
  EXPECT_EQ(probe_fault_handler(&record, nullptr, &context, nullptr), 0);
  EXPECT_EQ(context.Eax, 1u);
  EXPECT_EQ(context.Ebx, 1u);
  EXPECT_EQ(context.Edi, 2u);
  EXPECT_EQ(context.Esi, 3u);
  EXPECT_EQ(context.Ebp, 4u);
  EXPECT_EQ(context.Esp, 9u);
  EXPECT_EQ(context.Eip, 6u);
  EXPECT_EQ(context.Ecx, 77u);
  EXPECT_EQ(context.EFlags, 0xFFEFFFFFu);
}

TEST(Chain, UnlinksARecordBehindOthers) {
  seh_record* const before = chain();
  seh_record first, second, third;
  seh_push_handler(probe_fault_handler, &first);
  seh_push_handler(probe_fault_handler, &second);
  seh_push_handler(probe_fault_handler, &third);
  EXPECT_EQ(chain(), &third);
  EXPECT_EQ(third.next, &second);
  seh_pop_handler(&second);
  EXPECT_EQ(chain(), &third);
  EXPECT_EQ(third.next, &first);
  seh_pop_handler(&second);  // no longer there: nothing happens
  EXPECT_EQ(third.next, &first);
  seh_pop_handler(&third);
  seh_pop_handler(&first);
  EXPECT_EQ(chain(), before);
}
#endif

TEST(Initialisers, RunInOrderBetweenTheSentinelsOnly) {
  static std::string seen;
  const initialiser list[] = {
      [] { seen += 'x'; }, [] { seen += 'a'; }, nullptr, [] { seen += 'b'; }, nullptr,
      [] { seen += 'y'; }};
  run_initialisers(list, list + 5);
  EXPECT_EQ(seen, "ab");
  seen.clear();
  run_initialisers(list, list + 1);
  EXPECT_EQ(seen, "");
}
