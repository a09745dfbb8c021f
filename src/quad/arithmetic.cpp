// Double-double arithmetic as compiled code calls it.

#include "entries.hpp"
#include "quad/by_processor.hpp"

namespace zrt::quads {
namespace {

using steps = at_entry;

/// A REAL*8 operand as a value of the entry's steps.
[[gnu::always_inline]] inline steps::value value(const double& d) { return load<steps::value>(d); }

/// The order of two operands by the leading part of their difference.
template <class Order>
[[gnu::always_inline]] inline std::int32_t ordered(const quad& a, const quad& b, Order order) {
#if defined(__x86_64__)
  const quad difference = steps::steps::sub(a, b);
  if (steps::is_sum(difference, a.hi, a.lo, b.hi, b.lo)) return order(difference.hi);
  const quad rare_difference = rare::sub(a, b);
  return order(load(rare_difference.hi));
#else
  return order(steps::leading(steps::sub(a, b)));
#endif
}

/// Condition bits of the x87 status word after a comparison.
constexpr std::int32_t below = 0x0100, equal = 0x4000, unordered = 0x4500;

/// The condition bits that a comparison of a with b would leave. An infinite leading part counts as
/// unordered, like a NaN.
std::int32_t condition_bits(const quad& a, const quad& b) {
  return ordered(a, b, [&](auto difference) -> std::int32_t {
    if (exponent_of(a.hi) == 1024 || exponent_of(b.hi) == 1024) return unordered;
    if (!greater_equal(difference, 0.0)) return below;
    return difference == 0.0 ? equal : 0;
  });
}

/// 1, 0 or -1. A NaN counts as equal, and an infinite operand gives one.
std::int32_t order(const quad& a, const quad& b) {
  return ordered(a, b, [](auto difference) -> std::int32_t {
    if (greater(difference, 0.0)) return 1;
    return compares_equal(difference, 0.0) ? 0 : -1;
  });
}

}  // namespace
}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, qadd)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return put(result, steps::add(o.first(), o.second()));
}
ZRT_VALUE(quad*, qaddd)(quad* result, quad a, real8 d) {
  const both_joined o(a, d);
  return put(result, steps::add(o.first(), value(o.second())));
}
ZRT_VALUE(quad*, qsub)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return put(result, steps::sub(o.first(), o.second()));
}
ZRT_VALUE(quad*, qsubd)(quad* result, quad a, real8 d) {
  const both_joined o(a, d);
  return put(result, steps::sub(o.first(), value(o.second())));
}
ZRT_VALUE(quad*, dsubq)(quad* result, real8 d, quad b) {
  const both_joined o(d, b);
  return put(result, steps::sub(value(o.first()), o.second()));
}
ZRT_VALUE(quad*, qmul)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return by_processor::mul(result, o.first(), o.second());
}
ZRT_VALUE(quad*, qmuld)(quad* result, quad a, real8 d) {
  const both_joined o(a, d);
  return by_processor::mul(result, o.first(), value(o.second()));
}
ZRT_VALUE(quad*, qmuli)(quad* result, quad a, std::int32_t k) {
  if (k == 1) return as_it_came(result, a);
  if (k == -1) return sign_flipped(result, a);
  return put(result, steps::mul_integer(joined(a), k));
}
ZRT_VALUE(quad*, qdiv)(quad* result, quad a, quad b) {
  const both_joined o(a, b);
  return by_processor::div(result, o.first(), o.second());
}
ZRT_VALUE(quad*, qdivd)(quad* result, quad a, real8 d) {
  const both_joined o(a, d);
  return by_processor::div(result, o.first(), value(o.second()));
}
ZRT_VALUE(quad*, ddivq)(quad* result, real8 d, quad b) {
  const both_joined o(d, b);
  return by_processor::div(result, value(o.first()), o.second());
}
ZRT_VALUE(quad*, qprod)(quad* result, real8 a, real8 b) {
  const both_joined o(a, b);
  return by_processor::product(result, value(o.first()), value(o.second()));
}
ZRT_VALUE(quad*, qneg)(quad* result, quad a) { return sign_flipped(result, a); }
ZRT_VALUE(std::int32_t, qcmp)(quad a, quad b) {
  const both_joined o(a, b);
  return condition_bits(o.first(), o.second());
}
ZRT_VALUE(std::int32_t, qcompare)(quad a, quad b) {
  const both_joined o(a, b);
  return order(o.first(), o.second());
}
ZRT_VALUE(quad*, ldexpl)(quad* result, quad q, std::int32_t n) {
  return put(result, steps::scaled(joined(q), n));
}
