#include "operands.hpp"

#include <algorithm>
#include <charconv>

#include "numbers.hpp"

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

bool hexadecimal_pair(const std::string& text, std::size_t at, unsigned char& byte) {
  if (at + 2 > text.size()) return false;
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + 2, value, 16);
  byte = static_cast<unsigned char>(value);
  return error == std::errc() && end == text.data() + at + 2;
}

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

}  // namespace

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

std::string written_name(const entry& e, std::size_t i) {
  if (e.codes[i] == 'm') return "memory";
  const std::string name = names_of(e)[i];
  const bool number_given = is_given(e, e.codes[i]) && e.codes[i] != 'A';
  return number_given ? "new_" + name : name;
}

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) text += (&word == &words[0] ? "" : separator) + word;
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

call_frame::call_frame(const entry& e, const std::vector<std::string>& words) : entry_(e) {
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

void call_frame::read(std::size_t i, const std::string& word) {
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

void call_frame::set_lengths() {
  std::size_t from = 0;
  for (std::size_t i = 0; i < operands_.size(); ++i) {
    if (entry_.codes[i] != 'n') continue;
    from = entry_.codes.find_first_of("aA", from);
    put(i, static_cast<std::int32_t>(at(from).size));
    ++from;
  }
}

void call_frame::check_degree() {
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

}  // namespace explorer
