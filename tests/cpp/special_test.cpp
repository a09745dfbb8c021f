// The special functions: poles, ends of the range, infinities, and known values to 28 digits, in
// rows.

#include "zorvikrt/special.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "zorvikrt/zorvikrt.hpp"

using zorvikrt::real16;

namespace {

std::string shown(const real16& value) {
  char text[64];
  const auto end = to_chars(text, text + sizeof text, value, std::chars_format::general, 28).ptr;
  return {text, end};
}

real16 computed(const std::string& function, int order, const real16& x) {
  using one = real16 (*)(const real16&);
  static const std::pair<const char*, one> functions[] = {{"erf", zorvikrt::erf},
                                                          {"erfc", zorvikrt::erfc},
                                                          {"erfc_scaled", zorvikrt::erfc_scaled},
                                                          {"gamma", zorvikrt::tgamma},
                                                          {"log_gamma", zorvikrt::lgamma},
                                                          {"bessel_j0", zorvikrt::j0},
                                                          {"bessel_j1", zorvikrt::j1},
                                                          {"bessel_y0", zorvikrt::y0},
                                                          {"bessel_y1", zorvikrt::y1}};
  if (function == "bessel_jn") return zorvikrt::jn(order, x);
  if (function == "bessel_yn") return zorvikrt::yn(order, x);
  for (const auto& [name, f] : functions)
    if (function == name) return f(x);
  ADD_FAILURE() << "no function " << function;
  return x;
}

}  // namespace

TEST(Special, Rows) {
  std::ifstream file(ZORVIKRT_ROWS);
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string function, operand, result;
    int order = 0;
    if (!(words >> function) || function[0] == '#') continue;
    if (function.ends_with('n')) words >> order;
    words >> operand >> result;
    ++count;
    EXPECT_EQ(shown(computed(function, order, real16(operand))), shown(real16(result))) << line;
  }
  EXPECT_GT(count, 60);
}
