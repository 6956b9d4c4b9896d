#include "app/notes/notes_file.h"

#include <gmock/gmock.h>

#include "app/notes/removed_log.h"

namespace zelvane {
namespace {

NotesEntryPtr entry(std::optional<std::string> title, std::optional<std::string> memo,
                    double updated) {
  return std::make_shared<NotesEntry>(NotesEntry{std::move(title), std::move(memo), updated});
}

TEST(EncodeNotes, WritesTheFormatToTheByte) {
  const NotesMap notes{{"s1", entry("내 이름", "줄\n/\"", 1731650000.5)},
                       {"s2", entry(std::nullopt, "m", 3)},
                       {"s3", entry("t", std::nullopt, 0.1)}};
  EXPECT_EQ(encodeNotes(notes),
            R"({"v":1,"entries":{"s1":{"title":"내 이름","memo":"줄\n/\"","updated":1731650000.5},)"
            R"("s2":{"memo":"m","updated":3.0},"s3":{"title":"t","updated":0.1}}})");
  EXPECT_EQ(encodeNotes({}), R"({"v":1,"entries":{}})");
}

TEST(DecodeNotes, ReadsWhatWasWritten) {
  const NotesMap notes{{"", entry(std::string("\0\x1f\u2028", 5), "\xF0\x9F\x98\x80\r\n\\", 1e300)},
                       {"s\"1", entry(std::nullopt, std::string(100'000, 'x'), -0.25)}};
  const auto read = decodeNotes(encodeNotes(notes));
  ASSERT_TRUE(read);
  ASSERT_EQ(read->size(), notes.size());
  for (const auto& [id, written] : notes) EXPECT_EQ(*read->at(id), *written) << id;
}

/// What the file holds for s1; "refused" when it does not hold notes at all.
std::string shown(const std::string& text) {
  const auto notes = decodeNotes(text);
  if (!notes) return "refused";
  if (!notes->contains("s1")) return "none";
  const auto& found = *notes->at("s1");
  return found.title.value_or("-") + "|" + found.memo.value_or("-");
}

TEST(DecodeNotes, TakesWhatIsWholeAndRefusesTheRest) {
  struct Case {
    const char* what;
    std::string text;
    std::string expected;
  };
  const auto withEntry = [](const std::string& s1) {
    return R"({"v":1,"entries":{"s0":{"memo":"m","updated":1},"s1":)" + s1 + "}}";
  };
  const std::string deep(100'000, '[');
  const std::vector<Case> cases{
      {"unknown keys", R"({"x":[],"v":1,"entries":{"s1":{"memo":"m","updated":1,"y":{}}},"z":0})",
       "-|m"},
      {"another version", R"({"v":9,"entries":{"s1":{"title":"t","updated":1}}})", "t|-"},
      {"null texts", withEntry(R"({"title":null,"memo":null,"updated":1})"), "none"},
      {"no texts", withEntry(R"({"updated":1})"), "none"},
      {"title of another type", withEntry(R"({"title":5,"memo":"m","updated":1})"), "refused"},
      {"memo of another type", withEntry(R"({"memo":["m"],"updated":1})"), "refused"},
      {"updated of another type", withEntry(R"({"memo":"m","updated":"1"})"), "refused"},
      {"updated is missing", withEntry(R"({"memo":"m"})"), "refused"},
      {"updated beyond all numbers", withEntry(R"({"memo":"m","updated":1e999})"), "refused"},
      {"entry of another type", withEntry("[]"), "refused"},
      {"no version", R"({"entries":{}})", "refused"},
      {"version of another type", R"({"v":"1","entries":{}})", "refused"},
      {"version with a fraction", R"({"v":1.5,"entries":{}})", "refused"},
      {"no entries", R"({"v":1})", "refused"},
      {"entries of another type", R"({"v":1,"entries":[]})", "refused"},
      {"empty file", "", "refused"},
      {"cut in half", R"({"v":1,"entries":{"s1":{"memo":"v3-newest")", "refused"},
      {"more after the end", R"({"v":1,"entries":{}}{)", "refused"},
      {"not UTF-8", withEntry("{\"memo\":\"\xFF\",\"updated\":1}"), "refused"},
      {"100,000 deep", deep, "refused"},
      {"100,000 deep under an unknown key",
       R"({"v":1,"entries":{},"x":)" + deep + std::string(100'000, ']') + "}", "refused"},
      {"notes' keys under an unknown one",
       R"({"v":1,"x":{"entries":{"s1":{"memo":"x","updated":1}},"v":"1"},"entries":{"s1":)"
       R"({"memo":"m","updated":1,"y":[{"memo":"y","title":5}]}}})",
       "-|m"},
      {"twice the same",
       R"({"v":1,"entries":{"s1":{"memo":"1","updated":1},"s1":{"title":"2",)"
       R"("updated":1}}})",
       "2|-"},
      {"a whole version", R"({"v":1.0,"entries":{"s1":{"memo":"m","updated":1}}})", "-|m"},
      {"a version beyond all integers", R"({"v":1e30,"entries":{}})", "refused"},
      {"a list", "[]", "refused"},
      {"no object", "1", "refused"},
      {"zeros", std::string(4096, '\0'), "refused"},
  };
  for (const auto& [what, text, expected] : cases) EXPECT_EQ(shown(text), expected) << what;
}

TEST(RemovedLine, IsOneJsonObjectOnOneLine) {
  EXPECT_EQ(removedLine({"s1", RemovedText::Kind::memo, "다음엔\n\"색\"", 1731650000.25}),
            "{\"at\":1731650000.25,\"memo\":\"다음엔\\n\\\"색\\\"\",\"sid\":\"s1\"}\n");
  EXPECT_EQ(removedLine({"s1", RemovedText::Kind::title, "\xFF", 2}),
            "{\"at\":2.0,\"sid\":\"s1\",\"title\":\"\uFFFD\"}\n");
}

}  // namespace
}  // namespace zelvane
