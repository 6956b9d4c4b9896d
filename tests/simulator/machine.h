// A machine that is none: processes, terminals, folders, the clock it was started by, and how much
// room its disk has. The files on it are real.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/time.h"

#include "tests/simulator/dice.h"

namespace zelvane::test {

/// How much more this process can write into any one file: a disk that runs full.
class DiskSpace {
 public:
  static void limit(std::uint64_t bytes);
  static void unlimit();
  static bool isLimited();

  /// Writes of the world itself, whatever the product has left.
  class Unlimited {
   public:
    Unlimited();
    ~Unlimited();
    Unlimited(const Unlimited&) = delete;
    Unlimited& operator=(const Unlimited&) = delete;

   private:
    std::uint64_t before_;
  };
};

class Machine {
 public:
  explicit Machine(std::string folder);

  std::string claudeSessions() const { return folder_ + "/claude"; }
  std::string dataDir() const { return folder_ + "/data"; }
  std::string hookSessions() const { return dataDir() + "/sessions"; }
  std::string notesDir() const { return folder_ + "/notes"; }
  std::string settings() const { return folder_ + "/settings.json"; }

  /// A process on a terminal, or on none. Ids are few, so that they are soon used again.
  std::int32_t spawn(const std::string& tty);
  void end(std::int32_t pid) { processes_.erase(pid); }
  bool alive(std::int32_t pid) const { return processes_.contains(pid); }
  /// The process's terminal; nothing without a process or a terminal.
  std::optional<std::string> tty(std::int32_t pid) const;

  /// A terminal that nobody is on.
  std::string openTty();

  bool folderExists(const std::string& path) const { return folders_.contains(path); }
  void setFolder(const std::string& path, bool exists);
  const std::set<std::string>& folders() const { return folders_; }

  Time bootTime() const { return bootTime_; }
  /// Everything that runs ends, and the machine starts anew.
  void reboot();

  /// Writes a file in place, as the clients do, and lets its time be the world's.
  static void write(const std::string& path, const std::string& bytes);
  static void remove(const std::string& path);
  /// Lets the time of a file that the product wrote be the world's.
  static void date(const std::string& path);

 private:
  std::string folder_;
  std::map<std::int32_t, std::string> processes_;  ///< terminals by process
  std::set<std::string> folders_;                  ///< those that sessions work in
  std::int32_t lastPid_;
  Time bootTime_;
};

}  // namespace zelvane::test
