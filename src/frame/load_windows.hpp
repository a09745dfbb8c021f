#pragma once

// What the loader's entry of the DLL is made of.

#include <cstdint>

struct _EXCEPTION_RECORD;
struct _CONTEXT;

#if defined(__i386__)
#define ZRT_LOADER_CALL __attribute__((stdcall))
#else
#define ZRT_LOADER_CALL
#endif

namespace zrt::control {

#if defined(__i386__)

/// One link of the thread's chain of exception handlers, whose head stands at fs:[0]. Links lie on
/// the thread's stack.
struct seh_record;
using seh_handler = std::int32_t (*)(const _EXCEPTION_RECORD* exception, seh_record* frame,
                                     _CONTEXT* context, void* dispatcher);
struct seh_record {
  seh_record* next;
  seh_handler handler;
};

void seh_push_handler(seh_handler handler, seh_record* record);
/// Unlinks `record`, wherever it stands in the chain.
void seh_pop_handler(seh_record* record);

/// What `probe_mark` keeps of its caller, for a second return.
struct probe_mark_registers {
  std::uint32_t ebx, edi, esi, ebp, esp, return_address;
};
extern probe_mark_registers probe_registers;

/// Keeps the caller's registers and returns 0. A fault that `probe_fault_handler` meets makes it
/// return a second time, with 1, so its caller must not have returned by then.
extern "C" [[gnu::returns_twice]] std::int32_t probe_mark(probe_mark_registers* registers);

/// Rewrites the context after an illegal instruction, so that the thread goes on as if `probe_mark`
/// had just returned 1; leaves it alone for any other exception. Returns 0: continue execution.
std::int32_t probe_fault_handler(const _EXCEPTION_RECORD* exception, seh_record* frame,
                                 _CONTEXT* context, void* dispatcher);

/// Runs `body(word)` with the handler in the chain; false when it met an illegal instruction.
bool survives(void (*body)(std::uint32_t), std::uint32_t word);

#endif

/// Calls the functions between two sentinels in their order; null words are skipped.
using initialiser = void (*)();
void run_initialisers(const initialiser* start, const initialiser* end);
/// Both lists of the image, the second one first.
void run_initialiser_lists();

}  // namespace zrt::control

/// The loader's call at each notification. Returns 1.
extern "C" std::int32_t ZRT_LOADER_CALL load_entry(void* module, std::uint32_t reason,
                                                   void* reserved);
