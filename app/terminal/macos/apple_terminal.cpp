#include "app/terminal/macos/apple_terminal.h"

#include "app/terminal/apple_terminal_script.h"
#include "app/terminal/programs.h"

namespace zelvane {
namespace {

constexpr Seconds listLimit{8};
constexpr Seconds frontLimit{3};
constexpr Seconds openLimit{6};
/// Between a tab's first moment and its shell's the system takes in no longer line.
constexpr std::size_t longestTyped = 1000;

}  // namespace

bool AppleTerminalHost::owns(const Place& place) const { return place.owner().name == "Terminal"; }

Titles AppleTerminalHost::titles(const std::vector<Place>&) {
  const auto output = doors_.ask(AppleTerminal::listScript(), listLimit);
  Titles titles;
  for (const auto& [tty, told] : AppleTerminal::parseTitles(output.value_or(""))) {
    auto title = withoutControls(told);
    if (isTTYPath(tty) && !title.empty()) titles[tty] = std::move(title);
  }
  return titles;
}

std::optional<std::string> AppleTerminalHost::front(const std::vector<Place>&,
                                                    const std::optional<DesktopWindow>&) {
  // Terminal would tell its own front tab, whichever program the user looks at.
  if (doors_.frontApplication() != "com.apple.Terminal") return std::nullopt;
  return AppleTerminal::parseFront(
      doors_.ask(AppleTerminal::frontScript(), frontLimit).value_or(""));
}

std::optional<SelectedTab> AppleTerminalHost::select(const Place& place) {
  if (!doors_.run(AppleTerminal::selectScript(place.tty))) return std::nullopt;
  return SelectedTab{.raised = true};
}

bool AppleTerminalHost::open(const OpenRequest& request, const Place&) {
  return openAnywhere(doors_, request);
}

bool AppleTerminalHost::openAnywhere(const AppleTerminalDoors& doors, const OpenRequest& request) {
  const auto command = shellCommand(request.folder, request.argv);
  if (!canBeTyped(request) || command.size() > longestTyped) return false;  // Terminal types it
  return doors.ask(AppleTerminal::openTabScript(command), openLimit) ||
         doors.ask(AppleTerminal::openWindowScript(command), openLimit);
}

Support AppleTerminalHost::support(const Place&) { return {name(), true, true, true, true, ""}; }

}  // namespace zelvane
