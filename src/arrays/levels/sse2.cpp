// Two lanes, products by Dekker.

#define ZRT_LEVEL sse2
#define ZRT_WIDTH 2
#include "arrays/lanes_model.hpp"
#include "arrays/quad_circular.hpp"
#include "arrays/real_functions.hpp"
#include "arrays/level.hpp"
