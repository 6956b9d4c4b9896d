#include "app/ui/column/column_plan.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

using State = ZelvaneState;

std::vector<ZelvaneSession> sessionsIn(const std::vector<State>& states) {
  std::vector<ZelvaneSession> sessions(states.size());
  for (std::size_t i = 0; i < states.size(); ++i) {
    sessions[i].id = std::to_string(i);
    sessions[i].state = states[i];
  }
  return sessions;
}

/// The plan in short: a band as its title and count, a divider as -, rows as s or B.
std::string shortPlan(const std::vector<State>& states,
                      const std::optional<std::string>& expanded = std::nullopt,
                      std::size_t mostRows = 9) {
  std::string text;
  for (const auto& item : columnPlan(sessionsIn(states), {.expanded = expanded}, {}, mostRows)) {
    if (const auto* band = std::get_if<SectionBand>(&item)) {
      text += "[" + band->title + " " + std::to_string(band->count) + "]";
    } else if (const auto* row = std::get_if<PlannedRow>(&item)) {
      text += row->view.size == RowSize::big ? "B" : "s";
    } else {
      text += "-";
    }
  }
  return text;
}

TEST(ColumnPlan, BandsHeadSectionsAndDividersPartTheirRows) {
  EXPECT_EQ(shortPlan({}), "");
  EXPECT_EQ(shortPlan({State::working}), "[작업 중 1]s");
  EXPECT_EQ(shortPlan({State::done, State::idle}), "[쉬는 중 2]s-s");
  EXPECT_EQ(shortPlan({State::waiting, State::working, State::agents, State::done, State::idle}),
            "[작업 중 3]B-s-s[쉬는 중 2]s-s");
  EXPECT_EQ(shortPlan({State::done, State::idle, State::idle}, {}, 2), "[쉬는 중 3]s-s");
}

TEST(ColumnPlan, OnlyTheExpandedRowIsBig) {
  EXPECT_EQ(shortPlan({State::working, State::working, State::idle}, "1"),
            "[작업 중 2]s-B[쉬는 중 1]s");
  EXPECT_EQ(shortPlan({State::working}, "gone"), "[작업 중 1]s");
}

TEST(ColumnPlan, OneRowHasTheEditorAlsoOfThoseThatShareAnId) {
  auto sessions = sessionsIn({State::working, State::working, State::idle});
  sessions[0].id = "1";
  std::string editors;
  for (const auto& item : columnPlan(sessions, {.editing = "memo:1", .editorHeight = 54}, {})) {
    const auto* row = std::get_if<PlannedRow>(&item);
    if (!row) continue;
    editors += row->view.editor == EditorRoom{EditorField::memo, 54} ? "m" : "-";
  }
  EXPECT_EQ(editors, "m--");
}

TEST(HeaderTexts, CountsAreLeftOutAtZero) {
  EXPECT_EQ(headerTexts({}), (HeaderTexts{"Zelvane", "탭 0", "", ""}));
  EXPECT_EQ(headerTexts(sessionsIn({State::waiting, State::waiting, State::idle})),
            (HeaderTexts{"Zelvane", "탭 3", "확인 필요 2", ""}));
  EXPECT_EQ(headerTexts(sessionsIn({State::done})), (HeaderTexts{"Zelvane", "탭 1", "", "완료 1"}));
}

TEST(HeaderForm, IsTheFirstThatFits) {
  EXPECT_EQ(headerForm(200, 200, 150), HeaderForm::full);
  EXPECT_EQ(headerForm(199, 200, 150), HeaderForm::withoutTabs);
  EXPECT_EQ(headerForm(149, 200, 150), HeaderForm::compact);
}

}  // namespace
}  // namespace zelvane
