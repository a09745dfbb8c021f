// The REAL*16 square root.

#include "quad/root.hpp"

#include "entries.hpp"

using namespace zrt;

ZRT_VALUE(quad*, sqrtl)(quad* result, quad a) {
  *result = quads::square_root(a);
  return result;
}
