// The heart: turns what was gathered from the machine into the rows to show. Pure: the same inputs,
// memory and time always give the same rows, and what must happen outside is part of the result.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/time.h"

#include "app/model/family/assign_friends.h"
#include "app/model/records/claude_proc.h"
#include "app/model/records/hook_record.h"
#include "app/model/records/session.h"
#include "app/model/snapshots/burst.h"
#include "app/model/snapshots/snapshot.h"
#include "app/model/transcripts/model_info.h"
#include "app/notes/notes_entry.h"

namespace zelvane {

/// Cleaned tab titles by tty.
using TabTitles = std::map<std::string, std::string>;

/// One Claude Code process with a terminal, and what is known about its session.
struct LiveSession {
  ClaudeProc proc;
  std::string tty;
  std::optional<HookRecord> hook;
  ModelInfo model{};
  std::string terminal{};  ///< program that draws its tab, or "tmux"; empty when unknown
  /// The hook record's file says less than `hook`, which follows the client's newer word.
  bool recordOutdated = false;
};

/// What the user decided and the pass obeys; copied from the store once per pass.
struct UserChoices {
  std::map<std::string, double> acked;  ///< when each session was last looked at, since 1970
  std::vector<std::string> pins;        ///< pinned session ids, in pin order
  bool visible = true;                  ///< the column can be seen
  bool readOnly = false;                ///< nothing the user owns may change
};

/// Everything one pass looks at, fetched beforehand.
struct RefreshInputs {
  std::vector<LiveSession> live;            ///< in the order of the session files
  std::optional<TabTitles> titles;          ///< when they were fetched anew for this pass
  std::optional<std::string> frontTTY;      ///< when it was needed and is known
  std::map<std::string, NotesEntry> notes;  ///< of live sessions and those they replaced
  UserChoices choices;
  std::vector<Json> pendingRestore;   ///< conversations from before a reboot, to be reopened
  std::set<std::int32_t> withoutRow;  ///< processes that live though their row is gone
  std::string home;                   ///< the user's home folder
  std::size_t friendCount = 1;        ///< how many characters there are
};

/// What the passes remember from one to the next.
struct RefreshMemory {
  /// A title and memo that will move if the new session's hook record says so in time.
  struct Carry {
    std::string from;
    double since = 0;           ///< seconds since 1970
    bool ownCharacter = false;  ///< the new session had one before; else it takes over the old's
    bool operator==(const Carry&) const = default;
  };

  TabTitles titles;
  Time titlesAt = distantPast;
  std::set<std::string> titleTried;              ///< ttys whose titles were asked for
  std::map<std::int32_t, std::string> sidByPid;  ///< the session last seen in each process
  std::map<std::string, Carry> pendingCarry;     ///< by new session id
  FriendMemory friends;
  SnapshotMemory snapshot;
  BurstMemory burst;
};

/// The notes of one session to be copied to another.
struct NotesCarry {
  std::string from;
  std::string to;
  bool operator==(const NotesCarry&) const = default;
};

struct RefreshResult {
  std::vector<ZelvaneSession> rows;        ///< in display order
  std::vector<NotesCarry> carries;         ///< first of all, in this order
  std::vector<std::string> acknowledged;   ///< sessions the user saw finish, to be acknowledged now
  RefreshMemory memory;                    ///< for the next pass
  std::optional<std::string> snapshot;     ///< of the open conversations, to be written now
  std::optional<std::vector<Json>> burst;  ///< conversations that were closed all at once
  bool saveFriends = false;                ///< the characters in `memory` are to be saved
};

/// Whether the pass is due to ask the terminals for their tabs' titles. `ttys` are the live ones.
bool titlesWanted(const RefreshMemory& memory, const std::set<std::string>& ttys, bool visible,
                  Time now);

/// One pass.
RefreshResult refreshPass(const RefreshInputs& inputs, RefreshMemory memory, Time now);

}  // namespace zelvane
