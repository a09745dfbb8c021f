// Reading and writing memory at a numeric address, of any alignment. A bad address faults.

#include <cstring>

#include "entries.hpp"
#include "integer/kinds.hpp"

namespace zrt::integer {
namespace {

template <class Kind>
Kind read(std::uintptr_t address) {
  Kind value;
  std::memcpy(&value, reinterpret_cast<const void*>(address), sizeof value);
  return value;
}

template <class Kind>
void write(std::uintptr_t address, Kind value) {
  std::memcpy(reinterpret_cast<void*>(address), &value, sizeof value);
}

}  // namespace
}  // namespace zrt::integer

using namespace zrt::integer;

ZRT_VALUE(std::int32_t, byte)(std::uintptr_t addr) { return read<integer1>(addr); }
ZRT_VALUE(std::int32_t, word)(std::uintptr_t addr) { return read<integer2>(addr); }
ZRT_VALUE(std::int32_t, long)(std::uintptr_t addr) { return read<integer4>(addr); }

ZRT_VALUE(void, wbyte)(std::uintptr_t addr, std::int32_t value) {
  write(addr, low<integer1>(value));
}
ZRT_VALUE(void, wword)(std::uintptr_t addr, std::int32_t value) {
  write(addr, low<integer2>(value));
}
ZRT_VALUE(void, wlong)(std::uintptr_t addr, std::int32_t value) { write(addr, value); }
