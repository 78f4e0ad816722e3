#include "cli/terminal_progress.h"

#include <algorithm>
#include <cstdio>

#include "platform/terminal.h"

namespace rowvane::cli {
namespace {

constexpr auto kFirstUpdate = std::chrono::milliseconds(300);
constexpr auto kUpdateEvery = std::chrono::milliseconds(100);
constexpr uint64_t kBarWidth = 30;

}  // namespace

TerminalProgress::TerminalProgress(bool quiet) : visible_(!quiet && platform::is_error_terminal()) {}

TerminalProgress::~TerminalProgress() {
  erase();
}

void TerminalProgress::begin(std::string_view caption) {
  const std::lock_guard lock(mutex_);
  erase();
  caption_ = caption;
  next_update_ = Clock::now() + kFirstUpdate;
}

void TerminalProgress::report(uint64_t done, uint64_t total) {
  if (!visible_ || total == 0) return;
  const std::lock_guard lock(mutex_);
  const auto now = Clock::now();
  if (now < next_update_) return;
  next_update_ = now + kUpdateEvery;
  const uint64_t percent = std::min<uint64_t>(100, done / std::max<uint64_t>(1, total / 100));
  const std::string bar(percent * kBarWidth / 100, '#');
  std::fprintf(stderr, "\r%s [%-30s] %3u%%", caption_.c_str(), bar.c_str(), static_cast<unsigned>(percent));
  std::fflush(stderr);
  drawn_ = true;
}

void TerminalProgress::erase() {
  if (drawn_) std::fputs("\r\033[K", stderr);
  drawn_ = false;
}

}  // namespace rowvane::cli
