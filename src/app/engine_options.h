// The settings of the profile that the engine reads.
#pragma once

#include "app/profile_settings.h"
#include "core/options.h"

namespace rowvane {

Options engine_options(const profile::Settings& settings);

}  // namespace rowvane
