// Ending the automation server when nobody uses it any more.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace rowvane {

struct ServerTiming {
  std::chrono::milliseconds time_out{5000};  // from the release of the last object to the end
  std::chrono::milliseconds pause{1000};     // between the end of the message loop and saving the profile
};

// How long the server lives: until `time_out` after the last of its objects was released, unless a new one
// was made by then. A server that never had an object lives on. Knows no clock: callers say what time it is.
class ServerLifetime {
 public:
  using Time = std::chrono::steady_clock::time_point;
  static constexpr Time kNever = Time::max();

  explicit ServerLifetime(std::chrono::milliseconds time_out) : time_out_(time_out) {}

  void add_object();
  // A release without an object is ignored.
  void release_object(Time now);
  // When the server ends; kNever while it is in use.
  Time deadline() const { return deadline_; }
  bool is_over(Time now) const { return now >= deadline_; }

 private:
  std::chrono::milliseconds time_out_;
  int objects_ = 0;
  Time deadline_ = kNever;
};

// Watches the lifetime on a thread of its own and calls END_MESSAGE_LOOP there, once, when it is over.
// Objects may be counted from any thread.
class ServerMonitor {
 public:
  ServerMonitor(std::chrono::milliseconds time_out, std::function<void()> end_message_loop);
  ~ServerMonitor() { stop(); }
  ServerMonitor(const ServerMonitor&) = delete;
  ServerMonitor& operator=(const ServerMonitor&) = delete;

  void start();
  void add_object();
  void release_object();
  // Ends the thread without calling anything.
  void stop();

 private:
  void watch();

  std::function<void()> end_message_loop_;
  std::mutex mutex_;
  std::condition_variable changed_;
  ServerLifetime lifetime_;  // under mutex_
  bool stopped_ = false;     // under mutex_
  std::thread thread_;
};

}  // namespace rowvane
