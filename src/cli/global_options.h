// The options that every command of the terminal program takes.
#pragma once

#include <string>

#include "core/options.h"

namespace rowvane::cli {

struct GlobalOptions {
  bool json = false;
  bool quiet = false;  // no progress, no report of what was done
  bool yes = false;    // answers Yes to all questions
  int threads = 0;     // 0: as the profile says
  std::string profile_path;
  Options profile;  // what the profile at profile_path says, or the defaults

  Options engine_options() const {
    Options options = profile;
    if (threads != 0) options.used_processor_cores = threads;
    return options;
  }
};

}  // namespace rowvane::cli
