#include "app/terminal/place.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/process_environment.h"

#include "core/unicode.h"

namespace zelvane {
namespace {

constexpr std::size_t farthestWalk = 64;

bool drawsTerminals(std::string_view name) {
  // As the kernel cuts them, at 15 bytes. Programs that also have windows of other kinds and many
  // processes of one name (editors) are not here: their walk goes on to the process with a window.
  constexpr std::array<std::string_view, 25> names = {"kitty",
                                                      "konsole",
                                                      "gnome-terminal-",
                                                      "tilix",
                                                      "wezterm-gui",
                                                      "terminator",
                                                      "xfce4-terminal",
                                                      "alacritty",
                                                      "xterm",
                                                      "urxvt",
                                                      "urxvtd",
                                                      "rxvt",
                                                      "st",
                                                      "foot",
                                                      "lxterminal",
                                                      "ptyxis",
                                                      "kgx",
                                                      "mate-terminal",
                                                      "qterminal",
                                                      "terminology",
                                                      "ghostty",
                                                      "deepin-terminal",
                                                      "x-terminal-emul",
                                                      "Terminal",
                                                      "yakuake"};
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<Ancestor> ancestorsOf(const ProcessWorld& world, std::int32_t pid) {
  std::vector<Ancestor> ancestors;
  auto process = world.info(pid);
  while (process && process->parent > 1 && ancestors.size() < farthestWalk) {
    const auto parent = process->parent;
    process = world.info(parent);
    if (!process) break;
    ancestors.push_back({parent, process->name});
    if (endsWalk(process->name)) break;
  }
  return ancestors;
}

}  // namespace

ProcessWorld systemProcesses() {
  return {platform::processInfo,
          [](std::int32_t pid) { return parseEnvironment(platform::processEnvironment(pid)); },
          platform::processIds};
}

std::string Place::variable(std::string_view name) const {
  const auto entry = environment.find(name);
  return entry == environment.end() ? std::string() : entry->second;
}

Place placeOf(const ProcessWorld& world, std::int32_t pid, const std::string& tty) {
  return {tty, pid, ancestorsOf(world, pid), world.environment(pid)};
}

std::vector<Place> allPlaces(const ProcessWorld& world) {
  // The lowest id of a tty is most often the process that it was made for.
  auto ids = world.ids();
  std::sort(ids.begin(), ids.end());
  std::map<std::string, std::int32_t> firsts;
  for (const auto pid : ids) {
    const auto process = world.info(pid);
    if (process && process->tty) firsts.emplace(*process->tty, pid);
  }
  std::vector<Place> places;
  for (const auto& [tty, pid] : firsts) places.push_back(placeOf(world, pid, tty));
  return places;
}

bool drawsAnyTTY(const ProcessWorld& world, std::int32_t pid) {
  const auto ids = world.ids();
  return std::any_of(ids.begin(), ids.end(), [&](std::int32_t id) {
    const auto process = world.info(id);
    if (!process || !process->tty) return false;
    const auto ancestors = ancestorsOf(world, id);
    return std::any_of(ancestors.begin(), ancestors.end(),
                       [&](const Ancestor& one) { return one.pid == pid; });
  });
}

bool isUnder(const Place& place, std::int32_t pid) {
  return std::any_of(place.ancestors.begin(), place.ancestors.end(),
                     [&](const Ancestor& one) { return one.pid == pid; });
}

std::string terminalProgram(const Place& place) {
  const auto name = place.owner().name;
  if (isTmuxServer(name)) return "tmux";
  return drawsTerminals(name) ? commandOf(name) : "";
}

std::string commandOf(const std::string& program) {
  // Servers are started through another command, and the kernel cuts long names.
  constexpr std::array<std::array<const char*, 2>, 5> commands = {
      {{"gnome-terminal-", "gnome-terminal"},
       {"gnome-terminal-server", "gnome-terminal"},
       {"wezterm-gui", "wezterm"},
       {"urxvtd", "urxvt"},
       {"x-terminal-emul", "x-terminal-emulator"}}};
  for (const auto& [process, command] : commands) {
    if (program == process) return command;
  }
  return program;
}

bool endsWalk(std::string_view name) {
  constexpr std::array<std::string_view, 6> multiplexers = {"screen", "SCREEN", "zellij",
                                                            "dtach",  "abduco", "sshd"};
  return isTmuxServer(name) || drawsTerminals(name) ||
         std::find(multiplexers.begin(), multiplexers.end(), name) != multiplexers.end();
}

bool isTmuxServer(std::string_view name) {
  // One system names the server apart from its clients, the other does not; clients have no
  // children that sit on a tty of their own.
  return name == "tmux: server" || name == "tmux";
}

bool isTTYPath(std::string_view text) {
  constexpr std::string_view start = "/dev/";
  constexpr std::size_t longest = 64;
  const auto isPlain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/';
  };
  return text.starts_with(start) && text.size() > start.size() && text.size() <= longest &&
         std::all_of(text.begin(), text.end(), isPlain);
}

Environment parseEnvironment(std::string_view bytes) {
  Environment environment;
  for (const auto entry : pieces(bytes, '\0')) {
    const auto sign = entry.find('=');
    if (sign == entry.npos || sign == 0) continue;
    environment.emplace(entry.substr(0, sign), entry.substr(sign + 1));
  }
  return environment;
}

std::string withoutControls(std::string_view text) {
  auto kept = scalars(text);
  std::erase_if(kept, isControl);
  return utf8(kept);
}

std::optional<std::int64_t> decimal(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::vector<std::string_view> pieces(std::string_view text, char separator) {
  std::vector<std::string_view> list;
  while (true) {
    const auto end = text.find(separator);
    list.push_back(text.substr(0, end));
    if (end == text.npos) return list;
    text.remove_prefix(end + 1);
  }
}

}  // namespace zelvane
