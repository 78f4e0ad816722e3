#include "platform/file_type.h"

#include <utility>

#include "platform/installation.h"
#include "platform/windows/registry.h"
#include "platform/windows/shell_headers.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

const std::wstring kClasses = L"Software\\Classes\\";

std::wstring extension_key(const FileType& type) {
  return kClasses + L"." + to_wide(type.extension);
}

std::wstring class_key(const FileType& type) {
  return kClasses + to_wide(type.document_class);
}

LSTATUS register_below(HKEY root, const FileType& type) {
  const std::wstring key = class_key(type);
  const std::wstring program = to_wide(type.program);
  const std::wstring name = to_wide(type.document_class);
  const std::pair<std::wstring, std::wstring> values[] = {
      {key, name},
      {key + L"\\DefaultIcon", program + L",0"},
      {key + L"\\shell\\open", to_wide(type.open_text)},
      {key + L"\\shell\\open\\command", L"\"" + program + L"\" \"%1\""},
      {extension_key(type), name},
  };
  for (const auto& [place, value] : values) {
    if (const LSTATUS status = set_registry_default(root, place, value); status != ERROR_SUCCESS)
      return status;
  }
  return ERROR_SUCCESS;
}

// An extension that another program has taken over since is left to it.
LSTATUS unregister_below(HKEY root, const FileType& type) {
  LSTATUS status = ERROR_SUCCESS;
  if (registry_default(root, extension_key(type)) == to_wide(type.document_class)) {
    status = remove_registry_key(root, extension_key(type));
  }
  const LSTATUS class_status = remove_registry_key(root, class_key(type));
  return status != ERROR_SUCCESS ? status : class_status;
}

// Tells the shell when something changed.
RegistrationStatus finish(LSTATUS status) {
  if (status == ERROR_SUCCESS) {
    ::SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
    return RegistrationStatus::kOk;
  }
  return status == ERROR_ACCESS_DENIED ? RegistrationStatus::kNoPermission : RegistrationStatus::kFailed;
}

}  // namespace

RegistrationStatus register_file_type(const FileType& type) {
  if (type.program.empty()) return RegistrationStatus::kFailed;
  return finish(register_below(may_write_machine_settings() ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, type));
}

RegistrationStatus unregister_file_type(const FileType& type) {
  const LSTATUS user = unregister_below(HKEY_CURRENT_USER, type);
  const LSTATUS machine =
      may_write_machine_settings() ? unregister_below(HKEY_LOCAL_MACHINE, type) : ERROR_SUCCESS;
  return finish(user != ERROR_SUCCESS ? user : machine);
}

}  // namespace rowvane::platform
