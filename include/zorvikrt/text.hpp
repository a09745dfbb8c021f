/** REAL*16 and COMPLEX*32 in decimal: std::to_chars and its kin, streams, strings and literals;
 * with the library zorvikrt_text. text.h tells what is written and read.
 */
#ifndef ZORVIKRT_TEXT_HPP
#define ZORVIKRT_TEXT_HPP

#include <zorvikrt/text.h>

#include <charconv>
#include <istream>
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

/// fixed, scientific, uppercase, showpos, precision, width, fill and adjustment as for a double.
template <class T>
inline std::ostream& put(std::ostream& out, const T& value) {
  const std::ios_base::fmtflags flags = out.flags();
  const std::ios_base::fmtflags layout = flags & std::ios_base::floatfield;
  const zorvikrt_style style = layout == std::ios_base::fixed        ? zorvikrt_fixed
                               : layout == std::ios_base::scientific ? zorvikrt_scientific
                               : layout == std::ios_base::fmtflags() ? zorvikrt_general
                                                                     : zorvikrt_shortest;
  std::string text = styled(value, style, static_cast<int>(out.precision()));
  if ((flags & std::ios_base::showpos) != 0) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      const bool starts =
          at == 0 || text[at - 1] == '(' || text[at - 1] == ',' || text[at - 1] == '[';
      if (starts && text[at] != '-' && text[at] != '(' && text[at] != '[') text.insert(at, 1, '+');
    }
  }
  if ((flags & std::ios_base::uppercase) != 0)
    for (char& c : text)
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  const std::size_t width = out.width() > 0 ? static_cast<std::size_t>(out.width()) : 0;
  if (text.size() < width) {
    const std::ios_base::fmtflags adjust = flags & std::ios_base::adjustfield;
    std::size_t at = 0;
    if (adjust == std::ios_base::left) at = text.size();
    if (adjust == std::ios_base::internal && (text[0] == '-' || text[0] == '+')) at = 1;
    text.insert(at, width - text.size(), out.fill());
  }
  out.width(0);
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

/// Whether a number, or a pair of them, can go on with this character.
inline bool goes_on(const std::string& text, char c, int depth) {
  const bool of_number = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                         (c >= 'A' && c <= 'Z') || c == '+' || c == '-' || c == '.';
  const bool after_nan = !text.empty() && (text.back() == 'n' || text.back() == 'N');
  if (c == '(') return text.empty() || after_nan;
  if (c == '[') return text.empty() || depth == 1;
  if (c == ')' || c == ']') return depth > 0;
  return of_number || (depth > 0 && (c == ',' || c == ' '));
}

/// Takes what looks like a number, as operator>> for a double does, and reads it.
template <class T>
inline std::istream& get(std::istream& in, T& value) {
  using traits = std::istream::traits_type;
  const std::istream::sentry ready(in);
  if (!ready) return in;
  std::string text;
  std::ios_base::iostate state = std::ios_base::goodbit;
  std::streambuf& source = *in.rdbuf();
  for (int depth = 0;;) {
    const traits::int_type next = source.sgetc();
    if (traits::eq_int_type(next, traits::eof())) {
      state |= std::ios_base::eofbit;
      break;
    }
    const char c = traits::to_char_type(next);
    if (!goes_on(text, c, depth)) break;
    depth += (c == '(' || c == '[') - (c == ')' || c == ']');
    text += c;
    source.sbumpc();
    if (depth == 0 && (text[0] == '(' || text[0] == '[')) break;
  }
  T result{};
  const std::from_chars_result taken = from_chars(text.data(), text.data() + text.size(), result);
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size())
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
