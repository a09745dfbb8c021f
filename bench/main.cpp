// Times every entry of the library over a realistic operand set, peers beside it.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "rows.hpp"

#if !defined(_WIN32)
#include <dlfcn.h>
#endif

namespace {

constexpr const char* usage =
    "zorvikrt_bench [--filter TEXT] [--against LIBRARY] [--json FILE] [--list]";

[[noreturn]] void refuse(const std::string& why) {
  std::cerr << "zorvikrt_bench: " << why << "; usage: " << usage << '\n';
  std::exit(2);
}

struct options {
  std::string filter, json, against;
  bool list = false;
};

options parse(int count, char** words) {
  options chosen;
  for (int i = 1; i < count; ++i) {
    const std::string word = words[i];
    const auto value = [&] {
      if (i + 1 == count) refuse(word + " needs a value");
      return std::string(words[++i]);
    };
    if (word == "--filter")
      chosen.filter = value();
    else if (word == "--against")
      chosen.against = value();
    else if (word == "--json")
      chosen.json = value();
    else if (word == "--list")
      chosen.list = true;
    else
      refuse("unknown argument '" + word + "'");
  }
  return chosen;
}

[[maybe_unused]] void* other_build = nullptr;

void open_other(const std::string& file) {
#if defined(_WIN32)
  refuse("--against " + file + ": not on this system");
#else
  // Its own calls stay within it.
  const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
  other_build = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
  if (other_build == nullptr) refuse(dlerror());
#endif
}

/// Whether the row stands for the library itself.
bool is_own(const bench::row& row) { return row.subject.starts_with(bench::own); }

/// The row that a ratio is taken to: the library's, called in the same way.
std::string own_counterpart(const bench::row& row) {
  return row.entry + (row.subject.ends_with(bench::pushed) ? bench::pushed : "");
}

/// The rows that are asked for, each with its whole group, so that there is something to compare.
std::vector<bench::row> chosen_rows(const options& chosen) {
  std::set<std::string> entries;
  for (const bench::row& row : bench::rows())
    if ((row.entry + " " + row.subject).find(chosen.filter) != std::string::npos)
      entries.insert(row.entry);
  std::vector<bench::row> rows;
  for (const bench::row& row : bench::rows())
    if (entries.contains(row.entry)) rows.push_back(row);
  std::stable_sort(rows.begin(), rows.end(), [](const bench::row& a, const bench::row& b) {
    const auto key = [](const bench::row& r) { return std::make_pair(r.entry, !is_own(r)); };
    return key(a) < key(b);
  });
  if (rows.empty()) refuse("no row contains '" + chosen.filter + "'");
  return rows;
}

/// A ratio above 1 says that the peer takes longer.
void print(const std::vector<bench::row>& rows, const std::vector<bench::figures>& figures) {
  std::printf("%-26s %-26s %10s %10s %10s %8s\n", "entry", "subject", "ns/call", "cycles", "GB/s",
              "ratio");
  std::map<std::string, double> own, logarithms;
  std::map<std::string, int> counts;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bench::row& row = rows[i];
    std::printf("%-26s %-26s %10.2f %10.1f", row.entry.c_str(), row.subject.c_str(),
                figures[i].nanoseconds, figures[i].cycles);
    if (row.bytes > 0)
      std::printf(" %10.3f", row.bytes / figures[i].nanoseconds);
    else
      std::printf(" %10s", "");
    const std::string counterpart = own_counterpart(row);
    if (is_own(row)) {
      own[counterpart] = figures[i].nanoseconds;
    } else if (own.contains(counterpart)) {
      const double ratio = figures[i].nanoseconds / own[counterpart];
      logarithms[row.subject] += std::log(ratio);
      ++counts[row.subject];
      std::printf(" %8.2f", ratio);
    }
    std::printf("\n");
  }
  for (const auto& [subject, sum] : logarithms)
    std::printf("geometric mean of the ratios to %s: %.2f over %d\n", subject.c_str(),
                std::exp(sum / counts[subject]), counts[subject]);
}

/// One row a line, so that two files can be compared by eye as well.
void write_json(std::ostream& out, const bench::surroundings& around,
                const std::vector<bench::row>& rows, const std::vector<bench::figures>& figures) {
  const auto number = [](double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return std::string(text);
  };
  out << "{\n  \"version\": \"" << ZORVIKRT_BENCH_VERSION << "\",\n  \"processor\": \""
      << around.processor << "\",\n  \"maker\": \"" << around.maker
      << "\",\n  \"family\": " << around.family << ",\n  \"model\": " << around.model
      << ",\n  \"build\": \"" << around.build << "\",\n  \"compiler\": \"" << around.compiler
      << "\",\n  \"c_library\": \"" << around.c_library << "\",\n  \"rows\": [\n";
  for (std::size_t i = 0; i < rows.size(); ++i)
    out << "    {\"entry\": \"" << rows[i].entry << "\", \"subject\": \"" << rows[i].subject
        << "\", \"nanoseconds\": " << number(figures[i].nanoseconds)
        << ", \"cycles\": " << number(figures[i].cycles) << (i + 1 < rows.size() ? "},\n" : "}\n");
  out << "  ]\n}\n";
}

}  // namespace

namespace bench {

std::vector<row>& rows() {
  static std::vector<row> all;
  return all;
}
std::vector<void (*)()>& registrations() {
  static std::vector<void (*)()> all;
  return all;
}
registered::registered(void (*add_rows)()) { registrations().push_back(add_rows); }

void* other_entry([[maybe_unused]] const char* symbol) {
#if defined(_WIN32)
  return nullptr;
#else
  return other_build != nullptr ? dlsym(other_build, symbol) : nullptr;
#endif
}

}  // namespace bench

int main(int count, char** words) {
  const options chosen = parse(count, words);
  if (!chosen.against.empty()) open_other(chosen.against);
  for (const auto add_rows : bench::registrations()) add_rows();
  const std::vector<bench::row> rows = chosen_rows(chosen);
  if (chosen.list) {
    for (const bench::row& row : rows) std::cout << row.entry << '\t' << row.subject << '\n';
    return 0;
  }
  // Tried before the measurement, overwritten after it.
  if (!chosen.json.empty() && !std::ofstream(chosen.json, std::ios::app))
    refuse("cannot write " + chosen.json);
  const bench::surroundings around = bench::find_surroundings();
  std::printf("%s (%s, family %d, model %d), %s, %s, %s\n", around.processor.c_str(),
              around.maker.c_str(), around.family, around.model, around.build.c_str(),
              around.compiler.c_str(), around.c_library.c_str());
  const std::vector<bench::figures> figures = bench::measure(rows);
  print(rows, figures);
  if (!chosen.json.empty()) {
    std::ofstream json(chosen.json);
    write_json(json, around, rows, figures);
    if (!json.flush()) refuse("cannot write " + chosen.json);
  }
  return 0;
}
