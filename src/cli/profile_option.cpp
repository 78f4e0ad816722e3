#include "cli/profile_option.h"

#include "app/profile/engine_options.h"
#include "app/profile/profile_file.h"
#include "app/profile/sort_settings.h"
#include "app/profile/twofish_profile_cipher.h"
#include "cli/report.h"

namespace rowvane::cli {

int load_profile(GlobalOptions& global) {
  if (global.profile_path.empty()) return kDone;
  profile::Settings settings;
  TwofishProfileCipher cipher;
  ProfileFile file(&cipher);
  const ProfileFile::LoadResult result = file.load(global.profile_path, nullptr, settings);
  if (result.error != ErrorCode::kOk) return fail(result.error);
  for (const std::string& value : result.bad_values) {
    if (!global.quiet) warn("the profile's value of " + value + " can't be used; the default is");
  }
  global.sort = sort_options(settings);
  global.profile = engine_options(settings);
  global.search = search_options(settings);
  return kDone;
}

}  // namespace rowvane::cli
