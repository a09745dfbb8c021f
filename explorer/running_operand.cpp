#include <cstring>

#include "evaluation.hpp"
#include "numbers.hpp"
#include "operands.hpp"
#include "zorvikrt/zorvikrt.h"

namespace explorer {

running_operand::running_operand(const entry& e, std::size_t place, const std::string& from,
                                 const std::string& to, long steps)
    : code_(0), steps_(steps) {
  std::size_t given = 0;
  for (const char code : e.codes)
    if (is_given(e, code) && given++ == place) code_ = code;
  const type_code& type = type_of(code_);
  if (!type.is_number() || (type.parts != 1 && code_ != 'q'))
    throw unreadable("only an INTEGER or REAL operand can run over a table");
  from_ = read_number(code_, from);
  to_ = read_number(code_, to);
  for (const image* end : {&from_, &to_})
    if (decimal_of(code_, *end).find('n') != std::string::npos)  // inf, nan
      throw unreadable("a table runs between finite values");
}

std::string running_operand::at(long step) const {
  if (step == steps_) return decimal_of(code_, to_);
  image value;
  const auto store = [&](auto number) { std::memcpy(value.bytes.data(), &number, sizeof number); };
  const auto load = [](const image& from, auto number) {
    std::memcpy(&number, from.bytes.data(), sizeof number);
    return number;
  };
  const auto count = static_cast<double>(step), all = static_cast<double>(steps_);
  if (code_ == 'f' || code_ == 'd') {
    // On the FPU: rounded in the same way in every build.
    const auto number = [&](const image& from) -> long double {
      return code_ == 'f' ? static_cast<long double>(load(from, 0.0f)) : load(from, 0.0);
    };
    const long double start = number(from_);
    const long double sum = start + (number(to_) - start) * count / all;
    if (code_ == 'f')
      store(static_cast<float>(sum));
    else
      store(static_cast<double>(sum));
  } else if (code_ == 'q') {
    const zorvikrt_quad start = load(from_, zorvikrt_quad{});
    zorvikrt_quad sum;
    __zorvik_qsub(&sum, load(to_, zorvikrt_quad{}), start);
    __zorvik_qmuld(&sum, sum, count);
    __zorvik_qdivd(&sum, sum, all);
    __zorvik_qadd(&sum, start, sum);
    store(sum);
  } else {
    // q steps + r steps / n, so that nothing overflows
    const int unused = 64 - 8 * size_of(code_);
    const auto extended = [&](const image& from) {
      const std::uint64_t bits = load(from, std::uint64_t{0}) << unused;
      return code_ == 'u' ? bits
                          : static_cast<std::uint64_t>(static_cast<std::int64_t>(bits) >> unused);
    };
    const std::uint64_t start = extended(from_), end = extended(to_);
    const bool down = code_ == 'u'
                          ? end < start
                          : static_cast<std::int64_t>(end) < static_cast<std::int64_t>(start);
    const std::uint64_t distance = down ? start - end : end - start;
    const auto k = static_cast<std::uint64_t>(step), n = static_cast<std::uint64_t>(steps_);
    const std::uint64_t way = distance / n * k + distance % n * k / n;
    store(down ? start - way : start + way);
  }
  return decimal_of(code_, value);
}

}  // namespace explorer
