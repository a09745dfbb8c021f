// Holds the library against rows of text files: every row through the value entry and each of its
// reference entries. CONTRIBUTING.md tells the format.
//
//   zorvikrt_rows FILE...

#include <cctype>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "evaluation.hpp"
#include "numbers.hpp"
#include "zorvikrt/zorvikrt.h"

using namespace explorer;

namespace {

using words = std::vector<std::string>;

/// The words of a line. A blank inside double quotes does not part them; `#` begins a comment.
words words_of(const std::string& line) {
  words found(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '#' && !quoted) break;
    if (c == '"') quoted = !quoted;
    if (std::isspace(static_cast<unsigned char>(c)) && !quoted)
      found.emplace_back();
    else
      found.back() += c;
  }
  if (quoted) throw unreadable("a quotation does not end");
  std::erase(found, "");
  return found;
}

/// `ENTRY operand ... -> result ... [flags NAMES] [register IMAGE]`
struct row {
  std::string entry, flags, in_register;
  words operands, results;
};

row read_row(const words& line) {
  row read;
  read.entry = line[0];
  words* into = &read.operands;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const bool last = i + 1 == line.size();
    if (line[i] == "->")
      into = &read.results;
    else if (line[i] == "flags" && !last)
      read.flags = line[++i];
    else if (line[i] == "register" && !last)
      read.in_register = line[++i];
    else
      into->push_back(line[i]);
  }
  if (into == &read.operands) throw unreadable("there is no -> in the row");
  for (std::string& word : read.operands)
    if (word.size() > 1 && word.front() == '"') word = word.substr(1, word.size() - 2);
  return read;
}

/// What a call gives in another way than the row says; empty where it gives the same.
std::string difference(const entry& e, const row& expected) {
  const evaluation call(e, expected.operands);
  if (call.results.size() != expected.results.size())
    throw unreadable(std::to_string(call.results.size()) + " results are due");
  for (std::size_t i = 0; i < call.results.size(); ++i) {
    const evaluation::shown_value& got = call.results[i];
    const std::string& due = expected.results[i];
    const bool same = got.code != 0 ? bits_of(got.code, read_number(got.code, due)) == got.bits
                                    : due == got.decimal;
    if (!same) return got.name + ' ' + got.decimal + ' ' + got.bits + ", not " + due;
  }
#if defined(__i386__)
  // The flags of the x87 unit, and results as it holds them.
  if (!expected.flags.empty() && call.flags != expected.flags)
    return "flags " + call.flags + ", not " + expected.flags;
  if (!expected.in_register.empty() && call.register_image != expected.in_register)
    return "register " + call.register_image + ", not " + expected.in_register;
#endif
  return {};
}

/// The entry of that name, and the reference entries behind it.
std::span<const entry> forms_of(const std::string& name) {
  const auto all = entries();
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i].name != name) continue;
    std::size_t end = i + 1;
    while (all[i].kind == form::value && end < all.size() && all[end].kind == form::reference)
      ++end;
    return all.subspan(i, end - i);
  }
  throw unreadable("there is no entry " + name);
}

}  // namespace

int main(int count, char** files) {
  zorvikrt_set_thread_state();
  int rows = 0, faults = 0;
  for (int i = 1; i < count; ++i) {
    std::ifstream file(files[i]);
    std::string line;
    const int rows_before = rows;
    for (int number = 1; std::getline(file, line); ++number) {
      const auto fault = [&](const std::string& why) {
        std::printf("%s:%d: %s\n", files[i], number, why.c_str());
        ++faults;
      };
      try {
        const words found = words_of(line);
        if (found.empty()) continue;
        ++rows;
        const row expected = read_row(found);
        for (const entry& e : forms_of(expected.entry))
          if (const std::string why = difference(e, expected); !why.empty())
            fault(std::string(e.name) + ": " + why);
      } catch (const unreadable& why) {
        fault(why.what());
      }
    }
    if (rows == rows_before) {
      std::printf("%s: no row in it\n", files[i]);
      ++faults;
    }
  }
  std::printf("%d rows, %d faults\n", rows, faults);
  return rows == 0 || faults != 0 ? 1 : 0;
}
