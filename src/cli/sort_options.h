// The sort options of the commands.
#pragma once

#include <string>
#include <vector>

#include "recordset/sort/sort.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

class Session;

// How texts are compared, as typed; what is not given is as the profile says.
struct CollationOptions {
  std::string collation;  // "language" or "neutral"
  bool case_sensitive = false;
  bool ignore_punctuation = false;

  void add_to(CLI::App& command);
  // Answers a status and reports what is wrong.
  int apply(const Session& session, SortOptions& options) const;
};

struct SortArguments {
  std::vector<std::string> keys;  // names of fields; a leading "-" means descending
  CollationOptions texts;

  void add_to(CLI::App& command);
  // Sorts RECORDS, unless there are no keys. Answers a status and reports what is wrong.
  int sort(Session& session, const CWorkSheet& table, RecordSet& records) const;
};

}  // namespace rowvane::cli
