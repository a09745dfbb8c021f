// Every error bound of the list of exports against MPFR, over random operands: none may be
// exceeded, and none may be more than twice what is seen. The worst operands stand in bounds.txt
// afterwards.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/exact.hpp"

using namespace support;

#if !defined(ZRT_BOUND_OPERANDS)
#define ZRT_BOUND_OPERANDS 4000
#endif

TEST(Bounds, HoldAndAreTight) {
  std::ofstream table("bounds.txt");
  for (const bound& b : bounds) {
    const function exact = exact_of(b.stem);
    ASSERT_NE(exact, nullptr) << b.stem;
    const entry& e = entry_of(b.stem);
    generator random(11);
    std::array<operand, 2> call, worst_call;
    double worst = -1;
    value operands[2], result, got;
    for (int i = 0; i < ZRT_BOUND_OPERANDS; ++i) {
      for (std::size_t at = 0; at < e.codes.size(); ++at) {
        call[at] = drawn(e.codes[at], b.ranges[at], random);
        read(operands[at], e.codes[at], call[at]);
      }
      mpfr_set_zero(result.im, 1);
      exact(result, operands[0], operands[1]);
      read(got, e.result, e({call.data(), e.codes.size()}).result);
      const double distance = error(e.result, got, result, b.least);
      if (!(distance <= worst)) worst = distance, worst_call = call;
    }
    std::ostringstream line;
    line << b.stem << " over";
    for (std::size_t at = 0; at < e.codes.size(); ++at)
      line << " [" << b.ranges[at].low << ", " << b.ranges[at].high << ']';
    line << ": " << worst << " of " << b.units << " at" << std::hex;
    for (std::size_t at = 0; at < e.codes.size(); ++at) {
      const int width = size_of(e.codes[at]) < 8 ? 4 : 8;
      for (int byte = 0; byte < size_of(e.codes[at]); byte += width)
        line << (byte == 0 ? " 0x" : ",0x")
             << (width == 4 ? part_of<std::uint32_t>(worst_call[at], byte)
                            : part_of<std::uint64_t>(worst_call[at], byte));
    }
    table << line.str() << '\n';
    EXPECT_TRUE(worst <= b.units) << line.str();
    EXPECT_TRUE(b.units <= 2 * worst) << "too loose: " << line.str();
  }
}
