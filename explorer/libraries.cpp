#include "libraries.hpp"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace explorer {

#if defined(_WIN32)
library::library(const char*, const char* dll) : file_(dll) {
  if (dll != nullptr) handle_ = reinterpret_cast<void*>(LoadLibraryA(dll));
}
void (*library::find(const std::string& name) const)() {
  if (handle_ == nullptr) return nullptr;
  return reinterpret_cast<void (*)()>(
      GetProcAddress(reinterpret_cast<HMODULE>(handle_), name.c_str()));
}
#else
library::library(const char* elf, const char*) : file_(elf) { handle_ = dlopen(elf, RTLD_NOW); }
void (*library::find(const std::string& name) const)() {
  if (handle_ == nullptr) return nullptr;
  return reinterpret_cast<void (*)()>(dlsym(handle_, name.c_str()));
}
#endif

const library& c_library() {
  static const library one("libm.so.6", nullptr);
  return one;
}
const library& libquadmath() {
  static const library one("libquadmath.so.0", "libquadmath-0.dll");
  return one;
}
const library& libmpfr() {
  static const library one("libmpfr.so.6", "libmpfr-6.dll");
  return one;
}
const library& libmpc() {
  static const library one("libmpc.so.3", "libmpc-3.dll");
  return one;
}

}  // namespace explorer
