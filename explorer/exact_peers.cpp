// MPFR and MPC, to 300 bits. Their functions and the one structure of theirs are as they have been
// in every release under these file names.

#include "peers.hpp"

namespace explorer {
namespace {

struct mpfr_number {
  long precision;
  int sign;
  long exponent;
  void* limbs;
};
struct mpc_number {
  mpfr_number re, im;
};

constexpr long bits = 300;
constexpr int nearest = 0;

/// What is used of MPFR.
struct mpfr_functions {
  void (*init2)(mpfr_number*, long) = find<void(mpfr_number*, long)>("mpfr_init2");
  void (*clear)(mpfr_number*) = find<void(mpfr_number*)>("mpfr_clear");
  int (*set_d)(mpfr_number*, double, int) = find<int(mpfr_number*, double, int)>("mpfr_set_d");
  int (*add_d)(mpfr_number*, const mpfr_number*, double,
               int) = find<int(mpfr_number*, const mpfr_number*, double, int)>("mpfr_add_d");
  int (*sub_d)(mpfr_number*, const mpfr_number*, double,
               int) = find<int(mpfr_number*, const mpfr_number*, double, int)>("mpfr_sub_d");
  double (*get_d)(const mpfr_number*, int) = find<double(const mpfr_number*, int)>("mpfr_get_d");
  double (*get_d_2exp)(long*, const mpfr_number*,
                       int) = find<double(long*, const mpfr_number*, int)>("mpfr_get_d_2exp");
  int (*mul_2si)(mpfr_number*, const mpfr_number*, long,
                 int) = find<int(mpfr_number*, const mpfr_number*, long, int)>("mpfr_mul_2si");
  int (*snprintf)(char*, std::size_t, const char*,
                  ...) = find<int(char*, std::size_t, const char*, ...)>("mpfr_snprintf");

  bool complete() const {
    return init2 && clear && set_d && add_d && sub_d && get_d && get_d_2exp && mul_2si && snprintf;
  }

 private:
  template <class F>
  static F* find(const char* name) {
    return libmpfr().get<F>(name);
  }
};

const mpfr_functions& mpfr() {
  static const mpfr_functions functions;
  return functions;
}

/// A complex number; a real one is its first part.
class number : public mpc_number {
 public:
  number() {
    mpfr().init2(&re, bits);
    mpfr().init2(&im, bits);
    mpfr().set_d(&im, 0, nearest);
  }
  ~number() {
    mpfr().clear(&re);
    mpfr().clear(&im);
  }
  number(const number&) = delete;
  number& operator=(const number&) = delete;
};

void read(mpfr_number& into, const precise& value) {
  mpfr().set_d(&into, 0, nearest);
  for (wide rest : {value.head, value.rest})
    for (int i = 0; i < 2; ++i) {
      const auto next = static_cast<double>(rest);
      mpfr().add_d(&into, &into, next, nearest);
      rest -= next;
      if (rest != rest) break;  // infinite
    }
}

/// The first 212 bits.
precise converted(mpfr_number& value) {
  long exponent = 0;
  const double leading = mpfr().get_d_2exp(&exponent, &value, nearest);
  if (leading == 0 || leading - leading != 0) return {leading};
  mpfr().mul_2si(&value, &value, -exponent, nearest);
  wide parts[2] = {0, 0};
  for (wide& part : parts)
    for (int i = 0; i < 2; ++i) {
      const double next = mpfr().get_d(&value, nearest);
      mpfr().sub_d(&value, &value, next, nearest);
      part += next;
    }
  return {scaled(parts[0], exponent), scaled(parts[1], exponent)};
}

void compute(shape is, void (*function)(), number& result, number& a, number& b) {
  constexpr unsigned long turn = 360;
  using real = mpfr_number*;
  using complex = mpc_number*;
  switch (is) {
    case shape::one:
      reinterpret_cast<int (*)(real, real, int)>(function)(&result.re, &a.re, nearest);
      break;
    case shape::two:
      reinterpret_cast<int (*)(real, real, real, int)>(function)(&result.re, &a.re, &b.re, nearest);
      break;
    case shape::turned_one:
      reinterpret_cast<int (*)(real, real, unsigned long, int)>(function)(&result.re, &a.re, turn,
                                                                          nearest);
      break;
    case shape::turned_two:
      reinterpret_cast<int (*)(real, real, real, unsigned long, int)>(function)(
          &result.re, &a.re, &b.re, turn, nearest);
      break;
    case shape::modulus:
      reinterpret_cast<int (*)(real, complex, int)>(function)(&result.re, &a, nearest);
      break;
    case shape::complex_one:
      reinterpret_cast<int (*)(complex, complex, int)>(function)(&result, &a, nearest);
      break;
    case shape::complex_two:
      reinterpret_cast<int (*)(complex, complex, complex, int)>(function)(&result, &a, &b, nearest);
      break;
  }
}

std::string written(const mpfr_number& value) {
  char text[80];
  mpfr().snprintf(text, sizeof text, "%.40Rg", &value);
  return text;
}

}  // namespace

std::optional<peer_answer> exact_answer(const counterpart& c, const entry& e,
                                        const image* operands) {
  const auto function = c.is_complex() ? libmpc().find(std::string("mpc_") + c.exact)
                                       : libmpfr().find(std::string("mpfr_") + c.exact);
  if (function == nullptr || !mpfr().complete()) return {};
  number result, given[2];
  for (std::size_t i = 0; i < e.codes.size() && i < 2; ++i) {
    read(given[i].re, part_of(e.codes[i], operands[i], 0));
    read(given[i].im, part_of(e.codes[i], operands[i], 1));
  }
  compute(c.is, function, result, given[0], given[1]);
  peer_answer answer;
  answer.decimal = written(result.re);
  if (is_complex(e.result)) answer.decimal = '(' + answer.decimal + ',' + written(result.im) + ')';
  answer.parts = {converted(result.re), converted(result.im)};
  return answer;
}

}  // namespace explorer
