// Fetches from the machine what one refresh pass looks at. All I/O of a pass is here.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/model/refresh/refresh_pass.h"
#include "app/terminal/terminal.h"

namespace zelvane {

/// The doors to the machine. Each answers with nothing where there is nothing to tell; what has no
/// source yet keeps its default, which is just that.
struct RefreshSources {
  std::string home;  ///< the user's home folder
  std::function<std::vector<ClaudeProc>(Time now)> claudeProcs;
  std::function<std::optional<std::string>(std::int32_t pid)> tty;
  std::function<std::optional<HookRecord>(const std::string& id, Time now)> hookRecord;
  /// Rewrites the session's hook record to fit what the client says in its own file.
  std::function<void(const ClaudeProc&, Time now)> keepRecordUp = [](const auto&, Time) {};
  /// The program that draws a session's tab, or "tmux".
  std::function<std::string(const TerminalSession&)> terminalProgram = [](const auto&) {
    return "";
  };
  /// As the terminals have them.
  std::function<TabTitles(const std::vector<TerminalSession>&)> terminalTitles = [](const auto&) {
    return TabTitles();
  };
  std::function<std::optional<std::string>(const std::vector<TerminalSession>&)> frontTTY =
      [](const auto&) { return std::nullopt; };
  std::function<NotesEntry(const std::string& id)> notes = [](const auto&) { return NotesEntry(); };
  /// `transcript`: the path, when the hook record tells it.
  std::function<ModelInfo(const std::string& id, const std::optional<std::string>& transcript,
                          Time now)>
      modelInfo = [](const auto&, const auto&, Time) { return ModelInfo(); };
  /// The snapshot of what was open before a reboot.
  std::function<std::optional<Json>()> rebootSnapshot = [] { return std::nullopt; };
  std::function<bool(const std::string&)> folderExists = [](const auto&) { return false; };
  std::function<bool(std::int32_t pid)> alive = [](std::int32_t) { return false; };
  std::function<std::size_t()> friendCount = [] { return std::size_t{1}; };
};

/// The sources of this user's machine: the session files and hook records of `Paths`, the process
/// table, the terminals, transcripts.
RefreshSources systemSources(const std::shared_ptr<Terminal>& terminal);

/// Fetches the inputs of a pass. Terminals are asked only when the pass needs their answer.
RefreshInputs gather(const RefreshSources& sources, const RefreshMemory& memory,
                     UserChoices choices, Time now);

}  // namespace zelvane
