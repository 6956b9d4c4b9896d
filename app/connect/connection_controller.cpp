#include "app/connect/connection_controller.h"

namespace zelvane {
namespace {

constexpr const char* dismissedKey = "connectCardDismissed";

}  // namespace

ConnectionController::Options ConnectionController::systemOptions(
    std::shared_ptr<UserDefaults> defaults, Executor mainThread) {
  const Installer installer(Installer::systemPlace());
  return {.install = [installer] { return installer.install(bundledParts()); },
          .uninstall = [installer] { return installer.uninstall(); },
          .state = [installer] { return installer.state(); },
          .confirmDisconnect = [] { return false; },
          .turnOnLoginItem = [] {},
          .defaults = std::move(defaults),
          .mainThread = std::move(mainThread)};
}

std::shared_ptr<ConnectionController> ConnectionController::create(Options options) {
  return std::shared_ptr<ConnectionController>(new ConnectionController(std::move(options)));
}

ConnectionController::ConnectionController(Options options)
    : options_(std::move(options)), q_("zelvane.connect") {
  const auto dismissed = options_.defaults->value(dismissedKey);
  cardDismissed_ = dismissed && *dismissed == true;
  refresh();
}

void ConnectionController::setCardDismissed(bool dismissed) {
  cardDismissed_ = dismissed;
  options_.defaults->set(dismissedKey, dismissed);
  notify();
}

void ConnectionController::clearMessage() {
  message_.clear();
  notify();
}

void ConnectionController::refresh() {
  state_ = options_.state();
  notify();
}

void ConnectionController::connect(bool loginItem) {
  if (options_.readOnly || busy_) return;
  run(options_.install, [this, loginItem](const Outcome& outcome) {
    if (outcome.succeeded) {
      if (loginItem) options_.turnOnLoginItem();
      setCardDismissed(false);
    }
    refresh();
    if (outcome.succeeded) clearMessageLater();
  });
}

void ConnectionController::disconnect() {
  if (options_.readOnly || !options_.confirmDisconnect() || busy_) return;
  run(options_.uninstall, [this](const Outcome&) { refresh(); });
}

/// Runs the task on the queue, then the rest on the main thread if there still is a controller.
void ConnectionController::run(const std::function<Outcome()>& task,
                               std::function<void(const Outcome&)> then) {
  busy_ = true;
  notify();
  q_.post([weak = weak_from_this(), task, then = std::move(then), main = options_.mainThread] {
    main([weak, outcome = task(), then] {
      const auto self = weak.lock();
      if (!self) return;
      self->busy_ = false;
      self->message_ = outcome.message;
      then(outcome);
    });
  });
}

/// A success has been read after a while; what went wrong stays.
void ConnectionController::clearMessageLater() {
  q_.postAfter(options_.messageLife, [weak = weak_from_this(), main = options_.mainThread] {
    main([weak] {
      const auto self = weak.lock();
      if (self && self->state_ == State::connected) self->clearMessage();
    });
  });
}

void ConnectionController::notify() {
  for (std::size_t i = 0; i < observers_.size(); ++i) observers_[i]();
}

}  // namespace zelvane
