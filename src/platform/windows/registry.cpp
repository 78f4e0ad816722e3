#include "platform/windows/registry.h"

namespace rowvane::platform {

LSTATUS set_registry_default(HKEY root, const std::wstring& key, const std::wstring& value) {
  HKEY opened = nullptr;
  LSTATUS status = ::RegCreateKeyExW(root, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened, nullptr);
  if (status != ERROR_SUCCESS) return status;
  status = ::RegSetValueExW(opened, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                            static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  ::RegCloseKey(opened);
  return status;
}

std::optional<std::wstring> registry_default(HKEY root, const std::wstring& key) {
  DWORD bytes = 0;
  if (::RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::wstring value(bytes / sizeof(wchar_t), L'\0');
  if (::RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, value.data(), &bytes) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  value.resize(value.find(L'\0') == std::wstring::npos ? value.size() : value.find(L'\0'));
  return value;
}

LSTATUS remove_registry_key(HKEY root, const std::wstring& key) {
  const LSTATUS status = ::RegDeleteTreeW(root, key.c_str());
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND ? ERROR_SUCCESS : status;
}

}  // namespace rowvane::platform
