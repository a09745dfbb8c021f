#pragma once

// Rows of calls over operands that are drawn beforehand.

#include <array>
#include <cstring>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include "rows.hpp"
#include "support/entry_table.hpp"
#include "zorvikrt/zorvikrt.h"

namespace bench {

using support::sample;

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

// --- How REAL*8 values reach their slots --------------------------------------------------------
// On i386 a compiler copies a REAL*8 operand to the stack as a double, where it has computed it, or
// as two 32-bit words, where it has it from memory. A 64-bit load behind two 32-bit stores waits
// for both of them, so each way has its row.

/// The number of REAL*8 values that an operand consists of; 0 for any other.
template <class A>
inline constexpr int doubles_in = 0;
template <>
inline constexpr int doubles_in<double> = 1;
template <>
inline constexpr int doubles_in<zorvikrt_complex16> = 2;
template <>
inline constexpr int doubles_in<zorvikrt_quad> = 2;
template <>
inline constexpr int doubles_in<zorvikrt_cquad> = 4;

struct word_pair {
  std::uint32_t low, high;
};

/// Slots that take the same room as the operand: `Double` for each REAL*8 of it.
template <class Double, class A>
auto in_slots(const A& operand) {
  if constexpr (doubles_in<A> == 0) {
    return std::tuple<A>(operand);
  } else {
    std::array<Double, doubles_in<A>> slots;
    static_assert(sizeof slots == sizeof operand);
    std::memcpy(&slots, &operand, sizeof slots);
    return std::tuple_cat(slots);
  }
}

/// Adds a row of calls through slots.
template <class R, class... Slots>
void add_calls(std::string entry, std::string subject, R (*function)(Slots...),
               std::vector<std::tuple<Slots...>> calls, double bytes,
               std::shared_ptr<void> memory) {
  rows().push_back({std::move(entry), std::move(subject), bytes,
                    [function, calls = std::move(calls), memory](long count) {
                      // The compiler may not see through the address, nor expand a peer in line.
                      R (*volatile hidden)(Slots...) = function;
                      R (*target)(Slots...) = hidden;
                      const auto* operands = calls.data();
                      for (long i = 0; i < count; ++i) {
                        const auto& set = operands[i % operand_sets];
                        if constexpr (std::is_void_v<R>)
                          std::apply(target, set);
                        else
                          consume(std::apply(target, set));
                      }
                    }});
}

/// The same with each REAL*8 of the operands passed as a `Double`.
template <class Double, class R, class... A>
void add_through_slots(std::string entry, std::string subject, R (*function)(A...),
                       const std::vector<std::tuple<A...>>& calls, double bytes,
                       std::shared_ptr<void> memory) {
  const auto spread = [](const A&... operands) {
    return std::tuple_cat(in_slots<Double>(operands)...);
  };
  using slots = decltype(std::apply(spread, calls.front()));
  std::vector<slots> spread_calls;
  for (const auto& set : calls) spread_calls.push_back(std::apply(spread, set));
  [&]<class... Slots>(std::type_identity<std::tuple<Slots...>>) {
    const auto spread_function =
        reinterpret_cast<R (*)(Slots...)>(reinterpret_cast<void (*)()>(function));
    add_calls(std::move(entry), std::move(subject), spread_function, std::move(spread_calls), bytes,
              std::move(memory));
  }(std::type_identity<slots>{});
}

// --- Rows over random operands ------------------------------------------------------------------

/// Operands of one row and what their addresses point to.
template <class... A>
struct drawn {
  support::workspace room{};
  std::vector<std::vector<support::operand>> operands;
  alignas(16) std::array<unsigned char, 64> result{};
  std::vector<std::tuple<A...>> calls;
};

/// Adds a row that calls `function` over random operands; `codes` and `samples` describe them as
/// the list of exports does. A result address may stand before them.
template <class R, class... A>
void add(const std::string& entry, const std::string& subject, R (*function)(A...),
         std::string_view codes, std::vector<sample> samples, double bytes = 0) {
  auto data = std::make_shared<drawn<A...>>();
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
#if defined(__i386__)
  if constexpr ((doubles_in<A> + ... + 0) > 0) {
    add_through_slots<double>(entry, subject, function, data->calls, bytes, data);
    add_through_slots<word_pair>(entry, subject + pushed, function, data->calls, bytes, data);
    return;
  }
#endif
  add_calls(entry, subject, function, data->calls, bytes, data);
}

/// A peer of an entry, over the entry's own operands.
template <class R, class... A>
void add_peer(std::string entry, std::string subject, R (*function)(A...)) {
  for (const support::entry& e : support::all_entries())
    if (entry == e.name) {
      add(entry, subject, function, e.codes,
          std::vector<sample>(e.samples.begin(),
                              e.samples.begin() + static_cast<long>(e.codes.size())));
      return;
    }
  std::fprintf(stderr, "zorvikrt_bench: %s stands beside %s, which is no entry\n", subject.c_str(),
               entry.c_str());
  std::exit(1);
}

/// Adds a row whose one call is `call()`.
template <class Call>
void add_call(std::string entry, std::string subject, std::size_t bytes, Call call) {
  rows().push_back(
      {std::move(entry), std::move(subject), static_cast<double>(bytes), [call](long calls) {
         for (long i = 0; i < calls; ++i) consume(call());
       }});
}

}  // namespace bench
