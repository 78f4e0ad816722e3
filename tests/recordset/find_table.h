// Tables for the tests of finding and replacing.
#pragma once

#include <algorithm>
#include <atomic>
#include <random>
#include <string>
#include <vector>

#include "core/database/database.h"
#include "core/sample_tables.h"
#include "recordset/find/find_text.h"

namespace rowvane {

inline FindText find_settings(std::string text, int threads = 2) {
  FindText settings;
  settings.pattern.text = std::move(text);
  settings.threads = threads;
  return settings;
}

inline FindText regex_settings(std::string text) {
  FindText settings = find_settings(std::move(text));
  settings.pattern.regular_expression = true;
  return settings;
}

// Values over few letters in every field, so that short texts are found often; some cells are empty.
inline void fill_randomly(CWorkSheet& table, uint32_t records, unsigned seed) {
  std::mt19937 random(seed);
  const auto word = [&random] {
    static const char* const letters[] = {"a", "b", "A", "B", "1", ".", " ", "ß", "Ä", "s"};
    std::string text;
    for (auto i = random() % 6; i > 0; --i) text += letters[random() % 10];
    return text;
  };
  ASSERT_EQ(table.insert_records(1, records), ErrorCode::kOk);
  for (RecordNumber record = 1; record < table.end_record(); ++record) {
    ASSERT_EQ(table.set_value(record, 0, word()), ErrorCode::kOk);
    if (random() % 4 > 0) {
      ASSERT_EQ(table.set_value(record, 1, static_cast<double>(random() % 100) / 4), ErrorCode::kOk);
    }
    if (record.number() % 8 != 0) continue;
    ASSERT_EQ(table.set_value(record, 2, Content::of(word())), ErrorCode::kOk);
    ASSERT_EQ(table.set_value(record, 3, FileList{make_file(word() + "x.png")}), ErrorCode::kOk);
  }
}

// Says to stop when it is asked for the Nth time.
class StopAfter final : public Progress {
 public:
  explicit StopAfter(int calls) : left_(calls) {}
  bool cancelled() const override { return left_.fetch_sub(1) <= 1; }

 private:
  mutable std::atomic<int> left_;
};

}  // namespace rowvane
