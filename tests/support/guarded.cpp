#include "support/guarded.hpp"

#include <new>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace support {
namespace {

#if defined(_WIN32)

std::size_t page_size() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
}
char* reserve(std::size_t size) {
  return static_cast<char*>(VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS));
}
bool open(char* from, std::size_t size) {
  return VirtualAlloc(from, size, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}
void release(char* mapped, std::size_t) { VirtualFree(mapped, 0, MEM_RELEASE); }

#else

std::size_t page_size() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }
char* reserve(std::size_t size) {
  void* const mapped = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return mapped == MAP_FAILED ? nullptr : static_cast<char*>(mapped);
}
bool open(char* from, std::size_t size) {
  return mprotect(from, size, PROT_READ | PROT_WRITE) == 0;
}
void release(char* mapped, std::size_t size) { munmap(mapped, size); }

#endif

}  // namespace

guarded::guarded(std::size_t capacity)
    : page_(page_size()),
      size_((capacity + page_ - 1) / page_ * page_),
      mapped_(reserve(size_ + 2 * page_)) {
  if (mapped_ == nullptr || !open(begin(), size_)) throw std::bad_alloc();
}

guarded::~guarded() { release(mapped_, size_ + 2 * page_); }

}  // namespace support
