// Every file and folder that the system reads or writes, named in one place.
// Plain absolute paths, joined as text; no trailing slash of ours. Any thread.
#pragma once

#include <optional>
#include <string>

/// Paths that honour the environment overrides, read anew on every call.
namespace zelvane::ZelvanePaths {

/// The variable's value; nothing when it is unset or empty.
std::optional<std::string> env(const std::string& name);

const std::string& home();     ///< the user's home folder, from the user database, computed once
std::string zelvane();         ///< our data folder; ZELVANE_DIR replaces it
std::string claudeDir();       ///< Claude Code's own folder; ZELVANE_CLAUDE_DIR replaces it
std::string claudeSessions();  ///< Claude Code's session files; ZELVANE_CLAUDE_SESSIONS replaces it
std::string hookSessions();    ///< hook records, in the data folder
std::string snapDir();         ///< snapshots, in the data folder
std::string latest();          ///< the snapshot to restore; ZELVANE_SNAPSHOT replaces it
std::string restored();        ///< what the restore command did, in the data folder
/// The notes folder: "Zelvane" in the user's folder for programs' data. ZELVANE_NOTES_DIR replaces
/// it, also when it is set but empty: then it means the working folder.
std::string notes();
/// The login item's file, when ZELVANE_LAUNCHAGENT is set, if only to nothing.
std::optional<std::string> loginItem();

}  // namespace zelvane::ZelvanePaths

/// The application's own paths: computed once, never from the environment.
namespace zelvane::Paths {

const std::string& home();
const std::string& claudeSessions();
const std::string& zelvane();
const std::string& hookSessions();
const std::string& autosnap();
const std::string& rebootsnap();

}  // namespace zelvane::Paths
