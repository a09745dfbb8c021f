// The loader's notifications on Windows: the state is set on the notifying thread at process and
// thread attach and detach.

#include "frame/load_windows.hpp"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "frame/control.hpp"

namespace zrt::control {

#if defined(__x86_64__)
// A 64-bit system has enabled SSE state.
void guarded_probe(std::uint32_t word) { probe(word); }
#endif

// --- The loader's entry ------------------------------------------------------------------------

// Two lists of functions, each between its sentinels: the linker sorts the sections by their names.
// The library puts nothing into either.
[[gnu::section(".CRT$XCA"), gnu::used]] static const initialiser first_start = nullptr;
[[gnu::section(".CRT$XCZ"), gnu::used]] static const initialiser first_end = nullptr;
[[gnu::section(".CRT$XIA"), gnu::used]] static const initialiser second_start = nullptr;
[[gnu::section(".CRT$XIZ"), gnu::used]] static const initialiser second_end = nullptr;

void run_initialisers(const initialiser* start, const initialiser* end) {
  // What lies between the sentinels is the linker's matter, not the compiler's.
  asm("" : "+r"(start), "+r"(end));
  for (const initialiser* function = start + 1; function < end; ++function)
    if (*function != nullptr) (*function)();
}

void run_initialiser_lists() {
  run_initialisers(&second_start, &second_end);
  run_initialisers(&first_start, &first_end);
}

}  // namespace zrt::control

std::int32_t ZRT_LOADER_CALL load_entry(void*, std::uint32_t reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) zrt::control::run_initialiser_lists();
  return zrt::control::notified(reason);
}
