#include "comparison.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "numbers.hpp"
#include "peers.hpp"

namespace explorer {
namespace {

/// The value entry of a reference entry; entries of one stem follow it.
const entry& stem_of(const entry& e) {
  const entry* at = &e;
  while (at->kind == form::reference) --at;
  return *at;
}

const counterpart& counterpart_of(const entry& e) {
  for (const counterpart& c : counterparts())
    for (const std::string& stem : pieces(c.stems, ' '))
      if (stem == stem_of(e).name) return c;
  throw unreadable("no function of the C library, libquadmath, MPFR or MPC stands beside " +
                   std::string(e.name));
}

wide magnitude(wide x) { return x < 0 ? -x : x; }

/// The unit of the last place of a magnitude, 2**-106 of it for REAL*16; at least the least
/// subnormal.
wide unit_of(char code, wide size) {
  if (type_of(code).is == nature::pair) return std::max(scaled(size, -106), scaled(1, -1074));
  std::uint64_t leading;  // 15 bits of exponent behind the sign
  std::memcpy(&leading, reinterpret_cast<const char*>(&size) + 8, sizeof leading);
  const long exponent = static_cast<long>(leading >> 48 & 0x7FFF) - 0x3FFF;
  const bool single = type_of(code).part == 'f';
  return scaled(1, single ? std::max(exponent - 23, -149L) : std::max(exponent - 52, -1074L));
}

/// How far our result is from an answer, the worse part counted; NaN where that is no number.
double distance(char code, const image& ours, const std::array<precise, 2>& theirs) {
  wide largest = 0;
  for (const precise& part : theirs) largest = std::max(largest, magnitude(part.head));
  double worst = 0;
  for (int i = 0; i < (is_complex(code) ? 2 : 1); ++i) {
    const precise& wanted = theirs[static_cast<std::size_t>(i)];
    const precise got = part_of(code, ours, i);
    if (got.head == wanted.head && got.head - got.head != 0) continue;  // infinite, both
    if (got.head != got.head && wanted.head != wanted.head) continue;
    const wide apart = (got.head - wanted.head + got.rest) - wanted.rest;
    const auto units = static_cast<double>(magnitude(apart) / unit_of(code, largest));
    if (!(units <= worst)) worst = units;
  }
  return worst;
}

std::string text(double distance) {
  if (std::isnan(distance) || std::isinf(distance)) return "-";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.3g", distance);
  return buffer;
}

/// What a missing MPC is told by: it needs MPFR.
const library& mpc_with_mpfr() { return libmpfr() ? libmpc() : libmpfr(); }

}  // namespace

struct peer {
  const char* name;
  const library& (*file)();
  std::optional<peer_answer> (*answer)(const counterpart&, const entry&, const image*);
};

namespace {
constexpr peer the_c_library{"C library", c_library, c_library_answer};
constexpr peer quadmath{"libquadmath", libquadmath, libquadmath_answer};
constexpr peer mpfr{"MPFR", libmpfr, exact_answer};
constexpr peer mpc{"MPC", mpc_with_mpfr, exact_answer};
}  // namespace

comparison::comparison(const entry& e) : entry_(e), counterpart_(counterpart_of(e)) {
  if (counterpart_.has_function()) {
    // For quadruple precision the C library has real functions only, and not everywhere.
    if (type_of(e.result).is != nature::pair || (!counterpart_.is_complex() && c_library()))
      peers_.push_back(&the_c_library);
    peers_.push_back(&quadmath);
  }
  peers_.push_back(counterpart_.is_complex() ? &mpc : &mpfr);
}

std::vector<comparison::answer> comparison::operator()(const evaluation& call) const {
  std::vector<answer> answers;
  for (const peer* one : peers_) {
    answer a{one->name, {}, {}, {}};
    const library& file = one->file();
    if (const auto found = one->answer(counterpart_, entry_, call.operands.data())) {
      a.decimal = found->decimal;
      a.distance = text(distance(entry_.result, call.results[0].value, found->parts));
    } else {
      a.why = file.file() + std::string(file ? " lacks the function" : " is not installed");
    }
    answers.push_back(a);
  }
  return answers;
}

std::string comparison::text_lines(const evaluation& call) const {
  std::string lines;
  for (const answer& a : (*this)(call)) {
    std::string name = a.library;
    name.resize(11, ' ');
    lines +=
        "\n  " + name + "  " + (a.why.empty() ? a.decimal + "  distance " + a.distance : a.why);
  }
  return lines;
}

std::vector<std::string> comparison::csv_cells(const evaluation& call) const {
  std::vector<std::string> cells;
  for (const answer& a : (*this)(call)) cells.insert(cells.end(), {a.decimal, a.distance});
  return cells;
}

std::vector<std::string> comparison::csv_names() const {
  std::vector<std::string> names;
  for (const peer* one : peers_) {
    std::string name = one->name;
    for (char& c : name) c = c == ' ' ? '_' : static_cast<char>(std::tolower(c));
    names.insert(names.end(), {name, name + "_distance"});
  }
  return names;
}

}  // namespace explorer
