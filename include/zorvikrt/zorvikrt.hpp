/** REAL*16 and COMPLEX*32 as C++ value types; C++17.
 *
 *      #include <zorvikrt/zorvikrt.hpp>
 *      using namespace zorvikrt::literals;
 *      zorvikrt::real16 x = sqrt(0.1_r16) + 2;
 *      std::cout << std::setprecision(32) << x << '\n';
 *
 *  Every operation is one call of the library's entry that computes it, so results are the
 * library's, special values included: an infinity is unordered to everything, and arithmetic turns
 * it into a NaN. An operand of another type is converted first, exactly, where the library has no
 * entry for it as it is. Reading, writing and numeric text need the library zorvikrt_text as well.
 *
 *  The x87 control word is the one that the library sets when it is loaded (zorvikrt.h).
 */
#ifndef ZORVIKRT_HPP
#define ZORVIKRT_HPP

#if __cplusplus < 201703L
#error "zorvikrt.hpp needs C++17"
#endif

#include <zorvikrt/text.h>
#include <zorvikrt/zorvikrt.h>

#include <charconv>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <istream>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace zorvikrt {

class real16;
class complex32;

namespace detail {

template <class T>
using if_floating = std::enable_if_t<std::is_same_v<T, float> || std::is_same_v<T, double>, int>;
/// Integers that a double holds exactly, and the others up to 64 bits.
template <class T>
inline constexpr bool is_short_integer = std::is_integral_v<T> && !std::is_same_v<T, bool> &&
                                         (sizeof(T) < 4 || (sizeof(T) == 4 && std::is_signed_v<T>));
template <class T>
inline constexpr bool is_long_integer =
    std::is_integral_v<T> && !std::is_same_v<T, bool> && !is_short_integer<T> && sizeof(T) <= 8;
template <class T>
inline constexpr bool is_integer = is_short_integer<T> || is_long_integer<T>;
template <class T>
inline constexpr bool is_number =
    std::is_same_v<T, float> || std::is_same_v<T, double> || is_integer<T>;

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
  /** +0. */
  constexpr real16() : zorvikrt_quad{0, 0} {}
  /** The two doubles as they are. */
  constexpr real16(double high, double low) : zorvikrt_quad{high, low} {}
  /** The value of the C type. */
  constexpr real16(const zorvikrt_quad& value) : zorvikrt_quad(value) {}
  /** A float or double, exactly. */
  template <class T, detail::if_floating<T> = 0>
  constexpr real16(T value) : zorvikrt_quad{static_cast<double>(value), 0} {}
  /** An integer of up to 64 bits, exactly. */
  template <class T, std::enable_if_t<detail::is_short_integer<T>, int> = 0>
  constexpr real16(T value) : zorvikrt_quad{static_cast<double>(value), 0} {}
  template <class T, std::enable_if_t<detail::is_long_integer<T>, int> = 0>
  real16(T value) {
    if constexpr (std::is_signed_v<T>)
      __zorvik_ll2q(this, value);
    else
      __zorvik_ull2q(this, value);
  }
  /** The number that a text holds, and nothing else; throws std::invalid_argument otherwise. */
  explicit real16(std::string_view text);

  /** hi: the nearest double, as long as the parts do not overlap. */
  explicit constexpr operator double() const { return hi; }
  /** hi, rounded to a float. */
  explicit constexpr operator float() const { return static_cast<float>(hi); }
  /** Truncated toward zero, as q2ll, or q2ull for an unsigned 64-bit type, has it: a pattern beyond
   * the range. A narrower type gets the low bits. */
  template <class T, std::enable_if_t<detail::is_integer<T>, int> = 0>
  explicit operator T() const {
    if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8)
      return __zorvik_q2ull(*this);
    else
      return static_cast<T>(__zorvik_q2ll(*this));
  }
  /** False for a zero in hi. */
  explicit constexpr operator bool() const { return hi != 0; }

  /** this = this + other, and so on. */
  template <class T>
  real16& operator+=(const T& other) {
    return *this = *this + other;
  }
  template <class T>
  real16& operator-=(const T& other) {
    return *this = *this - other;
  }
  template <class T>
  real16& operator*=(const T& other) {
    return *this = *this * other;
  }
  template <class T>
  real16& operator/=(const T& other) {
    return *this = *this / other;
  }
};

static_assert(sizeof(real16) == 16 && std::is_trivially_copyable_v<real16>);

/** COMPLEX*32. */
class complex32 {
 public:
  /** Real and imaginary part. */
  real16 re, im;

  /** From its parts; a single number is the real part. */
  constexpr complex32(const real16& real = {}, const real16& imaginary = {})
      : re(real), im(imaginary) {}
  template <class T, std::enable_if_t<detail::is_number<T>, int> = 0>
  constexpr complex32(T real) : re(real) {}
  /** The value of the C type. */
  constexpr complex32(const zorvikrt_cquad& value) : re(value.re), im(value.im) {}
  /** A complex number of a narrower kind, exactly. */
  template <class T, detail::if_floating<T> = 0>
  constexpr complex32(const std::complex<T>& value) : re(value.real()), im(value.imag()) {}

  /** The C type. */
  constexpr operator zorvikrt_cquad() const { return {re, im}; }
  /** Both parts as doubles. */
  explicit operator std::complex<double>() const { return {re.hi, im.hi}; }

  complex32& operator+=(const complex32& other);
  complex32& operator-=(const complex32& other);
  complex32& operator*=(const complex32& other);
  complex32& operator/=(const complex32& other);
};

static_assert(sizeof(complex32) == 32 && std::is_trivially_copyable_v<complex32>);

namespace detail {

template <class... Entry, class... Operands>
inline real16 real(zorvikrt_quad* (*entry)(zorvikrt_quad*, Entry...), Operands... operands) {
  real16 result;
  entry(&result, operands...);
  return result;
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
inline constexpr bool as_double =
    std::is_same_v<T, float> || std::is_same_v<T, double> || is_short_integer<T>;
template <class T>
inline constexpr bool as_int64 = is_long_integer<T>&& std::is_signed_v<T>;
template <class T>
using if_number = std::enable_if_t<is_number<T>, int>;

/// qcmp leaves the condition codes of the x87 comparison.
enum order : std::int32_t { greater = 0, less = 0x0100, equal = 0x4000, unordered = 0x4500 };

}  // namespace detail

// --- Arithmetic of REAL*16 ---------------------------------------------------------------------

inline real16 operator+(const real16& a) { return a; }
inline real16 operator-(const real16& a) { return detail::real(__zorvik_qneg, a); }

inline real16 operator+(const real16& a, const real16& b) {
  return detail::real(__zorvik_qadd, a, b);
}
inline real16 operator-(const real16& a, const real16& b) {
  return detail::real(__zorvik_qsub, a, b);
}
inline real16 operator*(const real16& a, const real16& b) {
  return detail::real(__zorvik_qmul, a, b);
}
inline real16 operator/(const real16& a, const real16& b) {
  return detail::real(__zorvik_qdiv, a, b);
}

template <class T, detail::if_number<T> = 0>
inline real16 operator+(const real16& a, T b) {
  if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_qaddd, a, static_cast<double>(b));
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_qaddk, a, b);
  else
    return a + real16(b);
}
template <class T, detail::if_number<T> = 0>
inline real16 operator+(T a, const real16& b) {
  if constexpr (detail::as_double<T> || detail::as_int64<T>)
    return b + a;
  else
    return real16(a) + b;
}
template <class T, detail::if_number<T> = 0>
inline real16 operator-(const real16& a, T b) {
  if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_qsubd, a, static_cast<double>(b));
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_qsubk, a, b);
  else
    return a - real16(b);
}
template <class T, detail::if_number<T> = 0>
inline real16 operator-(T a, const real16& b) {
  if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_dsubq, static_cast<double>(a), b);
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_ksubq, a, b);
  else
    return real16(a) - b;
}
template <class T, detail::if_number<T> = 0>
inline real16 operator*(const real16& a, T b) {
  if constexpr (detail::is_short_integer<T>)
    return detail::real(__zorvik_qmuli, a, static_cast<std::int32_t>(b));
  else if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_qmuld, a, static_cast<double>(b));
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_qmulk, a, b);
  else
    return a * real16(b);
}
template <class T, detail::if_number<T> = 0>
inline real16 operator*(T a, const real16& b) {
  if constexpr (detail::as_double<T> || detail::as_int64<T>)
    return b * a;
  else
    return real16(a) * b;
}
template <class T, detail::if_number<T> = 0>
inline real16 operator/(const real16& a, T b) {
  if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_qdivd, a, static_cast<double>(b));
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_qdivk, a, b);
  else
    return a / real16(b);
}
template <class T, detail::if_number<T> = 0>
inline real16 operator/(T a, const real16& b) {
  if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_ddivq, static_cast<double>(a), b);
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_kdivq, a, b);
  else
    return real16(a) / b;
}

// --- Relations of REAL*16 ----------------------------------------------------------------------
// By the difference, as qcmp forms it. Infinities and NaNs are unordered: only != is true for them.

#define ZORVIKRT_RELATION(relation, test)                           \
  inline bool operator relation(const real16& a, const real16& b) { \
    const std::int32_t order = __zorvik_qcmp(a, b);                 \
    return test;                                                    \
  }                                                                 \
  template <class T, detail::if_number<T> = 0>                      \
  inline bool operator relation(const real16& a, T b) {             \
    return a relation real16(b);                                    \
  }                                                                 \
  template <class T, detail::if_number<T> = 0>                      \
  inline bool operator relation(T a, const real16& b) {             \
    return real16(a) relation b;                                    \
  }
ZORVIKRT_RELATION(==, order == detail::equal)
ZORVIKRT_RELATION(!=, order != detail::equal)
ZORVIKRT_RELATION(<, order == detail::less)
ZORVIKRT_RELATION(<=, order == detail::less || order == detail::equal)
ZORVIKRT_RELATION(>, order == detail::greater)
ZORVIKRT_RELATION(>=, order == detail::greater || order == detail::equal)
#undef ZORVIKRT_RELATION

// --- Functions of REAL*16 ----------------------------------------------------------------------
// entries.md tells operands, special values and methods, under the name of the entry.

#define ZORVIKRT_UNARY(name, entry) \
  inline real16 name(const real16& x) { return detail::real(__zorvik_##entry, x); }
/** |x|, by the sign of hi. */
ZORVIKRT_UNARY(abs, fabsl)
/** |x|, by the sign of hi. */
ZORVIKRT_UNARY(fabs, fabsl)
/** Truncated toward zero. */
ZORVIKRT_UNARY(trunc, qint)
/** The nearest whole number, ties away from zero. */
ZORVIKRT_UNARY(round, qnint)
/** The largest whole number not above x. */
ZORVIKRT_UNARY(floor, floorl)
/** The smallest whole number not below x. */
ZORVIKRT_UNARY(ceil, ceill)
/** Square root. */
ZORVIKRT_UNARY(sqrt, sqrtl)
/** e**x. */
ZORVIKRT_UNARY(exp, expl)
/** Natural logarithm. */
ZORVIKRT_UNARY(log, logl)
/** Logarithm to base 10. */
ZORVIKRT_UNARY(log10, log10l)
/** Sine, x in radians. */
ZORVIKRT_UNARY(sin, sinl)
/** Cosine, x in radians. */
ZORVIKRT_UNARY(cos, cosl)
/** Tangent, x in radians. */
ZORVIKRT_UNARY(tan, tanl)
/** Cotangent, x in radians. */
ZORVIKRT_UNARY(cot, cotl)
/** Sine, x in degrees. */
ZORVIKRT_UNARY(sind, sindl)
/** Cosine, x in degrees. */
ZORVIKRT_UNARY(cosd, cosdl)
/** Tangent, x in degrees. */
ZORVIKRT_UNARY(tand, tandl)
/** Arcsine in radians. */
ZORVIKRT_UNARY(asin, asinl)
/** Arccosine in radians. */
ZORVIKRT_UNARY(acos, acosl)
/** Arctangent in radians. */
ZORVIKRT_UNARY(atan, atanl)
/** Arcsine in degrees. */
ZORVIKRT_UNARY(asind, asindl)
/** Arccosine in degrees. */
ZORVIKRT_UNARY(acosd, acosdl)
/** Arctangent in degrees. */
ZORVIKRT_UNARY(atand, atandl)
/** Hyperbolic sine. */
ZORVIKRT_UNARY(sinh, sinhl)
/** Hyperbolic cosine. */
ZORVIKRT_UNARY(cosh, coshl)
/** Hyperbolic tangent. */
ZORVIKRT_UNARY(tanh, tanhl)
#undef ZORVIKRT_UNARY

// One of the operands may be of another kind.
#define ZORVIKRT_BINARY(name, entry)                     \
  inline real16 name(const real16& a, const real16& b) { \
    return detail::real(__zorvik_##entry, a, b);         \
  }                                                      \
  template <class T, detail::if_number<T> = 0>           \
  inline real16 name(const real16& a, T b) {             \
    return name(a, real16(b));                           \
  }                                                      \
  template <class T, detail::if_number<T> = 0>           \
  inline real16 name(T a, const real16& b) {             \
    return name(real16(a), b);                           \
  }
/** |a| with the sign of b, taken by hi; a zero b counts as positive. */
ZORVIKRT_BINARY(copysign, copysignl)
/** a - b where that is not negative, else 0. */
ZORVIKRT_BINARY(fdim, fdiml)
/** a - trunc(a / b) * b. */
ZORVIKRT_BINARY(fmod, fmodl)
/** The angle of the point (b, a), in radians. */
ZORVIKRT_BINARY(atan2, atan2l)
/** The angle of the point (b, a), in degrees. */
ZORVIKRT_BINARY(atan2d, atan2dl)
#undef ZORVIKRT_BINARY

/** x**y: squarings for an integer exponent, or one whose value is whole; exp(y log x) for others.
 */
inline real16 pow(const real16& x, const real16& y) { return detail::real(__zorvik_powl, x, y); }
template <class T, detail::if_number<T> = 0>
inline real16 pow(const real16& x, T y) {
  if constexpr (detail::is_short_integer<T>)
    return detail::real(__zorvik_powli, x, static_cast<std::int32_t>(y));
  else if constexpr (detail::as_int64<T>)
    return detail::real(__zorvik_powlk, x, y);
  else if constexpr (detail::as_double<T>)
    return detail::real(__zorvik_powld, x, static_cast<double>(y));
  else
    return pow(x, real16(y));
}
template <class T, detail::if_number<T> = 0>
inline real16 pow(T x, const real16& y) {
  return pow(real16(x), y);
}

/** The exact product of two doubles. */
inline real16 product(double a, double b) { return detail::real(__zorvik_qprod, a, b); }
/** x * 2**n. */
inline real16 ldexp(const real16& x, int n) { return detail::real(__zorvik_ldexpl, x, n); }
/** The significand from 0.5 to 1, and the exponent of 2 in *exponent. */
inline real16 frexp(const real16& x, int* exponent) {
  std::int32_t e;
  const real16 significand = detail::real(__zorvik_frexpl, x, &e);
  *exponent = e;
  return significand;
}
/** The nearest 32-bit integer, ties away from zero; -2147483648 beyond the range. */
inline std::int32_t nint(const real16& x) { return __zorvik_iqnint(x); }
/** The nearest 64-bit integer, ties away from zero; 0x8000000000000000 beyond the range. */
inline std::int64_t llround(const real16& x) { return __zorvik_kiqnnt(x); }

/** What hi says. */
inline bool signbit(const real16& x) { return __builtin_signbit(x.hi) != 0; }
inline bool isnan(const real16& x) { return __builtin_isnan(x.hi); }
inline bool isinf(const real16& x) { return __builtin_isinf_sign(x.hi) != 0; }
inline bool isfinite(const real16& x) { return __builtin_isfinite(x.hi); }

// --- COMPLEX*32 --------------------------------------------------------------------------------
// Operands of other kinds convert to COMPLEX*32 first.

inline complex32 operator+(const complex32& a) { return a; }
inline complex32 operator-(const complex32& a) { return {-a.re, -a.im}; }

#define ZORVIKRT_COMPLEX(type, symbol)                                                             \
  template <class T, std::enable_if_t<detail::is_number<T> || std::is_same_v<T, real16>, int> = 0> \
  inline type operator symbol(const complex32& a, const T& b) {                                    \
    return a symbol complex32(b);                                                                  \
  }                                                                                                \
  template <class T, std::enable_if_t<detail::is_number<T> || std::is_same_v<T, real16>, int> = 0> \
  inline type operator symbol(const T& a, const complex32& b) {                                    \
    return complex32(a) symbol b;                                                                  \
  }
inline complex32 operator+(const complex32& a, const complex32& b) {
  return {a.re + b.re, a.im + b.im};
}
inline complex32 operator-(const complex32& a, const complex32& b) {
  return {a.re - b.re, a.im - b.im};
}
inline complex32 operator*(const complex32& a, const complex32& b) {
  return detail::complex(__zorvik_cqmul, a, b);
}
inline complex32 operator/(const complex32& a, const complex32& b) {
  return detail::complex(__zorvik_cqdiv, a, b);
}
inline bool operator==(const complex32& a, const complex32& b) {
  return a.re == b.re && a.im == b.im;
}
inline bool operator!=(const complex32& a, const complex32& b) { return !(a == b); }
ZORVIKRT_COMPLEX(complex32, +)
ZORVIKRT_COMPLEX(complex32, -)
ZORVIKRT_COMPLEX(complex32, *)
ZORVIKRT_COMPLEX(complex32, /)
ZORVIKRT_COMPLEX(bool, ==)
ZORVIKRT_COMPLEX(bool, !=)
#undef ZORVIKRT_COMPLEX

inline complex32& complex32::operator+=(const complex32& other) { return *this = *this + other; }
inline complex32& complex32::operator-=(const complex32& other) { return *this = *this - other; }
inline complex32& complex32::operator*=(const complex32& other) { return *this = *this * other; }
inline complex32& complex32::operator/=(const complex32& other) { return *this = *this / other; }

/** The parts. */
inline real16 real(const complex32& z) { return z.re; }
inline real16 imag(const complex32& z) { return z.im; }
/** The conjugate. */
inline complex32 conj(const complex32& z) { return {z.re, -z.im}; }
/** The modulus. */
inline real16 abs(const complex32& z) { return detail::real(__zorvik_cabsl, z); }
/** The angle, from -pi to pi. */
inline real16 arg(const complex32& z) { return atan2(z.im, z.re); }
/** The square root of non-negative real part. */
inline complex32 sqrt(const complex32& z) { return detail::complex(__zorvik_csqrtl, z); }
/** e**z. */
inline complex32 exp(const complex32& z) { return detail::complex(__zorvik_cexpl, z); }
/** The principal logarithm. */
inline complex32 log(const complex32& z) { return detail::complex(__zorvik_clogl, z); }
/** Sine. */
inline complex32 sin(const complex32& z) { return detail::complex(__zorvik_csinl, z); }
/** Cosine. */
inline complex32 cos(const complex32& z) { return detail::complex(__zorvik_ccosl, z); }
/** z**w, and z**n by squarings. */
inline complex32 pow(const complex32& z, const complex32& w) {
  return detail::complex(__zorvik_cpowl, z, w);
}
template <class T, detail::if_number<T> = 0>
inline complex32 pow(const complex32& z, T w) {
  if constexpr (detail::is_short_integer<T>)
    return detail::complex(__zorvik_cqtoi, z, static_cast<std::int32_t>(w));
  else
    return pow(z, complex32(w));
}

// --- Text --------------------------------------------------------------------------------------
// text.h tells what is written and read.

namespace detail {

inline zorvikrt_style style_of(std::chars_format format) {
  if (format == std::chars_format::fixed) return zorvikrt_fixed;
  if (format == std::chars_format::scientific) return zorvikrt_scientific;
  return zorvikrt_general;
}

inline std::size_t write(char* first, std::size_t size, const real16& x, zorvikrt_style style,
                         int precision) {
  return zorvikrt_real16_to_chars(first, size, &x, style, precision);
}
inline std::size_t write(char* first, std::size_t size, const complex32& z, zorvikrt_style style,
                         int precision) {
  const zorvikrt_cquad value = z;
  return zorvikrt_complex32_to_chars(first, size, &value, style, precision);
}
inline std::size_t read(const char* first, std::size_t size, real16& x, zorvikrt_reading* reading) {
  return zorvikrt_real16_from_chars(first, size, &x, reading);
}
inline std::size_t read(const char* first, std::size_t size, complex32& z,
                        zorvikrt_reading* reading) {
  zorvikrt_cquad value = z;
  const std::size_t count = zorvikrt_complex32_from_chars(first, size, &value, reading);
  z = value;
  return count;
}

template <class T>
inline std::to_chars_result to_chars(char* first, char* last, const T& value, zorvikrt_style style,
                                     int precision) {
  const std::size_t size = static_cast<std::size_t>(last - first);
  const std::size_t count = write(first, size, value, style, precision);
  if (count > size) return {last, std::errc::value_too_large};
  return {first + count, std::errc()};
}

template <class T>
inline std::from_chars_result from_chars(const char* first, const char* last, T& value) {
  T result;
  zorvikrt_reading reading;
  const std::size_t count = read(first, static_cast<std::size_t>(last - first), result, &reading);
  if (reading == zorvikrt_not_a_number_text) return {first, std::errc::invalid_argument};
  if (reading == zorvikrt_out_of_range) return {first + count, std::errc::result_out_of_range};
  value = result;
  return {first + count, std::errc()};
}

template <class T>
inline std::string styled(const T& value, zorvikrt_style style, int precision) {
  std::string text(64, '\0');
  std::size_t count = write(text.data(), text.size(), value, style, precision);
  if (count > text.size()) {
    text.resize(count);
    count = write(text.data(), text.size(), value, style, precision);
  }
  text.resize(count);
  return text;
}

/// fixed, scientific, uppercase, showpos, precision, width, fill and adjustment as for a double.
template <class T>
inline std::ostream& put(std::ostream& out, const T& value) {
  const std::ios_base::fmtflags flags = out.flags();
  const std::ios_base::fmtflags layout = flags & std::ios_base::floatfield;
  const zorvikrt_style style = layout == std::ios_base::fixed        ? zorvikrt_fixed
                               : layout == std::ios_base::scientific ? zorvikrt_scientific
                               : layout == std::ios_base::fmtflags() ? zorvikrt_general
                                                                     : zorvikrt_shortest;
  std::string text = styled(value, style, static_cast<int>(out.precision()));
  if ((flags & std::ios_base::showpos) != 0) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      const bool starts =
          at == 0 || text[at - 1] == '(' || text[at - 1] == ',' || text[at - 1] == '[';
      if (starts && text[at] != '-' && text[at] != '(' && text[at] != '[') text.insert(at, 1, '+');
    }
  }
  if ((flags & std::ios_base::uppercase) != 0)
    for (char& c : text)
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  const std::size_t width = out.width() > 0 ? static_cast<std::size_t>(out.width()) : 0;
  if (text.size() < width) {
    const std::ios_base::fmtflags adjust = flags & std::ios_base::adjustfield;
    std::size_t at = 0;
    if (adjust == std::ios_base::left) at = text.size();
    if (adjust == std::ios_base::internal && (text[0] == '-' || text[0] == '+')) at = 1;
    text.insert(at, width - text.size(), out.fill());
  }
  out.width(0);
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

/// Whether a number, or a pair of them, can go on with this character.
inline bool goes_on(const std::string& text, char c, int depth) {
  const bool of_number = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                         (c >= 'A' && c <= 'Z') || c == '+' || c == '-' || c == '.';
  const bool after_nan = !text.empty() && (text.back() == 'n' || text.back() == 'N');
  if (c == '(') return text.empty() || after_nan;
  if (c == '[') return text.empty() || depth == 1;
  if (c == ')' || c == ']') return depth > 0;
  return of_number || (depth > 0 && (c == ',' || c == ' '));
}

/// Takes what looks like a number, as operator>> for a double does, and reads it.
template <class T>
inline std::istream& get(std::istream& in, T& value) {
  using traits = std::istream::traits_type;
  const std::istream::sentry ready(in);
  if (!ready) return in;
  std::string text;
  std::ios_base::iostate state = std::ios_base::goodbit;
  std::streambuf& source = *in.rdbuf();
  for (int depth = 0;;) {
    const traits::int_type next = source.sgetc();
    if (traits::eq_int_type(next, traits::eof())) {
      state |= std::ios_base::eofbit;
      break;
    }
    const char c = traits::to_char_type(next);
    if (!goes_on(text, c, depth)) break;
    depth += (c == '(' || c == '[') - (c == ')' || c == ']');
    text += c;
    source.sbumpc();
    if (depth == 0 && (text[0] == '(' || text[0] == '[')) break;
  }
  T result;
  const std::from_chars_result taken = from_chars(text.data(), text.data() + text.size(), result);
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size())
    state |= std::ios_base::failbit;
  else
    value = result;
  in.setstate(state);
  return in;
}

}  // namespace detail

/** The shortest text that reads back as the same two doubles. */
inline std::to_chars_result to_chars(char* first, char* last, const real16& x) {
  return detail::to_chars(first, last, x, zorvikrt_shortest, 0);
}
/** fixed, scientific or general with a precision. */
inline std::to_chars_result to_chars(char* first, char* last, const real16& x,
                                     std::chars_format format, int precision) {
  return detail::to_chars(first, last, x, detail::style_of(format), precision);
}
/** Reads the number at the start of the text; the value is unchanged unless there is one in range.
 */
inline std::from_chars_result from_chars(const char* first, const char* last, real16& x) {
  return detail::from_chars(first, last, x);
}
/** The shortest text that reads back as the same two doubles. */
inline std::string to_string(const real16& x) { return detail::styled(x, zorvikrt_shortest, 0); }

/** The same for COMPLEX*32, as (re,im). */
inline std::to_chars_result to_chars(char* first, char* last, const complex32& z) {
  return detail::to_chars(first, last, z, zorvikrt_shortest, 0);
}
inline std::to_chars_result to_chars(char* first, char* last, const complex32& z,
                                     std::chars_format format, int precision) {
  return detail::to_chars(first, last, z, detail::style_of(format), precision);
}
inline std::from_chars_result from_chars(const char* first, const char* last, complex32& z) {
  return detail::from_chars(first, last, z);
}
inline std::string to_string(const complex32& z) { return detail::styled(z, zorvikrt_shortest, 0); }

/** As for a double, with the stream's precision; std::hexfloat gives the shortest form. */
inline std::ostream& operator<<(std::ostream& out, const real16& x) { return detail::put(out, x); }
inline std::ostream& operator<<(std::ostream& out, const complex32& z) {
  return detail::put(out, z);
}
inline std::istream& operator>>(std::istream& in, real16& x) { return detail::get(in, x); }
inline std::istream& operator>>(std::istream& in, complex32& z) { return detail::get(in, z); }

inline real16::real16(std::string_view text) : zorvikrt_quad{0, 0} {
  const std::from_chars_result taken = from_chars(text.data(), text.data() + text.size(), *this);
  if (taken.ec == std::errc::invalid_argument || taken.ptr != text.data() + text.size())
    throw std::invalid_argument("zorvikrt: not a REAL*16: " + std::string(text));
  if (taken.ec != std::errc()) zorvikrt_real16_from_chars(text.data(), text.size(), this, nullptr);
}

inline namespace literals {
/** The REAL*16 nearest to the decimal: 0.1_r16. */
inline real16 operator""_r16(const char* text) { return real16(std::string_view(text)); }
}  // namespace literals

}  // namespace zorvikrt

/** Properties of REAL*16: 106 bits wherever lo has not reached the end of the double's range. */
template <>
class std::numeric_limits<zorvikrt::real16> {
 public:
  static constexpr bool is_specialized = true, is_signed = true, is_integer = false,
                        is_exact = false, has_infinity = true, has_quiet_NaN = true,
                        has_signaling_NaN = true, is_iec559 = false, is_bounded = true,
                        is_modulo = false, traps = false, tinyness_before = false,
                        has_denorm_loss = false;
  static constexpr std::float_denorm_style has_denorm = std::denorm_present;
  static constexpr std::float_round_style round_style = std::round_indeterminate;
  static constexpr int radix = 2, digits = 106, digits10 = 31, max_digits10 = 33;
  /** 2**-969 is the smallest power of two with 106 bits. */
  static constexpr int min_exponent = -968, min_exponent10 = -291;
  static constexpr int max_exponent = 1024, max_exponent10 = 308;
  static constexpr zorvikrt::real16 min() noexcept { return {0x1p-969, 0}; }
  static constexpr zorvikrt::real16 max() noexcept {
    return {0x1.fffffffffffffp+1023, 0x1.fffffffffffffp+969};
  }
  static constexpr zorvikrt::real16 lowest() noexcept {
    return {-0x1.fffffffffffffp+1023, -0x1.fffffffffffffp+969};
  }
  /** 2**-105: the relative error of an operation is a few of these. */
  static constexpr zorvikrt::real16 epsilon() noexcept { return {0x1p-105, 0}; }
  static constexpr zorvikrt::real16 round_error() noexcept { return {1, 0}; }
  static constexpr zorvikrt::real16 denorm_min() noexcept { return {0x1p-1074, 0}; }
  static constexpr zorvikrt::real16 infinity() noexcept { return {__builtin_inf(), 0}; }
  static constexpr zorvikrt::real16 quiet_NaN() noexcept { return {__builtin_nan(""), 0}; }
  static constexpr zorvikrt::real16 signaling_NaN() noexcept { return {__builtin_nans(""), 0}; }
};

/** Equal values have equal hashes, also where their parts differ. */
template <>
struct std::hash<zorvikrt::real16> {
  std::size_t operator()(const zorvikrt::real16& x) const noexcept {
    // The closing sum joins the parts, and adding +0 takes the sign from a zero.
    const zorvikrt::real16 joined = x + 0.0;
    std::uint64_t bits[2];
    std::memcpy(bits, static_cast<const zorvikrt_quad*>(&joined), sizeof bits);
    return static_cast<std::size_t>(mixed(mixed(bits[0]) + bits[1]));
  }

 private:
  /// Brings the high bits, where a double has its own, down to the low ones.
  static std::uint64_t mixed(std::uint64_t bits) {
    bits *= 0x9E3779B97F4A7C15u;
    return bits ^ bits >> 32;
  }
};

/** The hashes of both parts. */
template <>
struct std::hash<zorvikrt::complex32> {
  std::size_t operator()(const zorvikrt::complex32& z) const noexcept {
    const std::hash<zorvikrt::real16> part;
    const std::size_t re = part(z.re);
    return re ^ (part(z.im) + 0x9E3779B9u + (re << 6) + (re >> 2));
  }
};

#endif
