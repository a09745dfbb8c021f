// Loads the library while another thread runs: that thread keeps the system's floating-point state
// (x87 64 bits, no flush to zero), the loading one has the library's. On x86-64 both get the same
// bits for ordinary operands.
//
//   zorvikrt_older_thread LIBRARY

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <future>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

struct quad {
  double hi, lo;
};

struct state {
  std::uint16_t word;
  std::uint32_t mxcsr;
};
state current() {
  state now;
  asm volatile("fnstcw %0\n\tstmxcsr %1" : "=m"(now.word), "=m"(now.mxcsr));
  return now;
}

/// Functions by the size of operands that they compute on doubles.
const char* const small_real8[] = {"dasin", "dacos", "dasind", "dacosd", "dsinh", "dtanh", nullptr};
const char* const small_real4[] = {"asin", "acos", "asind", "acosd", "sinh", "tanh", nullptr};
const char* const of_real8[] = {"dint",  "dabs",   "dnint", "f90floor", "f90ceil", "dexp",
                                "dlog",  "dlog10", "dsqrt", "dsin",     "dcos",    "dtan",
                                "dcot",  "dsind",  "dcosd", "dtand",    "datan",   "datand",
                                "dsign", "ddim",   "dmod",  nullptr};
const char* const of_real4[] = {"aint", "abs",    "anint", "f90floorf", "f90ceilf", "exp",
                                "alog", "alog10", "sqrt",  "sin",       "cos",      "tan",
                                "sind", "cosd",   "tand",  "atan",      "atand",    "sign",
                                "dim",  "amod",   "ftof",  nullptr};
const char* const of_real16[] = {"qadd", "qsub", "qmul", "qdiv",  "sqrtl", "expl", "logl",
                                 "sinl", "cosl", "tanl", "atanl", "sinhl", "powl", nullptr};

template <class T>
T of(double x, double y) {
  if constexpr (std::is_same_v<T, quad>) {
    const double hi = x + y * 0x1p-60;
    return {hi, x - hi + y * 0x1p-60};
  } else {
    return static_cast<T>(x);
  }
}

using images = std::vector<std::array<std::uint64_t, 2>>;

/// The results of each function of a list over operands up to a limit. A function of one operand
/// leaves the second alone.
template <class T>
void call(void* library, const char* const* names, double limit, images& results) {
  std::mt19937_64 random(5);
  const auto draw = [&] { return limit * (static_cast<double>(random() >> 11) + 1) * 0x1p-53; };
  for (; *names != nullptr; ++names) {
    void* const entry = dlsym(library, (std::string("__zorvik_") + *names).c_str());
    if (entry == nullptr) std::printf("no entry %s\n", *names), std::exit(2);
    for (int i = 0; i < 2000; ++i) {
      const double a = draw(), b = draw();
      const T x = of<T>(a, b), y = of<T>(b, a);
      std::array<std::uint64_t, 2> image{};
      if constexpr (std::is_same_v<T, quad>) {
        quad result;
        reinterpret_cast<void* (*)(quad*, quad, quad)>(entry)(&result, x, y);
        std::memcpy(&image, &result, sizeof result);
      } else {
        const T result = reinterpret_cast<T (*)(T, T)>(entry)(x, y);
        std::memcpy(&image, &result, sizeof result);
      }
      results.push_back(image);
    }
  }
}

images call_all(void* library) {
  images results;
  call<double>(library, small_real8, 0.5, results);
  call<float>(library, small_real4, 0.5, results);
  call<double>(library, of_real8, 30, results);
  call<float>(library, of_real4, 30, results);
  call<quad>(library, of_real16, 30, results);
  return results;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  std::promise<void*> loaded;
  images in_older;
  state older_state{};
  std::thread older([&] {
    void* const library = loaded.get_future().get();
    older_state = current();
    in_older = call_all(library);
  });
  void* const library = dlopen(arguments[1], RTLD_NOW);
  if (library == nullptr) std::printf("%s\n", dlerror()), std::exit(2);
  loaded.set_value(library);
  older.join();
  const images here = call_all(library);
  const state loaders = current();
  // Bit 6 of the word reads as 1; the flags of MXCSR are no part of the state.
  if ((older_state.word & 0x0F3F) != 0x033F || (older_state.mxcsr & 0xFFC0) != 0x1F80 ||
      (loaders.word & 0x0F3F) != 0x023F || (loaders.mxcsr & 0xFFC0) != 0x9FC0) {
    std::printf("the threads run in states %04x %04x and %04x %04x\n", older_state.word,
                older_state.mxcsr, loaders.word, loaders.mxcsr);
    return 1;
  }
  std::size_t different = 0;
  for (std::size_t i = 0; i < here.size(); ++i)
    if (in_older[i] != here[i] && different++ < 5)
      std::printf("call %zu of a list: %016llx in the older thread, %016llx in the loading one\n",
                  i, static_cast<unsigned long long>(in_older[i][0]),
                  static_cast<unsigned long long>(here[i][0]));
  std::printf("%zu calls, %zu differ\n", here.size(), different);
  return different == 0 ? 0 : 1;
}
