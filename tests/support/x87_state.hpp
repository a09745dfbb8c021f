#pragma once

// The x87 state of the test thread.

#include <cstdint>

namespace support {

inline std::uint16_t control_word() {
  std::uint16_t word;
  asm volatile("fnstcw %0" : "=m"(word));
  return word;
}

inline void set_control_word(std::uint16_t word) { asm volatile("fldcw %0" : : "m"(word)); }

/// Runs what follows under another control word.
class under_word {
 public:
  explicit under_word(std::uint16_t word) : callers_(control_word()) { set_control_word(word); }
  ~under_word() { set_control_word(callers_); }
  under_word(const under_word&) = delete;
  under_word& operator=(const under_word&) = delete;

 private:
  std::uint16_t callers_;
};

inline void clear_flags() { asm volatile("fnclex"); }

/// Sticky exception flags: invalid, denormal, zero divide, overflow, underflow, inexact.
enum flag : unsigned { IE = 1, DE = 2, ZE = 4, OE = 8, UE = 16, PE = 32 };

inline unsigned flags() {
  std::uint16_t status;
  asm volatile("fnstsw %0" : "=a"(status));
  return status & 0x3Fu;
}

/// The flags that a call raises.
template <class Call>
unsigned flags_of(Call call) {
  clear_flags();
  call();
  return flags();
}

}  // namespace support
