// The operators in line against the entries, bit for bit, in a program built with the options that
// endanger them, with FTZ and DAZ on and off. usage: operators_test [TUPLES]

#include <xmmintrin.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "zorvikrt/functions.hpp"

using zorvikrt::complex32;
using zorvikrt::real16;
using zorvikrt::detail::complex;
using zorvikrt::detail::from_image;
using zorvikrt::detail::image;
using zorvikrt::detail::real;

namespace {

std::mt19937_64 random_bits(7);
long faults = 0;

/// Exponents at which a guard or a step changes, and the ends of the range.
constexpr int edges[] = {-1074, -1060, -1023, -1022, -970, -953, -952, -901, -900, -899, -851,
                         -850,  -801,  -800,  -799,  -691, -690, -689, -617, -561, -560, -559,
                         -451,  -450,  -401,  -400,  -257, -256, -255, -226, -225, -183, -129,
                         -128,  -127,  -54,   -53,   -1,   0,    1,    27,   52,   53,   127,
                         128,   129,   224,   225,   226,  255,  256,  257,  449,  450,  451,
                         899,   900,   996,   999,   1000, 1001, 1023};

double with_exponent(int exponent) {
  const std::uint64_t sign = random_bits() << 63, random = random_bits();
  // Full, of few bits, a power of two, or all ones.
  const std::uint64_t masks[] = {~std::uint64_t{0}, ~std::uint64_t{0}, ~std::uint64_t{0} << 40, 0};
  std::uint64_t fraction = random_bits() & masks[random % 4];
  if (random % 64 == 4) fraction = ~std::uint64_t{0};
  fraction >>= 12;
  if (exponent < -1022)
    return from_image(sign | (fraction | std::uint64_t{1} << 51) >> (-1022 - exponent));
  return from_image(sign | static_cast<std::uint64_t>(exponent + 1023) << 52 | fraction);
}

int exponent_of(double x) { return static_cast<int>(image(x) >> 52 & 0x7FF) - 1023; }

double special() {
  constexpr std::uint64_t images[] = {0x0000000000000000, 0x8000000000000000, 0x7FF0000000000000,
                                      0xFFF0000000000000, 0x7FF8000000000000, 0xFFF8000000000001,
                                      0x7FF0000000000001, 0x0000000000000001, 0x7FEFFFFFFFFFFFFF};
  return from_image(images[random_bits() % std::size(images)]);
}

double number() {
  const std::uint64_t kind = random_bits() % 16;
  if (kind == 0) return special();
  if (kind < 4) return static_cast<double>(static_cast<int>(random_bits() % 2001) - 1000);
  if (kind < 9) return with_exponent(edges[random_bits() % std::size(edges)]);
  if (kind < 11) return with_exponent(static_cast<int>(random_bits() % 2046) - 1022);
  return with_exponent(static_cast<int>(random_bits() % 121) - 60);
}

real16 pair() {
  const double hi = number();
  const std::uint64_t kind = random_bits() % 16;
  if (kind < 3) return {hi, 0};
  if (kind == 3) return {hi, number()};
  const int below =
      53 + (kind < 6 ? static_cast<int>(random_bits() % 900) : static_cast<int>(kind) / 12);
  const int exponent = exponent_of(hi) - below;
  return {hi, exponent < -1074 ? 0.0 : with_exponent(exponent > 1023 ? 1023 : exponent)};
}

/// Often b is near a, so that they cancel.
real16 partner(const real16& a) {
  const std::uint64_t kind = random_bits() % 8;
  if (kind > 1) return pair();
  real16 b = a;
  if (kind == 0) b.lo = number();
  const std::uint64_t flip = (random_bits() & 1) << 63, change = random_bits() % 3;
  b.hi = from_image((image(b.hi) ^ flip) + change);
  if (random_bits() % 2 == 0) b.lo = from_image(image(b.lo) ^ std::uint64_t{1} << 63);
  return b;
}

/// Parts about the smallest normal double, the leading one of any size where it cancels.
double tiny() {
  return random_bits() % 4 == 0 ? 0.0 : with_exponent(static_cast<int>(random_bits() % 240) - 1074);
}
void draw_tiny(real16& a, real16& b) {
  a = {random_bits() % 2 == 0 ? number() : tiny(), tiny()};
  b = {random_bits() % 2 == 0 ? from_image(image(a.hi) ^ (random_bits() << 63)) : tiny(), tiny()};
}

template <class T>
std::array<std::uint64_t, sizeof(T) / 8> images(const T& value) {
  std::array<std::uint64_t, sizeof(T) / 8> bits;
  std::memcpy(bits.data(), &value, sizeof value);
  return bits;
}

template <class T>
void check(const char* what, const T& got, const T& expected, const real16& a, const real16& b) {
  if (images(got) == images(expected)) return;
  if (++faults > 20) return;
  std::printf("%s of (%a, %a) and (%a, %a), MXCSR %x:", what, a.hi, a.lo, b.hi, b.lo, _mm_getcsr());
  for (const auto word : images(got))
    std::printf(" %016llx", static_cast<unsigned long long>(word));
  std::printf(", not");
  for (const auto word : images(expected))
    std::printf(" %016llx", static_cast<unsigned long long>(word));
  std::printf("\n");
}

void check_pair(const real16& a, const real16& b) {
  check("a + b", a + b, real(__zorvik_qadd, a, b), a, b);
  check("a - b", a - b, real(__zorvik_qsub, a, b), a, b);
  check("a * b", a * b, real(__zorvik_qmul, a, b), a, b);
  check("a / b", a / b, real(__zorvik_qdiv, a, b), a, b);
  const double d = b.hi;
  check("a + d", a + d, real(__zorvik_qaddd, a, d), a, b);
  check("a - d", a - d, real(__zorvik_qsubd, a, d), a, b);
  check("d - a", d - a, real(__zorvik_dsubq, d, a), a, b);
  check("a * d", a * d, real(__zorvik_qmuld, a, d), a, b);
  check("a / d", a / d, real(__zorvik_qdivd, a, d), a, b);
  check("d / a", d / a, real(__zorvik_ddivq, d, a), a, b);
  const int shift = static_cast<int>(image(b.lo) % 64);
  const auto k = static_cast<std::int64_t>(image(b.hi)) >> shift;
  const auto i = static_cast<std::int32_t>(k % 3 == 0 ? k % 2 : k);
  check("a * i", a * i, real(__zorvik_qmuli, a, i), a, {static_cast<double>(i), 0});
  check("a + k", a + k, real(__zorvik_qaddk, a, k), a, {static_cast<double>(k), 0});
  check("k - a", k - a, real(__zorvik_ksubq, k, a), a, {static_cast<double>(k), 0});
  check("a * k", a * k, real(__zorvik_qmulk, a, k), a, {static_cast<double>(k), 0});
  check("k / a", k / a, real(__zorvik_kdivq, k, a), a, {static_cast<double>(k), 0});
  check("order", std::int64_t{zorvikrt::detail::compare(a, b)}, std::int64_t{__zorvik_qcmp(a, b)},
        a, b);
  check("sqrt(a)", sqrt(a), real(__zorvik_sqrtl, a), a, b);
  const complex32 z(a, b), w(b, a.lo);
  check("z * w", z * w, complex(__zorvik_cqmul, zorvikrt_cquad(z), zorvikrt_cquad(w)), a, b);
}

}  // namespace

int main(int count, char** words) {
  zorvikrt_set_thread_state();  // on Windows the start of the C runtime has reset the FPU
  const long tuples = count > 1 ? std::atol(words[1]) : 200000;
  for (const unsigned mxcsr : {0x9FC0u, 0x1F80u}) {
    _mm_setcsr(mxcsr);
    for (long n = 0; n < tuples; ++n) {
      real16 a = pair(), b = partner(a);
      if (n % 8 == 0) draw_tiny(a, b);
      check_pair(a, b);
    }
  }
  if (faults != 0) std::printf("%ld differences\n", faults);
  return faults != 0;
}
