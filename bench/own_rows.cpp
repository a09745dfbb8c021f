// One row for each function of the list of exports, called by its public declaration.

#include "rows.hpp"
#include "zorvikrt/zorvikrt.h"

namespace bench {

#define BARE(...) __VA_ARGS__
#define ROW(symbol, stem, family, result, codes, samples) \
  add(stem, own, &symbol, codes, std::vector<sample>{BARE samples});
#define ZRT_DATA(...)
#define ZRT_VALUE_ENTRY ROW
#define ZRT_REFERENCE_ENTRY ROW
#define ZRT_PLAIN_ENTRY ROW

static const registered own_rows([] {
#include "entry_table.inc"
});

}  // namespace bench
