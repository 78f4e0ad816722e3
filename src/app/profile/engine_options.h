// The settings of the profile that the engine reads.
#pragma once

#include "app/profile/profile_settings.h"
#include "core/options.h"
#include "recordset/search/search_options.h"

namespace rowvane {

Options engine_options(const profile::Settings& settings);

SearchOptions search_options(const profile::Settings& settings);
// Stores what the user has chosen.
void store_search_options(const SearchOptions& options, profile::Settings& settings);

}  // namespace rowvane
