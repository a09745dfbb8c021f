// Functions of the C++ headers against MPFR: the tables of docs/special.md and docs/cxx.md, row by
// row. A bound fails when it is exceeded, and when it is more than twice what was seen.

#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <fstream>
#include <random>
#include <sstream>

#include "zorvikrt/special.hpp"
#include "zorvikrt/zorvikrt.hpp"

namespace {

struct row {
  std::string function;
  int order = 0;
  double low = 0, high = 0, scale = 0, bound = 0;
};

std::vector<row> rows() {
  std::vector<row> found;
  for (const char* name : {"special.md", "cxx.md"}) {
    std::ifstream page(std::string(ZORVIKRT_DOCS "/") + name);
    for (std::string line; std::getline(page, line);) {
      std::istringstream words(line);
      row r;
      char bar;
      if (!(words >> bar >> r.function) || bar != '|' || r.function.starts_with('`')) continue;
      if (r.function.starts_with("bessel_") && r.function.ends_with('n')) words >> r.order;
      if (words >> bar >> r.low >> bar >> r.high >> bar >> r.scale >> bar >> r.bound)
        found.push_back(r);
    }
  }
  return found;
}

using zorvikrt::real16;

struct function {
  const char* name;
  real16 (*computed)(const real16&);
  int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
};
const function functions[] = {
    {"erf", zorvikrt::erf, mpfr_erf},        {"erfc", zorvikrt::erfc, mpfr_erfc},
    {"gamma", zorvikrt::tgamma, mpfr_gamma}, {"bessel_j0", zorvikrt::j0, mpfr_j0},
    {"bessel_j1", zorvikrt::j1, mpfr_j1},    {"bessel_y0", zorvikrt::y0, mpfr_y0},
    {"bessel_y1", zorvikrt::y1, mpfr_y1},    {"exp2", zorvikrt::exp2, mpfr_exp2},
    {"expm1", zorvikrt::expm1, mpfr_expm1},  {"log1p", zorvikrt::log1p, mpfr_log1p},
    {"log2", zorvikrt::log2, mpfr_log2},     {"cbrt", zorvikrt::cbrt, mpfr_cbrt},
    {"asinh", zorvikrt::asinh, mpfr_asinh},  {"acosh", zorvikrt::acosh, mpfr_acosh},
    {"atanh", zorvikrt::atanh, mpfr_atanh}};

real16 computed(const row& r, const real16& x) {
  if (r.function == "bessel_jn") return zorvikrt::jn(r.order, x);
  if (r.function == "bessel_yn") return zorvikrt::yn(r.order, x);
  if (r.function == "erfc_scaled") return zorvikrt::erfc_scaled(x);
  if (r.function == "log_gamma") return zorvikrt::lgamma(x);
  if (r.function == "hypot") return hypot(x, 0.75);
  for (const function& f : functions)
    if (r.function == f.name) return f.computed(x);
  ADD_FAILURE() << "no function " << r.function;
  return x;
}

void exact(const row& r, mpfr_ptr y, mpfr_srcptr x) {
  int sign;
  mpfr_t other;
  mpfr_init2(other, 400);
  if (r.function == "erfc_scaled") {
    mpfr_erfc(y, x, MPFR_RNDN);
    mpfr_sqr(other, x, MPFR_RNDN);
    mpfr_exp(other, other, MPFR_RNDN);
    mpfr_mul(y, y, other, MPFR_RNDN);
  }
  if (r.function == "hypot") {
    mpfr_set_d(other, 0.75, MPFR_RNDN);
    mpfr_hypot(y, x, other, MPFR_RNDN);
  }
  if (r.function == "log_gamma") mpfr_lgamma(y, &sign, x, MPFR_RNDN);
  if (r.function == "bessel_jn") mpfr_jn(y, r.order, x, MPFR_RNDN);
  if (r.function == "bessel_yn") mpfr_yn(y, r.order, x, MPFR_RNDN);
  for (const function& f : functions)
    if (r.function == f.name) f.exact(y, x, MPFR_RNDN);
  mpfr_clear(other);
}

void set(mpfr_ptr value, const real16& q) {
  mpfr_set_d(value, q.hi, MPFR_RNDN);
  mpfr_add_d(value, value, q.lo, MPFR_RNDN);
}

}  // namespace

TEST(CppAccuracy, IsAsThePagesSay) {
  const std::vector<row> table = rows();
  ASSERT_GT(table.size(), 30u);
  mpfr_t x, y, difference;
  mpfr_inits2(400, x, y, difference, nullptr);
  for (const row& r : table) {
    std::mt19937_64 random(31);
    const auto unit = [&] { return static_cast<double>(random() >> 11) * 0x1p-53; };
    double worst = 0;
    real16 where{};
    for (int i = 0; i < (r.function.starts_with("bessel") ? 100 : 1000); ++i) {
      const double u = unit();
      real16 operand{};
      const bool even = i % 2 == 0 || r.low * r.high <= 0;
      const double spread = std::exp(std::log(std::abs(r.low)) +
                                     (std::log(std::abs(r.high)) - std::log(std::abs(r.low))) * u);
      operand.hi = even ? r.low + (r.high - r.low) * u : std::copysign(spread, r.low);
      operand.lo = std::abs(operand.hi) * 0x1p-53 * (unit() - 0.5);
      set(x, operand);
      exact(r, y, x);
      set(difference, computed(r, operand));
      mpfr_sub(difference, difference, y, MPFR_RNDN);
      mpfr_abs(y, y, MPFR_RNDN);
      if (mpfr_cmp_d(y, r.scale) < 0) mpfr_set_d(y, r.scale, MPFR_RNDN);
      mpfr_div(difference, difference, y, MPFR_RNDN);
      const double error = std::abs(mpfr_get_d(difference, MPFR_RNDN)) * 0x1p106;
      if (!(error <= worst)) worst = error, where = operand;
    }
    EXPECT_TRUE(worst <= r.bound && r.bound <= 2 * worst)
        << r.function << ' ' << r.order << " from " << r.low << " to " << r.high << ": " << worst
        << " at " << std::hexfloat << where.hi << ' ' << where.lo << ", bound " << std::defaultfloat
        << r.bound;
  }
  mpfr_clears(x, y, difference, nullptr);
}
