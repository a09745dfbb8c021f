// The C++ value types: each operation is the entry it stands for, bit for bit, and text, hashes and
// limits are those of the two doubles.

#include <gtest/gtest.h>

#include <iomanip>
#include <locale>
#include <set>
#include <sstream>
#include <unordered_set>
#include <vector>

#include "support/bits.hpp"
#include "zorvikrt/zorvikrt.hpp"

namespace {

using support::bits;
using zorvikrt::complex32;
using zorvikrt::real16;
using namespace zorvikrt::literals;

bool same(const zorvikrt_quad& a, const zorvikrt_quad& b) {
  return bits(a.hi) == bits(b.hi) && bits(a.lo) == bits(b.lo);
}

testing::AssertionResult is(const real16& value, const zorvikrt_quad& expected) {
  if (same(value, expected)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << to_string(value) << ", not " << to_string(real16(expected));
}
testing::AssertionResult is(const complex32& value, const zorvikrt_cquad& expected) {
  if (same(value.re, expected.re) && same(value.im, expected.im))
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << value << ", not " << complex32(expected);
}

/// What an entry gives directly.
template <class Result, class... Entry, class... Operands>
Result entry(Result* (*f)(Result*, Entry...), Operands... operands) {
  Result result;
  f(&result, operands...);
  return result;
}

const real16 a(0x1.5555555555555p-2, 0x1.5555555555555p-56), b(-7.25, 0x1p-60);

std::string shown(const real16& value, std::ostream& (*set)(std::ostream&)) {
  std::ostringstream out;
  out << set << value;
  return out.str();
}

}  // namespace

TEST(CppTypes, OperatorsAreTheirEntries) {
  EXPECT_TRUE(is(a + b, entry(__zorvik_qadd, a, b)));
  EXPECT_TRUE(is(a - b, entry(__zorvik_qsub, a, b)));
  EXPECT_TRUE(is(a * b, entry(__zorvik_qmul, a, b)));
  EXPECT_TRUE(is(a / b, entry(__zorvik_qdiv, a, b)));
  EXPECT_TRUE(is(-a, entry(__zorvik_qneg, a)));
  real16 x = a;
  x += b;
  x *= 3;
  x -= 0.5;
  x /= b;
  EXPECT_TRUE(is(x, ((a + b) * 3 - 0.5) / b));
}

TEST(CppTypes, MixedOperandsTakeTheEntryForTheirKind) {
  EXPECT_TRUE(is(a + 0.1, entry(__zorvik_qaddd, a, 0.1)));
  EXPECT_TRUE(is(0.1 + a, entry(__zorvik_qaddd, a, 0.1)));
  EXPECT_TRUE(is(a - 0.1f, entry(__zorvik_qsubd, a, static_cast<double>(0.1f))));
  EXPECT_TRUE(is(0.1 - a, entry(__zorvik_dsubq, 0.1, a)));
  EXPECT_TRUE(is(a * 0.1, entry(__zorvik_qmuld, a, 0.1)));
  EXPECT_TRUE(is(3 * a, entry(__zorvik_qmuli, a, 3)));
  EXPECT_TRUE(is(a / 3, entry(__zorvik_qdivd, a, 3.0)));
  EXPECT_TRUE(is(3 / a, entry(__zorvik_ddivq, 3.0, a)));
  const std::int64_t k = (std::int64_t{1} << 62) + 1;
  EXPECT_TRUE(is(a + k, entry(__zorvik_qaddk, a, k)));
  EXPECT_TRUE(is(k - a, entry(__zorvik_ksubq, k, a)));
  EXPECT_TRUE(is(k * a, entry(__zorvik_qmulk, a, k)));
  EXPECT_TRUE(is(k / a, entry(__zorvik_kdivq, k, a)));
  EXPECT_TRUE(is(a + ~0ull, a + real16(0x1p64, -1)));
  EXPECT_TRUE(is(a * 4000000000u, a * real16(4e9)));
  EXPECT_TRUE(is(pow(a, 5), entry(__zorvik_powli, a, 5)));
  EXPECT_TRUE(is(pow(a, k), entry(__zorvik_powlk, a, k)));
  EXPECT_TRUE(is(pow(a, 0.5), entry(__zorvik_powld, a, 0.5)));
  EXPECT_TRUE(is(pow(2, a), entry(__zorvik_powl, real16(2), a)));
}

TEST(CppTypes, Relations) {
  const real16 one = 1, above(1, 0x1p-100), nan = std::numeric_limits<real16>::quiet_NaN();
  EXPECT_TRUE(one < above && above > one && one <= above && !(above <= one) && one != above);
  EXPECT_TRUE(one == 1 && 1.0f == one && one >= 1ull && 2 > one);
  EXPECT_TRUE(real16(2, -1) == one);
  for (const real16& other : {one, nan}) {
    EXPECT_TRUE(nan != other);
    EXPECT_FALSE(nan == other || nan < other || nan > other || nan <= other || nan >= other);
  }
  std::multiset<real16> ordered = {above, one, b, a};
  EXPECT_TRUE(is(*ordered.begin(), b));
  EXPECT_TRUE(is(*ordered.rbegin(), above));
}

TEST(CppTypes, FunctionsAreTheirEntries) {
  EXPECT_TRUE(is(abs(b), entry(__zorvik_fabsl, b)));
  EXPECT_TRUE(is(trunc(b), {-7, 0}));
  EXPECT_TRUE(is(round(b), {-7, 0}));
  EXPECT_TRUE(is(floor(b), {-8, 0}));
  EXPECT_TRUE(is(ceil(b), {-7, 0}));
  EXPECT_TRUE(is(sqrt(a), entry(__zorvik_sqrtl, a)));
  EXPECT_TRUE(is(exp(a), entry(__zorvik_expl, a)));
  EXPECT_TRUE(is(log(a), entry(__zorvik_logl, a)));
  EXPECT_TRUE(is(log10(a), entry(__zorvik_log10l, a)));
  EXPECT_TRUE(is(sin(a), entry(__zorvik_sinl, a)));
  EXPECT_TRUE(is(cos(a), entry(__zorvik_cosl, a)));
  EXPECT_TRUE(is(tan(a), entry(__zorvik_tanl, a)));
  EXPECT_TRUE(is(cot(a), entry(__zorvik_cotl, a)));
  EXPECT_TRUE(is(sind(b), entry(__zorvik_sindl, b)));
  EXPECT_TRUE(is(cosd(b), entry(__zorvik_cosdl, b)));
  EXPECT_TRUE(is(tand(b), entry(__zorvik_tandl, b)));
  EXPECT_TRUE(is(asin(a), entry(__zorvik_asinl, a)));
  EXPECT_TRUE(is(acos(a), entry(__zorvik_acosl, a)));
  EXPECT_TRUE(is(atan(b), entry(__zorvik_atanl, b)));
  EXPECT_TRUE(is(asind(a), entry(__zorvik_asindl, a)));
  EXPECT_TRUE(is(acosd(a), entry(__zorvik_acosdl, a)));
  EXPECT_TRUE(is(atand(b), entry(__zorvik_atandl, b)));
  EXPECT_TRUE(is(sinh(a), entry(__zorvik_sinhl, a)));
  EXPECT_TRUE(is(cosh(a), entry(__zorvik_coshl, a)));
  EXPECT_TRUE(is(tanh(a), entry(__zorvik_tanhl, a)));
  EXPECT_TRUE(is(atan2(a, b), entry(__zorvik_atan2l, a, b)));
  EXPECT_TRUE(is(atan2d(a, -1), entry(__zorvik_atan2dl, a, real16(-1))));
  EXPECT_TRUE(is(fmod(b, a), entry(__zorvik_fmodl, b, a)));
  EXPECT_TRUE(is(fdim(a, b), entry(__zorvik_fdiml, a, b)));
  EXPECT_TRUE(is(copysign(a, -2.0), {-a.hi, -a.lo}));
  EXPECT_TRUE(is(zorvikrt::product(0.1, 0.3), entry(__zorvik_qprod, 0.1, 0.3)));
  int exponent = 0;
  EXPECT_TRUE(is(frexp(real16(-7.25), &exponent), {-7.25 / 8, 0}));
  EXPECT_EQ(exponent, 3);
  EXPECT_TRUE(is(ldexp(a, -3), {a.hi / 8, a.lo / 8}));
  EXPECT_EQ(nint(b), -7);
  EXPECT_EQ(llround(real16(0x1p62, 3)), (std::int64_t{1} << 62) + 3);
  EXPECT_TRUE(isnan(std::numeric_limits<real16>::quiet_NaN()) && !isnan(a) && isfinite(a));
  EXPECT_TRUE(isinf(-std::numeric_limits<real16>::infinity()) && signbit(b) && !signbit(a));
}

TEST(CppTypes, Conversions) {
  EXPECT_TRUE(is(real16((std::int64_t{1} << 62) + 1), {0x1p62, 1}));
  EXPECT_TRUE(is(real16(~std::uint64_t{0}), {0x1p64, -1}));
  EXPECT_EQ(static_cast<double>(a), a.hi);
  EXPECT_EQ(static_cast<int>(b), -7);
  EXPECT_EQ(static_cast<long long>(real16(0x1p60, -1)), (1ll << 60) - 1);
  EXPECT_EQ(static_cast<std::uint64_t>(real16(0x1p63)), ~std::uint64_t{0});
  EXPECT_TRUE(is(real16("0.1"), {0.1, -0x1.999999999999ap-58}));
  EXPECT_TRUE(is(0.1_r16, real16("0.1")));
  EXPECT_TRUE(is(real16("1e400"), std::numeric_limits<real16>::infinity()));
  EXPECT_THROW(real16("0.1x"), std::invalid_argument);
  EXPECT_THROW(real16(""), std::invalid_argument);
}

TEST(CppTypes, Complex) {
  const complex32 z(a, b), w(2, -1);
  EXPECT_TRUE(is(z * w, entry(__zorvik_cqmul, zorvikrt_cquad(z), zorvikrt_cquad(w))));
  EXPECT_TRUE(is(z / w, entry(__zorvik_cqdiv, zorvikrt_cquad(z), zorvikrt_cquad(w))));
  EXPECT_TRUE(is(z + w, {a + 2, b + -1}));
  EXPECT_TRUE(is(z - 1, {a - 1, b - real16(0)}));
  EXPECT_TRUE(is(2.0 * z, complex32(2) * z));
  EXPECT_TRUE(is(a * z, complex32(a) * z));
  EXPECT_TRUE(is(-z, {-a, -b}));
  EXPECT_TRUE(z == z && z != w && w - complex32(0, -1) == 2);
  EXPECT_TRUE(is(complex32(std::complex<float>(1, 2)), complex32(1, 2)));
  EXPECT_TRUE(is(sqrt(complex32(3, 4)), complex32(2, 1)));
  EXPECT_TRUE(is(abs(complex32(3, 4)), {5, 0}));
  EXPECT_TRUE(is(exp(z), entry(__zorvik_cexpl, zorvikrt_cquad(z))));
  EXPECT_TRUE(is(log(z), entry(__zorvik_clogl, zorvikrt_cquad(z))));
  EXPECT_TRUE(is(sin(z), entry(__zorvik_csinl, zorvikrt_cquad(z))));
  EXPECT_TRUE(is(cos(z), entry(__zorvik_ccosl, zorvikrt_cquad(z))));
  EXPECT_TRUE(is(pow(z, 3), entry(__zorvik_cqtoi, zorvikrt_cquad(z), 3)));
  EXPECT_TRUE(is(pow(z, w), entry(__zorvik_cpowl, zorvikrt_cquad(z), zorvikrt_cquad(w))));
  EXPECT_TRUE(is(arg(z), atan2(b, a)));
  EXPECT_TRUE(is(conj(z), {a, -b}));
}

TEST(CppTypes, StreamsFormatAsForADouble) {
  EXPECT_EQ(shown(a, [](std::ostream& out) -> std::ostream& { return out; }), "0.333333");
  EXPECT_EQ(shown(a,
                  [](std::ostream& out) -> std::ostream& {
                    return out << std::setprecision(32) << std::fixed;
                  }),
            "0.33333333333333333333333333333333");
  EXPECT_EQ(shown(b,
                  [](std::ostream& out) -> std::ostream& {
                    return out << std::scientific << std::uppercase << std::setprecision(2)
                               << std::setfill('*') << std::internal << std::setw(12);
                  }),
            "-***7.25E+00");
  EXPECT_EQ(shown(a,
                  [](std::ostream& out) -> std::ostream& {
                    return out << std::showpos << std::left << std::setw(10)
                               << std::setprecision(3);
                  }),
            "+0.333    ");
  std::ostringstream out;
  out << std::hexfloat << complex32(0.1, -2);
  EXPECT_EQ(out.str(), "([0.1+0],-2)");
}

namespace {

/// Groups of three and then of two, as in India, with a decimal comma.
struct punctuation : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3\2"; }
};

}  // namespace

// What does not belong to a number stays in the stream.
TEST(CppTypes, StreamsRead) {
  std::istringstream in("  1.5,(1 , [2+1e-300])[-1-0] 3e5x nan(0x1) 1.234.567 -iNF 3e+ 7");
  real16 x;
  complex32 z;
  char separator;
  in >> x >> separator >> z;
  EXPECT_TRUE(is(x, {1.5, 0}));
  EXPECT_EQ(separator, ',');
  EXPECT_TRUE(is(z, {{1, 0}, {2, 1e-300}}));
  in >> x;
  EXPECT_TRUE(is(x, {-1, -0.0}));
  in >> x;
  EXPECT_TRUE(is(x, {3e5, 0}));
  in >> x;
  EXPECT_TRUE(in.fail());
  EXPECT_TRUE(is(x, {3e5, 0}));
  in.clear();
  in >> separator >> x;
  EXPECT_TRUE(separator == 'x' && isnan(x));
  in >> x;
  EXPECT_TRUE(is(x, real16("1.234")));
  in >> x;
  EXPECT_TRUE(is(x, real16("0.567")));
  in >> x;
  EXPECT_TRUE(isinf(x) && signbit(x));
  in >> x;
  EXPECT_TRUE(in.fail());
  in.clear();
  in >> x;
  EXPECT_TRUE(in.eof() && !in.fail() && x == 7);
}

TEST(CppTypes, StreamsFollowTheLocale) {
  std::ostringstream out;
  out.imbue(std::locale(std::locale::classic(), new punctuation));
  out << std::fixed << std::setprecision(4) << std::setw(16) << real16(-1234567.25) << ' '
      << 123.5_r16 << ' ' << complex32(1e5, -0.5) << ' ' << std::scientific << 1e100_r16;
  EXPECT_EQ(out.str(), " -12.34.567,2500 123,5000 (1.00.000,0000,-0,5000) 1,0000e+100");
  std::istringstream in("12.34.567,25e1 1234,5 1.2345");
  in.imbue(out.getloc());
  real16 x, y;
  in >> x >> y;
  EXPECT_TRUE(is(x, {12345672.5, 0}) && is(y, {1234.5, 0}) && in.good());
  in >> x;
  EXPECT_TRUE(in.fail());  // a group of four
}

TEST(CppTypes, CharsFollowTheStandardFunctions) {
  char area[40];
  const std::to_chars_result written = to_chars(area, area + sizeof area, a);
  EXPECT_EQ(std::string(area, written.ptr), "0.333333333333333333333333333333332");
  EXPECT_EQ(to_chars(area, area + 5, a).ec, std::errc::value_too_large);
  EXPECT_EQ(to_chars(area, area + 40, a, std::chars_format::fixed, 3).ptr, area + 5);
  real16 x = 7;
  EXPECT_EQ(from_chars(area, written.ptr, x).ec, std::errc());
  const std::string_view huge = "1e999,", none = "x";
  EXPECT_EQ(from_chars(huge.begin(), huge.end(), x).ec, std::errc::result_out_of_range);
  EXPECT_EQ(from_chars(huge.begin(), huge.end(), x).ptr, huge.end() - 1);
  EXPECT_EQ(from_chars(none.begin(), none.end(), x).ec, std::errc::invalid_argument);
}

TEST(CppTypes, LimitsAndHash) {
  using limits = std::numeric_limits<real16>;
  EXPECT_GT(1 + limits::epsilon(), 1);
  EXPECT_TRUE(is(limits::max() - limits::max().lo, {limits::max().hi, 0}));
  EXPECT_TRUE(isinf(limits::max() + 0x1p970));
  // The 106th bit of a number of the smallest size that has it.
  EXPECT_TRUE(is(limits::min() * (1 + limits::epsilon()), {0x1p-969, 0x1p-1074}));
  std::unordered_set<real16> numbers = {real16(1, 1), 2, a, 0.0, -0.0, real16(2, -0.0)};
  EXPECT_EQ(numbers.size(), 3u);
  std::set<std::size_t> hashes;
  for (int i = -50; i < 50; ++i) hashes.insert(std::hash<real16>()(i * 0.25_r16));
  EXPECT_EQ(hashes.size(), 100u);
  EXPECT_NE(std::hash<complex32>()(complex32(1, 2)), std::hash<complex32>()(complex32(2, 1)));
}
