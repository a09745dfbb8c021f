#pragma once

// The functions of other libraries that the page of accuracy shows beside an entry.

#include <functional>
#include <string_view>
#include <vector>

#include "support/entry_table.hpp"

namespace accuracy {

struct peer {
  const char* name;
  std::function<support::operand(const support::operand*)> call;
};

/// Of one entry; the one that the picture shows comes first.
std::vector<peer> peers_of(std::string_view stem);

}  // namespace accuracy
