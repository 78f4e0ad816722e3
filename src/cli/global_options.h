// The options that every command of the terminal program takes.
#pragma once

#include <memory>
#include <string>

#include "core/options.h"
#include "crypto/secret.h"
#include "recordset/search/search_options.h"
#include "text/sort_options.h"

namespace rowvane::cli {

struct GlobalOptions {
  bool json = false;
  bool quiet = false;                      // no progress, no report of what was done
  bool yes = false;                        // answers Yes to all questions
  int threads = 0;                         // 0: as the profile says
  std::string password_file;               // "-": ask; empty: RVB_PASSWORD, if it is there
  std::shared_ptr<const Secret> password;  // of the databases; null: none was given
  std::string profile_path;                // empty: none
  Options profile;                         // what the profile says, or the defaults
  SearchOptions search;                    // the same of searching
  SortOptions sort;                        // and of sorting

  Options engine_options() const {
    Options options = profile;
    if (threads != 0) options.used_processor_cores = threads;
    return options;
  }
};

}  // namespace rowvane::cli
