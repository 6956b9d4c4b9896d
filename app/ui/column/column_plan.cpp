#include "app/ui/column/column_plan.h"

#include <algorithm>

#include "core/localization.h"

namespace zelvane {
namespace {

std::int64_t countOf(const std::vector<ZelvaneSession>& sessions, ZelvaneState state) {
  return std::count_if(sessions.begin(), sessions.end(),
                       [&](const auto& session) { return session.state == state; });
}

SectionBand bandOf(const ZelvaneSession& first, const std::vector<ZelvaneSession>& sessions) {
  const auto count = std::count_if(sessions.begin(), sessions.end(), [&](const auto& session) {
    return session.ongoing() == first.ongoing();
  });
  return {first.ongoing() ? L("작업 중") : L("쉬는 중"), static_cast<int>(count)};
}

}  // namespace

std::vector<ColumnItem> columnPlan(const std::vector<ZelvaneSession>& sessions,
                                   const Opened& opened, const RowContext& context,
                                   std::size_t mostRows) {
  std::vector<ColumnItem> plan;
  const ZelvaneSession* above = nullptr;
  RowContext rowContext = context;
  auto editor = opened.editing ? editorNamed(*opened.editing) : std::nullopt;
  for (const auto& session : sessions) {
    if (mostRows-- == 0) break;
    if (above && above->ongoing() == session.ongoing()) {
      plan.emplace_back(Divider{});
    } else {
      plan.emplace_back(bandOf(session, sessions));
    }
    rowContext.size = rowSize(session, opened);
    rowContext.copied = opened.copied == session.id;
    rowContext.editor.reset();
    if (editor && editor->second == session.id) {
      rowContext.editor = {editor->first, opened.editorHeight};
      editor.reset();  // of rows that share an id one is enough
    }
    plan.emplace_back(PlannedRow{session, rowView(session, rowContext)});
    above = &session;
  }
  return plan;
}

HeaderTexts headerTexts(const std::vector<ZelvaneSession>& sessions) {
  HeaderTexts texts{.name = "Zelvane",
                    .tabs = LF("탭 %d", {static_cast<std::int64_t>(sessions.size())})};
  const auto waiting = countOf(sessions, ZelvaneState::waiting);
  const auto done = countOf(sessions, ZelvaneState::done);
  if (waiting > 0) texts.waiting = LF("확인 필요 %d", {waiting});
  if (done > 0) texts.done = LF("완료 %d", {done});
  return texts;
}

HeaderForm headerForm(int available, int fullWidth, int widthWithoutTabs) {
  if (fullWidth <= available) return HeaderForm::full;
  return widthWithoutTabs <= available ? HeaderForm::withoutTabs : HeaderForm::compact;
}

}  // namespace zelvane
