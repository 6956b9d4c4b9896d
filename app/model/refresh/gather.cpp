#include "app/model/refresh/gather.h"

#include <algorithm>
#include <filesystem>
#include <thread>

#include "core/paths.h"
#include "core/process.h"

#include "app/hook/record_file.h"
#include "app/hook/upkeep.h"
#include "app/model/family/family.h"
#include "app/model/records/row_text.h"
#include "app/model/records/session_files.h"
#include "app/model/refresh/row_rules.h"
#include "app/model/transcripts/transcript_reader.h"
#include "app/terminal/place.h"

namespace zelvane {
namespace {

ClientWord wordOf(const ClaudeProc& proc) { return {proc.status, proc.updatedAt}; }

/// No hook tells that a dialog was answered or a turn interrupted; the client's own file does.
void followClient(LiveSession& live, Time now) {
  if (!live.hook) return;
  HookRecord& hook = *live.hook;
  const auto state = stateByClient(hook.state, hook.updatedAt, wordOf(live.proc), now);
  if (!state) return;
  live.recordOutdated = true;
  hook.state = *state;
  hook.reason.clear();
  hook.updatedAt = live.proc.updatedAt;
  if (*state == "idle") hook.workingSince.reset();
}

std::vector<LiveSession> liveSessions(const RefreshSources& sources, Time now) {
  std::vector<LiveSession> live;
  for (auto& proc : sources.claudeProcs(now)) {
    // No terminal: a session without a tab, or a file left behind by a process that is gone.
    auto tty = sources.tty(proc.pid);
    if (!tty) continue;
    auto hook = sources.hookRecord(proc.sessionId, now);
    live.push_back({std::move(proc), std::move(*tty), std::move(hook)});
    followClient(live.back(), now);
  }
  return live;
}

bool frontMatters(const RefreshInputs& inputs, Time now) {
  return std::any_of(inputs.live.begin(), inputs.live.end(), [&](const LiveSession& live) {
    const auto acked = inputs.choices.acked.find(live.proc.sessionId);
    const bool known = acked != inputs.choices.acked.end();
    return finishedUnseen(live.proc, live.hook,
                          known ? std::optional(timeAt(acked->second)) : std::nullopt, now);
  });
}

std::vector<TerminalSession> terminalSessions(const std::vector<LiveSession>& live) {
  std::vector<TerminalSession> sessions;
  for (const auto& session : live) sessions.push_back({session.proc.pid, session.tty});
  return sessions;
}

TabTitles cleaned(TabTitles titles) {
  for (auto& [tty, title] : titles) title = cleanTitle(title);
  return titles;
}

std::set<std::string> ttysOf(const std::vector<LiveSession>& live) {
  std::set<std::string> ttys;
  for (const auto& session : live) ttys.insert(session.tty);
  return ttys;
}

/// Notes of the live sessions, and of those whose notes may move to them in this pass.
std::map<std::string, NotesEntry> notesOf(const RefreshSources& sources,
                                          const RefreshMemory& memory,
                                          const std::vector<LiveSession>& live) {
  std::map<std::string, NotesEntry> notes;
  const auto add = [&](const std::string& id) {
    if (!notes.contains(id)) notes[id] = sources.notes(id);
  };
  for (const auto& session : live) {
    add(session.proc.sessionId);
    const auto before = memory.sidByPid.find(session.proc.pid);
    if (before != memory.sidByPid.end()) add(before->second);
    const auto pending = memory.pendingCarry.find(session.proc.sessionId);
    if (pending != memory.pendingCarry.end()) add(pending->second.from);
  }
  return notes;
}

std::set<std::string> idsOf(const std::vector<LiveSession>& live) {
  std::set<std::string> ids;
  for (const auto& session : live) ids.insert(session.proc.sessionId);
  return ids;
}

/// Those of the last rows' processes whose row is gone while they live on.
std::set<std::int32_t> aliveWithoutRow(const RefreshSources& sources, const BurstMemory& memory,
                                       const std::set<std::string>& ids) {
  std::set<std::int32_t> alive;
  for (const auto& [id, item] : memory.live) {
    const auto pid = item.at("pid").get<std::int32_t>();
    if (!ids.contains(id) && sources.alive(pid)) alive.insert(pid);
  }
  return alive;
}

/// Walks a session's parents once and remembers where that led.
decltype(RefreshSources::terminalProgram) terminalProgramSource() {
  using Key = std::pair<std::int32_t, std::string>;
  return [known = std::make_shared<std::map<Key, std::string>>()](const TerminalSession& session) {
    const auto [entry, isNew] = known->try_emplace({session.pid, session.tty});
    if (isNew) {
      entry->second = terminalProgram(placeOf(systemProcesses(), session.pid, session.tty));
    }
    return entry->second;
  };
}

/// What the passes remember of transcripts lives as long as the function.
decltype(RefreshSources::modelInfo) transcriptSource() {
  const auto reader = std::make_shared<TranscriptReader>(Paths::home() + "/.claude/projects",
                                                         systemTranscriptFiles());
  return [reader](const std::string& id, const std::optional<std::string>& transcript, Time now) {
    return reader->modelInfo(id, transcript ? transcript : reader->findTranscript(id, now), now);
  };
}

}  // namespace

RefreshSources systemSources(const std::shared_ptr<Terminal>& terminal) {
  const auto pause = [](Seconds seconds) { std::this_thread::sleep_for(seconds); };
  RefreshSources sources;
  sources.home = Paths::home();
  sources.claudeProcs = [files = std::make_shared<SessionFiles>(Paths::claudeSessions(), pause)](
                            Time now) { return files->read(now); };
  sources.tty = Procs::tty;
  sources.hookRecord = [records = std::make_shared<HookRecords>(Paths::hookSessions())](
                           const std::string& id, Time now) { return records->read(id, now); };
  sources.keepRecordUp = [](const ClaudeProc& proc, Time now) {
    (void)changeRecord(
        RecordFolder::in(Paths::zelvane()), proc.sessionId,
        [&](Json& record) { keepUp(record, wordOf(proc), now); }, FileTime::stays);
  };
  sources.terminalProgram = terminalProgramSource();
  sources.terminalTitles = [terminal](const auto& sessions) { return terminal->titles(sessions); };
  sources.frontTTY = [terminal](const auto& sessions) { return terminal->frontTTY(sessions); };
  sources.modelInfo = transcriptSource();
  sources.folderExists = [](const std::string& folder) {
    std::error_code failed;
    return std::filesystem::is_directory(folder, failed);
  };
  sources.alive = Proc::alive;
  sources.friendCount = [] { return Family::all().size(); };
  return sources;
}

RefreshInputs gather(const RefreshSources& sources, const RefreshMemory& memory,
                     UserChoices choices, Time now) {
  RefreshInputs inputs;
  inputs.choices = std::move(choices);
  inputs.home = sources.home;
  inputs.live = liveSessions(sources, now);
  const auto sessions = terminalSessions(inputs.live);
  if (titlesWanted(memory, ttysOf(inputs.live), inputs.choices.visible, now)) {
    inputs.titles = cleaned(sources.terminalTitles(sessions));
  }
  if (frontMatters(inputs, now)) inputs.frontTTY = sources.frontTTY(sessions);
  inputs.notes = notesOf(sources, memory, inputs.live);
  for (auto& live : inputs.live) {
    live.model = sources.modelInfo(live.proc.sessionId,
                                   live.hook ? live.hook->transcriptPath : std::nullopt, now);
  }
  for (auto& live : inputs.live) {
    live.terminal = sources.terminalProgram({live.proc.pid, live.tty});
  }
  inputs.pendingRestore =
      pendingItems(sources.rebootSnapshot(), idsOf(inputs.live), sources.folderExists);
  inputs.withoutRow = aliveWithoutRow(sources, memory.burst, idsOf(inputs.live));
  inputs.friendCount = sources.friendCount();
  return inputs;
}

}  // namespace zelvane
