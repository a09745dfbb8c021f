// The grammar of REAL*16 and COMPLEX*32 in text, and the forms as a person reads them. That every
// bit is right check_text.py sees to.

#include "zorvikrt/text.h"

#include <gtest/gtest.h>
#ifdef __linux__
#include <pthread.h>
#endif

#include <climits>
#include <cstring>
#include <string>

#include "support/bits.hpp"

namespace {

using support::bits;
using support::from_bits;

std::string text(zorvikrt_quad value, zorvikrt_style style = zorvikrt_shortest, int precision = 0) {
  char area[256];
  return {area, zorvikrt_real16_to_chars(area, sizeof area, &value, style, precision)};
}

struct outcome {
  std::uint64_t hi, lo;
  std::size_t taken;
  zorvikrt_reading reading;
  bool operator==(const outcome&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const outcome& o) {
    return out << std::hex << o.hi << ' ' << o.lo << std::dec << ", " << o.taken << " taken, "
               << o.reading;
  }
};

outcome read(const std::string& text) {
  zorvikrt_quad value = {7, 0};
  zorvikrt_reading reading;
  const std::size_t taken = zorvikrt_real16_from_chars(text.data(), text.size(), &value, &reading);
  return {bits(value.hi), bits(value.lo), taken, reading};
}

outcome number(double hi, double lo, std::size_t taken) {
  return {bits(hi), bits(lo), taken, zorvikrt_read};
}

const double infinity = from_bits(std::uint64_t{0x7FF0000000000000});
const double nan = from_bits(std::uint64_t{0x7FF8000000000000});

}  // namespace

TEST(Text, ShortestForms) {
  EXPECT_EQ(text({0.5, 0}), "0.5");
  EXPECT_EQ(text({-1024, 0}), "-1024");
  EXPECT_EQ(text({0.0, 0}), "0");
  EXPECT_EQ(text({-0.0, 0}), "-0");
  EXPECT_EQ(text({0x1p-1074, 0}), "5e-324");
  // 1/3 in REAL*16, and in REAL*8 with nothing behind it.
  EXPECT_EQ(text({0x1.5555555555555p-2, 0x1.5555555555555p-56}),
            "0.333333333333333333333333333333332");
  EXPECT_EQ(text({0x1.5555555555555p-2, 0}), "[0.3333333333333333+0]");
  EXPECT_EQ(text({1, 1e-300}), "[1+1e-300]");
  // Half way between two numbers of as many digits: to the even one.
  EXPECT_EQ(text({from_bits(std::uint64_t{0x42D50B51CAED2AB8}),
                  from_bits(std::uint64_t{0x3BC04F53DE3F4994})}),
            "[92553444308138.88+6.907500100054725e-21]");
  EXPECT_EQ(text({1, 1}), "[1+1]");
  EXPECT_EQ(text({-1, -0.0}), "[-1-0]");
  EXPECT_EQ(text({0.0, -0.0}), "[0-0]");
}

TEST(Text, ShortestFormsOfInfinitiesAndNans) {
  EXPECT_EQ(text({infinity, 0}), "inf");
  EXPECT_EQ(text({-infinity, nan}), "[-inf+nan]");
  EXPECT_EQ(text({nan, 0}), "nan");
  EXPECT_EQ(text({-nan, -0.0}), "[-nan-0]");
  EXPECT_EQ(text({from_bits(std::uint64_t{0x7FF8000000000ABC}), 1.5}),
            "[nan(0x8000000000abc)+1.5]");
}

TEST(Text, DigitsAskedFor) {
  const zorvikrt_quad third = {0x1.5555555555555p-2, 0x1.5555555555555p-56};
  EXPECT_EQ(text(third, zorvikrt_fixed, 32), "0.33333333333333333333333333333333");
  EXPECT_EQ(text(third, zorvikrt_scientific, 3), "3.333e-01");
  EXPECT_EQ(text(third, zorvikrt_general, 4), "0.3333");
  EXPECT_EQ(text({1e22, 0}, zorvikrt_general, 6), "1e+22");
  EXPECT_EQ(text({123456, 0}, zorvikrt_general, 6), "123456");
  EXPECT_EQ(text({0.0001, 0}, zorvikrt_general, 6), "0.0001");
  EXPECT_EQ(text({0.00001, 0}, zorvikrt_general, 6), "1e-05");
  EXPECT_EQ(text({0.0, 0}, zorvikrt_general, 0), "0");
  // Ties to even are ties of the exact sum: a tail far below still decides.
  EXPECT_EQ(text({2.5, 0}, zorvikrt_fixed, 0), "2");
  EXPECT_EQ(text({2.5, 0x1p-1074}, zorvikrt_fixed, 0), "3");
  EXPECT_EQ(text({2.5, -0x1p-1074}, zorvikrt_fixed, 0), "2");
  EXPECT_EQ(text({9.995, 0}, zorvikrt_scientific, 2), "9.99e+00");
  EXPECT_EQ(text({9.996, 0}, zorvikrt_scientific, 2), "1.00e+01");
  EXPECT_EQ(text({-0.001, 0}, zorvikrt_fixed, 2), "-0.00");
  EXPECT_EQ(text({1.5, 0}, zorvikrt_fixed, -1), "1.500000");
  EXPECT_EQ(text({1, -1}, zorvikrt_fixed, 1), "0.0");
  EXPECT_EQ(text({infinity, nan}, zorvikrt_fixed, 3), "inf");
  EXPECT_EQ(text({1, -nan}, zorvikrt_general, 3), "-nan");
}

TEST(Text, WritesNothingWhereItDoesNotFit) {
  const zorvikrt_quad value = {1234.5, 0};
  char area[8] = "#######";
  EXPECT_EQ(zorvikrt_real16_to_chars(area, 5, &value, zorvikrt_shortest, 0), 6u);
  EXPECT_STREQ(area, "#######");
  EXPECT_EQ(zorvikrt_real16_to_chars(area, 6, &value, zorvikrt_shortest, 0), 6u);
  EXPECT_STREQ(area, "1234.5#");
}

TEST(Text, ReadsTheLongestNumberAtTheStart) {
  EXPECT_EQ(read("1.5e+2x"), number(150, 0, 6));
  EXPECT_EQ(read("-1.5D2"), number(-150, 0, 6));
  EXPECT_EQ(read("15q-1"), number(1.5, 0, 5));
  EXPECT_EQ(read("1e"), number(1, 0, 1));
  EXPECT_EQ(read("1e+"), number(1, 0, 1));
  EXPECT_EQ(read("1.2.3"), read("1.2"));
  EXPECT_EQ(read("1+1"), number(1, 0, 1));
  EXPECT_EQ(read("Infinity"), number(infinity, 0, 8));
  EXPECT_EQ(read("-infin"), number(-infinity, 0, 4));
  EXPECT_EQ(read("NaN(0x1)"), (outcome{0x7FF0000000000001, 0, 8, zorvikrt_read}));
  EXPECT_EQ(read("nan(0x0)"), number(nan, 0, 3));
  EXPECT_EQ(read("nan(0x10000000000000)"), number(nan, 0, 3));
  EXPECT_EQ(read("[1+1e-300]"), number(1, 1e-300, 10));
  EXPECT_EQ(read("[-inf-nan]"), number(-infinity, -nan, 10));
}

TEST(Text, RefusesWhatIsNoNumber) {
  for (const char* const refused : {"", "-", "+", ".", "e5", " 1", "--1", "[1]", "[1+]", "[1+2",
                                    "[1 +2]", "[[1+2]+3]", "i", "na"})
    EXPECT_EQ(read(refused), (outcome{bits(7.0), 0, 0, zorvikrt_not_a_number_text})) << refused;
}

TEST(Text, SaysWhatIsOutOfRange) {
  EXPECT_EQ(read("1e309"), (outcome{bits(infinity), 0, 5, zorvikrt_out_of_range}));
  EXPECT_EQ(read("-1e-400"), (outcome{bits(-0.0), 0, 7, zorvikrt_out_of_range}));
  EXPECT_EQ(read("5e-324"), number(0x1p-1074, 0, 6));
}

TEST(Text, Complex) {
  const auto read_complex = [](const std::string& text, zorvikrt_cquad& value) {
    return zorvikrt_complex32_from_chars(text.data(), text.size(), &value, nullptr);
  };
  zorvikrt_cquad value = {{1.5, 0}, {-2, 1e-30}};
  char area[64];
  const std::string written(
      area, zorvikrt_complex32_to_chars(area, sizeof area, &value, zorvikrt_shortest, 0));
  EXPECT_EQ(written, "(1.5,-1.999999999999999999999999999999)");
  zorvikrt_cquad again;
  EXPECT_EQ(read_complex(written, again), written.size());
  EXPECT_EQ(std::memcmp(&value, &again, sizeof value), 0);

  EXPECT_EQ(read_complex("(\t[1+2]  , \t3\t )x", again), 16u);
  EXPECT_EQ(again.re.lo, 2);
  EXPECT_EQ(again.im.hi, 3);
  EXPECT_EQ(read_complex("(4)", again), 3u);
  EXPECT_EQ(read_complex("5 ", again), 1u);
  EXPECT_EQ(again.re.hi, 5);
  EXPECT_EQ(again.im.hi, 0);
  for (const char* const refused : {"(1,2", "(1;2)", "(,2)", "(1,)", "()"})
    EXPECT_EQ(read_complex(refused, again), 0u) << refused;
}

TEST(Text, PrecisionIsBounded) {
  const zorvikrt_quad third = {0x1.5555555555555p-2, 0x1.5555555555555p-56}, zero = {0, 0};
  const int limit = ZORVIKRT_MOST_DIGITS;
  std::string area(limit + 10, 'x');
  for (const int precision : {limit, limit + 1, INT_MAX}) {
    const auto count =
        zorvikrt_real16_to_chars(area.data(), area.size(), &third, zorvikrt_fixed, precision);
    EXPECT_EQ(count, static_cast<std::size_t>(limit + 2));
    EXPECT_EQ(area.substr(0, 8) + area.substr(limit), "0.33333300xxxxxxxx");
    EXPECT_EQ(zorvikrt_real16_to_chars(nullptr, 0, &zero, zorvikrt_scientific, precision),
              static_cast<std::size_t>(limit + 6));
    EXPECT_EQ(text(third, zorvikrt_general, precision).size(), 110u);
  }
}

#ifdef __linux__
namespace {

void* write_on_this_stack(void*) {
  for (const int style : {zorvikrt_shortest, zorvikrt_fixed, zorvikrt_scientific, zorvikrt_general})
    text({0x1.fffffffffffffp+1023, 0x1p-1074}, static_cast<zorvikrt_style>(style), 30);
  read("1.7976931348623157e308");
  return nullptr;
}

}  // namespace

TEST(Text, DoesWithTheSmallestStack) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, PTHREAD_STACK_MIN), 0);
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, write_on_this_stack, nullptr), 0);
  EXPECT_EQ(pthread_join(thread, nullptr), 0);
}
#endif
