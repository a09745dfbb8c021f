#pragma once

// Functions of libraries that may be missing.

#include <initializer_list>
#include <string>

namespace explorer {

/// A REAL in IEEE quadruple precision, as the compiler computes it; real and imaginary part.
using wide = __float128;
typedef _Complex float wide_complex __attribute__((mode(TC)));

class library {
 public:
  /// By the file name on Linux and on Windows; without one the library is missing.
  library(const char* elf, const char* dll);

  explicit operator bool() const { return handle_ != nullptr; }
  const char* file() const { return file_; }

  /// Null where the library or the function is missing.
  void (*find(const std::string& name) const)();
  template <class F>
  F* get(const std::string& name) const {
    return reinterpret_cast<F*>(find(name));
  }

 private:
  const char* file_;
  void* handle_ = nullptr;
};

const library& c_library();
const library& libquadmath();
const library& libmpfr();
const library& libmpc();

}  // namespace explorer
