// One row for each function of the list of exports, called by its public declaration, and beside it
// the same entry of another build of the library.

#include "calls.hpp"

namespace bench {

template <class Function>
static void add_own(const char* symbol, const char* stem, Function function, std::string_view codes,
                    const std::vector<sample>& samples) {
  add(stem, own, function, codes, samples);
  if (void* const theirs = other_entry(symbol))
    add(stem, other, reinterpret_cast<Function>(theirs), codes, samples);
}

#define BARE(...) __VA_ARGS__
#define ROW(symbol, stem, family, result, codes, samples) \
  add_own(#symbol, stem, &symbol, codes, std::vector<sample>{BARE samples});
#define ZRT_DATA(...)
#define ZRT_VALUE_ENTRY ROW
#define ZRT_REFERENCE_ENTRY ROW
#define ZRT_PLAIN_ENTRY ROW

static const registered own_rows([] {
#include "entry_table.inc"
});

}  // namespace bench
