// A progress bar on the standard error stream.
#pragma once

#include <chrono>
#include <mutex>
#include <string>

#include "core/progress.h"

namespace rowvane::cli {

// Shows nothing when the stream is no terminal, or when QUIET. The bar appears once work takes long enough to
// be seen and is gone when the object is.
class TerminalProgress final : public Progress {
 public:
  explicit TerminalProgress(bool quiet);
  ~TerminalProgress() override;

  void begin(std::string_view caption) override;
  void report(uint64_t done, uint64_t total) override;

 private:
  using Clock = std::chrono::steady_clock;

  void erase();

  bool visible_;
  std::mutex mutex_;
  std::string caption_;
  Clock::time_point next_update_;
  bool drawn_ = false;
};

}  // namespace rowvane::cli
