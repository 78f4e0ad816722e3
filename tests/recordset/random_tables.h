// Tables with a field of each type and random values that often repeat, for the tests of record sets.
#pragma once

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/options.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "recordset/record_set.h"

namespace rowvane {

inline Options with_threads(int threads) {
  Options options;
  options.used_processor_cores = threads;
  return options;
}

// The fields of random tables.
inline constexpr size_t kWordField = 0;    // few different words, which a collation partly takes for equal
inline constexpr size_t kSmallField = 1;   // small integers, errors
inline constexpr size_t kNumberField = 2;  // numbers of all sizes
inline constexpr size_t kTextField = 3;    // texts that rarely repeat and often begin alike
inline constexpr size_t kLongField = 4;    // long texts
inline constexpr size_t kFilesField = 5;   // files
inline constexpr size_t kCodeField = 6;    // codes
inline constexpr size_t kRandomFields = 7;

class RandomTable {
 public:
  explicit RandomTable(unsigned seed) : random_(seed) {}

  std::unique_ptr<CWorkSheet> make(uint32_t records) {
    TableData data;
    data.record_count = records;
    const FieldType types[kRandomFields] = {FieldType::kText, FieldType::kNumber,   FieldType::kNumber,
                                            FieldType::kText, FieldType::kLongText, FieldType::kFiles,
                                            FieldType::kCode};
    for (size_t i = 0; i < kRandomFields; ++i) {
      Field field;
      field.name = "f" + std::to_string(i);
      field.type = types[i];
      data.fields.push_back(field);
      data.columns.push_back(make_column(types[i]));
      resize_column(data.columns.back(), records);
    }
    std::get<TextColumn>(data.columns[kTextField]).interning = below(2) == 0;
    for (uint32_t record = 0; record < records; ++record) {
      for (size_t i = 0; i < kRandomFields; ++i) {
        if (below(8) != 0) store_value(data.columns[i], record, value(i));
      }
    }
    return std::make_unique<CWorkSheet>("random", std::move(data));
  }

  // The records in any order, some left out.
  RecordSet records(uint32_t count) {
    RecordSet chosen;
    for (uint32_t record = 0; record < count; ++record) {
      if (below(10) != 0) chosen.push_back(record);
    }
    std::shuffle(chosen.begin(), chosen.end(), random_);
    return chosen;
  }

  size_t below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random_); }

 private:
  CellValue value(size_t field) {
    switch (field) {
      case kWordField:
        return word();
      case kSmallField:
        return below(10) == 0 ? error_number(FormulaError(32 * (1 + below(7))))
                              : static_cast<double>(below(20)) - 10;
      case kNumberField:
        return number();
      case kTextField:
        return text();
      case kLongField:
      case kCodeField:
        return Content::of(below(3) == 0 ? std::string(8162, 'x') + text() : word());
      default:
        return FileList{{text(), {}, Content::of("f")}, {word(), {}, Content::of("g")}};
    }
  }

  std::string word() {
    static const std::vector<std::string> words = {"apple", "Apple", "APPLE", "co-op", "coop", "Coop",
                                                   "ähre",  "Ahre",  "zebra", "z",     "1",    "10",
                                                   "2",     "co'op", " ",     "été",   "ete"};
    return words[below(words.size())];
  }

  double number() {
    switch (below(4)) {
      case 0:
        return static_cast<double>(below(5)) / 4;
      case 1:
        return below(2) == 0 ? 0.0 : -0.0;
      case 2:
        return std::ldexp(static_cast<double>(below(1000)) - 500, static_cast<int>(below(1900)) - 950);
      default:
        return static_cast<double>(below(1u << 30)) * 0.1 - 5e7;
    }
  }

  std::string text() {
    std::string text = below(2) == 0 ? "the same beginning/" : "";
    for (size_t left = below(12); left > 0; --left) text += "abAB-\0z9"[below(8)];
    return text.empty() ? "-" : text;
  }

  std::mt19937 random_;
};

// Says that it was cancelled when it is asked once more than QUESTIONS times, and from then on.
class CancelAfter final : public Progress {
 public:
  explicit CancelAfter(int questions) : left_(questions) {}
  bool cancelled() const override { return left_.fetch_sub(1) <= 0; }
  bool was_cancelled() const { return left_ < 0; }

 private:
  mutable std::atomic<int> left_;
};

}  // namespace rowvane
