// Zero extension, bit operations, MVBITS and shifts by kind, against a model that moves single
// bits.

#include <gtest/gtest.h>

#include <random>

#include "entries.hpp"

namespace {

using std::int16_t;
using std::int32_t;
using std::int64_t;
using std::uint64_t;

/// A number as its bits: below 0 the model reads 0, above the top copies of the sign.
class pattern {
 public:
  template <class Kind>
  explicit pattern(Kind x) : bits_(static_cast<uint64_t>(x)), width_(sizeof(Kind) * 8) {}

  bool at(int64_t i) const {
    if (i < 0) return false;
    return bits_ >> (i < width_ ? i : width_ - 1) & 1;
  }
  void set(int64_t i, bool value) {
    if (i >= 0 && i < 64) bits_ = (bits_ & ~(uint64_t{1} << i)) | uint64_t{value} << i;
  }
  template <class Kind>
  Kind as() const {
    return static_cast<Kind>(bits_);
  }

 private:
  uint64_t bits_;
  int64_t width_;
};

template <class Kind>
Kind with_bit(Kind x, int64_t position, bool value) {
  pattern bits(x);
  bits.set(position, value);
  return bits.as<Kind>();
}

template <class Kind>
Kind field(Kind x, int64_t position, int64_t length) {
  pattern from(x), to(int64_t{0});
  for (int64_t i = 0; i < length; ++i) to.set(i, from.at(position + i));
  return to.as<Kind>();
}

/// Zero fill, on the bits of the kind alone.
template <class Kind>
Kind shifted(Kind x, int64_t count) {
  constexpr int64_t width = sizeof(Kind) * 8;
  pattern from(x), to(Kind{0});
  for (int64_t i = 0; i < width; ++i)
    if (i - count >= 0 && i - count < width) to.set(i, from.at(i - count));
  return to.as<Kind>();
}

template <class Kind>
Kind rotated(Kind x, int64_t count, int64_t size) {
  pattern from(x), to(x);
  for (int64_t i = 0; i < size; ++i) to.set(((i + count) % size + size) % size, from.at(i));
  return to.as<Kind>();
}

}  // namespace

TEST(ZeroExtension, ReadsTheBytesOfItsStem) {
  const auto x = static_cast<int32_t>(0xFFFF8080);
  EXPECT_EQ(__zorvik_zext(x), 0x8080);
  EXPECT_EQ(__zorvik_izext(x), 0x80);
  EXPECT_EQ(__zorvik_izext2(x), 0x8080);
  EXPECT_EQ(__zorvik_jzext(x), 0x80);
  EXPECT_EQ(__zorvik_jzext2(x), 0x8080);
}

TEST(LogicalOperations, KeepTheirWidth) {
  std::mt19937_64 random(61);
  for (int i = 0; i < 10000; ++i) {
    const auto k = static_cast<int64_t>(random()), l = static_cast<int64_t>(random());
    const auto a = static_cast<int32_t>(k), b = static_cast<int32_t>(l);
    const auto h = static_cast<int16_t>(a), g = static_cast<int16_t>(b);
    ASSERT_EQ(__zorvik_iiand(a, b), h & g);
    ASSERT_EQ(__zorvik_iior(a, b), h | g);
    ASSERT_EQ(__zorvik_iieor(a, b), h ^ g);
    ASSERT_EQ(__zorvik_inot(a), ~h);
    for (const auto of : {__zorvik_iand, __zorvik_jiand}) ASSERT_EQ(of(a, b), a & b);
    for (const auto of : {__zorvik_ior, __zorvik_jior}) ASSERT_EQ(of(a, b), a | b);
    for (const auto of : {__zorvik_ieor, __zorvik_jieor}) ASSERT_EQ(of(a, b), a ^ b);
    for (const auto of : {__zorvik_not, __zorvik_jnot}) ASSERT_EQ(of(a), ~a);
    ASSERT_EQ(__zorvik_kiand(k, l), k & l);
    ASSERT_EQ(__zorvik_kior(k, l), k | l);
    ASSERT_EQ(__zorvik_kieor(k, l), k ^ l);
    ASSERT_EQ(__zorvik_knot(k), ~k);
  }
}

TEST(SingleBits, StandModulo32OrAsTheyAre) {
  std::mt19937_64 random(62);
  for (int i = 0; i < 3000; ++i) {
    const auto k = static_cast<int64_t>(random());
    const auto a = static_cast<int32_t>(k);
    const auto h = static_cast<int16_t>(a);
    for (int32_t p = -40; p < 80; ++p) {
      const int32_t q = p & 31;
      ASSERT_EQ(__zorvik_ibset(a, p), with_bit(a, q, true)) << a << ' ' << p;
      ASSERT_EQ(__zorvik_ibclr(a, p), with_bit(a, q, false)) << a << ' ' << p;
      ASSERT_EQ(__zorvik_btest(a, p), pattern(a).at(q)) << a << ' ' << p;
      ASSERT_EQ(__zorvik_jibset(a, p), __zorvik_ibset(a, p));
      ASSERT_EQ(__zorvik_jibclr(a, p), __zorvik_ibclr(a, p));
      ASSERT_EQ(__zorvik_bjtest(a, p), __zorvik_btest(a, p));
      // The upper half of the slots is ignored.
      ASSERT_EQ(__zorvik_iibset(a, p ^ 0x50000), with_bit(h, q, true)) << h << ' ' << p;
      ASSERT_EQ(__zorvik_iibclr(a, p ^ 0x50000), with_bit(h, q, false)) << h << ' ' << p;
      ASSERT_EQ(__zorvik_bitest(a, p ^ 0x50000), pattern(h).at(q)) << h << ' ' << p;
      const bool inside = p >= 0 && p < 64;
      ASSERT_EQ(__zorvik_kibset(k, p), inside ? with_bit(k, p, true) : k) << k << ' ' << p;
      ASSERT_EQ(__zorvik_kibclr(k, p), inside ? with_bit(k, p, false) : k) << k << ' ' << p;
      ASSERT_EQ(__zorvik_bktest(k, p), pattern(k).at(inside ? p : 63)) << k << ' ' << p;
    }
  }
}

TEST(BitFields, FillWithTheSign) {
  std::mt19937_64 random(63);
  for (int i = 0; i < 300; ++i) {
    const auto k = static_cast<int64_t>(random());
    const auto a = static_cast<int32_t>(k);
    const auto h = static_cast<int16_t>(a);
    const auto b = static_cast<std::int8_t>(a);
    for (int32_t pos = -3; pos < 70; ++pos)
      for (int32_t len = -3; len < 70; ++len) {
        const auto width_of = [len](int32_t width) { return len == width ? 64 : len & 31; };
        ASSERT_EQ(__zorvik_ibits(a, pos, len), field(a, pos & 31, width_of(32)))
            << a << ' ' << pos << ' ' << len;
        ASSERT_EQ(__zorvik_jibits(a, pos, len), __zorvik_ibits(a, pos, len));
        ASSERT_EQ(__zorvik_iibits(a, pos, len), field(h, pos & 31, width_of(16)))
            << h << ' ' << pos << ' ' << len;
        ASSERT_EQ(__zorvik_hibits(a, pos, len), field(b, pos & 31, width_of(8)))
            << int{b} << ' ' << pos << ' ' << len;
        const int32_t k_pos = pos < 0 ? 63 : pos, k_len = len < 0 ? 64 : len;
        ASSERT_EQ(__zorvik_kibits(k, pos, len), field(k, k_pos, k_len))
            << k << ' ' << pos << ' ' << len;
      }
  }
}

TEST(MoveBits, MovesAFieldInFourSpellings) {
  const auto moved = [](int32_t from, int32_t frompos, int32_t len, int32_t to, int32_t topos) {
    for (int32_t i = 0; i < len && i < 32; ++i)
      if ((topos & 31) + i < 32)
        to = with_bit(to, (topos & 31) + i, pattern(from).at((frompos & 31) + i));
    return to;
  };
  std::mt19937_64 random(64);
  for (const auto spelling : {_mvbits, _mvbits_, _MVBITS, _MVBITS_})
    for (int i = 0; i < 50000; ++i) {
      const auto from = static_cast<int32_t>(random());
      const auto frompos = static_cast<int32_t>(random() % 70) - 3;
      const auto len = static_cast<int32_t>(random() % 40) - 3;
      const auto topos = static_cast<int32_t>(random() % 70) - 3;
      const auto before = static_cast<int32_t>(random());
      int32_t to = before;
      spelling(&from, &frompos, &len, &to, &topos);
      ASSERT_EQ(to, moved(from, frompos, len, before, topos))
          << from << ' ' << frompos << ' ' << len << ' ' << before << ' ' << topos;
    }
  // Any operand may be the target.
  const int32_t x = 0x12345678, four = 4;
  int32_t to = x;
  _mvbits(&to, &four, &four, &to, &four);
  EXPECT_EQ(to, x);
  to = 8;
  _mvbits(&x, &to, &to, &to, &to);
  EXPECT_EQ(to, 0x5608);
  to = x;
  _mvbits(&to, &four, &to, &to, &four);
  EXPECT_EQ(to, moved(x, 4, 32, x, 4));
}

TEST(LogicalShifts, LoseWhatLeavesTheKind) {
  std::mt19937_64 random(65);
  for (int i = 0; i < 2000; ++i) {
    const auto k = static_cast<int64_t>(random());
    const auto a = static_cast<int32_t>(k);
    for (int32_t n = -70; n <= 70; ++n) {
      ASSERT_EQ(__zorvik_ishft(a, n), shifted(a, n)) << a << ' ' << n;
      ASSERT_EQ(__zorvik_jishft(a, n), shifted(a, n));
      ASSERT_EQ(__zorvik_shift(a, n), shifted(a, n));
      ASSERT_EQ(__zorvik_iishft(a, n ^ 0x50000), shifted(static_cast<int16_t>(a), n))
          << a << ' ' << n;
      ASSERT_EQ(__zorvik_hishft(a, n ^ 0x500), shifted(static_cast<std::int8_t>(a), n))
          << a << ' ' << n;
      ASSERT_EQ(__zorvik_kishft(k, n), shifted(k, n)) << k << ' ' << n;
    }
  }
}

TEST(CircularShifts, RotateTheFieldAlone) {
  std::mt19937_64 random(66);
  for (int i = 0; i < 300; ++i) {
    const auto k = static_cast<int64_t>(random());
    const auto a = static_cast<int32_t>(k);
    for (int32_t size = 1; size <= 64; ++size)
      for (const int32_t s : {0, 1, -1, size - 1, size, -size, size + 1, -size - 1, 3 * size,
                              static_cast<int32_t>(random() % 127) - 63}) {
        ASSERT_EQ(__zorvik_kishftc(k, s, size), rotated(k, s, size))
            << k << ' ' << s << ' ' << size;
        if (size > 32) continue;
        ASSERT_EQ(__zorvik_ishftc(a, s, size), rotated(a, s, size)) << a << ' ' << s << ' ' << size;
        ASSERT_EQ(__zorvik_jishftc(a, s, size), rotated(a, s, size));
        if (size > 16) continue;
        const auto h = rotated(static_cast<int16_t>(a), s, size);
        ASSERT_EQ(__zorvik_iishftc(a, s ^ 0x70000, size ^ 0x30000), h)
            << a << ' ' << s << ' ' << size;
        ASSERT_EQ(__zorvik_ishftc_k2(a, s ^ 0x70000, size ^ 0x30000), h);
        if (size > 8) continue;
        ASSERT_EQ(__zorvik_ishftc_k1(a, s ^ 0x700, size ^ 0x300),
                  rotated(static_cast<std::int8_t>(a), s, size))
            << a << ' ' << s << ' ' << size;
      }
  }
}
