// Opening a text as a table.
//
// Which columns become numbers, when field types are analysed ("no information loss"): those in which every
// cell with a text is a number that keeps what the text says, by the rule of parse_number_exactly
// (core/values/number_text.h): 00501 and a 20-digit account number stay text, 1.50, 1e-5 and " 2 " are
// numbers. Empty cells decide nothing; a column without any text is Text. A column that the user set to
// Number is examined too, but by parse_number: 00501 reads as 501 there. Without analysis such a column stays
// Number, and cells that are no numbers stay empty (message 107).
//
// Records behind the largest number leave no trace: no columns, types or notices come from them. A text gives
// the same table, codes of texts included, whatever the number of threads.
//
// Names of fields that occur twice get a number ("name_2"). A cell that is not valid UTF-8 where UTF-8 was
// chosen keeps its valid characters, and its other bytes are read as code page 1252; error 128's advice is
// among the notices.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/outcome.h"
#include "core/options.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "exchange/text/text_file_settings.h"
#include "platform/regional_settings.h"

namespace rowvane {

struct TextImport {
  std::string table_name = "table";
  TextFileSettings text;
  platform::RegionalSettings region = platform::RegionalSettings::generic();  // of numbers and dates
  uint32_t max_records = kDefaultMaxRecords;
  int threads = 0;  // as thread_count takes it
};

// Notices: messages 123, 124, 125, 107 and error 128.
struct TextImportResult : Outcome {
  std::unique_ptr<CWorkSheet> table;  // null unless it was done
};

TextImportResult import_text_file(const std::string& path, const TextImport& settings,
                                  Progress& progress = Progress::none());

// TEXT is in the encoding of the settings.
TextImportResult import_text_block(std::string_view text, const TextImport& settings,
                                   Progress& progress = Progress::none());

// The first records of a file, all as text, read with the current settings: the sample of the dialogs. At
// most RECORDS records of the first megabyte; fails when the file can't be read.
TextImportResult import_text_sample(const std::string& path, const TextImport& settings, uint32_t records);

}  // namespace rowvane
