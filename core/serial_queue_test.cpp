#include "core/serial_queue.h"

#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "core/run_loop.h"

#include "tests/support/event_counter.h"

namespace zelvane {
namespace {

using test::EventCounter;

TEST(SerialQueue, RunsTasksInOrderOneAtATime) {
  std::vector<int> order;  // unguarded on purpose: only the queue touches it
  EventCounter finished;
  SerialQueue queue("test");
  for (int i = 0; i < 100; ++i) {
    queue.post([&order, &finished, i] {
      order.push_back(i);
      finished.add();
    });
  }
  ASSERT_TRUE(finished.waitFor(100));
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(SerialQueue, RunsDelayedAndRepeatedTasks) {
  EventCounter once;
  EventCounter often;
  SerialQueue queue("test");
  const auto start = std::chrono::steady_clock::now();
  queue.postAfter(Seconds(0.05), [&] { once.add(); });
  queue.postEvery(Seconds(0.01), [&] { often.add(); });
  ASSERT_TRUE(once.waitFor(1));
  EXPECT_GE(std::chrono::steady_clock::now() - start, Seconds(0.05));
  EXPECT_TRUE(often.waitFor(3));
}

TEST(SerialQueue, DropsWaitingTasksAtItsEnd) {
  std::atomic<bool> ran = false;
  {
    SerialQueue queue("test");
    queue.postAfter(Seconds(3600), [&] { ran = true; });
  }
  EXPECT_FALSE(ran);
}

TEST(SerialQueue, WaitsForTheRunningTaskAtItsEnd) {
  EventCounter begun;
  EventCounter mayEnd;
  std::atomic<bool> ended = false;
  std::thread other;
  {
    SerialQueue queue("test");
    queue.post([&] {
      begun.add();
      mayEnd.waitFor(1);
      ended = true;
    });
    ASSERT_TRUE(begun.waitFor(1));
    other = std::thread([&] { mayEnd.add(); });
  }
  EXPECT_TRUE(ended);
  other.join();
}

TEST(RunLoop, RunsPostedTasksUntilStopped) {
  int sum = 0;
  Executor late;
  {
    RunLoop loop;
    late = loop.executor();
    std::thread other([&loop, post = loop.executor(), &sum] {
      for (int i = 1; i <= 10; ++i) post([&sum, i] { sum += i; });
      post([&loop] { loop.stop(); });
    });
    loop.run();
    other.join();
  }
  EXPECT_EQ(sum, 55);
  late([&sum] { sum = 0; });
  EXPECT_EQ(sum, 55) << "a task for a loop that is gone is dropped";
}

}  // namespace
}  // namespace zelvane
