// The layout and the grammar of REAL*16 and COMPLEX*32 in text.

#include "zorvikrt/text.h"

#include <algorithm>
#include <cstring>

#include "conversion.hpp"

namespace zrt::text {
namespace {

// --- Writing -----------------------------------------------------------------------------------

/// Characters into a bounded area; what does not fit is only counted.
class writer {
 public:
  writer(char* first, std::size_t size) : first_(first), size_(size) {}

  void put(char c) {
    if (count_ < size_) first_[count_] = c;
    ++count_;
  }
  void put(const char* text) {
    while (*text != 0) put(*text++);
  }
  void zeros(std::size_t count) {
    if (count_ < size_) std::memset(first_ + count_, '0', std::min(count, size_ - count_));
    count_ += count;
  }
  std::size_t count() const { return count_; }

 private:
  char* first_;
  std::size_t size_;
  std::size_t count_ = 0;
};

char digit_at(const decimal& number, int index) {
  return index >= 0 && index < number.count ? number.digit[index] : '0';
}

/// `count` digits from `index` on, where that may be ahead of the first or behind the last.
void put_digits(writer& out, const decimal& number, int index, int count) {
  for (; count > 0 && index < number.count; --count) out.put(digit_at(number, index++));
  if (count > 0) out.zeros(static_cast<std::size_t>(count));
}

/// d.ddd e+XX with `behind` digits behind the point.
void put_scientific(writer& out, const decimal& number, int behind) {
  out.put(digit_at(number, 0));
  if (behind > 0) out.put('.');
  put_digits(out, number, 1, behind);
  out.put('e');
  int exponent = number.exponent;
  out.put(exponent < 0 ? '-' : '+');
  if (exponent < 0) exponent = -exponent;
  if (exponent >= 100) out.put(static_cast<char>('0' + exponent / 100));
  out.put(static_cast<char>('0' + exponent / 10 % 10));
  out.put(static_cast<char>('0' + exponent % 10));
}

void put_fixed(writer& out, const decimal& number, int behind) {
  const int point = number.count == 0 ? 0 : number.exponent;
  if (point < 0) out.put('0');
  put_digits(out, number, 0, point + 1);
  if (behind > 0) out.put('.');
  put_digits(out, number, point + 1, behind);
}

void drop_zeros_at_end(decimal& number) {
  while (number.count > 0 && number.digit[number.count - 1] == '0') --number.count;
}

/// As %g: scientific if the exponent is below -4 or not below the precision.
void put_general(writer& out, decimal& number, int precision) {
  drop_zeros_at_end(number);
  if (number.exponent < -4 || number.exponent >= precision) {
    put_scientific(out, number, number.count - 1);
  } else {
    const int behind = number.count - 1 - number.exponent;
    put_fixed(out, number, behind > 0 ? behind : 0);
  }
}

/// The shorter of fixed and scientific, fixed if they are equally long.
void put_shortest(writer& out, decimal& number) {
  drop_zeros_at_end(number);
  const int behind = number.count - 1 - number.exponent;
  writer fixed_size(nullptr, 0), scientific_size(nullptr, 0);
  put_fixed(fixed_size, number, behind > 0 ? behind : 0);
  put_scientific(scientific_size, number, number.count - 1);
  if (fixed_size.count() <= scientific_size.count())
    put_fixed(out, number, behind > 0 ? behind : 0);
  else
    put_scientific(out, number, number.count - 1);
}

/// A double in its shortest form, without a sign.
void put_shortest_magnitude(writer& out, std::uint64_t bits) {
  bits &= ~sign_bit;
  if (is_nan(bits)) {
    out.put("nan");
    if (bits != quiet_nan_bits) {
      out.put("(0x");
      int shift = 48;
      while (shift > 0 && (bits & fraction_mask) >> shift == 0) shift -= 4;
      for (; shift >= 0; shift -= 4) out.put("0123456789abcdef"[bits >> shift & 0xF]);
      out.put(')');
    }
  } else if (bits == infinity_bits) {
    out.put("inf");
  } else if (bits == 0) {
    out.put('0');
  } else {
    decimal number;
    shortest_digits(bits, number);
    put_shortest(out, number);
  }
}

void put_shortest(writer& out, pair_bits value) {
  if (is_finite(value.hi) && is_finite(value.lo) && !is_zero(value.hi)) {
    decimal number;
    shortest_digits(value, number);
    if (number.count != 0) {
      if (is_negative(value.hi)) out.put('-');
      put_shortest(out, number);
      return;
    }
  }
  const bool pair = (is_finite(value.hi) && !is_zero(value.hi)) || value.lo != 0;
  if (pair) out.put('[');
  if (is_negative(value.hi)) out.put('-');
  put_shortest_magnitude(out, value.hi);
  if (!pair) return;
  out.put(is_negative(value.lo) ? '-' : '+');
  put_shortest_magnitude(out, value.lo);
  out.put(']');
}

/// An infinity or NaN among the parts: what hi says, or what adding lo to a finite hi gives.
void put_not_finite(writer& out, pair_bits value) {
  const std::uint64_t bits = is_finite(value.hi) ? value.lo : value.hi;
  if (is_negative(bits)) out.put('-');
  out.put(is_nan(bits) ? "nan" : "inf");
}

void put_number(writer& out, pair_bits value, zorvikrt_style style, int precision) {
  if (style == zorvikrt_shortest) return put_shortest(out, value);
  if (!is_finite(value.hi) || !is_finite(value.lo)) return put_not_finite(out, value);
  if (precision < 0) precision = 6;
  if (precision > ZORVIKRT_MOST_DIGITS) precision = ZORVIKRT_MOST_DIGITS;
  if (style == zorvikrt_general && precision == 0) precision = 1;

  bool negative;
  const binary sum = exact_sum(value, negative);
  decimal number;
  if (!sum.significand.is_zero()) {
    constexpr int all_digits = 1400;
    if (style == zorvikrt_fixed) {
      digits_to_place(sum, precision, number);
    } else {
      const int count = style == zorvikrt_scientific ? precision : precision - 1;
      leading_digits(sum, count < all_digits ? count + 1 : all_digits, number);
    }
  }
  if (negative) out.put('-');
  switch (style) {
    case zorvikrt_fixed:
      return put_fixed(out, number, precision);
    case zorvikrt_scientific:
      return put_scientific(out, number, precision);
    default:
      if (number.count == 0)
        out.put('0');
      else
        put_general(out, number, precision);
  }
}

pair_bits bits_of(const zorvikrt_quad& value) {
  pair_bits bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

void put_complex(writer& out, const zorvikrt_cquad& value, zorvikrt_style style, int precision) {
  out.put('(');
  put_number(out, bits_of(value.re), style, precision);
  out.put(',');
  put_number(out, bits_of(value.im), style, precision);
  out.put(')');
}

/// Runs `put` once for the length, and again for the text if there is room.
template <class Put>
std::size_t write(char* first, std::size_t size, Put put) {
  // What fits into this is laid out once.
  char text[128];
  writer draft(text, sizeof text);
  put(draft);
  if (draft.count() > size) return draft.count();
  if (draft.count() <= sizeof text) {
    std::memcpy(first, text, draft.count());
    return draft.count();
  }
  writer out(first, size);
  put(out);
  return out.count();
}

// --- Reading -----------------------------------------------------------------------------------

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

std::size_t zorvikrt_real16_to_chars(char* first, std::size_t size, const zorvikrt_quad* value,
                                     zorvikrt_style style, int precision) {
  return write(first, size,
               [&](writer& out) { put_number(out, bits_of(*value), style, precision); });
}

std::size_t zorvikrt_complex32_to_chars(char* first, std::size_t size, const zorvikrt_cquad* value,
                                        zorvikrt_style style, int precision) {
  return write(first, size, [&](writer& out) { put_complex(out, *value, style, precision); });
}

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
