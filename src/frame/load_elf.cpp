// The loader's notifications on ELF. A thread that starts after the load inherits the state of the
// thread that starts it; one that was there before calls zorvikrt_set_thread_state of the public
// header.

#include "frame/control.hpp"

namespace zrt::control {

// A system that runs ELF programs has enabled SSE state wherever the processor has it.
void guarded_probe(std::uint32_t word) { probe(word); }

[[gnu::constructor]] static void process_attach() { notified(1); }
[[gnu::destructor]] static void process_detach() { notified(0); }

}  // namespace zrt::control
