// Double-double arithmetic as compiled code calls it.

#include "entries.hpp"
#include "quad/quad.hpp"

namespace zrt::quads {
namespace {

/// Condition bits of the x87 status word after a comparison.
constexpr std::int32_t below = 0x0100, equal = 0x4000, unordered = 0x4500;

/// The condition bits that a comparison of a with b would leave. An infinite leading part counts as
/// unordered, like a NaN.
std::int32_t condition_bits(const quad& a, const quad& b) {
  const reg difference = leading(sub(a, b));
  constexpr int all_ones = layout<double>::exponent_mask;
  if (biased_exponent<double>(image(a.hi)) == all_ones ||
      biased_exponent<double>(image(b.hi)) == all_ones)
    return unordered;
  if (!greater_equal(difference, 0.0L)) return below;
  return difference == 0.0L ? equal : 0;
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, qadd)(quad* result, quad a, quad b) {
  *result = add(a, b);
  return result;
}
ZRT_VALUE(quad*, qaddd)(quad* result, quad a, real8 d) {
  *result = add(a, load(d));
  return result;
}
ZRT_VALUE(quad*, qsub)(quad* result, quad a, quad b) {
  *result = sub(a, b);
  return result;
}
ZRT_VALUE(quad*, qsubd)(quad* result, quad a, real8 d) {
  *result = sub(a, load(d));
  return result;
}
ZRT_VALUE(quad*, dsubq)(quad* result, real8 d, quad b) {
  *result = sub(load(d), b);
  return result;
}
ZRT_VALUE(quad*, qmul)(quad* result, quad a, quad b) {
  *result = mul(a, b);
  return result;
}
ZRT_VALUE(quad*, qmuld)(quad* result, quad a, real8 d) {
  *result = mul(a, load(d));
  return result;
}
ZRT_VALUE(quad*, qmuli)(quad* result, quad a, std::int32_t k) {
  if (k == 1) return as_it_came(result, a);
  if (k == -1) return sign_flipped(result, a);
  *result = mul_integer(a, k);
  return result;
}
ZRT_VALUE(quad*, qdiv)(quad* result, quad a, quad b) {
  *result = div(a, b);
  return result;
}
ZRT_VALUE(quad*, qdivd)(quad* result, quad a, real8 d) {
  *result = div(a, load(d));
  return result;
}
ZRT_VALUE(quad*, ddivq)(quad* result, real8 d, quad b) {
  *result = div(load(d), b);
  return result;
}
ZRT_VALUE(quad*, qprod)(quad* result, real8 a, real8 b) {
  *result = product(load(a), load(b));
  return result;
}
ZRT_VALUE(quad*, qneg)(quad* result, quad a) { return sign_flipped(result, a); }
ZRT_VALUE(std::int32_t, qcmp)(quad a, quad b) { return condition_bits(a, b); }
ZRT_VALUE(std::int32_t, qcompare)(quad a, quad b) { return compare(a, b); }
ZRT_VALUE(quad*, ldexpl)(quad* result, quad q, std::int32_t n) {
  *result = scaled(q, n);
  return result;
}
