// What developers want to know of a running program: which members were read, what a pass cost. Written to
// the standard error stream, a line each, while its category is switched on; users see none of it otherwise.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace rowvane {

enum class LogCategory : uint8_t { kOpening, kSaving, kPasses, kRecovery };

// Switches on the categories that TEXT names, "opening,saving,passes,recovery" in any order or "all", and all
// others off. False, and nothing is changed, when TEXT holds another word.
bool set_log_categories(std::string_view text);
// As the environment variable ROWVANE_LOG says, if it is there; a wrong word in it is told and ignored.
void set_log_categories_from_environment();

bool is_logged(LogCategory category);

// Writes "rowvane: CATEGORY: TEXT", if the category is on. Any thread may call it; lines do not mix.
void write_log(LogCategory category, std::string_view text);

// Writes a line with the milliseconds of its life when it ends: WHAT it was, then what was noted. Costs
// nothing worth measuring while the category is off.
class LogScope {
 public:
  LogScope(LogCategory category, std::string_view what);
  ~LogScope();
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;

  // Adds ", COUNT UNIT" to the line.
  void note(uint64_t count, std::string_view unit);

 private:
  LogCategory category_;
  bool logged_;
  std::string text_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace rowvane
