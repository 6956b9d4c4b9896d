// A Claude Code client that is none: it writes its session file and runs hooks in the order and
// with the delays of a real one, and knows what it truly does.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "core/json_file.h"

#include "app/model/records/session.h"
#include "tests/simulator/world.h"

namespace zelvane::test {

class Client {
 public:
  enum class Start { fresh, resume };
  enum class End { exit, killed };

  /// Starts on the terminal; `sid` is that of the conversation that it resumes, or a new one.
  Client(World& world, std::string tty, std::string cwd, std::string sid, Start start);

  const std::string& sid() const { return sid_; }
  const std::string& tty() const { return tty_; }
  std::int32_t pid() const { return pid_; }
  bool isAlive() const { return alive_; }
  /// Its process is gone and nothing of it is still to come.
  bool isForgotten() const { return !alive_ && pending_ == 0; }
  /// Whether its file and its record, once both are written, tell the whole truth.
  bool isHonest() const { return honest_ && pending_ == 0 && alive_; }
  void distrust() { honest_ = false; }

  /// What a row must show for it, given when the user last looked at the session.
  ZelvaneState truth(std::optional<double> lookedAt) const;
  /// Since when it works or is done, since 1970; nothing when that cannot be known from outside.
  std::optional<double> truthSince() const;

  /// Does whatever comes next.
  void act();
  /// Begins another conversation in its place.
  void clear();
  /// The process ends. Killed, it leaves its file behind and tells nobody.
  void end(End how);

 private:
  enum class Doing { starting, idle, working, asking, questioned };

  void begin(const std::string& status, const std::string& source, double hookAfter);
  void prompt();
  void work();
  void ask();
  void question();
  void answer();
  void dismiss();
  void finish();
  void startBackground(const char* type);
  void endBackground();
  void todos();
  std::string restingStatus() const;

  void later(double seconds, const std::function<void()>& task);
  void file(const std::string& status);
  void hook(const std::string& event, Json payload, double delay = 0.03);
  void deliver(const Json& payload);
  Json backgroundTasks() const;

  World& world_;
  std::shared_ptr<bool> exists_ = std::make_shared<bool>(true);
  std::string tty_;
  std::string cwd_;
  std::string sid_;
  std::int32_t pid_;
  bool alive_ = true;
  bool honest_ = true;
  Doing doing_ = Doing::starting;
  bool halfWritten_ = false;  ///< the file, at this moment
  int writes_ = 0;            ///< that took time
  int pending_ = 0;           ///< writes and hooks under way
  std::string clearedFrom_;
  Seconds clearedAt_{-1e9};
  int dialog_ = 0;                    ///< number of the dialog that is open, or was last
  double turnBegan_ = 0;              ///< since 1970
  Seconds brokenOffAt_{-1e9};         ///< when a turn last was, by uptime
  bool turnIsClear_ = false;          ///< it began when all had heard that the one before was over
  std::optional<double> finishedAt_;  ///< end of the last turn, unless it was broken off
  struct Work {
    std::string type;
    double seen = 0;
  };
  std::map<std::string, Work> background_;
};

}  // namespace zelvane::test
