// The formats of files: one row for each, by which files are told apart, opened, saved and exported.
//
// Nothing else asks which formats there are. A row without `open` is of a format that only its name and its
// content are known of, so that it is refused by name instead of being read as text.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/questions.h"
#include "exchange/text/text_export.h"
#include "file/database_file.h"

namespace rowvane {

class FileStart;
class OpenDatabase;
struct RecognizedFile;

// A file to be opened, and what with.
struct OpenRequest {
  const RecognizedFile& file;
  const Options& options;
  Questions* questions;  // as open_database takes it; may be null
  Progress& progress;
  std::shared_ptr<const Secret> password;  // null: none
};

// What of a table is exported. Fields, records and threads stand here for all formats, not in `text`.
struct TableExport {
  std::vector<size_t> fields{};                      // in their order; empty: all
  std::optional<std::vector<uint32_t>> positions{};  // 0-based records in display order; nothing: all
  int threads = 0;                                   // as thread_count takes it
  TextExport text{};                                 // how a text is written
};
using TableExportResult = TextExportResult;

struct FileFormat {
  std::string_view name{};         // as rvb calls it; empty where nothing can be done with it
  std::string_view caption{};      // in file boxes: "Text files"
  std::string_view description{};  // in sentences: "a PNG image"
  // In lower case without the point.
  std::vector<std::string_view> extensions{};

  // True for a file that begins as those of the format do. Null: its content does not tell it.
  bool (*is_content)(const FileStart& file) = nullptr;
  // Opens a file as a database with its tables; importing takes the tables of that. Null: it can't be read.
  OpenedDatabase (*open)(const OpenRequest& request) = nullptr;
  // Saves a database in the file it came from, once `check_save` has passed and its question was
  // answered with Yes. Null: it can only be saved as another one.
  Check (*check_save)(const OpenDatabase& open) = nullptr;
  Outcome (*save)(OpenDatabase& open, Progress& progress) = nullptr;
  // Writes a table, unless `check_export` refuses. Null: it can't be written.
  Check (*check_export)(const CWorkSheet& table, const TableExport& settings) = nullptr;
  TableExportResult (*export_table)(const CWorkSheet& table, const std::string& target,
                                    const TableExport& settings, Progress& progress) = nullptr;

  bool can_open() const { return open != nullptr; }
  bool can_export() const { return export_table != nullptr; }
};

std::span<const FileFormat> file_formats();
const FileFormat& database_format();
const FileFormat& text_format();
// Null when there is none.
const FileFormat* format_named(std::string_view name);
// The names of those that CAN is true for.
std::vector<std::string> format_names(bool (FileFormat::*can)() const);

}  // namespace rowvane
