/** zorvikrt: the intrinsic functions of a Fortran compiler for x86, from C and C++.
 *
 *  Value entries __zorvik_<stem> take their operands by value, reference entries __zorvik_I_<stem>
 * by address. A REAL*16, COMPLEX*16 or COMPLEX*32 result goes through the first operand, the result
 *  address, which is also what the function returns.
 *
 *  On 32-bit x86 a REAL result arrives on the FPU stack with the register's precision and exponent
 *  range: it is rounded when the program stores it. All numeric entries expect the x87 control word
 *  that the library sets when it is loaded (53 bits, to nearest).
 */
#ifndef ZORVIKRT_H
#define ZORVIKRT_H

#ifndef __x86_64__
#include <cpuid.h>
#endif
#include <stdint.h>
#include <zorvikrt/version.h>

#if !(defined(__GNUC__) && (defined(__i386__) || defined(__x86_64__)))
#error "zorvikrt needs an x86 target and a compiler with the GNU extensions"
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** COMPLEX*8 and COMPLEX*16. */
__extension__ typedef float _Complex zorvikrt_complex8;
__extension__ typedef double _Complex zorvikrt_complex16;

/** REAL*16: the unevaluated sum hi + lo of two doubles, about 106 bits of significand. */
typedef struct zorvikrt_quad {
  double hi, lo;
} zorvikrt_quad;

/** COMPLEX*32. */
typedef struct zorvikrt_cquad {
  zorvikrt_quad re, im;
} zorvikrt_cquad;

#ifdef _WIN32
#define ZORVIKRT_DATA extern __declspec(dllimport)
#else
#define ZORVIKRT_DATA extern
#endif

#include <zorvikrt/entries.h>

/** The test of the library's load for SSE state: FXSR and SSE2 by cpuid leaf 1. */
static __inline__ int zorvikrt_has_sse(void) {
#ifdef __x86_64__
  return 1;
#else
  const unsigned fxsr_and_sse2 = 0x05000000u;
  unsigned a, b, c, d;
  return __get_cpuid(1, &a, &b, &c, &d) != 0 && (d & fxsr_and_sse2) == fxsr_and_sse2;
#endif
}

/** Sets the floating-point state of the calling thread to the one that the library sets at its
 * load: x87 control word 0x027F (53 bits, to nearest, exceptions masked); where the processor has
 * SSE2, MXCSR with all exceptions masked, round to nearest, FTZ and DAZ, flags clear. A thread that
 * was there before the library was loaded calls it once; so does a signal handler before it calls
 * an entry, and a thread after siglongjmp out of a handler or after fesetenv. On Linux threads
 * started afterwards inherit the state. On Windows the DLL sets it on each new thread, but start
 * code may come after it and put the FPU back: MinGW's does, in main and in std::thread, and there
 * a thread calls this function first. */
static __inline__ void zorvikrt_set_thread_state(void) {
  const uint16_t control_word = 0x027F;
  uint32_t mask, mxcsr;
  uintptr_t address;
  /* The image of fxsave on a boundary of 16 bytes, whatever the alignment of the stack. */
  unsigned char room[512 + 16];
  unsigned char* image = room;
  __asm__ __volatile__("fldcw %0" : : "m"(control_word));
  if (!zorvikrt_has_sse()) return;
  __builtin_memcpy(&address, &image, sizeof address);
  image += (16 - address % 16) % 16;
  __builtin_memset(image, 0, 512);
  __asm__ __volatile__("fxsave (%0)" : : "r"(image) : "memory");
  __builtin_memcpy(&mask, image + 28, sizeof mask);
  mxcsr = 0x9FC0u & (mask != 0 ? mask : 0xFFBFu);
  __asm__ __volatile__("ldmxcsr %0" : : "m"(mxcsr));
}

#ifdef __cplusplus
}
#endif

#endif
