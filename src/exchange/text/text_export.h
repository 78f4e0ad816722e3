// Saving a table as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "exchange/text/text_file_settings.h"
#include "exchange/text/text_formatter.h"

namespace rowvane {

// The files of one export that a row limit may lead to; all are open until the last is written.
inline constexpr uint64_t kMaxExportFiles = 500;

struct TextExport {
  TextFileSettings text{};
  std::vector<size_t> fields{};  // chosen fields in their order; empty: all
  std::optional<std::vector<uint32_t>>
      positions{};               // 0-based records to save, in display order; nothing: all
  NumberSeparators numbers{};    // the user's
  bool save_files = false;       // "Save 'Images/Files' objects to a zip file"
  bool save_long_texts = false;  // "Save 'Long Text' data to a zip file", codes too
  uint64_t row_limit = 0;        // records a file, 0: all in one
  int threads = 0;               // as thread_count takes it
};

// The question (message 196) to be answered with Yes before a database whose tables hold features that plain
// text loses is saved in its own plain text file: several tables or folders, formulas, validations, default
// values, links, encryption, formats, drop-down lists, flags, long texts or files. How columns are shown
// (width, order, hidden) does not count.
Check check_text_export(const CWorkSheet& table);

// Whether TABLE can be exported with SETTINGS.
Check check_text_export_settings(const CWorkSheet& table, const TextExport& settings);

// Notices: message 125 when cells were cut.
struct TextExportResult : Outcome {
  std::vector<std::string> files;    // what was written: the text files in order, then the archive
  bool replaced_characters = false;  // the code page lacked some; they became their best fit or "?"
};

// Writes TARGET (and, with a row limit, "NAME(1).EXT" and so on beside it; with the zip options
// "NAME.rvb-bin.zip", its members named as in database files and by the cells). UTF-16 files begin
// with FF FE, UTF-8 ones with the first cell: programs that take a mark there for data are more than those
// that need it. Lines end with CR LF.
//
// All files are written beside their targets first and replace them, one step each, when the last is
// complete. After a cancel and after all failures before that the targets are as they were; should the system
// refuse a replacement then, the result lists the files that were in place already. Settings that
// check_text_export_settings refuses fail with kInvalidCacheIndex.
TextExportResult export_text(const CWorkSheet& table, const std::string& target, const TextExport& settings,
                             Progress& progress = Progress::none());

}  // namespace rowvane
