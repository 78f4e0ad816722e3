#include "platform/folders.h"

#include <array>
#include <string_view>

#include "platform/paths.h"
#include "platform/windows/shell_headers.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

std::string known_folder(const KNOWNFOLDERID& id) {
  PWSTR path = nullptr;
  std::string folder;
  if (::SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, &path) == S_OK) folder = to_utf8(path);
  ::CoTaskMemFree(path);
  return folder;
}

std::string program_file() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return {};
    if (length < path.size()) {
      path.resize(length);
      return to_utf8(path);
    }
    path.resize(path.size() * 2);
  }
}

bool is_administrator() {
  SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
  PSID administrators = nullptr;
  if (::AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0,
                                 0, 0, 0, &administrators) == 0) {
    return false;
  }
  BOOL is_member = FALSE;
  const bool known = ::CheckTokenMembership(nullptr, administrators, &is_member) != 0;
  ::FreeSid(administrators);
  return known && is_member != FALSE;
}

}  // namespace

KnownFolders known_folders() {
  constexpr std::string_view kShortcut = "Rowvane.lnk";
  KnownFolders folders;
  folders.program_file = program_file();
  if (!folders.program_file.empty()) folders.program_folder = parent_folder(folders.program_file);
  if (const std::string programs = known_folder(FOLDERID_ProgramFiles); !programs.empty()) {
    folders.installation_folders.push_back(programs);
  }
  folders.local_app_data = known_folder(FOLDERID_LocalAppData);
  folders.documents = known_folder(FOLDERID_Documents);
  folders.common_documents = known_folder(FOLDERID_PublicDocuments);
  const std::array<const KNOWNFOLDERID*, 6> places = {&FOLDERID_StartMenu,       &FOLDERID_Programs,
                                                      &FOLDERID_CommonStartMenu, &FOLDERID_CommonPrograms,
                                                      &FOLDERID_Desktop,         &FOLDERID_PublicDesktop};
  for (const KNOWNFOLDERID* place : places) {
    const std::string folder = known_folder(*place);
    if (folder.empty()) {
      folders.are_shortcuts_complete = false;
    } else {
      folders.shortcuts.push_back(join_path(folder, kShortcut));
    }
  }
  folders.is_administrator = is_administrator();
  return folders;
}

}  // namespace rowvane::platform
