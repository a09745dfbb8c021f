#include "support/entry_table.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace support {
namespace {

using explorer::nature;
using explorer::type_code;
using explorer::type_of;

struct binary {
  int fraction_bits, bias, exponent_mask;
  std::uint64_t sign() const { return exponent_bits() << 1 & ~exponent_bits(); }
  std::uint64_t exponent_bits() const {
    return static_cast<std::uint64_t>(exponent_mask) << fraction_bits;
  }
  std::uint64_t fraction_mask() const { return (std::uint64_t{1} << fraction_bits) - 1; }
};
constexpr binary single_format{23, 127, 0xFF}, double_format{52, 1023, 0x7FF};

std::uint64_t composed(const binary& f, bool negative, int exponent, std::uint64_t fraction) {
  const int field = std::clamp(exponent + f.bias, 0, f.exponent_mask);
  return (negative ? f.sign() : 0) | static_cast<std::uint64_t>(field) << f.fraction_bits |
         (fraction & f.fraction_mask());
}

/// A value of a range: the interpolation runs on the x87, whose steps are the same in all builds.
std::uint64_t within(const binary& f, sample range, generator& random) {
  const long double fraction = static_cast<long double>(random() >> 11) * 0x1p-53L;
  const long double low = range.low, high = range.high;
  const long double value = low + (high - low) * fraction;
  std::uint64_t bits = 0;
  if (f.fraction_bits == 23) {
    const float stored = static_cast<float>(value);
    std::memcpy(&bits, &stored, sizeof stored);
  } else {
    const double stored = static_cast<double>(value);
    std::memcpy(&bits, &stored, sizeof stored);
  }
  return bits;
}

std::uint64_t special(const binary& f, generator& random) {
  const std::uint64_t quiet = f.exponent_bits() | (f.fraction_mask() + 1) >> 1;
  const std::uint64_t one = static_cast<std::uint64_t>(f.bias) << f.fraction_bits;
  const std::uint64_t values[] = {0,
                                  1,
                                  f.fraction_mask(),
                                  f.fraction_mask() + 1,
                                  f.exponent_bits() - 1,
                                  f.exponent_bits(),
                                  f.exponent_bits() | 1,
                                  f.exponent_bits() | f.fraction_mask() >> 3,
                                  quiet,
                                  quiet | 0x1234,
                                  one,
                                  one - 1,
                                  one + 1};
  return values[random.below(std::size(values))] | (random() & f.sign());
}

/// An exponent at which some function changes its way, with an extreme or random fraction.
std::uint64_t edge(const binary& f, generator& random) {
  constexpr int exponents[] = {-1074, -1022, -149, -126, -61, -54, -53, -33, -30, -27, -24,  -16,
                               -10,   -5,    -4,   -3,   -2,  -1,  0,   1,   2,   3,   4,    5,
                               6,     7,     8,    9,    10,  15,  22,  23,  24,  30,  31,   32,
                               51,    52,    53,   54,   61,  62,  63,  64,  126, 127, 1022, 1023};
  const int exponent = exponents[random.below(std::size(exponents))];
  const std::uint64_t fractions[] = {0, 1, f.fraction_mask(), random(), random()};
  const std::uint64_t fraction = fractions[random.below(std::size(fractions))];
  return composed(f, random() & 1, exponent, fraction);
}

/// A multiple of one half or a unit in the last place beside it.
std::uint64_t half_way(const binary& f, generator& random) {
  const std::uint64_t size = random() >> (64 - 1 - random.below(14));
  if (size == 0) return random() & f.sign();
  const int top = 63 - __builtin_clzll(size);
  const std::uint64_t bits = composed(f, random() & 1, top - 1, size << (f.fraction_bits - top));
  return bits + random.below(3) - 1;
}

std::uint64_t real(const binary& f, sample range, spread over, generator& random) {
  switch (over == spread::sampled ? 9 : random.below(10)) {
    case 0:
      return special(f, random);
    case 1:
      return random() & (f.sign() | (f.sign() - 1));
    case 2:
      return edge(f, random);
    case 3:
      return half_way(f, random);
    case 4:
      return composed(f, random() & 1, static_cast<int>(random.below(61)) - 30, random());
    case 5:
    case 6:
      return composed(f, random() & 1, static_cast<int>(random.below(11)) - 6, random());
    default:
      if (!(range.low < range.high)) range = {-10, 10};
      return within(f, range, random);
  }
}

/// hi as any REAL*8; lo zero, a tail below half a unit of hi, or anything.
void pair(unsigned char* at, sample range, spread over, generator& random) {
  const std::uint64_t hi = real(double_format, range, over, random);
  std::uint64_t lo = 0;
  switch (over == spread::sampled ? 7 : random.below(8)) {
    case 0:
      lo = random() & double_format.sign();
      break;
    case 1:
      lo = real(double_format, {}, over, random);
      break;
    default: {
      const int exponent = static_cast<int>(hi >> 52 & 0x7FF) - 1023;
      const int below = 54 + static_cast<int>(random.below(4) == 0 ? random.below(60) : 0);
      if (exponent - below > -1074)
        lo = composed(double_format, random() & 1, exponent - below, random());
    }
  }
  std::memcpy(at, &hi, 8);
  std::memcpy(at + 8, &lo, 8);
}

/// An end of a range of integers, which may be one of unsigned ones.
std::uint64_t bits_of(double whole) {
  return whole < 0 ? static_cast<std::uint64_t>(static_cast<std::int64_t>(whole))
                   : static_cast<std::uint64_t>(whole);
}

std::int64_t integer(int width, sample range, spread over, generator& random) {
  constexpr std::int64_t marks[] = {0,  1,  -1, 2,  -2, 3,  7,  8,  9,   15,  16,  17,  30,  31,
                                    32, 33, 62, 63, 64, 65, -8, -9, -16, -17, -31, -32, -33, -64};
  const std::int64_t lowest = -1 - static_cast<std::int64_t>(~std::uint64_t{0} >> (65 - width));
  if (over == spread::sampled && !(range.low < range.high))
    return static_cast<std::int64_t>(random());
  switch (over == spread::sampled ? 7 : random.below(8)) {
    case 0:
      return marks[random.below(std::size(marks))];
    case 1: {
      const std::int64_t ends[] = {lowest, lowest + 1, -1 - lowest, -2 - lowest};
      return ends[random.below(std::size(ends))];
    }
    case 2:
      return static_cast<std::int64_t>(random());
    case 3:
    case 4:  // every order of magnitude
      return static_cast<std::int64_t>(random()) >> random.below(64);
    case 5:
      return static_cast<std::int64_t>(random.below(140)) - 70;
    default:
      if (!(range.low < range.high)) return static_cast<std::int64_t>(random.below(40)) - 4;
      const auto low = bits_of(range.low);
      return static_cast<std::int64_t>(low + random() % (bits_of(range.high) - low + 1));
  }
}

}  // namespace

void fill(workspace& room, generator& random) {
  for (auto& text : room.text)
    for (char& c : text) c = "    aab\x01\xE9"[random.below(9)];
  if (random() & 1) {  // the same up to one character
    room.text[1] = room.text[0];
    room.text[1][random.below(workspace::longest_text)] = ' ';
  }
  for (char& c : room.target) c = static_cast<char>(random());
  for (auto& value : room.integers)
    value = static_cast<std::int32_t>(integer(32, {}, spread::everywhere, random));
  auto* const rows = reinterpret_cast<unsigned char*>(room.table.data());
  for (std::size_t at = 0; at < sizeof room.table; at += 16)
    pair(rows + at, {}, spread::everywhere, random);
  pair(reinterpret_cast<unsigned char*>(room.written.data()), {}, spread::everywhere, random);
}

operand draw(char code, sample range, spread over, generator& random, workspace& room) {
  operand drawn;
  unsigned char* const bytes = drawn.bytes.data();
  const type_code& type = type_of(code);
  const auto put = [&](const auto& value) { std::memcpy(bytes, &value, sizeof value); };
  switch (type.is) {
    case nature::integer: {
      const std::int64_t value = integer(8 * type.size, range, over, random);
      std::memcpy(bytes, &value, static_cast<std::size_t>(type.size));
      break;
    }
    case nature::real: {
      const int width = type.size / type.parts;
      for (int part = 0; part < type.parts; ++part) {
        const std::uint64_t image =
            real(width == 4 ? single_format : double_format, range, over, random);
        std::memcpy(bytes + width * part, &image, static_cast<std::size_t>(width));
      }
      break;
    }
    case nature::pair:
      for (int at = 0; at < type.size; at += 16) pair(bytes + at, range, over, random);
      break;
    case nature::length:
      put(over == spread::everywhere
              ? static_cast<std::int32_t>(random.below(workspace::longest_text + 2)) - 1
              : static_cast<std::int32_t>(range.low < range.high ? integer(32, range, over, random)
                                                                 : random.below(33)));
      break;
    case nature::text:
      put(room.text[random.below(2)].data() + (over == spread::everywhere ? random.below(4) : 0));
      break;
    case nature::target:
    case nature::memory:  // one byte in front belongs to it
      put(room.target.data() + 8);
      break;
    case nature::optional_integer:
      put(random.below(3) == 0 ? nullptr : &room.integers[random.below(4)]);
      break;
    case nature::read_integer:
    case nature::written_integer:
      put(&room.integers[random.below(4)]);
      break;
    case nature::table:
      put(room.table.data());
      break;
    case nature::written_pair:
      put(room.written.data());
      break;
    case nature::none:
      break;
  }
  return drawn;
}

void draw(const entry& e, generator& random, tuple& call) {
  if (std::any_of(e.codes.begin(), e.codes.end(),
                  [](char code) { return type_of(code).is_address(); }))
    fill(call.room, random);
  const bool with_table = e.codes.find('T') != std::string_view::npos;
  for (std::size_t i = 0; i < e.codes.size(); ++i) {
    call.operands[i] = draw(e.codes[i], e.samples[i], spread::everywhere, random, call.room);
    if (!with_table || e.codes[i] != 'i') continue;
    const auto degree = static_cast<std::int32_t>(random.below(workspace::table_rows + 1)) - 1;
    std::memcpy(call.operands[i].bytes.data(), &degree, sizeof degree);
  }
}

}  // namespace support
