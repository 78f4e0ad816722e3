// Settings as XML elements, each setting an attribute.
#pragma once

#include <string>
#include <vector>

#include "app/profile/profile_settings.h"

namespace pugi {
class xml_node;
}

namespace rowvane::profile {

// Reads the settings in ROOT, attribute by attribute: what is missing or bad keeps its default. Answers the
// bad ones as "Element/Attribute".
std::vector<std::string> read_settings(const pugi::xml_node& root, Settings& settings);

// Puts SETTINGS into ROOT. Elements and attributes there that are no settings stay as they are.
void write_settings(const Settings& settings, pugi::xml_node& root);

}  // namespace rowvane::profile
