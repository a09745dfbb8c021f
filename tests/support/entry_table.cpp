#include "support/entry_table.hpp"

#include <cmath>
#include <cstring>
#include <vector>

#define ZRT_DATA(...)
#define ZRT_VALUE_ENTRY(symbol, ...) extern "C" void symbol();
#define ZRT_REFERENCE_ENTRY ZRT_VALUE_ENTRY
#define ZRT_PLAIN_ENTRY ZRT_VALUE_ENTRY
#include "entry_table.inc"
#undef ZRT_VALUE_ENTRY
#undef ZRT_REFERENCE_ENTRY
#undef ZRT_PLAIN_ENTRY

namespace support {

#define BARE(...) __VA_ARGS__
#define ROW(form, symbol, stem, family, result, codes, samples) \
  {#symbol, stem, family, form, result, codes, {BARE samples}, symbol},
#define ZRT_VALUE_ENTRY(...) ROW(form::value, __VA_ARGS__)
#define ZRT_REFERENCE_ENTRY(...) ROW(form::reference, __VA_ARGS__)
#define ZRT_PLAIN_ENTRY(...) ROW(form::plain, __VA_ARGS__)

std::span<const entry> all_entries() {
  static const std::vector<entry> entries = {
#include "entry_table.inc"
  };
  return entries;
}

int size_of(char code) {
  switch (code) {
    case 'b':
      return 1;
    case 'w':
      return 2;
    case 'i':
    case 'f':
    case 'n':
      return 4;
    case 'k':
    case 'u':
    case 'd':
    case 'c':
      return 8;
    case 'z':
    case 'q':
      return 16;
    case 'x':
      return 32;
    case 'v':
      return 0;
    default:
      return static_cast<int>(sizeof(void*));
  }
}

bool same_in_both_forms(char code) {
  return std::string_view("aAnmLPITQ").find(code) != std::string_view::npos;
}

operand draw(char code, sample bounds, std::mt19937& random, workspace& room) {
  operand drawn;
  const bool given = bounds.low < bounds.high;
  const auto put = [&](auto value, std::size_t offset = 0) {
    std::memcpy(drawn.bytes.data() + offset, &value, sizeof value);
  };
  const auto real = [&] {
    return given ? std::uniform_real_distribution<double>(bounds.low, bounds.high)(random)
                 : std::uniform_real_distribution<double>(-10, 10)(random);
  };
  const auto integer = [&]() -> std::int64_t {
    if (given) return static_cast<std::int64_t>(std::floor(real()));
    return static_cast<std::int64_t>(std::uint64_t{random()} << 32 | random());
  };
  const auto head_and_tail = [&](std::size_t offset) {
    const double head = real();
    const double tail = head * 0x1p-54 * std::uniform_real_distribution<double>(-1, 1)(random);
    put(head, offset);
    put(tail, offset + 8);
  };
  switch (code) {
    case 'b':
      put(static_cast<std::int8_t>(integer()));
      break;
    case 'w':
      put(static_cast<std::int16_t>(integer()));
      break;
    case 'i':
      put(static_cast<std::int32_t>(integer()));
      break;
    case 'k':
    case 'u':
      put(integer());
      break;
    case 'f':
      put(static_cast<float>(real()));
      break;
    case 'd':
      put(real());
      break;
    case 'c':
      put(static_cast<float>(real()));
      put(static_cast<float>(real()), 4);
      break;
    case 'z':
      put(real());
      put(real(), 8);
      break;
    case 'q':
      head_and_tail(0);
      break;
    case 'x':
      head_and_tail(0);
      head_and_tail(16);
      break;
    case 'a':
      put(room.text[random() % 2].data());
      break;
    case 'A':
      put(room.target.data());
      break;
    case 'n':
      put(static_cast<std::int32_t>(given ? integer() : random() % 33));
      break;
    case 'm':
      put(room.target.data());
      break;
    case 'L':
    case 'P':
    case 'I':
      put(room.integers.data() + random() % room.integers.size());
      break;
    case 'T':
      put(room.table.data());
      break;
    case 'Q':
      put(room.written.data());
      break;
    default:
      break;
  }
  return drawn;
}

}  // namespace support
