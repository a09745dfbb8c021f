#pragma once

// Memory that ends, or begins, at a page without access: a read or write beyond an operand faults.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

namespace support {

class guarded {
 public:
  /// Room for `capacity` bytes between two protected pages.
  explicit guarded(std::size_t capacity)
      : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        size_((capacity + page_ - 1) / page_ * page_),
        mapped_(static_cast<char*>(
            mmap(nullptr, size_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
    if (mapped_ == MAP_FAILED || mprotect(begin(), size_, PROT_READ | PROT_WRITE) != 0)
      throw std::bad_alloc();
  }
  ~guarded() { munmap(mapped_, size_ + 2 * page_); }
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
