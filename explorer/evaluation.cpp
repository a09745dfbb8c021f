#include "evaluation.hpp"

#include <cstring>

#include "numbers.hpp"
#include "operands.hpp"

namespace explorer {
namespace {

std::string quoted(const unsigned char* text, std::size_t size) {
  std::string out = "\"";
  for (std::size_t i = 0; i < size; ++i) {
    if (text[i] == '\\')
      out += "\\\\";
    else if (text[i] >= 0x20 && text[i] < 0x7F && text[i] != '"')
      out += static_cast<char>(text[i]);
    else
      out += "\\x" + hexadecimal(text[i], 2);
  }
  return out + '"';
}

std::string byte_digits(const unsigned char* text, std::size_t size) {
  std::string out = "0x";
  for (std::size_t i = 0; i < size; ++i) out += hexadecimal(text[i], 2);
  return out;
}

std::string flag_names(unsigned flags) {
  constexpr const char* names[] = {"invalid",  "denormal",  "zero_divide",
                                   "overflow", "underflow", "inexact"};
  std::string text;
  for (int bit = 0; bit < 6; ++bit)
    if (flags >> bit & 1) text += (text.empty() ? "" : "+") + std::string(names[bit]);
  return text.empty() ? "none" : text;
}

}  // namespace

std::string hexadecimal(std::uint64_t value, int digits) {
  std::string text;
  for (int at = digits - 1; at >= 0; --at) text += "0123456789ABCDEF"[value >> (4 * at) & 15];
  return text;
}

evaluation::evaluation(const entry& e, const std::vector<std::string>& given) : words(given) {
  call_frame frame(e, given);
  const outcome out = e(frame.operands());
  operands = frame.operands();
  flags = flag_names(out.flags);
  if (out.in_register) {
    std::uint64_t significand = 0, sign_exponent = 0;
    std::memcpy(&significand, out.register_image.data(), 8);
    std::memcpy(&sign_exponent, out.register_image.data() + 8, 2);
    register_image = "0x" + hexadecimal(sign_exponent, 4) + hexadecimal(significand, 16);
  }
  if (e.result != 'v') {
    // INTEGER*1 and INTEGER*2 results are sign-extended.
    const char code = e.result == 'b' || e.result == 'w' ? 'i' : e.result;
    results.push_back(
        {"result", decimal_of(code, out.result), bits_of(code, out.result), code, out.result});
  }
  for (std::size_t i = 0; i < e.codes.size(); ++i) {
    const char code = e.codes[i];
    if (!is_written(e, code)) continue;
    area& memory = frame.at(i);
    shown_value value{written_name(e, i), {}, byte_digits(memory.begin(), memory.size), 0, {}};
    if (code == 'I' || code == 'Q') {
      image content;
      std::memcpy(content.bytes.data(), memory.begin(), memory.size);
      value.code = code == 'I' ? 'i' : 'q';
      value.decimal = decimal_of(value.code, content);
      value.bits = bits_of(value.code, content);
      value.value = content;
    } else {
      value.decimal = quoted(memory.begin(), memory.size);
      // The length byte of a counted string stands in front of it.
      if (const unsigned char counted = memory.begin()[-1])
        value.decimal = std::to_string(counted) + ':' + value.decimal;
    }
    results.push_back(std::move(value));
  }
}

}  // namespace explorer
