/** REAL*16 and COMPLEX*32 as arguments of the fmt library; format.hpp has the grammar. */
#ifndef ZORVIKRT_FMT_HPP
#define ZORVIKRT_FMT_HPP

#include <fmt/format.h>

#include <zorvikrt/format.hpp>

namespace zorvikrt::detail {
template <class T>
struct fmt_formatter : field<fmt::format_error> {
  template <class Context>
  auto format(const T& value, Context& context) const {
    const std::string text = this->laid_out(value, [&](int argument) {
      return fmt::visit_format_arg(count_of_argument<fmt::format_error>(), context.arg(argument));
    });
    auto out = context.out();
    for (const char c : text) *out++ = c;
    return out;
  }
};
}  // namespace zorvikrt::detail

template <>
struct fmt::formatter<zorvikrt::real16> : zorvikrt::detail::fmt_formatter<zorvikrt::real16> {};
template <>
struct fmt::formatter<zorvikrt::complex32> : zorvikrt::detail::fmt_formatter<zorvikrt::complex32> {
};

#endif
