// The latency of a function's own chain of operations: what its steps cost when each waits for the
// one before, and so the time below which no order of instructions brings a single call. A row
// executes the operations of the longest path from operand to result, each on the result of the
// last: on the x87 in 32-bit builds and for what needs one of its instructions, else on doubles.

#include "calls.hpp"

namespace bench {
namespace {

enum class instruction { none, fsqrt, f2xm1, fpatan, fyl2x, fsincos };

/// Operations on the longest path. Where two factors of a product or two terms of a sum become
/// ready side by side, the later one counts.
struct path {
  const char* entry;
  int additions, multiplications, divisions;
  int stores;         // roundings to the format by a store and a load
  int whole_numbers;  // conversions to an integer and back
  instruction other = instruction::none;
};

// For an operand of the sample range, in the order of the steps. A polynomial of n coefficients has
// n - 1 multiplications and additions.
const path paths[] = {
    // reduction by ln 2: product, half, whole number, product, two differences; square; p or q and
    // difference; quotient, sum; stored; scaling
    {"dexp", 7, 7, 1, 1, 1},
    // significand; r; u and its square; p and its product; three sums
    {"dlog", 8, 8, 0, 1, 0},
    // multiple of pi: product, half, whole number, product, two differences; square; r; closing
    // products and sum; stored
    {"dsin", 11, 12, 0, 1, 1},
    {"sin", 7, 8, 0, 1, 1},
    {"cos", 8, 8, 0, 2, 1},
    // multiple of pi/2; square; q; stored; quotient
    {"dtan", 7, 7, 1, 1, 1},
    // square; q; quotient; product and sum; stored; sign
    {"dasin", 6, 7, 1, 1, 0},
    {"datan", 5, 5, 1, 1, 0},
    // the root of the whole operand, stored
    {"sqrt", 0, 0, 0, 1, 0, instruction::fsqrt},
    // e**y in the 64-bit section: product, whole number, difference, power, sum, scaling; 1 / e**y;
    // difference and half
    {"dsinh", 3, 3, 1, 0, 1, instruction::f2xm1},
    {"dcosh", 3, 3, 1, 0, 1, instruction::f2xm1},
    {"dtanh", 4, 4, 1, 1, 1, instruction::f2xm1},
    {"datan2", 0, 0, 0, 0, 0, instruction::fpatan},
    // the product of e**x and the sine, which take their time side by side
    {"cdexp", 0, 1, 0, 1, 0, instruction::fsincos},
    // modulus: ratio, square, sum, root, product; logarithm
    {"cdlog", 1, 2, 1, 0, 0, instruction::fyl2x},
};

template <class Step>
inline void repeat(int times, Step step) {
  for (int i = 0; i < times; ++i) step();
}

void run_instruction(instruction which, long double& value) {
  switch (which) {
    case instruction::none:
      return;
    case instruction::fsqrt:
      asm volatile("fsqrt" : "+t"(value));
      return;
    case instruction::f2xm1:
      asm volatile("f2xm1" : "+t"(value));
      return;
    case instruction::fpatan:
      asm volatile("fld1\n\tfpatan" : "+t"(value));
      return;
    case instruction::fyl2x:
      asm volatile("fld1\n\tfxch\n\tfyl2x" : "+t"(value));
      return;
    case instruction::fsincos:
      asm volatile("fsincos\n\tfstp %%st(0)" : "+t"(value));
      return;
  }
}

void run_on_registers(const path& p, long calls) {
  const long double zero = 0, one = 1, start = 0.9L;  // in the domain of every instruction
  // One product and one sum of the path bring the value back to the start.
  const bool restarts = p.other == instruction::f2xm1 || p.other == instruction::fyl2x;
  long double value = start;
  for (long call = 0; call < calls; ++call) {
    double slot;
    long long integer;
    if (restarts) asm volatile("fmul %1, %0\n\tfadd %2, %0" : "+t"(value) : "f"(zero), "f"(start));
    repeat(p.additions - restarts, [&] { asm volatile("fadd %1, %0" : "+t"(value) : "f"(zero)); });
    repeat(p.multiplications - restarts, [&] {
      asm volatile("fmul %1, %0" : "+t"(value) : "f"(one));
    });
    repeat(p.divisions, [&] { asm volatile("fdiv %1, %0" : "+t"(value) : "f"(one)); });
    repeat(p.stores, [&] { asm volatile("fstpl %1\n\tfldl %1" : "+t"(value), "=m"(slot)); });
    run_instruction(p.other, value);
    repeat(p.whole_numbers, [&] {
      asm volatile("fisttpll %1\n\tfildll %1" : "+t"(value), "=m"(integer));
    });
  }
}

#if defined(__x86_64__)
void run_on_doubles(const path& p, long calls) {
  const double zero = 0, one = 1;
  double value = 0.9;
  for (long call = 0; call < calls; ++call) {
    long long integer;
    repeat(p.additions, [&] { asm volatile("addsd %1, %0" : "+x"(value) : "x"(zero)); });
    repeat(p.multiplications, [&] { asm volatile("mulsd %1, %0" : "+x"(value) : "x"(one)); });
    repeat(p.divisions, [&] { asm volatile("divsd %1, %0" : "+x"(value) : "x"(one)); });
    repeat(p.other == instruction::fsqrt, [&] { asm volatile("sqrtsd %0, %0" : "+x"(value)); });
    repeat(p.whole_numbers, [&] {
      asm volatile("cvttsd2si %0, %1\n\tcvtsi2sd %1, %0" : "+x"(value), "=r"(integer));
    });
  }
}
#endif

void run(const path& p, long calls) {
#if defined(__x86_64__)
  if (p.other == instruction::none || p.other == instruction::fsqrt)
    return run_on_doubles(p, calls);
#endif
  run_on_registers(p, calls);
}

const registered chain_rows([] {
  for (const path& p : paths)
    rows().push_back({p.entry, own_chain, 0, [&p](long calls) { run(p, calls); }});
});

}  // namespace
}  // namespace bench
