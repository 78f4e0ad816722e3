// Where the settings profile lives.
#pragma once

#include <string>
#include <vector>

namespace rowvane {

// What the choice depends on; empty folders are those that the system does not tell.
struct ProfileFacts {
  bool portable = false;
  std::string program_folder;
  std::vector<std::string> installation_folders;  // as platform::KnownFolders has them
  std::string local_app_data;
  bool has_user_profile = false;     // user_profile_path is a file
  bool has_program_profile = false;  // program_profile_path is a file
};

// "settings.xml" in the program folder.
std::string program_profile_path(const ProfileFacts& facts);
// "Rowvane/settings.xml" in the local application data.
std::string user_profile_path(const ProfileFacts& facts);

// The program's profile when portable. Otherwise the user's when it exists; else the program's when that
// exists or the program does not lie in an installation folder; else the user's, to be made. Folders are
// compared without regard to case, over the length of the installation folder. Empty, which means that no
// profile is kept, when the folder is not known or the path has more than kMaxPathCharacters.
std::string choose_profile(const ProfileFacts& facts);

}  // namespace rowvane
