#pragma once

// Natural numbers of bounded size, for exact conversion between REAL*16 and decimal. They live on
// the stack; nothing is allocated.

#include <bit>
#include <cstdint>

namespace zrt::text {

template <int capacity>
class natural_of {
 public:
  explicit natural_of(std::uint64_t value = 0) {
    for (; value != 0; value >>= 32) limb_[size_++] = static_cast<std::uint32_t>(value);
  }
  natural_of(const natural_of& other) : size_(other.size_) {
    for (int i = 0; i < size_; ++i) limb_[i] = other.limb_[i];
  }
  natural_of& operator=(const natural_of& other) {
    size_ = other.size_;
    for (int i = 0; i < size_; ++i) limb_[i] = other.limb_[i];
    return *this;
  }

  static natural_of power_of_five(int exponent) {
    natural_of power(1);
    power.multiply_by_power_of_five(exponent);
    return power;
  }

  bool is_zero() const { return size_ == 0; }
  bool is_odd() const { return size_ != 0 && (limb_[0] & 1) != 0; }
  int bit_length() const {
    return size_ == 0 ? 0 : 32 * size_ - std::countl_zero(limb_[size_ - 1]);
  }
  /// The number below 2**64 that this is.
  std::uint64_t low64() const {
    return (size_ > 1 ? std::uint64_t{limb_[1]} << 32 : 0) | (size_ > 0 ? limb_[0] : 0);
  }
  bool bit(int position) const {
    const int limb = position / 32;
    return limb < size_ && (limb_[limb] >> position % 32 & 1) != 0;
  }
  bool has_bits_below(int position) const {
    const int whole = position / 32;
    for (int i = 0; i < whole && i < size_; ++i)
      if (limb_[i] != 0) return true;
    return whole < size_ && (limb_[whole] & ((1u << position % 32) - 1)) != 0;
  }

  /// Negative, zero or positive as a is less than, equal to or greater than b.
  static int compare(const natural_of& a, const natural_of& b) {
    if (a.size_ != b.size_) return a.size_ - b.size_;
    for (int i = a.size_ - 1; i >= 0; --i)
      if (a.limb_[i] != b.limb_[i]) return a.limb_[i] < b.limb_[i] ? -1 : 1;
    return 0;
  }

  natural_of& operator+=(const natural_of& other) {
    while (size_ < other.size_) limb_[size_++] = 0;
    std::uint64_t carry = 0;
    for (int i = 0; i < size_; ++i) {
      carry += std::uint64_t{limb_[i]} + (i < other.size_ ? other.limb_[i] : 0);
      limb_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    if (carry != 0) limb_[size_++] = 1;
    return *this;
  }

  /// `other` is not greater.
  natural_of& operator-=(const natural_of& other) {
    std::uint64_t borrow = 0;
    for (int i = 0; i < size_; ++i) {
      const std::uint64_t difference =
          std::uint64_t{limb_[i]} - (i < other.size_ ? other.limb_[i] : 0) - borrow;
      limb_[i] = static_cast<std::uint32_t>(difference);
      borrow = difference >> 63;
    }
    trim();
    return *this;
  }

  natural_of& operator<<=(int count) {
    if (size_ == 0 || count == 0) return *this;
    const int limbs = count / 32, bits = count % 32;
    limb_[size_] = 0;
    for (int i = size_; i >= 0; --i) {
      const std::uint32_t below = i > 0 ? limb_[i - 1] : 0;
      limb_[i + limbs] = bits == 0 ? limb_[i] : limb_[i] << bits | below >> (32 - bits);
    }
    for (int i = 0; i < limbs; ++i) limb_[i] = 0;
    size_ += limbs + 1;
    trim();
    return *this;
  }

  natural_of& operator>>=(int count) {
    const int limbs = count / 32, bits = count % 32;
    for (int i = limbs; i < size_; ++i) {
      const std::uint32_t above = i + 1 < size_ ? limb_[i + 1] : 0;
      limb_[i - limbs] = bits == 0 ? limb_[i] : limb_[i] >> bits | above << (32 - bits);
    }
    size_ = size_ > limbs ? size_ - limbs : 0;
    trim();
    return *this;
  }

  /// this * factor + addend.
  natural_of& multiply(std::uint32_t factor, std::uint32_t addend = 0) {
    std::uint64_t carry = addend;
    for (int i = 0; i < size_; ++i) {
      carry += std::uint64_t{limb_[i]} * factor;
      limb_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    if (carry != 0) limb_[size_++] = static_cast<std::uint32_t>(carry);
    return *this;
  }

  natural_of& multiply_by_power_of_five(int exponent) {
    for (; exponent >= 13; exponent -= 13) multiply(1220703125);  // 5**13
    std::uint32_t rest = 1;
    for (; exponent > 0; --exponent) rest *= 5;
    return multiply(rest);
  }

  /// Leaves the quotient, gives the remainder.
  std::uint32_t divide(std::uint32_t divisor) {
    std::uint64_t rest = 0;
    for (int i = size_ - 1; i >= 0; --i) {
      rest = rest << 32 | limb_[i];
      limb_[i] = static_cast<std::uint32_t>(rest / divisor);
      rest %= divisor;
    }
    trim();
    return static_cast<std::uint32_t>(rest);
  }

  /// Leaves the remainder, gives the quotient. Long division in base 2**32 (Knuth's algorithm D).
  natural_of divide(natural_of divisor) {
    natural_of quotient;
    if (compare(*this, divisor) < 0) return quotient;
    if (divisor.size_ == 1) {
      quotient = *this;
      *this = natural_of(quotient.divide(divisor.limb_[0]));
      return quotient;
    }
    // With the top bit of the divisor set, a digit guessed from two limbs is at most 2 too large.
    const int shift = std::countl_zero(divisor.limb_[divisor.size_ - 1]);
    divisor <<= shift;
    *this <<= shift;
    const int n = divisor.size_;
    const int digits = size_ - n + 1;
    limb_[size_] = 0;
    quotient.size_ = digits;
    const std::uint64_t top = divisor.limb_[n - 1], second = divisor.limb_[n - 2];
    for (int j = digits - 1; j >= 0; --j) {
      std::uint32_t* const part = limb_ + j;
      const std::uint64_t leading = std::uint64_t{part[n]} << 32 | part[n - 1];
      std::uint64_t digit = leading / top, rest = leading % top;
      while (digit >> 32 != 0 || digit * second > (rest << 32 | part[n - 2])) {
        --digit;
        rest += top;
        if (rest >> 32 != 0) break;
      }
      if (subtract_multiple(part, divisor, digit)) {
        --digit;
        add_back(part, divisor);
      }
      quotient.limb_[j] = static_cast<std::uint32_t>(digit);
    }
    quotient.trim();
    size_ = n;
    trim();
    *this >>= shift;
    return quotient;
  }

 private:
  /// part -= divisor * digit over n + 1 limbs; true if that went below zero.
  static bool subtract_multiple(std::uint32_t* part, const natural_of& divisor,
                                std::uint64_t digit) {
    std::uint64_t carry = 0;
    for (int i = 0; i < divisor.size_; ++i) {
      carry += digit * divisor.limb_[i];
      const std::uint32_t low = static_cast<std::uint32_t>(carry);
      carry = (carry >> 32) + (part[i] < low ? 1 : 0);
      part[i] -= low;
    }
    const bool below = part[divisor.size_] < carry;
    part[divisor.size_] -= static_cast<std::uint32_t>(carry);
    return below;
  }

  static void add_back(std::uint32_t* part, const natural_of& divisor) {
    std::uint64_t carry = 0;
    for (int i = 0; i < divisor.size_; ++i) {
      carry += std::uint64_t{part[i]} + divisor.limb_[i];
      part[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    part[divisor.size_] += static_cast<std::uint32_t>(carry);
  }

  void trim() {
    while (size_ > 0 && limb_[size_ - 1] == 0) --size_;
  }

  int size_ = 0;
  std::uint32_t limb_[capacity];  // lowest first, none above size_, the highest not zero
};

/// 6272 bits: 1401 decimal digits times 2**1075.
using natural = natural_of<196>;
/// 2560 bits: two doubles in units of 2**-1076 take 2100, times 10**40 another 133; and 40 digits
/// of 2**-1074 take its 5**364, 846 bits. A shift needs one limb more for a while.
using short_natural = natural_of<80>;

}  // namespace zrt::text
