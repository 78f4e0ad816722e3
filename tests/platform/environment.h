// The process that a test runs in, and variables of its environment that the test sets.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace rowvane::platform {

inline int own_process_id() {
#ifdef _WIN32
  return _getpid();
#else
  return getpid();
#endif
}

// Sets a variable of the environment for one scope; without a value it is taken away.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const char* value) : name_(name) {
    if (const char* const former = std::getenv(name)) former_ = former;
    set(value);
  }
  ~ScopedEnvironment() { set(former_ ? former_->c_str() : nullptr); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  void set(const char* value) const {
#ifdef _WIN32
    _putenv_s(name_, value == nullptr ? "" : value);
#else
    value == nullptr ? unsetenv(name_) : setenv(name_, value, 1);
#endif
  }

  const char* name_;
  std::optional<std::string> former_;
};

}  // namespace rowvane::platform
