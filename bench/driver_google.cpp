// The driver on Google Benchmark: the median of its repetitions for each row.

#include <benchmark/benchmark.h>
#include <x86intrin.h>

#include <map>

#include "rows.hpp"

namespace bench {
namespace {

/// Collects the medians and prints nothing; main prints the table.
class collector : public benchmark::BenchmarkReporter {
 public:
  std::map<std::string, figures> medians;

  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.aggregate_name == "median")
        medians[run.run_name.function_name] = {run.GetAdjustedCPUTime(),
                                               run.counters.at("cycles").value};
  }
};

}  // namespace

std::vector<figures> measure(const std::vector<row>& chosen) {
  int number = 0;
  for (const row& r : chosen) {
    constexpr long batch = operand_sets;
    benchmark::RegisterBenchmark(std::to_string(number++).c_str(),
                                 [&r](benchmark::State& state) {
                                   const long calls = r.bytes > 4096 ? 1 : batch;
                                   unsigned long long ticks = 0;
                                   long done = 0;
                                   while (state.KeepRunningBatch(calls)) {
                                     const unsigned long long start = __rdtsc();
                                     r.run(calls);
                                     ticks += __rdtsc() - start;
                                     done += calls;
                                   }
                                   state.counters["cycles"] =
                                       static_cast<double>(ticks) / static_cast<double>(done);
                                 })
        ->MinTime(0.003)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true)
        ->Unit(benchmark::kNanosecond);
  }
  int count = 1;
  char name[] = "zorvikrt_bench";
  char* words[] = {name, nullptr};
  benchmark::Initialize(&count, words);
  collector collected;
  benchmark::RunSpecifiedBenchmarks(&collected);
  std::vector<figures> all;
  for (int i = 0; i < number; ++i) all.push_back(collected.medians.at(std::to_string(i)));
  return all;
}

}  // namespace bench
