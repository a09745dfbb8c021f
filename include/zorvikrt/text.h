/** Reading and writing REAL*16 and COMPLEX*32 as decimal text; library zorvikrt_text.
 *
 *  All conversion is exact: what is written is the sum hi + lo rounded to the digits asked for,
 * ties to even, and what is read is hi, the nearest double, and lo, the double nearest to the rest.
 * Only integers are used, so neither the x87 control word nor FTZ and DAZ have a part in it.
 *
 *  A number reads and writes as
 *
 *      [sign] digits [. digits] [e [sign] digits]     also with d or q for the e
 *      [sign] inf, infinity, nan or nan(0x fraction)  in either case
 *      [hi+lo] or [hi-lo]                             the two doubles, in brackets
 *
 *  The shortest form is the shortest decimal that reads back as the same two doubles, bit for bit.
 *  Where that takes more than 40 digits, or where no decimal reads as these two (parts that
 * overlap, a lo of -0.0, an infinity or NaN with anything but +0.0 behind it), it is the pair in
 * brackets, each double in its own shortest form: the double nearest 0.1 with nothing behind it is
 * [0.1+0]. A NaN whose payload is not that of the plain quiet NaN shows its 52 fraction bits:
 * nan(0x1).
 *
 *  In the other styles an infinite or NaN hi stands for the whole number.
 */
#ifndef ZORVIKRT_TEXT_H
#define ZORVIKRT_TEXT_H

#include <stddef.h>
#include <zorvikrt/zorvikrt.h>

#ifdef __cplusplus
extern "C" {
#endif

/** How a number is laid out. */
typedef enum zorvikrt_style {
  /** The shortest text that reads back as the same bits; the precision is not used. */
  zorvikrt_shortest = 0,
  /** As %f: `precision` digits behind the point. */
  zorvikrt_fixed = 1,
  /** As %e: one digit before the point and `precision` behind it. */
  zorvikrt_scientific = 2,
  /** As %g: `precision` significant digits in the shorter of the two, zeros at the end dropped. */
  zorvikrt_general = 3
} zorvikrt_style;

/** The greatest precision. Behind some 1400 digits there are zeros. */
#define ZORVIKRT_MOST_DIGITS 1000000

/** Writes a REAL*16 to [first, first + size) and gives the number of characters. If they do not
 * fit, it writes nothing and gives the number that would be needed. There is no terminating zero. A
 *  negative precision stands for 6, one beyond ZORVIKRT_MOST_DIGITS for that.
 *  The call needs 11 KB of stack. */
size_t zorvikrt_real16_to_chars(char* first, size_t size, const zorvikrt_quad* value,
                                zorvikrt_style style, int precision);

/** Writes a COMPLEX*32 as (re,im), in the same way. */
size_t zorvikrt_complex32_to_chars(char* first, size_t size, const zorvikrt_cquad* value,
                                   zorvikrt_style style, int precision);

/** What reading came to. */
typedef enum zorvikrt_reading {
  zorvikrt_read = 0,
  /** No number at the start of the text; the value is unchanged. */
  zorvikrt_not_a_number_text = 1,
  /** A number beyond the range: the value is an infinity. Or one that is not zero but too small:
   * the value is a zero. */
  zorvikrt_out_of_range = 2
} zorvikrt_reading;

/** Reads a REAL*16 from the start of [first, first + size) and gives the number of characters that
 *  belong to it, 0 if there is no number. Blanks before it are not skipped. `reading` may be null.
 */
size_t zorvikrt_real16_from_chars(const char* first, size_t size, zorvikrt_quad* value,
                                  zorvikrt_reading* reading);

/** Reads a COMPLEX*32: (re,im), with blanks allowed inside the parentheses, (re), or a REAL*16
 *  alone. */
size_t zorvikrt_complex32_from_chars(const char* first, size_t size, zorvikrt_cquad* value,
                                     zorvikrt_reading* reading);

/** The version of this archive, as ZORVIKRT_VERSION_TEXT is that of the headers: "1.0.0". */
const char* zorvikrt_version(void);

#ifdef __cplusplus
}
#endif

#endif
