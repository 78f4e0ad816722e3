// The settings profile of the running program: found and read at start-up, written at exit.
#pragma once

#include <string>
#include <string_view>

#include "app/profile/profile_file.h"
#include "app/profile/profile_places.h"
#include "app/start/user_messages.h"

namespace rowvane {

inline constexpr std::string_view kLoadProfileTitle = "Load Profile File";
inline constexpr std::string_view kSaveProfileTitle = "Save Profile File As";
inline constexpr std::string_view kProfileFilter = "Profile (*.xml)";

class ProgramProfile {
 public:
  // All must outlive this. PROMPT asks for the password of a protected profile; CIPHER as for ProfileFile.
  ProgramProfile(UserMessages& messages, PasswordPrompt& prompt, ProfileCipher* cipher)
      : messages_(messages), prompt_(prompt), file_(cipher) {}

  // Chooses the path by FACTS, whose two files it looks for, and loads the profile when there is one. One
  // that can't be read shows message 189 and leaves the defaults. A protected one that could not be opened
  // clears the path, so that it is never overwritten.
  void find(ProfileFacts facts);
  // Chooses the path once more when no file was loaded.
  void find_again(ProfileFacts facts);

  // "&Load Profile...": takes the settings of PATH, which becomes the path of the profile. After an error,
  // which is the answer, all is as it was.
  ErrorCode load_other(const std::string& path);
  // "&Save Profile As...": the path of the profile stays.
  ErrorCode save_as(const std::string& path) { return file_.save(path, settings_); }
  // At exit; kOk without a path.
  ErrorCode save() { return path_.empty() ? ErrorCode::kOk : file_.save(path_, settings_); }

  // Empty: the profile is not saved at exit.
  const std::string& path() const { return path_; }
  // For a program that has just uninstalled itself.
  void forget_path() { path_.clear(); }
  profile::Settings& settings() { return settings_; }
  const profile::Settings& settings() const { return settings_; }
  // For the protection of the profile.
  ProfileFile& file() { return file_; }

 private:
  UserMessages& messages_;
  PasswordPrompt& prompt_;
  ProfileFile file_;
  profile::Settings settings_;
  std::string path_;
  bool is_loaded_ = false;
};

}  // namespace rowvane
