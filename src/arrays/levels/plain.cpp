// Every processor: loops over the entries.

#define ZRT_LEVEL plain
#include "arrays/level.hpp"
