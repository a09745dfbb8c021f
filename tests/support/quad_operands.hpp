#pragma once

// REAL*16 operands where a guard or a special case decides.

#include <cmath>
#include <random>

#include "frame/entry.hpp"
#include "support/bits.hpp"

namespace support {

/// Draws parts of REAL*16 operands where a guard decides.
struct operand_source {
  std::mt19937_64 random;

  std::uint64_t below(std::uint64_t n) { return random() % n; }
  double power(int exponent) { return std::ldexp(below(2) ? 1.0 : -1.0, exponent); }
  double any(int low, int high) {
    const double significand = 1.0 + static_cast<double>(random() >> 12) * 0x1p-52;
    return significand *
           power(low + static_cast<int>(below(static_cast<unsigned>(high - low + 1))));
  }
  double at_an_edge() {
    static constexpr int edges[] = {-1022, -1000, -900, -800, -690, -560, -450, -400, -300,
                                    -256,  -225,  -220, -200, -128, -100, -90,  -53,  -4,
                                    -1,    0,     10,   20,   31,   53,   63,   100,  128,
                                    220,   225,   256,  300,  400,  450,  900,  1000, 1023};
    const double edge = power(edges[below(std::size(edges))]);
    const std::uint64_t image = bits(edge) + below(3) - 1;
    return below(2) ? from_bits(image) : edge;
  }
  double special() {
    static constexpr std::uint64_t images[] = {0,
                                               1,
                                               0x000FFFFFFFFFFFFF,
                                               0x7FEFFFFFFFFFFFFF,
                                               0x7FF0000000000000,
                                               0x7FF0000000000001,
                                               0x7FF8000000000123};
    return from_bits(images[below(std::size(images))] | below(2) << 63);
  }
  double part(int low, int high) {
    switch (below(8)) {
      case 0:
        return at_an_edge();
      case 1:
        return below(4) ? any(-1074, 1023) : special();
      case 2:
        return static_cast<double>(static_cast<int>(below(2001)) - 1000) * 0.5;
      default:
        return any(low, high);
    }
  }
  zrt::quad number(int low, int high) {
    const double hi = part(low, high);
    const int exponent = std::ilogb(std::isfinite(hi) && hi != 0 ? hi : 1.0);
    switch (below(10)) {
      case 8:  // exact products and quotients, so that the low parts decide
        return {power(static_cast<int>(below(621)) - 310),
                power(static_cast<int>(below(621)) - 310)};
      case 9:
        return {power(static_cast<int>(below(7)) - 3), any(-1074, -960)};
      case 0:
        return {hi, below(2) ? 0.0 : -0.0};
      case 1:
        return {hi, part(low, high)};
      case 2:
        return {hi, below(2) ? -hi : from_bits(bits(-hi) + below(5) - 2)};
      case 3:
        return {hi, power(exponent - 53 - static_cast<int>(below(900)))};
      default:
        return {hi, any(exponent - 60, exponent - 54)};
    }
  }
  zrt::quad partner(const zrt::quad& a, int low, int high) {
    const zrt::quad b = number(low, high);
    return below(4) ? b : zrt::quad{-a.hi, below(2) ? b.lo : -a.lo};
  }
};

}  // namespace support
