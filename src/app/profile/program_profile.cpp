#include "app/profile/program_profile.h"

#include "core/messages/messages.h"
#include "platform/file.h"

namespace rowvane {
namespace {

bool is_locked_out(ErrorCode error) {
  return error == ErrorCode::kInvalidPassword || error == ErrorCode::kCryptographicKey ||
         error == ErrorCode::kFileDecrypt;
}

}  // namespace

void ProgramProfile::find(ProfileFacts facts) {
  facts.has_user_profile = platform::file_exists(user_profile_path(facts));
  facts.has_program_profile = platform::file_exists(program_profile_path(facts));
  path_ = choose_profile(facts);
  if (path_.empty() || !platform::file_exists(path_)) return;
  const ErrorCode error = file_.load(path_, &prompt_, settings_).error;
  is_loaded_ = error == ErrorCode::kOk;
  if (is_locked_out(error)) path_.clear();
  if (error == ErrorCode::kInvalidPassword) {
    messages_.show(std::string(error_text(error)), MessageIcon::kError);
  } else if (!is_loaded_) {
    messages_.show(message(MessageId::kProfileNotLoaded), MessageIcon::kWarning);
  }
}

void ProgramProfile::find_again(ProfileFacts facts) {
  if (!is_loaded_ && !path_.empty() && !platform::file_exists(path_)) find(std::move(facts));
}

ErrorCode ProgramProfile::load_other(const std::string& path) {
  const ErrorCode error = file_.load(path, &prompt_, settings_).error;
  if (error != ErrorCode::kOk) return error;
  path_ = path;
  is_loaded_ = true;
  return ErrorCode::kOk;
}

}  // namespace rowvane
