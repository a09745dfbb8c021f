#pragma once

// The exact functions by MPFR and MPC, the operands that bounds are held over, and the error in the
// unit that a bound states: for the test of the bounds and for the page of accuracy.

#include <mpc.h>

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

/// A complex number; a real one lies in its first part.
struct value {
  mpc_t both;
  mpfr_ptr re = mpc_realref(both), im = mpc_imagref(both);

  value() { mpc_init2(both, 260); }
  ~value() { mpc_clear(both); }
  value(const value&) = delete;
  value& operator=(const value&) = delete;
};
using function = void (*)(value& result, value& a, value& b);

inline constexpr mpfr_rnd_t nearest = MPFR_RNDN;

template <int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t)>
void one(value& r, value& a, value&) {
  exact(r.re, a.re, nearest);
}
template <int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t)>
void two(value& r, value& a, value& b) {
  exact(r.re, a.re, b.re, nearest);
}
template <int (*exact)(mpfr_ptr, mpfr_srcptr, unsigned long, mpfr_rnd_t)>
void turned_one(value& r, value& a, value&) {
  exact(r.re, a.re, 360, nearest);
}
template <int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, unsigned long, mpfr_rnd_t)>
void turned_two(value& r, value& a, value& b) {
  exact(r.re, a.re, b.re, 360, nearest);
}

template <int (*exact)(mpfr_ptr, mpc_srcptr, mpfr_rnd_t)>
void modulus(value& r, value& a, value&) {
  exact(r.re, a.both, nearest);
}
template <int (*exact)(mpc_ptr, mpc_srcptr, mpc_rnd_t)>
void complex_one(value& r, value& a, value&) {
  exact(r.both, a.both, MPC_RNDNN);
}
template <int (*exact)(mpc_ptr, mpc_srcptr, mpc_srcptr, mpc_rnd_t)>
void complex_two(value& r, value& a, value& b) {
  exact(r.both, a.both, b.both, MPC_RNDNN);
}

inline constexpr struct {
  const char* stems;  // between blanks
  function exact;
} functions[] = {
#define ZRT_REAL_PEER(shape, f, d, q, name, mpfr) {" " #f " " #d " " #q " ", shape<mpfr_##mpfr>},
#define ZRT_COMPLEX_PEER(shape, c, z, x, name, mpc) {" " #c " " #z " " #x " ", shape<mpc_##mpc>},
#define ZRT_EXACT_REAL(shape, stems, name, mpfr) {" " stems " ", shape<mpfr_##mpfr>},
#define ZRT_EXACT_COMPLEX(shape, stems, name, mpc) {" " stems " ", shape<mpc_##mpc>},
#include "counterparts.inc"
};

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
  for (mpfr_ptr part : {exact.re, exact.im})
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
