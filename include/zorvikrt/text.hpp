/** REAL*16 and COMPLEX*32 in decimal: std::to_chars and its kin, streams, strings and literals;
 * with the library zorvikrt_text. text.h tells what is written and read.
 */
#ifndef ZORVIKRT_TEXT_HPP
#define ZORVIKRT_TEXT_HPP

#include <zorvikrt/text.h>

#include <charconv>
#include <climits>
#include <cstring>
#include <istream>
#include <locale>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <zorvikrt/arithmetic.hpp>

namespace zorvikrt {

namespace detail {

inline zorvikrt_style style_of(std::chars_format format) {
  if (format == std::chars_format::fixed) return zorvikrt_fixed;
  if (format == std::chars_format::scientific) return zorvikrt_scientific;
  return zorvikrt_general;
}

inline std::size_t write(char* first, std::size_t size, const real16& x, zorvikrt_style style,
                         int precision) {
  return zorvikrt_real16_to_chars(first, size, &x, style, precision);
}
inline std::size_t write(char* first, std::size_t size, const complex32& z, zorvikrt_style style,
                         int precision) {
  const zorvikrt_cquad value = z;
  return zorvikrt_complex32_to_chars(first, size, &value, style, precision);
}
inline std::size_t read(const char* first, std::size_t size, real16& x, zorvikrt_reading* reading) {
  return zorvikrt_real16_from_chars(first, size, &x, reading);
}
inline std::size_t read(const char* first, std::size_t size, complex32& z,
                        zorvikrt_reading* reading) {
  zorvikrt_cquad value = z;
  const std::size_t count = zorvikrt_complex32_from_chars(first, size, &value, reading);
  z = value;
  return count;
}

template <class T>
inline std::to_chars_result to_chars(char* first, char* last, const T& value, zorvikrt_style style,
                                     int precision) {
  const std::size_t size = static_cast<std::size_t>(last - first);
  const std::size_t count = write(first, size, value, style, precision);
  if (count > size) return {last, std::errc::value_too_large};
  return {first + count, std::errc()};
}

template <class T>
inline std::from_chars_result from_chars(const char* first, const char* last, T& value) {
  T result{};
  zorvikrt_reading reading;
  const std::size_t count = read(first, static_cast<std::size_t>(last - first), result, &reading);
  if (reading == zorvikrt_not_a_number_text) return {first, std::errc::invalid_argument};
  if (reading == zorvikrt_out_of_range) return {first + count, std::errc::result_out_of_range};
  value = result;
  return {first + count, std::errc()};
}

template <class T>
inline std::string styled(const T& value, zorvikrt_style style, int precision) {
  std::string text(64, '\0');
  std::size_t count = write(text.data(), text.size(), value, style, precision);
  if (count > text.size()) {
    text.resize(count);
    count = write(text.data(), text.size(), value, style, precision);
  }
  text.resize(count);
  return text;
}

/// A sign in front of every number that has none.
inline std::string with_plus(std::string text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool starts =
        at == 0 || text[at - 1] == '(' || text[at - 1] == ',' || text[at - 1] == '[';
    const bool after_nan = at > 3 && text.compare(at - 4, 4, "nan(") == 0;
    if (starts && !after_nan && text[at] != '-' && text[at] != '(' && text[at] != '[')
      text.insert(at, 1, '+');
  }
  return text;
}
inline std::string in_upper_case(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

/// The digits in a group, from the right; 0 for all that are left.
inline std::size_t size_of_group(const std::string& grouping, std::size_t place) {
  const char size = grouping[place < grouping.size() ? place : grouping.size() - 1];
  return size <= 0 || size == CHAR_MAX ? 0 : static_cast<std::size_t>(size);
}

/// Decimal point and groups of the stream's locale. Digits of an exponent and of a fraction have no
/// groups.
inline std::string localized(const std::string& text, const std::locale& locale) {
  const auto& punctuation = std::use_facet<std::numpunct<char>>(locale);
  const std::string grouping = punctuation.grouping();
  const char point = punctuation.decimal_point();
  if (grouping.empty() && point == '.') return text;
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  std::string out;
  bool whole = true;  // no point, e or nan( since the last number has begun
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && is_digit(text[end])) ++end;
    if (end == at) {
      const char c = text[at++];
      if (c == '.' || (c >= 'a' && c <= 'z')) whole = false;
      const bool of_exponent = at > 1 && text[at - 2] == 'e';
      if (c == ',' || ((c == '+' || c == '-') && !of_exponent)) whole = true;
      out += c == '.' ? point : c;
      continue;
    }
    // From the right, each size once and the last one again and again.
    std::string digits;
    std::size_t place = 0, left = whole && !grouping.empty() ? size_of_group(grouping, 0) : 0;
    for (std::size_t i = end; i > at; --i) {
      digits += text[i - 1];
      if (left != 0 && --left == 0 && i - 1 > at) {
        digits += punctuation.thousands_sep();
        left = size_of_group(grouping, ++place);
      }
    }
    out.append(digits.rbegin(), digits.rend());
    at = end;
  }
  return out;
}

/// fixed, scientific, uppercase, showpos, precision, width, fill, adjustment and locale as for a
/// double.
template <class T>
inline std::ostream& put(std::ostream& out, const T& value) {
  const std::ostream::sentry ready(out);
  if (!ready) return out;
  const std::ios_base::fmtflags flags = out.flags();
  const std::ios_base::fmtflags layout = flags & std::ios_base::floatfield;
  const zorvikrt_style style = layout == std::ios_base::fixed        ? zorvikrt_fixed
                               : layout == std::ios_base::scientific ? zorvikrt_scientific
                               : layout == std::ios_base::fmtflags() ? zorvikrt_general
                                                                     : zorvikrt_shortest;
  const std::streamsize precision = out.precision();
  std::string text =
      styled(value, style, precision > INT_MAX ? INT_MAX : static_cast<int>(precision));
  if ((flags & std::ios_base::showpos) != 0) text = with_plus(text);
  text = localized(text, out.getloc());
  if ((flags & std::ios_base::uppercase) != 0) text = in_upper_case(text);
  const std::size_t width = out.width() > 0 ? static_cast<std::size_t>(out.width()) : 0;
  if (text.size() < width) {
    const std::ios_base::fmtflags adjust = flags & std::ios_base::adjustfield;
    std::size_t at = 0;
    if (adjust == std::ios_base::left) at = text.size();
    if (adjust == std::ios_base::internal && (text[0] == '-' || text[0] == '+')) at = 1;
    text.insert(at, width - text.size(), out.fill());
  }
  out.width(0);
  if (out.rdbuf()->sputn(text.data(), static_cast<std::streamsize>(text.size())) !=
      static_cast<std::streamsize>(text.size()))
    out.setstate(std::ios_base::badbit);
  return out;
}

/// Takes characters as long as a number, or a pair of them, can go on with them.
class scanner {
 public:
  explicit scanner(std::istream& in)
      : source_(*in.rdbuf()),
        locale_(in.getloc()),
        punctuation_(std::use_facet<std::numpunct<char>>(locale_)),
        grouped_(!punctuation_.grouping().empty()) {}

  void take_real() {
    if (!take('[')) return take_number();
    take_number();
    if (at("+-")) take_number();
    take(']');
  }
  void take_complex() {
    if (!take('(')) return take_real();
    take_blanks();
    take_real();
    take_blanks();
    if (take(',')) {
      take_blanks();
      take_real();
      take_blanks();
    }
    take(')');
  }

  const std::string& text() const { return text_; }
  bool at_end() const { return at_end_; }
  bool groups_fit() const { return groups_fit_; }

 private:
  /// The character here in lower case, 0 at the end.
  char here() {
    const std::streambuf::int_type next = source_.sgetc();
    at_end_ = std::streambuf::traits_type::eq_int_type(next, std::streambuf::traits_type::eof());
    if (at_end_) return 0;
    const char c = std::streambuf::traits_type::to_char_type(next);
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  bool at(const char* set) {
    const char c = here();
    return c != 0 && std::strchr(set, c) != nullptr;
  }
  bool take(char wanted) {
    if (here() != wanted) return false;
    text_ += wanted;
    source_.sbumpc();
    return true;
  }
  bool take_one_of(const char* set) { return at(set) && take(here()); }
  void take_blanks() {
    while (take_one_of(" \t")) {
    }
  }
  void take_digits() {
    while (take_one_of("0123456789")) {
    }
  }
  void take_word(const char* word) {
    while (*word != 0 && take(*word)) ++word;
  }
  /// Digits with separators, whose groups must be those of the locale.
  void take_whole_part() {
    std::string sizes;
    for (int size = 0;;) {
      if (take_one_of("0123456789")) {
        ++size;
      } else if (grouped_ && size > 0 && size < CHAR_MAX &&
                 here() == punctuation_.thousands_sep()) {
        source_.sbumpc();
        sizes += static_cast<char>(size);
        size = 0;
      } else {
        if (!sizes.empty()) check_groups(sizes + static_cast<char>(size));
        return;
      }
    }
  }
  void check_groups(const std::string& sizes) {
    const std::string grouping = punctuation_.grouping();
    for (std::size_t place = 0; place < sizes.size(); ++place) {
      const auto found = static_cast<std::size_t>(sizes[sizes.size() - 1 - place]);
      const std::size_t wanted = size_of_group(grouping, place);
      const bool leftmost = place + 1 == sizes.size();
      if (leftmost ? wanted != 0 && found > wanted : found != wanted) groups_fit_ = false;
    }
  }
  void take_number() {
    take_one_of("+-");
    if (at("i")) return take_word("infinity");
    if (at("n")) {
      take_word("nan");
      if (take('('))
        while (take_one_of("0123456789abcdefx")) {
        }
      take_if_opened();
      return;
    }
    take_whole_part();
    if (here() == punctuation_.decimal_point()) {
      text_ += '.';
      source_.sbumpc();
      take_digits();
    }
    if (take_one_of("edq")) {
      take_one_of("+-");
      take_digits();
    }
  }
  void take_if_opened() {
    const std::size_t open = text_.rfind("nan(");
    if (open != std::string::npos && text_.find(')', open) == std::string::npos) take(')');
  }

  std::streambuf& source_;
  std::locale locale_;
  const std::numpunct<char>& punctuation_;
  bool grouped_, at_end_ = false, groups_fit_ = true;
  std::string text_;
};
inline void take(scanner& from, const real16&) { from.take_real(); }
inline void take(scanner& from, const complex32&) { from.take_complex(); }

/// Takes what can be a number, as operator>> for a double does, and reads it: what does not belong
/// to it stays in the stream.
template <class T>
inline std::istream& get(std::istream& in, T& value) {
  const std::istream::sentry ready(in);
  if (!ready) return in;
  scanner source(in);
  T result{};
  take(source, result);
  const std::string& text = source.text();
  const std::from_chars_result taken = from_chars(text.data(), text.data() + text.size(), result);
  std::ios_base::iostate state = source.at_end() ? std::ios_base::eofbit : std::ios_base::goodbit;
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size() || !source.groups_fit())
    state |= std::ios_base::failbit;
  else
    value = result;
  in.setstate(state);
  return in;
}

}  // namespace detail

/** The shortest text that reads back as the same two doubles. */
inline std::to_chars_result to_chars(char* first, char* last, const real16& x) {
  return detail::to_chars(first, last, x, zorvikrt_shortest, 0);
}
/** fixed, scientific or general with a precision. */
inline std::to_chars_result to_chars(char* first, char* last, const real16& x,
                                     std::chars_format format, int precision) {
  return detail::to_chars(first, last, x, detail::style_of(format), precision);
}
/** Reads the number at the start of the text; the value is unchanged unless there is one in range.
 */
inline std::from_chars_result from_chars(const char* first, const char* last, real16& x) {
  return detail::from_chars(first, last, x);
}
/** The shortest text that reads back as the same two doubles. */
inline std::string to_string(const real16& x) { return detail::styled(x, zorvikrt_shortest, 0); }

/** The same for COMPLEX*32, as (re,im). */
inline std::to_chars_result to_chars(char* first, char* last, const complex32& z) {
  return detail::to_chars(first, last, z, zorvikrt_shortest, 0);
}
inline std::to_chars_result to_chars(char* first, char* last, const complex32& z,
                                     std::chars_format format, int precision) {
  return detail::to_chars(first, last, z, detail::style_of(format), precision);
}
inline std::from_chars_result from_chars(const char* first, const char* last, complex32& z) {
  return detail::from_chars(first, last, z);
}
inline std::string to_string(const complex32& z) { return detail::styled(z, zorvikrt_shortest, 0); }

/** As for a double, with the stream's precision; std::hexfloat gives the shortest form. */
inline std::ostream& operator<<(std::ostream& out, const real16& x) { return detail::put(out, x); }
inline std::ostream& operator<<(std::ostream& out, const complex32& z) {
  return detail::put(out, z);
}
inline std::istream& operator>>(std::istream& in, real16& x) { return detail::get(in, x); }
inline std::istream& operator>>(std::istream& in, complex32& z) { return detail::get(in, z); }

inline real16::real16(std::string_view text) : zorvikrt_quad{0, 0} {
  const std::from_chars_result taken = from_chars(text.data(), text.data() + text.size(), *this);
  if (taken.ec == std::errc::invalid_argument || taken.ptr != text.data() + text.size())
    throw std::invalid_argument("zorvikrt: not a REAL*16: " + std::string(text));
  if (taken.ec != std::errc()) zorvikrt_real16_from_chars(text.data(), text.size(), this, nullptr);
}

inline namespace literals {
/** The REAL*16 nearest to the decimal: 0.1_r16. */
inline real16 operator""_r16(const char* text) { return real16(std::string_view(text)); }
}  // namespace literals

}  // namespace zorvikrt

#endif
