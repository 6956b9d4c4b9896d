// Owns the connection with Claude Code for the application: its state, the last result, and the
// work of connecting off the main thread. Main thread: everything public; results come back through
// the executor that the owner hands in.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/installer/installer.h"
#include "core/run_loop.h"
#include "core/serial_queue.h"
#include "core/user_defaults.h"

namespace zelvane {

class ConnectionController : public std::enable_shared_from_this<ConnectionController> {
 public:
  using State = Installer::State;

  struct Options {
    std::function<Outcome()> install;         ///< on the background queue
    std::function<Outcome()> uninstall;       ///< the same
    std::function<State()> state;             ///< on the main thread
    std::function<bool()> confirmDisconnect;  ///< asks the user, in front of everything else
    std::function<void()> turnOnLoginItem;
    std::shared_ptr<UserDefaults> defaults;
    Executor mainThread;
    bool readOnly = false;  ///< connect and disconnect do nothing
    Seconds messageLife = Seconds(6.0);
  };

  /// Options for this user's machine; what asks the user and the login item are the owner's.
  static Options systemOptions(std::shared_ptr<UserDefaults> defaults, Executor mainThread);

  /// Works out the state at once.
  static std::shared_ptr<ConnectionController> create(Options options);

  State state() const { return state_; }
  /// The last result, for the user; empty when there is nothing to say.
  const std::string& message() const { return message_; }
  /// Connecting or disconnecting is going on.
  bool busy() const { return busy_; }
  /// The user closed the card that offers to connect.
  bool cardDismissed() const { return cardDismissed_; }
  /// Saved at once.
  void setCardDismissed(bool dismissed);
  /// The user has read it.
  void clearMessage();

  /// Works the state out anew. Reads files.
  void refresh();
  /// Connects, then turns on the login item if wished.
  void connect(bool loginItem);
  /// Asks, then disconnects.
  void disconnect();

  /// Calls the observer after every change of what is published, for the life of the controller.
  void observe(std::function<void()> observer) { observers_.push_back(std::move(observer)); }

 private:
  explicit ConnectionController(Options options);
  void run(const std::function<Outcome()>& task, std::function<void(const Outcome&)> then);
  void clearMessageLater();
  void notify();

  Options options_;
  State state_ = State::connected;
  std::string message_;
  bool busy_ = false;
  bool cardDismissed_ = false;
  std::vector<std::function<void()>> observers_;
  SerialQueue q_;  // last: its thread uses the rest
};

}  // namespace zelvane
