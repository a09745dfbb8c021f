// 64-bit multiplication, division and remainder: the fast forms against the compiler's own
// arithmetic and against the slow forms.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "entries.hpp"

namespace {

using std::int64_t;
using std::uint64_t;

constexpr int64_t by_zero = INT64_MAX;
constexpr uint64_t unsigned_by_zero = UINT64_MAX;

int64_t wrapped(uint64_t x) { return static_cast<int64_t>(x); }
uint64_t raw(int64_t x) { return static_cast<uint64_t>(x); }

int64_t quotient(int64_t a, int64_t b) {
  if (b == 0) return by_zero;
  return b == -1 ? wrapped(0 - raw(a)) : a / b;
}
int64_t remainder(int64_t a, int64_t b) {
  if (b == 0) return by_zero;
  return b == -1 ? 0 : a % b;
}

void expect_all(int64_t a, int64_t b) {
  ASSERT_EQ(__zorvik_lmul(a, b), wrapped(raw(a) * raw(b))) << a << ' ' << b;
  ASSERT_EQ(__zorvik_slow_lmul(a, b), wrapped(raw(a) * raw(b))) << a << ' ' << b;
  ASSERT_EQ(__zorvik_ldiv(a, b), quotient(a, b)) << a << ' ' << b;
  ASSERT_EQ(__zorvik_slow_ldiv(a, b), quotient(a, b)) << a << ' ' << b;
  ASSERT_EQ(__zorvik_lmod(a, b), remainder(a, b)) << a << ' ' << b;
  ASSERT_EQ(__zorvik_slow_lmod(a, b), remainder(a, b)) << a << ' ' << b;
  const uint64_t u = raw(a), v = raw(b);
  const uint64_t fast_by_zero = a >= 0 ? raw(by_zero) : unsigned_by_zero;
  ASSERT_EQ(__zorvik_uldiv(u, v), v != 0 ? u / v : fast_by_zero) << u << ' ' << v;
  ASSERT_EQ(__zorvik_ulmod(u, v), v != 0 ? u % v : fast_by_zero) << u << ' ' << v;
  ASSERT_EQ(__zorvik_slow_uldiv(u, v), v != 0 ? u / v : unsigned_by_zero) << u << ' ' << v;
  ASSERT_EQ(__zorvik_slow_ulmod(u, v), v != 0 ? u % v : unsigned_by_zero) << u << ' ' << v;
}

/// Numbers where a carry, a sign, a word or a normalisation changes: 2**n and its neighbours of
/// both signs, and patterns of full and empty words.
std::vector<int64_t> corners() {
  std::vector<int64_t> numbers = {0, 3, 7, 10, 0x7FFFFFFF7FFFFFFF, wrapped(0xFFFF0000FFFF0000)};
  for (int n : {0, 1, 15, 16, 17, 30, 31, 32, 33, 47, 48, 49, 62, 63})
    for (int64_t step : {-1, 0, 1}) {
      const int64_t number = wrapped((uint64_t{1} << n) + raw(step));
      numbers.push_back(number);
      numbers.push_back(wrapped(0 - raw(number)));
    }
  return numbers;
}

}  // namespace

TEST(Int64Arithmetic, AgreesAtEveryPairOfCorners) {
  for (const int64_t a : corners())
    for (const int64_t b : corners()) expect_all(a, b);
}

TEST(Int64Arithmetic, AgreesForOperandsOfEveryLength) {
  std::mt19937_64 random(31);
  const auto number = [&random] {
    const int64_t magnitude = wrapped(random() >> (random() % 64));
    return random() % 2 != 0 ? wrapped(0 - raw(magnitude)) : magnitude;
  };
  for (int i = 0; i < 200000; ++i) expect_all(number(), number());
}

// The estimate of a long division is off by one where the remainder is close to 0 or to the
// divisor.
TEST(Int64Arithmetic, DividesNextToMultiples) {
  std::mt19937_64 random(32);
  for (int i = 0; i < 200000; ++i) {
    const uint64_t b = random() >> (random() % 40);
    const uint64_t factor = random() >> (random() % 64);
    const uint64_t multiple = b * factor;
    for (const uint64_t a : {multiple - 1, multiple, multiple + 1})
      expect_all(wrapped(a), wrapped(b));
  }
}
