#include "app/profile_protection.h"

#include "core/messages.h"
#include "core/utf8.h"

namespace rowvane {
namespace {

constexpr size_t kLeastPasswordCharacters = 6;

}  // namespace

std::string check_profile_protection(const ProfileProtection& protection) {
  if (protection.password != protection.repeated) return message(MessageId::kPasswordsDiffer);
  if (protection.password.empty() || count_characters(protection.password) >= kLeastPasswordCharacters) {
    return {};
  }
  return message(MessageId::kPasswordTooShort);
}

void protect_profile(const ProfileProtection& protection, ProfileFile& file) {
  file.set_password(protection.password);
}

}  // namespace rowvane
