#include "app/ui/column/row_view.h"

#include <algorithm>

#include "core/localization.h"
#include "core/unicode.h"

#include "app/model/records/row_text.h"

namespace zelvane {
namespace {

constexpr double pastOpacity = 0.55;
constexpr double clockOpacity = 0.55;
constexpr double modelOpacity = 0.7;

/// Idle since before today.
bool isPast(const ZelvaneSession& session) {
  return session.state == ZelvaneState::idle && !session.today;
}

Rgb characterColor(const ZelvaneSession& session, const RowContext& context) {
  const auto* who = context.family ? friendAt(*context.family, session.friendIndex) : nullptr;
  return who ? bodyColor(*who) : context.theme.sub;
}

/// The colour of the tile: the palette's at the character's place.
Rgb tileColor(const ZelvaneSession& session, const ThemeSpec& theme) {
  const auto count = theme.palette.size();
  return theme.palette[static_cast<std::uint64_t>(session.friendIndex) % count];
}

/// The character, its tile and the way to the terminal.
void addLiving(RowView& view, const ZelvaneSession& session, const RowContext& context) {
  const bool big = view.size == RowSize::big;
  const auto& theme = context.theme;
  view.characterColor = characterColor(session, context);
  view.scene = theme.scene;
  view.character = {.index = session.friendIndex,
                    .state = session.state,
                    .big = big,
                    // A small row fades as a whole.
                    .dim = big && isPast(session),
                    .still = context.still};
  view.rain = {.color = tileColor(session, theme),
               .waitColor = theme.alert,
               .mode = rainMode(session.state),
               .seed = stableSeed(session.id),
               .still = context.still};
  view.terminal = {.color = view.characterColor,
                   .enabled = session.tty.has_value(),
                   .compact = !big || context.terminalButtonLearned};
}

RowText elapsed(const ZelvaneSession& session, const RowContext& context) {
  return {elapsedText(session.since, session.ongoing(), context.now), context.theme.sub};
}

/// The time column of a small row.
void addTime(RowView& view, const ZelvaneSession& session, const RowContext& context) {
  const auto& theme = context.theme;
  const bool runs = session.state == ZelvaneState::working || session.state == ZelvaneState::agents;
  if (session.progress) {
    view.time = {progressText(*session.progress), theme.sub};
  } else if (runs && session.since && context.liveClock) {
    view.liveSince = session.since;
    view.time = {workingTime(context.now - *session.since), theme.fg, Weight::regular,
                 clockOpacity};
  } else if (session.state == ZelvaneState::done) {
    view.time = {L("완료"), theme.done, Weight::semibold};
  } else {
    view.time = elapsed(session, context);
  }
}

void fillSmall(RowView& view, const ZelvaneSession& session, const RowContext& context) {
  const auto& theme = context.theme;
  view.opacity = isPast(session) ? pastOpacity : 1;
  view.title.weight = Weight::semibold;
  view.subtitle.color = theme.sub;
  if (session.state == ZelvaneState::agents) {
    view.label = {"Background", view.characterColor, Weight::semibold};
  }
  addTime(view, session, context);
}

RowText modelAndEffort(const ZelvaneSession& session, const ThemeSpec& theme) {
  std::string text = session.model;
  if (!session.effort.empty()) text += " / " + effortName(session.effort);
  return {printable(text), theme.fg, Weight::medium, modelOpacity};
}

bool sameLetters(const std::string& one, const std::string& other) {
  return lowerCased(one) == lowerCased(other);
}

/// The model, its effort, and the way to another effort where one was suggested.
void addEffort(RowView& view, const ZelvaneSession& session, const RowContext& context) {
  const auto& theme = context.theme;
  if (context.copied) {
    view.model = {L("복사했어요 · 터미널에서 ⌘V, Return"), theme.fg};
    return;
  }
  view.model = modelAndEffort(session, theme);
  const auto& level = session.suggestedEffort;
  if (level.empty() || sameLetters(level, session.effort)) return;
  const auto name = printable(effortName(level));
  view.suggestion = {LF("추천 %@", {name}), theme.sub};
  view.effortButton = {
      LF("%@로 바꾸기", {name}), theme.fg,
      LF("그 터미널로 이동하고 '/effort %@' 를 복사해 둬요. ⌘V, Return 을 누르면 바뀌어요.",
         {printable(level)})};
}

/// The memo's own line, unless an editor of the row is open.
void addMemoButton(RowView& view, const ZelvaneSession& session, const RowContext& context) {
  if (context.editor) return;
  const bool hasMemo = session.memo && !session.memo->empty();
  view.memoButton = {hasMemo ? L("메모 고치기") : L("+ 메모"), context.theme.sub};
}

void fillBig(RowView& view, const ZelvaneSession& session, const RowContext& context) {
  const auto& theme = context.theme;
  const bool waits = session.state == ZelvaneState::waiting;
  if (session.pinned) view.tag = {L("고정"), theme.sub, Weight::semibold};
  view.title.weight = Weight::bold;
  view.subtitle.color = waits ? theme.wait : theme.sub;
  view.subtitle.weight = waits ? Weight::semibold : Weight::regular;
  addMemoButton(view, session, context);
  addEffort(view, session, context);
  const Rgb statusColor = waits                                 ? theme.wait
                          : session.state == ZelvaneState::done ? theme.done
                                                                : theme.sub;
  view.status = {stateLabel(session.state), statusColor, Weight::bold};
  view.progress = session.progress;
  view.time = elapsed(session, context);
}

std::string spokenName(const ZelvaneSession& session) {
  std::string name = printable(session.title) + ", " + stateLabel(session.state);
  if (!session.subtitle.empty()) name += ", " + printable(session.subtitle);
  return name;
}

/// What a small row may only hint at, without the seconds.
std::string spokenDetails(const ZelvaneSession& session, Time now) {
  std::string details = elapsedText(session.since, session.ongoing(), now);
  const auto add = [&](const std::string& text) {
    if (text.empty()) return;
    if (!details.empty()) details += ", ";
    details += text;
  };
  if (session.progress) {
    add(LF("할 일 %d/%d", {session.progress->done, session.progress->total}));
  }
  if (session.pinned) add(L("고정"));
  if (session.memo) add(LF("메모: %@", {printable(*session.memo)}));
  return details;
}

}  // namespace

RowView rowView(const ZelvaneSession& session, const RowContext& context) {
  RowView view;
  view.size = context.size;
  view.tappable = !alwaysBig(session);
  view.title = {printable(session.title), context.theme.fg};
  view.subtitle = {printable(session.subtitle), context.theme.sub};
  view.memo = {session.memo.value_or(""), context.theme.fg};
  view.editor = context.editor;
  view.line = context.theme.line;
  view.accessibleName = spokenName(session);
  view.accessibleDescription = spokenDetails(session, context.now);
  addLiving(view, session, context);
  if (view.size == RowSize::big) {
    fillBig(view, session, context);
  } else {
    fillSmall(view, session, context);
  }
  return view;
}

std::string progressText(const ZelvaneSession::Progress& progress) {
  return LF("%d/%d", {progress.done, progress.total});
}

double progressShare(const ZelvaneSession::Progress& progress) {
  const auto total = static_cast<double>(std::max<std::int64_t>(progress.total, 1));
  return std::clamp(static_cast<double>(progress.done) / total, 0.0, 1.0);
}

}  // namespace zelvane
