#include "core/paths.h"

#include <cstdlib>
#include <filesystem>

#include "platform/data_folder.h"
#include "platform/home_folder.h"

namespace zelvane {
namespace ZelvanePaths {

std::optional<std::string> env(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (!value || !*value) return std::nullopt;
  return value;
}

const std::string& home() {
  static const std::string folder = platform::homeFolder();
  return folder;
}

std::string zelvane() { return env("ZELVANE_DIR").value_or(home() + "/.claude/zelvane"); }

std::string claudeDir() { return env("ZELVANE_CLAUDE_DIR").value_or(home() + "/.claude"); }

std::string claudeSessions() {
  return env("ZELVANE_CLAUDE_SESSIONS").value_or(home() + "/.claude/sessions");
}

std::string hookSessions() { return zelvane() + "/sessions"; }

std::string snapDir() { return zelvane() + "/snapshots"; }

std::string latest() { return env("ZELVANE_SNAPSHOT").value_or(snapDir() + "/latest.json"); }

std::string restored() { return zelvane() + "/restored.json"; }

std::string notes() {
  const char* chosen = std::getenv("ZELVANE_NOTES_DIR");
  if (!chosen) return platform::dataFolder() + "/Zelvane";
  std::error_code failed;
  const auto absolute = std::filesystem::absolute(*chosen ? chosen : ".", failed);
  return failed ? chosen : absolute.string();
}

std::optional<std::string> loginItem() {
  const char* chosen = std::getenv("ZELVANE_LAUNCHAGENT");
  return chosen ? std::optional<std::string>(chosen) : std::nullopt;
}

}  // namespace ZelvanePaths

namespace Paths {

const std::string& home() { return ZelvanePaths::home(); }

const std::string& claudeSessions() {
  static const std::string path = home() + "/.claude/sessions";
  return path;
}

const std::string& zelvane() {
  static const std::string path = home() + "/.claude/zelvane";
  return path;
}

const std::string& hookSessions() {
  static const std::string path = zelvane() + "/sessions";
  return path;
}

const std::string& autosnap() {
  static const std::string path = zelvane() + "/autosnap.json";
  return path;
}

const std::string& rebootsnap() {
  static const std::string path = zelvane() + "/rebootsnap.json";
  return path;
}

}  // namespace Paths
}  // namespace zelvane
