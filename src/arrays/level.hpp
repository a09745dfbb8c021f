#pragma once

// The table of a level: on lanes over the model that the translation unit has included before, or
// loops over the entries.

#if defined(ZRT_WIDTH)
#include "arrays/elements.hpp"
#include "arrays/elementwise.hpp"
#include "arrays/extremes.hpp"
#include "arrays/multiply.hpp"
#include "arrays/solve.hpp"
#include "arrays/sums.hpp"
#define ZRT_FUNCTION(name, stem) over_elements<name, scalar::name>
#define ZRT_REAL_FUNCTION(type, stem, name) over_reals<type, name<type>, __zorvik_##stem>,
#else
#include "arrays/entries_loops.hpp"
#define ZRT_FUNCTION(name, stem) over_elements<__zorvik_##stem>
#define ZRT_REAL_FUNCTION(type, stem, name) over_reals<type, __zorvik_##stem>,
#endif
#define ZRT_REAL_OPERATION ZRT_REAL_FUNCTION
#include "arrays/real_elementwise.hpp"

#define ZRT_TEXT_OF(name) #name
#define ZRT_NAME_OF(level) ZRT_TEXT_OF(level)

namespace zrt::arrays::ZRT_LEVEL {
namespace {

template <class T>
constexpr linear_kernels<T> linear = {sum<T>, dot<T>, axpy<T>, scal<T>, multiply<T>, solve<T>};

}  // namespace

const kernels table = {
    ZRT_NAME_OF(ZRT_LEVEL),
    over_elements<sum_of, quad>,
    over_elements<difference_of, quad>,
    over_elements<product_of, quad>,
    over_elements<quotient_of, quad>,
    ZRT_FUNCTION(root, sqrtl),
    ZRT_FUNCTION(exponential, expl),
    ZRT_FUNCTION(logarithm, logl),
    ZRT_FUNCTION(sine, sinl),
    ZRT_FUNCTION(cosine, cosl),
    ZRT_FUNCTION(tangent, tanl),
    ZRT_FUNCTION(arctangent, atanl),
    over_elements<product_of, cquad>,
    over_elements<complex_quotient_of, cquad>,
    linear<quad>,
    linear<cquad>,
    extreme,
#include "arrays/real_kernels.inc"
};

}  // namespace zrt::arrays::ZRT_LEVEL
