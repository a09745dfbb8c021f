#include "support/entry_table.hpp"

#include <cmath>
#include <cstring>
namespace support {

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
