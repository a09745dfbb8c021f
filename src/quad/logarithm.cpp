// The REAL*16 logarithms.

#include "quad/logarithm.hpp"

#include "entries.hpp"
#include "quad/conversion.hpp"
#include "quad/polynomial.hpp"

namespace zrt::quads {
namespace {

constexpr quad sqrt_half = constant(0x3FE6A09E667F3BCD, 0xBC8BDD3413B26458);
// ln 2 in two pieces; the product of the first with an exponent loses nothing.
constexpr quad ln_2_high = constant(0x3FE62E4000000000, 0xB950000000000000);  // 0.693145751953125
constexpr quad ln_2_low = constant(0x3EB7F7D1CF79ABCA, 0xBB3C4C67FC0D0968);  // 1.42860682030941e-06
constexpr quad log10_e = constant(0x3FDBCB7B1526E50E, 0x3C695355BAAAFAC8);

constexpr quad minus_infinity = constant(0xFFF0000000000000, 0);
constexpr quad plus_infinity = constant(0x7FF0000000000000, 0);

// ln(1 + v) = v - v**2/2 + v**3 P(v)/Q(v) on [sqrt(1/2) - 1, sqrt(2) - 1], Q monic.
constexpr quad near_numerator[] = {
    constant(0x3EB9D04A0D6ED829, 0x3B550D2488021580),  // 1.5386122435962543e-06
    constant(0x3FDFFD7E21347CC3, 0xBC5634A16E573D18),  // 0.49984696619680963
    constant(0x40373615178FE966, 0x3CDD310FA98A964E),  // 23.2112593389842
    constant(0x4079B73A8639C290, 0xBD16B1A3A8A80BEB),  // 411.4517881637812
    constant(0x40ADE1E79B3AE126, 0xBD23A39F2C748054),  // 3824.9523561858978
    constant(0x40D4CA24F0550CF6, 0x3D6B4F8656D32778),  // 21288.57716871515
    constant(0x40F28A791822D401, 0x3D75104B644C1F48),  // 75943.5683925897
    constant(0x4105F196A49F1719, 0x3DA7B10D220486BD),  // 179762.83038156552
    constant(0x41116CABA9F2757A, 0x3DA2425B8B8D5A7C),  // 285482.9159639698
    constant(0x41125A72EB05BA7E, 0x3DB26CAFE191AA26),  // 300700.72951403994
    constant(0x410897CA319418D1, 0x3DAEB171CDF46E26),  // 201465.27420825374
    constant(0x40F2F8F8BFBF9A1A, 0xBD2D4DB44B125800),  // 77711.54681358524
    constant(0x40C9A7DCAD5D0EFE, 0x3D6D02E15135E420),  // 13135.72404063446
};
constexpr quad near_denominator[] = {
    constant(0x4048322FBDA4D3F5, 0xBCE77BB0954DCA00),  // 48.3920819334816
    constant(0x408C73F14777E56A, 0xBD004D01D38870A0),  // 910.4928120962988
    constant(0x40C1DD933EA5565F, 0x3D51D4C6A1A69D38),  // 9147.150349299596
    constant(0x40EB5F4D77AED025, 0xBD82EFE99712242D),  // 56058.42085972455
    constant(0x410B71BB67F5EFF3, 0xBDAA7772CADC0042),  // 224823.42576205693
    constant(0x4122B6C5DDAC3B8E, 0x3DC9CF1C4EF3C939),  // 613218.9329546557
    constant(0x4131AB83FA3B03B3, 0x3DD3634DBA378DF4),  // 1158019.977462989
    constant(0x41371D8273F762A0, 0x3DD84CE2EC3A56CC),  // 1514882.4529935494
    constant(0x41348FBE89D38E2E, 0x3DCBCDAEC73838EE),  // 1347518.538384329
    constant(0x4127BC5211688C14, 0x3DA2EAFAFEA23320),  // 777769.0340007567
    constant(0x4110088814003EA1, 0x3DB8DE3F49452E80),  // 262690.01953218324
    constant(0x40E33DE58205CB3F, 0xBD747BAE062F29D0),  // 39407.172121903386
};

// 2 artanh(z/2) = z + z**3 R(z**2)/S(z**2) on |z| <= 0.3432, S monic.
constexpr quad far_numerator[] = {
    constant(0xBFEC40A1C874F5A7, 0x3C8EE18AAC6CC4A6),  // -0.8828896441624935
    constant(0x4054247B533971E5, 0x3CF96D58468C37DA),  // 80.57002716646055
    constant(0xC09FA1350A9210EB, 0xBD3A43B77515F810),  // -2024.301798136027
    constant(0x40D4020CBB3C4EDF, 0xBD77B73CAC8F56FA),  // 20488.198927952788
    constant(0xC0F5EAC94780E234, 0x3D9DC68B145FE4F3),  // -89772.57995689736
    constant(0x41014FAB5E2E8C17, 0xBDAFF5641336BD2E),  // 141813.4209872193
};
constexpr quad far_denominator[] = {
    constant(0xC05DA8B34108B632, 0xBCF5D735F2B754B0),  // -118.6359407982898
    constant(0x40AF3D0DB24DF089, 0x3CF15FA8F4E90600),  // 3998.5267509800074
    constant(0xC0EC11AD77CC51CF, 0x3D83600FBF351368),  // -57485.42087379435
    constant(0x41186C6F13DF72EB, 0xBD913A4295ADEE48),  // 400155.7694070774
    constant(0xC13455371E04BC5F, 0x3DB616E1B4CFDFF4),  // -1332535.117259763
    constant(0x4139F7810D45D222, 0xBDCFE02C39A43740),  // 1701761.0518466313
};

// In registers the sums of the last rows near 1 may exceed the coefficients; all others do not.
constexpr int close_rows = 3;
constexpr double near_bound = 0x1.a8279ap-2, far_bound = 0x1.e28p-4;  // sqrt(2) - 1, 0.3432**2
static_assert(exceeds_sums(near_numerator, close_rows, near_bound, false) &&
              exceeds_sums(near_denominator, close_rows, near_bound, true) &&
              exceeds_sums(far_numerator, 0, far_bound, false) &&
              exceeds_sums(far_denominator, 0, far_bound, true));

/// Whether m lies below sqrt(1/2), by the leading part of the difference. With a low part of at
/// most half a unit, and sqrt_half's of 0.44 of a unit less than one half, the leading parts decide
/// unless they are equal.
template <class Result>
bool below_root(const quad& m) {
  if constexpr (std::same_as<Result, by_store>) return less(leading(sub(m, sqrt_half)), 0.0L);
  const reg difference = reg{m.hi} - reg{sqrt_half.hi};
  return less(difference, 0.0L) ||
         (difference == 0.0L && less(reg{m.lo} - reg{sqrt_half.lo}, 0.0L));
}

/// The logarithm of m 2**e for operands near 1, where a small result keeps its relative accuracy.
template <class Result>
quad near_one(const quad& m, std::int32_t e) {
  const bool low = below_root<Result>(m);
  if (low) --e;
  const quad v = sub_exact<Result>(low ? scaled_by<Result>(m, 2.0L) : m, 1.0L);
  const quad w = mul<Result>(v, v);
  const quad c = rational<Result, close_rows>(v, near_numerator, near_denominator);
  quad y = mul<Result>(v, mul<Result>(w, c));
  y = add<Result>(y, mul_integer<Result>(ln_2_low, e));
  y = sub<Result>(y, scaled_by<Result>(w, 0.5L));
  y = add<Result>(y, v);
  return add<Result>(y, mul_integer<Result>(ln_2_high, e));
}

/// The same by z = 2 (m - 1) / (m + 1), formed from m/2 where the exponent moves.
template <class Result>
quad far_from_one(const quad& m, std::int32_t e) {
  quad a = sub_exact<Result>(m, 0.5L), b = m;
  if (below_root<Result>(m)) {
    --e;
    b = a;
  } else {
    a = sub<Result>(a, 0.5L);
  }
  b = add<Result>(mul_by_power<Result>(b, 0.5L), 0.5L);
  const quad z = div<Result>(a, b);
  const quad w = mul<Result>(z, z);
  const quad c = rational<Result>(w, far_numerator, far_denominator);
  quad y = mul<Result>(z, mul<Result>(w, c));
  y = add<Result>(y, mul_integer<Result>(ln_2_low, e));
  y = add<Result>(y, z);
  return add<Result>(y, mul_integer<Result>(ln_2_high, e));
}

template <class Result>
quad of_parts(const quad& m, std::int32_t e) {
  return e > 2 || e < -2 ? far_from_one<Result>(m, e) : near_one<Result>(m, e);
}

/// Whether |x.lo| is zero or lies between 2**-100 and 2**-53 of a unit of x.hi's binade, e its
/// exponent; with |e| up to 100 the significand is then x 2**-e in both parts.
bool is_ordinary(const quad& x, int e) {
  if (e < -100 || e > 100) return false;
  const std::uint64_t lo = image(x.lo);
  const int low_exponent = biased_exponent<double>(lo) - (layout<double>::bias - 1);
  return lo << 1 == 0 || (low_exponent >= e - 100 && low_exponent < e - 53);
}

}  // namespace

// x = m 2**e with m in [sqrt(1/2), sqrt(2)) after a step of e; one rational approximation for x
// from 1/8 to 4, another elsewhere; the terms join from the smallest to the largest. The error is
// 2**-104. Zeros give -infinity, +infinity passes; negative operands and NaNs give the library's
// NaN.
quad logarithm(const quad& x) {
  const reg value = load(x.hi);
  if (!greater(value, 0.0L)) return value == 0.0L ? minus_infinity : invalid;
  if (value == infinity) return plus_infinity;
  const int e = biased_exponent<double>(image(x.hi)) - (layout<double>::bias - 1);
  if (is_ordinary(x, e)) {
    const auto power = static_cast<std::uint32_t>(layout<float>::bias - e);
    return of_parts<in_register>(
        scaled_by<in_register>(x, load_image<float>(power << layout<float>::fraction_bits)), e);
  }
  const parts taken_apart = significand_and_exponent(x);
  return of_parts<by_store>(taken_apart.significand(), taken_apart.exponent);
}

}  // namespace zrt::quads

using namespace zrt;
using namespace zrt::quads;

ZRT_VALUE(quad*, logl)(quad* result, quad x) {
  *result = logarithm(x);
  return result;
}
ZRT_VALUE(quad*, log10l)(quad* result, quad x) {
  *result = mul(logarithm(x), log10_e);
  return result;
}
