#include "app/terminal/apple_terminal_script.h"

#include <gtest/gtest.h>

namespace zelvane::AppleTerminal {
namespace {

TEST(AppleTerminalScript, IsByteForByteWhatTerminalWasTriedWith) {
  EXPECT_EQ(listScript(),
            "set out to \"\"\n"
            "set TB to character id 9\n"
            "tell application \"Terminal\"\n"
            "  repeat with w in windows\n"
            "    repeat with t in tabs of w\n"
            "      set out to out & (tty of t) & TB & (custom title of t) & linefeed\n"
            "    end repeat\n"
            "  end repeat\n"
            "end tell\n"
            "return out");
  EXPECT_EQ(frontScript(),
            "tell application \"Terminal\" to return tty of selected tab of front window");
  EXPECT_EQ(selectScript("/dev/ttys004"),
            "tell application \"Terminal\"\n"
            "  repeat with w in windows\n"
            "    repeat with t in tabs of w\n"
            "      if tty of t is \"/dev/ttys004\" then\n"
            "        set selected of t to true\n"
            "        set index of w to 1\n"
            "        activate\n"
            "        return\n"
            "      end if\n"
            "    end repeat\n"
            "  end repeat\n"
            "end tell");
}

TEST(AppleTerminalScript, KeepsNothingOfAPathThatCouldEndIt) {
  EXPECT_EQ(sanitized("/dev/ttys001\" then\n do shell script \"rm\" --\\"),
            "/dev/ttys001thendoshellscriptrm");
  EXPECT_EQ(sanitized("é한1/²\xff\t-_.\"\u0301"), "é한1/²");
  EXPECT_EQ(sanitized(""), "");
  EXPECT_NE(selectScript("\"").find("is \"\" then"), std::string::npos);
  EXPECT_EQ(openWindowScript("cd 'a\"b\\' && x"),
            "tell application \"Terminal\"\n  activate\n"
            "  do script \"cd 'a\\\"b\\\\' && x\"\nend tell");
  EXPECT_TRUE(openTabScript("a\"b\\").starts_with("set typed to \"a\\\"b\\\\\"\n"));
}

TEST(AppleTerminalScript, ReadsAnswers) {
  using Titles = std::map<std::string, std::string>;
  EXPECT_EQ(parseTitles("/dev/ttys001\tWork\n/dev/ttys002\t\n"),
            (Titles{{"/dev/ttys001", "Work"}, {"/dev/ttys002", ""}}));
  EXPECT_EQ(parseTitles("\n\nno tab\na\tb\tc\n/dev/x\told\n/dev/x\tnew"),
            (Titles{{"a", "b\tc"}, {"/dev/x", "new"}}));
  EXPECT_EQ(parseTitles(""), Titles());
  EXPECT_EQ(parseIdentifier("com.apple.Terminal\n"), "com.apple.Terminal");
  EXPECT_EQ(parseFront(" \n/dev/ttys003\r\n"), "/dev/ttys003");
  for (const char* other : {"", "\n", "missing value\n", "x/dev/ttys003"}) {
    EXPECT_EQ(parseFront(other), std::nullopt) << other;
  }
}

}  // namespace
}  // namespace zelvane::AppleTerminal
