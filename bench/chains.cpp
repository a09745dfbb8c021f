// The latency of a function's own chain of operations: what its steps cost when each waits for the
// one before, and so the time below which no order of instructions brings a single call. A row
// executes the operations of the critical path, each on the result of the last.

#include "calls.hpp"

namespace bench {
namespace {

/// Operations on the critical path, from the load of the operand to the result in st(0).
struct chain {
  const char* entry;
  int additions, multiplications, divisions;
  int round_trips;          // a store to memory and the load that waits for it
  int integer_round_trips;  // fisttp and fild
};

// The longest path through the steps for an operand of the sample range. Where two factors of a
// product or two terms of a sum become ready side by side, the later one counts.
const chain chains[] = {
    // x log2(e); 0.5; n; n C1; two differences; z; P or Q: 2 and 2; Q - g; quotient; 0.5; the
    // scaling
    {"dexp", 7, 6, 1, 2, 1},
    // r; u; P: 4 and 4; v P; B; u; A
    {"dlog", 9, 6, 0, 2, 0},
    // a / pi + 0.5; N; XN C1; two differences; g; R: 7 and 6; g R f; f; the store
    {"dsin", 10, 10, 0, 1, 1},
    // the same reduction; g; xden: 4 and 4; the store; the quotient
    {"dtan", 7, 7, 1, 1, 1},
    // g of Y; Q: 5 and 5; P / Q; y; the store
    {"dasin", 6, 6, 1, 1, 0},
    // g of F; Q: 4 and 4; P / Q; F; two stores
    {"datan", 5, 5, 1, 2, 0},
};

template <class Step>
inline void repeat(int times, Step step) {
  for (int i = 0; i < times; ++i) step();
}

void run(const chain& c, long calls) {
  long double value = 1.0L;
  const long double zero = 0.0L, one = 1.0L;
  for (long call = 0; call < calls; ++call) {
    double slot;
    long long integer;
    repeat(c.additions, [&] { asm volatile("fadd %1, %0" : "+t"(value) : "f"(zero)); });
    repeat(c.multiplications, [&] { asm volatile("fmul %1, %0" : "+t"(value) : "f"(one)); });
    repeat(c.divisions, [&] { asm volatile("fdiv %1, %0" : "+t"(value) : "f"(one)); });
    repeat(c.round_trips, [&] { asm volatile("fstpl %1\n\tfldl %1" : "+t"(value), "=m"(slot)); });
    repeat(c.integer_round_trips, [&] {
      asm volatile("fisttpll %1\n\tfildll %1" : "+t"(value), "=m"(integer));
    });
  }
}

const registered chain_rows([] {
  for (const chain& c : chains)
    rows().push_back({c.entry, own_chain, 0, [&c](long calls) { run(c, calls); }});
});

}  // namespace
}  // namespace bench
