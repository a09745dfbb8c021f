#pragma once

// Memory that ends, or begins, at a page without access: a read or write beyond an operand faults.

#include <cstddef>
#include <cstring>
#include <string_view>

namespace support {

class guarded {
 public:
  /// Room for `capacity` bytes between two protected pages.
  explicit guarded(std::size_t capacity);
  ~guarded();
  guarded(const guarded&) = delete;
  guarded& operator=(const guarded&) = delete;

  char* begin() { return mapped_ + page_; }
  char* end() { return begin() + size_; }

  /// Puts the text against the protected page behind it, or against the one before it.
  char* place(std::string_view text, bool at_the_end) {
    char* const where = at_the_end ? end() - text.size() : begin();
    std::memmove(where, text.data(), text.size());
    return where;
  }

 private:
  std::size_t page_, size_;
  char* mapped_;
};

}  // namespace support
