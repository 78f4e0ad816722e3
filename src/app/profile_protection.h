// Protecting the profile by a password: the rules of the dialog `CProfileProtectDlg`.
#pragma once

#include <string>
#include <string_view>

#include "app/profile_file.h"

namespace rowvane {

inline constexpr std::string_view kProfileProtectTitle = "Profile Protection And Encryption";
inline constexpr std::string_view kProfileProtectPrompt =
    "Enter your new password to protect\nthe profile file or leave the fields blank to disable password "
    "protection and encryption.";

struct ProfileProtection {
  std::string password;
  std::string repeated;
};

// The message that wrong entries get: 146 when they differ, 147 for a password of less than 6 characters.
// Empty when they can be taken; both blank turns the protection off.
std::string check_profile_protection(const ProfileProtection& protection);

// Takes effect when FILE is saved. PROTECTION must have passed the check.
void protect_profile(const ProfileProtection& protection, ProfileFile& file);

}  // namespace rowvane
