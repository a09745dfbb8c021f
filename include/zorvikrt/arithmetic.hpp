/** Arithmetic and relations of REAL*16 and COMPLEX*32, with operands of other kinds. */
#ifndef ZORVIKRT_ARITHMETIC_HPP
#define ZORVIKRT_ARITHMETIC_HPP

#include <zorvikrt/inline_arithmetic.hpp>

#ifdef __cpp_impl_three_way_comparison
#include <compare>
#endif

namespace zorvikrt {

// --- Arithmetic of REAL*16 ---------------------------------------------------------------------

constexpr real16 operator+(const real16& a) { return a; }
constexpr real16 operator-(const real16& a) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  return {detail::from_image(detail::image(a.hi) ^ sign),
          detail::from_image(detail::image(a.lo) ^ sign)};
}

namespace detail {

// Each operation in line where the guard is certain of the result, else by the function beside it:
// all by value, so that operands and results stay in registers.
#define ZORVIKRT_OPERATION(name, steps, guard, A, B, entry)                      \
  [[gnu::noinline]] constexpr real16 name##_elsewhere(real16 result, A a, B b) { \
    if (in_line() && guard##_of_parts(result, a, b)) return result;              \
    return real(__zorvik_##entry, a, b);                                         \
  }                                                                              \
  constexpr real16 name(const A& a, const B& b) {                                \
    if (!in_line()) return real(__zorvik_##entry, a, b);                         \
    const real16 result = steps(a, b);                                           \
    return guard(result, a, b) ? result : name##_elsewhere(result, a, b);        \
  }
ZORVIKRT_OPERATION(add, sum_of, certain_sum, real16, real16, qadd)
ZORVIKRT_OPERATION(add, sum_of, certain_sum, real16, double, qaddd)
ZORVIKRT_OPERATION(subtract, difference_of, certain_sum, real16, real16, qsub)
ZORVIKRT_OPERATION(subtract, difference_of, certain_sum, real16, double, qsubd)
ZORVIKRT_OPERATION(subtract, difference_of, certain_sum, double, real16, dsubq)
ZORVIKRT_OPERATION(multiply, product_of, certain_product, real16, real16, qmul)
ZORVIKRT_OPERATION(multiply, product_of, certain_product, real16, double, qmuld)
ZORVIKRT_OPERATION(divide, quotient_of, certain_quotient, real16, real16, qdiv)
ZORVIKRT_OPERATION(divide, quotient_of, certain_quotient, real16, double, qdivd)
ZORVIKRT_OPERATION(divide, quotient_of, certain_quotient, double, real16, ddivq)
#undef ZORVIKRT_OPERATION

/// By an integer; 1 and -1 give a and -a bit for bit, 0 gives zero whatever a is. Parts of 2**-850
/// or more: every product is a multiple of 2**-902.
constexpr real16 multiply_by_integer(const real16& a, std::int32_t k) {
  if (in_line()) {
    if (k == 0) return {0, 0};
    if (k == 1) return a;
    if (k == -1) return -a;
    if (zero_or_between(a.hi, -850, 900) && zero_or_between(a.lo, -850, 900))
      return multiple_of(a, k);
  }
  return real(__zorvik_qmuli, a, k);
}

}  // namespace detail

constexpr real16 operator+(const real16& a, const real16& b) { return detail::add(a, b); }
constexpr real16 operator-(const real16& a, const real16& b) { return detail::subtract(a, b); }
constexpr real16 operator*(const real16& a, const real16& b) { return detail::multiply(a, b); }
constexpr real16 operator/(const real16& a, const real16& b) { return detail::divide(a, b); }

// With an operand of another kind: the operation with a double, for an integer of 64 bits the entry
// that converts it, else a conversion first.
template <class T, detail::if_number<T> = 0>
constexpr real16 operator+(const real16& a, T b) {
  if constexpr (detail::as_double<T>) return detail::add(a, static_cast<double>(b));
  if constexpr (detail::as_int64<T>)
    if (!detail::in_line()) return detail::real(__zorvik_qaddk, a, b);
  return a + real16(b);
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator+(T a, const real16& b) {
  if constexpr (detail::as_double<T> || detail::as_int64<T>)
    return b + a;
  else
    return real16(a) + b;
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator-(const real16& a, T b) {
  if constexpr (detail::as_double<T>) return detail::subtract(a, static_cast<double>(b));
  if constexpr (detail::as_int64<T>)
    if (!detail::in_line()) return detail::real(__zorvik_qsubk, a, b);
  return a - real16(b);
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator-(T a, const real16& b) {
  if constexpr (detail::as_double<T>) return detail::subtract(static_cast<double>(a), b);
  if constexpr (detail::as_int64<T>)
    if (!detail::in_line()) return detail::real(__zorvik_ksubq, a, b);
  return real16(a) - b;
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator*(const real16& a, T b) {
  if constexpr (detail::is_short_integer<T>) return detail::multiply_by_integer(a, b);
  if constexpr (detail::as_double<T>) return detail::multiply(a, static_cast<double>(b));
  if constexpr (detail::as_int64<T>)
    if (!detail::in_line()) return detail::real(__zorvik_qmulk, a, b);
  return a * real16(b);
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator*(T a, const real16& b) {
  if constexpr (detail::as_double<T> || detail::as_int64<T>)
    return b * a;
  else
    return real16(a) * b;
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator/(const real16& a, T b) {
  if constexpr (detail::as_double<T>) return detail::divide(a, static_cast<double>(b));
  if constexpr (detail::as_int64<T>)
    if (!detail::in_line()) return detail::real(__zorvik_qdivk, a, b);
  return a / real16(b);
}
template <class T, detail::if_number<T> = 0>
constexpr real16 operator/(T a, const real16& b) {
  if constexpr (detail::as_double<T>) return detail::divide(static_cast<double>(a), b);
  if constexpr (detail::as_int64<T>)
    if (!detail::in_line()) return detail::real(__zorvik_kdivq, a, b);
  return real16(a) / b;
}

constexpr real16& real16::operator++() { return *this += 1.0; }
constexpr real16& real16::operator--() { return *this -= 1.0; }
constexpr real16 real16::operator++(int) {
  const real16 before = *this;
  *this += 1.0;
  return before;
}
constexpr real16 real16::operator--(int) {
  const real16 before = *this;
  *this -= 1.0;
  return before;
}

// --- Relations of REAL*16 ----------------------------------------------------------------------
// By the difference, as qcmp forms it. Infinities and NaNs are unordered: only != is true for them.

namespace detail {

/// The condition codes of the x87 comparison, as qcmp leaves them.
enum order : std::int32_t { greater = 0, less = 0x0100, equal = 0x4000, unordered = 0x4500 };

constexpr order order_of(double difference) {
  return image(difference) << 1 == 0 ? equal : image(difference) >> 63 != 0 ? less : greater;
}
[[gnu::noinline]] constexpr order compare_elsewhere(double difference, real16 a, real16 b) {
  if (in_line() && certain_sum_of_parts(difference, a, b)) return order_of(difference);
  return static_cast<order>(__zorvik_qcmp(a, b));
}
/// By the leading part of the difference, of 2**-800 or more: what was lost is too small to show.
constexpr order compare(const real16& a, const real16& b) {
  if (!in_line()) return static_cast<order>(__zorvik_qcmp(a, b));
  const double difference = difference_of(a, b).hi;
  return between(difference, -800, 1000) ? order_of(difference)
                                         : compare_elsewhere(difference, a, b);
}

}  // namespace detail

#define ZORVIKRT_RELATION(relation, test)                              \
  constexpr bool operator relation(const real16& a, const real16& b) { \
    const detail::order order = detail::compare(a, b);                 \
    return test;                                                       \
  }                                                                    \
  template <class T, detail::if_number<T> = 0>                         \
  constexpr bool operator relation(const real16& a, T b) {             \
    return a relation real16(b);                                       \
  }                                                                    \
  template <class T, detail::if_number<T> = 0>                         \
  constexpr bool operator relation(T a, const real16& b) {             \
    return real16(a) relation b;                                       \
  }
ZORVIKRT_RELATION(==, order == detail::equal)
ZORVIKRT_RELATION(!=, order != detail::equal)
ZORVIKRT_RELATION(<, order == detail::less)
ZORVIKRT_RELATION(<=, order == detail::less || order == detail::equal)
ZORVIKRT_RELATION(>, order == detail::greater)
ZORVIKRT_RELATION(>=, order == detail::greater || order == detail::equal)
#undef ZORVIKRT_RELATION

#ifdef __cpp_lib_three_way_comparison
constexpr std::partial_ordering operator<=>(const real16& a, const real16& b) {
  switch (detail::compare(a, b)) {
    case detail::greater:
      return std::partial_ordering::greater;
    case detail::less:
      return std::partial_ordering::less;
    case detail::equal:
      return std::partial_ordering::equivalent;
    default:
      return std::partial_ordering::unordered;
  }
}
template <class T, detail::if_number<T> = 0>
constexpr std::partial_ordering operator<=>(const real16& a, T b) {
  return a <=> real16(b);
}
#endif

// --- Arithmetic of COMPLEX*32 ------------------------------------------------------------------
// Operands of other kinds convert to COMPLEX*32 first.

constexpr complex32 operator+(const complex32& a) { return a; }
constexpr complex32 operator-(const complex32& a) { return {-a.re, -a.im}; }
constexpr complex32 operator+(const complex32& a, const complex32& b) {
  return {a.re + b.re, a.im + b.im};
}
constexpr complex32 operator-(const complex32& a, const complex32& b) {
  return {a.re - b.re, a.im - b.im};
}
/// The steps of cqmul are these operations, in this order.
constexpr complex32 operator*(const complex32& a, const complex32& b) {
  if (detail::in_line()) return {a.re * b.re - a.im * b.im, a.re * b.im + b.re * a.im};
  return detail::complex(__zorvik_cqmul, a, b);
}
inline complex32 operator/(const complex32& a, const complex32& b) {
  return detail::complex(__zorvik_cqdiv, a, b);
}
constexpr bool operator==(const complex32& a, const complex32& b) {
  return a.re == b.re && a.im == b.im;
}
constexpr bool operator!=(const complex32& a, const complex32& b) { return !(a == b); }

namespace detail {
template <class T>
using if_real_part = std::enable_if_t<is_number<T> || std::is_same_v<T, real16>, int>;
}  // namespace detail
#define ZORVIKRT_COMPLEX(type, symbol)                             \
  template <class T, detail::if_real_part<T> = 0>                  \
  constexpr type operator symbol(const complex32& a, const T& b) { \
    return a symbol complex32(b);                                  \
  }                                                                \
  template <class T, detail::if_real_part<T> = 0>                  \
  constexpr type operator symbol(const T& a, const complex32& b) { \
    return complex32(a) symbol b;                                  \
  }
ZORVIKRT_COMPLEX(complex32, +)
ZORVIKRT_COMPLEX(complex32, -)
ZORVIKRT_COMPLEX(complex32, *)
ZORVIKRT_COMPLEX(complex32, /)
ZORVIKRT_COMPLEX(bool, ==)
ZORVIKRT_COMPLEX(bool, !=)
#undef ZORVIKRT_COMPLEX

constexpr complex32& complex32::operator+=(const complex32& other) { return *this = *this + other; }
constexpr complex32& complex32::operator-=(const complex32& other) { return *this = *this - other; }
constexpr complex32& complex32::operator*=(const complex32& other) { return *this = *this * other; }
inline complex32& complex32::operator/=(const complex32& other) { return *this = *this / other; }

}  // namespace zorvikrt

#endif
