#include "app/model/refresh/refresh_pass.h"

#include <algorithm>
#include <random>

#include "core/localization.h"

#include "app/model/records/row_text.h"
#include "app/model/refresh/ordering.h"
#include "app/model/refresh/row_rules.h"

namespace zelvane {
namespace {

constexpr Seconds titlesWhileVisible(60);
constexpr Seconds titlesForNewTab(10);
constexpr Seconds carryWait(5);

/// Notices sessions that replaced another in their process, and whether notes move to them.
void followSessions(const RefreshInputs& inputs, Time now, RefreshResult& result) {
  auto& memory = result.memory;
  std::map<std::int32_t, std::string> seen;
  for (const auto& live : inputs.live) {
    const auto& id = live.proc.sessionId;
    const auto before = memory.sidByPid.find(live.proc.pid);
    if (before != memory.sidByPid.end() && before->second != id) {
      memory.pendingCarry[id] = {before->second, secondsSince1970(now),
                                 memory.friends.friendOf.contains(id)};
    }
    seen[live.proc.pid] = memory.sidByPid[live.proc.pid] = id;

    const auto pending = memory.pendingCarry.find(id);
    if (pending == memory.pendingCarry.end()) continue;
    const auto source = live.hook ? live.hook->source : std::nullopt;
    if (source == "clear") {
      const auto& from = pending->second.from;
      if (!inputs.choices.readOnly) result.carries.push_back({from, id});
      auto& friendOf = memory.friends.friendOf;
      const auto character = friendOf.find(from);
      if (character != friendOf.end() && !pending->second.ownCharacter) {
        friendOf[id] = character->second;
        result.saveFriends = !inputs.choices.readOnly;
      }
    }
    if (source) memory.pendingCarry.erase(pending);
  }
  // Also those whose new session has ended since.
  std::erase_if(memory.pendingCarry, [&](const auto& pending) {
    const Time since = timeAt(pending.second.since);
    return since > now || now - since > carryWait;
  });
  memory.sidByPid = std::move(seen);
}

std::set<std::string> sessionsIn(const RefreshMemory& memory) {
  std::set<std::string> ids;
  for (const auto& [pid, id] : memory.sidByPid) ids.insert(id);
  return ids;
}

void giveCharacters(const RefreshInputs& inputs, const std::set<std::string>& liveBefore, Time now,
                    RefreshResult& result) {
  std::vector<std::string> ids;
  for (const auto& live : inputs.live) ids.push_back(live.proc.sessionId);
  // Ids are random themselves; a command that may save nothing draws the same again.
  std::string all;
  for (const auto& id : ids) all += id + '/';
  std::seed_seq seed(all.begin(), all.end());
  std::mt19937_64 numbers(seed);
  const Random random = [&](std::size_t below) { return numbers() % below; };
  const auto change =
      assignFriends(ids, liveBefore, inputs.friendCount, result.memory.friends, random, now);
  if (!inputs.choices.readOnly && friendsToSave(change, now)) result.saveFriends = true;
}

void keepTitles(const RefreshInputs& inputs, Time now, RefreshMemory& memory) {
  if (!inputs.titles) return;
  memory.titles = *inputs.titles;
  memory.titlesAt = now;
  for (const auto& live : inputs.live) memory.titleTried.insert(live.tty);
}

/// Notes by session id as they stand once the carries are done.
std::map<std::string, NotesEntry> carried(std::map<std::string, NotesEntry> notes,
                                          const std::vector<NotesCarry>& carries) {
  for (const auto& [from, to] : carries) {
    if (mayCarry(notes[from], notes[to])) notes[to] = notes[from];
  }
  return notes;
}

std::string folderName(const std::string& cwd, const std::string& home) {
  if (cwd == home) return "~";
  const auto end = cwd.find_last_not_of('/');
  if (end == std::string::npos) return cwd.substr(0, 1);
  const auto begin = cwd.find_last_of('/', end) + 1;
  return cwd.substr(begin, end - begin + 1);
}

std::string subtitle(const LiveSession& live, ZelvaneState state, const std::string& prompt) {
  switch (state) {
    case ZelvaneState::waiting:
      return live.hook && !live.hook->reason.empty() ? localizedReason(live.hook->reason)
                                                     : L("대답을 기다려요");
    case ZelvaneState::working:
      return live.hook && live.hook->todos && !live.hook->todos->current.empty()
                 ? live.hook->todos->current
                 : prompt;
    case ZelvaneState::agents:
      return prompt;
    case ZelvaneState::done:
      return prompt.empty() ? L("끝났어요 · 확인해 주세요") : prompt;
    case ZelvaneState::idle:
      if (live.proc.status != "shell") return prompt;
      return L("뒤에서 명령 실행 중") + (prompt.empty() ? "" : " · " + prompt);
  }
  return {};
}

template <typename Value>
std::optional<Value> lookedUp(const std::map<std::string, Value>& map, const std::string& key) {
  const auto found = map.find(key);
  return found == map.end() ? std::nullopt : std::optional(found->second);
}

class RowBuilder {
 public:
  RowBuilder(const RefreshInputs& inputs, Time now, RefreshResult& result)
      : inputs_(inputs),
        now_(now),
        today_(todayStart(now)),
        pins_(inputs.choices.pins.begin(), inputs.choices.pins.end()),
        notes_(carried(inputs.notes, result.carries)),
        result_(result) {}

  ZelvaneSession row(const LiveSession& live) {
    const auto& id = live.proc.sessionId;
    const auto [state, since, acknowledged] = stateOf(live);
    if (acknowledged) result_.acknowledged.push_back(id);

    ZelvaneSession row;
    row.id = id;
    row.pid = live.proc.pid;
    row.tty = live.tty;
    row.terminal = live.terminal;
    row.cwd = live.proc.cwd;
    row.state = state;
    row.since = since;
    setTexts(live, row);
    if (state == ZelvaneState::working && live.hook && live.hook->todos &&
        live.hook->todos->total > 0) {
      row.progress = {live.hook->todos->done, live.hook->todos->total};
    }
    row.friendIndex = lookedUp(result_.memory.friends.friendOf, characterOwner(id)).value_or(0);
    row.model = live.model.model;
    row.effort = live.model.effort;
    row.suggestedEffort = live.model.suggestedEffort;
    row.pinned = pins_.contains(id);
    row.today = since.value_or(distantPast) >= today_;
    return row;
  }

 private:
  /// While it is open whether a tab's character moves to its new session, the tab keeps it.
  std::string characterOwner(const std::string& id) const {
    const auto pending = lookedUp(result_.memory.pendingCarry, id);
    return pending && !pending->ownCharacter ? pending->from : id;
  }

  RowState stateOf(const LiveSession& live) const {
    const auto acked = lookedUp(inputs_.choices.acked, live.proc.sessionId);
    return rowState(live.proc, live.hook, acked ? std::optional(timeAt(*acked)) : std::nullopt,
                    inputs_.frontTTY == live.tty ? InFront::yes : InFront::no, now_);
  }

  void setTexts(const LiveSession& live, ZelvaneSession& row) const {
    const auto folder = folderName(live.proc.cwd, inputs_.home);
    const auto prompt = cleanPrompt(live.hook ? live.hook->prompt : "");
    const auto tabTitle = lookedUp(result_.memory.titles, live.tty).value_or("");
    row.claudeTitle = !tabTitle.empty() ? tabTitle : !prompt.empty() ? prompt : folder;
    const auto note = lookedUp(notes_, row.id).value_or(NotesEntry{});
    row.title = note.title.value_or(row.claudeTitle);
    row.renamed = note.title.has_value();
    row.memo = note.memo;
    row.subtitle = subtitle(live, row.state, prompt);
    // The two lines never repeat each other.
    if (row.subtitle == row.title) row.subtitle = folder;
  }

  const RefreshInputs& inputs_;
  Time now_;
  Time today_;
  std::set<std::string_view> pins_;
  std::map<std::string, NotesEntry> notes_;
  RefreshResult& result_;
};

}  // namespace

bool titlesWanted(const RefreshMemory& memory, const std::set<std::string>& ttys, bool visible,
                  Time now) {
  // Titles from the future are from before the clock was set back.
  const auto older = [&](Seconds span) {
    return memory.titlesAt > now || now - memory.titlesAt > span;
  };
  const bool newTab =
      !std::includes(memory.titleTried.begin(), memory.titleTried.end(), ttys.begin(), ttys.end());
  return !ttys.empty() &&
         ((visible && older(titlesWhileVisible)) || (newTab && older(titlesForNewTab)));
}

RefreshResult refreshPass(const RefreshInputs& inputs, RefreshMemory memory, Time now) {
  RefreshResult result;
  result.memory = std::move(memory);
  keepTitles(inputs, now, result.memory);
  const auto liveBefore = sessionsIn(result.memory);
  followSessions(inputs, now, result);
  giveCharacters(inputs, liveBefore, now, result);
  RowBuilder builder(inputs, now, result);
  for (const auto& live : inputs.live) result.rows.push_back(builder.row(live));
  orderRows(result.rows, inputs.choices.pins);
  if (!inputs.choices.readOnly) {
    result.snapshot = autosnapshot(result.rows, result.memory.snapshot, now);
  }
  const auto alive = [&](std::int32_t pid) { return inputs.withoutRow.contains(pid); };
  result.burst = detectBurst(result.rows, result.memory.burst, alive, now);
  return result;
}

}  // namespace zelvane
