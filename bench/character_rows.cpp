// The character entries by the length of the text, in bytes a second, beside the memory functions
// of the C library.

#include <cstring>
#include <random>

#include "calls.hpp"

namespace bench {
namespace {

struct buffers {
  std::string text, copy, blanks, target;
};

void add_length(std::size_t size, const char* name) {
  auto data = std::make_shared<buffers>();
  std::mt19937 random(21);
  data->text.resize(size);
  for (char& c : data->text) c = "etaoin  "[random() % 8];
  data->copy = data->text;
  data->blanks.assign(size, ' ');
  data->target.resize(size);
  const auto n = static_cast<std::int32_t>(size);
  const auto named = [name](const char* stem) { return std::string(stem) + ' ' + name; };

  add_call(named("casgn"), own, size, [data, n] {
    __zorvik_casgn(data->target.data(), data->text.data(), n, n);
    return data->target[0];
  });
  add_call(named("casgn"), "memcpy", size, [data] {
    std::memcpy(data->target.data(), data->text.data(), data->text.size());
    return data->target[0];
  });
  add_call(named("casgn"), "memmove", size, [data] {
    std::memmove(data->target.data(), data->text.data(), data->text.size());
    return data->target[0];
  });
  add_call(named("cheq"), own, size,
           [data, n] { return __zorvik_cheq(data->text.data(), data->copy.data(), n, n); });
  add_call(named("cheq"), "memcmp", size,
           [data] { return std::memcmp(data->text.data(), data->copy.data(), data->text.size()); });
  add_call(named("cheq padded"), own, size,
           [data, n] { return __zorvik_cheq(data->blanks.data(), data->text.data(), n, 0); });
  add_call(named("len_trim"), own, size,
           [data, n] { return __zorvik_len_trim(data->blanks.data(), n); });
  add_call(named("len_trim"), "memcmp", size,
           [data] { return std::memcmp(data->text.data(), data->copy.data(), data->text.size()); });

  // Texts that are not there, with a first character that is rare, or frequent.
  static constexpr char rare[] = "zone", frequent[] = "notez";
  for (const char* part : {rare, frequent}) {
    const std::string entry = named(part == rare ? "index rare" : "index frequent");
    const std::size_t length = std::strlen(part);
    add_call(entry, own, size, [=] {
      return __zorvik_index(data->text.data(), part, n, static_cast<std::int32_t>(length));
    });
#if defined(__GLIBC__)
    add_call(entry, "memmem", size,
             [=] { return memmem(data->text.data(), data->text.size(), part, length); });
#endif
    add_call("f90_" + entry, own, size, [=] {
      static constexpr std::int32_t back = 1;
      return __zorvik_f90_index(data->text.data(), part, &back, n,
                                static_cast<std::int32_t>(length));
    });
  }
}

const registered character_rows([] {
  add_length(8, "8 B");
  add_length(80, "80 B");
  add_length(4096, "4 KiB");
  add_length(1 << 20, "1 MiB");
});

}  // namespace
}  // namespace bench
