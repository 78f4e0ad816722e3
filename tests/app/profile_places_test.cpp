#include "app/profile/profile_places.h"

#include <gtest/gtest.h>

#include "app/profile/recent_files.h"
#include "platform/paths.h"

namespace rowvane {
namespace {

using platform::join_path;

const std::string kInstalled = "/Program Files";
const std::string kData = "/home/u/data";

ProfileFacts facts_for(const std::string& program_folder) {
  ProfileFacts facts;
  facts.program_folder = program_folder;
  facts.installation_folders = {"", kInstalled};
  facts.local_app_data = kData;
  return facts;
}

TEST(ProfilePlaces, FollowTheInstallation) {
  struct Case {
    const char* what;
    std::string program;
    bool portable;
    bool user_profile;
    bool program_profile;
    std::string chosen;  // folder
  };
  const std::string user = join_path(kData, "Rowvane");
  const std::string in_programs = join_path(kInstalled, "Rowvane");
  const Case cases[] = {
      {"portable", in_programs, true, true, true, in_programs},
      {"installed, first start", in_programs, false, false, false, user},
      {"installed, with a profile", in_programs, false, true, false, user},
      {"installed, the user's goes first", in_programs, false, true, true, user},
      {"installed, one beside the program", in_programs, false, false, true, in_programs},
      {"elsewhere, first start", "/tools", false, false, false, "/tools"},
      {"elsewhere, one beside the program", "/tools", false, false, true, "/tools"},
      {"elsewhere, the user's goes first", "/tools", false, true, false, user},
      {"letter case", "/PROGRAM files/Rowvane", false, false, false, user},
      {"over the length only", "/Program Files (x86)/Rowvane", false, false, false, user},
      {"deeper", "/d/Program Files/Rowvane", false, false, false, "/d/Program Files/Rowvane"},
  };
  for (const Case& c : cases) {
    ProfileFacts facts = facts_for(c.program);
    facts.portable = c.portable;
    facts.has_user_profile = c.user_profile;
    facts.has_program_profile = c.program_profile;
    EXPECT_EQ(choose_profile(facts), join_path(c.chosen, "settings.xml")) << c.what;
  }
}

TEST(ProfilePlaces, UnknownFoldersAndLongPathsGiveNoProfile) {
  ProfileFacts facts = facts_for(join_path(kInstalled, "Rowvane"));
  facts.local_app_data.clear();
  EXPECT_EQ(choose_profile(facts), "");
  facts.portable = true;
  facts.program_folder.clear();
  EXPECT_EQ(choose_profile(facts), "");
  const size_t room = kMaxPathCharacters - join_path("x", "settings.xml").size() + 1;
  EXPECT_NE(choose_profile(facts_for(std::string(room, 'x'))), "");
  EXPECT_EQ(choose_profile(facts_for(std::string(room + 1, 'x'))), "");
}

}  // namespace
}  // namespace rowvane
