#pragma once

// What the forms between gfortran's calls and the entries share. They are compiled as ordinary
// code, not as part of the library: one round trip through a slot is all the arithmetic here.

#include <zorvikrt/zorvikrt.h>

namespace zorvikrt_gfortran {

/// Rounds a REAL result to its format. On i386 it comes in a register with 64 bits and the
/// register's exponents, and gfortran, unlike the caller the entries were made for, may go on
/// computing with it: an overflow would stay finite.
template <class Real>
[[gnu::always_inline]] inline Real rounded(Real value) {
#ifdef __i386__
  asm("" : "+m"(value));
#endif
  return value;
}

}  // namespace zorvikrt_gfortran
