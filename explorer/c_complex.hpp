#pragma once

// The C library's complex functions; C++ hides their header.

extern "C" {
#define ZRT_COMPLEX_PEER(shape, c, z, x, name, mpc) \
  ZRT_DECLARED_##shape(double, name) ZRT_DECLARED_##shape(float, name##f)
#define ZRT_DECLARED_modulus(type, name) type name(_Complex type);
#define ZRT_DECLARED_complex_one(type, name) _Complex type name(_Complex type);
#define ZRT_DECLARED_complex_two(type, name) _Complex type name(_Complex type, _Complex type);
#include "counterparts.inc"
#undef ZRT_DECLARED_modulus
#undef ZRT_DECLARED_complex_one
#undef ZRT_DECLARED_complex_two
}
