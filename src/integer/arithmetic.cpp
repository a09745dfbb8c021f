// ABS, DIM, SIGN and MOD by kind. Results wrap to the width of the kind; overflow is not detected.

#include "int64/arithmetic.hpp"

#include "entries.hpp"
#include "integer/kinds.hpp"

namespace zrt::integer {
namespace {

/// |x|; the smallest number of the kind gives itself.
template <class Kind>
Kind absolute(Kind x) {
  return static_cast<Kind>(magnitude(x));
}

/// 0 where a < b, else the difference: too big for the kind, it comes back wrapped.
template <class Kind>
Kind positive_difference(Kind a, Kind b) {
  return a < b ? Kind{0} : difference(a, b);
}

/// INTEGER*2 tests the sign of the wrapped difference instead: 32767 and -1 give 0, -32768 and 1
/// give 32767.
integer2 positive_wrapped_difference(integer2 a, integer2 b) {
  const integer2 wrapped = difference(a, b);
  return wrapped < 0 ? integer2{0} : wrapped;
}

/// |a| with the sign of b; 0 counts as positive.
template <class Kind>
Kind sign_transfer(Kind a, Kind b) {
  return negated_by(a, sign_mask(static_cast<Kind>(a ^ b)));
}

/// a - b trunc(a / b), with the sign of a; a itself for a zero divisor. A divisor of -1 stays away
/// from the divide, which traps for the smallest integer.
template <class Kind>
Kind remainder(Kind a, Kind b) {
  if (b == 0) return a;
  return b == -1 ? Kind{0} : static_cast<Kind>(a % b);
}
template <>
integer8 remainder(integer8 a, integer8 b) {
  return b == 0 ? a : int64::remainder(a, b);
}

}  // namespace
}  // namespace zrt::integer

using namespace zrt::integer;

ZRT_VALUE(std::int32_t, iiabs)(std::int32_t x) { return absolute(low<integer2>(x)); }
ZRT_VALUE(std::int32_t, iabs)(std::int32_t x) { return absolute(x); }
ZRT_VALUE(std::int32_t, jiabs)(std::int32_t x) { return absolute(x); }
ZRT_VALUE(std::int64_t, kiabs)(std::int64_t x) { return absolute(x); }

ZRT_VALUE(std::int32_t, iidim)(std::int32_t a, std::int32_t b) {
  return positive_wrapped_difference(low<integer2>(a), low<integer2>(b));
}
ZRT_VALUE(std::int32_t, idim)(std::int32_t a, std::int32_t b) { return positive_difference(a, b); }
ZRT_VALUE(std::int32_t, jidim)(std::int32_t a, std::int32_t b) { return positive_difference(a, b); }
ZRT_VALUE(std::int64_t, kidim)(std::int64_t a, std::int64_t b) { return positive_difference(a, b); }

ZRT_VALUE(std::int32_t, iisign)(std::int32_t a, std::int32_t b) {
  return sign_transfer(low<integer2>(a), low<integer2>(b));
}
ZRT_VALUE(std::int32_t, isign)(std::int32_t a, std::int32_t b) { return sign_transfer(a, b); }
ZRT_VALUE(std::int32_t, jisign)(std::int32_t a, std::int32_t b) { return sign_transfer(a, b); }
ZRT_VALUE(std::int64_t, kisign)(std::int64_t a, std::int64_t b) { return sign_transfer(a, b); }

ZRT_VALUE(std::int32_t, imod)(std::int32_t a, std::int32_t b) {
  return remainder(low<integer2>(a), low<integer2>(b));
}
ZRT_VALUE(std::int32_t, mod)(std::int32_t a, std::int32_t b) { return remainder(a, b); }
ZRT_VALUE(std::int32_t, jmod)(std::int32_t a, std::int32_t b) { return remainder(a, b); }
ZRT_VALUE(std::int64_t, kmod)(std::int64_t a, std::int64_t b) { return remainder(a, b); }
