// Taking Rowvane off the system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/start/user_messages.h"
#include "core/messages/questions.h"
#include "platform/file.h"
#include "platform/file_type.h"
#include "platform/folders.h"

namespace rowvane {

namespace texts {
inline constexpr std::string_view kFilesRemainForUser =
    "Can't remove some user's files from the installation folder.\nPlease run this program as "
    "administrator.";
inline constexpr std::string_view kFilesRemain =
    "Can't remove some user's files from the installation folder.";
inline constexpr std::string_view kFoldersUnknown = "Can't obtain some folder locations";
inline constexpr std::string_view kUninstallKeyRemains = "Can't remove the uninstall key.";
}  // namespace texts

// What uninstalling does to the system; tests put another one in its place.
class UninstallSystem {
 public:
  virtual ~UninstallSystem() = default;
  virtual bool may_write_machine_settings();
  virtual platform::RegistrationStatus unregister_file_type(const std::string& program);
  virtual platform::FileStatus list_files(const std::string& folder, std::vector<std::string>& names);
  virtual platform::FileStatus remove_file(const std::string& path);
  virtual platform::FileStatus remove_folder(const std::string& path);
  virtual platform::FileStatus move_to_wastebasket(const std::string& path);
  virtual bool remove_uninstall_entry();
  virtual void show_folder(const std::string& path);
};

// Asks, and after Yes takes away the file type, the program's own files, the shortcuts, the user's settings
// and the entry in the list of programs; databases and documents in the program folder go to the wastebasket.
// Every failure shows its text, and the sequence goes on. The executable and its folder stay; the folder is
// shown at the end. In a folder that belongs to the whole system no file is touched.
//
// False when the user said No. After true the profile must not be saved.
bool uninstall(const platform::KnownFolders& folders, Questions& questions, UserMessages& messages,
               UninstallSystem& system);

}  // namespace rowvane
