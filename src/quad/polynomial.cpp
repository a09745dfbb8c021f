// Polynomial evaluation and argument reduction as compiled code calls them.

#include "entries.hpp"
#include "quad/polynomial_kernel.hpp"

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, polyN)(quad* result, quad x, const quad* c, std::int32_t n) {
  if (n <= 0) return as_it_came(result, c[0]);
  return put(result, ZRT_ORDINARY_CALL(evaluated, joined(x), c, n));
}
ZRT_VALUE(quad*, polyD)(quad* result, quad x, const quad* c, std::int32_t n) {
  return put(result, ZRT_ORDINARY_CALL(evaluated_monic, joined(x), c, n));
}
// A zero or NaN modulus gives the library's NaN and leaves the quotient as it was; a quotient
// beyond 32 bits gives 0x80000000. Whole already, it is the same in every rounding mode.
ZRT_VALUE(void, qmodr)(quad x, quad y, std::int32_t* quotient, quad* remainder) {
  if (is_zero_or_nan(y)) {
    *remainder = invalid;
    return;
  }
  const reduction reduced = reduce(joined(x), joined(y));
  *quotient = fistp32(reduced.quotient);
  *remainder = reduced.remainder;
}
