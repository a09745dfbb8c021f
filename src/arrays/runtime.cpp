// The level, the floating-point state and the threads of the array library.

#include "arrays/runtime.hpp"

#include <cpuid.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace zrt::arrays {
namespace {

constexpr const kernels* levels[] = {&plain::table, &sse2::table, &avx2::table, &avx512::table};
constexpr int level_count = sizeof levels / sizeof *levels;

/// XCR0, which says what the system saves of the vector registers.
std::uint64_t enabled_state() {
  std::uint32_t low, high;
  asm("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return std::uint64_t{high} << 32 | low;
}

/// The best level that the processor and the system offer.
int best_level() {
  unsigned a, b, c, d;
  if (!__get_cpuid(1, &a, &b, &c, &d) || (d & bit_SSE2) == 0) return 0;
  constexpr std::uint64_t avx_state = 0x06, avx512_state = 0xE6;
  const bool fused = (c & bit_FMA) != 0;
  if ((c & bit_OSXSAVE) == 0 || (enabled_state() & avx_state) != avx_state) return 1;
  if (!__get_cpuid_count(7, 0, &a, &b, &c, &d) || !fused || (b & bit_AVX2) == 0) return 1;
  constexpr unsigned needed = bit_AVX512F | bit_AVX512DQ | bit_AVX512VL;
  return (b & needed) == needed && (enabled_state() & avx512_state) == avx512_state ? 3 : 2;
}

std::atomic<const kernels*> chosen{&plain::table};
std::atomic<zorvikrt_runner> runner{nullptr};
std::atomic<int> thread_count{1};
bool has_sse = false;

bool choose(const char* name) {
  const int best = best_level();
  int named = level_count - 1;
  if (name != nullptr) {
    while (named >= 0 && std::strcmp(levels[named]->name, name) != 0) --named;
    if (named < 0) return false;
  }
  has_sse = best > 0;
  chosen = levels[named < best ? named : best];
  return true;
}

[[gnu::constructor]] void choose_at_load() {
  const char* const name = secure_getenv("ZORVIKRT_ARRAYS_LEVEL");
  if (choose(name)) return;
  choose(nullptr);
  constexpr char line[] =
      "zorvikrt_arrays: ZORVIKRT_ARRAYS_LEVEL is none of plain, sse2, avx2, avx512; not used\n";
  if (write(STDERR_FILENO, line, sizeof line - 1) < 0) return;
}

std::uint16_t x87_word() {
  std::uint16_t word;
  asm volatile("fnstcw %0" : "=m"(word));
  return word;
}
void set_x87_word(std::uint16_t word) { asm volatile("fldcw %0" : : "m"(word)); }

constexpr std::uint32_t gradual_mxcsr = 0x1F80;
constexpr std::uint16_t double_word = 0x027F;

}  // namespace

const kernels& active() { return *chosen.load(std::memory_order_relaxed); }

floating_point_state::floating_point_state() : mxcsr_(gradual_mxcsr), x87_word_(x87_word()) {
  if (has_sse) {
    asm volatile("stmxcsr %0" : "=m"(mxcsr_));
    asm volatile("ldmxcsr %0" : : "m"(gradual_mxcsr));
  }
  if (x87_word_ != double_word) set_x87_word(double_word);
}

floating_point_state::~floating_point_state() {
  if (has_sse) asm volatile("ldmxcsr %0" : : "m"(mxcsr_));
  if (x87_word_ != double_word) set_x87_word(x87_word_);
}

int threads() { return runner.load() == nullptr ? 1 : thread_count.load(); }

void run_parts(int parts, zorvikrt_part run, void* computation) {
  runner.load()(thread_count, parts, run, computation);
}

}  // namespace zrt::arrays

using namespace zrt::arrays;

ZRT_API const char* zorvikrt_arrays_level() { return active().name; }
ZRT_API int zorvikrt_arrays_set_level(const char* name) { return choose(name) ? 0 : -1; }
ZRT_API int zorvikrt_arrays_set_threads(int count, zorvikrt_runner given) {
  if (count < 1) return -1;
  runner = given;
  thread_count = count;
  return 0;
}
