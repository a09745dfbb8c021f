#pragma once

// A benchmark row: one function over a set of operands. Rows of the library come from the list of
// exports; a peer's row names the entry it stands beside. What makes rows is in calls.hpp.

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct row {
  std::string entry;    // stem, with I_ for a reference entry
  std::string subject;  // "zorvikrt", or the peer's name
  double bytes = 0;     // that one call works through, where a rate is wanted
  std::function<void(long calls)> run;
};

/// A library entry; where REAL*8 values reach it as 32-bit words; the same of a library to compare
/// with; the latency of the longest chain of operations in one call.
inline constexpr const char *own = "zorvikrt", *pushed = ", words pushed", *other = "the other",
                            *own_chain = "own chain";

std::vector<row>& rows();

/// The entry of the other build, of the type of this one's; null without such a build, or where it
/// lacks the name.
void* other_entry(const char* symbol);

/// Rows register themselves: a file of rows has one object of this type for each group.
struct registered {
  explicit registered(void (*add_rows)());
};
std::vector<void (*)()>& registrations();

/// The fastest of several runs.
struct figures {
  double nanoseconds, cycles;
};

/// Measures every row. Rows of one entry are timed in turn, so that a change of the processor's
/// speed meets all of them.
std::vector<figures> measure(const std::vector<row>& chosen);

/// What the figures depend on.
struct surroundings {
  std::string processor;  // as it names itself
  std::string maker;      // the vendor string of cpuid
  int family, model;
  std::string build, compiler, c_library;
};
surroundings find_surroundings();

}  // namespace bench
