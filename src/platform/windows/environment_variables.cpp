#include "platform/environment_variables.h"

#include <windows.h>

namespace rowvane::platform {
namespace {

// Buffers that may hold a password.
struct WideText {
  std::wstring text;
  ~WideText() { SecureZeroMemory(text.data(), text.size() * sizeof(wchar_t)); }
};

}  // namespace

bool read_environment(const std::string& name, std::string& value) {
  const std::wstring wide_name(name.begin(), name.end());  // names are ASCII
  const DWORD room = GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0);
  if (room == 0) return false;
  WideText wide{std::wstring(room, L'\0')};
  const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), wide.text.data(), room);
  if (length >= room) return false;
  const auto count = static_cast<int>(length);
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.text.data(), count, nullptr, 0, nullptr, nullptr);
  value.assign(static_cast<size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.text.data(), count, value.data(), bytes, nullptr, nullptr);
  return true;
}

}  // namespace rowvane::platform
