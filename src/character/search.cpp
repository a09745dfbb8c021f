// INDEX in its two forms, LEN, TRIM, LEN_TRIM, ADJUSTL and ADJUSTR.

#include <algorithm>

#include "character/by_blocks.hpp"
#include "character/strings.hpp"
#include "entries.hpp"

namespace zrt::character {
namespace {

/// Whether what lies between the first and the last character of `part` stands at `place`, too.
bool stands_between(const char* place, const char* part, std::size_t length) {
  return length <= 2 || std::memcmp(place + 1, part + 1, length - 2) == 0;
}
/// Whether `part` stands at `place`, its first character there being found already.
bool stands(const char* place, const char* part, std::size_t length) {
  return place[length - 1] == part[length - 1] && stands_between(place, part, length);
}

/// The first two characters as a number.
std::uint16_t pair(const char* text) { return load<std::uint16_t>(text); }

// The searches below look for a part of at least one character that is not longer than the text,
// and give its place or null. They go from one place of its first character to the next by the byte
// search of the C library, which reads many bytes at once. A call of it costs as much as reading
// about 128 bytes: where `calls` of them in a row have skipped less than that each, the first
// character is frequent, and the rest of the text, as any rest that is not longer, is searched by
// blocks of places; where these hold too many false ones, in a way that takes no more than a few
// steps for each character.

constexpr int calls = 4;
constexpr std::ptrdiff_t worth_call = 128;  // bytes skipped
constexpr std::ptrdiff_t worth_calls = calls * worth_call;

#if defined(__GLIBC__)

const char* last_byte(const char* text, std::size_t count, char byte) {
  return static_cast<const char*>(memrchr(text, byte, count));
}

const char* first_place_of_frequent(const char* text, std::size_t length, const char* part,
                                    std::size_t part_length) {
  return static_cast<const char*>(memmem(text, length, part, part_length));
}

#else

const char* last_byte(const char* text, std::size_t count, char byte) {
  while (count > 0)
    if (text[--count] == byte) return text + count;
  return nullptr;
}

// A part of one character never comes here: its first place ends the search.
const char* first_place_of_frequent(const char* text, std::size_t length, const char* part,
                                    std::size_t part_length) {
  for (const std::uint16_t wanted = pair(part); length >= part_length; ++text, --length)
    if (pair(text) == wanted && stands(text, part, part_length)) return text;
  return nullptr;
}

#endif

const char* last_place_of_frequent(const char* text, std::size_t starts, const char* part,
                                   std::size_t part_length) {
  for (const std::uint16_t wanted = pair(part); starts > 0; --starts) {
    const char* const at = text + starts - 1;
    if (pair(at) == wanted && stands(at, part, part_length)) return at;
  }
  return nullptr;
}

/// A part of at least two characters by blocks, at least one, of places at which its first and last
/// stand. One that is refuted at more than every fourth place is searched for in the other way.
[[gnu::noinline]] const char* first_place_by_blocks(const char* text, std::size_t length,
                                                    const char* part, std::size_t part_length) {
  constexpr std::uint32_t four = 0x01010101;
  const std::uint32_t first = four * static_cast<unsigned char>(part[0]),
                      last = four * static_cast<unsigned char>(part[part_length - 1]);
  const char* const end = text + length - part_length + 1;  // of the places
  const char* at = text;
  for (std::ptrdiff_t misses = 8;;) {
    for (unsigned found = blocks::places_of_both(at, at + part_length - 1, first, last); found != 0;
         found &= found - 1) {
      const char* const place = at + __builtin_ctz(found);
      if (stands_between(place, part, part_length)) return place;
      if (--misses < 0)
        return first_place_of_frequent(
            place + 1, static_cast<std::size_t>(text + length - place) - 1, part, part_length);
    }
    constexpr std::ptrdiff_t size = blocks::size;
    misses += size / 4;
    if (end - at <= size) return nullptr;
    at = end - at < 2 * size ? end - size : at + size;
  }
}

/// Behind the first place of the first character, where the part does not stand.
[[gnu::noinline]] const char* first_place_behind(const char* at, const char* text,
                                                 std::size_t length, const char* part,
                                                 std::size_t part_length) {
  const char* const last_start = text + length - part_length;
  const char* mark = text;
  for (int misses = 1;; ++misses) {
    const std::ptrdiff_t places = last_start - at;  // that are left
    if (places == 0) return nullptr;
    if (misses >= calls || places <= worth_call) {
      const auto rest = static_cast<std::size_t>(text + length - at) - 1;
      if (at - mark >= worth_calls) {
        mark = at;
        misses = 0;
      } else if (places >= static_cast<std::ptrdiff_t>(blocks::size) && sse2_is_usable()) {
        return first_place_by_blocks(at + 1, rest, part, part_length);
      } else if (misses >= calls) {
        return first_place_of_frequent(at + 1, rest, part, part_length);
      }
    }
    at = static_cast<const char*>(std::memchr(at + 1, part[0], static_cast<std::size_t>(places)));
    if (at == nullptr || stands(at, part, part_length)) return at;
  }
}

const char* first_place(const char* text, std::size_t length, const char* part,
                        std::size_t part_length) {
  const auto* at = static_cast<const char*>(std::memchr(text, part[0], length - part_length + 1));
  if (at == nullptr || stands(at, part, part_length)) return at;
  return first_place_behind(at, text, length, part, part_length);
}

const char* last_place(const char* text, std::size_t length, const char* part,
                       std::size_t part_length) {
  std::size_t starts = length - part_length + 1;
  int misses = 0;
  for (const char* mark = text + starts;;) {
    const char* const at = last_byte(text, starts, part[0]);
    if (at == nullptr || stands(at, part, part_length)) return at;
    starts = static_cast<std::size_t>(at - text);
    if (++misses < calls) continue;
    if (mark - at < worth_calls) return last_place_of_frequent(text, starts, part, part_length);
    mark = at;
    misses = 0;
  }
}

/// The position that Fortran counts: from 1, or 0 for none.
std::int32_t position(const char* text, const char* place) {
  return place != nullptr ? static_cast<std::int32_t>(place - text) + 1 : 0;
}

/// An empty part is found at the first position.
std::int32_t index(const char* text, std::int32_t length, const char* part,
                   std::int32_t part_length) {
  if (part_length <= 0) return 1;
  if (part_length > length) return 0;
  return position(text, first_place(text, extent(length), part, extent(part_length)));
}

/// An empty part is found behind the last character.
std::int32_t index_from_back(const char* text, std::int32_t length, const char* part,
                             std::int32_t part_length) {
  if (part_length <= 0) return static_cast<std::int32_t>(extent(length) + 1);
  if (part_length > length) return 0;
  return position(text, last_place(text, extent(length), part, extent(part_length)));
}

/// BACK is true for any word that is not zero, and false where it is absent.
std::int32_t index_either_way(const char* text, std::int32_t length, const char* part,
                              std::int32_t part_length, const std::int32_t* back) {
  return back != nullptr && *back != 0 ? index_from_back(text, length, part, part_length)
                                       : index(text, length, part, part_length);
}

/// Cuts to the target first, then trims: characters beyond the target are not looked at.
std::size_t trim(const char* source, std::size_t source_length, char* target,
                 std::size_t target_length) {
  const std::size_t kept = length_without_trailing(source, std::min(source_length, target_length));
  copy(target, source, kept);
  return kept;
}

void adjust_left(const char* source, char* target, std::size_t length) {
  const std::size_t moved = leading_blanks(source, length);
  copy(target, source + moved, length - moved);
  fill_blanks(target + length - moved, moved);
}

void adjust_right(const char* source, char* target, std::size_t length) {
  const std::size_t kept = length_without_trailing(source, length);
  copy(target + length - kept, source, kept);
  fill_blanks(target, length - kept);
}

}  // namespace
}  // namespace zrt::character

using namespace zrt::character;

ZRT_VALUE(std::int32_t, index)
(const char* str, const char* sub, std::int32_t strlen, std::int32_t sublen) {
  return index(str, strlen, sub, sublen);
}
ZRT_VALUE(std::int32_t, f90_index)
(const char* str, const char* sub, const std::int32_t* back, std::int32_t strlen,
 std::int32_t sublen) {
  return index_either_way(str, strlen, sub, sublen, back);
}
ZRT_VALUE(std::int64_t, f90_index_8)
(const char* str, const char* sub, const std::int32_t* back, std::int32_t strlen,
 std::int32_t sublen) {
  return index_either_way(str, strlen, sub, sublen, back);
}

ZRT_VALUE(std::int32_t, len)(const char*, std::int32_t strlen) { return strlen; }
ZRT_ENTRY_OF_LENGTH(len_trim, blocks::length_by_blocks, length_without_trailing)
ZRT_VALUE(std::int32_t, trim)
(const char* src, char* dst, std::int32_t srclen, std::int32_t dstlen) {
  return static_cast<std::int32_t>(trim(src, extent(srclen), dst, extent(dstlen)));
}

ZRT_VALUE(std::int32_t, adjustl)(const char* src, char* dst, std::int32_t len) {
  adjust_left(src, dst, extent(len));
  return len;
}
ZRT_VALUE(std::int32_t, adjustr)(const char* src, char* dst, std::int32_t len) {
  adjust_right(src, dst, extent(len));
  return len;
}
