// What happens when the program starts for the first time after it was installed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/profile/recent_files.h"
#include "platform/folders.h"

namespace rowvane {

// Reads and deletes "startup.txt" in PROGRAM_FOLDER: its second character says whether the installation is
// portable ("1") or not. Nothing when there is no such file.
std::optional<bool> take_startup_file(const std::string& program_folder);

// Where "sample.zip" is: beside a portable program, otherwise in the common documents for an administrator
// and in the user's own for all others. Empty when the folder is not known.
std::string sample_database_path(bool portable, const platform::KnownFolders& folders);

// Lists the sample database, when it exists, in FILES that are empty.
void offer_sample_database(const std::string& path, std::vector<RecentFile>& files);

}  // namespace rowvane
