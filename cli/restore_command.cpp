#include "cli/restore_command.h"

#include <filesystem>
#include <thread>

#include "platform/home_folder.h"
#include "platform/process_table.h"

#include "core/file_lock.h"
#include "core/localization.h"
#include "core/paths.h"
#include "core/process.h"
#include "core/standard_defaults.h"

#include "app/model/records/session_files.h"
#include "app/model/snapshots/restore_outcome.h"
#include "app/restore/restore_files.h"
#include "app/restore/restore_plan.h"
#include "app/restore/restore_run.h"
#include "app/restore/terminal_choice.h"
#include "app/terminal/place.h"
#include "cli/output.h"

namespace zelvane::cli {
namespace {

void sleepFor(Seconds seconds) { std::this_thread::sleep_for(seconds); }

std::vector<ClaudeProc> liveSessions() {
  auto procs = SessionFiles(ZelvanePaths::claudeSessions(), sleepFor).read(systemTime());
  std::erase_if(procs, [](const ClaudeProc& proc) { return !Procs::tty(proc.pid); });
  return procs;
}

/// By their files; and, what has just been started and has none yet, by what it was started with.
std::set<std::string> runningSessions() {
  std::set<std::string> ids;
  std::set<std::int32_t> known;
  for (const auto& proc : liveSessions()) {
    ids.insert(proc.sessionId);
    known.insert(proc.pid);
  }
  for (const auto& [pid, tty] : Proc::claudeTTYs()) {
    if (known.contains(pid)) continue;
    if (auto id = resumedSession(platform::arguments(pid))) ids.insert(std::move(*id));
  }
  return ids;
}

std::set<std::string> startingSessions() {
  std::set<std::string> ids;
  for (const auto pid : platform::processIds()) {
    if (auto id = sessionOfShell(platform::arguments(pid))) ids.insert(std::move(*id));
  }
  return ids;
}

std::set<std::string> withStarting(std::set<std::string> ids) {
  ids.merge(startingSessions());
  return ids;
}

bool folderExists(const std::string& folder) {
  std::error_code failed;
  return std::filesystem::is_directory(folder, failed);
}

/// The sessions that run, with the programs that they are in.
std::vector<SeatedSession> seatedSessions() {
  std::vector<SeatedSession> seated;
  for (const auto& proc : liveSessions()) {
    const auto tty = Procs::tty(proc.pid);
    if (!tty) continue;
    seated.push_back(
        {{proc.pid, *tty}, terminalProgram(placeOf(systemProcesses(), proc.pid, *tty))});
  }
  return seated;
}

std::string wishedTerminal() {
  return get::str(standardDefaults()->values(), "restoreTerminal").value_or("");
}

void say(const std::string& line) { (void)writeOut(line + "\n"); }

std::string nameOf(const RestoreItem& item) {
  const auto folder = restoreName(item.folder);
  return item.title.empty() ? folder : restoreName(item.title) + " — " + folder;
}

void sayPlan(const RestorePlan& plan) {
  if (plan.open.empty()) {
    say(nothingToRestore);
  } else {
    say(LF("%d개를 열어요.", {static_cast<std::int64_t>(plan.open.size())}));
  }
  for (const auto& item : plan.open) say("  + " + nameOf(item));
  for (const auto& [item, reason] : plan.skipped) say("  - " + nameOf(item) + " (" + reason + ")");
}

/// The shell that the user works with.
std::string usersShell() {
  const auto shell = ZelvanePaths::env("SHELL");
  return shell && shell->starts_with('/') ? *shell : platform::loginShell();
}

RestoreDoors systemDoors(Terminal& terminal, const OpenedRecord& record, const Json& snapshot) {
  const auto open = [&terminal, shell = usersShell()](const RestoreItem& item) {
    const auto place = chooseTerminal(item.terminal, seatedSessions(), wishedTerminal());
    return terminal.open(item.folder, resumeCommand(shell, item.sid), place.near, place.program);
  };
  return {.running = runningSessions,
          .starting = startingSessions,
          .open = open,
          .remember =
              [&](const std::string& sid) {
                record.add(sid, countsAsOpenedAt(snapshot, systemTime()));
              },
          .say = say,
          .pause = sleepFor,
          .clock = systemTime};
}

Json snapshotOrNone() { return snapshotToRestore().value_or(Json::object()); }

RestorePlan currentPlan(const Json& snapshot, bool exact, const OpenedRecord& record) {
  return planRestore(snapshot, exact,
                     {.running = withStarting(runningSessions()),
                      .openedAt = record.openedAt(),
                      .folderExists = folderExists});
}

}  // namespace

ExitCode restore(const RestoreOptions& options) {
  const OpenedRecord record(ZelvanePaths::restored());
  if (options.dryRun) {
    sayPlan(currentPlan(snapshotOrNone(), options.exact, record));
    return fine;
  }
  const FileLock::Scope turn(ZelvanePaths::restored() + ".lock", FileLock::Wait::no);
  if (!turn && turn.error() == std::errc::operation_would_block) {
    writeError(L("다른 zelvane restore 가 열고 있어요.") + "\n");
    return failed;
  }
  const auto snapshot = snapshotOrNone();
  const auto plan = currentPlan(snapshot, options.exact, record);
  sayPlan(plan);
  if (plan.open.empty()) return fine;
  keepNamedSnapshot();
  Terminal terminal;
  return runRestore(plan, systemDoors(terminal, record, snapshot)) == 0 ? fine : failed;
}

}  // namespace zelvane::cli
