// Variables of the environment that a test sets.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace rowvane::platform {

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
