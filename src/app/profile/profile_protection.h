// Protecting the profile by a password: the rules of the dialog `CProfileProtectDlg`.
#pragma once

#include <string>
#include <string_view>

#include "app/profile/profile_file.h"
#include "core/messages/check.h"
#include "crypto/secret.h"

namespace rowvane {

inline constexpr std::string_view kProfileProtectTitle = "Profile Protection And Encryption";
inline constexpr std::string_view kProfileProtectPrompt =
    "Enter your new password to protect\nthe profile file or leave the fields blank to disable password "
    "protection and encryption.";

struct ProfileProtection {
  Secret password;
  Secret repeated;
};

// Message 147 for a password of less than 6 characters, 146 when they differ. Both blank turns the protection
// off.
Check check_profile_protection(const ProfileProtection& protection);

// Takes effect when FILE is saved. PROTECTION, which must have passed the check, moves into it.
void protect_profile(ProfileProtection protection, ProfileFile& file);

}  // namespace rowvane
