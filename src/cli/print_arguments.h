// What the commands that print records share: the table to print from, and how.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/text_options.h"
#include "core/table/work_sheet.h"
#include "recordset/record_set.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

class Session;

struct TableArguments {
  std::string database;
  std::vector<std::string> table;
  TextOptions text;

  void add_to(CLI::App& command);
  // Opens the database and finds the one table of the arguments. Answers a status and reports what is wrong.
  int open(Session& session, CWorkSheet** found);
};

struct PrintArguments {
  std::vector<std::string> fields;
  std::string format;
  uint32_t limit = UINT32_MAX;
  uint32_t offset = 0;

  void add_to(CLI::App& command);
  // Prints RECORDS of TABLE. Answers a status and reports what is wrong.
  int print(Session& session, const CWorkSheet& table, const RecordSet& records) const;
};

}  // namespace rowvane::cli
