// How the state of one row follows from its sources. Pure.
#pragma once

#include <optional>

#include "core/time.h"

#include "app/model/records/claude_proc.h"
#include "app/model/records/hook_record.h"
#include "app/model/records/session.h"

namespace zelvane {

/// Whether the user looks at the row's own terminal tab.
enum class InFront { no, yes };

struct RowState {
  ZelvaneState state = ZelvaneState::idle;
  std::optional<Time> since;
  /// The finished turn was seen as it ended, in the tab in front: it counts as acknowledged.
  bool acknowledged = false;

  bool operator==(const RowState&) const = default;
};

/// Whether background agents or shells of the session count as running.
bool backgroundWork(const ClaudeProc& proc, const std::optional<HookRecord>& hook, Time now);

/// Whether nothing but the question which tab is in front decides between done and idle.
/// `acked` is when the user last looked at the session.
bool finishedUnseen(const ClaudeProc& proc, const std::optional<HookRecord>& hook,
                    std::optional<Time> acked, Time now);

/// The row's state and since when.
RowState rowState(const ClaudeProc& proc, const std::optional<HookRecord>& hook,
                  std::optional<Time> acked, InFront inFront, Time now);

}  // namespace zelvane
