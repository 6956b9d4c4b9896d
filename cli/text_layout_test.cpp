#include "cli/text_layout.h"

#include <gmock/gmock.h>

#include "core/unicode.h"

namespace zelvane::cli {
namespace {

TEST(Printable, LeavesNothingThatSteersATerminal) {
  struct Case {
    const char* what;
    std::string text;
    const char* shown;
  };
  const std::vector<Case> cases{
      {"plain", "결제 webhook", "결제 webhook"},
      {"colour", "\x1b[31mred\x1b[0m", "[31mred [0m"},
      {"window title", "a\x1b]0;evil\x07z", "a ]0;evil z"},
      {"eight-bit introducer", "a\u009b31mz", "a 31mz"},
      {"bare continuation byte", "a\x9bz", "a\uFFFDz"},
      {"lines", "\n a\r\n\tb\u2028c \n", "a b c"},
      {"null", std::string("a\0b", 3), "a b"},
      {"delete", "a\x7fz", "a z"},
      {"reversed direction", "a\u202e\u2066txt.exe\u2069", "atxt.exe"},
      {"joined emoji stay whole", "👩\u200d💻", "👩\u200d💻"},
      {"cut in half", "가\xea\xb0", "가\uFFFD\uFFFD"},
      {"nothing but controls", "\x1b\n\u0085", ""},
  };
  for (const auto& [what, text, shown] : cases) EXPECT_EQ(printable(text), shown) << what;
}

TEST(Printable, LeavesLinesAndTheirIndentation) {
  EXPECT_EQ(printableLines("a\x1b[31m\n\n  \t- b \x1b]0;c\a\r\n"), "a [31m\n\n  \t- b ]0;c\n");
  EXPECT_EQ(printableLines(""), "");
}

TEST(TailFitted, KeepsTheEnd) {
  const std::vector<std::tuple<std::string, int, std::string>> cases{
      {"~/a/b", 5, "~/a/b"}, {"~/a/b", 4, "…a/b"},  {"/가나/다", 6, "…나/다"},
      {"가나다", 4, "…다"},  {"e\u0301가", 2, "…"}, {"abc", 0, ""},
  };
  for (const auto& [text, columns, shown] : cases) {
    EXPECT_EQ(tailFitted(text, columns), shown) << text << " in " << columns;
  }
}

TEST(Wrapped, BreaksAtBlanks) {
  using Lines = std::vector<std::string>;
  const std::vector<std::tuple<std::string, int, Lines>> cases{
      {"터미널 탭에서 claude", 20, {"터미널 탭에서 claude"}},
      {"터미널 탭에서 claude", 19, {"터미널 탭에서", "claude"}},
      {"터미널 탭에서 claude", 6, {"터미널", "탭에서", "claude"}},
      {"터미널 탭", 5, {"터미…", "탭"}},
      {"", 5, {}},
  };
  for (const auto& [text, columns, lines] : cases) EXPECT_EQ(wrapped(text, columns), lines);
}

TEST(SharedOut, DividesOnlyWhatIsScarce) {
  using Widths = std::vector<int>;
  struct Case {
    const char* what;
    Widths wanted;
    int room;
    Widths shares;
  };
  const std::vector<Case> cases{
      {"enough for all", {10, 20, 5}, 40, {10, 20, 5}},
      {"evenly", {30, 30}, 20, {10, 10}},
      {"a modest one keeps its width", {50, 4, 50}, 24, {10, 4, 10}},
      {"an odd column is not lost", {50, 50}, 21, {10, 11}},
      {"hidden ones take nothing", {50, 0, 50}, 20, {10, 0, 10}},
      {"no room at all", {5, 5}, -3, {0, 0}},
      {"nobody", {}, 10, {}},
  };
  for (const auto& [what, wanted, room, shares] : cases) {
    EXPECT_EQ(sharedOut(wanted, room), shares) << what;
  }
}

}  // namespace
}  // namespace zelvane::cli
