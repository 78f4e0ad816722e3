// One command's work on one database: opening it, finding its tables, saving it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/database/open_database.h"
#include "cli/global_options.h"
#include "cli/terminal_progress.h"
#include "cli/terminal_questions.h"
#include "cli/text_options.h"

namespace rowvane::cli {

// Where and how a changed database is saved.
struct SaveOptions {
  std::string output;              // -o FILE; empty: in place
  std::string container = "auto";  // "auto", "zip64", "zip32"
  int level = kDefaultDeflateLevel;

  void add_to(CLI::App& command);
};

// All functions that answer a status have reported what went wrong when it is not kDone.
class Session {
 public:
  explicit Session(const GlobalOptions& global)
      : global_(global), options_(global.engine_options()), questions_(global.yes), progress_(global.quiet) {}

  // Opens PATH. TEXT says what it is, where that is told, and how it is read as a text.
  int open(const std::string& path, const TextOptions& text);
  // As `open`, or a new database without tables when there is no such file.
  int open_or_create(const std::string& path, const TextOptions& text);

  OpenDatabase& open_database() { return *open_; }
  Database& database() { return open_->database(); }
  DatabaseFile& file() { return open_->file(); }
  const DatabaseFile& file() const { return open_->file(); }
  const GlobalOptions& global() const { return global_; }
  const Options& options() const { return options_; }
  Questions& questions() { return questions_; }
  Progress& progress() { return progress_; }

  // The table that the first of ARGUMENTS names, which is then taken from them; the only table of the
  // database when it names none. Null after reporting error 23 or that a table must be named.
  CWorkSheet* take_table(std::vector<std::string>& arguments);
  // Indices of the fields with these names; all fields when NAMES is empty. kFailed when one is not there.
  int find_fields(const CWorkSheet& table, const std::vector<std::string>& names,
                  std::vector<size_t>& fields);

  // Saves a changed database.
  int save(const SaveOptions& save);

 private:
  GlobalOptions global_;
  Options options_;
  TerminalQuestions questions_;
  TerminalProgress progress_;
  std::unique_ptr<OpenDatabase> open_;
};

}  // namespace rowvane::cli
