#include "conversion.hpp"

#include <cstring>

namespace zrt::text {
namespace {

/// A finite double: significand * 2**exponent, exponent from -1074.
struct double_parts {
  std::uint64_t significand;
  int exponent;
  bool lowest_of_binade;  // the double below is nearer than the one above

  explicit double_parts(std::uint64_t bits) {
    const std::uint64_t fraction = bits & fraction_mask;
    const int field = static_cast<int>(bits >> 52 & 0x7FF);
    significand = field == 0 ? fraction : fraction | std::uint64_t{1} << 52;
    exponent = (field == 0 ? 1 : field) - 1075;
    lowest_of_binade = fraction == 0 && field > 1;
  }
};

/// What lies behind the integer part of a scaled number.
enum class rest { none, below_half, half, above_half };

/// Shifts down and tells what fell off.
template <class Natural>
rest drop_bits(Natural& number, int count) {
  if (count == 0) return rest::none;
  const bool half = number.bit(count - 1), sticky = number.has_bits_below(count - 1);
  number >>= count;
  if (half) return sticky ? rest::above_half : rest::half;
  return sticky ? rest::below_half : rest::none;
}

/// floor(number * 2**exponent * 10**power), exactly, with what lies behind it.
template <class Natural>
Natural scaled(Natural number, int exponent, int power, rest& behind) {
  const int shift = exponent + power;
  if (power >= 0) {
    number.multiply_by_power_of_five(power);
    if (shift >= 0) number <<= shift;
    behind = shift >= 0 ? rest::none : drop_bits(number, -shift);
    return number;
  }
  Natural divisor = Natural::power_of_five(-power);
  if (shift >= 0)
    number <<= shift;
  else
    divisor <<= -shift;
  const Natural quotient = number.divide(divisor);  // leaves the remainder
  if (number.is_zero()) {
    behind = rest::none;
  } else {
    number <<= 1;
    const int order = Natural::compare(number, divisor);
    behind = order < 0 ? rest::below_half : order == 0 ? rest::half : rest::above_half;
  }
  return quotient;
}

template <class Natural>
bool rounds_up(const Natural& number, rest behind) {
  return behind == rest::above_half || (behind == rest::half && number.is_odd());
}

/// number * 10**power to the nearest whole number.
natural scaled_to_nearest(const binary& number, int power) {
  rest behind;
  natural result = scaled(number.significand, number.exponent, power, behind);
  if (rounds_up(result, behind)) result += natural(1);
  return result;
}

/// floor(log10(number * 2**exponent)), or one less.
template <class Natural>
int decimal_exponent_below(const Natural& number, int exponent) {
  const int bits = number.bit_length() - 1 + exponent;
  return bits * 78913 >> 18;  // log10(2), exact enough for the range
}

/// The digits of a whole number, of which the last one stands at 10**last_place. From the end of
/// the area down, then moved to its start.
template <class Natural>
void write_digits(Natural number, int last_place, decimal& result) {
  char* const end = result.digit + sizeof result.digit;
  char* first = end;
  while (!number.is_zero()) {
    std::uint32_t part = number.divide(1000000000);
    for (int i = 0; i < 9; ++i, part /= 10) *--first = static_cast<char>('0' + part % 10);
  }
  while (first != end && *first == '0') ++first;
  result.count = static_cast<int>(end - first);
  result.exponent = last_place + result.count - 1;
  std::memmove(result.digit, first, static_cast<std::size_t>(end - first));
}

/// The numbers that read back as one value: from low to high, ends included or not, around value.
/// All three in units of 2**exponent.
struct interval {
  short_natural low, value, high;
  bool low_included, high_included;
  int exponent;
};

void shortest_within(const interval& range, decimal& result) {
  // One digit more than may be used, then digits are dropped as long as a number is left inside.
  const int last_place =
      decimal_exponent_below(range.value, range.exponent) - decimal::shortest_limit;
  const short_natural one(1);
  rest behind;
  short_natural low = scaled(range.low, range.exponent, -last_place, behind);
  if (behind != rest::none || !range.low_included) low += one;
  short_natural high = scaled(range.high, range.exponent, -last_place, behind);
  if (behind == rest::none && !range.high_included) high -= one;
  short_natural value = scaled(range.value, range.exponent, -last_place, behind);
  result.count = 0;
  if (short_natural::compare(low, high) > 0) return;
  int place = last_place;
  for (;; ++place) {
    short_natural next_low = low, next_high = high;
    if (next_low.divide(10) != 0) next_low += one;
    next_high.divide(10);
    if (short_natural::compare(next_low, next_high) > 0) break;
    low = next_low;
    high = next_high;
    const std::uint32_t digit = value.divide(10);
    if (digit > 5 || (digit == 5 && behind != rest::none))
      behind = rest::above_half;
    else if (digit == 5)
      behind = rest::half;
    else if (digit != 0 || behind != rest::none)
      behind = rest::below_half;
  }
  if (rounds_up(value, behind)) value += one;
  if (short_natural::compare(value, low) < 0) value = low;
  if (short_natural::compare(value, high) > 0) value = high;
  write_digits(value, place, result);
  if (result.count > decimal::shortest_limit) result.count = 0;
}

/// The doubles that round to a positive one, in units of 2**exponent, which lies at least two below
/// that of the double.
interval rounding_interval(const double_parts& number, int exponent) {
  const bool even = (number.significand & 1) == 0;
  const short_natural significand(number.significand);
  interval range{significand, significand, significand, even, even, exponent};
  const int shift = number.exponent - exponent;
  range.value <<= shift;
  range.low = range.value;
  range.high = range.value;
  short_natural half(1);
  half <<= shift - 1;
  range.high += half;
  if (number.lowest_of_binade) half >>= 1;
  range.low -= half;
  return range;
}

/// A double from significand * 2**exponent, the significand at most 2**53, the exponent at least
/// -1074, and -1074 if the significand is below 2**52.
std::uint64_t encode(std::uint64_t significand, int exponent) {
  if (significand == std::uint64_t{1} << 53) {
    significand >>= 1;
    ++exponent;
  }
  if (significand < std::uint64_t{1} << 52) return significand;
  if (exponent > 971) return infinity_bits;
  return static_cast<std::uint64_t>(exponent + 1075) << 52 | (significand & fraction_mask);
}

/// The double nearest to a number in units of 2**-1075, of which `sticky` says that it goes on
/// behind its last bit. Takes what was rounded out of the number: `number` becomes |rest| rounded
/// down, `above` says that the double lies above it.
std::uint64_t take_nearest_double(natural& number, bool& sticky, bool& above) {
  const int bits = number.bit_length();
  const int shift = bits > 54 ? bits - 53 : 1;
  natural head = number;
  rest behind = drop_bits(head, shift);
  if (sticky && behind == rest::half) behind = rest::above_half;
  above = rounds_up(head, behind);
  if (above) head += natural(1);
  const std::uint64_t significand = head.low64();
  head <<= shift;
  if (above) {
    natural distance = head;
    distance -= number;
    // The part behind the last bit counts against the distance.
    if (sticky) distance -= natural(1);
    number = distance;
  } else {
    number -= head;
  }
  return encode(significand, shift - 1075);
}

}  // namespace

binary exact_sum(pair_bits value, bool& negative) {
  const double_parts hi(value.hi), lo(value.lo);
  const int exponent = hi.exponent < lo.exponent ? hi.exponent : lo.exponent;
  natural a(hi.significand), b(lo.significand);
  // A zero part would only lengthen the other.
  if (lo.significand == 0) {
    negative = is_negative(value.hi);
    return {a, hi.exponent};
  }
  if (hi.significand == 0) {
    negative = is_negative(value.lo);
    return {b, lo.exponent};
  }
  a <<= hi.exponent - exponent;
  b <<= lo.exponent - exponent;
  negative = is_negative(value.hi);
  if (is_negative(value.lo) == negative) {
    a += b;
    return {a, exponent};
  }
  const int order = natural::compare(a, b);
  if (order >= 0) {
    a -= b;
    negative = negative && order != 0;
    return {a, exponent};
  }
  b -= a;
  negative = !negative;
  return {b, exponent};
}

void leading_digits(const binary& number, int count, decimal& result) {
  // No digit is left behind the 1074th place.
  int last_place = decimal_exponent_below(number.significand, number.exponent) - count + 1;
  if (last_place < -1074) last_place = -1074;
  natural digits = scaled_to_nearest(number, -last_place);
  write_digits(digits, last_place, result);
  // The estimate may be one too small.
  if (result.count > count) {
    digits = scaled_to_nearest(number, -last_place - 1);
    write_digits(digits, last_place + 1, result);
  }
  // 9.99 may have become 10.00.
  if (result.count > count) --result.count;
}

void digits_to_place(const binary& number, int place, decimal& result) {
  if (place > 1074) place = 1074;
  write_digits(scaled_to_nearest(number, place), -place, result);
}

void shortest_digits(pair_bits value, decimal& result) {
  result.count = 0;
  const double_parts hi(value.hi), lo(value.lo);
  const bool hi_negative = is_negative(value.hi), lo_negative = is_negative(value.lo);
  if (lo.significand == 0 && lo_negative) return;
  if (lo.significand != 0 && lo.exponent >= hi.exponent) return;  // at least one unit of hi

  // The numbers whose rest rounds to lo, seen with a positive hi.
  const int exponent = (lo.significand == 0 ? -1074 : lo.exponent) - 2;
  const interval around_hi = rounding_interval(hi, exponent);
  interval range = around_hi;
  if (lo.significand == 0) {
    // A rest of either sign becomes a zero, which shows the sign: +0.0 is a rest of zero, or a
    // positive one of at most half of the smallest subnormal.
    range.low = range.high = range.value;
    range.low_included = range.high_included = true;
    if (hi_negative)
      range.low -= short_natural(2);
    else
      range.high += short_natural(2);
  } else {
    const interval around_lo = rounding_interval(lo, exponent);
    short_natural up = around_lo.high, down = around_lo.value;
    up -= around_lo.value;
    down -= around_lo.low;
    const bool opposite = hi_negative != lo_negative;
    if (opposite)
      range.value -= around_lo.value;
    else
      range.value += around_lo.value;
    range.low = range.high = range.value;
    range.high += opposite ? down : up;
    range.low -= opposite ? up : down;
    range.low_included = range.high_included = around_lo.low_included;
  }

  // hi must come out of the rounding as well: of the value itself, and of all that is taken.
  const int over_low = short_natural::compare(range.value, around_hi.low);
  const int over_high = short_natural::compare(range.value, around_hi.high);
  if (over_low < 0 || (over_low == 0 && !around_hi.low_included)) return;
  if (over_high > 0 || (over_high == 0 && !around_hi.high_included)) return;
  if (short_natural::compare(range.low, around_hi.low) <= 0) {
    range.low = around_hi.low;
    range.low_included = around_hi.low_included;
  }
  if (short_natural::compare(range.high, around_hi.high) >= 0) {
    range.high = around_hi.high;
    range.high_included = around_hi.high_included;
  }
  shortest_within(range, result);
}

void shortest_digits(std::uint64_t value, decimal& result) {
  const double_parts number(value);
  shortest_within(rounding_interval(number, number.exponent - 2), result);
}

pair_bits nearest_pair(natural digits, int exponent, bool negative) {
  const std::uint64_t sign = negative ? sign_bit : 0;
  rest behind;
  natural number = scaled(digits, 1075, exponent, behind);
  bool sticky = behind != rest::none, above = false;
  const std::uint64_t hi = take_nearest_double(number, sticky, above);
  if (!is_finite(hi)) return {sign | hi, 0};
  if (number.is_zero() && !sticky) return {sign | hi, 0};
  const std::uint64_t lo_sign = above != negative ? sign_bit : 0;
  const std::uint64_t lo = take_nearest_double(number, sticky, above);
  return {sign | hi, lo_sign | lo};
}

}  // namespace zrt::text
