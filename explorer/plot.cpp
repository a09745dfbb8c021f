#include "plot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "numbers.hpp"
#include "operands.hpp"
#include "peers.hpp"

namespace explorer {
namespace {

using real = long double;  // the difference of two REAL*8 overflows in their own format

constexpr int width = 720, height = 440, left = 84, right = 30, top = 44, bottom = 56;
constexpr const char* colours[] = {"#1f5fa8", "#c2501c", "#2c8a57", "#7a4ea8"};

/// A range of an axis and the round numbers on it.
struct axis {
  real low, high, step;
  int from, to;  // pixels

  axis(real least, real largest, int first, int last, int marks) : from(first), to(last) {
    if (least == largest) {
      const real room = least == 0 ? 1 : std::fabs(least) / 2;
      least -= room;
      largest += room;
    }
    const real rough = (largest - least) / marks;
    const real power = std::pow(10.0L, std::floor(std::log10(rough)));
    step = power * (rough <= 2 * power ? 2 : rough <= 5 * power ? 5 : 10);
    if (rough <= power) step = power;
    low = least;
    high = largest;
  }
  /// Of logarithms: whole powers of ten are marked.
  void to_powers() { step = std::max(step, 1.0L); }
  /// To the next round numbers.
  void widen() {
    low = step * std::floor(low / step);
    high = step * std::ceil(high / step);
  }
  double at(real value) const {
    return from + static_cast<double>((value - low) / (high - low)) * (to - from);
  }
  std::vector<real> marks() const {
    std::vector<real> found;
    const real slack = step / 1000;
    for (real n = std::ceil((low - slack) / step); n * step <= high + slack; ++n)
      found.push_back(n == 0 ? 0 : n * step);  // never -0
    return found;
  }
};

std::string number(real value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.6Lg", value);
  return text;
}

std::string pixel(double at) {
  char text[40];
  std::snprintf(text, sizeof text, "%.1f", at);
  return text;
}

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '<' ? "&lt;" : c == '&' ? "&amp;" : std::string(1, c);
  return out;
}

/// The range of values in their order; without the ends of a pole, which are far beyond nine tenths
/// of them.
std::pair<real, real> range_of(const std::vector<real>& values) {
  const std::size_t margin = values.size() / 20, last = values.size() - 1;
  const real low = values[margin], high = values[last - margin], reach = 4 * (high - low);
  return {std::max(values[0], low - reach), std::min(values[last], high + reach)};
}

/// What is drawn, as SVG.
class drawing {
 public:
  explicit drawing(const std::string& title) {
    out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\""
         << height << "\" viewBox=\"0 0 " << width << ' ' << height
         << "\" font-family=\"sans-serif\" font-size=\"12\" fill=\"#333\">\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n<text x=\""
         << left << "\" y=\"26\" font-size=\"15\">" << escaped(title) << "</text>\n"
         << "<clipPath id=\"frame\">";
    frame("");
    out_ << "</clipPath>\n";
  }

  void label(double at, double below, const char* anchor, const std::string& text) {
    out_ << "<text x=\"" << pixel(at) << "\" y=\"" << pixel(below) << "\" text-anchor=\"" << anchor
         << "\">" << escaped(text) << "</text>\n";
  }

  void axes(const axis& x, const axis& y, bool powers, const std::string& operand) {
    for (const real mark : x.marks()) {
      rule(mark, x.at(mark), top, x.at(mark), height - bottom);
      label(x.at(mark), height - bottom + 18, "middle", number(mark));
    }
    for (const real mark : y.marks()) {
      rule(mark, left, y.at(mark), width - right, y.at(mark));
      label(left - 8, y.at(mark) + 4, "end", (powers ? "1e" : "") + number(mark));
    }
    frame(" fill=\"none\" stroke=\"#666\"");
    out_ << '\n';
    label((left + width - right) / 2.0, height - 14, "middle", operand);
  }

  /// Points in their order, each of few marked.
  void curve(const axis& x, const axis& y, const std::vector<real>& places,
             const std::vector<real>& values, const char* colour) {
    const bool few = places.size() <= 60;
    const real room = y.high - y.low;
    std::ostringstream path, points;
    bool drawn = false;
    real before = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const real value = values[i];
      if (!std::isfinite(value)) {
        drawn = false;
        continue;
      }
      // Over most of the height no line joins neighbours of many: it is a pole or a jump. Far
      // values stay near the frame.
      const bool joined = drawn && (few || std::fabs(value - before) <= 0.6L * room);
      const std::string at = pixel(x.at(places[i]));
      const std::string high = pixel(y.at(std::clamp(value, y.low - room, y.high + room)));
      path << (joined ? 'L' : 'M') << at << ' ' << high << (joined ? "" : "h0");
      if (few && value >= y.low && value <= y.high)
        points << "<circle cx=\"" << at << "\" cy=\"" << high << "\" r=\"2.5\"/>";
      drawn = true;
      before = value;
    }
    out_ << "<path clip-path=\"url(#frame)\" fill=\"none\" stroke-width=\"1.6\" "
            "stroke-linejoin=\"round\" "
            "stroke-linecap=\"round\" stroke=\""
         << colour << "\" d=\"" << path.str() << "\"/>\n";
    if (few) out_ << "<g fill=\"" << colour << "\">" << points.str() << "</g>\n";
  }

  void name(double at, const char* colour, const std::string& text) {
    out_ << "<path stroke-width=\"3\" stroke=\"" << colour << "\" d=\"M" << pixel(at)
         << " 22h18\"/>";
    label(at + 24, 26, "start", text);
  }

  std::string text() const { return out_.str() + "</svg>\n"; }

 private:
  void rule(real mark, double x1, double y1, double x2, double y2) {
    out_ << "<path stroke=\"" << (mark == 0 ? "#999" : "#e4e4e4") << "\" d=\"M" << pixel(x1) << ' '
         << pixel(y1) << 'L' << pixel(x2) << ' ' << pixel(y2) << "\"/>";
  }
  void frame(const char* how) {
    out_ << "<rect x=\"" << left << "\" y=\"" << top << "\" width=\"" << width - right - left
         << "\" height=\"" << height - bottom - top << '"' << how << "/>";
  }

  std::ostringstream out_;
};

}  // namespace

plot::plot(const entry& e, const std::vector<std::string>& words, std::size_t place)
    : title_(e.name + ('(' + joined(words, "; ") + ')')), place_(place), operand_code_(0) {
  const std::vector<std::string> names = names_of(e);
  for (std::size_t i = 0, given = 0; i < e.codes.size(); ++i)
    if (is_given(e, e.codes[i]) && given++ == place) {
      operand_code_ = e.codes[i];
      operand_ = names[i] + ' ' + type_of(e.codes[i]).name;
    }
  if (!type_of(e.result).is_number()) throw unreadable(signature(e) + " gives no number to draw");
  if (const std::size_t mark = title_.find('_', std::string(e.name).size());
      mark != std::string::npos)
    title_.replace(mark, 1, names[place]);
  title_ += std::string(", ") + type_of(e.result).name;
}

void plot::add(const evaluation& call) {
  const auto value_of = [](char code, const image& value, int part) {
    const precise number = part_of(code, value, part);
    return static_cast<real>(number.head + number.rest);
  };
  places_.push_back(value_of(operand_code_, call.operands[place_], 0));
  std::size_t next = 0;
  for (const evaluation::shown_value& shown : call.results) {
    if (shown.code == 0) continue;
    for (int part = 0; part < (is_complex(shown.code) ? 2 : 1); ++part, ++next) {
      if (next == lines_.size())
        lines_.push_back(
            {is_complex(shown.code) ? part == 0 ? "real part" : "imaginary part" : shown.name, {}});
      lines_[next].values.push_back(value_of(shown.code, shown.value, part));
    }
  }
}

bool plot::write(const std::string& file) const {
  std::vector<real> all;
  for (const line& l : lines_) all.insert(all.end(), l.values.begin(), l.values.end());
  std::erase_if(all, [](real value) { return !std::isfinite(value); });
  if (all.empty()) throw unreadable("no result is finite: there is nothing to draw");
  std::sort(all.begin(), all.end());
  // Positive values of many magnitudes by their logarithm.
  const bool powers = all.front() > 0 && all.back() > 1e5L * all.front();
  const auto shown = [powers](real value) { return powers ? std::log10(value) : value; };
  for (real& value : all) value = shown(value);
  const auto [least, largest] = range_of(all);
  const auto [start, end] = std::minmax(places_.front(), places_.back());
  const axis x(start, end, left, width - right, 8);
  axis y(least, largest, height - bottom, top, 6);
  if (powers) y.to_powers();
  y.widen();

  drawing picture(title_);
  picture.axes(x, y, powers, operand_);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const char* colour = colours[i % std::size(colours)];
    std::vector<real> values = lines_[i].values;
    for (real& value : values) value = shown(value);
    picture.curve(x, y, places_, values, colour);
    if (lines_.size() > 1)
      picture.name(width - right - 130.0 * static_cast<double>(lines_.size() - i), colour,
                   lines_[i].name);
  }
  std::ofstream out(file);
  out << picture.text();
  out.close();
  return !out.fail();
}

}  // namespace explorer
