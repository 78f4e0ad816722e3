// The profile's settings of sorting.
#pragma once

#include "app/profile/profile_settings.h"
#include "text/sort_options.h"

namespace rowvane {

// Made to keep the rules of the dialog, whatever the profile holds.
SortOptions sort_options(const profile::Settings& settings);
// Stores what the user has chosen.
void store_sort_options(const SortOptions& options, profile::Settings& settings);

}  // namespace rowvane
