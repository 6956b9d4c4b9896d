#include "core/run_loop.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/signal_set.hpp>
#include <csignal>

namespace zelvane {

struct RunLoop::State {
  asio::io_context context{1};
  asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
  asio::signal_set signals{context};
  std::function<void(int)> handler;

  void awaitSignal() {
    signals.async_wait([this](const asio::error_code& failed, int signal) {
      if (failed) return;
      handler(signal);
      awaitSignal();
    });
  }
};

RunLoop::RunLoop() : state_(std::make_shared<State>()) {}

RunLoop::~RunLoop() = default;

void RunLoop::post(std::function<void()> task) { asio::post(state_->context, std::move(task)); }

Executor RunLoop::executor() {
  return [weak = std::weak_ptr<State>(state_)](std::function<void()> task) {
    if (const auto state = weak.lock()) asio::post(state->context, std::move(task));
  };
}

void RunLoop::onSignal(std::function<void(int signal)> handler) {
  state_->handler = std::move(handler);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGWINCH}) state_->signals.add(signal);
  state_->awaitSignal();
}

void RunLoop::run() { state_->context.run(); }

void RunLoop::stop() { state_->context.stop(); }

}  // namespace zelvane
