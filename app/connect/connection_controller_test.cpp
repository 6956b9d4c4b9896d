#include "app/connect/connection_controller.h"

#include <gtest/gtest.h>
#include <thread>

#include "tests/support/event_counter.h"

namespace zelvane {
namespace {

using State = ConnectionController::State;
using test::EventCounter;

/// A controller over a connection of values; the tests' thread plays the main thread.
class ConnectionControllerTest : public testing::Test {
 protected:
  void create(bool readOnly = false) {
    controller_ = ConnectionController::create({.install =
                                                    [this] {
                                                      ++installs_;
                                                      return outcome_;
                                                    },
                                                .uninstall =
                                                    [this] {
                                                      ++uninstalls_;
                                                      return outcome_;
                                                    },
                                                .state = [this] { return state_; },
                                                .confirmDisconnect =
                                                    [this] {
                                                      ++questions_;
                                                      return confirms_;
                                                    },
                                                .turnOnLoginItem = [this] { ++loginItems_; },
                                                .defaults = defaults_,
                                                .mainThread =
                                                    [this](std::function<void()> task) {
                                                      const std::lock_guard lock(mutex_);
                                                      tasks_.push_back(std::move(task));
                                                      posted_.add();
                                                    },
                                                .readOnly = readOnly,
                                                .messageLife = Seconds(0.01)});
  }
  /// Runs the next thing that is handed to the main thread.
  void runNext() {
    ASSERT_TRUE(posted_.waitFor(++ran_));
    std::function<void()> task;
    {
      const std::lock_guard lock(mutex_);
      task = tasks_.at(static_cast<std::size_t>(ran_) - 1);
    }
    task();
  }

  State state_ = State::notConnected;
  Outcome outcome_ = Outcome::ok("good");
  bool confirms_ = true;
  std::atomic<int> installs_ = 0;
  std::atomic<int> uninstalls_ = 0;
  int loginItems_ = 0;
  int questions_ = 0;
  int ran_ = 0;
  std::mutex mutex_;
  std::vector<std::function<void()>> tasks_;
  EventCounter posted_;
  std::shared_ptr<MemoryDefaults> defaults_ = std::make_shared<MemoryDefaults>();
  std::shared_ptr<ConnectionController> controller_;
};

TEST_F(ConnectionControllerTest, ConnectsOnceAndForgetsTheGoodNews) {
  defaults_->set("connectCardDismissed", true);
  create();
  EXPECT_EQ(controller_->state(), State::notConnected);
  EXPECT_TRUE(controller_->cardDismissed());
  controller_->connect(true);
  EXPECT_TRUE(controller_->busy());
  controller_->connect(true);
  controller_->disconnect();
  state_ = State::connected;
  runNext();
  EXPECT_FALSE(controller_->busy());
  EXPECT_EQ(controller_->message(), "good");
  EXPECT_EQ(controller_->state(), State::connected);
  EXPECT_EQ(installs_, 1);
  EXPECT_EQ(uninstalls_, 0) << "one thing at a time";
  EXPECT_EQ(loginItems_, 1);
  EXPECT_FALSE(controller_->cardDismissed());
  EXPECT_EQ(defaults_->value("connectCardDismissed"), Json(false));
  runNext();
  EXPECT_EQ(controller_->message(), "");
}

TEST_F(ConnectionControllerTest, BadNewsStays) {
  create();
  outcome_ = Outcome::failed("bad");
  controller_->connect(true);
  runNext();
  EXPECT_EQ(controller_->message(), "bad");
  EXPECT_EQ(loginItems_, 0);
  outcome_ = Outcome::ok("good");
  state_ = State::helperMissing;
  controller_->connect(false);
  runNext();
  runNext();
  EXPECT_EQ(controller_->message(), "good") << "something is still wrong";
  EXPECT_EQ(loginItems_, 0);
}

TEST_F(ConnectionControllerTest, DisconnectsOnlyWhenConfirmed) {
  state_ = State::connected;
  create();
  confirms_ = false;
  controller_->disconnect();
  EXPECT_FALSE(controller_->busy());
  confirms_ = true;
  controller_->disconnect();
  state_ = State::notConnected;
  runNext();
  EXPECT_EQ(uninstalls_, 1);
  EXPECT_EQ(questions_, 2);
  EXPECT_EQ(controller_->state(), State::notConnected);
  EXPECT_EQ(controller_->message(), "good");
}

TEST_F(ConnectionControllerTest, ReadOnlyDoesNothingButLook) {
  create(true);
  controller_->connect(true);
  controller_->disconnect();
  EXPECT_FALSE(controller_->busy());
  EXPECT_EQ(questions_, 0);
  state_ = State::settingsUnreadable;
  controller_->refresh();
  EXPECT_EQ(controller_->state(), State::settingsUnreadable);
}

TEST_F(ConnectionControllerTest, MayGoWhileItWorks) {
  create();
  controller_->connect(false);
  controller_.reset();  // waits for what has begun; what has not never will
  for (const auto& task : tasks_) task();
  EXPECT_EQ(tasks_.size(), static_cast<std::size_t>(installs_));
}

}  // namespace
}  // namespace zelvane
