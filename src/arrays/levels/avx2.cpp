// Four lanes with fused operations.

#define ZRT_LEVEL avx2
#define ZRT_WIDTH 4
#define ZRT_FUSED
#include "arrays/lanes_model.hpp"
#include "arrays/quad_circular.hpp"
#include "arrays/real_functions.hpp"
#include "arrays/level.hpp"
