#pragma once

// The table of a level, over the model that the translation unit has included before.

#include "arrays/elements.hpp"
#include "arrays/elementwise.hpp"
#include "arrays/extremes.hpp"
#include "arrays/multiply.hpp"
#include "arrays/real_elementwise.hpp"
#include "arrays/solve.hpp"
#include "arrays/sums.hpp"

#if defined(ZRT_WIDTH)
#define ZRT_REAL_FUNCTION(type, stem, name) over_reals<type, name<type>, __zorvik_##stem>,
#else
#define ZRT_REAL_FUNCTION(type, stem, name) over_reals<type, __zorvik_##stem>,
#endif
#define ZRT_REAL_OPERATION ZRT_REAL_FUNCTION

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
    over_elements<root, scalar::root>,
    over_elements<exponential, scalar::exponential>,
    over_elements<logarithm, scalar::logarithm>,
    over_elements<sine, scalar::sine>,
    over_elements<cosine, scalar::cosine>,
    over_elements<tangent, scalar::tangent>,
    over_elements<arctangent, scalar::arctangent>,
    over_elements<product_of, cquad>,
    over_elements<complex_quotient_of, cquad>,
    linear<quad>,
    linear<cquad>,
    extreme,
#include "arrays/real_kernels.inc"
};

}  // namespace zrt::arrays::ZRT_LEVEL
