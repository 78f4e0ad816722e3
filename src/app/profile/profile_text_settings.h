// Text file settings in the profile: element `TextFileOptions`.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "exchange/text/text_file_settings.h"

namespace pugi {
class xml_node;
}

namespace rowvane::profile {

inline constexpr std::string_view kTextFileOptions = "TextFileOptions";
inline constexpr std::string_view kNamedTextFileSettings = "NamedTextFileSettings";

// Attributes of NODE that are missing or bad leave what SETTINGS has; the names of the bad ones are appended
// to BAD.
void read_text_file_options(const pugi::xml_node& node, TextFileSettings& settings,
                            std::vector<std::string>& bad);
void write_text_file_options(const TextFileSettings& settings, pugi::xml_node& node);

}  // namespace rowvane::profile
