#include "evaluation.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>

#include "numbers.hpp"
#include "zorvikrt/zorvikrt.h"

namespace explorer {
namespace {

constexpr std::size_t longest_text = 1 << 20;

std::size_t count_of(const entry& e, std::initializer_list<nature> wanted) {
  return static_cast<std::size_t>(std::count_if(e.codes.begin(), e.codes.end(), [&](char code) {
    return std::find(wanted.begin(), wanted.end(), type_of(code).is) != wanted.end();
  }));
}

/// Where there is a length for each address, the length of a target is the caller's to choose.
bool lengths_are_separate(const entry& e) {
  return count_of(e, {nature::length}) == count_of(e, {nature::text, nature::target});
}

bool is_given(const entry& e, char code) {
  switch (type_of(code).is) {
    case nature::length:
    case nature::written_pair:
      return false;
    case nature::target:
      return lengths_are_separate(e);
    case nature::written_integer:  // a subroutine's, which reads it too
      return e.kind == form::plain;
    default:
      return true;
  }
}

bool is_written(const entry& e, char code) {
  const type_code& type = type_of(code);
  return type.is_written() || (type.is == nature::memory && e.result == 'v');
}

std::vector<std::string> names_of(const entry& e) {
  return pieces(std::string(description_of(e).names), ' ');
}

/// A written operand's name, where it stands beside what was given.
std::string written_name(const entry& e, std::size_t i) {
  if (e.codes[i] == 'm') return "memory";
  const std::string name = names_of(e)[i];
  const bool number_given = is_given(e, e.codes[i]) && e.codes[i] != 'A';
  return number_given ? "new_" + name : name;
}

bool hexadecimal_pair(const std::string& text, std::size_t at, unsigned char& byte) {
  if (at + 2 > text.size()) return false;
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + 2, value, 16);
  byte = static_cast<unsigned char>(value);
  return error == std::errc() && end == text.data() + at + 2;
}

using bytes = std::vector<unsigned char>;

bytes read_text(const std::string& word) {
  bytes text;
  for (std::size_t at = 0; at < word.size(); ++at) {
    unsigned char byte = static_cast<unsigned char>(word[at]);
    if (byte == '\\') {
      if (at + 1 < word.size() && word[at + 1] == '\\') {
        ++at;
      } else if (at + 1 < word.size() && word[at + 1] == 'x' &&
                 hexadecimal_pair(word, at + 2, byte)) {
        at += 3;
      } else {
        throw unreadable("'" + word + "': behind \\ stands another \\ or x and two digits");
      }
    }
    text.push_back(byte);
  }
  if (text.size() > longest_text) throw unreadable("a text of more than 1048576 characters");
  return text;
}

bytes read_memory(const std::string& word) {
  if (!word.starts_with("0x")) return read_text(word);
  bytes memory;
  for (std::size_t at = 2; at < word.size(); at += 2) {
    unsigned char byte;
    if (!hexadecimal_pair(word, at, byte))
      throw unreadable("'" + word + "' is not 0x and pairs of hexadecimal digits");
    memory.push_back(byte);
  }
  return memory;
}

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

/// An area of memory with room on both sides.
struct area {
  static constexpr std::size_t margin = 16;
  bytes memory;
  std::size_t size;

  explicit area(const bytes& content) : memory(content), size(content.size()) {
    memory.insert(memory.begin(), margin, 0);
    memory.insert(memory.end(), margin, 0);
  }
  unsigned char* begin() { return memory.data() + margin; }
};

/// The operands of one call and what they point to.
class call_frame {
 public:
  call_frame(const entry& e, const std::vector<std::string>& words) : entry_(e) {
    const std::size_t needed = given_operands(e);
    if (words.size() != needed)
      throw unreadable(signature(e) + " takes " + std::to_string(needed) + " operand" +
                       (needed == 1 ? "" : "s") + ", not " + std::to_string(words.size()));
    areas_.resize(e.codes.size());
    operands_.resize(e.codes.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < e.codes.size(); ++i) {
      static const std::string none;
      read(i, is_given(e, e.codes[i]) ? words[next++] : none);
    }
    set_lengths();
    check_degree();
  }

  const std::vector<image>& operands() const { return operands_; }
  area& at(std::size_t i) { return *areas_[i]; }

 private:
  template <class T>
  void put(std::size_t i, T value) {
    std::memcpy(operands_[i].bytes.data(), &value, sizeof value);
  }
  void point(std::size_t i, const bytes& content) {
    areas_[i] = std::make_unique<area>(content);
    put(i, areas_[i]->begin());
  }

  void read(std::size_t i, const std::string& word) {
    const char code = entry_.codes[i];
    switch (type_of(code).is) {
      case nature::length:
        break;
      case nature::text:
        point(i, read_text(word));
        break;
      case nature::target: {
        std::uint32_t length = 0;
        if (is_given(entry_, code)) {
          const image value = read_number('i', word);
          std::memcpy(&length, value.bytes.data(), sizeof length);
          if (length > longest_text)
            throw unreadable("'" + word + "' is not a length from 0 to 1048576");
        } else if (count_of(entry_, {nature::length}) != 0) {
          length = static_cast<std::uint32_t>(at(0).size);  // the source's
        } else {
          length = 1;
        }
        point(i, bytes(length, '.'));
        break;
      }
      case nature::memory: {
        bytes memory = read_memory(word);
        memory.resize(std::max(memory.size(), sizeof(std::int32_t)));
        point(i, memory);
        break;
      }
      case nature::optional_integer:
        if (word == "-") {
          put(i, static_cast<void*>(nullptr));
          break;
        }
        [[fallthrough]];
      case nature::read_integer:
      case nature::written_integer: {
        const image value = word.empty() ? image{} : read_number('i', word);
        point(i, bytes(value.bytes.begin(), value.bytes.begin() + 4));
        break;
      }
      case nature::written_pair:
        point(i, bytes(16));
        break;
      case nature::table: {
        bytes table;
        for (const std::string& row : pieces(word, ';')) {
          const image value = read_number('q', row);
          table.insert(table.end(), value.bytes.begin(), value.bytes.begin() + 16);
        }
        point(i, table);
        break;
      }
      default:
        operands_[i] = read_number(code, word);
    }
  }

  /// The lengths follow in the order of their addresses.
  void set_lengths() {
    std::size_t from = 0;
    for (std::size_t i = 0; i < operands_.size(); ++i) {
      if (entry_.codes[i] != 'n') continue;
      from = entry_.codes.find_first_of("aA", from);
      put(i, static_cast<std::int32_t>(at(from).size));
      ++from;
    }
  }

  /// A polynomial reads one row more than its degree, without its leading coefficient as many.
  void check_degree() {
    const std::size_t table = entry_.codes.find('T');
    if (table == std::string_view::npos) return;
    std::int32_t degree;
    std::memcpy(&degree, operands_[entry_.codes.find('i')].bytes.data(), sizeof degree);
    const bool monic = std::strcmp(entry_.name, "polyD") == 0;
    const std::int64_t needed = std::max<std::int64_t>(1, std::int64_t{degree} + (monic ? 0 : 1));
    const auto rows = static_cast<std::int64_t>(at(table).size / 16);
    if (needed > rows)
      throw unreadable("degree " + std::to_string(degree) + " needs a table of " +
                       std::to_string(needed) + " rows, not " + std::to_string(rows));
  }

  const entry& entry_;
  std::vector<std::unique_ptr<area>> areas_;
  std::vector<image> operands_;
};

std::string flag_names(unsigned flags) {
  constexpr const char* names[] = {"invalid",  "denormal",  "zero_divide",
                                   "overflow", "underflow", "inexact"};
  std::string text;
  for (int bit = 0; bit < 6; ++bit)
    if (flags >> bit & 1) text += (text.empty() ? "" : "+") + std::string(names[bit]);
  return text.empty() ? "none" : text;
}

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) text += (&word == &words[0] ? "" : separator) + word;
  return text;
}

std::string csv_cell(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string cell = "\"";
  for (const char c : text) cell += c == '"' ? "\"\"" : std::string(1, c);
  return cell + '"';
}

std::string csv_line(std::vector<std::string> cells) {
  for (std::string& cell : cells) cell = csv_cell(cell);
  return joined(cells, ",");
}

/// The names of what a call shows, in order.
std::vector<std::string> result_names(const entry& e) {
  std::vector<std::string> names;
  if (e.result != 'v') names.push_back("result");
  for (std::size_t i = 0; i < e.codes.size(); ++i)
    if (is_written(e, e.codes[i])) names.push_back(written_name(e, i));
  return names;
}

}  // namespace

std::string hexadecimal(std::uint64_t value, int digits) {
  std::string text;
  for (int at = digits - 1; at >= 0; --at) text += "0123456789ABCDEF"[value >> (4 * at) & 15];
  return text;
}

std::string signature(const entry& e) {
  const std::vector<std::string> names = names_of(e);
  std::vector<std::string> operands;
  for (std::size_t i = 0; i < e.codes.size(); ++i)
    if (e.codes[i] != 'n')
      operands.push_back(names[i] + ' ' + type_of(e.codes[i]).name +
                         (is_written(e, e.codes[i]) ? ", written" : ""));
  return std::string(e.name) + '(' + joined(operands, "; ") + ')' +
         (e.result == 'v' ? "" : std::string(" -> ") + type_of(e.result).name);
}

std::size_t given_operands(const entry& e) {
  return static_cast<std::size_t>(
      std::count_if(e.codes.begin(), e.codes.end(), [&](char code) { return is_given(e, code); }));
}

evaluation::evaluation(const entry& e, const std::vector<std::string>& given) : words(given) {
  call_frame frame(e, given);
  const outcome out = e(frame.operands());
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
    results.push_back({"result", decimal_of(code, out.result), bits_of(code, out.result), code});
  }
  for (std::size_t i = 0; i < e.codes.size(); ++i) {
    const char code = e.codes[i];
    if (!is_written(e, code)) continue;
    area& memory = frame.at(i);
    shown_value value{written_name(e, i), {}, byte_digits(memory.begin(), memory.size), 0};
    if (code == 'I' || code == 'Q') {
      image content;
      std::memcpy(content.bytes.data(), memory.begin(), memory.size);
      value.code = code == 'I' ? 'i' : 'q';
      value.decimal = decimal_of(value.code, content);
      value.bits = bits_of(value.code, content);
    } else {
      value.decimal = quoted(memory.begin(), memory.size);
      // The length byte of a counted string stands in front of it.
      if (const unsigned char counted = memory.begin()[-1])
        value.decimal = std::to_string(counted) + ':' + value.decimal;
    }
    results.push_back(std::move(value));
  }
}

std::string text_row(const entry& e, const evaluation& call, columns shown) {
  std::string row = e.name + ('(' + joined(call.words, "; ")) + ')';
  const bool only_result = call.results.size() == 1 && call.results[0].name == "result";
  for (const evaluation::shown_value& value : call.results) {
    if (!shown.decimal && !shown.bits) break;
    row += only_result ? " =" : "  " + value.name + " =";
    if (shown.decimal) row += ' ' + value.decimal;
    if (shown.bits) row += (shown.decimal ? "  " : " ") + value.bits;
  }
  if (shown.in_register)
    row += "  register " + (call.register_image.empty() ? "-" : call.register_image);
  if (shown.flags) row += "  flags " + call.flags;
  return row;
}

std::string csv_head(const entry& e, columns shown) {
  std::vector<std::string> cells;
  const std::vector<std::string> names = names_of(e);
  for (std::size_t i = 0; i < e.codes.size(); ++i)
    if (is_given(e, e.codes[i]))
      cells.push_back(e.codes[i] == 'A' ? names[i] + "_length" : names[i]);
  for (const std::string& name : result_names(e)) {
    if (shown.decimal) cells.push_back(name);
    if (shown.bits) cells.push_back(name + "_bits");
  }
  if (shown.in_register) cells.push_back("register");
  if (shown.flags) cells.push_back("flags");
  return csv_line(cells);
}

std::string csv_row(const entry&, const evaluation& call, columns shown) {
  std::vector<std::string> cells = call.words;
  for (const evaluation::shown_value& value : call.results) {
    if (shown.decimal) cells.push_back(value.decimal);
    if (shown.bits) cells.push_back(value.bits);
  }
  if (shown.in_register) cells.push_back(call.register_image);
  if (shown.flags) cells.push_back(call.flags);
  return csv_line(cells);
}

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
