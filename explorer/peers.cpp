#include "peers.hpp"

#include <cfenv>
#include <cmath>
#include <cstring>

#include "c_complex.hpp"
#include "numbers.hpp"

namespace explorer {
namespace {

template <class T>
using one = T(T);
template <class T>
using two = T(T, T);

template <class F>
void (*bare(F* function))() {
  return reinterpret_cast<void (*)()>(function);
}

/// The C library expects what a program starts with, not our precision control.
class plain_environment {
 public:
  plain_environment() {
    std::fegetenv(&ours_);
    std::fesetenv(FE_DFL_ENV);
  }
  ~plain_environment() { std::fesetenv(&ours_); }
  plain_environment(const plain_environment&) = delete;
  plain_environment& operator=(const plain_environment&) = delete;

 private:
  std::fenv_t ours_;
};

template <class T>
T loaded(const image& value, int at) {
  T part;
  std::memcpy(&part, value.bytes.data() + at, sizeof part);
  return part;
}

/// Calls a function over T or over C, its complex type.
template <class T, class C>
std::array<T, 2> called(shape is, void (*function)(), const entry& e, const image* operands) {
  const plain_environment environment;
  const auto real = [&](std::size_t i, int part) {
    const precise value = part_of(e.codes[i], operands[i], part);
    return static_cast<T>(value.head + value.rest);
  };
  const auto complex = [&](std::size_t i) {
    C value;
    __real__ value = real(i, 0);
    __imag__ value = real(i, 1);
    return value;
  };
  const auto parts = [](C value) { return std::array<T, 2>{__real__ value, __imag__ value}; };
  switch (is) {
    case shape::one:
      return {reinterpret_cast<T (*)(T)>(function)(real(0, 0))};
    case shape::two:
      return {reinterpret_cast<T (*)(T, T)>(function)(real(0, 0), real(1, 0))};
    case shape::modulus:
      return {reinterpret_cast<T (*)(C)>(function)(complex(0))};
    case shape::complex_one:
      return parts(reinterpret_cast<C (*)(C)>(function)(complex(0)));
    default:
      return parts(reinterpret_cast<C (*)(C, C)>(function)(complex(0), complex(1)));
  }
}

template <class T>
peer_answer answer_of(const std::array<T, 2>& parts, const entry& e) {
  image value;
  std::memcpy(value.bytes.data(), &parts, sizeof parts);
  return {{precise{parts[0]}, precise{parts[1]}}, decimal_of(e.result, value)};
}

/// With a function that writes a number: into a buffer of a size, with a format.
template <class Write>
std::optional<peer_answer> wide_answer(const counterpart& c, const entry& e, const image* operands,
                                       void (*function)(), Write write) {
  if (function == nullptr) return {};
  const std::array<wide, 2> parts = called<wide, wide_complex>(c.is, function, e, operands);
  char text[2][80];
  for (int i = 0; i < 2; ++i) write(text[i], sizeof text[i], parts[static_cast<std::size_t>(i)]);
  return peer_answer{
      {precise{parts[0]}, precise{parts[1]}},
      is_complex(e.result) ? std::string("(") + text[0] + ',' + text[1] + ')' : text[0]};
}

}  // namespace

std::span<const counterpart> counterparts() {
#define ROW(is, ...) {shape::is, __VA_ARGS__},
#define ZRT_REAL_PEER(is, f, d, q, name, mpfr) \
  ROW(is, #f " " #d " " #q, #name, #mpfr, bare<is<float>>(std::name), bare<is<double>>(std::name))
#define ZRT_COMPLEX_PEER(is, c, z, x, name, mpc) \
  ROW(is, #c " " #z " " #x, #name, #mpc, bare(::name##f), bare(::name))
#define ZRT_EXACT_REAL(is, stems, name, exact) ROW(is, stems, #name, #exact, nullptr, nullptr)
#define ZRT_EXACT_COMPLEX ZRT_EXACT_REAL
  static const counterpart all[] = {
#include "counterparts.inc"
  };
  return all;
}

precise part_of(char code, const image& value, int part) {
  if (type_of(code).is == nature::integer) {
    if (part != 0) return {};
    if (code == 'u') return {static_cast<wide>(loaded<std::uint64_t>(value, 0))};
    const int unused = 64 - 8 * size_of(code);
    return {static_cast<wide>(
        static_cast<std::int64_t>(loaded<std::uint64_t>(value, 0) << unused) >> unused)};
  }
  const bool pairs = type_of(code).is == nature::pair;
  const int size = pairs ? 16 : size_of(type_of(code).part);
  if (part * size >= size_of(code)) return {};
  if (size == 4) return {loaded<float>(value, 4 * part)};
  return {loaded<double>(value, size * part), pairs ? loaded<double>(value, size * part + 8) : 0};
}

wide scaled(wide value, long exponent) {
  for (const wide step = exponent < 0 ? 0x1p-512 : 0x1p512; std::labs(exponent) >= 512;) {
    if (value == 0 || value - value != 0) return value;
    value *= step;
    exponent += exponent < 0 ? 512 : -512;
  }
  return value * std::ldexp(1.0, static_cast<int>(exponent));
}

std::optional<peer_answer> c_library_answer(const counterpart& c, const entry& e,
                                            const image* operands) {
  if (type_of(e.result).is == nature::pair) {
    using writer = int(char*, std::size_t, const char*, wide);
    writer* const write = c_library().get<writer>("strfromf128");
    if (write == nullptr) return {};
    return wide_answer(
        c, e, operands, c_library().find(c.name + std::string("f128")),
        [&](char* text, std::size_t size, wide value) { write(text, size, "%.36g", value); });
  }
  const counterpart* row = &c;  // that has the functions
  if (c.single == nullptr)
    for (const counterpart& other : counterparts())
      if (other.single != nullptr && std::strcmp(other.name, c.name) == 0) row = &other;
  if (type_of(e.result).part == 'f')
    return answer_of(called<float, _Complex float>(c.is, row->single, e, operands), e);
  return answer_of(called<double, _Complex double>(c.is, row->twice, e, operands), e);
}

std::optional<peer_answer> libquadmath_answer(const counterpart& c, const entry& e,
                                              const image* operands) {
  using writer = int(char*, std::size_t, const char*, ...);
  writer* const write = libquadmath().get<writer>("quadmath_snprintf");
  if (write == nullptr) return {};
  return wide_answer(
      c, e, operands, libquadmath().find(c.name + std::string("q")),
      [&](char* text, std::size_t size, wide value) { write(text, size, "%.36Qg", value); });
}

}  // namespace explorer
