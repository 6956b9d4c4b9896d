// Where a session's process sits: its tty, and the program that draws it. Stateless; any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process_table.h"

namespace zelvane {

using Environment = std::map<std::string, std::string, std::less<>>;

/// The process table as a walk needs it.
struct ProcessWorld {
  std::function<std::optional<platform::ProcessInfo>(std::int32_t pid)> info;
  std::function<Environment(std::int32_t pid)> environment;
  std::function<std::vector<std::int32_t>()> ids;
};

/// This machine's process table.
ProcessWorld systemProcesses();

struct Ancestor {
  std::int32_t pid = 0;
  std::string name;  ///< the kernel's short command name

  bool operator==(const Ancestor&) const = default;
};

struct Place {
  std::string tty;
  std::int32_t pid = 0;  ///< the process that the walk began with
  /// Its parents, nearest first, up to and with the first that is known to draw terminals.
  std::vector<Ancestor> ancestors;
  Environment environment;  ///< what the process was started with

  /// The program that the walk ended at, whether it draws terminals or not.
  Ancestor owner() const { return ancestors.empty() ? Ancestor() : ancestors.back(); }
  /// The variable's value; empty when it is not set.
  std::string variable(std::string_view name) const;
};

/// The place of a process that has this tty. Variables tell nothing by themselves: what runs in
/// tmux has those of the terminal that tmux was started from. The parents tell the truth.
Place placeOf(const ProcessWorld& world, std::int32_t pid, const std::string& tty);

/// One place for each tty of the machine that a process has. Looks at every process.
std::vector<Place> allPlaces(const ProcessWorld& world);

/// Whether any process with a tty has the process among its ancestors. Looks at every process.
bool drawsAnyTTY(const ProcessWorld& world, std::int32_t pid);

/// Whether the process is among the place's ancestors.
bool isUnder(const Place& place, std::int32_t pid);

/// The program that draws the place's tab, or "tmux", as one calls it; empty when the walk ended at
/// neither.
std::string terminalProgram(const Place& place);

/// The command that starts the terminal program whose process has this name.
std::string commandOf(const std::string& program);

/// Whether a walk ends at a process of this name: it draws terminals, or lies between one and what
/// runs in it.
bool endsWalk(std::string_view name);

/// Whether the name is that of a tmux server.
bool isTmuxServer(std::string_view name);

/// Whether the text is the path of a terminal device and nothing else: "/dev/" with ASCII letters,
/// digits and slashes.
bool isTTYPath(std::string_view text);

/// Splits "NAME=value" entries, each ended by a zero byte. Of a name that occurs twice the first
/// value counts; what has no "=" is skipped.
Environment parseEnvironment(std::string_view bytes);

/// The text without control characters, invalid UTF-8 repaired: as a program may have set a title.
std::string withoutControls(std::string_view text);

/// The whole text as a decimal number; nothing when it is something else.
std::optional<std::int64_t> decimal(std::string_view text);

/// The text's pieces between the separators; empty pieces are kept.
std::vector<std::string_view> pieces(std::string_view text, char separator);

}  // namespace zelvane
