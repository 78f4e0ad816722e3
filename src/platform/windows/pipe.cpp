#include "platform/pipe.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <windows.h>

#include "platform/windows/handle.h"

namespace rowvane::platform {
namespace {

void close_end(intptr_t& end) {
  if (end != -1) ::CloseHandle(system_handle(std::exchange(end, -1)));
}

}  // namespace

BytePipe::~BytePipe() {
  close_write_end();
  close_read_end();
}

bool BytePipe::create(size_t capacity) {
  close_write_end();
  close_read_end();
  HANDLE read_end = nullptr;
  HANDLE write_end = nullptr;
  const auto room = static_cast<DWORD>(std::min<size_t>(capacity, std::numeric_limits<DWORD>::max()));
  if (::CreatePipe(&read_end, &write_end, nullptr, room) == 0) return false;
  read_end_ = reinterpret_cast<intptr_t>(read_end);
  write_end_ = reinterpret_cast<intptr_t>(write_end);
  return true;
}

size_t BytePipe::write(std::span<const std::byte> bytes) {
  size_t written = 0;
  while (written < bytes.size()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - written, kMostBytesAtOnce));
    DWORD count = 0;
    if (::WriteFile(system_handle(write_end_), bytes.data() + written, wanted, &count, nullptr) == 0) break;
    written += count;
  }
  return written;
}

size_t BytePipe::read(std::span<std::byte> buffer) {
  const auto wanted = static_cast<DWORD>(std::min(buffer.size(), kMostBytesAtOnce));
  DWORD count = 0;
  // A write of no bytes wakes the reader with none; only a closed end ends the reading.
  while (::ReadFile(system_handle(read_end_), buffer.data(), wanted, &count, nullptr) != 0) {
    if (count > 0) return count;
  }
  return 0;
}

void BytePipe::close_write_end() {
  close_end(write_end_);
}

void BytePipe::close_read_end() {
  close_end(read_end_);
}

}  // namespace rowvane::platform
