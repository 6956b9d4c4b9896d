// The product's queues in virtual time, without threads: linked in place of core/serial_queue.cpp.
#include <deque>
#include <memory>
#include <set>

#include "core/serial_queue.h"

#include "tests/simulator/virtual_time.h"

namespace zelvane {
namespace {

struct Line {
  bool atOnce = false;
  bool running = false;
  bool stopped = false;
  std::deque<SerialQueue::Task> waiting;

  void run() {
    if (running) return;
    running = true;
    while (!waiting.empty() && !stopped) {
      const auto task = std::move(waiting.front());
      waiting.pop_front();
      task();
    }
    running = false;
  }

  void stop() {
    stopped = true;
    waiting.clear();
  }
};

using LinePtr = std::shared_ptr<Line>;

std::set<LinePtr>& lines() {
  static std::set<LinePtr> all;
  return all;
}

void runAfter(Seconds delay, const LinePtr& line, SerialQueue::Task task) {
  test::VirtualTime::shared().after(delay, [weak = std::weak_ptr(line), task = std::move(task)] {
    const auto there = weak.lock();
    if (!there || there->stopped) return;
    there->waiting.push_back(task);
    there->run();
  });
}

void repeat(Seconds interval, const LinePtr& line, const SerialQueue::Task& task) {
  runAfter(interval, line, [interval, task, weak = std::weak_ptr(line)] {
    task();
    if (const auto there = weak.lock()) repeat(interval, there, task);
  });
}

}  // namespace

struct SerialQueue::State {
  LinePtr line;
};

SerialQueue::SerialQueue(const std::string& label)
    : state_(std::make_unique<State>(State{std::make_shared<Line>()})) {
  // Others wait for the notes' tasks to end, which only works when they run at once.
  state_->line->atOnce = label == "zelvane.notes";
  lines().insert(state_->line);
}

SerialQueue::~SerialQueue() {
  stop();
  lines().erase(state_->line);
}

void SerialQueue::stop() { state_->line->stop(); }

void SerialQueue::post(Task task) {
  const auto& line = state_->line;
  if (!line->atOnce) return runAfter(Seconds(0), line, std::move(task));
  if (line->stopped) return;
  line->waiting.push_back(std::move(task));
  line->run();
}

void SerialQueue::postAfter(Seconds delay, Task task) {
  runAfter(delay, state_->line, std::move(task));
}

void SerialQueue::postEvery(Seconds interval, Task task) { repeat(interval, state_->line, task); }

void test::killQueues() {
  for (const auto& line : lines()) line->stop();
  lines().clear();
}

}  // namespace zelvane
