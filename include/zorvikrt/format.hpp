/** Replacement fields of REAL*16 and COMPLEX*32, for fmt and, where the library has <format>, for
 *  std::format.
 *
 *      std::format("{:*^+12.4f} {}", x, z);      with <zorvikrt/format.hpp>
 *      fmt::print("{:*^+12.4f} {}", x, z);       with <zorvikrt/fmt.hpp>
 *
 *  [[fill] align] [sign] [0] [width] [. precision] [type], with {} or {n} for width and precision;
 *  types e, f, g and their capitals as for a double. Without type and precision it is the shortest
 *  text that reads back as the same bits, with a precision alone general.
 */
#ifndef ZORVIKRT_FORMAT_HPP
#define ZORVIKRT_FORMAT_HPP

#include <string>
#include <type_traits>
#include <zorvikrt/text.hpp>

#if __has_include(<format>)
#include <format>
#endif

namespace zorvikrt {
namespace detail {

/// A width or precision: a number, or the argument that has it.
struct count_field {
  int value = -1, argument = -1;
};

/// What stands behind the colon. Context and Error are those of the formatting library.
template <class Error>
class field {
 public:
  template <class Context>
  constexpr auto parse(Context& context) {
    auto at = context.begin();
    const auto end = context.end();
    // The fill may take more than one code unit in UTF-8.
    for (int units = 1; units <= 4 && end - at > units; ++units) {
      if (!is_align(at[units]) || *at == '{' || *at == '}') continue;
      for (int i = 0; i < units; ++i) fill_[i] = at[i];
      fill_units_ = units;
      align_ = at[units];
      at += units + 1;
      break;
    }
    if (align_ == 0 && at != end && is_align(*at)) align_ = *at++;
    if (at != end && (*at == '+' || *at == '-' || *at == ' ')) sign_ = *at++;
    if (at != end && *at == '0') {
      zeros_ = true;
      ++at;
    }
    parse_count(context, at, end, width_);
    if (at != end && *at == '.') {
      ++at;
      parse_count(context, at, end, precision_);
      if (precision_.value < 0 && precision_.argument < 0)
        throw Error("no precision behind the point");
    }
    if (at != end && is_type(*at)) type_ = *at++;
    if (at != end && *at != '}') throw Error("not a format of REAL*16");
    return at;
  }

  /// The text; `count_of` gives the value of an argument.
  template <class T, class CountOf>
  std::string laid_out(const T& value, CountOf count_of) const {
    const auto given = [&](const count_field& count) {
      return count.argument < 0 ? count.value : count_of(count.argument);
    };
    const int precision = given(precision_), width = given(width_);
    if (precision < 0 && precision_.argument >= 0) throw Error("a negative precision");
    if (width < 0 && width_.argument >= 0) throw Error("a negative width");
    const char type = type_ >= 'A' && type_ <= 'Z' ? static_cast<char>(type_ - 'A' + 'a') : type_;
    const zorvikrt_style style = type == 'f'                     ? zorvikrt_fixed
                                 : type == 'e'                   ? zorvikrt_scientific
                                 : type == 'g' || precision >= 0 ? zorvikrt_general
                                                                 : zorvikrt_shortest;
    std::string text = styled(value, style, precision);
    if (sign_ == '+' || sign_ == ' ') text = with_plus(text);
    if (sign_ == ' ')
      for (char& c : text)
        if (c == '+' && (&c == &text[0] || (&c)[-1] != 'e')) c = ' ';
    if (type != type_) text = in_upper_case(text);
    return width > 0 ? padded(text, static_cast<std::size_t>(width), isfinite_text(text)) : text;
  }

 private:
  static constexpr bool is_align(char c) { return c == '<' || c == '>' || c == '^'; }
  static constexpr bool is_type(char c) {
    return c == 'e' || c == 'f' || c == 'g' || c == 'E' || c == 'F' || c == 'G';
  }
  static bool isfinite_text(const std::string& text) {
    return text.find_first_of("0123456789") != std::string::npos && text[0] != '(' &&
           text[0] != '[';
  }

  template <class Context, class Iterator>
  constexpr void parse_count(Context& context, Iterator& at, Iterator end, count_field& count) {
    const auto number = [&] {
      int value = -1;
      for (; at != end && *at >= '0' && *at <= '9'; ++at) {
        value = (value < 0 ? 0 : value) * 10 + (*at - '0');
        if (value > 100000000) throw Error("a number too large in a format");
      }
      return value;
    };
    if (at == end || *at != '{') {
      count.value = number();
      return;
    }
    ++at;
    count.argument = number();
    if (count.argument < 0)
      count.argument = static_cast<int>(context.next_arg_id());
    else
      check_argument(context, count.argument);
    if (at == end || *at != '}') throw Error("a { that is not closed");
    ++at;
  }
  template <class Context>
  static constexpr void check_argument(Context& context, int argument) {
    context.check_arg_id(static_cast<decltype(context.next_arg_id())>(argument));
  }

  std::string padded(std::string text, std::size_t width, bool finite) const {
    // Every character is one unit of ASCII.
    if (text.size() >= width) return text;
    const std::size_t missing = width - text.size();
    if (zeros_ && align_ == 0 && finite) {
      const bool has_sign = text[0] == '-' || text[0] == '+' || text[0] == ' ';
      return text.insert(has_sign ? 1 : 0, missing, '0');
    }
    const std::size_t left = align_ == '<' ? 0 : align_ == '^' ? missing / 2 : missing;
    std::string out;
    for (std::size_t i = 0; i < left; ++i) out.append(fill_, static_cast<std::size_t>(fill_units_));
    out += text;
    for (std::size_t i = left; i < missing; ++i)
      out.append(fill_, static_cast<std::size_t>(fill_units_));
    return out;
  }

  char fill_[4] = {' '};
  int fill_units_ = 1;
  char align_ = 0, sign_ = 0, type_ = 0;
  bool zeros_ = false;
  count_field width_, precision_;
};

/// The value of an argument that is an integer.
template <class Error>
struct count_of_argument {
  template <class T>
  int operator()(const T& value) const {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char>) {
      if (value < 0) return -1;
      if (value > 100000000) throw Error("a number too large in a format");
      return static_cast<int>(value);
    } else {
      throw Error("a width or precision that is no integer");
    }
  }
};

}  // namespace detail
}  // namespace zorvikrt

#ifdef __cpp_lib_format
namespace zorvikrt::detail {
template <class T>
struct std_formatter : field<std::format_error> {
  template <class Context>
  auto format(const T& value, Context& context) const {
    const std::string text = this->laid_out(value, [&](int argument) {
      return std::visit_format_arg(count_of_argument<std::format_error>(),
                                   context.arg(static_cast<std::size_t>(argument)));
    });
    auto out = context.out();
    for (const char c : text) *out++ = c;
    return out;
  }
};
}  // namespace zorvikrt::detail
template <>
struct std::formatter<zorvikrt::real16> : zorvikrt::detail::std_formatter<zorvikrt::real16> {};
template <>
struct std::formatter<zorvikrt::complex32> : zorvikrt::detail::std_formatter<zorvikrt::complex32> {
};
#endif

#endif
