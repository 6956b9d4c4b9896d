#include "app/ui/column/row_size.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

using State = ZelvaneState;

constexpr Time now = timeAt(100);

ZelvaneSession session(State state = State::working, bool pinned = false) {
  ZelvaneSession session;
  session.id = "s";
  session.state = state;
  session.pinned = pinned;
  return session;
}

/// Every row in every plight: how big it is, what a tap makes of it, and where there is room for an
/// editor.
TEST(RowSize, FollowsPinsStateAndWhatIsOpened) {
  using Id = std::optional<std::string>;
  struct Case {
    const char* name;
    ZelvaneSession row;
    Opened opened;
    RowSize size;
    Id expandedAfterTap, expandedForEditor;
  };
  const auto small = RowSize::small, big = RowSize::big;
  const Case cases[]{
      {"closed", session(), {}, small, "s", "s"},
      {"another open", session(), {.expanded = "other"}, small, "s", "s"},
      {"open", session(), {.expanded = "s"}, big, Id(), "s"},
      {"waits", session(State::waiting), {}, big, Id(), Id()},
      {"waits, another open",
       session(State::waiting),
       {.expanded = "other"},
       big,
       "other",
       "other"},
      {"pinned", session(State::idle, true), {}, big, Id(), Id()},
      {"pinned, was opened", session(State::idle, true), {.expanded = "s"}, big, "s", "s"},
      {"edited", session(), {.editing = "memo:s"}, big, "s", "s"},
      {"another edited", session(), {.editing = "memo:other"}, small, "s", "s"},
  };
  for (const auto& [name, row, opened, size, afterATap, forEditor] : cases) {
    EXPECT_EQ(rowSize(row, opened), size) << name;
    EXPECT_EQ(afterTap(opened, row, now).expanded, afterATap) << name;
    EXPECT_EQ(withRoomFor(opened, row).expanded, forEditor) << name;
  }
}

TEST(TitleTap, EditsUnlessItMayHaveOpenedTheRow) {
  const auto opened = afterTap({}, session(), now);
  const std::pair<double, bool> cases[]{{100, false}, {100.49, false}, {100.5, true}, {99, true}};
  for (const auto& [at, edits] : cases) {
    EXPECT_EQ(titleTapEdits(opened, session(), timeAt(at)), edits) << at;
    EXPECT_TRUE(titleTapEdits(opened, session(State::waiting), timeAt(at))) << "it is always big";
  }
  ZelvaneSession other = session();
  other.id = "other";
  EXPECT_TRUE(titleTapEdits(opened, other, now)) << "big around an editor, not by a tap";
}

}  // namespace
}  // namespace zelvane
