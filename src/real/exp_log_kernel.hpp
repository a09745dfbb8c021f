#pragma once

// Kernels of EXP and LOG of REAL*4 and REAL*8.
//
// No transcendental instruction is used; both formats run in the same 53-bit arithmetic. Subnormals
// are not served: exponentials below the normal range are +0.0, subnormal operands of the logarithm
// count as if they had the hidden bit.

#include "frame/sections.hpp"
#include "real/evaluation.hpp"
#include "real/ordinary.hpp"

namespace zrt::real {

template <format F>
struct exponential_constants;

template <>
struct exponential_constants<double> {
  static constexpr double upper = 0x1.628b76e3a7b6p+9;    // 1023 ln 2
  static constexpr double lower = -0x1.6232bdd7abcd1p+9;  // -1022 ln 2
  static constexpr double log2_e = 0x1.71547652b82fep+0;
  static constexpr double ln2_leading = 0x1.63p-1;            // 0.693359375
  static constexpr double ln2_rest = -0x1.bd0105c610ca8p-13;  // -2.1219444005469057e-4
  static constexpr double p[] = {0x1.152a46f58dc1cp-16,       // 1.6520330026827912e-5
                                 0x1.c70e46fb3f6ep-8,         // 6.943600015117929e-3
                                 0x1p-2};
  static constexpr double q[] = {0x1.03f996fde3809p-11,  // 4.958628849054413e-4
                                 0x1.c718e714251b3p-5,   // 5.555386669690012e-2
                                 0x1p-1};
};

template <>
struct exponential_constants<float> {
  static constexpr double upper = 0x1.601e6ap+6;   // 88.02970123291016
  static constexpr double lower = -0x1.5fe05cp+6;  // -87.96910095214844
  static constexpr double log2_e = 0x1.715476p+0;
  static constexpr double ln2_leading = 0x1.63p-1;     // 0.693359375
  static constexpr double ln2_rest = -0x1.bd0106p-13;  // -2.1219444170128554e-4
  static constexpr double p[] = {0x1.10a61p-8,         // 4.160288721323013e-3
                                 0x1p-2};
  static constexpr double q[] = {0x1.997eb6p-5,  // 4.9987178295850754e-2
                                 0x1p-1};
};

/// y 2**(n + 1), y in [0.35, 0.71]: exact, and in REAL*8 within the normal range by the limits
/// above. In REAL*4 +0.0 where it would be subnormal; for n = -127 the image is that of zero.
template <format F>
[[gnu::always_inline]] inline reg scaled(reg y, const whole_number<reg>& n) {
  if constexpr (std::same_as<F, double>) {
    const reg power = power_of_two(n.value);
    return y * (power + power);
  }
  const reg power = load_image<float>(static_cast<std::uint32_t>(n.integer + 127) << 23);
  const reg result = y * (power + power);
  return less(result, 0x1p-126L) ? 0.0 : result;
}
#if defined(__x86_64__)
/// Ordinary operands: 2**(n + 1) and the result are normal.
template <format F>
[[gnu::always_inline]] inline double scaled(double y, const whole_number<double>& n) {
  return (y + y) * power_of_two(n.integer);
}
#endif

/// The operand less n ln 2, ln 2 in two pieces.
template <format F, class V>
[[gnu::always_inline]] inline V less_multiple_of_ln_2(V value, V n) {
  using c = exponential_constants<F>;
  return less_exact_product(value, n, c::ln2_leading) - n * c::ln2_rest;
}

/// e**r / 2 for the rest r of the reduction.
template <format F, class V>
[[gnu::always_inline]] inline V half_exponential(V r) {
  using c = exponential_constants<F>;
  const V z = r * r;
  const V g = r * polynomial(z, c::p);
  return 0.5 + g / (polynomial(z, c::q) - g);
}

/// e**x by Cody and Waite: n = x / ln 2 to the nearest integer, r = x - n ln 2 within 0.347 with ln
/// 2 in two pieces, e**r / 2 = 0.5 + r P(r**2) / (Q(r**2) - r P(r**2)), stored, times 2**(n + 1).
/// Within 1.6 units of the last place (REAL*4: 0.52). Above 1023 ln 2 (REAL*4: 127 ln 2) and for
/// NaN it gives +infinity, below -1022 ln 2 +0.0; in REAL*4 also wherever the result would be
/// subnormal.
template <class V, format F>
[[gnu::always_inline]] inline V natural_exponential(const F& x) {
  using c = exponential_constants<F>;
  const V value = load<V>(x);
  if constexpr (takes_all_operands<V>) {
    if (!less_equal(value, c::upper)) return infinity;
    if (less(value, c::lower)) return 0.0;
  }
  kernel_slots<F> slots;
  // The half that rounds to nearest goes by the sign bit of x: -0.0 gives n = 0 either way.
  const bool negative = (image(x) & sign_bit_of<F>) != 0;
  const whole_number<V> n =
      truncated_whole(value * c::log2_e + load<V>(signed_halves[negative]), slots.whole);
  const V r = less_multiple_of_ln_2<F>(value, n.value);
  return scaled<F>(stored_in(slots.result, half_exponential<F>(r)), n);
}

/// Ordinary: the result is normal by far, and so is the square of what is left of x.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_exponential(const F& x) {
  if constexpr (std::same_as<F, double>)
    return zero_or_between(x, 0x1p-500, 708.0);
  else
    return zero_or_between(x, 0x1p-126f, 87.0f);
}

/// The rest r of an ordinary x less the nearest n ln 2 tells that n is that of the steps: their
/// product with log2 e is n + r / ln 2 within 2**-17, so that r**2 below this leaves it 2**-15
/// clear of a half.
inline constexpr double clear_of_half = 0.1201;

#if defined(__x86_64__)
/// e**x for ordinary operands. n + 1 goes into the exponent of the stored e**r / 2 as an integer.
template <format F>
[[gnu::always_inline]] inline bool quick_exponential(const F& x, F& result) {
  using c = exponential_constants<F>;
  if (!has_ordinary_exponential(x)) return false;
  const double value = load<double>(x);
  const quick_whole<1> n(value * c::log2_e);
  const double r = less_multiple_of_ln_2<F>(value, n.value);
  if (!less(r * r, clear_of_half)) return false;
  const __m128i y = packed(static_cast<F>(half_exponential<F>(r)));
  const __m128i exponent = moved_up<F>(packed(n.shifted), layout<F>::fraction_bits);
  result = unpacked<F>(add_images<F>(y, exponent));
  return true;
}
#endif

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
  static constexpr double ln2_leading = 0x1.62e42fefa4p-1;    // rows[128].leading
  static constexpr double ln2_rest = -0x1.8432a1b0e2634p-43;  // rows[128].rest
  static constexpr double near_low = 0x1.e0fabfbc702a6p-1;    // e**(-1/16)
  static constexpr double near_high = 0x1.1082b577d34fp+0;    // e**(1/16)
  static constexpr double p[] = {-0x1.5557666472e16p-3,       // -0.166670608463719
                                 0x1.999b4dfed6feep-3,        // 0.200003251399607
                                 -0x1.fffffffeb6529p-3,       // -0.24999999996252
                                 0x1.5555555509bacp-2,        // 0.333333333316143
                                 -0x1p-1};
  static constexpr double near_p[] = {0x1.c8034c85dfff8p-12,  // 4.34887777707615e-4
                                      0x1.2492307f151a3p-9,   // 2.23213998791945e-3
                                      0x1.9999999bac6fp-7,    // 0.0125000000037718
                                      0x1.55555555554e7p-4};  // 0.0833333333333318
  static constexpr int split_bits = 29;
  static constexpr double log10_e = 0x1.bcb7b1526e50ep-2;
};

template <>
struct logarithm_constants<float> {
  static constexpr log_row<float> rows[129] = {
#include "real/log_rows_real4.inc"
  };
  static constexpr double ln2_leading = 0x1.62e4p-1;   // rows[128].leading
  static constexpr double ln2_rest = 0x1.7f7d1cp-20;   // rows[128].rest
  static constexpr double near_low = 0x1.e0facp-1;     // e**(-1/16)
  static constexpr double near_high = 0x1.1082b6p+0;   // e**(1/16)
  static constexpr double p[] = {0x1.555476p-2,        // 0.3333300054073334
                                 -0x1.000064p-1};      // -0.5000029802322388
  static constexpr double near_p[] = {0x1.9a0134p-7,   // 0.01251235045492649
                                      0x1.555552p-4};  // 0.083333320915699
  static constexpr int split_bits = 12;
  static constexpr double log10_e = 0x1.bcb7b2p-2;
};

/// The rows as the values that V computes with: a load of the register widens a REAL*4 by itself,
/// on doubles three conversions would take longer than the steps.
template <format F, class V>
[[gnu::always_inline]] inline const auto& logarithm_row(std::uint32_t j) {
  using c = logarithm_constants<F>;
  if constexpr (std::same_as<F, float> && std::same_as<V, double>) {
    static constexpr auto rows = [] {
      std::array<log_row<double>, 129> wide{};
      for (std::size_t i = 0; i < wide.size(); ++i)
        wide[i] = {c::rows[i].leading, c::rows[i].rest, c::rows[i].reciprocal};
      return wide;
    }();
    return rows[j];
  } else {
    return c::rows[j];
  }
}

/// Stored, with the low fraction bits cleared, so that products of two such pieces are exact.
template <format F, class V>
[[gnu::always_inline]] inline V leading_piece(V value) {
  constexpr image_of<F> low = (image_of<F>{1} << logarithm_constants<F>::split_bits) - 1;
  return load_image<F, V>(stored_image<F>(value) & ~low);
}

/// ln x for x within e**(-1/16) and e**(1/16): with f = x - 1 and u = 2 f / (2 + f), the odd series
/// ln x = u + u**3/12 + ...; what u loses by its rounding is regained in w = (2 (f - u) - u f) from
/// leading pieces. Within 0.56 units of the last place, and exact at 1.
template <format F, class V>
[[gnu::always_inline]] inline V logarithm_near_one(V x) {
  using c = logarithm_constants<F>;
  const V f = x - 1.0;
  const V d = 1.0 / (f + 2.0);
  const V fd = f * d;
  const V u = fd + fd;
  const V v = u * u;
  const V series = u * v * polynomial(v, c::near_p);
  const V u1 = leading_piece<F>(u);
  const V f1 = leading_piece<F>(f);
  const V f2 = f - f1;
  V w = f - u1;
  w = w + w;
  w = w - u1 * f1;
  w = w - u1 * f2;
  const V correction = d * w;
  // The closing sum has another order in each format.
  if constexpr (std::same_as<F, double>) return u1 + (series + correction);
  return series + (u1 + correction);
}

/// The significand of a positive number, in [1, 2).
template <format F, class V>
[[gnu::always_inline]] inline V significand(V value, image_of<F> bits, std::int32_t exponent) {
  // A product by 2**-exponent spares a REAL*8 the way through two 32-bit stores.
  if constexpr (std::same_as<F, double> && std::same_as<V, reg>)
    if (exponent >= -126 && exponent <= 126)
      return value * load_image<float>(static_cast<std::uint32_t>(127 - exponent) << 23);
  if constexpr (std::same_as<F, float> && !std::same_as<V, reg>) {
    // Its image moves to the place of a double's as an integer.
    constexpr std::uint64_t one = std::uint64_t{1023} << 52;
    return load_image<double, V>(std::uint64_t{bits} << 41 >> 12 | one);
  }
  constexpr image_of<F> fraction = (image_of<F>{1} << layout<F>::fraction_bits) - 1;
  constexpr image_of<F> one = image_of<F>{layout<F>::bias} << layout<F>::fraction_bits;
  return load_image<F, V>((bits & fraction) | one);
}

/// Whether x is positive and within e**(-1/16) and e**(1/16).
template <class V, format F>
[[gnu::always_inline]] inline bool is_near_one(const F& x) {
  using c = logarithm_constants<F>;
  if constexpr (std::same_as<V, reg>) {
    return greater(load(x), c::near_low) && less(load(x), c::near_high);
  } else {
    constexpr auto low = std::bit_cast<image_of<F>>(static_cast<F>(c::near_low)) + 1;
    constexpr auto high = std::bit_cast<image_of<F>>(static_cast<F>(c::near_high));
    return image(x) - low < high - low;
  }
}

/// 1 + j / 128.
template <class V>
[[gnu::always_inline]] inline V node(std::uint32_t j) {
  if constexpr (std::same_as<V, reg>) return load_image<float>(0x3F800000 + (j << 16));
  return load_image<double, V>(0x3FF0000000000000 + (std::uint64_t{j} << 45));
}

/// The pieces of m ln 2 + ln F and the series of ln(1 + u).
template <format F, class V>
[[gnu::always_inline]] inline V logarithm_sum(V a, V b, V u) {
  const V v = u * u;
  return a + (u + (b + v * polynomial(u, logarithm_constants<F>::p)));
}

/// ln x by Tang's table: x = 2**m (F + r) with F the nearest of 1 + j/128, ln x = m ln 2 + ln F +
/// ln(1 + u), u = r / F within 2**-8, by a polynomial. Within 0.7 units of the last place. Not
/// stored. Zeros give -infinity, negative operands and NaNs the library's NaN, +infinity itself.
template <class V, format F>
[[gnu::always_inline]] inline V natural_logarithm(const F& x) {
  using c = logarithm_constants<F>;
  constexpr int fraction_bits = layout<F>::fraction_bits;
  const V value = load<V>(x);
  if constexpr (takes_all_operands<V>) {
    if (!greater(value, 0.0)) return value == 0.0 ? -infinity : quiet_nan;
    if (image(x) == image(infinite<F>)) return infinity;
  }
  const auto bits = image(x);
  if (is_near_one<V>(x)) return logarithm_near_one<F>(value);
  const std::int32_t m = unbiased_exponent<F>(bits);
  const V y = significand<F>(value, bits, m);
  // To the nearest 128th: the seven fraction bits, one more where the rest exceeds a half of their
  // unit.
  constexpr int rest_bits = fraction_bits - 7;
  constexpr image_of<F> half = image_of<F>{1} << (rest_bits - 1);
  const auto fraction = bits & ((image_of<F>{1} << fraction_bits) - 1);
  const auto j = static_cast<std::uint32_t>((fraction + (half - 1)) >> rest_bits);
  const V r = y - node<V>(j);
  const auto& row = logarithm_row<F, V>(j);
  const V exponent = load_integer<V>(m);
  const V a = exponent * c::ln2_leading + load<V>(row.leading);
  const V b = exponent * c::ln2_rest + load<V>(row.rest);
  return logarithm_sum<F>(a, b, load<V>(row.reciprocal) * r);
}

/// Ordinary: every positive normal number; no product of the series is below 2**-250 but zero.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_logarithm(const F& x) {
  return is_positive_normal(x);
}

}  // namespace zrt::real
