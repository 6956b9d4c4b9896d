#include "app/notes/notes_merge.h"

#include <gmock/gmock.h>

#include "app/notes/notes_memory.h"

namespace zelvane {
namespace {

using Text = std::optional<std::string>;

/// "TITLE/MEMO@SECONDS", "-" for a text that is not there; "" for no notes.
NotesEntryPtr notes(const std::string& text) {
  if (text.empty()) return nullptr;
  const auto slash = text.find('/');
  const auto at = text.find('@');
  const auto part = [](const std::string& t) { return t == "-" ? Text() : Text(t); };
  return std::make_shared<NotesEntry>(NotesEntry{part(text.substr(0, slash)),
                                                 part(text.substr(slash + 1, at - slash - 1)),
                                                 std::stod(text.substr(at + 1))});
}

std::string shown(const NotesEntryPtr& entry) {
  if (!entry) return "";
  return entry->title.value_or("-") + "/" + entry->memo.value_or("-") + "@" +
         std::to_string(static_cast<int>(entry->updated));
}

NotesMap mapOf(const std::string& entry) {
  return entry.empty() ? NotesMap{} : NotesMap{{"s1", notes(entry)}};
}

NotesEntryPtr inMap(const NotesMap& map) { return map.contains("s1") ? map.at("s1") : nullptr; }

TEST(MergeNotes, KeepsBothSidesChanges) {
  struct Case {
    const char* what;
    std::string before, mine, theirs, merged;
    std::vector<std::string> lost;
  };
  const std::vector<Case> cases{
      {"only mine changed", "a/x@1", "b/x@2", "a/x@1", "b/x@2", {}},
      {"mine is new", "", "a/-@2", "", "a/-@2", {}},
      {"mine is gone", "a/x@1", "", "a/x@1", "", {}},
      {"my title, their memo", "a/x@1", "b/x@2", "a/y@3", "b/y@3", {}},
      {"their title, my memo", "a/x@1", "a/y@3", "b/x@2", "b/y@3", {}},
      {"both new, apart", "", "a/-@1", "-/y@2", "a/y@2", {}},
      {"both the same", "a/x@1", "b/x@2", "b/x@3", "b/x@3", {}},
      {"my title is later", "a/x@1", "b/x@3", "c/x@2", "b/x@3", {"c"}},
      {"their title is later", "a/x@1", "b/x@2", "c/x@3", "c/x@3", {"b"}},
      {"both texts of both", "", "a/x@5", "b/y@4", "a/x@5", {"b", "y"}},
      {"they removed, I did not look", "a/x@1", "a/x@1", "", "", {"a", "x"}},
      {"they removed what I edited", "a/x@1", "a/y@2", "", "-/y@2", {"a"}},
      {"an older copy came back", "a/x@5", "a/x@5", "a/w@1", "a/w@5", {"x"}},
      {"and I had edited", "a/x@5", "a/y@6", "b/w@1", "b/y@6", {"w", "a"}},
      {"I removed what they edited", "a/x@1", "", "a/y@2", "-/y@2", {}},
      {"I removed it, they the same", "a/x@1", "", "", "", {}},
      {"I removed the title, they the memo", "a/x@1", "-/x@2", "a/-@2", "", {}},
  };
  for (const auto& [what, before, mine, theirs, merged, lost] : cases) {
    const NotesChanges changes{{"s1", {notes(before), notes(mine)}}};
    const auto merge = mergeNotes(mapOf(before), mapOf(theirs), changes);
    EXPECT_EQ(shown(inMap(merge.notes)), merged) << what;
    std::vector<std::string> lostTexts;
    for (const auto& text : merge.lost) lostTexts.push_back(text.text);
    EXPECT_EQ(lostTexts, lost) << what;
    EXPECT_EQ(merge.news.contains("s1"), shown(notes(mine)) != merged) << what;
  }
}

TEST(MergeNotes, TellsWhatTheOtherDidElsewhere) {
  const NotesMap known{{"gone", notes("a/x@1")}, {"same", notes("a/x@1")}, {"new", notes("a/x@1")}};
  const NotesMap theirs{
      {"same", notes("a/x@1")}, {"new", notes("b/x@2")}, {"more", notes("c/-@2")}};
  const auto merge = mergeNotes(known, theirs, {{"mine", {nullptr, notes("m/-@1")}}});
  EXPECT_EQ(merge.notes.size(), 4U);
  ASSERT_EQ(merge.news.size(), 3U);
  EXPECT_EQ(merge.news.at("gone"), nullptr);
  EXPECT_EQ(shown(merge.news.at("new")), "b/x@2");
  EXPECT_EQ(shown(merge.news.at("more")), "c/-@2");
}

NotesEntry value(const std::string& text) { return *notes(text); }

TEST(NotesMemory, KeepsAnEditMadeDuringASave) {
  NotesMemory memory(mapOf("a/x@1"));
  (void)memory.edit("s1", value("a/y@2"));
  const auto written = memory.changes();
  (void)memory.edit("s1", value("a/z@3"));
  memory.saved(written);
  // Another process wrote a title meanwhile, and the save has merged it with the first edit.
  memory.take({{"s1", notes("b/y@2")}});
  EXPECT_EQ(shown(memory.find("s1")), "a/z@3");
  const auto merge = mergeNotes(mapOf("b/y@2"), mapOf("b/y@2"), memory.changes());
  EXPECT_EQ(shown(inMap(merge.notes)), "b/z@3");
  EXPECT_TRUE(merge.lost.empty());
}

TEST(NotesMemory, HandsOutAnothersTextThatIsReplacedUnseen) {
  NotesMemory memory(mapOf("a/x@1"));
  memory.take({{"s1", notes("a/theirs@2")}});
  EXPECT_TRUE(memory.edit("s1", value("b/theirs@3")).empty());
  const auto removed = memory.edit("s1", value("b/typed on x@4"));
  ASSERT_EQ(removed.size(), 1U);
  EXPECT_EQ(removed[0], (RemovedText{"s1", RemovedText::Kind::memo, "theirs", 4}));
  EXPECT_TRUE(memory.edit("s1", value("b/more@5")).empty());
}

}  // namespace
}  // namespace zelvane
