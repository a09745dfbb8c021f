// 64-bit shifts as compiled code calls them.

#include "int64/shifts.hpp"

#include "entries.hpp"

using namespace zrt::int64;

ZRT_VALUE(std::int64_t, llshift)(std::int64_t x, std::int32_t n) { return shifted_left(x, n); }
ZRT_VALUE(std::int64_t, rlshift)(std::int64_t x, std::int32_t n) { return shifted_right(x, n); }
ZRT_VALUE(std::int64_t, arlshift)(std::int64_t x, std::int32_t n) {
  return shifted_right_arithmetically(x, n);
}
