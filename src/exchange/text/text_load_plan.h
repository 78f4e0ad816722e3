// What is to be made of the columns of a text.
#pragma once

#include <cstdint>
#include <vector>

#include "core/values/number_text.h"
#include "exchange/text/text_rules.h"
#include "platform/regional_settings.h"

namespace rowvane {

enum class ColumnLoad : uint8_t {
  kAnalyze,       // Number when nothing is lost by it (parse_number_exactly), otherwise Text
  kNumberOrText,  // chosen as Number, analysed: Number when every cell reads as one (parse_number), otherwise
                  // Text
  kNumber,        // Number; cells that do not read as one stay empty and are counted
  kStoredNumber,  // Number as database files hold it: formula errors by name
  kText,
  kEncryptedText,  // Text as database files hold encrypted values: as long as the pool takes, 65,535 bytes
  kLongText,
  kSkip,
};

inline bool is_analysed(ColumnLoad load) {
  return load == ColumnLoad::kAnalyze || load == ColumnLoad::kNumberOrText;
}

struct ColumnPlan {
  ColumnLoad load = ColumnLoad::kText;
  bool dates = false;  // texts that read as dates are replaced by the standard date text
};

// How a stream is cut into blocks, in bytes. Other than these only in tests.
struct TextBlockSizes {
  size_t block = 512 * 1024;         // aimed at
  size_t read = 65'535;              // pulled at a time
  size_t largest = 8 * 1024 * 1024;  // a record beyond is read piece by piece
};

struct TextLoadPlan {
  TextRules rules;
  uint8_t encoding =
      TextFileSettings::kUtf8;  // of the bytes that are cut into cells: UTF-16 arrives as UTF-8
  bool names_row = true;        // the first record holds the field names
  NumberSeparators numbers;
  platform::RegionalSettings region;  // for dates
  std::vector<ColumnPlan> columns;    // the columns beyond are as `further`
  ColumnPlan further;
  size_t max_columns = kMaxImportColumns;
  uint32_t max_records = kDefaultMaxRecords;
  int threads = 1;
  TextBlockSizes sizes;

  const ColumnPlan& column(size_t index) const { return index < columns.size() ? columns[index] : further; }
};

// The plan for a text file that a user opens.
TextLoadPlan text_load_plan(const TextFileSettings& settings, const platform::RegionalSettings& region);

}  // namespace rowvane
