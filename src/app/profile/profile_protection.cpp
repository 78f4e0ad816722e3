#include "app/profile/profile_protection.h"

#include <utility>

#include "core/messages/messages.h"
#include "crypto/protection.h"

namespace rowvane {

std::string check_profile_protection(const ProfileProtection& protection) {
  if (protection.password.empty() && protection.repeated.empty()) return {};
  const PasswordCheck check = check_new_password(protection.password, protection.repeated);
  return check.refusal ? message(*check.refusal) : std::string();
}

void protect_profile(ProfileProtection protection, ProfileFile& file) {
  file.set_password(std::move(protection.password));
}

}  // namespace rowvane
