#pragma once

// Kernels of the powers: with an INTEGER*4 exponent in REAL*4 and REAL*8, with a REAL*4 exponent.

#include <array>

#include "frame/sections.hpp"
#include "real/evaluation.hpp"
#include "real/ordinary.hpp"
#include "real/whole_exponent.hpp"

namespace zrt::real {

/// |n|; the smallest integer counts as 2**31.
[[gnu::always_inline]] inline std::uint32_t size(std::int32_t n) {
  return n < 0 ? 0 - static_cast<std::uint32_t>(n) : static_cast<std::uint32_t>(n);
}

/// Binary powers from the lowest bit of |n|, each product rounded to 53 bits within the exponent
/// range of the register; a negative n takes one reciprocal at the end. n = 0 gives 1.0 whatever x
/// is. A zero or NaN x gives itself for a positive n, +infinity for a negative one.
template <class V>
[[gnu::always_inline]] inline V integer_power(const double& x, std::int32_t n) {
  if (n == 0) return 1.0;
  V power = load<V>(x);
  if constexpr (takes_all_operands<V>)
    if (ftst(power).compares_equal()) return n > 0 ? power : infinity;
  V product = 1.0;
  for (std::uint32_t left = size(n); left > 1; left >>= 1) {
    if (left & 1) product = product * power;
    power = power * power;
  }
  product = product * power;
  return n < 0 ? 1.0 / product : product;
}

/// The same with every product stored to single, and no test of x: 0.0 to a negative n divides.
template <class V>
[[gnu::always_inline]] inline V integer_power(const float& x, std::int32_t n) {
  if (n == 0) return 1.0;
  V power = load<V>(x);
  V product = 1.0;
  for (std::uint32_t left = size(n); left > 1; left >>= 1) {
    if (left & 1) product = stored<float>(product * power);
    power = stored<float>(power * power);
  }
  product = stored<float>(power * product);
  return n < 0 ? stored<float>(1.0 / product) : product;
}

/// Ordinary powers: with |x| within 2**+-(e + 1), every product and the reciprocal are within
/// 2**+-(e + 1) |n|.
template <format F>
[[gnu::always_inline]] inline bool has_ordinary_power(const F& x, std::int32_t n) {
  constexpr std::uint64_t limit = std::same_as<F, double> ? 1000 : 125;
  return (size(unbiased_exponent<F>(image(x))) + std::uint64_t{1}) * size(n) <= limit;
}

#include "real/power_rows.inc"

/// A row as a value: on doubles from a table of its own, for the conversions would take longer.
template <class V>
[[gnu::always_inline]] inline V power_row(int row) {
  if constexpr (std::same_as<V, double>) {
    static constexpr auto wide = [] {
      std::array<double, 17> rows{};
      for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = power_leading[i];
      return rows;
    }();
    return wide[static_cast<std::size_t>(row)];
  } else {
    return load<V>(power_leading[row]);
  }
}

/// log2 x as whole / 16 + rest, from the image of a positive x.
template <class V>
struct logarithm_in_sixteenths {
  std::int32_t whole;
  V rest;

  [[gnu::always_inline]] explicit logarithm_in_sixteenths(image_of<float> x) {
    constexpr std::int32_t half_bias = 126;            // the exponent field of [0.5, 1)
    constexpr double log2_e_less_one = 0x1.c551dap-2;  // 0.4426950514316559
    const std::int32_t m = biased_exponent<float>(x) - half_bias;
    const auto g_bits = (x & 0x7FFFFF) | half_bias << 23;

    // The table falls, so the row below g is found in three steps; images of positive numbers
    // compare as the numbers do.
    const auto reaches = [g_bits](int row) { return g_bits <= image(power_leading[row]); };
    std::int32_t p = reaches(8) ? 8 : 0;
    p += reaches(p + 4) ? 4 : 0;
    p += reaches(p + 2) ? 2 : 0;

    const V g = load_image<float, V>(g_bits);
    const V a = power_row<V>(p + 1);
    V z = ((g - a) - load<V>(power_rest[p / 2])) / (g + a);
    z = z + z;
    const V v = z * z;
    const V r = v * 0x1.556eb8p-4 * z;  // 0.0833575427532196
    rest = ((r + r * log2_e_less_one) + log2_e_less_one * z) + z;
    whole = 16 * m - (p + 1);
  }
};

/// 2**w - 1 for w in (-1/16, 0].
template <class V>
[[gnu::always_inline]] inline V power_fraction(V w) {
  constexpr double series[] = {0x1.bd51fcp-5,   // 0.05436038225889206
                               0x1.ebe62ap-3,   // 0.24018509685993195
                               0x1.62e422p-1};  // 0.6931467652320862
  return polynomial(w, series) * w;
}

/// x**y for x > 0 by Cody and Waite's POWER: log2 of the significand g from a table of 2**(-k/16)
/// and a short series, as u1 (a multiple of 1/16) + u2; the product with y as w1 (such a multiple)
/// + w2, and 2**(w1 + w2) from the table again. The result is a REAL*4, within 1.2 units of the
/// last place for small |y|; the logarithm is good to 1e-8, which a large one multiplies. Above the
/// range +infinity, where the result would be subnormal +0.0.
///
/// y, w1 and w2 are held in sixteenths: the scale is exact, and cuts to multiples of 1/16 are cuts
/// to whole numbers.
template <class V>
[[gnu::always_inline]] inline V power_of_positive(image_of<float> x, const float& exponent) {
  constexpr double sixteenth = 0x1p-4;
  const logarithm_in_sixteenths<V> logarithm(x);
  const V u1 = load_integer<V>(logarithm.whole) * sixteenth;
  const V u2 = logarithm.rest;

  const V y = load<V>(exponent);
  const auto beyond = [](V w) -> V {
    if (less(w, 0.0)) return 0.0;
    return infinity;
  };
  if (!less(fabs(y), 0x1p27)) return beyond((u1 + u2) * y);
  std::int32_t slots[4];
  const V y16 = 16.0 * y;
  const V y1 = truncated_whole(y16, slots[0]).value;
  V w = 16.0 * u2 * y + (y16 - y1) * u1;
  V w1 = truncated_whole(w, slots[1]).value;
  V w2 = w - w1;
  w = w1 + u1 * y1;
  if (!less(fabs(w), 0x1p31)) return beyond(w);
  const whole_number<V> main = truncated_whole(w, slots[2]);
  w2 = w2 + (w - main.value);
  const whole_number<V> rest = truncated_whole(w2, slots[3]);
  w2 = w2 - rest.value;
  const std::int64_t whole_sixteenths = std::int64_t{main.integer} + rest.integer;
  if (whole_sixteenths > 2046) return infinity;
  if (whole_sixteenths < -2014) return 0.0;
  // A fraction of 0 or more gives one sixteenth to the multiple, so that 2**fraction is at most 1.
  static constexpr float steps[2] = {0.0f, 1.0f};
  const bool step = !less(w2, 0.0);
  const std::int32_t sixteenths = static_cast<std::int32_t>(whole_sixteenths) + step;
  w2 = (w2 - load<V>(steps[step])) * sixteenth;
  const std::int32_t whole = sixteenths / 16 + (sixteenths > 0 ? 1 : 0);
  const V leading = power_row<V>(16 * whole - sixteenths);
  const auto result = stored_image<float>(leading + leading * power_fraction(w2));
  return load_image<float, V>(result + (static_cast<std::uint32_t>(whole) << 23));
}

#if defined(__x86_64__)
/// The same with w = y log2 x in one piece, where the result tells that the steps give the same.
/// All roundings of the steps and here are below 2**-38 of a sixteenth for |w| below 2000, so that
/// the sixteenths are the same where w lies 2**-30 clear of one, and the result where it lies 2**13
/// units of 53 bits clear of a number of 24 bits and of a midpoint.
[[gnu::always_inline]] inline bool quick_power(const float& x, const float& exponent,
                                               float& result) {
  if (!is_positive_normal(x) || image(x) == 0x3F800000 || whole_by_leading_bits(exponent) ||
      !size_between(exponent, smallest_normal<float>, 0x1p27f))
    return false;
  const logarithm_in_sixteenths<double> logarithm(image(x));
  const double y = load<double>(exponent);
  const double w = load_integer<double>(logarithm.whole) * y + 16.0 * logarithm.rest * y;
  if (!less(fabs(w), 2000.0)) return false;
  const quick_whole<> n(w + 0.5);
  const double below = w - n.value;  // within (-1, 0)
  if (!less(fabs(below + 0.5), 0.5 - 0x1p-30)) return false;
  const auto sixteenths = static_cast<std::int32_t>(_mm_cvtsi128_si32(packed(n.shifted)));
  const std::int32_t whole = (sixteenths >> 4) + 1;
  const double leading = power_row<double>(16 * whole - sixteenths);
  const double value = leading + leading * power_fraction(below * 0x1p-4);
  constexpr std::uint32_t half_unit = 1 << 28, margin = 1 << 13;
  const auto rest = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value));
  if (((rest + margin) & (half_unit - 1)) < 2 * margin) return false;
  const __m128i scale = _mm_slli_epi32(_mm_cvtsi32_si128(whole), 23);
  result = unpacked<float>(add_images<float>(packed(static_cast<float>(value)), scale));
  return true;
}
#endif

}  // namespace zrt::real
