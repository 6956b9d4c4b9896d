// Which conversations of a snapshot are to be reopened, and how. Pure.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// One conversation of a snapshot. The texts come from files, and may hold anything.
struct RestoreItem {
  std::string sid;
  std::string folder;
  std::string title;
  std::string terminal;  ///< the program that its tab was in; empty when not known

  bool operator==(const RestoreItem&) const = default;
};

struct SkippedItem {
  RestoreItem item;
  std::string reason;  ///< for the user
};

struct RestorePlan {
  std::vector<RestoreItem> open;
  std::vector<SkippedItem> skipped;
};

/// What a plan depends on besides the snapshot.
struct RestoreFacts {
  std::set<std::string> running;           ///< session ids
  std::map<std::string, double> openedAt;  ///< when an earlier run opened each, since 1970
  std::function<bool(const std::string&)> folderExists;
};

/// In the snapshot's order. What was opened since the snapshot was made is left out; when `exact`,
/// since that very conversation was closed.
RestorePlan planRestore(const Json& snapshot, bool exact, const RestoreFacts& facts);

/// When a conversation of the snapshot that is opened now counts as opened: not before it was
/// closed, though the clock was set back since.
Time countsAsOpenedAt(const Json& snapshot, Time now);

/// Whether the text can be a session id: letters, digits, "-" and "_", and not an option.
bool isSessionId(const std::string& text);

/// The words of the command that resumes the conversation: in the user's own shell, so that the
/// search path is theirs, and which stays when the conversation ends, is stopped or interrupted.
std::vector<std::string> resumeCommand(const std::string& shell, const std::string& sid);

/// The session that a client's command line resumes; nothing when it is another command.
std::optional<std::string> resumedSession(const std::vector<std::string>& arguments);

/// The session that one of our own shells will resume or has resumed.
std::optional<std::string> sessionOfShell(const std::vector<std::string>& arguments);

}  // namespace zelvane
