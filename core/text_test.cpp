#include "core/text.h"

#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>

#include "core/localization.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

TEST(Text, Quotes) {
  const std::vector<std::tuple<std::string, std::string, std::string>> cases{
      // text, for a shell, for AppleScript
      {"", "''", "\"\""},
      {"/usr/bin/a-b.c", "/usr/bin/a-b.c", "\"/usr/bin/a-b.c\""},
      {"a b", "'a b'", "\"a b\""},
      {"it's", "'it'\"'\"'s'", "\"it's\""},
      {"가", "'가'", "\"가\""},
      {"a\"b", "'a\"b'", "\"a\\\"b\""},
      {"a\\\"", "'a\\\"'", "\"a\\\\\\\"\""},
      {"$(x)\n", "'$(x)\n'", "\"$(x)\n\""},
  };
  for (const auto& [text, shell, appleScript] : cases) {
    EXPECT_EQ(shellQuote(text), shell);
    EXPECT_EQ(appleScriptString(text), appleScript);
  }
}

TEST(Text, FoldsLinesButNotBlanks) {
  EXPECT_EQ(oneLine(" a\t b\r\n\n\u2028c\x0b"), " a\t b c");
  EXPECT_EQ(trimmed(" \t a b\n \t"), "a b\n");
  EXPECT_EQ(trimmed(" \t"), "");
  EXPECT_EQ(nonEmpty(std::string(" ")), " ");
  EXPECT_FALSE(nonEmpty(std::string()));
  EXPECT_FALSE(nonEmpty(std::nullopt));
}

TEST(Text, RefusesNamesThatLeaveTheFolder) {
  for (const char* safe : {"88163312-296c-4a55-9d5e-3f2c", "s1", "한글"}) {
    EXPECT_TRUE(isSafeFileName(safe)) << safe;
  }
  const std::vector<std::string> unsafe{"",
                                        ".",
                                        "..",
                                        "../../x",
                                        "/etc/passwd",
                                        "a/b",
                                        ".x",
                                        "a\\b",
                                        "a\nb",
                                        std::string("a\0b", 3),
                                        std::string(201, 'a')};
  for (const auto& name : unsafe) EXPECT_FALSE(isSafeFileName(name)) << name;
}

TEST(Text, FormatsDatesByPattern) {
  setenv("TZ", "Asia/Seoul", 1);
  tzset();
  const Time time = timeAt(1731650000.9);  // 2024-11-15 14:53:20 in Seoul
  EXPECT_EQ(posixFormatter("yyyyMMdd-HHmmss").string(time), "20241115-145320");
  EXPECT_EQ(posixFormatter("yyyy-MM-dd'T'HH:mm").string(time), "2024-11-15T14:53");
  unsetenv("TZ");
  tzset();
}

TEST(Unicode, RepairsInvalidSequences) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"a가", "a가"},
      {"\xff", "\uFFFD"},
      {"a\xea\xb0", "a\uFFFD\uFFFD"},
      {"\xed\xa0\x80x", "\uFFFD\uFFFD\uFFFDx"}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(repairedUtf8(bytes), text);
}

TEST(Unicode, MeasuresAndFitsForATerminal) {
  EXPECT_EQ(displayWidth("abc"), 3);
  EXPECT_EQ(displayWidth("결제 웹훅"), 9);
  EXPECT_EQ(displayWidth("e\u0301"), 1);
  const std::vector<std::tuple<std::string, int, std::string>> cases{
      {"abc", 3, "abc"},      {"abcd", 3, "ab…"},   {"가나다", 6, "가나다"},
      {"가나다", 5, "가나…"}, {"가나다", 4, "가…"}, {"가", 1, "…"},
      {"가", 0, ""}};
  for (const auto& [text, columns, shown] : cases)
    EXPECT_EQ(fitted(text, columns), shown) << columns;
}

TEST(Localization, FillsFormats) {
  EXPECT_EQ(L("완료"), "완료");
  EXPECT_EQ(LF("%d분", {7}), "7분");
  EXPECT_EQ(LF("%@ 전", {"%d일"}), "%d일 전");
  EXPECT_EQ(LF("%d:%02d:%02d", {1, 2, 30}), "1:02:30");
  EXPECT_EQ(LF("100%% %d", {}), "100% %d");
  EXPECT_EQ(LF("%x %", {1}), "%x %");
  setStringTable({{"완료", "Done"}, {"%d분", "%d min"}});
  EXPECT_EQ(L("완료"), "Done");
  EXPECT_EQ(LF("%d분", {7}), "7 min");
  setStringTable({});
}

}  // namespace
}  // namespace zelvane
