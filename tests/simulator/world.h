// The world that the product looks at, and what is true in it: told by the ones who made it so, not
// read back through the code under test.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/json_file.h"

#include "tests/simulator/dice.h"
#include "tests/simulator/journal.h"
#include "tests/simulator/machine.h"
#include "tests/simulator/virtual_time.h"

namespace zelvane::test {

class Client;

/// What a session file says.
struct FileTruth {
  std::int32_t pid = 0;
  std::string sid;
  std::string cwd;
  std::string status;
  double updatedAt = 0;  ///< seconds since 1970
  bool operator==(const FileTruth&) const = default;
};

/// One conversation took another's place in its process.
struct Cleared {
  std::string from;
  std::string to;
  Seconds at{0};          ///< by uptime
  bool wasShown = false;  ///< the one before had a row
};

/// What a terminal says about its tab.
struct TabTitle {
  std::string text;
  Seconds since{0};  ///< by uptime
};

struct World {
  World(std::uint64_t seed, bool verbose, std::string folder);
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  std::string newSid();
  std::string sessionFile(const std::string& name) const {
    return machine.claudeSessions() + "/" + name;
  }
  std::string recordFile(const std::string& sid) const {
    return machine.hookSessions() + "/" + sid + ".json";
  }
  /// What the session's record says, as anyone may read it; an empty object when it cannot be read.
  const Json& record(const std::string& sid);
  /// Notes that a session's record may have changed.
  void recordTouched(const std::string& sid);
  /// The client that runs the session; null when none does.
  Client* clientOf(const std::string& sid) const;
  bool isRunning(const std::string& sid) const { return clientOf(sid) != nullptr; }
  /// Ends a process, whatever it is.
  void endProcess(std::int32_t pid);
  /// Forgets clients that are gone.
  void bury();

  VirtualTime& time = VirtualTime::shared();
  Dice dice;
  Journal journal;
  Machine machine;
  std::vector<std::unique_ptr<Client>> clients;
  std::map<std::string, FileTruth> files;              ///< those that a row can come from, by name
  std::map<std::string, std::uint64_t> recordChanges;  ///< how often, by session
  std::map<std::string, double> lookedAt;     ///< when the user saw the session, since 1970
  std::optional<std::string> front;           ///< terminal of the tab in front
  std::map<std::string, TabTitle> tabTitles;  ///< by terminal
  std::set<std::string> shown;                ///< sessions that had a row last
  std::map<std::string, Seconds> endedAt;     ///< when a session's process ended, by uptime
  std::vector<Cleared> clears;
  std::uint64_t sessionsBegun = 0;
  std::uint64_t hooksSent = 0;
  double latestClock = 0;     ///< the latest that the wall clock ever showed
  Seconds columnSince{1e12};  ///< when the column was started; never, when it does not run
  Seconds diskTrouble{-1e9};  ///< when the disk last was full

 private:
  std::map<std::string, Json> records_;  ///< as they were read since they changed
};

}  // namespace zelvane::test
