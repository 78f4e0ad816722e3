// The help, which is installed as an archive.
#pragma once

#include <string>
#include <string_view>

namespace rowvane {

inline constexpr std::string_view kHelpNotOpened = "Can't open the compressed Help archive.";
inline constexpr std::string_view kHelpNotLoaded = "Can't load the compressed Help archive.";

// Unpacks "help/rowvane-help.zip" in PROGRAM_FOLDER into that folder and deletes it. Answers what went wrong,
// or an empty text, also when there is no archive. After a failure the archive stays.
std::string unpack_help(const std::string& program_folder);

}  // namespace rowvane
