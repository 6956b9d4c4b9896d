// Which rows are big, and what a tap changes of that. Pure, without the toolkit.
#pragma once

#include <optional>
#include <string>

#include "core/time.h"

#include "app/model/records/session.h"

namespace zelvane {

enum class RowSize { small, big };

/// What the user has opened, and where.
struct Opened {
  std::optional<std::string> expanded{};  ///< id of the row that was opened
  std::optional<Time> expandedAt{};       ///< when a row was last opened or closed
  std::optional<std::string> editing{};   ///< editing key of the open editor
  int editorHeight = 0;                   ///< points
  std::optional<std::string> copied{};    ///< id of the row whose command was copied a moment ago
};

/// Whether the row is big whatever the user opens.
bool alwaysBig(const ZelvaneSession& session);

RowSize rowSize(const ZelvaneSession& session, const Opened& opened);

/// What is opened after a tap on the row: it alone, or nothing when it was. A row that is always
/// big changes nothing.
Opened afterTap(Opened opened, const ZelvaneSession& session, Time now);

/// Whether a tap on a big row's title opens its editor: not the tap that may have been meant to
/// open the row.
bool titleTapEdits(const Opened& opened, const ZelvaneSession& session, Time now);

/// What is opened when an editor of the row is to have room.
Opened withRoomFor(Opened opened, const ZelvaneSession& session);

}  // namespace zelvane
