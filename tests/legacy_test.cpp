// The entries that unmodified Fortran programs call without a form between: on i386 their results
// come as the register holds them, and must be values of their format.

#if defined(__i386__) && !defined(_WIN32)

#include <gtest/gtest.h>

#include <cstring>

#include "support/entry_table.hpp"

namespace {

constexpr std::string_view stored_entries[] = {
#include "stored_entries.inc"
};

TEST(Legacy, EntriesCalledWithoutAFormGiveValuesOfTheirFormat) {
  support::generator random(20260101);
  support::tuple call;
  for (const std::string_view name : stored_entries) {
    const auto all = support::all_entries();
    const auto entry = std::find_if(all.begin(), all.end(),
                                    [&](const auto& candidate) { return name == candidate.name; });
    ASSERT_NE(entry, all.end()) << name;
    for (int i = 0; i < 20000; ++i) {
      support::draw(*entry, random, call);
      const explorer::outcome out = (*entry)({call.operands.data(), entry->codes.size()});
      long double held;
      std::memcpy(&held, out.register_image.data(), out.register_image.size());
      const long double rounded =
          entry->result == 'd' ? static_cast<double>(held) : static_cast<float>(held);
      ASSERT_TRUE(rounded == held || held != held) << name << " in call " << i;
    }
  }
}

}  // namespace

#endif
