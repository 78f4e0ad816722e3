#include "platform/installation.h"

#include "platform/windows/registry.h"
#include "platform/windows/shell_headers.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {

bool may_write_machine_settings() {
  const std::wstring key = L"Software\\Classes\\Rowvane.WriteTest";
  if (set_registry_default(HKEY_LOCAL_MACHINE, key, L"") != ERROR_SUCCESS) return false;
  return remove_registry_key(HKEY_LOCAL_MACHINE, key) == ERROR_SUCCESS;
}

bool remove_uninstall_entry(const std::string& program_name) {
  const std::wstring key =
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + to_wide(program_name);
  const LSTATUS user = remove_registry_key(HKEY_CURRENT_USER, key);
  const LSTATUS machine = remove_registry_key(HKEY_LOCAL_MACHINE, key);
  return user == ERROR_SUCCESS && machine == ERROR_SUCCESS;
}

void show_folder(const std::string& path) {
  ::ShellExecuteW(nullptr, L"open", to_wide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace rowvane::platform
