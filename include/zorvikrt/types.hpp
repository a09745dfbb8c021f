/** REAL*16 and COMPLEX*32 as C++ value types: what they hold, what they are made from and what they
 *  convert to.
 */
#ifndef ZORVIKRT_TYPES_HPP
#define ZORVIKRT_TYPES_HPP

#if __cplusplus < 201703L
#error "zorvikrt.hpp needs C++17"
#endif

#include <zorvikrt/zorvikrt.h>

#include <complex>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace zorvikrt {

class real16;
class complex32;

namespace detail {

// 128-bit kinds, where the compiler has them.
#ifdef __SIZEOF_FLOAT128__
#define ZORVIKRT_HAS_FLOAT128
__extension__ typedef __float128 float128;
#else
struct float128;
#endif
#ifdef __SIZEOF_INT128__
#define ZORVIKRT_HAS_INT128
__extension__ typedef __int128 int128;
__extension__ typedef unsigned __int128 uint128;
#else
struct int128;
struct uint128;
#endif

template <class T, class... Kinds>
inline constexpr bool is_one_of = (std::is_same_v<T, Kinds> || ...);

template <class T>
inline constexpr bool is_short_real = is_one_of<T, float, double>;
/// Integers that a double holds exactly, and the others up to 64 bits.
template <class T>
inline constexpr bool is_short_integer = std::is_integral_v<T> && !std::is_same_v<T, bool> &&
                                         (sizeof(T) < 4 || (sizeof(T) == 4 && std::is_signed_v<T>));
template <class T>
inline constexpr bool is_long_integer =
    std::is_integral_v<T> && !std::is_same_v<T, bool> && !is_short_integer<T> && sizeof(T) <= 8;
template <class T>
inline constexpr bool is_integer = is_short_integer<T> || is_long_integer<T>;
/// Kinds that no entry takes: they become a REAL*16 first.
template <class T>
inline constexpr bool is_wide_real = is_one_of<T, long double, float128>;
template <class T>
inline constexpr bool is_wide_integer = is_one_of<T, int128, uint128>;
template <class T>
inline constexpr bool is_number =
    is_short_real<T> || is_integer<T> || is_wide_real<T> || is_wide_integer<T>;
template <class T>
using if_number = std::enable_if_t<is_number<T>, int>;

/// std::is_constant_evaluated of C++20.
constexpr bool in_constant() { return __builtin_is_constant_evaluated(); }

/// Keeps a double as it is here: no option of the program's compiler joins the operations before
/// and behind it into other ones. No instruction, on x86-64.
inline void hold(double& value) {
#ifdef __x86_64__
  __asm__("" : "+x"(value));
#else
  __asm__("" : "+m"(value));
#endif
}
constexpr double held(double value) {
  if (!in_constant()) hold(value);
  return value;
}

/// The image of a double, and its exponent field.
constexpr std::uint64_t image(double value) { return __builtin_bit_cast(std::uint64_t, value); }
constexpr double from_image(std::uint64_t bits) { return __builtin_bit_cast(double, bits); }
constexpr int exponent_field(double value) { return static_cast<int>(image(value) >> 52 & 0x7FF); }
constexpr bool is_finite(double value) { return exponent_field(value) != 0x7FF; }

/// The nearest double, and the double nearest to the rest.
constexpr zorvikrt_quad pair_of_real(long double value) {
  const double hi = held(static_cast<double>(value));
  if (!is_finite(hi)) return {hi, 0};
  return {hi, held(static_cast<double>(value - static_cast<long double>(hi)))};
}
#ifdef ZORVIKRT_HAS_FLOAT128
/// Not held: the conversions are calls, and a table of them becomes one of constants.
constexpr zorvikrt_quad pair_of_real(float128 value) {
  const double hi = static_cast<double>(value);
  if (!is_finite(hi)) return {hi, 0};
  return {hi, static_cast<double>(value - static_cast<float128>(hi))};
}
#endif
/// The same for an integer, as ll2q and ull2q have it: a negative one is the pair of its magnitude
/// with both signs flipped.
template <class T>
constexpr zorvikrt_quad pair_of_integer(T value) {
  constexpr int bits = 8 * sizeof(T);
  using magnitude_type = std::conditional_t<bits <= 64, std::uint64_t, uint128>;
  const bool negative = value < 0;
  const magnitude_type given = static_cast<magnitude_type>(value);
  const magnitude_type magnitude = negative ? 0 - given : given;
  const double hi = static_cast<double>(magnitude);
  // Modulo 2**bits, where hi may have been rounded up to 2**bits.
  const bool beyond = hi >= (sizeof magnitude == 8 ? 0x1p64 : 0x1p128);
  const magnitude_type rest = magnitude - (beyond ? 0 : static_cast<magnitude_type>(hi));
  const bool below = (rest >> (8 * sizeof rest - 1)) != 0;
  const double size = static_cast<double>(below ? 0 - rest : rest);
  const double lo = below ? -size : size;
  return negative ? zorvikrt_quad{-hi, -lo} : zorvikrt_quad{hi, lo};
}

/// Runs an entry with a REAL*16 result.
template <class... Entry, class... Operands>
real16 real(zorvikrt_quad* (*entry)(zorvikrt_quad*, Entry...), Operands... operands);
/// Runs an entry with a COMPLEX*32 result.
template <class... Entry, class... Operands>
complex32 complex(zorvikrt_cquad* (*entry)(zorvikrt_cquad*, Entry...), Operands... operands);

}  // namespace detail

/** REAL*16: the unevaluated sum hi + lo of two doubles, about 106 bits of significand. */
class real16 : public zorvikrt_quad {
 public:
  /** Without a value, as a double; real16() and real16{} are +0. */
  real16() = default;
  /** The two doubles as they are. */
  constexpr real16(double high, double low) : zorvikrt_quad{high, low} {}
  /** The value of the C type. */
  constexpr real16(const zorvikrt_quad& value) : zorvikrt_quad(value) {}
  /** A float or double, exactly. */
  template <class T, std::enable_if_t<detail::is_short_real<T>, int> = 0>
  constexpr real16(T value) : zorvikrt_quad{static_cast<double>(value), 0} {}
  /** A long double or __float128: the nearest double, and the double nearest to the rest. Of a
   *  long double that is all, within the range. */
  template <class T, std::enable_if_t<detail::is_wide_real<T>, int> = 0>
  constexpr real16(T value) : zorvikrt_quad(detail::pair_of_real(value)) {}
  /** An integer of up to 64 bits, exactly. */
  template <class T, std::enable_if_t<detail::is_short_integer<T>, int> = 0>
  constexpr real16(T value) : zorvikrt_quad{static_cast<double>(value), 0} {}
  template <class T, std::enable_if_t<detail::is_long_integer<T>, int> = 0>
  constexpr real16(T value) : zorvikrt_quad(detail::pair_of_integer(value)) {}
  /** An integer of 128 bits: the nearest double, and the double nearest to the rest. */
  template <class T, std::enable_if_t<detail::is_wide_integer<T>, int> = 0>
  constexpr real16(T value) : zorvikrt_quad(detail::pair_of_integer(value)) {}
  /** The number that a text holds, and nothing else; throws std::invalid_argument otherwise. */
  explicit real16(std::string_view text);

  /** hi: the nearest double, as long as the parts do not overlap. */
  explicit constexpr operator double() const { return hi; }
  /** hi, rounded to a float. */
  explicit constexpr operator float() const { return static_cast<float>(hi); }
  /** hi + lo, rounded to the format whatever the precision of the x87 unit. */
  explicit operator long double() const;
#ifdef ZORVIKRT_HAS_FLOAT128
  explicit operator detail::float128() const { return static_cast<detail::float128>(hi) + lo; }
#endif
  /** Truncated toward zero, as q2ll, or q2ull for an unsigned 64-bit type, has it: a pattern beyond
   * the range. A narrower type gets the low bits. */
  template <class T, std::enable_if_t<detail::is_integer<T>, int> = 0>
  explicit operator T() const {
    if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8)
      return __zorvik_q2ull(*this);
    else
      return static_cast<T>(__zorvik_q2ll(*this));
  }
#ifdef ZORVIKRT_HAS_INT128
  /** Truncated toward zero; beyond the range -2**127, or for an unsigned type 2**128 - 1. */
  explicit operator detail::int128() const;
  explicit operator detail::uint128() const;
#endif
  /** False for a zero in hi. */
  explicit constexpr operator bool() const { return detail::image(hi) << 1 != 0; }

  /** this = this + other, and so on. */
  template <class T>
  constexpr real16& operator+=(const T& other) {
    return *this = *this + other;
  }
  template <class T>
  constexpr real16& operator-=(const T& other) {
    return *this = *this - other;
  }
  template <class T>
  constexpr real16& operator*=(const T& other) {
    return *this = *this * other;
  }
  template <class T>
  constexpr real16& operator/=(const T& other) {
    return *this = *this / other;
  }
  constexpr real16& operator++();
  constexpr real16& operator--();
  constexpr real16 operator++(int);
  constexpr real16 operator--(int);
};

static_assert(sizeof(real16) == 16 && std::is_trivial_v<real16>);

/** COMPLEX*32. */
class complex32 {
 public:
  /** The kind of the parts, as std::complex names it. */
  using value_type = real16;

  /** Real and imaginary part. */
  real16 re, im;

  /** Without a value; complex32() and complex32{} are zero. */
  complex32() = default;
  /** From its parts; a single number is the real part. */
  constexpr complex32(const real16& real, const real16& imaginary = real16())
      : re(real), im(imaginary) {}
  template <class T, detail::if_number<T> = 0>
  constexpr complex32(T real) : re(real), im() {}
  /** The value of the C type. */
  constexpr complex32(const zorvikrt_cquad& value) : re(value.re), im(value.im) {}
  /** A complex number of a narrower kind, exactly. */
  template <class T, std::enable_if_t<detail::is_short_real<T>, int> = 0>
  constexpr complex32(const std::complex<T>& value) : re(value.real()), im(value.imag()) {}

  /** The C type. */
  constexpr operator zorvikrt_cquad() const { return {re, im}; }
  /** Both parts as doubles. */
  explicit operator std::complex<double>() const { return {re.hi, im.hi}; }

  constexpr const real16& real() const { return re; }
  constexpr const real16& imag() const { return im; }

  constexpr complex32& operator+=(const complex32& other);
  constexpr complex32& operator-=(const complex32& other);
  constexpr complex32& operator*=(const complex32& other);
  complex32& operator/=(const complex32& other);
};

static_assert(sizeof(complex32) == 32 && std::is_trivial_v<complex32>);

namespace detail {

template <class... Entry, class... Operands>
inline real16 real(zorvikrt_quad* (*entry)(zorvikrt_quad*, Entry...), Operands... operands) {
  zorvikrt_quad result;
  entry(&result, operands...);
  // Held, for two loads: one of both parts would wait until the entry's two stores are done.
  return {held(result.hi), held(result.lo)};
}

template <class... Entry, class... Operands>
inline complex32 complex(zorvikrt_cquad* (*entry)(zorvikrt_cquad*, Entry...),
                         Operands... operands) {
  zorvikrt_cquad result;
  entry(&result, operands...);
  return result;
}

/// What the entries for a mixed operation take: a double, an int64_t, or else a REAL*16.
template <class T>
inline constexpr bool as_double = is_short_real<T> || is_short_integer<T>;
template <class T>
inline constexpr bool as_int64 = is_long_integer<T>&& std::is_signed_v<T>;

#ifdef ZORVIKRT_HAS_INT128
/// The whole parts of a truncated value, modulo 2**128.
inline uint128 whole(const real16& truncated) {
  const auto part = [](double x) {
    return x < 0 ? 0 - static_cast<uint128>(-x) : static_cast<uint128>(x);
  };
  return part(truncated.hi) + part(truncated.lo);
}
#endif

}  // namespace detail

inline real16::operator long double() const {
#ifdef ZORVIKRT_HAS_FLOAT128
  // On integers: the x87 unit of this process rounds to 53 bits.
  return static_cast<long double>(static_cast<detail::float128>(*this));
#else
  return static_cast<long double>(hi) + lo;
#endif
}

#ifdef ZORVIKRT_HAS_INT128
inline real16::operator detail::int128() const {
  const real16 truncated = detail::real(__zorvik_qint, *this);
  const bool above = truncated.hi > -0x1p127 || (truncated.hi == -0x1p127 && truncated.lo > 0);
  const bool below = truncated.hi < 0x1p127 || (truncated.hi == 0x1p127 && truncated.lo < 0);
  const detail::uint128 lowest = detail::uint128{1} << 127;
  return static_cast<detail::int128>(above && below ? detail::whole(truncated) : lowest);
}
inline real16::operator detail::uint128() const {
  const real16 truncated = detail::real(__zorvik_qint, *this);
  const bool inside = truncated.hi >= 0 &&
                      (truncated.hi < 0x1p128 || (truncated.hi == 0x1p128 && truncated.lo < 0));
  if (!inside) return ~detail::uint128{0};
  // 2**128 itself counts as 0.
  if (truncated.hi == 0x1p128) return 0 - static_cast<detail::uint128>(-truncated.lo);
  return detail::whole(truncated);
}
#endif

}  // namespace zorvikrt

#endif
