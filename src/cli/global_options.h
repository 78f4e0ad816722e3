// The options that every command of the terminal program takes.
#pragma once

#include <memory>
#include <string>

#include "core/options.h"
#include "crypto/secret.h"

namespace rowvane::cli {

struct GlobalOptions {
  bool json = false;
  bool quiet = false;                      // no progress, no report of what was done
  bool yes = false;                        // answers Yes to all questions
  int threads = 0;                         // 0: as many as the machine has
  std::string password_file;               // "-": ask; empty: RVB_PASSWORD, if it is there
  std::shared_ptr<const Secret> password;  // of the databases; null: none was given

  Options engine_options() const {
    Options options;
    options.used_processor_cores = threads;
    return options;
  }
};

}  // namespace rowvane::cli
