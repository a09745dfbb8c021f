#include "callable.hpp"

#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

#include "zorvikrt/zorvikrt.h"

namespace explorer {
namespace {

// On i386 operands are passed as 32-bit words and REAL results taken as they stand on the FPU
// stack: a double that the compiler moves may go through the FPU, which quiets a signalling NaN.
#if defined(__i386__)
template <class A>
struct passed {
  std::uint32_t word[(sizeof(A) + 3) / 4];
};
template <class R>
using taken =
    std::conditional_t<std::is_floating_point_v<R>, long double,
                       std::conditional_t<std::is_same_v<R, zorvikrt_complex8>, std::uint64_t, R>>;
#else
template <class A>
using passed = A;
template <class R>
using taken = R;
#endif

template <class A>
passed<A> argument(char code, const image& operand, bool by_address) {
  passed<A> value;
  if constexpr (std::is_pointer_v<A>) {
    if (by_address && !same_in_both_forms(code)) {
      const void* address = operand.bytes.data();
      std::memcpy(&value, &address, sizeof address);
      return value;
    }
  }
  if constexpr (sizeof(A) < sizeof value) {  // a narrow integer fills its slot
    A narrow;
    std::memcpy(&narrow, operand.bytes.data(), sizeof narrow);
    const std::int32_t slot = narrow;
    std::memcpy(&value, &slot, sizeof slot);
  } else {
    std::memcpy(&value, operand.bytes.data(), sizeof value);
  }
  return value;
}

template <class R>
void keep(outcome& out, const taken<R>& value) {
#if defined(__i386__)
  if constexpr (std::is_floating_point_v<R>) {
    const R rounded = static_cast<R>(value);
    std::memcpy(out.result.bytes.data(), &rounded, sizeof rounded);
    std::memcpy(out.register_image.data(), &value, out.register_image.size());
    out.in_register = true;
    return;
  }
#endif
  std::memcpy(out.result.bytes.data(), &value, sizeof value);
}

unsigned raised() {
  std::uint16_t status;
  asm volatile("fnstsw %0" : "=a"(status));
  return status & 0x3Fu;
}

/// Calls an entry whose public declaration is R(A...).
template <class R, class... A>
outcome invoke(const entry& e, const image* operands) {
  outcome out;
  const auto function = reinterpret_cast<taken<R> (*)(passed<A>...)>(e.address);
  const bool by_address = e.kind == form::reference;
  image area;
  if (sizeof...(A) > e.codes.size()) {
    const void* address = out.result.bytes.data();
    std::memcpy(area.bytes.data(), &address, sizeof address);
  }
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    const std::size_t leading = sizeof...(A) - e.codes.size();
    std::tuple<passed<A>...> arguments{
        (I < leading ? argument<A>('A', area, false)
                     : argument<A>(e.codes[I - leading], operands[I - leading], by_address))...};
    asm volatile("fnclex");
    if constexpr (std::is_void_v<R>) {
      std::apply(function, arguments);
      out.flags = raised();
    } else {
      const taken<R> value = std::apply(function, arguments);
      out.flags = raised();
      if (leading == 0) keep<R>(out, value);
    }
  }
  (std::index_sequence_for<A...>{});
  return out;
}

template <class R, class... A>
constexpr auto invoker(R (*)(A...)) {
  return &invoke<R, A...>;
}

template <class R, class... A>
void (*bare(R (*function)(A...)))() {
  return reinterpret_cast<void (*)()>(function);
}

}  // namespace

#define BARE(...) __VA_ARGS__
#define ROW(form, symbol, stem, family, result, codes, samples) \
  {stem, family, form, result, codes, {BARE samples}, bare(&symbol), invoker(&symbol)},
#define ZRT_VALUE_ENTRY(...) ROW(form::value, __VA_ARGS__)
#define ZRT_REFERENCE_ENTRY(...) ROW(form::reference, __VA_ARGS__)
#define ZRT_PLAIN_ENTRY(...) ROW(form::plain, __VA_ARGS__)
#define ZRT_DATA(...)

std::span<const entry> entries() {
  static const entry all[] = {
#include "entry_table.inc"
  };
  return all;
}

const description& description_of(const entry& e) {
  static constexpr description all[] = {
#define ZRT_DESCRIPTION(names, documentation) {names, documentation},
#include "entry_descriptions.inc"
#undef ZRT_DESCRIPTION
  };
  return all[&e - entries().data()];
}

#undef ZRT_VALUE_ENTRY
#undef ZRT_REFERENCE_ENTRY
#undef ZRT_PLAIN_ENTRY
#undef ZRT_DATA
#define ZRT_VALUE_ENTRY(...)
#define ZRT_REFERENCE_ENTRY(...)
#define ZRT_PLAIN_ENTRY(...)
#define ZRT_DATA(symbol, width, bits) {#symbol, width, image_of(symbol)},

template <class T>
static std::uint64_t image_of(const T& variable) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &variable, sizeof variable);
  return bits;
}

std::span<const constant> constants() {
  static const constant all[] = {
#include "entry_table.inc"
  };
  return all;
}

}  // namespace explorer
