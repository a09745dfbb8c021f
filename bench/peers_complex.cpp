// The C library's complex functions beside those of the complex families.

#include <cmath>

#include "calls.hpp"

extern "C" {
_Complex double cexp(_Complex double);
_Complex double clog(_Complex double);
_Complex double csqrt(_Complex double);
_Complex double csin(_Complex double);
_Complex double ccos(_Complex double);
_Complex double cpow(_Complex double, _Complex double);
_Complex float cexpf(_Complex float);
_Complex float clogf(_Complex float);
_Complex float csqrtf(_Complex float);
_Complex float csinf(_Complex float);
_Complex float ccosf(_Complex float);
_Complex float cpowf(_Complex float, _Complex float);
}

namespace bench {

namespace {

double modulus(_Complex double z) { return std::hypot(__real__ z, __imag__ z); }
float modulus(_Complex float z) { return std::hypot(__real__ z, __imag__ z); }

}  // namespace

static const registered complex_peers([] {
  const char* const libm = "libm";
  add_peer("cdabs", libm, static_cast<double (*)(_Complex double)>(modulus));
  add_peer("cdexp", libm, cexp);
  add_peer("cdlog", libm, clog);
  add_peer("cdsqrt", libm, csqrt);
  add_peer("cdsin", libm, csin);
  add_peer("cdcos", libm, ccos);
  add_peer("cdtocd", libm, cpow);
  add_peer("cabs", libm, static_cast<float (*)(_Complex float)>(modulus));
  add_peer("cexp", libm, cexpf);
  add_peer("clog", libm, clogf);
  add_peer("csqrt", libm, csqrtf);
  add_peer("csin", libm, csinf);
  add_peer("ccos", libm, ccosf);
  add_peer("ctoc", libm, cpowf);
});

}  // namespace bench
