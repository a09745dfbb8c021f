// zorvikrt-eval: calls an entry and shows its result to the last bit.

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "comparison.hpp"
#include "evaluation.hpp"
#include "numbers.hpp"
#include "plot.hpp"
#include "zorvikrt/text.h"
#include "zorvikrt/zorvikrt.h"

using namespace explorer;

namespace {

constexpr const char* help =
    R"(usage: zorvikrt-eval ENTRY OPERAND... [--show LIST] [--compare] [--csv]
       zorvikrt-eval ENTRY [OPERAND...] --from A --to B --steps N [--show LIST] [--compare] [--csv]
       zorvikrt-eval ENTRY [OPERAND...] --from A --to B --steps N --plot FILE.svg
       zorvikrt-eval ENTRY --file FILE [--show LIST] [--compare] [--csv]
       zorvikrt-eval --list [WORD]
       zorvikrt-eval --describe ENTRY
       zorvikrt-eval --version | --help

Calls an entry of zorvikrt and shows its result. ENTRY is a stem such as dsin, or a reference entry
such as I_dsin.

Operands:
  INTEGER       -7, 0xFF: bits of its width
  REAL          0.5, -1e-3, 0x1.8p3, inf, nan, or the image with all its digits: 0x3FE0000000000000
  REAL*16       0.1 (exact to the last bit of lo), or hi,lo: 0.1,1e-18 or two images
  COMPLEX       re,im or (re,im); COMPLEX*32 also re.hi,re.lo,im.hi,im.lo
  CHARACTER     the text, \xNN for any byte; its length follows by itself. One that is written: its
                length in characters
  memory        bytes: 0x and pairs of digits, lowest address first, or a text
  LOGICAL       an integer, or - for none
  table         REAL*16 rows with ; between them
  An operand that an entry only writes is not given: it is shown with the result.

--from, --to and --steps give a table of N + 1 rows: the operand written as _ (the only one needs no
mark) runs from A to B.
--file takes the operands of one call from each line, - for the standard input; blanks separate
them, "..." keeps blanks together, # starts a comment.
--show takes a list of these: decimal, bits, register (the 80-bit image on the FPU stack, where REAL
results travel there), flags (what the call raised). Without it: decimal,bits.
--compare shows what the C library answers, and libquadmath, MPFR and MPC where they are installed;
distance is that of ours from it, in units of its last place, for REAL*16 of 2**-106 of it.
--csv gives one line of names and a line for each call.
--plot draws the table into a file instead.
)";

struct options {
  std::string entry_name;
  std::vector<std::string> operands;
  std::optional<std::string> from, to, steps, file, plot;
  columns shown;
  bool csv = false, compare = false;
};

[[noreturn]] void fail(const std::string& message) {
  std::fprintf(stderr, "zorvikrt-eval: %s\n", message.c_str());
  std::exit(2);
}

std::string stem_of(const std::string& name) {
  return name.starts_with("__zorvik_") ? name.substr(9) : name;
}

bool same_letters(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

const entry& find(const std::string& name) {
  const std::string stem = stem_of(name);
  for (const entry& e : entries())
    if (stem == e.name) return e;
  for (const entry& e : entries())
    if (same_letters(stem, e.name))
      fail("there is no entry '" + name + "'; there is '" + e.name + "'");
  fail("there is no entry '" + name + "'; --list shows all");
}

/// An exported constant by its name, with or without the prefix; null for any other name.
const constant* find_constant(const std::string& name) {
  for (const constant& c : constants())
    if (name == c.name || stem_of(name) == stem_of(c.name)) return &c;
  return nullptr;
}

/// Ends the program: with 2 where not all could be written.
int finished() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) fail("cannot write the output");
  return 0;
}

columns read_columns(const std::string& list) {
  columns shown{false, false, false, false};
  for (std::size_t at = 0; at <= list.size();) {
    const std::size_t end = std::min(list.find(',', at), list.size());
    const std::string word = list.substr(at, end - at);
    if (word == "decimal")
      shown.decimal = true;
    else if (word == "bits")
      shown.bits = true;
    else if (word == "register")
      shown.in_register = true;
    else if (word == "flags")
      shown.flags = true;
    else
      fail("--show has no '" + word + "'; it has decimal, bits, register and flags");
    at = end + 1;
  }
#if !defined(__i386__)
  if (shown.in_register)
    fail("results arrive on the FPU stack in the 32-bit builds only: no register image here");
#endif
  return shown;
}

options read_arguments(int count, char** arguments) {
  options chosen;
  bool only_operands = false;
  for (int i = 1; i < count; ++i) {
    const std::string word = arguments[i];
    const auto value = [&](std::optional<std::string>& into) {
      if (into) fail(word + " stands twice");
      if (++i == count) fail(word + " needs a value");
      into = arguments[i];
    };
    std::optional<std::string> list;
    if (only_operands || !word.starts_with("--")) {
      if (chosen.entry_name.empty())
        chosen.entry_name = word;
      else
        chosen.operands.push_back(word);
    } else if (word == "--") {
      only_operands = true;
    } else if (word == "--from") {
      value(chosen.from);
    } else if (word == "--to") {
      value(chosen.to);
    } else if (word == "--steps") {
      value(chosen.steps);
    } else if (word == "--file") {
      value(chosen.file);
    } else if (word == "--plot") {
      value(chosen.plot);
    } else if (word == "--compare") {
      chosen.compare = true;
    } else if (word == "--show") {
      value(list);
      chosen.shown = read_columns(*list);
    } else if (word == "--csv") {
      chosen.csv = true;
    } else {
      fail("unknown option '" + word + "'; --help tells the options");
    }
  }
  return chosen;
}

void list_entries(const std::string& word) {
  bool any = false;
  for (const entry& e : entries()) {
    const std::string line = signature(e);
    if (line.find(word) == std::string::npos &&
        std::string_view(e.family).find(word) == std::string_view::npos)
      continue;
    std::puts(line.c_str());
    any = true;
  }
  for (const constant& c : constants())
    if (std::string_view(c.name).find(word) != std::string_view::npos) {
      std::printf("%s = 0x%s\n", c.name, hexadecimal(c.bits, c.width / 4).c_str());
      any = true;
    }
  if (!any) fail("no entry has '" + word + "' in its signature");
}

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

/// The words of one line; false when a quotation does not end.
bool split(const std::string& line, std::vector<std::string>& words) {
  words.clear();
  for (std::size_t at = 0; at < line.size();) {
    if (is_blank(line[at])) {
      ++at;
      continue;
    }
    if (line[at] == '#') return true;
    std::string word;
    while (at < line.size() && !is_blank(line[at])) {
      if (line[at] != '"') {
        word += line[at++];
        continue;
      }
      const std::size_t end = line.find('"', at + 1);
      if (end == std::string::npos) return false;
      word += line.substr(at + 1, end - at - 1);
      at = end + 1;
    }
    words.push_back(word);
  }
  return true;
}

class printer {
 public:
  printer(const entry& e, const options& chosen) : entry_(e), chosen_(chosen) {
    if (chosen.compare) others_.emplace(e);
    if (chosen.csv) put(csv_head(e, chosen.shown, others_ ? others_->csv_names() : no_cells));
  }
  void operator()(const evaluation& call) const {
    if (chosen_.csv)
      put(csv_row(call, chosen_.shown, others_ ? others_->csv_cells(call) : no_cells));
    else
      put(text_row(entry_, call, chosen_.shown) + (others_ ? others_->text_lines(call) : ""));
  }

 private:
  static inline const std::vector<std::string> no_cells{};
  static void put(const std::string& lines) { std::puts(lines.c_str()); }

  const entry& entry_;
  const options& chosen_;
  std::optional<comparison> others_;
};

void show_constant(const constant& c, const options& chosen) {
  const bool is_real =
      c.width == 64 || std::string_view(c.name).find("FLOAT") != std::string_view::npos;
  image value;
  std::memcpy(value.bytes.data(), &c.bits, static_cast<std::size_t>(c.width / 8));
  const char code = c.width == 64 ? 'd' : is_real ? 'f' : 'i';
  std::string row = c.name;
  row += " =";
  if (chosen.shown.decimal) row += ' ' + decimal_of(code, value);
  if (chosen.shown.bits) row += (chosen.shown.decimal ? "  " : " ") + bits_of(code, value);
  std::puts(row.c_str());
}

void run_table(const entry& e, options& chosen) {
  if (!chosen.from || !chosen.to || !chosen.steps)
    fail("a table needs all of --from, --to and --steps");
  long steps = 0;
  {
    char* end = nullptr;
    steps = std::strtol(chosen.steps->c_str(), &end, 10);
    if (chosen.steps->empty() || *end != 0 || steps < 1 || steps > 10'000'000)
      fail("--steps '" + *chosen.steps + "' is not a whole number from 1 to 10000000");
  }
  if (chosen.operands.empty() && given_operands(e) == 1) chosen.operands.push_back("_");
  const auto marks = std::count(chosen.operands.begin(), chosen.operands.end(), "_");
  if (marks != 1) fail("a table needs one operand written as _, the one that runs");
  const auto place = static_cast<std::size_t>(
      std::find(chosen.operands.begin(), chosen.operands.end(), "_") - chosen.operands.begin());
  const running_operand runs(e, place, *chosen.from, *chosen.to, steps);
  std::optional<printer> print;
  std::optional<plot> picture;
  if (chosen.plot)
    picture.emplace(e, chosen.operands, place);
  else
    print.emplace(e, chosen);
  for (long step = 0; step <= steps; ++step) {
    chosen.operands[place] = runs.at(step);
    const evaluation call(e, chosen.operands);
    if (picture)
      picture->add(call);
    else
      (*print)(call);
  }
  if (picture && !picture->write(*chosen.plot)) fail("cannot write '" + *chosen.plot + "'");
}

void run_file(const entry& e, const options& chosen) {
  if (!chosen.operands.empty()) fail("operands come from the file or from the command line");
  std::ifstream file;
  std::istream* input = &std::cin;
  if (*chosen.file != "-") {
    file.open(*chosen.file);
    if (!file) fail("cannot open '" + *chosen.file + "'");
    input = &file;
  }
  const printer print(e, chosen);
  std::string line;
  std::vector<std::string> words;
  for (long number = 1; std::getline(*input, line); ++number) {
    const std::string where = *chosen.file + ":" + std::to_string(number) + ": ";
    if (!split(line, words)) fail(where + "a quotation does not end");
    if (words.empty()) continue;
    try {
      print(evaluation(e, words));
    } catch (const unreadable& error) {
      fail(where + error.what());
    }
  }
  if (input->bad()) fail("cannot read '" + *chosen.file + "'");
}

}  // namespace

#if defined(_WIN32)
extern "C" {
int _CRT_glob = 0;  // an operand is no pattern of file names
}
#endif

int main(int count, char** arguments) {
  zorvikrt_set_thread_state();
#if defined(__x86_64__)
  // Numbers are read and written by the C++ library, which needs subnormals. No entry uses SSE.
  const std::uint32_t without_flushing = 0x1F80;
  asm volatile("ldmxcsr %0" : : "m"(without_flushing));
#endif
  const auto is = [&](const char* word) { return std::strcmp(arguments[1], word) == 0; };
  if (count >= 2 && (is("--help") || is("-h"))) {
    std::fputs(help, stdout);
    return finished();
  }
  if (count >= 2 && is("--list")) {
    if (count > 3) fail("--list takes one word");
    list_entries(count == 3 ? arguments[2] : "");
    return finished();
  }
  if (count == 2 && is("--version")) {
    std::printf("zorvikrt-eval %s\n", zorvikrt_version());
    return finished();
  }
  if (count >= 2 && is("--describe")) {
    if (count != 3) fail("--describe takes one entry");
    const entry& e = find(arguments[2]);
    std::printf("%s\n%s\n", signature(e).c_str(), description_of(e).documentation);
    return finished();
  }
  options chosen = read_arguments(count, arguments);
  if (chosen.entry_name.empty()) fail("which entry? --list shows all, --help tells the rest");
  if (const constant* c = find_constant(chosen.entry_name)) {
    if (!chosen.operands.empty() || chosen.from || chosen.to || chosen.steps || chosen.file ||
        chosen.compare || chosen.plot)
      fail(std::string(c->name) + " is a constant and takes no operands");
    show_constant(*c, chosen);
    return finished();
  }
  const entry& e = find(chosen.entry_name);
  try {
    const bool table = chosen.from || chosen.to || chosen.steps;
    if (chosen.plot && !table) fail("--plot draws a table: it needs --from, --to and --steps");
    if (chosen.plot && (chosen.csv || chosen.compare))
      fail("--plot goes with neither --csv nor --compare");
    if (chosen.file && table) fail("--file and a table do not go together");
    if (chosen.file)
      run_file(e, chosen);
    else if (table)
      run_table(e, chosen);
    else
      printer(e, chosen)(evaluation(e, chosen.operands));
  } catch (const unreadable& error) {
    fail(error.what());
  }
  return finished();
}
