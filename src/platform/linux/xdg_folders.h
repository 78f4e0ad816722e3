// The user's base folders as the desktop standards name them.
#pragma once

#include <string>

namespace rowvane::platform {

// HOME, or what the user database says; empty when neither is an absolute path.
std::string home_folder();

// XDG_DATA_HOME and XDG_CONFIG_HOME, or their defaults below the home folder. Empty without one.
std::string data_home();
std::string config_home();

// A folder that the user may have moved, such as KEY "XDG_DOCUMENTS_DIR", as "user-dirs.dirs" says; otherwise
// FALLBACK in the home folder.
std::string user_folder(const std::string& key, const std::string& fallback);

}  // namespace rowvane::platform
