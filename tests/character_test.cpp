// The character families against byte loops, with every operand against a protected page.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "entries.hpp"
#include "support/guarded.hpp"

using support::guarded;

namespace {

using std::string;

constexpr std::int32_t yes = 1, no = 0, odd_yes = -1;

std::int32_t length_of(const string& text) { return static_cast<std::int32_t>(text.size()); }

/// A string with runs: of blanks, of one letter, of bytes beside the blank and at the ends of the
/// range.
string some_text(std::mt19937& random, std::size_t longest) {
  static constexpr char bytes[] = {' ', ' ', 'a', 'a', 'b', '!', '\x1F', '\0', '\x80', '\xFF'};
  string text;
  const std::size_t length = random() % 3 != 0 ? random() % 20 : random() % (longest + 1);
  while (text.size() < length)
    text.append(std::min<std::size_t>(length - text.size(), random() % 4 == 0 ? random() % 300 : 1),
                bytes[random() % sizeof bytes]);
  return text;
}

string padded(const string& text, std::size_t length) {
  string result = text.substr(0, length);
  result.resize(length, ' ');
  return result;
}

string trimmed(string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

/// -1, 0 or 1 as the padded a sorts before, with or after the padded b.
int order(const string& a, const string& b) {
  const std::size_t length = std::max(a.size(), b.size());
  const string left = padded(a, length), right = padded(b, length);
  for (std::size_t i = 0; i < length; ++i)
    if (left[i] != right[i])
      return static_cast<unsigned char>(left[i]) < static_cast<unsigned char>(right[i]) ? -1 : 1;
  return 0;
}

/// Two operands and a target, each in memory of its own.
struct places {
  guarded first{4096}, second{4096}, target{4096};
};

}  // namespace

TEST(Comparison, PadsWithBlanks) {
  places room;
  std::mt19937 random(71);
  for (int i = 0; i < 60000; ++i) {
    string a = some_text(random, 700), b = some_text(random, 700);
    if (random() % 2 != 0) b = a.substr(0, random() % (a.size() + 1)) + some_text(random, 300);
    if (random() % 4 == 0) b = padded(a, a.size() + random() % 600);
    const bool at_end = i % 2 != 0;
    const char* p = room.first.place(a, at_end);
    const char* q = room.second.place(b, at_end);
    const std::int32_t m = length_of(a), n = length_of(b);
    const int expected = order(a, b);
    ASSERT_EQ(__zorvik_lge(p, q, m, n), expected >= 0) << a << '|' << b;
    ASSERT_EQ(__zorvik_lgt(p, q, m, n), expected > 0) << a << '|' << b;
    ASSERT_EQ(__zorvik_lle(p, q, m, n), expected <= 0) << a << '|' << b;
    ASSERT_EQ(__zorvik_llt(p, q, m, n), expected < 0) << a << '|' << b;
    ASSERT_EQ(__zorvik_cheq(p, q, m, n), expected == 0) << a << '|' << b;
    ASSERT_EQ(__zorvik_chne(p, q, m, n), expected != 0) << a << '|' << b;
  }
  EXPECT_EQ(__zorvik_lgt("abc", "abc\x01", 3, 4), 1) << "a control character is below the blank";
  EXPECT_EQ(__zorvik_llt("abc \x01", "abc", 5, 3), 1);
  EXPECT_EQ(__zorvik_cheq("abc", "   ", -1, 3), 1) << "a negative length counts as 0";
}

// Of every length that a way of its own takes, against a page without access.
TEST(Comparison, SeesEveryByte) {
  places room;
  for (std::size_t length = 1; length <= 270; ++length) {
    const string blanks(length, ' ');
    const auto n = static_cast<std::int32_t>(length);
    for (const bool at_end : {false, true}) {
      const char* p = room.first.place(blanks, at_end);
      char* q = room.second.place(blanks, at_end);
      ASSERT_EQ(__zorvik_cheq(p, q, n, n), 1);
      ASSERT_EQ(__zorvik_chne(p, q, n, n), 0);
      ASSERT_EQ(__zorvik_len_trim(q, n), 0);
      for (std::size_t i = 0; i < length; ++i) {
        q[i] = 'a';
        ASSERT_EQ(__zorvik_cheq(p, q, n, n), 0) << i << " of " << n;
        ASSERT_EQ(__zorvik_chne(p, q, n, n), 1) << i << " of " << n;
        ASSERT_EQ(__zorvik_llt(p, q, n, n), 1) << i << " of " << n;
        ASSERT_EQ(__zorvik_len_trim(q, n), static_cast<std::int32_t>(i + 1)) << n;
        q[i] = ' ';
      }
    }
  }
}

TEST(Search, FindsTheFirstAndTheLastPlace) {
  places room;
  std::mt19937 random(72);
  for (int i = 0; i < 60000; ++i) {
    const string text = some_text(random, 900);
    string part = some_text(random, 300).substr(0, random() % 8 != 0 ? random() % 4 : 300);
    if (random() % 2 != 0 && !text.empty()) {
      const std::size_t from = random() % text.size();
      part = text.substr(from, random() % 2 != 0 ? 1 + random() % 6 : random() % 200);
    }
    const bool at_end = i % 2 != 0;
    const char* p = room.first.place(text, at_end);
    const char* q = room.second.place(part, at_end);
    const std::int32_t n = length_of(text), m = length_of(part);
    // npos + 1 is 0.
    const auto first = static_cast<std::int32_t>(text.find(part) + 1);
    const auto last = static_cast<std::int32_t>(text.rfind(part) + 1);
    ASSERT_EQ(__zorvik_index(p, q, n, m), first) << text << '|' << part;
    ASSERT_EQ(__zorvik_f90_index(p, q, nullptr, n, m), first);
    ASSERT_EQ(__zorvik_f90_index(p, q, &no, n, m), first);
    ASSERT_EQ(__zorvik_f90_index(p, q, &yes, n, m), last) << text << '|' << part;
    ASSERT_EQ(__zorvik_f90_index_8(p, q, &odd_yes, n, m), last);
  }
}

// The first character of the part is everywhere, then nowhere, then everywhere again.
TEST(Search, ChangesItsMethodOnTheWay) {
  for (const std::size_t gap : {1, 100, 127, 128, 129, 1000})
    for (const std::size_t count : {1, 3, 4, 5, 40}) {
      string text;
      for (std::size_t i = 0; i < count; ++i) text += 'x' + string(gap - 1, '.');
      text += string(500, 'x') + "xyz" + string(3000, '-') + "xyz";
      guarded memory(text.size());
      for (const bool at_end : {false, true}) {
        const char* p = memory.place(text, at_end);
        const auto expected = static_cast<std::int32_t>(text.find("xyz")) + 1;
        EXPECT_EQ(__zorvik_index(p, "xyz", length_of(text), 3), expected) << gap << ' ' << count;
        EXPECT_EQ(__zorvik_index(p, "xyw", length_of(text), 3), 0);
        EXPECT_EQ(__zorvik_f90_index(p, "xyz", &yes, length_of(text), 3), length_of(text) - 2);
      }
    }
}

TEST(Search, CountsAnEmptyPartAndNegativeLengths) {
  EXPECT_EQ(__zorvik_index("hello", "", 5, 0), 1);
  EXPECT_EQ(__zorvik_f90_index("hello", "", &yes, 5, 0), 6);
  EXPECT_EQ(__zorvik_index("", "", 0, 0), 1);
  EXPECT_EQ(__zorvik_f90_index("", "", &yes, 0, 0), 1);
  EXPECT_EQ(__zorvik_f90_index("hello", "h", &yes, -5, -1), 1);
  EXPECT_EQ(__zorvik_index("hello", "h", -5, 1), 0);
  EXPECT_EQ(__zorvik_index("hello", "h", -5, -1), 1);
  EXPECT_EQ(__zorvik_len(nullptr, 7), 7);
  EXPECT_EQ(__zorvik_len_trim("a", -1), 0);
}

TEST(Trim, TakesTrailingBlanksOff) {
  places room;
  std::mt19937 random(73);
  for (int i = 0; i < 60000; ++i) {
    const string text = padded(some_text(random, 700), random() % 1200);
    const string before(random() % 1300, '#');
    const bool at_end = i % 2 != 0;
    const char* source = room.first.place(text, at_end);
    char* target = room.target.place(before, at_end);
    const std::int32_t length = length_of(text);
    ASSERT_EQ(__zorvik_len_trim(source, length), length_of(trimmed(text))) << text;
    const string kept = trimmed(text.substr(0, before.size()));
    ASSERT_EQ(__zorvik_trim(source, target, length, length_of(before)), length_of(kept));
    ASSERT_EQ(string(target, before.size()), kept + before.substr(kept.size()));
  }
}

TEST(Adjust, MovesBlanksToTheOtherSide) {
  places room;
  std::mt19937 random(74);
  for (int i = 0; i < 60000; ++i) {
    const string text = string(random() % 2 * (random() % 400), ' ') +
                        padded(some_text(random, 300), random() % 600);
    const std::int32_t length = length_of(text);
    const std::size_t leading = std::min(text.find_first_not_of(' '), text.size());
    const string left = text.substr(leading) + string(leading, ' ');
    const string end = trimmed(text), right = string(text.size() - end.size(), ' ') + end;
    const bool at_end = i % 2 != 0, in_place = i % 4 >= 2;
    for (const bool to_left : {true, false}) {
      char* source = room.first.place(text, at_end);
      char* target = in_place ? source : room.target.place(string(text.size(), '#'), at_end);
      const auto adjust = to_left ? __zorvik_adjustl : __zorvik_adjustr;
      ASSERT_EQ(adjust(source, target, length), length);
      ASSERT_EQ(string(target, text.size()), to_left ? left : right) << text;
    }
  }
}

TEST(Assignment, CutsAndPads) {
  places room;
  std::mt19937 random(75);
  for (int i = 0; i < 60000; ++i) {
    const string text = some_text(random, 700);
    const string before(random() % 3 != 0 ? random() % 40 : random() % 1000, '#');
    const bool at_end = i % 2 != 0;
    const char* source = room.first.place(text, at_end);
    char* target = room.target.place(before, at_end);
    __zorvik_casgn(target, source, length_of(before), length_of(text));
    ASSERT_EQ(string(target, before.size()), padded(text, before.size()));
    target = room.target.place('#' + before, at_end) + 1;
    __zorvik_strcasgn(target, source, length_of(before), length_of(text));
    ASSERT_EQ(string(target, before.size()), padded(text, before.size()));
    ASSERT_EQ(target[-1], static_cast<char>(std::min(text.size(), before.size())));
  }
}

TEST(Assignment, OverlapsInAnyWay) {
  std::mt19937 random(76);
  for (int i = 0; i < 60000; ++i) {
    string memory(200, '\0');
    for (char& c : memory) c = static_cast<char>('a' + random() % 26);
    const std::size_t to = 1 + random() % 100, from = random() % 100;
    const std::size_t target_length = random() % 99, source_length = random() % 99;
    string expected = memory;
    expected.replace(to, target_length, padded(memory.substr(from, source_length), target_length));
    string assigned = memory;
    __zorvik_casgn(&assigned[to], &assigned[from], static_cast<std::int32_t>(target_length),
                   static_cast<std::int32_t>(source_length));
    ASSERT_EQ(assigned, expected) << to << ' ' << from << ' ' << target_length << ' '
                                  << source_length;
    // The counting byte goes in first: it may be read as part of the source.
    string counted = memory;
    counted[to - 1] = static_cast<char>(std::min(target_length, source_length));
    expected = counted;
    expected.replace(to, target_length, padded(counted.substr(from, source_length), target_length));
    assigned = memory;
    __zorvik_strcasgn(&assigned[to], &assigned[from], static_cast<std::int32_t>(target_length),
                      static_cast<std::int32_t>(source_length));
    ASSERT_EQ(assigned, expected) << to << ' ' << from << ' ' << target_length << ' '
                                  << source_length;
  }
}

TEST(Assignment, CountsTheCharactersModulo256) {
  string memory(400, '#');
  const string text(300, 'x');
  __zorvik_strcasgn(&memory[1], text.data(), 300, 300);
  EXPECT_EQ(memory[0], static_cast<char>(300 - 256));
  __zorvik_strcasgn(&memory[1], text.data(), 300, -3);
  EXPECT_EQ(memory[0], 0);
  EXPECT_EQ(memory.substr(1), string(300, ' ') + string(99, '#'));
  __zorvik_casgn(&memory[1], text.data(), -3, 300);
  EXPECT_EQ(memory[1], ' ');
}

TEST(Builders, StoreWhatFits) {
  places room;
  std::mt19937 random(77);
  for (int i = 0; i < 60000; ++i) {
    const string a = some_text(random, 300), b = some_text(random, 300);
    const string before(random() % 3 != 0 ? random() % 40 : random() % 900, '#');
    const bool at_end = i % 2 != 0;
    const char* p = room.first.place(a, at_end);
    const char* q = room.second.place(b, at_end);
    char* target = room.target.place(before, at_end);
    const string joined = (a + b).substr(0, before.size());
    ASSERT_EQ(__zorvik_con(p, q, target, length_of(a), length_of(b), length_of(before)),
              length_of(joined));
    ASSERT_EQ(string(target, before.size()), joined + before.substr(joined.size()));

    target = room.target.place(before, at_end);
    const auto copies = static_cast<std::int32_t>(random() % 60) - 3;
    string repeated;
    for (std::int32_t k = 0; k < copies && repeated.size() + a.size() <= before.size(); ++k)
      repeated += a;
    ASSERT_EQ(__zorvik_repeat(p, copies, target, length_of(a), length_of(before)),
              copies < 0 ? copies * length_of(a) : length_of(repeated));
    ASSERT_EQ(string(target, before.size()), repeated + before.substr(repeated.size()));
  }
}

TEST(Builders, NeverWrapALength) {
  char target[8] = "#######";
  EXPECT_EQ(__zorvik_repeat("ab", INT32_MAX, target, 2, 7), 6);
  EXPECT_STREQ(target, "ababab#");
  EXPECT_EQ(__zorvik_repeat("abcdefgh", 1 << 29, target, 8, 7), 0) << "2**32 characters do not fit";
  EXPECT_EQ(__zorvik_repeat("abc", INT32_MIN, target, 3, 7), INT32_MIN);
  EXPECT_EQ(__zorvik_repeat("ab", 3, target, -2, 7), 0);
  EXPECT_EQ(__zorvik_con("ab", "", target, 2, -1, 7), 2);
  EXPECT_EQ(__zorvik_con("ab", "cd", target, INT32_MAX, INT32_MAX, 2), 2);
  EXPECT_STREQ(target, "ababab#");
}

TEST(Characters, ConvertByTheByte) {
  char target[2] = {'#', '#'};
  EXPECT_EQ(__zorvik_char(0x141, target), 1);
  EXPECT_EQ(target[0], 'A');
  EXPECT_EQ(target[1], '#');
  EXPECT_EQ(__zorvik_ichar("\xE9"), -23);
}
