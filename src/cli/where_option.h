// The options --where and --key of the commands: which records they work on.
#pragma once

#include <string>
#include <vector>

#include "recordset/search/search.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

class Session;

struct WhereArguments {
  std::vector<std::string> criteria;  // "FIELD:KIND:TEXT", as typed
  std::string key;                    // a search key of the table; empty: none

  void add_to(CLI::App& command);
  bool empty() const { return criteria.empty() && key.empty(); }

  // The records of TABLE that satisfy all criteria and those of the key; all records without any. Answers a
  // status and reports what is wrong.
  int search(Session& session, const CWorkSheet& table, RecordSet& records) const;
};

}  // namespace rowvane::cli
