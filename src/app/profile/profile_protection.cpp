#include "app/profile/profile_protection.h"

#include <utility>

#include "crypto/protection.h"

namespace rowvane {

Check check_profile_protection(const ProfileProtection& protection) {
  if (protection.password.empty() && protection.repeated.empty()) return {};
  return check_new_password(protection.password, protection.repeated);
}

void protect_profile(ProfileProtection protection, ProfileFile& file) {
  file.set_password(std::move(protection.password));
}

}  // namespace rowvane
