#pragma once

// The operands of an entry: which of them are given and which are written, and their images and
// areas of memory, read from words.

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "evaluation.hpp"

namespace explorer {

bool is_given(const entry& e, char code);
bool is_written(const entry& e, char code);
std::vector<std::string> names_of(const entry& e);
/// A written operand's name, where it stands beside what was given.
std::string written_name(const entry& e, std::size_t i);
std::string joined(const std::vector<std::string>& words, const char* separator);

using bytes = std::vector<unsigned char>;

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
  call_frame(const entry& e, const std::vector<std::string>& words);

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

  void read(std::size_t i, const std::string& word);

  /// The lengths follow in the order of their addresses.
  void set_lengths();

  /// A polynomial reads one row more than its degree, without its leading coefficient as many.
  void check_degree();

  const entry& entry_;
  std::vector<std::unique_ptr<area>> areas_;
  std::vector<image> operands_;
};

}  // namespace explorer
