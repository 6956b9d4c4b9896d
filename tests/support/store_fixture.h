// A store for tests: over sessions of values, with its main thread on a thread of its own.
#pragma once

#include <atomic>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/run_loop.h"

#include "app/model/store/store.h"
#include "tests/support/event_counter.h"
#include "tests/support/temporary_folder.h"

namespace zelvane::test {

class StoreFixture : public testing::Test {
 protected:
  StoreFixture() {
    main_ = std::thread([this] { loop_.run(); });
  }
  ~StoreFixture() override {
    onMain([this] { store_.reset(); });
    loop_.stop();
    main_.join();
  }

  ZelvaneStore::Options options() {
    ZelvaneStore::Options result;
    result.sources.claudeProcs = [this](Time) {
      const int running = ++running_;
      EXPECT_EQ(running, 1) << "passes never overlap";
      if (blockPass_) unblock_.waitFor(1);
      const auto procs = [this] {
        const std::lock_guard lock(mutex_);
        return procs_;
      }();
      --running_;
      passes_.add();
      return procs;
    };
    result.sources.tty = [](std::int32_t pid) { return "/dev/pts/" + std::to_string(pid); };
    result.sources.hookRecord = [this](const std::string& id, Time) -> std::optional<HookRecord> {
      const std::lock_guard lock(mutex_);
      if (!hooks_.contains(id)) return std::nullopt;
      return hooks_[id];
    };
    result.defaults = defaults_;
    result.mainThread = loop_.executor();
    result.clock = [] { return timeAt(1'800'000'000); };
    result.notesDir = folder_.path("notes");
    result.dataDir = folder_.path("data");
    result.hookSessions = folder_.path("data/sessions");
    result.watchedFolders = {folder_.path("claude"), folder_.path("data/sessions")};
    result.tick = Seconds(3600);
    result.coalescing = Seconds(0.05);
    return result;
  }

  void create(ZelvaneStore::Options with) {
    store_ = ZelvaneStore::create(std::move(with));
    store_->observe([this](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::passed) published_.add();
      if (change == ZelvaneStore::Change::sessions) redraws_.add();
    });
  }

  void setProcs(std::vector<ClaudeProc> procs) {
    const std::lock_guard lock(mutex_);
    procs_ = std::move(procs);
  }

  /// Runs the task on the store's main thread and waits for it.
  void onMain(const std::function<void()>& task) {
    EventCounter ran;
    loop_.post([&] {
      task();
      ran.add();
    });
    ASSERT_TRUE(ran.waitFor(1));
  }

  /// One pass from request to published rows.
  void pass() {
    const int before = published_.count();
    store_->refreshNow();
    ASSERT_TRUE(published_.waitFor(before + 1));
  }

  TemporaryFolder folder_;
  std::shared_ptr<MemoryDefaults> defaults_ = std::make_shared<MemoryDefaults>();
  EventCounter passes_, published_, redraws_, unblock_;
  std::atomic<bool> blockPass_ = false;
  std::atomic<int> running_ = 0;
  std::mutex mutex_;
  std::vector<ClaudeProc> procs_;
  std::map<std::string, HookRecord> hooks_;
  std::shared_ptr<ZelvaneStore> store_;
  RunLoop loop_;
  std::thread main_;
};

}  // namespace zelvane::test
