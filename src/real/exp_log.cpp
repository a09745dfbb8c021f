// EXP, LOG and LOG10 of REAL*4 and REAL*8.
//
// No transcendental instruction is used; both formats run in the same 53-bit arithmetic. Subnormals
// are not served: exponentials below the normal range are +0.0, subnormal operands of the logarithm
// count as if they had the hidden bit.

#include "entries.hpp"
#include "frame/sections.hpp"
#include "real/evaluation.hpp"

namespace zrt::real {
namespace {

template <format F>
struct exponential_constants;

template <>
struct exponential_constants<double> {
  static constexpr reg upper = 0x1.628b76e3a7b6p+9L;    // 1023 ln 2
  static constexpr reg lower = -0x1.6232bdd7abcd1p+9L;  // -1022 ln 2
  static constexpr reg log2_e = 0x1.71547652b82fep+0L;
  static constexpr reg ln2_leading = 0x1.63p-1L;            // 0.693359375
  static constexpr reg ln2_rest = -0x1.bd0105c610ca8p-13L;  // -2.1219444005469057e-4
  static constexpr reg p[] = {0x1.152a46f58dc1cp-16L,       // 1.6520330026827912e-5
                              0x1.c70e46fb3f6ep-8L,         // 6.943600015117929e-3
                              0x1p-2L};
  static constexpr reg q[] = {0x1.03f996fde3809p-11L,  // 4.958628849054413e-4
                              0x1.c718e714251b3p-5L,   // 5.555386669690012e-2
                              0x1p-1L};

  /// y 2**(n + 1), y in [0.35, 0.71]: exact, and within the normal range by the limits above.
  static reg scaled(reg y, const whole_number& n) {
    const reg power = power_of_two(n.value);
    return y * (power + power);
  }
};

template <>
struct exponential_constants<float> {
  static constexpr reg upper = 0x1.601e6ap+6L;   // 88.02970123291016
  static constexpr reg lower = -0x1.5fe05cp+6L;  // -87.96910095214844
  static constexpr reg log2_e = 0x1.715476p+0L;
  static constexpr reg ln2_leading = 0x1.63p-1L;     // 0.693359375
  static constexpr reg ln2_rest = -0x1.bd0106p-13L;  // -2.1219444170128554e-4
  static constexpr reg p[] = {0x1.10a61p-8L,         // 4.160288721323013e-3
                              0x1p-2L};
  static constexpr reg q[] = {0x1.997eb6p-5L,  // 4.9987178295850754e-2
                              0x1p-1L};

  /// y 2**(n + 1) where that is a normal REAL*4, else +0.0. For n = -127 the image is that of zero.
  static reg scaled(reg y, const whole_number& n) {
    const reg power = load_image<float>(static_cast<std::uint32_t>(n.integer + 127) << 23);
    const reg result = y * (power + power);
    return less(result, 0x1p-126L) ? 0.0L : result;
  }
};

/// e**x by Cody and Waite: n = x / ln 2 to the nearest integer, r = x - n ln 2 within 0.347 with ln
/// 2 in two pieces, e**r / 2 = 0.5 + r P(r**2) / (Q(r**2) - r P(r**2)), stored, times 2**(n + 1).
/// Within 1.6 units of the last place (REAL*4: 0.52). Above 1023 ln 2 (REAL*4: 127 ln 2) and for
/// NaN it gives +infinity, below -1022 ln 2 +0.0; in REAL*4 also wherever the result would be
/// subnormal.
template <format F>
reg natural_exponential(const F& x) {
  using c = exponential_constants<F>;
  const reg value = load(x);
  if (!less_equal(value, c::upper)) return infinity;
  if (less(value, c::lower)) return 0.0L;
  // The half that rounds to nearest goes by the sign bit of x: -0.0 gives n = 0 either way.
  const bool negative = image(x) >> (8 * sizeof x - 1) != 0;
  const whole_number n = truncated_whole(value * c::log2_e + load(signed_halves[negative]));
  const reg r = (value - n.value * c::ln2_leading) - n.value * c::ln2_rest;
  const reg z = r * r;
  const reg g = r * polynomial(z, c::p);
  const reg y = 0.5L + g / (polynomial(z, c::q) - g);
  return c::scaled(stored<F>(y), n);
}

/// One node of the logarithm's table, j/128 above 1: its logarithm in two pieces and its
/// reciprocal.
template <format F>
struct log_row {
  F leading, rest, reciprocal;
};

template <format F>
struct logarithm_constants;

template <>
struct logarithm_constants<double> {
  static constexpr log_row<double> rows[129] = {
#include "real/log_rows_real8.inc"
  };
  static constexpr reg ln2_leading = 0x1.62e42fefa4p-1L;    // rows[128].leading
  static constexpr reg ln2_rest = -0x1.8432a1b0e2634p-43L;  // rows[128].rest
  static constexpr reg near_low = 0x1.e0fabfbc702a6p-1L;    // e**(-1/16)
  static constexpr reg near_high = 0x1.1082b577d34fp+0L;    // e**(1/16)
  static constexpr reg p[] = {-0x1.5557666472e16p-3L,       // -0.166670608463719
                              0x1.999b4dfed6feep-3L,        // 0.200003251399607
                              -0x1.fffffffeb6529p-3L,       // -0.24999999996252
                              0x1.5555555509bacp-2L,        // 0.333333333316143
                              -0x1p-1L};
  static constexpr reg near_p[] = {0x1.c8034c85dfff8p-12L,  // 4.34887777707615e-4
                                   0x1.2492307f151a3p-9L,   // 2.23213998791945e-3
                                   0x1.9999999bac6fp-7L,    // 0.0125000000037718
                                   0x1.55555555554e7p-4L};  // 0.0833333333333318
  static constexpr int split_bits = 29;
  static constexpr reg log10_e = 0x1.bcb7b1526e50ep-2L;

  /// The closing sum near 1.
  static reg sum(reg leading, reg series, reg correction) {
    return leading + (series + correction);
  }
};

template <>
struct logarithm_constants<float> {
  static constexpr log_row<float> rows[129] = {
#include "real/log_rows_real4.inc"
  };
  static constexpr reg ln2_leading = 0x1.62e4p-1L;   // rows[128].leading
  static constexpr reg ln2_rest = 0x1.7f7d1cp-20L;   // rows[128].rest
  static constexpr reg near_low = 0x1.e0facp-1L;     // e**(-1/16)
  static constexpr reg near_high = 0x1.1082b6p+0L;   // e**(1/16)
  static constexpr reg p[] = {0x1.555476p-2L,        // 0.3333300054073334
                              -0x1.000064p-1L};      // -0.5000029802322388
  static constexpr reg near_p[] = {0x1.9a0134p-7L,   // 0.01251235045492649
                                   0x1.555552p-4L};  // 0.083333320915699
  static constexpr int split_bits = 12;
  static constexpr reg log10_e = 0x1.bcb7b2p-2L;

  /// The closing sum near 1, in another order than in REAL*8.
  static reg sum(reg leading, reg series, reg correction) {
    return series + (leading + correction);
  }
};

/// Stored, with the low fraction bits cleared, so that products of two such pieces are exact.
template <format F>
reg leading_piece(reg value) {
  constexpr image_of<F> low = (image_of<F>{1} << logarithm_constants<F>::split_bits) - 1;
  return load_image<F>(stored_image<F>(value) & ~low);
}

/// ln x for x within e**(-1/16) and e**(1/16): with f = x - 1 and u = 2 f / (2 + f), the odd series
/// ln x = u + u**3/12 + ...; what u loses by its rounding is regained in w = (2 (f - u) - u f) from
/// leading pieces. Within 0.56 units of the last place, and exact at 1.
template <format F>
reg logarithm_near_one(reg x) {
  using c = logarithm_constants<F>;
  const reg f = x - 1.0L;
  const reg d = 1.0L / (f + 2.0L);
  const reg fd = f * d;
  const reg u = fd + fd;
  const reg v = u * u;
  const reg series = u * v * polynomial(v, c::near_p);
  const reg u1 = leading_piece<F>(u);
  const reg f1 = leading_piece<F>(f);
  const reg f2 = f - f1;
  reg w = f - u1;
  w = w + w;
  w = w - u1 * f1;
  w = w - u1 * f2;
  return c::sum(u1, series, d * w);
}

/// The significand of a positive number, in [1, 2).
template <format F>
reg significand(reg value, image_of<F> bits, std::int32_t exponent) {
  // A product by 2**-exponent spares a REAL*8 the way through two 32-bit stores.
  if constexpr (std::same_as<F, double>)
    if (exponent >= -126 && exponent <= 126)
      return value * load_image<float>(static_cast<std::uint32_t>(127 - exponent) << 23);
  constexpr image_of<F> fraction = (image_of<F>{1} << layout<F>::fraction_bits) - 1;
  constexpr image_of<F> one = image_of<F>{layout<F>::bias} << layout<F>::fraction_bits;
  return load_image<F>((bits & fraction) | one);
}

/// ln x by Tang's table: x = 2**m (F + r) with F the nearest of 1 + j/128, ln x = m ln 2 + ln F +
/// ln(1 + u), u = r / F within 2**-8, by a polynomial. Within 0.7 units of the last place. Not
/// stored. Zeros give -infinity, negative operands and NaNs the library's NaN, +infinity itself.
template <format F>
reg natural_logarithm(const F& x) {
  using c = logarithm_constants<F>;
  constexpr int fraction_bits = layout<F>::fraction_bits;
  const reg value = load(x);
  if (!greater(value, 0.0L)) return value == 0.0L ? -infinity : quiet_nan;
  if (greater(value, c::near_low) && less(value, c::near_high)) return logarithm_near_one<F>(value);
  const auto bits = image(x);
  const std::int32_t m = biased_exponent<F>(bits) - layout<F>::bias;
  if (m == layout<F>::bias + 1) return infinity;
  const reg y = significand<F>(value, bits, m);
  // To the nearest 128th: the seven fraction bits, one more where the rest exceeds a half of their
  // unit.
  constexpr int rest_bits = fraction_bits - 7;
  const auto rest = bits & ((image_of<F>{1} << rest_bits) - 1);
  const bool up = rest > image_of<F>{1} << (rest_bits - 1);
  const std::uint32_t j = (static_cast<std::uint32_t>(bits >> rest_bits) & 127) + up;
  const reg r = y - load_image<float>(0x3F800000 + (j << 16));
  const log_row<F>& row = c::rows[j];
  const reg exponent = load_integer(m);
  const reg a = exponent * c::ln2_leading + load(row.leading);
  const reg b = exponent * c::ln2_rest + load(row.rest);
  const reg u = load(row.reciprocal) * r;
  const reg v = u * u;
  return a + (u + (b + v * polynomial(u, c::p)));
}

template <format F>
reg common_logarithm(const F& x) {
  return natural_logarithm(x) * logarithm_constants<F>::log10_e;
}

}  // namespace
}  // namespace zrt::real

using namespace zrt;
using namespace zrt::real;

ZRT_VALUE(real8_result, dexp)(real8 x) { return returned<double>(natural_exponential(x)); }
ZRT_VALUE(real4_result, exp)(real4 x) { return returned<float>(natural_exponential(x)); }

ZRT_VALUE(real8_result, dlog)(real8 x) { return returned<double>(natural_logarithm(x)); }
ZRT_VALUE(real4_result, alog)(real4 x) { return returned<float>(natural_logarithm(x)); }

ZRT_VALUE(real8_result, dlog10)(real8 x) { return returned<double>(common_logarithm(x)); }
ZRT_VALUE(real4_result, alog10)(real4 x) { return returned<float>(common_logarithm(x)); }
