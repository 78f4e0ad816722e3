// The settings profile that steers a command.
#pragma once

#include "cli/global_options.h"

namespace rowvane::cli {

// Loads the profile that GLOBAL names, if any, into its options. Values that can't be used give warnings and
// leave their defaults. A status other than kDone after reporting the error, which is 37 for a protected
// profile: nobody is asked.
int load_profile(GlobalOptions& global);

}  // namespace rowvane::cli
