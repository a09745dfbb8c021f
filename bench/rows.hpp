#pragma once

// A benchmark row: one function over a set of operands. Rows of the library come from the list of
// exports; a peer's row names the entry it stands beside.

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/entry_table.hpp"

namespace bench {

using support::sample;

struct row {
  std::string entry;    // stem, with I_ for a reference entry
  std::string subject;  // "zorvikrt", or the peer's name
  double bytes = 0;     // that one call works through, where a rate is wanted
  std::function<void(long calls)> run;
};

std::vector<row>& rows();

inline constexpr const char* own = "zorvikrt";
inline constexpr int operand_sets = 256;

/// Keeps a result alive, at the price of one store.
template <class T>
[[gnu::always_inline]] inline void consume(const T& value) {
  asm volatile("" : : "m"(value));
}

/// An operand as a function takes it by value. A peer with a format of its own gives its
/// conversion.
template <class A>
struct by_value {
  static A from(const support::operand& operand) {
    A value;
    static_assert(sizeof value <= sizeof operand.bytes);
    std::memcpy(&value, operand.bytes.data(), sizeof value);
    return value;
  }
};

/// One operand as the function takes it: the value, or for an operand by address where it lies.
template <class A>
A argument(char code, support::operand& operand, bool by_address) {
  if constexpr (std::is_pointer_v<A>)
    if (by_address && !support::same_in_both_forms(code))
      return reinterpret_cast<A>(operand.bytes.data());
  return by_value<A>::from(operand);
}

/// Adds a row that calls `function` over random operands; `codes` and `samples` describe them as
/// the list of exports does. A result address may stand before them.
template <class R, class... A>
void add(std::string entry, std::string subject, R (*function)(A...), std::string_view codes,
         std::vector<sample> samples, double bytes = 0) {
  struct memory {
    support::workspace room{};
    std::vector<std::vector<support::operand>> operands;
    alignas(16) std::array<unsigned char, 64> result{};
    std::vector<std::tuple<A...>> calls;
  };
  auto data = std::make_shared<memory>();
  samples.resize(codes.size());
  const std::size_t leading = sizeof...(A) - codes.size();
  const bool by_address = entry.starts_with("I_");
  support::generator random(20);
  for (auto& text : data->room.text)
    for (char& c : text) c = "etaoin  "[random() % 8];
  for (auto& value : data->room.integers) value = static_cast<std::int32_t>(random() % 8);
  for (auto& value : data->room.table) value = 1.0 / (1 + random() % 9);
  data->operands.resize(operand_sets);
  for (auto& set : data->operands) {
    set.resize(codes.size() + 1);
    void* result = data->result.data();
    if (leading == 1) std::memcpy(set.back().bytes.data(), &result, sizeof result);
    for (std::size_t i = 0; i < codes.size(); ++i) {
      set[i] = support::draw(codes[i], samples[i], support::spread::sampled, random, data->room);
      if (codes[i] == 'b' || codes[i] == 'w') {  // in a slot: sign-extended
        const std::int32_t slot =
            codes[i] == 'b' ? static_cast<std::int8_t>(set[i].bytes[0])
                            : static_cast<std::int16_t>(set[i].bytes[0] | set[i].bytes[1] << 8);
        std::memcpy(set[i].bytes.data(), &slot, sizeof slot);
      }
    }
    const auto make = [&]<std::size_t... I>(std::index_sequence<I...>) {
      return std::tuple<A...>{
          (I < leading ? argument<A>('A', set.back(), false)
                       : argument<A>(codes[I - leading], set[I - leading], by_address))...};
    };
    data->calls.push_back(make(std::index_sequence_for<A...>{}));
  }
  rows().push_back({std::move(entry), std::move(subject), bytes, [data, function](long calls) {
                      // The compiler may not see through the address, nor expand a peer in line.
                      R (*volatile hidden)(A...) = function;
                      R (*target)(A...) = hidden;
                      const auto* operands = data->calls.data();
                      for (long i = 0; i < calls; ++i) {
                        const auto& set = operands[i % operand_sets];
                        if constexpr (std::is_void_v<R>)
                          std::apply(target, set);
                        else
                          consume(std::apply(target, set));
                      }
                    }});
}

/// A peer of an entry, over the entry's own operands.
template <class R, class... A>
void add_peer(std::string entry, std::string subject, R (*function)(A...)) {
  for (const support::entry& e : support::all_entries())
    if (entry == e.name) {
      add(std::move(entry), std::move(subject), function, e.codes,
          std::vector<sample>(e.samples.begin(),
                              e.samples.begin() + static_cast<long>(e.codes.size())));
      return;
    }
}

/// Peers register themselves: a file of peers has one object of this type for each group.
struct registered {
  explicit registered(void (*add_rows)());
};
std::vector<void (*)()>& registrations();

/// What a measurement gives.
struct figures {
  double nanoseconds, cycles;
};

/// Measures every row; defined by the driver.
std::vector<figures> measure(const std::vector<row>& chosen);

}  // namespace bench
