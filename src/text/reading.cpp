// The grammar of REAL*16 and COMPLEX*32 in text.

#include "zorvikrt/text.h"

#include <algorithm>
#include <cstring>

#include "conversion.hpp"

namespace zrt::text {
namespace {

/// A place in a text. Taking what is not there leaves it where it was.
class reader {
 public:
  reader(const char* first, std::size_t size) : next_(first), end_(first + size) {}

  const char* place() const { return next_; }
  void back_to(const char* place) { next_ = place; }

  /// The character here in lower case, 0 at the end.
  char peek() const {
    if (next_ == end_) return 0;
    return *next_ >= 'A' && *next_ <= 'Z' ? static_cast<char>(*next_ - 'A' + 'a') : *next_;
  }
  bool at_digit() const { return next_ != end_ && *next_ >= '0' && *next_ <= '9'; }
  int take_digit() { return *next_++ - '0'; }
  bool take(char c) {
    if (next_ == end_ || peek() != c) return false;
    ++next_;
    return true;
  }
  bool take(const char* word) {
    const char* const start = next_;
    for (; *word != 0; ++word) {
      if (!take(*word)) {
        next_ = start;
        return false;
      }
    }
    return true;
  }
  /// True for a minus sign.
  bool take_sign() {
    if (take('-')) return true;
    take('+');
    return false;
  }
  void skip_blanks() {
    while (take(' ') || take('\t')) {
    }
  }

 private:
  const char* next_;
  const char* end_;
};

/// A number as it stands in the text.
struct numeral {
  enum { finite, infinite, nan } kind = finite;
  bool negative = false;
  natural digits;
  int exponent = 0;
  std::uint64_t nan_fraction = quiet_nan_bits & fraction_mask;
};

/// [e sign digits]; exponents of any length count as 100000 at most.
int read_exponent(reader& in) {
  const char* const start = in.place();
  if (!in.take('e') && !in.take('d') && !in.take('q')) return 0;
  const bool negative = in.take_sign();
  if (!in.at_digit()) {
    in.back_to(start);
    return 0;
  }
  int exponent = 0;
  while (in.at_digit()) {
    exponent = exponent * 10 + in.take_digit();
    if (exponent > 100000) exponent = 100000;
  }
  return negative ? -exponent : exponent;
}

bool read_digits(reader& in, numeral& number) {
  // Any value half way between two neighbours has at most 1384 digits: of what goes on behind more
  // digits than this, only whether it is zero matters.
  constexpr int digits_that_matter = 1400;
  bool any = false, point = false, sticky = false;
  int count = 0;
  long long places = 0;  // of the digits taken, against the point
  std::uint32_t chunk = 0, chunk_scale = 1;
  for (;;) {
    if (!point && in.take('.')) {
      point = true;
      continue;
    }
    if (!in.at_digit()) break;
    any = true;
    const int digit = in.take_digit();
    if (count == 0 && digit == 0) {
      places -= point;
    } else if (count == digits_that_matter) {
      sticky = sticky || digit != 0;
      places += !point;
    } else {
      ++count;
      places -= point;
      chunk = chunk * 10 + static_cast<std::uint32_t>(digit);
      chunk_scale *= 10;
      if (chunk_scale == 1000000000) {
        number.digits.multiply(chunk_scale, chunk);
        chunk = 0;
        chunk_scale = 1;
      }
    }
  }
  if (!any) return false;
  number.digits.multiply(chunk_scale, chunk);
  if (sticky) {
    number.digits.multiply(10, 1);
    --places;
  }
  places += read_exponent(in);
  // Far beyond the range in either direction.
  const long long leading = places + count;
  number.exponent = leading > 400 ? 100000 : leading < -400 ? -100000 : static_cast<int>(places);
  return true;
}

/// (0x fraction) behind nan; anything else is left where it stands.
void read_nan_fraction(reader& in, numeral& number) {
  const char* const start = in.place();
  std::uint64_t fraction = 0;
  int digits = 0;
  if (in.take("(0x")) {
    for (;; ++digits) {
      const char c = in.peek();
      const bool letter = c >= 'a' && c <= 'f';
      if (!letter && !in.at_digit()) break;
      in.take(c);
      fraction = fraction << 4 | static_cast<std::uint64_t>(letter ? c - 'a' + 10 : c - '0');
    }
    if (digits > 0 && digits <= 13 && fraction != 0 && in.take(')')) {
      number.nan_fraction = fraction;
      return;
    }
  }
  in.back_to(start);
}

bool read_numeral(reader& in, numeral& number) {
  const char* const start = in.place();
  number.negative = in.take_sign();
  if (in.take("inf")) {
    in.take("inity");
    number.kind = numeral::infinite;
    return true;
  }
  if (in.take("nan")) {
    read_nan_fraction(in, number);
    number.kind = numeral::nan;
    return true;
  }
  if (read_digits(in, number)) return true;
  in.back_to(start);
  return false;
}

pair_bits value_of(const numeral& number, zorvikrt_reading& reading) {
  const std::uint64_t sign = number.negative ? sign_bit : 0;
  if (number.kind == numeral::infinite) return {sign | infinity_bits, 0};
  if (number.kind == numeral::nan) return {sign | infinity_bits | number.nan_fraction, 0};
  if (number.digits.is_zero()) return {sign, 0};
  pair_bits value;
  if (number.exponent == 100000)
    value = {sign | infinity_bits, 0};
  else if (number.exponent == -100000)
    value = {sign, 0};
  else
    value = nearest_pair(number.digits, number.exponent, number.negative);
  if (!is_finite(value.hi) || is_zero(value.hi)) {
    reading = zorvikrt_out_of_range;
    value.lo = 0;
  }
  return value;
}

/// A number, or a pair in brackets.
bool read_number(reader& in, pair_bits& value, zorvikrt_reading& reading) {
  const char* const start = in.place();
  numeral first;
  if (!in.take('[')) {
    if (!read_numeral(in, first)) return false;
    value = value_of(first, reading);
    return true;
  }
  numeral second;
  if (read_numeral(in, first) && (in.peek() == '+' || in.peek() == '-') &&
      read_numeral(in, second) && in.take(']')) {
    value = {value_of(first, reading).hi, value_of(second, reading).hi};
    return true;
  }
  in.back_to(start);
  return false;
}

bool read_complex(reader& in, pair_bits& re, pair_bits& im, zorvikrt_reading& reading) {
  im = {0, 0};
  const char* const start = in.place();
  if (!in.take('(')) return read_number(in, re, reading);
  in.skip_blanks();
  if (read_number(in, re, reading)) {
    in.skip_blanks();
    bool complete = true;
    if (in.take(',')) {
      in.skip_blanks();
      complete = read_number(in, im, reading);
      in.skip_blanks();
    }
    if (complete && in.take(')')) return true;
  }
  in.back_to(start);
  return false;
}

}  // namespace
}  // namespace zrt::text

using namespace zrt::text;

std::size_t zorvikrt_real16_from_chars(const char* first, std::size_t size, zorvikrt_quad* value,
                                       zorvikrt_reading* reading) {
  reader in(first, size);
  pair_bits bits;
  zorvikrt_reading outcome = zorvikrt_read;
  if (read_number(in, bits, outcome))
    std::memcpy(value, &bits, sizeof bits);
  else
    outcome = zorvikrt_not_a_number_text;
  if (reading != nullptr) *reading = outcome;
  return static_cast<std::size_t>(in.place() - first);
}

std::size_t zorvikrt_complex32_from_chars(const char* first, std::size_t size,
                                          zorvikrt_cquad* value, zorvikrt_reading* reading) {
  reader in(first, size);
  pair_bits parts[2];
  zorvikrt_reading outcome = zorvikrt_read;
  if (read_complex(in, parts[0], parts[1], outcome))
    std::memcpy(value, parts, sizeof parts);
  else
    outcome = zorvikrt_not_a_number_text;
  if (reading != nullptr) *reading = outcome;
  return static_cast<std::size_t>(in.place() - first);
}

const char* zorvikrt_version(void) { return ZORVIKRT_VERSION_TEXT; }
