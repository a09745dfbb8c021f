// The layout of REAL*16 and COMPLEX*32 in text.

#include "zorvikrt/text.h"

#include <algorithm>
#include <cstring>

#include "conversion.hpp"

namespace zrt::text {
namespace {

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
