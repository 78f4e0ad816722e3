// The option --where of the commands: which records they work on.
#pragma once

#include <string>
#include <vector>

#include "recordset/search.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

class Session;

struct WhereArguments {
  std::vector<std::string> criteria;  // "FIELD:KIND:TEXT", as typed

  void add_to(CLI::App& command);
  bool empty() const { return criteria.empty(); }

  // The records of TABLE that satisfy all criteria; all records without criteria. Answers a status and
  // reports what is wrong.
  int search(Session& session, const CWorkSheet& table, RecordSet& records) const;
};

}  // namespace rowvane::cli
