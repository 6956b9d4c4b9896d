// One door to every terminal program: what its tabs are called, which is in front, jump to one,
// open one. A tab is known by its tty.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/terminal/terminal_host.h"

namespace zelvane {

/// A process of the user's and the tty that it runs on.
struct TerminalSession {
  std::int32_t pid = 0;
  std::string tty;
};

/// What came of a wish of the user's.
struct TerminalResult {
  bool ok = false;
  std::string reason{};  ///< one sentence for the user when not ok
};

class TerminalSet;

/// Any thread; every call blocks, so none belongs on the main thread. Questions (titles, frontTTY,
/// support) and wishes (jump, open) have connections of their own: a wish never waits for a
/// question. Only terminals that the sessions lie in are asked, and asking starts none of them. A
/// terminal that does not answer costs its own time limit (two seconds at most) and nothing of the
/// others' answers.
class Terminal {
 public:
  using Session = TerminalSession;
  using JumpResult = TerminalResult;
  using OpenResult = TerminalResult;

  /// The terminals of this machine.
  Terminal();
  Terminal(std::unique_ptr<TerminalSet> questions, std::unique_ptr<TerminalSet> wishes);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// The tabs' titles by tty, as programs set them but without control characters. Tabs without a
  /// title of their own are left out.
  std::map<std::string, std::string> titles(const std::vector<Session>& sessions);
  /// The tty of the session that the user sees and types into; nothing when there is any doubt.
  std::optional<std::string> frontTTY(const std::vector<Session>& sessions);
  /// Shows the session's tab and raises its window. Not ok when it could do less than that.
  JumpResult jump(const std::string& tty, std::int32_t pid);
  /// Runs the command in the folder in a new tab: in the terminal of the session when one is given,
  /// else in a new one of the program, else in whatever terminal there is. Ok means that the
  /// terminal was told to.
  OpenResult open(const std::string& folder, const std::vector<std::string>& argv,
                  const std::optional<Session>& near = std::nullopt,
                  const std::string& program = {});
  /// One entry for each terminal program that the sessions lie in.
  std::vector<Support> support(const std::vector<Session>& sessions);

 private:
  struct Side;
  std::unique_ptr<Side> questions_;
  std::unique_ptr<Side> wishes_;
};

}  // namespace zelvane
