#include "numbers.hpp"

#include <charconv>
#include <cstring>
#include <limits>

#include "zorvikrt/text.h"

namespace explorer {
namespace {

/// The fields of a REAL's image.
template <class F>
struct layout {
  using bits = std::conditional_t<sizeof(F) == 4, std::uint32_t, std::uint64_t>;
  static constexpr std::uint64_t fraction = (bits{1} << (std::numeric_limits<F>::digits - 1)) - 1;
  static constexpr std::uint64_t sign = bits{1} << (8 * sizeof(F) - 1);
  static constexpr std::uint64_t exponent = sign - 1 - fraction;
  static constexpr int digits = 2 * sizeof(F);  // hexadecimal, of the image
};

std::uint64_t load_bits(const unsigned char* at, int size) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, at, static_cast<std::size_t>(size));
  return bits;
}

void store_bits(unsigned char* at, std::uint64_t bits, int size) {
  std::memcpy(at, &bits, static_cast<std::size_t>(size));
}

[[noreturn]] void cannot_read(char code, const std::string& word, const std::string& why = {}) {
  throw unreadable("'" + word + "' is not a value of type " + std::string(type_of(code).name) +
                   (why.empty() ? "" : ": " + why));
}

bool has_prefix(std::string_view word) {
  return word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
}

/// Hexadecimal digits only.
bool read_digits(std::string_view digits, std::uint64_t& bits) {
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), bits, 16);
  return error == std::errc() && end == digits.data() + digits.size();
}

std::uint64_t read_integer(char code, const std::string& word) {
  const int width = 8 * size_of(code);
  const std::uint64_t mask = ~std::uint64_t{0} >> (64 - width);
  std::string_view digits = word;
  std::uint64_t size = 0;
  if (has_prefix(digits)) {
    if (!read_digits(digits.substr(2), size) || size > mask)
      cannot_read(code, word,
                  "its image has up to " + std::to_string(width / 4) + " hexadecimal digits");
    return size;
  }
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), size);
  if (error == std::errc::invalid_argument || end != digits.data() + digits.size())
    cannot_read(code, word);
  const std::uint64_t largest =
      code == 'u' ? (negative ? 0 : mask) : (mask >> 1) + (negative ? 1 : 0);
  if (error != std::errc() || size > largest) cannot_read(code, word, "it is beyond the range");
  return (negative ? ~size + 1 : size) & mask;
}

template <class F>
std::uint64_t read_real(char code, const std::string& word) {
  using fields = layout<F>;
  std::string_view text = word;
  std::uint64_t bits = 0;
  if (has_prefix(text) && text.find_first_of(".pP") == std::string_view::npos) {
    if (text.size() != 2 + fields::digits || !read_digits(text.substr(2), bits))
      cannot_read(code, word,
                  "its image has " + std::to_string(fields::digits) + " hexadecimal digits");
    return bits;
  }
  const std::uint64_t sign = text.starts_with('-') ? fields::sign : 0;
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  auto form = std::chars_format::general;
  if (has_prefix(text)) {
    text.remove_prefix(2);
    form = std::chars_format::hex;
  }
  if (text.empty() || text[0] == '-' || text[0] == '+') cannot_read(code, word);
  if (text.starts_with("nan(0x") && text.ends_with(')')) {  // as NaNs are written
    if (!read_digits(text.substr(6, text.size() - 7), bits) || bits == 0 || bits > fields::fraction)
      cannot_read(code, word);
    return sign | fields::exponent | bits;
  }
  F value;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, form);
  if (error == std::errc::result_out_of_range) cannot_read(code, word, "it is beyond the range");
  if (error != std::errc() || end != text.data() + text.size()) cannot_read(code, word);
  std::memcpy(&bits, &value, sizeof value);
  return bits | sign;
}

std::uint64_t read_part(char code, const std::string& word) {
  if (code == 'f') return read_real<float>(code, word);
  if (code == 'd') return read_real<double>(code, word);
  return read_integer(code, word);
}

void read_pair(unsigned char* at, char code, const std::string& word) {
  zorvikrt_quad value{};
  zorvikrt_reading reading;
  const std::size_t taken = zorvikrt_real16_from_chars(word.data(), word.size(), &value, &reading);
  if (has_prefix(word) || reading == zorvikrt_not_a_number_text || taken != word.size())
    cannot_read(code, word);
  if (reading == zorvikrt_out_of_range) cannot_read(code, word, "it is beyond the range");
  std::memcpy(at, &value, sizeof value);
}

template <class F>
std::string real_text(std::uint64_t bits) {
  using fields = layout<F>;
  const std::string sign = (bits & fields::sign) != 0 ? "-" : "";
  const std::uint64_t fraction = bits & fields::fraction;
  if ((bits & fields::exponent) == fields::exponent) {
    if (fraction == 0) return sign + "inf";
    if (fraction == (fields::fraction + 1) / 2) return sign + "nan";
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, fraction, 16).ptr;
    return sign + "nan(0x" + std::string(digits, end) + ")";
  }
  const auto magnitude = static_cast<typename fields::bits>(bits & (fields::sign - 1));
  F value;
  std::memcpy(&value, &magnitude, sizeof value);
  char text[64];
  return sign + std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string integer_text(char code, std::uint64_t bits) {
  if (code == 'u') return std::to_string(bits);
  const int unused = 64 - 8 * size_of(code);
  return std::to_string(static_cast<std::int64_t>(bits << unused) >> unused);
}

}  // namespace

std::vector<std::string> pieces(const std::string& text, char separator) {
  std::vector<std::string> found(1);
  int depth = 0;
  for (const char c : text) {
    if (c == '(' || c == '[') ++depth;
    if (c == ')' || c == ']') --depth;
    if (c == separator && depth == 0)
      found.emplace_back();
    else
      found.back() += c;
  }
  return found;
}

image read_number(char code, const std::string& word) {
  image value;
  const type_code& type = type_of(code);
  const int part_size = size_of(type.part);
  if (type.parts == 1) {
    store_bits(value.bytes.data(), read_part(code, word), part_size);
    return value;
  }
  const bool complex = code != 'q';
  const bool in_parentheses = complex && word.starts_with('(') && word.ends_with(')');
  const std::vector<std::string> given =
      pieces(in_parentheses ? word.substr(1, word.size() - 2) : word, ',');
  const int count = static_cast<int>(given.size());
  if (count == type.parts) {  // every REAL by itself
    for (int i = 0; i < count; ++i)
      store_bits(value.bytes.data() + i * part_size,
                 read_part(type.part, given[static_cast<std::size_t>(i)]), part_size);
  } else if (code == 'q' && count == 1) {
    read_pair(value.bytes.data(), code, word);
  } else if (code == 'x' && count <= 2) {
    for (int i = 0; i < count; ++i)
      read_pair(value.bytes.data() + 16 * i, 'q', given[static_cast<std::size_t>(i)]);
  } else if (complex && count == 1) {
    store_bits(value.bytes.data(), read_part(type.part, given[0]), part_size);
  } else {
    cannot_read(code, word, "it has " + std::to_string(count) + " parts");
  }
  return value;
}

std::string decimal_of(char code, const image& value) {
  const unsigned char* at = value.bytes.data();
  if (type_of(code).is == nature::integer) return integer_text(code, load_bits(at, size_of(code)));
  if (code == 'f') return real_text<float>(load_bits(at, 4));
  if (code == 'd') return real_text<double>(load_bits(at, 8));
  if (code == 'c')
    return '(' + real_text<float>(load_bits(at, 4)) + ',' + real_text<float>(load_bits(at + 4, 4)) +
           ')';
  if (code == 'z')
    return '(' + real_text<double>(load_bits(at, 8)) + ',' +
           real_text<double>(load_bits(at + 8, 8)) + ')';
  const auto write = [&](char* first, std::size_t size) {
    if (code == 'q') {
      zorvikrt_quad number;
      std::memcpy(&number, at, sizeof number);
      return zorvikrt_real16_to_chars(first, size, &number, zorvikrt_shortest, 0);
    }
    zorvikrt_cquad number;
    std::memcpy(&number, at, sizeof number);
    return zorvikrt_complex32_to_chars(first, size, &number, zorvikrt_shortest, 0);
  };
  std::string text(write(nullptr, 0), ' ');
  write(text.data(), text.size());
  return text;
}

std::string bits_of(char code, const image& value) {
  const type_code& type = type_of(code);
  const int size = size_of(type.part);
  std::string text;
  for (int i = 0; i < type.parts; ++i)
    text += (i == 0 ? "0x" : ",0x") +
            hexadecimal(load_bits(value.bytes.data() + i * size, size), 2 * size);
  return text;
}

}  // namespace explorer
