// Functions of the C++ headers: known values to 28 digits, poles, ends of the range, infinities and
// NaNs, in rows.

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <vector>

#include "zorvikrt/special.hpp"
#include "zorvikrt/zorvikrt.hpp"

using zorvikrt::real16;

namespace {

std::string shown(const real16& value) {
  char text[64];
  return {text, to_chars(text, text + sizeof text, value, std::chars_format::general, 28).ptr};
}

using operands = std::vector<real16>;
using function = std::function<real16(const operands&)>;

function one(real16 (*f)(const real16&)) {
  return [f](const operands& x) { return f(x.at(0)); };
}
function two(real16 (*f)(const real16&, const real16&)) {
  return [f](const operands& x) { return f(x.at(0), x.at(1)); };
}
function of_order(real16 (*f)(int, const real16&)) {
  return [f](const operands& x) { return f(static_cast<int>(x.at(0)), x.at(1)); };
}

const std::map<std::string, function> functions = {
    {"erf", one(zorvikrt::erf)},
    {"erfc", one(zorvikrt::erfc)},
    {"erfc_scaled", one(zorvikrt::erfc_scaled)},
    {"gamma", one(zorvikrt::tgamma)},
    {"log_gamma", one(zorvikrt::lgamma)},
    {"bessel_j0", one(zorvikrt::j0)},
    {"bessel_j1", one(zorvikrt::j1)},
    {"bessel_jn", of_order(zorvikrt::jn)},
    {"bessel_y0", one(zorvikrt::y0)},
    {"bessel_y1", one(zorvikrt::y1)},
    {"bessel_yn", of_order(zorvikrt::yn)},
    {"exp2", one(zorvikrt::exp2)},
    {"expm1", one(zorvikrt::expm1)},
    {"log1p", one(zorvikrt::log1p)},
    {"log2", one(zorvikrt::log2)},
    {"cbrt", one(zorvikrt::cbrt)},
    {"hypot", two(zorvikrt::hypot)},
    {"asinh", one(zorvikrt::asinh)},
    {"acosh", one(zorvikrt::acosh)},
    {"atanh", one(zorvikrt::atanh)},
    {"rint", one(zorvikrt::rint)},
    {"remainder", two(zorvikrt::remainder)},
    {"remquo_quotient",
     [](const operands& x) {
       int quotient;
       remquo(x.at(0), x.at(1), &quotient);
       return real16(quotient);
     }},
    {"fmin", two(zorvikrt::fmin)},
    {"fmax", two(zorvikrt::fmax)},
    {"nextafter", two(zorvikrt::nextafter)},
    {"logb", one(zorvikrt::logb)},
    {"fma", [](const operands& x) { return fma(x.at(0), x.at(1), x.at(2)); }},
    {"modf_rest",
     [](const operands& x) {
       real16 whole;
       return modf(x.at(0), &whole);
     }},
    {"modf_whole", [](const operands& x) {
       real16 whole;
       modf(x.at(0), &whole);
       return whole;
     }}};

}  // namespace

TEST(CppValues, Rows) {
  std::ifstream file(ZORVIKRT_ROWS);
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name, word;
    if (!(words >> name) || name[0] == '#') continue;
    operands x;
    while (words >> word && word != "=") x.emplace_back(word);
    words >> word;
    ++count;
    // A number to 28 digits; a pair in brackets bit for bit.
    const real16 result = functions.at(name)(x);
    const bool exact = word[0] == '[';
    EXPECT_EQ(exact ? to_string(result) : shown(result),
              exact ? to_string(real16(word)) : shown(real16(word)))
        << line;
  }
  EXPECT_GT(count, 150);
}
