#include "app/ui/column/row_size.h"

#include "app/ui/editors/editing_rules.h"

namespace zelvane {

bool alwaysBig(const ZelvaneSession& session) {
  return session.pinned || session.state == ZelvaneState::waiting;
}

RowSize rowSize(const ZelvaneSession& session, const Opened& opened) {
  const auto editor = opened.editing ? editorNamed(*opened.editing) : std::nullopt;
  // A row whose state changes must not shrink around what is being typed.
  const bool edited = editor && editor->second == session.id;
  const bool big = alwaysBig(session) || opened.expanded == session.id || edited;
  return big ? RowSize::big : RowSize::small;
}

Opened afterTap(Opened opened, const ZelvaneSession& session, Time now) {
  if (alwaysBig(session)) return opened;
  if (opened.expanded == session.id) {
    opened.expanded.reset();
  } else {
    opened.expanded = session.id;
  }
  opened.expandedAt = now;
  return opened;
}

bool titleTapEdits(const Opened& opened, const ZelvaneSession& session, Time now) {
  constexpr Seconds openingTap(0.5);
  const bool onlyOpened = !alwaysBig(session) && opened.expanded == session.id;
  if (!onlyOpened || !opened.expandedAt) return true;
  const Seconds since = now - *opened.expandedAt;
  return since < Seconds(0) || since >= openingTap;  // the clock may have been set back
}

Opened withRoomFor(Opened opened, const ZelvaneSession& session) {
  if (!alwaysBig(session)) opened.expanded = session.id;
  return opened;
}

}  // namespace zelvane
