#include "core/log.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>

#include "platform/environment_variables.h"

namespace rowvane {
namespace {

// In the order of the enumeration.
constexpr std::array<std::string_view, 4> kCategoryNames = {"opening", "saving", "passes", "recovery"};
constexpr unsigned kAllCategories = (1u << kCategoryNames.size()) - 1;

std::atomic<unsigned> logged_categories = 0;

unsigned bit_of(LogCategory category) {
  return 1u << static_cast<unsigned>(category);
}

// 0 for a word that is none.
unsigned bits_of(std::string_view word) {
  if (word == "all") return kAllCategories;
  for (size_t i = 0; i < kCategoryNames.size(); ++i) {
    if (word == kCategoryNames[i]) return 1u << i;
  }
  return 0;
}

}  // namespace

bool set_log_categories(std::string_view text) {
  unsigned bits = 0;
  while (!text.empty()) {
    const size_t comma = std::min(text.find(','), text.size());
    const unsigned more = bits_of(text.substr(0, comma));
    if (more == 0) return false;
    bits |= more;
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
  logged_categories = bits;
  return true;
}

void set_log_categories_from_environment() {
  std::string text;
  if (!platform::read_environment("ROWVANE_LOG", text) || set_log_categories(text)) return;
  std::fputs("rowvane: ROWVANE_LOG takes opening, saving, passes and recovery, with commas between, or all\n",
             stderr);
}

bool is_logged(LogCategory category) {
  return (logged_categories.load(std::memory_order_relaxed) & bit_of(category)) != 0;
}

void write_log(LogCategory category, std::string_view text) {
  if (!is_logged(category)) return;
  std::string line = "rowvane: ";
  line.append(kCategoryNames[static_cast<size_t>(category)]).append(": ").append(text).append("\n");
  std::fwrite(line.data(), 1, line.size(), stderr);
}

LogScope::LogScope(LogCategory category, std::string_view what)
    : category_(category), logged_(is_logged(category)) {
  if (!logged_) return;
  text_ = what;
  start_ = std::chrono::steady_clock::now();
}

LogScope::~LogScope() {
  if (!logged_) return;
  const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start_;
  std::array<char, 48> milliseconds;
  std::snprintf(milliseconds.data(), milliseconds.size(), ", %.1f ms", elapsed.count());
  write_log(category_, text_.append(milliseconds.data()));
}

void LogScope::note(uint64_t count, std::string_view unit) {
  if (logged_) text_.append(", ").append(std::to_string(count)).append(" ").append(unit);
}

}  // namespace rowvane
