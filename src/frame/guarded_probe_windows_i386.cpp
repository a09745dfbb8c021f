// 32-bit systems of this kind run on processors and under settings where SSE state is not enabled:
// the probe runs under a handler on the thread's exception chain.

#include "frame/load_windows.hpp"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "frame/control.hpp"

namespace zrt::control {

// --- The chain of exception handlers -----------------------------------------------------------

/// The place that holds the head of the chain: the first word of the thread's own block.
static seh_record** chain_head() {
  seh_record** thread_block;
  asm volatile("movl %%fs:0x18, %0" : "=r"(thread_block));
  return thread_block;
}

void seh_push_handler(seh_handler handler, seh_record* record) {
  seh_record** head = chain_head();
  record->next = *head;
  record->handler = handler;
  asm volatile("movl %0, %%fs:0" : : "r"(record) : "memory");
}

void seh_pop_handler(seh_record* record) {
  // The last link is -1.
  for (seh_record** link = chain_head(); reinterpret_cast<std::intptr_t>(*link) > 0;
       link = &(*link)->next) {
    if (*link != record) continue;
    *link = record->next;
    asm volatile("" : : : "memory");
    return;
  }
}

// --- The guarded probe -------------------------------------------------------------------------

probe_mark_registers probe_registers;

asm(R"(
    .text
    .globl _probe_mark
_probe_mark:
    movl 4(%esp), %eax
    movl %ebx, (%eax)
    movl %edi, 4(%eax)
    movl %esi, 8(%eax)
    movl %ebp, 12(%eax)
    movl %esp, 16(%eax)
    movl (%esp), %edx
    movl %edx, 20(%eax)
    xorl %eax, %eax
    ret
)");

std::int32_t probe_fault_handler(const EXCEPTION_RECORD* exception, seh_record*, CONTEXT* context,
                                 void*) {
  constexpr std::int32_t continue_execution = 0;
  if (static_cast<std::uint32_t>(exception->ExceptionCode) != 0xC000001D) return continue_execution;
  context->Eax = 1;
  context->Ebx = probe_registers.ebx;
  context->Edi = probe_registers.edi;
  context->Esi = probe_registers.esi;
  context->Ebp = probe_registers.ebp;
  context->Esp = probe_registers.esp + 4;  // the return address is taken off
  context->Eip = probe_registers.return_address;
  context->EFlags &= 0xFFEFFFFF;
  return continue_execution;
}

bool survives(void (*body)(std::uint32_t), std::uint32_t word) {
  seh_record record;
  seh_push_handler(probe_fault_handler, &record);
  if (probe_mark(&probe_registers) != 0) {
    seh_pop_handler(&record);
    return false;
  }
  body(word);
  seh_pop_handler(&record);
  return true;
}

void guarded_probe(std::uint32_t word) {
  if (!survives(probe, word)) sse_state = sse::absent;
}

}  // namespace zrt::control
