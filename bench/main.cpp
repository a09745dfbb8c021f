// Times every entry of the library over a realistic operand set, peers beside it.
//
//   zorvikrt_bench [--filter TEXT] [--json FILE] [--list]

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "rows.hpp"

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

}  // namespace bench

namespace {

struct options {
  std::string filter, json;
  bool list = false;
};

[[noreturn]] void refuse(const std::string& why) {
  std::cerr << "zorvikrt_bench: " << why
            << "; usage: zorvikrt_bench [--filter TEXT] [--json FILE] [--list]\n";
  std::exit(2);
}

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
    else if (word == "--json")
      chosen.json = value();
    else if (word == "--list")
      chosen.list = true;
    else
      refuse("unknown argument '" + word + "'");
  }
  return chosen;
}

void write_json(std::ostream& out, const std::vector<bench::row>& rows,
                const std::vector<bench::figures>& figures) {
  out << "[\n";
  for (std::size_t i = 0; i < rows.size(); ++i)
    out << "  {\"entry\": \"" << rows[i].entry << "\", \"subject\": \"" << rows[i].subject
        << "\", \"nanoseconds\": " << figures[i].nanoseconds
        << ", \"cycles\": " << figures[i].cycles << (i + 1 < rows.size() ? "},\n" : "}\n");
  out << "]\n";
}

}  // namespace

int main(int count, char** words) {
  const options chosen = parse(count, words);
  for (const auto add_rows : bench::registrations()) add_rows();

  // A row that is asked for comes with its whole group, so that there is something to compare.
  std::set<std::string> entries;
  for (const bench::row& row : bench::rows())
    if ((row.entry + " " + row.subject).find(chosen.filter) != std::string::npos)
      entries.insert(row.entry);
  std::vector<bench::row> rows;
  for (const bench::row& row : bench::rows())
    if (entries.contains(row.entry)) rows.push_back(row);
  std::stable_sort(rows.begin(), rows.end(), [](const bench::row& a, const bench::row& b) {
    const auto key = [](const bench::row& r) {
      return std::make_pair(r.entry, r.subject != bench::own);
    };
    return key(a) < key(b);
  });
  if (rows.empty()) refuse("no row contains '" + chosen.filter + "'");
  if (chosen.list) {
    for (const bench::row& row : rows) std::cout << row.entry << ' ' << row.subject << '\n';
    return 0;
  }
  std::ofstream json;
  if (!chosen.json.empty()) {
    json.open(chosen.json);
    if (!json) refuse("cannot write " + chosen.json);
  }

  const std::vector<bench::figures> figures = bench::measure(rows);
  std::printf("%-26s %-20s %10s %10s %10s %8s\n", "entry", "subject", "ns/call", "cycles", "GB/s",
              "ratio");
  // A ratio above 1 says that the peer takes longer.
  std::map<std::string, double> own, logarithms;
  std::map<std::string, int> counts;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bench::row& row = rows[i];
    if (row.subject == bench::own) own[row.entry] = figures[i].nanoseconds;
    std::printf("%-26s %-20s %10.2f %10.1f", row.entry.c_str(), row.subject.c_str(),
                figures[i].nanoseconds, figures[i].cycles);
    if (row.bytes > 0)
      std::printf(" %10.3f", row.bytes / figures[i].nanoseconds);
    else
      std::printf(" %10s", "");
    if (row.subject != bench::own && own.contains(row.entry)) {
      const double ratio = figures[i].nanoseconds / own[row.entry];
      logarithms[row.subject] += std::log(ratio);
      ++counts[row.subject];
      std::printf(" %8.2f", ratio);
    }
    std::printf("\n");
  }
  for (const auto& [subject, sum] : logarithms)
    std::printf("geometric mean of the ratios to %s: %.2f over %d\n", subject.c_str(),
                std::exp(sum / counts[subject]), counts[subject]);
  if (json.is_open()) {
    write_json(json, rows, figures);
    if (!json.flush()) refuse("cannot write " + chosen.json);
  }
  return 0;
}
