// The driver where Google Benchmark is not packaged: for each row the fastest of several timed
// runs, each long enough that the clock's resolution does not count.

#include <x86intrin.h>

#include <algorithm>
#include <chrono>

#include "rows.hpp"

namespace bench {

std::vector<figures> measure(const std::vector<row>& chosen) {
  using clock = std::chrono::steady_clock;
  constexpr double run_nanoseconds = 2e6;
  constexpr int runs = 7;
  std::vector<figures> all;
  for (const row& r : chosen) {
    const auto timed = [&](long calls) {
      const auto start = clock::now();
      const unsigned long long ticks = __rdtsc();
      r.run(calls);
      const double cycles = static_cast<double>(__rdtsc() - ticks);
      const std::chrono::duration<double, std::nano> elapsed = clock::now() - start;
      return figures{elapsed.count() / static_cast<double>(calls),
                     cycles / static_cast<double>(calls)};
    };
    r.run(1);
    long calls = 16;
    double once = timed(calls).nanoseconds;
    while (once * static_cast<double>(calls) < run_nanoseconds / 4)
      once = timed(calls *= 4).nanoseconds;
    calls = std::max(1L, static_cast<long>(run_nanoseconds / once));
    figures best = timed(calls);
    for (int i = 1; i < runs; ++i) {
      const figures again = timed(calls);
      if (again.nanoseconds < best.nanoseconds) best = again;
    }
    all.push_back(best);
  }
  return all;
}

}  // namespace bench
