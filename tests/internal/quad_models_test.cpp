// The guards of REAL*16 and COMPLEX*32 on doubles: every kernel of the models `sse` and `fma`
// against that of the x87, on operands at every edge of every range, cancelling, unnormalised,
// subnormal and short, with flush-to-zero and denormals-are-zero on and off.

#if defined(__x86_64__)

#include <gtest/gtest.h>
#include <xmmintrin.h>

#include "cquad/kernels.hpp"
#include "quad/arcsine.hpp"
#include "quad/arctangent.hpp"
#include "quad/by_processor.hpp"
#include "quad/circular.hpp"
#include "quad/exponential.hpp"
#include "quad/hyperbolic.hpp"
#include "quad/logarithm.hpp"
#include "quad/powers.hpp"
#include "support/quad_operands.hpp"
#include "support/quad_results.hpp"
#include "support/x87_state.hpp"

using namespace zrt;
using namespace support;

namespace {

constexpr std::uint32_t modes[] = {0x1F80, 0x1FC0, 0x9F80, 0x9FC0};

template <class Value>
std::vector<std::uint64_t> images(const Value& value) {
  std::vector<std::uint64_t> all(sizeof value / 8);
  std::memcpy(all.data(), &value, sizeof value);
  return all;
}

/// Three kernels of one function; `run` gives what each makes of an operand.
template <class Draw, class Run>
void expect_same_models(const char* name, int count, Draw draw, Run run) {
  const std::uint32_t callers = _mm_getcsr();
  operand_source source{std::mt19937_64(std::hash<std::string>()(name))};
  for (int i = 0; i < count; ++i) {
    const auto operand = draw(source);
    const auto expected = run(operand, 0);
    for (const std::uint32_t mode : modes)
      for (const int model : {1, 2}) {
        if (model == 2 && !processor::has_fma) continue;
        _mm_setcsr(mode);
        const auto found = run(operand, model);
        _mm_setcsr(callers);
        ASSERT_EQ(found, expected) << name << " in model " << model << " under " << mode << ": "
                                   << testing::PrintToString(images(operand));
      }
  }
}

#define IN_EACH_MODEL(room, kernel, ...)                 \
  (model == 0   ? images(room::x87::kernel(__VA_ARGS__)) \
   : model == 1 ? images(room::sse::kernel(__VA_ARGS__)) \
                : images(room::fma::kernel(__VA_ARGS__)))
#define EXPECT_OF_ONE(kernel, low, high)                                           \
  expect_same_models(                                                              \
      #kernel, 20000, [](operand_source& from) { return from.number(low, high); }, \
      [](const quad& x, int model) { return IN_EACH_MODEL(quads, kernel, x); })
#define EXPECT_OF_TWO(kernel, count, low, high)          \
  expect_same_models(                                    \
      #kernel, count,                                    \
      [](operand_source& from) {                         \
        const quad a = from.number(low, high);           \
        return std::pair{a, from.partner(a, low, high)}; \
      },                                                 \
      [](const auto& x, int model) { return IN_EACH_MODEL(quads, kernel, x.first, x.second); })
#define EXPECT_INTO(kernel, count, low, high, ...)                          \
  expect_same_models(                                                       \
      #kernel, count,                                                       \
      [](operand_source& from) {                                            \
        const quad a = from.number(low, high);                              \
        return std::pair{a, from.partner(a, low, high)};                    \
      },                                                                    \
      [](const auto& x, int model) {                                        \
        const auto& [a, b] = x;                                             \
        (void)b;                                                            \
        quad r;                                                             \
        return model == 0   ? images(*quads::x87::kernel(&r, __VA_ARGS__))  \
               : model == 1 ? images(*quads::sse::kernel(&r, __VA_ARGS__))  \
                            : images(*quads::fma::kernel(&r, __VA_ARGS__)); \
      })
#define EXPECT_OF_COMPLEX(kernel, low, high)         \
  expect_same_models(                                \
      #kernel, 10000,                                \
      [](operand_source& from) {                     \
        const quad a = from.number(low, high);       \
        return cquad{a, from.partner(a, low, high)}; \
      },                                             \
      [](const cquad& x, int model) { return IN_EACH_MODEL(cquads, kernel, x); })

}  // namespace

TEST(QuadModels, AgreeInTheArithmetic) {
  EXPECT_INTO(mul, 60000, -20, 20, a, b);
  EXPECT_INTO(mul, 60000, -20, 20, a, b.hi);
  EXPECT_INTO(div, 60000, -20, 20, a, b);
  EXPECT_INTO(div, 60000, -20, 20, a, b.hi);
  EXPECT_INTO(div, 60000, -20, 20, a.hi, b);
  EXPECT_INTO(product, 60000, -20, 20, a.hi, b.hi);
  EXPECT_INTO(square_root, 60000, -20, 20, a);
  using A = quads::guarded_arithmetic;
  using S = quads::stored_arithmetic;
  const auto draw = [](operand_source& from) {
    const quad a = from.number(-20, 20);
    return std::pair{a, from.partner(a, -20, 20)};
  };
  expect_same_models("add", 60000, draw, [](const auto& x, int model) {
    return images(model == 0 ? S::add(x.first, x.second) : A::add(x.first, x.second));
  });
  expect_same_models("sub", 60000, draw, [](const auto& x, int model) {
    return images(model == 0 ? S::sub(x.first, x.second) : A::sub(x.first, x.second));
  });
  expect_same_models("add a double", 60000, draw, [](const auto& x, int model) {
    const double d = x.second.hi;
    return images(model == 0 ? S::add(x.first, load(d)) : A::add(x.first, d));
  });
  expect_same_models("scaled", 60000, draw, [](const auto& x, int model) {
    const int n = static_cast<int>(bits(x.second.lo) % 4400) - 2200;
    return images(model == 0 ? S::scaled(x.first, n) : A::scaled(x.first, n));
  });
}

TEST(QuadModels, AgreeInTheFunctions) {
  EXPECT_OF_ONE(exponential, -12, 10);
  EXPECT_OF_ONE(logarithm, -110, 110);
  EXPECT_OF_ONE(sine, -12, 21);
  EXPECT_OF_ONE(cosine, -12, 21);
  EXPECT_OF_ONE(tangent, -12, 21);
  EXPECT_OF_ONE(arcsine, -20, 0);
  EXPECT_OF_ONE(arccosine, -20, 0);
  EXPECT_OF_ONE(arctangent, -20, 20);
  EXPECT_OF_TWO(angle, 10000, -20, 20);
  EXPECT_OF_ONE(hyperbolic_sine, -20, 9);
  EXPECT_OF_ONE(hyperbolic_cosine, -20, 9);
  EXPECT_OF_ONE(hyperbolic_tangent, -20, 9);
  EXPECT_INTO(power, 10000, -4, 4, a, b);
  EXPECT_INTO(integer_power, 10000, -4, 4, a, static_cast<std::int32_t>(bits(b.lo) % 99) - 49);
}

TEST(QuadModels, AgreeInComplexFunctions) {
  EXPECT_OF_COMPLEX(exponential, -8, 8);
  EXPECT_OF_COMPLEX(logarithm, -20, 20);
  EXPECT_OF_COMPLEX(sine, -8, 8);
  EXPECT_OF_COMPLEX(cosine, -8, 8);
  EXPECT_OF_COMPLEX(principal_root, -20, 20);
  for (const int width : {4, 230}) {
    const auto draw = [&](operand_source& from) {
      const quad a = from.number(-width, width), b = from.number(-width, width);
      return std::pair{cquad{a, from.partner(a, -width, width)}, cquad{b, from.partner(a, -5, 5)}};
    };
    expect_same_models("product", 20000, draw, [](const auto& x, int model) {
      return IN_EACH_MODEL(cquads, product, x.first, x.second);
    });
    expect_same_models("quotient", 20000, draw, [](const auto& x, int model) {
      return IN_EACH_MODEL(cquads, quotient, x.first, x.second);
    });
    expect_same_models("power", 3000, draw, [](const auto& x, int model) {
      return IN_EACH_MODEL(cquads, power, x.first, x.second);
    });
  }
}

// A thread or a signal handler with another control word of the x87.
TEST(QuadModels, DoNotHeedTheControlWordWithOrdinaryOperands) {
  std::mt19937_64 random(17);
  const quad ln_10{0x1.26bb1bbb55516p+1, -0x1.f48ad494ea3e9p-53};
  for (int i = 0; i < 20000; ++i) {
    const quad a = any_quad(random, -3, 3), b = any_quad(random, -3, 3);
    const auto all = [&] {
      std::vector<std::vector<std::uint64_t>> results;
      for (const auto& r : {quads::guarded_arithmetic::add(a, b), quads::sse::exponential(a),
                            quads::sse::sine(a), quads::sse::logarithm(ln_10)})
        results.push_back(images(r));
      quad r;
      results.push_back(images(*quads::sse::mul(&r, a, b)));
      results.push_back(images(*quads::sse::div(&r, a, b)));
      return results;
    };
    const auto expected = all();
    for (const std::uint16_t word : {0x037F, 0x0A7F, 0x007F}) {
      const under_word scope(word);
      ASSERT_EQ(all(), expected) << word;
    }
  }
}

#endif
