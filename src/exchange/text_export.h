// Saving a table as text.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/options.h"
#include "core/progress.h"
#include "core/status.h"
#include "core/work_sheet.h"
#include "exchange/text_file_settings.h"
#include "exchange/text_formatter.h"

namespace rowvane {

// Where exported long texts and files go: an archive beside the text file. Implemented above, where archives are made.
class ExportArchive {
 public:
  virtual ~ExportArchive() = default;
  virtual ErrorCode add(const std::string& name, const Content& content) = 0;
  // Puts the archive in place. One that is destroyed without leaves nothing behind.
  virtual ErrorCode finish() = 0;
};
// Opens an archive for writing; null when it can't be made.
using ExportArchiveMaker = std::unique_ptr<ExportArchive> (*)(const std::string& path);

struct TextExport {
  TextFileSettings text;
  std::vector<size_t> fields;                        // chosen fields in their order; empty: all
  std::optional<std::vector<uint32_t>> positions;    // records to save, in display order; nothing: all
  NumberSeparators numbers;                          // the user's
  bool save_files = false;                           // "Save 'Images/Files' objects to a zip file"
  bool save_long_texts = false;                      // "Save 'Long Text' data to a zip file"
  ExportArchiveMaker make_archive = nullptr;         // needed by the two before
  uint64_t row_limit = 0;                            // records a file, 0: all in one
  int threads = 0;                                   // as thread_count takes it
};

// The question (message 196) to be answered with Yes before a database whose tables hold features that plain text
// loses is saved in its own plain text file: several tables, formulas, formats, drop-down lists, flags, long texts or
// files. Empty when nothing is lost.
std::string check_text_export(const CWorkSheet& table);

struct TextExportResult {
  Status status = Status::kOk;
  ErrorCode error = ErrorCode::kOk;     // why it failed, where it did
  std::vector<std::string> files;       // what was written, in order
  std::vector<Notice> notices;
};

// Writes TARGET (and, with a row limit, "NAME(1).EXT" and so on beside it; with the zip options "NAME-files.zip" and
// "NAME-long-text.zip"). Files that exist are replaced in one step each, none before all are written; after a failure
// or a cancel all are as they were. Lines end with CR LF.
TextExportResult export_text(const CWorkSheet& table, const std::string& target, const TextExport& settings,
                             Progress& progress = Progress::none());

}  // namespace rowvane
