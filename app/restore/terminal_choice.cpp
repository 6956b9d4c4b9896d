#include "app/restore/terminal_choice.h"

#include <algorithm>

namespace zelvane {
namespace {

std::optional<TerminalSession> anyIn(const std::string& program,
                                     const std::vector<SeatedSession>& running) {
  const auto found = std::find_if(running.begin(), running.end(),
                                  [&](const auto& one) { return one.program == program; });
  return found == running.end() ? std::nullopt : std::optional(found->session);
}

/// The program of most sessions, of equals the first; empty when none is known.
std::string busiest(const std::vector<SeatedSession>& running) {
  std::string best;
  std::ptrdiff_t most = 0;
  for (const auto& candidate : running) {
    const auto count = std::count_if(running.begin(), running.end(), [&](const auto& one) {
      return one.program == candidate.program;
    });
    if (candidate.program.empty() || count <= most) continue;
    best = candidate.program;
    most = count;
  }
  return best;
}

}  // namespace

TerminalChoice chooseTerminal(const std::string& cameFrom,
                              const std::vector<SeatedSession>& running, const std::string& wish) {
  if (!cameFrom.empty()) {
    if (const auto near = anyIn(cameFrom, running)) return {near, cameFrom};
    // A multiplexer is no window that could be started.
    if (cameFrom != "tmux") return {std::nullopt, cameFrom};
  }
  const auto program = busiest(running);
  if (!program.empty()) return {anyIn(program, running), program};
  return {std::nullopt, wish};
}

}  // namespace zelvane
