#include "app/notes/notes_text.h"

#include <gmock/gmock.h>

namespace zelvane::NotesText {
namespace {

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

TEST(Clean, MakesOneShortLine) {
  struct Case {
    const char* what;
    std::optional<std::string> title;
    std::optional<std::string> cleaned;
  };
  const std::string family = "👨‍👩‍👧";  // one character of five scalars
  const std::vector<Case> cases{
      {"none", std::nullopt, std::nullopt},
      {"empty", "", std::nullopt},
      {"only blanks, tabs and line breaks", " \t\n \r\n", std::nullopt},
      {"lines joined, ends trimmed", "  내 이름\n두줄", "내 이름 두줄"},
      {"empty lines dropped", "a\n\n\r\nb\n", "a b"},
      {"blanks inside stay", "a  b", "a  b"},
      {"100 characters", repeated("가", 100), repeated("가", 80)},
      {"characters, not scalars", repeated(family, 81), repeated(family, 80)},
      {"not UTF-8",
       "a\xFF"
       "b",
       "a\uFFFD"
       "b"},
  };
  for (const auto& [what, title, cleaned] : cases) EXPECT_EQ(clean(title), cleaned) << what;
}

TEST(Kept, IsTheMemoAsTyped) {
  struct Case {
    const char* what;
    std::optional<std::string> memo;
    std::optional<std::string> kept;
  };
  const std::vector<Case> cases{
      {"none", std::nullopt, std::nullopt},
      {"empty", "", std::nullopt},
      {"blank of every kind", " \n\t\u3000\u00A0\r\n", std::nullopt},
      {"ends untouched", "\n  둘\n\n ", "\n  둘\n\n "},
      {"zero byte", std::string("a\0b", 3), std::string("a\0b", 3)},
      {"cut in the middle of a character", "가\xEA\xB0", "가\uFFFD\uFFFD"},
  };
  for (const auto& [what, memo, expected] : cases) EXPECT_EQ(kept(memo), expected) << what;
}

TEST(Stripped, LosesBlanksAtBothEndsOnly) {
  EXPECT_EQ(stripped("\u3000 \n가 나\n\t"), "가 나");
  EXPECT_EQ(stripped("가"), "가");
  EXPECT_EQ(stripped(" \u3000"), "");
  EXPECT_EQ(stripped("\x80 a \x80"), "\x80 a \x80");
}

}  // namespace
}  // namespace zelvane::NotesText
