// Opening whatever file holds tables.
#pragma once

#include <string>

#include "exchange/text/text_import.h"
#include "file/database_file.h"

namespace rowvane {

// Text settings as a file's name suggests them: tabs for "*.tsv" and "*.tab", otherwise the defaults.
TextFileSettings suggested_text_settings(const std::string& path);

// True for a file that begins as a database file does, whatever its name.
bool is_database_file(const std::string& path);

// Opens a database file, or any other file as an unsaved database with its tables: a text becomes one table
// named after the file. TEXT says how a text is read (its table name is not used), PASSWORD opens a protected
// database. Errors as open_database and import_text_file.
OpenedDatabase open_document(const std::string& path, const TextImport& text, const Options& options,
                             Questions* questions = nullptr, Progress& progress = Progress::none(),
                             std::shared_ptr<const Secret> password = nullptr);

}  // namespace rowvane
