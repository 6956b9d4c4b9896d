// The one clock of everything that moves in the column. Without the toolkit.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>

#include "core/time.h"

namespace zelvane {

/// Something that changes its look at moments it knows. Moments are seconds of the driver's clock.
class Moving {
 public:
  virtual ~Moving() = default;
  /// Whether any part of it can be seen.
  virtual bool seen() const = 0;
  /// When it changes next; nothing when it is at rest. Later than the latest `advance`.
  virtual std::optional<Seconds> due() const = 0;
  /// Changes to what it is to look like at the moment.
  virtual void advance(Seconds now) = 0;
};

/// Wakes up when the next of the things that can be seen is due, and only then: nothing that is
/// hidden, scrolled away or at rest costs anything. Main thread.
class AnimationDriver {
 public:
  struct Options {
    std::function<Seconds()> now;  ///< never goes back
    /// Calls `wake` once after the pause, instead of what was asked for before; never for nothing.
    std::function<void(std::optional<Seconds>)> wakeAfter;
  };
  /// How much earlier than asked for a wake-up may come, and what is due by then is done at once.
  static constexpr Seconds leeway{0.02};

  explicit AnimationDriver(Options options);
  AnimationDriver(const AnimationDriver&) = delete;
  AnimationDriver& operator=(const AnimationDriver&) = delete;

  Seconds now() const { return options_.now(); }
  /// From here on it is woken when it is due, until it is at rest or found unseen. To be called
  /// whenever it is painted: what is painted can be seen.
  void painted(Moving& thing);
  /// Its moments changed.
  void changed(Moving& thing);
  /// It goes away.
  void forget(Moving& thing);
  /// Whether anything in the column can be seen at all.
  void setRunning(bool running);
  void wake();

  std::uint64_t wakeUps() const { return wakeUps_; }

 private:
  void schedule();

  Options options_;
  bool running_ = true;
  std::set<Moving*> active_;
  std::optional<Seconds> wakesAt_;
  std::uint64_t wakeUps_ = 0;
};

/// The first multiple of the period after the moment. Things with one rhythm fall due together.
Seconds nextBeat(Seconds after, Seconds period);

}  // namespace zelvane
