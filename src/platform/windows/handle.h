// Handles of the system, and what all calls take that open and use them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include <windows.h>

namespace rowvane::platform {

// Others may read, write, rename and delete what is open.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// One call reads or writes no more; it counts with 32 bits.
inline constexpr size_t kMostBytesAtOnce = size_t{1} << 30;

// The handle that headers for both systems hold as a number.
inline HANDLE system_handle(intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// Closes itself.
class Handle {
 public:
  explicit Handle(HANDLE handle = INVALID_HANDLE_VALUE) : handle_(handle) {}
  ~Handle() { close(); }
  Handle(Handle&& other) noexcept : handle_(other.release()) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) {
      close();
      handle_ = other.release();
    }
    return *this;
  }

  // Windows knows two values for a handle that is none.
  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr; }
  HANDLE get() const { return handle_; }
  HANDLE release() { return std::exchange(handle_, INVALID_HANDLE_VALUE); }
  void close() {
    if (is_open()) ::CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
  }

 private:
  HANDLE handle_;
};

}  // namespace rowvane::platform
