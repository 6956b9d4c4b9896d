#include "app/model/refresh/row_rules.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr Seconds agentsAfterTurn(1800);
constexpr Seconds oldestBackgroundShell(3600);

bool saysWaiting(const std::optional<HookRecord>& hook) { return hook && hook->state == "waiting"; }

/// The states that do not depend on what the user has seen; nothing when none of them applies.
std::optional<RowState> ongoingState(const ClaudeProc& proc, const std::optional<HookRecord>& hook,
                                     Time now) {
  if (proc.status == "waiting" || saysWaiting(hook)) {
    return RowState{ZelvaneState::waiting, saysWaiting(hook) ? hook->updatedAt : proc.updatedAt};
  }
  if (proc.status == "busy") {
    const auto begun = hook ? hook->workingSince : std::nullopt;
    return RowState{ZelvaneState::working, begun ? begun : proc.updatedAt};
  }
  if (backgroundWork(proc, hook, now)) {
    return RowState{ZelvaneState::agents, hook->doneAt ? hook->doneAt : proc.updatedAt};
  }
  return std::nullopt;
}

}  // namespace

bool backgroundWork(const ClaudeProc& proc, const std::optional<HookRecord>& hook, Time now) {
  if (!hook) return false;
  const bool shell = proc.status == "shell";
  if (hook->bgAgents >= 1) {
    if (shell || (hook->doneAt && now - *hook->doneAt < agentsAfterTurn)) return true;
  }
  return shell &&
         std::any_of(hook->bgShellFirstSeen.begin(), hook->bgShellFirstSeen.end(),
                     [&](double seen) { return now - timeAt(seen) < oldestBackgroundShell; });
}

bool finishedUnseen(const ClaudeProc& proc, const std::optional<HookRecord>& hook,
                    std::optional<Time> acked, Time now) {
  return !ongoingState(proc, hook, now) && hook && hook->state == "done" && hook->doneAt &&
         *hook->doneAt > acked.value_or(timeAt(0));
}

RowState rowState(const ClaudeProc& proc, const std::optional<HookRecord>& hook,
                  std::optional<Time> acked, InFront inFront, Time now) {
  if (const auto ongoing = ongoingState(proc, hook, now)) return *ongoing;
  const bool unseen = finishedUnseen(proc, hook, acked, now);
  if (unseen && inFront == InFront::no) return {ZelvaneState::done, hook->doneAt};
  return {ZelvaneState::idle, proc.updatedAt, unseen};
}

}  // namespace zelvane
