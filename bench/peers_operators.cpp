// The operators of the C++ header, in line on x86-64, beside the entries that they stand for.

#include "calls.hpp"
#include "zorvikrt/functions.hpp"

namespace bench {

static const registered operators([] {
  using zorvikrt::complex32;
  using zorvikrt::real16;
  using one = real16 (*)(real16);
  using two = real16 (*)(real16, real16);
  using with_double = real16 (*)(real16, double);
  const char* const name = "C++ operator";
  add_peer("qadd", name, two([](real16 a, real16 b) { return a + b; }));
  add_peer("qsub", name, two([](real16 a, real16 b) { return a - b; }));
  add_peer("qmul", name, two([](real16 a, real16 b) { return a * b; }));
  add_peer("qdiv", name, two([](real16 a, real16 b) { return a / b; }));
  add_peer("qaddd", name, with_double([](real16 a, double b) { return a + b; }));
  add_peer("qsubd", name, with_double([](real16 a, double b) { return a - b; }));
  add_peer("qmuld", name, with_double([](real16 a, double b) { return a * b; }));
  add_peer("qdivd", name, with_double([](real16 a, double b) { return a / b; }));
  add_peer("sqrtl", name, one([](real16 a) { return sqrt(a); }));
  using complex_two = complex32 (*)(complex32, complex32);
  add_peer("cqmul", name, complex_two([](complex32 a, complex32 b) { return a * b; }));
});

}  // namespace bench
