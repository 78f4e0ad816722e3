#include "app/start/uninstall.h"

#include <algorithm>
#include <array>

#include "app/profile/profile_file.h"
#include "app/start/file_type_registration.h"
#include "core/messages/messages.h"
#include "platform/file_system.h"
#include "platform/installation.h"
#include "platform/paths.h"
#include "platform/wastebasket.h"

namespace rowvane {

using platform::FileStatus;
using platform::join_path;

bool UninstallSystem::may_write_machine_settings() {
  return platform::may_write_machine_settings();
}
platform::RegistrationStatus UninstallSystem::unregister_file_type(const std::string& program) {
  return platform::unregister_file_type(database_file_type(program));
}
FileStatus UninstallSystem::list_files(const std::string& folder, std::vector<std::string>& names) {
  return platform::list_files(folder, names);
}
FileStatus UninstallSystem::remove_file(const std::string& path) {
  return platform::remove_file(path);
}
FileStatus UninstallSystem::remove_folder(const std::string& path) {
  return platform::remove_folder(path);
}
FileStatus UninstallSystem::move_to_wastebasket(const std::string& path) {
  return platform::move_to_wastebasket(path);
}
bool UninstallSystem::remove_uninstall_entry() {
  return platform::remove_uninstall_entry("Rowvane");
}
void UninstallSystem::show_folder(const std::string& path) {
  platform::show_folder(path);
}

namespace {

constexpr std::array<std::string_view, 4> kOwnFiles = {"rowvane.bin", "sample.zip", "settings.xml",
                                                       "libhunspell.dll"};
// Databases in the native format too: the question promises it.
constexpr std::array<std::string_view, 7> kUserExtensions = {"zip", "txt", "xml", "csv", "htm", "dbf", "rvb"};

bool is_gone(FileStatus status) {
  return status == FileStatus::kOk || status == FileStatus::kNotFound;
}

class Uninstaller {
 public:
  Uninstaller(const platform::KnownFolders& folders, UserMessages& messages, UninstallSystem& system)
      : folders_(folders), messages_(messages), system_(system) {
    may_write_machine_ = system.may_write_machine_settings();
  }

  MessageId question() const {
    return may_write_machine_ ? MessageId::kUninstall : MessageId::kUninstallForUser;
  }

  void run() {
    unregister_file_type();
    clear_program_folder();
    remove_user_places();
    if (!system_.remove_uninstall_entry()) warn(texts::kUninstallKeyRemains);
    messages_.show(message(MessageId::kUninstalled), MessageIcon::kInformation);
    if (!folders_.program_folder.empty()) system_.show_folder(folders_.program_folder);
  }

 private:
  void warn(std::string_view text) { messages_.show(std::string(text), MessageIcon::kWarning); }

  void unregister_file_type() {
    const auto status = system_.unregister_file_type(folders_.program_file);
    if (status == platform::RegistrationStatus::kNoPermission) {
      warn(message(MessageId::kNoRegistryPermission));
    }
  }

  void clear_program_folder() {
    if (folders_.program_folder.empty() || folders_.is_program_folder_shared) return;
    const bool own_files_gone = remove_own_files();
    const bool user_files_gone = move_user_files();
    if (own_files_gone && user_files_gone) return;
    warn(may_write_machine_ ? texts::kFilesRemain : texts::kFilesRemainForUser);
  }

  bool remove_own_files() {
    bool gone = true;
    for (const std::string_view name : kOwnFiles) {
      gone = is_gone(system_.remove_file(join_path(folders_.program_folder, name))) && gone;
    }
    const std::string help = join_path(folders_.program_folder, "help");
    std::vector<std::string> pages;
    gone = is_gone(system_.list_files(help, pages)) && gone;
    for (const std::string& page : pages) gone = is_gone(system_.remove_file(join_path(help, page))) && gone;
    return gone;
  }

  bool move_user_files() {
    std::vector<std::string> names;
    bool gone = is_gone(system_.list_files(folders_.program_folder, names));
    for (const std::string& name : names) {
      const std::string extension = platform::extension(name);
      if (std::ranges::find(kUserExtensions, extension) == kUserExtensions.end()) continue;
      gone = is_gone(system_.move_to_wastebasket(join_path(folders_.program_folder, name))) && gone;
    }
    return gone;
  }

  // What stays of these does no harm, and no text tells of it.
  void remove_user_places() {
    for (const std::string& shortcut : folders_.shortcuts) {
      static_cast<void>(system_.remove_file(shortcut));
    }
    if (!folders_.local_app_data.empty()) {
      const std::string settings = join_path(folders_.local_app_data, "Rowvane");
      const std::string profile = join_path(settings, kProfileFileName);
      static_cast<void>(system_.remove_file(profile));
      static_cast<void>(system_.remove_file(profile + ".bak"));
      static_cast<void>(system_.remove_folder(settings));
    }
    if (!folders_.are_shortcuts_complete || folders_.local_app_data.empty() ||
        folders_.program_folder.empty()) {
      warn(texts::kFoldersUnknown);
    }
  }

  const platform::KnownFolders& folders_;
  UserMessages& messages_;
  UninstallSystem& system_;
  bool may_write_machine_ = false;
};

}  // namespace

bool uninstall(const platform::KnownFolders& folders, Questions& questions, UserMessages& messages,
               UninstallSystem& system) {
  Uninstaller uninstaller(folders, messages, system);
  if (!questions.ask(message(uninstaller.question()))) return false;
  uninstaller.run();
  return true;
}

}  // namespace rowvane
