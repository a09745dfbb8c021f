// Every processor: loops over the entries.

#define ZRT_LEVEL plain
#include "arrays/entries_model.hpp"
#include "arrays/level.hpp"
