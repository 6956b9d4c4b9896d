#include "cli/listing_json.h"

#include <gmock/gmock.h>

#include "core/unicode.h"

namespace zelvane::cli {
namespace {

ZelvaneSession fullRow() {
  ZelvaneSession row;
  row.id = "s1";
  row.pid = 7;
  row.tty = "/dev/pts/3";
  row.terminal = "xterm";
  row.cwd = "/p";
  row.title = "제목";
  row.subtitle = "b";
  row.state = ZelvaneState::working;
  row.since = timeAt(1999999990.5);
  row.progress = {2, 5};
  row.friendIndex = 4;
  row.claudeTitle = "c";
  row.renamed = true;
  row.memo = "m";
  row.model = "Opus 4.1";
  row.effort = "high";
  row.suggestedEffort = "low";
  row.pinned = true;
  row.today = true;
  return row;
}

TEST(ListingJson, HasEveryFieldInOrder) {
  Listing listing{.at = timeAt(2e9), .home = "/"};
  listing.sessions = {fullRow(), ZelvaneSession()};
  listing.pendingRestore = {Json{{"sid", "x"}}};
  listing.notesProblem = "p";
  EXPECT_EQ(
      listingJson(listing, JsonLayout::oneLine),
      R"({"v":1,"at":2000000000.0,"sessions":[)"
      R"({"id":"s1","pid":7,"tty":"/dev/pts/3","terminal":"xterm","cwd":"/p","title":"제목","subtitle":"b",)"
      R"("state":"working","since":1999999990.5,"progress":{"done":2,"total":5},"friend":4,)"
      R"("claudeTitle":"c","renamed":true,"memo":"m","model":"Opus 4.1","effort":"high",)"
      R"("suggestedEffort":"low","pinned":true,"today":true},)"
      R"({"id":"","pid":0,"tty":null,"terminal":"","cwd":"","title":"","subtitle":"","state":"idle",)"
      R"("since":null,"progress":null,"friend":0,"claudeTitle":"","renamed":false,"memo":null,)"
      R"("model":"","effort":"","suggestedEffort":"","pinned":false,"today":false}],)"
      R"("pendingRestore":[{"sid":"x"}],"recentClosed":[],"notesProblem":"p"})"
      "\n");
}

TEST(ListingJson, NamesStatesByWord) {
  using enum ZelvaneState;
  for (const auto& [state, word] : std::map<ZelvaneState, std::string>{{waiting, "waiting"},
                                                                       {working, "working"},
                                                                       {agents, "agents"},
                                                                       {done, "done"},
                                                                       {idle, "idle"}}) {
    Listing listing;
    listing.sessions.emplace_back().state = state;
    const auto json = parseJson(listingJson(listing, JsonLayout::oneLine));
    EXPECT_EQ((*json)["sessions"][0]["state"], word);
  }
}

TEST(ListingJson, SurvivesWhateverTheTextsHold) {
  const std::vector<std::pair<std::string, std::string>> texts{
      // as it is, as a reader gets it
      {"\x1b[31m\n\t\"\\", "\x1b[31m\n\t\"\\"},
      {"\x7f\u0085\u009b\u2028", "\x7f\u0085\u009b\u2028"},
      {std::string("a\0b", 3), std::string("a\0b", 3)},
      {"/\xff/가", "/\uFFFD/가"},
      {"\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"},
  };
  for (const auto& [text, read] : texts) {
    Listing listing;
    listing.sessions.emplace_back().cwd = text;
    for (const auto layout : {JsonLayout::oneLine, JsonLayout::indented}) {
      const auto json = listingJson(listing, layout);
      const auto value = parseJson(json);
      ASSERT_TRUE(value) << json;
      EXPECT_EQ((*value)["sessions"][0]["cwd"], read);
      int lines = 0;
      for (const char32_t scalar : scalars(json)) {
        lines += scalar == U'\n';
        EXPECT_TRUE(scalar == U'\n' || !(isControl(scalar) || isLineBreak(scalar))) << json;
      }
      EXPECT_EQ(lines == 1, layout == JsonLayout::oneLine) << json;
    }
  }
}

}  // namespace
}  // namespace zelvane::cli
