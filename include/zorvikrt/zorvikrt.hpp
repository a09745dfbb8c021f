/** REAL*16 and COMPLEX*32 as C++ value types; C++17.
 *
 *      #include <zorvikrt/zorvikrt.hpp>
 *      using namespace zorvikrt::literals;
 *      zorvikrt::real16 x = sqrt(0.1_r16) + 2;
 *      std::cout << std::setprecision(32) << x << '\n';
 *
 *  Every operation is one call of the library's entry that computes it, so results are the
 * library's, special values included: an infinity is unordered to everything, and arithmetic turns
 * it into a NaN. An operand of another type is converted first, exactly, where the library has no
 * entry for it as it is. Reading, writing and numeric text need the library zorvikrt_text as well.
 *
 *  The x87 control word is the one that the library sets when it is loaded (zorvikrt.h).
 */
#ifndef ZORVIKRT_HPP
#define ZORVIKRT_HPP
#include <zorvikrt/arithmetic.hpp>
#include <zorvikrt/complex_functions.hpp>
#include <zorvikrt/composed_functions.hpp>
#include <zorvikrt/functions.hpp>
#include <zorvikrt/limits.hpp>
#include <zorvikrt/text.hpp>
#include <zorvikrt/types.hpp>

#endif
