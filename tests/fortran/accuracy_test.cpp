// The functions that the Fortran module computes itself against MPFR and MPC at 300 bits. A bound
// is the error in units of 2**-106 of the result, or of the modulus of a complex result.

#include <mpc.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "gtest/gtest.h"
#include "zorvikrt/zorvikrt.h"

extern "C" {
void fortran_real(const char* name, const zorvikrt_quad* x, const zorvikrt_quad* y,
                  zorvikrt_quad* r);
void fortran_complex(const char* name, const zorvikrt_cquad* z, zorvikrt_cquad* r);
}

namespace {

constexpr int precision = 300, operands = 2000;

struct number {
  mpc_t value;
  number() { mpc_init2(value, precision); }
  explicit number(zorvikrt_quad re, zorvikrt_quad im = {0, 0}) : number() {
    mpfr_set_d(mpc_realref(value), re.hi, MPFR_RNDN);
    mpfr_add_d(mpc_realref(value), mpc_realref(value), re.lo, MPFR_RNDN);
    mpfr_set_d(mpc_imagref(value), im.hi, MPFR_RNDN);
    mpfr_add_d(mpc_imagref(value), mpc_imagref(value), im.lo, MPFR_RNDN);
  }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
  ~number() { mpc_clear(value); }
  mpfr_ptr re() { return mpc_realref(value); }
  mpfr_ptr im() { return mpc_imagref(value); }
};

/// |got - exact| in units of 2**-106 of the unit.
double units(mpfr_srcptr got, mpfr_srcptr exact, mpfr_srcptr unit) {
  number difference;
  mpfr_sub(difference.re(), got, exact, MPFR_RNDN);
  if (mpfr_zero_p(difference.re())) return 0;
  mpfr_div(difference.re(), difference.re(), unit, MPFR_RNDN);
  mpfr_mul_2si(difference.re(), difference.re(), 106, MPFR_RNDN);
  return std::abs(mpfr_get_d(difference.re(), MPFR_RNDN));
}

struct interval {
  double low, high;
};

/// A normalised REAL*16, spread over the exponents where the interval does not hold zero.
zorvikrt_quad draw(interval in, std::mt19937_64& random) {
  const double unit = static_cast<double>(random() >> 11) * 0x1p-53;
  const double hi =
      in.low * in.high <= 0
          ? in.low + (in.high - in.low) * unit
          : std::copysign(std::exp(std::log(std::abs(in.low)) + std::log(in.high / in.low) * unit),
                          in.low);
  return {hi, std::abs(hi) * 0x1p-54 * (static_cast<double>(random() >> 11) * 0x1p-53 - 0.5)};
}

std::string padded(std::string name) { return name.append(7 - name.size(), ' '); }

void modulo(mpfr_ptr r, mpfr_srcptr a, mpfr_srcptr p) {
  mpfr_fmod(r, a, p, MPFR_RNDN);
  if (!mpfr_zero_p(r) && mpfr_signbit(r) != mpfr_signbit(p)) mpfr_add(r, r, p, MPFR_RNDN);
}

struct real_row {
  const char* name;
  interval x, y;
  double bound;
};

struct complex_row {
  const char* name;
  int (*exact)(mpc_ptr, mpc_srcptr, mpc_rnd_t);
  interval x, y;
  double bound;
};

const real_row real_rows[] = {
    {"asinh", {1e-300, 1e-20}, {}, 1},
    {"asinh", {1e-20, 1}, {}, 8},
    {"asinh", {-1e300, -1}, {}, 4},
    {"acosh", {1, 1.001}, {}, 5},
    {"acosh", {1, 1e300}, {}, 5},
    {"atanh", {1e-300, 0.1}, {}, 3},
    {"atanh", {-1, 1}, {}, 5},
    {"hypot", {1e-100, 1e100}, {1e-100, 1e100}, 5},
    {"hypot", {1e300, 1e308}, {-1e308, -1e300}, 5},
    {"norm2", {1e-100, 1e100}, {1e-100, 1e100}, 4},
    {"norm2", {1e300, 1e307}, {1e300, 1e307}, 5},
    {"modulo", {-100, 100}, {1, 10}, 120},
    {"modulo", {1, 100}, {-10, -1}, 120},
};

// The parts of sinh, cosh, tan and tanh have the absolute errors of sinl, cosl and tanl.
const complex_row complex_rows[] = {
    {"sinh", mpc_sinh, {-3, 3}, {-3, 3}, 80},
    {"cosh", mpc_cosh, {-3, 3}, {-3, 3}, 130},
    {"tanh", mpc_tanh, {-3, 3}, {-3, 3}, 130},
    {"tanh", mpc_tanh, {3, 38}, {-3, 3}, 12},
    {"tanh", mpc_tanh, {38, 300}, {-3, 3}, 1},
    {"tan", mpc_tan, {-3, 3}, {-3, 3}, 250},
    {"tan", mpc_tan, {1e-12, 1e-8}, {1e-12, 1e-8}, 3},
    {"asin", mpc_asin, {-3, 3}, {-3, 3}, 8},
    {"asin", mpc_asin, {1e-12, 1e-8}, {1e-12, 1e-8}, 8},
    {"asin", mpc_asin, {1, 1e100}, {1e-100, 1}, 4},
    {"acos", mpc_acos, {-3, 3}, {-3, 3}, 10},
    {"atan", mpc_atan, {-3, 3}, {-3, 3}, 8},
    {"atan", mpc_atan, {1e-12, 1e-8}, {1e-12, 1e-8}, 5},
    {"asinh", mpc_asinh, {-3, 3}, {-3, 3}, 8},
    {"acosh", mpc_acosh, {-3, 3}, {-3, 3}, 10},
    {"atanh", mpc_atanh, {-3, 3}, {-3, 3}, 6},
    {"atanh", mpc_atanh, {1, 1e100}, {1e-100, 1e100}, 4},
};

}  // namespace

TEST(FortranAccuracy, Real) {
  for (const real_row& row : real_rows) {
    std::mt19937_64 random(31);
    const std::string name = row.name;
    double worst = 0;
    zorvikrt_quad where{};
    for (int i = 0; i < operands; ++i) {
      const zorvikrt_quad x = draw(row.x, random), y = draw(row.y, random);
      zorvikrt_quad r;
      fortran_real(padded(name).c_str(), &x, &y, &r);
      number a(x), b(y), got(r), exact;
      if (name == "asinh")
        mpfr_asinh(exact.re(), a.re(), MPFR_RNDN);
      else if (name == "acosh")
        mpfr_acosh(exact.re(), a.re(), MPFR_RNDN);
      else if (name == "atanh")
        mpfr_atanh(exact.re(), a.re(), MPFR_RNDN);
      else if (name == "modulo")
        modulo(exact.re(), a.re(), b.re());
      else
        mpfr_hypot(exact.re(), a.re(), b.re(), MPFR_RNDN);
      if (mpfr_nan_p(exact.re())) continue;
      const double error = units(got.re(), exact.re(), name == "modulo" ? b.re() : exact.re());
      if (!(error <= worst)) worst = error, where = x;
    }
    EXPECT_LE(worst, row.bound) << row.name << " from " << row.x.low << " at " << where.hi;
  }
}

TEST(FortranAccuracy, Complex) {
  for (const complex_row& row : complex_rows) {
    std::mt19937_64 random(37);
    double worst = 0;
    zorvikrt_cquad where{};
    for (int i = 0; i < operands; ++i) {
      const zorvikrt_cquad z = {draw(row.x, random), draw(row.y, random)};
      zorvikrt_cquad r;
      fortran_complex(padded(row.name).c_str(), &z, &r);
      number operand(z.re, z.im), got(r.re, r.im), exact;
      row.exact(exact.value, operand.value, MPC_RNDNN);
      number modulus;
      mpc_abs(modulus.re(), exact.value, MPFR_RNDN);
      const double error = std::max(units(got.re(), exact.re(), modulus.re()),
                                    units(got.im(), exact.im(), modulus.re()));
      if (!(error <= worst)) worst = error, where = z;
    }
    EXPECT_LE(worst, row.bound) << row.name << " from " << row.x.low << " at " << where.re.hi
                                << ", " << where.im.hi;
  }
}
