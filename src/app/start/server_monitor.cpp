#include "app/start/server_monitor.h"

#include <utility>

namespace rowvane {

void ServerLifetime::add_object() {
  ++objects_;
  deadline_ = kNever;
}

void ServerLifetime::release_object(Time now) {
  if (objects_ == 0) return;
  if (--objects_ == 0) deadline_ = now + time_out_;
}

ServerMonitor::ServerMonitor(std::chrono::milliseconds time_out, std::function<void()> end_message_loop)
    : end_message_loop_(std::move(end_message_loop)), lifetime_(time_out) {}

void ServerMonitor::start() {
  if (!thread_.joinable()) thread_ = std::thread([this] { watch(); });
}

void ServerMonitor::add_object() {
  const std::lock_guard lock(mutex_);
  lifetime_.add_object();
  changed_.notify_all();
}

void ServerMonitor::release_object() {
  const std::lock_guard lock(mutex_);
  lifetime_.release_object(std::chrono::steady_clock::now());
  changed_.notify_all();
}

void ServerMonitor::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    changed_.notify_all();
  }
  if (thread_.joinable()) thread_.join();
}

void ServerMonitor::watch() {
  std::unique_lock lock(mutex_);
  while (!stopped_) {
    if (lifetime_.is_over(std::chrono::steady_clock::now())) {
      lock.unlock();
      end_message_loop_();
      return;
    }
    if (const auto deadline = lifetime_.deadline(); deadline != ServerLifetime::kNever) {
      changed_.wait_until(lock, deadline);
    } else {
      changed_.wait(lock);
    }
  }
}

}  // namespace rowvane
