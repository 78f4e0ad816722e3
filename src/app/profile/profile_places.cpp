#include "app/profile/profile_places.h"

#include <algorithm>

#include "app/profile/profile_file.h"
#include "app/profile/recent_files.h"
#include "platform/characters.h"
#include "platform/paths.h"

namespace rowvane {
namespace {

std::string in_folder(const std::string& folder) {
  return folder.empty() ? std::string() : platform::join_path(folder, kProfileFileName);
}

bool is_installed(const ProfileFacts& facts) {
  const std::string program = platform::fold_case(facts.program_folder);
  return std::ranges::any_of(facts.installation_folders, [&](const std::string& folder) {
    return !folder.empty() && program.starts_with(platform::fold_case(folder));
  });
}

std::string wanted_path(const ProfileFacts& facts) {
  if (facts.portable) return program_profile_path(facts);
  if (facts.has_user_profile) return user_profile_path(facts);
  if (facts.has_program_profile || !is_installed(facts)) return program_profile_path(facts);
  return user_profile_path(facts);
}

}  // namespace

std::string program_profile_path(const ProfileFacts& facts) {
  return in_folder(facts.program_folder);
}

std::string user_profile_path(const ProfileFacts& facts) {
  if (facts.local_app_data.empty()) return {};
  return in_folder(platform::join_path(facts.local_app_data, "Rowvane"));
}

std::string choose_profile(const ProfileFacts& facts) {
  std::string path = wanted_path(facts);
  if (path_characters(path) > kMaxPathCharacters) path.clear();
  return path;
}

}  // namespace rowvane
