// The rules of the dialog in which the user changes the options of the program.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/profile/profile_settings.h"
#include "core/messages/check.h"

namespace rowvane {

// The values that NUMBER, a member of SETTINGS, can have.
profile::NumberRange option_range(const profile::Settings& settings, const int& number);

// File extensions as a user writes them, with blanks, commas or semicolons between, with or without "." or
// "*." before: in lower case without the point, each once. Nothing when a word is none.
std::optional<std::vector<std::string>> parse_extensions(std::string_view text);

// Before the options change from BEFORE to AFTER: the question of another update mode, and message 106 as a
// notice when another MaxRecords waits for the next opening.
Check check_options_change(const profile::Settings& before, const profile::Settings& after);

}  // namespace rowvane
