// In which terminal a conversation is reopened. Pure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/terminal/terminal.h"

namespace zelvane {

/// A running session and the program that draws its tab.
struct SeatedSession {
  TerminalSession session;
  std::string program;  ///< empty when not known
};

struct TerminalChoice {
  std::optional<TerminalSession> near;  ///< open beside this one
  std::string program;                  ///< else start this program; empty: whatever there is
};

/// The program that the conversation was in; else the one that holds most sessions; else the wish.
TerminalChoice chooseTerminal(const std::string& cameFrom,
                              const std::vector<SeatedSession>& running, const std::string& wish);

}  // namespace zelvane
