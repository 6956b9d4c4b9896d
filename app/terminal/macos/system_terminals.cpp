#include "app/terminal/system_terminals.h"

#include "platform/child_process.h"

#include "core/localization.h"

#include "app/terminal/apple_terminal_script.h"
#include "app/terminal/macos/apple_terminal.h"
#include "app/terminal/macos/cocoa.h"

namespace zelvane {
namespace {

std::optional<std::string> askScript(const std::string& script, Seconds limit) {
  auto result = platform::runChild(
      {"/usr/bin/osascript", {"-e", script}, std::nullopt, std::vector<std::string>{}, limit});
  if (result.status != 0) return std::nullopt;
  return std::move(result.output);
}

std::string frontNow() {
  if (auto told = frontApplication()) return *told;
  // A program that has just been started has the answer of this moment.
  constexpr Seconds limit(3);
  return AppleTerminal::parseIdentifier(
      askScript(AppleTerminal::frontApplicationScript(), limit).value_or(""));
}

}  // namespace

AppleTerminalDoors appleTerminalDoors() { return {frontNow, askScript, runAppleScript}; }

std::unique_ptr<TerminalSet> systemTerminals() {
  TerminalParts parts;
  parts.processes = systemProcesses();
  // No desktop: Terminal itself raises its windows and tells which tab it shows.
  parts.tmux = std::make_unique<Tmux>();
  parts.hosts.push_back(std::make_unique<AppleTerminalHost>(appleTerminalDoors()));
  parts.adviceWhereHidden = L("macOS에서는 기본 터미널 앱의 탭만 찾아갈 수 있어요.");
  parts.openAnywhere = [doors = appleTerminalDoors()](const OpenRequest& request) {
    return AppleTerminalHost::openAnywhere(doors, request);
  };
  return std::make_unique<TerminalSet>(std::move(parts));
}

}  // namespace zelvane
