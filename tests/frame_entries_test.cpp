// Every entry of the list, called as compiled code calls it.

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <vector>

#include "support/entry_table.hpp"
#include "support/raw_call.hpp"
#include "support/x87_state.hpp"

using namespace support;

namespace {

/// Operands from the samples, addresses into memory of its own.
class call_room {
 public:
  workspace room;
  std::vector<operand> operands;

  call_room(const entry& e, generator& random) {
    fill(room, random);
    for (auto& value : room.integers) value = static_cast<std::int32_t>(random.below(8));
    for (std::size_t i = 0; i < e.codes.size(); ++i)
      operands.push_back(draw(e.codes[i], e.samples[i], spread::sampled, random, room));
  }
};

}  // namespace

TEST(EveryEntry, StandsOnceInTheTable) {
  std::map<std::string, int> seen;
  for (const entry& e : all_entries()) EXPECT_EQ(++seen[e.name], 1) << e.name;
  EXPECT_GT(seen.size(), 40u);
}

#if defined(__i386__)

namespace {

constexpr std::uint32_t guard = 0xA5C3E187;

/// The slots of a call: values sign-extended and copied for a value entry, addresses otherwise.
std::vector<std::uint32_t> slots_of(const entry& e, call_room& call, std::uint32_t* area) {
  std::vector<std::uint32_t> slots;
  const auto push = [&](const void* p) {
    slots.push_back(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(p)));
  };
  if (e.result_at_address()) push(area);
  for (std::size_t i = 0; i < e.codes.size(); ++i) {
    const char code = e.codes[i];
    unsigned char* bytes = call.operands[i].bytes.data();
    if (e.kind == form::reference && !same_in_both_forms(code)) {
      push(bytes);
    } else if (code == 'b') {
      slots.push_back(static_cast<std::uint32_t>(static_cast<std::int8_t>(bytes[0])));
    } else if (code == 'w') {
      std::int16_t value;
      std::memcpy(&value, bytes, 2);
      slots.push_back(static_cast<std::uint32_t>(value));
    } else {
      for (int at = 0; at < size_of(code); at += 4) {
        std::uint32_t word;
        std::memcpy(&word, bytes + at, 4);
        slots.push_back(word);
      }
    }
  }
  return slots;
}

/// The part of a result that its type covers.
struct observed {
  image80 real;
  std::uint32_t low = 0, high = 0;
  std::array<std::uint32_t, 8> area{};
  std::array<char, 64> target{};
  bool operator==(const observed&) const = default;
};

observed call_and_check(const entry& e, call_room& call, int offset, bool in_place = false) {
  // The result area stands between guards; in place, it is the first operand.
  std::array<std::uint32_t, 24> memory;
  memory.fill(guard);
  std::uint32_t* area = memory.data() + 8;
  if (in_place) area = reinterpret_cast<std::uint32_t*>(call.operands[0].bytes.data());
  const std::vector<std::uint32_t> slots = slots_of(e, call, area);
  const std::uint16_t word = control_word();
  const raw_result result = raw_call(e.address, slots, offset);

  EXPECT_EQ(result.control_word & 0x0F3F, word & 0x0F3F) << e.name;
  EXPECT_TRUE(result.registers_kept) << e.name;
  EXPECT_EQ(result.depth, e.result == 'f' || e.result == 'd' ? 1 : 0) << e.name;

  observed seen;
  seen.target = call.room.target;
  if (e.result == 'f' || e.result == 'd') seen.real = result.st0;
  if (std::strchr("bwikuc", e.result)) seen.low = result.eax;
  if (std::strchr("kuc", e.result)) seen.high = result.edx;
  if (e.result_at_address()) {
    EXPECT_EQ(result.eax, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(area)))
        << e.name;
    const int words = size_of(e.result) / 4;
    std::memcpy(seen.area.data(), area, static_cast<std::size_t>(words) * 4);
    if (!in_place) {
      for (int i = 0; i < 24; ++i) {
        const std::uint32_t beside =
            i < 8 || i >= 8 + words ? memory[static_cast<std::size_t>(i)] : guard;
        EXPECT_EQ(beside, guard) << e.name << " wrote beside its result";
      }
    }
  }
  if (e.result == 'b') {
    EXPECT_EQ(static_cast<std::int32_t>(seen.low), static_cast<std::int8_t>(seen.low)) << e.name;
  } else if (e.result == 'w') {
    EXPECT_EQ(static_cast<std::int32_t>(seen.low), static_cast<std::int16_t>(seen.low)) << e.name;
  }
  return seen;
}

const entry* value_entry_of(const entry& reference) {
  // The table keeps a reference entry behind its value entry.
  const entry* e = &reference;
  while (e->kind == form::reference) --e;
  return e;
}

}  // namespace

TEST(EveryEntry, KeepsTheCallersStateOnAStackAlignedToFourBytes) {
  generator random(1);
  for (const entry& e : all_entries())
    for (int round = 0; round < 64; ++round) {
      call_room call(e, random);
      call_and_check(e, call, 4 * (round % 4));
    }
}

TEST(EveryEntry, KeepsTheCallersStateForSpecialValues) {
  const std::uint64_t specials[] = {0,
                                    0x8000000000000000,
                                    0x7FF0000000000000,
                                    0xFFF0000000000000,
                                    0x7FF8000000000000,
                                    0xFFF8000000001234,
                                    0x7FF4000000000000,
                                    1,
                                    0x7FEFFFFFFFFFFFFF,
                                    0x7F8000007F800000,
                                    0x7FA000007FA00000,
                                    0xFFFFFFFFFFFFFFFF};
  generator random(2);
  for (const entry& e : all_entries())
    for (int round = 0; round < 200; ++round) {
      call_room call(e, random);
      for (std::size_t i = 0; i < e.codes.size(); ++i) {
        const char code = e.codes[i];
        if (!std::strchr("fdczqxku", code)) continue;
        for (int at = 0; at < size_of(code); at += 8) {
          const std::uint64_t special = specials[random() % std::size(specials)];
          std::memcpy(call.operands[i].bytes.data() + at, &special,
                      static_cast<std::size_t>(std::min(8, size_of(code))));
        }
      }
      call_and_check(e, call, 4 * (round % 4));
    }
}

TEST(EveryEntry, GivesTheSameInBothForms) {
  generator random(3);
  for (const entry& e : all_entries()) {
    if (e.kind != form::reference || e.codes.find('m') != std::string_view::npos) continue;
    const entry& value = *value_entry_of(e);
    for (int round = 0; round < 64; ++round) {
      call_room call(e, random);
      const observed by_value = call_and_check(value, call, 12);
      EXPECT_EQ(call_and_check(e, call, 4), by_value) << e.name;
      if (!e.result_at_address() || size_of(e.codes[0]) < size_of(e.result)) continue;
      EXPECT_EQ(call_and_check(e, call, 0, true), by_value) << e.name << " in place";
    }
  }
}

TEST(ReferenceEntries, QuietASignallingReal8AndLeaveNoTraceOnItsVariable) {
  const std::uint64_t signalling = 0x7FF4000000000123;
  operand x;
  std::memcpy(x.bytes.data(), &signalling, 8);
  const std::uint32_t address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&x));
  for (const entry& e : all_entries()) {
    if (e.kind != form::reference || e.codes != "d" || e.result != 'd') continue;
    const raw_result result = raw_call(e.address, std::array{address}, 4);
    EXPECT_TRUE(result.flags & IE) << e.name;
    std::uint64_t after;
    std::memcpy(&after, x.bytes.data(), 8);
    EXPECT_EQ(after, signalling) << e.name;
    if (std::strcmp(e.name, "I_dint") == 0) {
      EXPECT_EQ(result.st0.significand, 0xE000000000091800u);
    }
  }
}

#else

#include "entries.hpp"

TEST(ReferenceEntries, GiveWhatTheValueEntriesGive) {
  using reference = double (*)(const double*, const double*);
  for (const entry& e : all_entries()) {
    if (std::strcmp(e.name, "I_dmod") != 0) continue;
    const double a = 5.5, p = 3.0;
    EXPECT_EQ(reinterpret_cast<reference>(e.address)(&a, &p), __zorvik_dmod(a, p));
    return;
  }
  FAIL() << "I_dmod is not in the table";
}

#endif
