// Measures the error of every real and REAL*16 function against MPFR, beside those of the C
// library, libquadmath and libqd, and writes the page of it with a picture for each function.
//
//   zorvikrt_accuracy FOLDER [OPERANDS]     FOLDER/accuracy.md and FOLDER/accuracy/STEM.svg
//
// OPERANDS, 100000 unless given, are drawn for each range of the list's bounds. The same operands
// come in every run.

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "peers.hpp"
#include "support/exact.hpp"

using namespace support;

namespace {

/// A place on the picture's axis: even near zero, by exponents beyond 1/1000.
double place(double x) { return std::asinh(x * 1000); }

struct point {
  double x, ours, peer;
};

struct measured {
  double worst = 0, bound = 0;
  std::string at;
  std::map<std::string, double> peers;  // the largest error of each
  std::vector<point> points;            // of functions of one operand; the first peer's beside
};

std::string text(double x, int digits = 3) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.*g", digits, x);
  return buffer;
}

double leading(char code, const operand& image) {
  if (code == 'i') return part_of<std::int32_t>(image, 0);
  if (code == 'k') return static_cast<double>(part_of<std::int64_t>(image, 0));
  return code == 'f' ? part_of<float>(image, 0) : part_of<double>(image, 0);
}

void measure(const bound& b, int count, measured& m) {
  const entry& e = entry_of(b.stem);
  const function exact = exact_of(b.stem);
  const std::vector<accuracy::peer> peers = accuracy::peers_of(b.stem);
  generator random(17);
  std::array<operand, 2> call;
  value operands[2], result, got;
  m.bound = std::max(m.bound, b.units);
  for (int i = 0; i < count; ++i) {
    for (std::size_t at = 0; at < e.codes.size(); ++at) {
      call[at] = drawn(e.codes[at], b.ranges[at], random);
      read(operands[at], e.codes[at], call[at]);
    }
    mpfr_set_zero(result.im, 1);
    exact(result, operands[0], operands[1]);
    const auto error_of = [&](const operand& image) {
      read(got, e.result, image);
      return error(e.result, got, result, b.least);
    };
    point p{leading(e.codes[0], call[0]), error_of(e({call.data(), e.codes.size()}).result), -1};
    for (const accuracy::peer& peer : peers) {
      const double distance = error_of(peer.call(call.data()));
      double& worst = m.peers[peer.name];
      worst = std::max(worst, distance);
      if (p.peer < 0) p.peer = distance;
    }
    if (p.ours >= m.worst) {
      m.worst = p.ours;
      m.at = text(p.x, 6);
      if (e.codes.size() == 2) m.at += ", " + text(leading(e.codes[1], call[1]), 6);
    }
    if (e.codes.size() == 1) m.points.push_back(p);
  }
}

/// The largest errors over some hundred stretches of the range: ours as an area, the peer's as a
/// line.
void draw(const std::string& file, const char* stem, const measured& m, const std::string& peer) {
  constexpr int columns = 140, width = 4, height = 120, left = 46, top = 22;
  double low = INFINITY, high = -INFINITY;
  for (const point& p : m.points)
    low = std::min(low, place(p.x)), high = std::max(high, place(p.x));
  std::vector<double> ours(columns, 0), theirs(columns, 0);
  for (const point& p : m.points) {
    const auto column = static_cast<std::size_t>(
        std::min((place(p.x) - low) / (high - low) * columns, columns - 1.0));
    ours[column] = std::max(ours[column], p.ours);
    theirs[column] = std::max(theirs[column], p.peer);
  }
  // Where the reduction loses digits the scale is a logarithm; a peer beyond it is cut at its top.
  const bool wide = m.bound > 20;
  const auto scaled = [wide](double error) { return wide ? std::log1p(error) : error; };
  const double full = 1.1 * scaled(std::max(m.bound, 0.5));
  const auto height_of = [&](double error) {
    return top + height * (1 - std::min(1.0, scaled(error) / full));
  };
  std::ofstream out(file);
  out.precision(4);
  const int right = left + columns * width, bottom = top + height;
  out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << right + 14 << ' '
      << bottom + 24 << "\" font-family=\"sans-serif\" font-size=\"11\">\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n<text x=\"" << left
      << "\" y=\"14\">" << stem << ": largest error, in units of the bound's";
  if (!peer.empty()) out << "; line: " << peer;
  out << "</text>\n<path fill=\"#7aa6d6\" d=\"M" << left << ' ' << bottom;
  for (int i = 0; i < columns; ++i)
    out << 'V' << height_of(ours[static_cast<std::size_t>(i)]) << 'h' << width;
  out << 'V' << bottom << "z\"/>\n";
  if (!peer.empty()) {
    out << "<path fill=\"none\" stroke=\"#b5482a\" d=\"M" << left << ' ' << height_of(theirs[0]);
    for (int i = 0; i < columns; ++i)
      out << 'V' << height_of(theirs[static_cast<std::size_t>(i)]) << 'h' << width;
    out << "\"/>\n";
  }
  for (const double mark : {0.0, wide ? 1.0 : 0.0, m.bound})
    out << "<text x=\"4\" y=\"" << height_of(mark) + 4 << "\">" << text(mark)
        << "</text>\n<path stroke=\"#888\" stroke-dasharray=\"3\" d=\"M" << left << ' '
        << height_of(mark) << 'H' << right << "\"/>\n";
  for (const double edge : {low, high})
    out << "<text x=\"" << (edge == low ? left : right) << "\" y=\"" << bottom + 16
        << "\" text-anchor=\"" << (edge == low ? "start" : "end") << "\">"
        << text(std::sinh(edge) / 1000) << "</text>\n";
  out << "</svg>\n";
}

[[noreturn]] void fail(const std::string& why) {
  std::fprintf(stderr, "zorvikrt_accuracy: %s\n", why.c_str());
  std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
  char* end = nullptr;
  const long count = argc == 3 ? std::strtol(argv[2], &end, 10) : 100000;
  if (argc < 2 || argc > 3 || (end != nullptr && *end != '\0') || count < 1 || count > 10000000)
    fail("usage: zorvikrt_accuracy FOLDER [OPERANDS from 1 to 10000000]");
  const std::string folder = argv[1];
  mkdir((folder + "/accuracy").c_str(), 0777);
  std::ofstream page(folder + "/accuracy.md");
  if (!page) fail("cannot write " + folder + "/accuracy.md");

  std::vector<std::pair<const char*, std::vector<bound>>> functions;
  for (const bound& b : bounds) {
    if (std::strchr("fdq", entry_of(b.stem).result) == nullptr) continue;
    if (std::strpbrk(std::string(entry_of(b.stem).codes).c_str(), "czx") != nullptr) continue;
    if (functions.empty() || std::strcmp(functions.back().first, b.stem) != 0)
      functions.push_back({b.stem, {}});
    functions.back().second.push_back(b);
  }
  page << "# Accuracy\n\nMade by `cmake --build --preset linux-x86_64 --target accuracy_page`: the "
          "largest errors seen against MPFR\nover "
       << count
       << " operands for each range of the bounds in [entries.md](entries.md), in units of the "
          "last place, of\nREAL\\*16 in 2\\*\\*-106 of the result. The operands are the same in "
          "every run. A peer computes on the same operands: the C\nlibrary, libquadmath rounded to "
          "two doubles, and libqd. A tangent next to a pole or a sine next to a\nmultiple of pi "
          "loses digits by the reduction: there the bounds count in units of a stated size.\n";
  const struct {
    char code;
    const char* title;
    std::vector<std::string> peers;
  } kinds[] = {{'d', "REAL\\*8", {"libm"}},
               {'f', "REAL\\*4", {"libm"}},
               {'q', "REAL\\*16", {"libquadmath", "libqd"}}};
  std::size_t done = 0;
  for (const auto& kind : kinds) {
    page << "\n## " << kind.title << "\n\n| function | largest error | at | bound |";
    for (const std::string& peer : kind.peers) page << ' ' << peer << " |";
    page << " picture |\n|---|---|---|---|";
    for (std::size_t i = 0; i < kind.peers.size(); ++i) page << "---|";
    page << "---|\n";
    for (const auto& [stem, ranges] : functions) {
      if (entry_of(stem).result != kind.code) continue;
      std::fprintf(stderr, "\r%3zu of %zu  %-8s", ++done, functions.size(), stem);
      measured m;
      for (const bound& b : ranges) measure(b, static_cast<int>(count), m);
      page << "| `" << stem << "` | " << text(m.worst) << " | " << m.at << " | " << text(m.bound)
           << " |";
      for (const std::string& peer : kind.peers)
        page << ' ' << (m.peers.count(peer) != 0 ? text(m.peers[peer]) : "") << " |";
      if (m.points.empty()) {
        page << "  |\n";
        continue;
      }
      const auto peers = accuracy::peers_of(stem);
      draw(folder + "/accuracy/" + stem + ".svg", stem, m, peers.empty() ? "" : peers[0].name);
      page << " [svg](accuracy/" << stem << ".svg) |\n";
    }
  }
  std::fprintf(stderr, "\n");
  page.close();
  if (!page) fail("cannot write " + folder + "/accuracy.md");
}
