#include "core/serial_queue.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <thread>

#include "platform/thread_name.h"

namespace zelvane {
namespace {

using Timer = asio::steady_timer;

Timer::duration asDuration(Seconds seconds) {
  return std::chrono::duration_cast<Timer::duration>(seconds);
}

void repeat(const std::shared_ptr<Timer>& timer, Seconds interval, SerialQueue::Task task) {
  timer->expires_after(asDuration(interval));
  timer->async_wait([timer, interval, task = std::move(task)](const asio::error_code& failed) {
    if (failed) return;
    task();
    repeat(timer, interval, task);
  });
}

}  // namespace

struct SerialQueue::State {
  asio::io_context context{1};
  asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
  std::thread thread;
};

SerialQueue::SerialQueue(const std::string& label) : state_(std::make_unique<State>()) {
  state_->thread = std::thread([state = state_.get(), label] {
    platform::nameThisThread(label);
    state->context.run();
  });
}

SerialQueue::~SerialQueue() { stop(); }

void SerialQueue::stop() {
  state_->context.stop();
  if (state_->thread.joinable()) state_->thread.join();
}

void SerialQueue::post(Task task) { asio::post(state_->context, std::move(task)); }

void SerialQueue::postAfter(Seconds delay, Task task) {
  const auto timer = std::make_shared<Timer>(state_->context, asDuration(delay));
  timer->async_wait([timer, task = std::move(task)](const asio::error_code& failed) {
    if (!failed) task();
  });
}

void SerialQueue::postEvery(Seconds interval, Task task) {
  repeat(std::make_shared<Timer>(state_->context), interval, std::move(task));
}

}  // namespace zelvane
