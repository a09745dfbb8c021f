#pragma once

// The exact functions by MPFR, the operands that bounds are held over, and the error in the unit
// that a bound states: for the test of the bounds and for the page of accuracy.

#include <mpfr.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "entry_table.hpp"

namespace support {

class number {
 public:
  number() { mpfr_init2(value_, 260); }
  ~number() { mpfr_clear(value_); }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
  operator mpfr_ptr() { return value_; }

 private:
  mpfr_t value_;
};

struct value {
  number re, im;
};
using function = void (*)(value& result, value& a, value& b);

inline constexpr mpfr_rnd_t nearest = MPFR_RNDN;

inline void turn(mpfr_ptr x, bool to_degrees) {
  number pi;
  mpfr_const_pi(pi, nearest);
  if (to_degrees) mpfr_ui_div(pi, 180, pi, nearest);
  if (!to_degrees) mpfr_div_ui(pi, pi, 180, nearest);
  mpfr_mul(x, x, pi, nearest);
}

template <int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t)>
void of(value& r, value& a, value&) {
  exact(r.re, a.re, nearest);
}
template <int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t)>
void of(value& r, value& a, value& b) {
  exact(r.re, a.re, b.re, nearest);
}
template <auto exact>
void of_degrees(value& r, value& a, value& b) {
  turn(a.re, false);
  of<exact>(r, a, b);
}
template <auto exact>
void in_degrees(value& r, value& a, value& b) {
  of<exact>(r, a, b);
  turn(r.re, true);
}

inline void modulus(value& r, value& a, value&) { mpfr_hypot(r.re, a.re, a.im, nearest); }
inline void product(value& r, value& a, value& b) {
  mpfr_fmms(r.re, a.re, b.re, a.im, b.im, nearest);
  mpfr_fmma(r.im, a.re, b.im, a.im, b.re, nearest);
}
inline void quotient(value& r, value& a, value& b) {
  number square;
  mpfr_fmma(square, b.re, b.re, b.im, b.im, nearest);
  mpfr_neg(b.im, b.im, nearest);
  product(r, a, b);
  mpfr_div(r.re, r.re, square, nearest);
  mpfr_div(r.im, r.im, square, nearest);
}
inline void exponential(value& r, value& a, value&) {
  number size;
  mpfr_exp(size, a.re, nearest);
  mpfr_sin_cos(r.im, r.re, a.im, nearest);
  mpfr_mul(r.re, r.re, size, nearest);
  mpfr_mul(r.im, r.im, size, nearest);
}
inline void logarithm(value& r, value& a, value&) {
  mpfr_hypot(r.re, a.re, a.im, nearest);
  mpfr_log(r.re, r.re, nearest);
  mpfr_atan2(r.im, a.im, a.re, nearest);
}
inline void power(value& r, value& a, value& b) {
  value log, times;
  logarithm(log, a, b);
  product(times, log, b);
  exponential(r, times, b);
}
/// w = sqrt((|z| + |x|) / 2), v = |y| / 2w.
inline void square_root(value& r, value& a, value&) {
  number w, v;
  mpfr_hypot(w, a.re, a.im, nearest);
  mpfr_abs(v, a.re, nearest);
  mpfr_add(w, w, v, nearest);
  mpfr_div_ui(w, w, 2, nearest);
  mpfr_sqrt(w, w, nearest);
  mpfr_abs(v, a.im, nearest);
  mpfr_div(v, v, w, nearest);
  mpfr_div_ui(v, v, 2, nearest);
  const bool right = mpfr_sgn(static_cast<mpfr_ptr>(a.re)) >= 0;
  mpfr_set(r.re, right ? w : v, nearest);
  mpfr_setsign(r.im, right ? v : w, mpfr_signbit(static_cast<mpfr_ptr>(a.im)), nearest);
}
/// The sine of x + iy; the cosine is that of x + pi/2 + iy.
inline void sine(value& r, value& a, value&) {
  number cosine, size;
  mpfr_sin_cos(r.re, cosine, a.re, nearest);
  mpfr_sinh_cosh(r.im, size, a.im, nearest);
  mpfr_mul(r.re, r.re, size, nearest);
  mpfr_mul(r.im, r.im, cosine, nearest);
}
inline void cosine(value& r, value& a, value& b) {
  number pi;
  mpfr_const_pi(pi, nearest);
  mpfr_div_ui(pi, pi, 2, nearest);
  mpfr_add(a.re, a.re, pi, nearest);
  sine(r, a, b);
}

inline constexpr struct {
  const char* stems;  // between blanks
  function exact;
} functions[] = {{" dexp exp expl ", of<mpfr_exp>},
                 {" dlog alog logl ", of<mpfr_log>},
                 {" dlog10 alog10 log10l ", of<mpfr_log10>},
                 {" dsqrt sqrt sqrtl ", of<mpfr_sqrt>},
                 {" dsin sin sinl ", of<mpfr_sin>},
                 {" dcos cos cosl ", of<mpfr_cos>},
                 {" dtan tan tanl ", of<mpfr_tan>},
                 {" dcot cot cotl ", of<mpfr_cot>},
                 {" dsind sind sindl ", of_degrees<mpfr_sin>},
                 {" dcosd cosd cosdl ", of_degrees<mpfr_cos>},
                 {" dtand tand tandl ", of_degrees<mpfr_tan>},
                 {" dasin asin asinl ", of<mpfr_asin>},
                 {" dacos acos acosl ", of<mpfr_acos>},
                 {" datan atan atanl ", of<mpfr_atan>},
                 {" dasind asind asindl ", in_degrees<mpfr_asin>},
                 {" dacosd acosd acosdl ", in_degrees<mpfr_acos>},
                 {" datand atand atandl ", in_degrees<mpfr_atan>},
                 {" datan2 atan2 atan2l ", of<mpfr_atan2>},
                 {" datan2d atan2d atan2dl ", in_degrees<mpfr_atan2>},
                 {" dsinh sinh sinhl ", of<mpfr_sinh>},
                 {" dcosh cosh coshl ", of<mpfr_cosh>},
                 {" dtanh tanh tanhl ", of<mpfr_tanh>},
                 {" dtod ftof powl powld dtoi ftoi powli powlk ", of<mpfr_pow>},
                 {" qadd qaddd qaddk ", of<mpfr_add>},
                 {" qsub qsubd qsubk dsubq ksubq ", of<mpfr_sub>},
                 {" qmul qmuld qmulk qmuli ", of<mpfr_mul>},
                 {" qdiv qdivd qdivk ddivq kdivq ", of<mpfr_div>},
                 {" cabs cdabs cabsl ", modulus},
                 {" cmul cdmul cqmul ", product},
                 {" cdiv cddiv cqdiv ", quotient},
                 {" cexp cdexp cexpl ", exponential},
                 {" clog cdlog clogl ", logarithm},
                 {" csqrt cdsqrt csqrtl ", square_root},
                 {" csin cdsin csinl ", sine},
                 {" ccos cdcos ccosl ", cosine},
                 {" ctoc cdtocd cpowl ctoi cdtoi cqtoi ", power}};

template <class T>
T part_of(const operand& image, int at) {
  T part;
  std::memcpy(&part, image.bytes.data() + at, sizeof part);
  return part;
}

/// A number of any type code, exactly.
inline void read(value& v, char code, const operand& image) {
  const auto real = [&](mpfr_ptr into, int at) {
    switch (code) {
      case 'i':
        return mpfr_set_si(into, part_of<std::int32_t>(image, at), nearest);
      case 'k':
        return mpfr_set_sj(into, part_of<std::int64_t>(image, at), nearest);
      case 'f':
      case 'c':
        return mpfr_set_d(into, part_of<float>(image, at), nearest);
      case 'q':
      case 'x':
        mpfr_set_d(into, part_of<double>(image, at), nearest);
        return mpfr_add_d(into, into, part_of<double>(image, at + 8), nearest);
      default:
        return mpfr_set_d(into, part_of<double>(image, at), nearest);
    }
  };
  real(v.re, 0);
  mpfr_set_zero(v.im, 1);
  if (code == 'c' || code == 'z' || code == 'x') real(v.im, size_of(code) / 2);
}

/// Half of the operands spread evenly over the range, half over its exponents; a REAL*16 with a
/// tail below half a unit.
inline operand drawn(char code, sample range, generator& random) {
  const explorer::type_code& type = explorer::type_of(code);
  const double low = range.low, high = range.high;
  operand image;
  const auto put = [&](auto part, int at) {
    std::memcpy(image.bytes.data() + at, &part, sizeof part);
  };
  const int step = code == 'q' || code == 'x' ? 16 : type.size / type.parts;
  for (int at = 0; at < type.size; at += step) {
    const double unit = static_cast<double>(random() >> 11) * 0x1p-53;
    const double x =
        random() % 2 == 0 || low * high <= 0
            ? low + (high - low) * unit
            : std::copysign(std::exp(std::log(std::fabs(low)) + std::log(high / low) * unit), low);
    if (code == 'i') put(static_cast<std::int32_t>(std::floor(x)), at);
    if (code == 'k') put(static_cast<std::int64_t>(std::floor(x)), at);
    if (step == 4 && type.part == 'f') put(static_cast<float>(x), at);
    if (type.part == 'd') put(x, at);
    if (step == 16)
      put(std::fabs(x) * 0x1p-54 * (static_cast<double>(random() >> 11) * 0x1p-53 - 0.5), at + 8);
  }
  return image;
}

/// The error of the worse part, in the unit that the list states.
inline double error(char code, value& got, value& exact, double least) {
  const bool pair = code == 'q' || code == 'x';
  number scale;
  mpfr_set_d(scale, least, nearest);
  for (mpfr_ptr part : {static_cast<mpfr_ptr>(exact.re), static_cast<mpfr_ptr>(exact.im)})
    if (mpfr_cmpabs(part, scale) > 0) mpfr_abs(scale, part, nearest);
  if (mpfr_zero_p(static_cast<mpfr_ptr>(scale))) mpfr_set_d(scale, DBL_MIN, nearest);
  const int digits = code == 'f' || code == 'c' ? FLT_MANT_DIG : DBL_MANT_DIG;
  if (!pair)
    mpfr_set_ui_2exp(scale, 1, mpfr_get_exp(static_cast<mpfr_ptr>(scale)) - digits, nearest);
  double worse = 0;
  for (auto [one, other] : {std::pair<mpfr_ptr, mpfr_ptr>{got.re, exact.re}, {got.im, exact.im}}) {
    mpfr_sub(one, one, other, nearest);
    mpfr_div(one, one, scale, nearest);
    if (pair) mpfr_mul_2si(one, one, 106, nearest);
    const double distance = std::fabs(mpfr_get_d(one, nearest));
    if (!(distance <= worse)) worse = distance;
  }
  return worse;
}

struct bound {
  const char* stem;
  double units, least;
  std::array<sample, 2> ranges;
};
#define BARE(...) __VA_ARGS__
#define ZRT_BOUND(stem, units, least, ranges) {stem, units, least, {BARE ranges}},
inline constexpr bound bounds[] = {
#include "entry_bounds.inc"
};

inline function exact_of(const char* stem) {
  for (const auto& row : functions)
    if (std::strstr(row.stems, (' ' + std::string(stem) + ' ').c_str()) != nullptr)
      return row.exact;
  return nullptr;
}

inline const entry& entry_of(const char* stem) {
  const auto all = all_entries();
  return *std::find_if(all.begin(), all.end(),
                       [&](const entry& e) { return std::strcmp(e.name, stem) == 0; });
}

}  // namespace support
