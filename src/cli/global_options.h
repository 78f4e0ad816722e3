// The options that every command of the terminal program takes.
#pragma once

#include <string>

#include "core/options.h"

namespace rowvane::cli {

struct GlobalOptions {
  bool json = false;
  bool quiet = false;  // no progress, no report of what was done
  bool yes = false;    // answers Yes to all questions
  int threads = 0;     // 0: as many as the machine has

  Options engine_options() const {
    Options options;
    options.used_processor_cores = threads;
    return options;
  }
};

}  // namespace rowvane::cli
