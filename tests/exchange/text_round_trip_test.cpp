// What is written reads back to the same cells.
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "exchange/export_test_support.h"
#include "exchange/text/text_export.h"
#include "exchange/text/text_import.h"
#include "exchange/text/text_stream.h"
#include "platform/temporary_folder.h"

namespace rowvane {
namespace {

constexpr size_t kRecords = 400;

// Up to six of the PIECES.
std::string random_cell(const std::vector<std::string>& pieces, std::mt19937& random) {
  std::string cell;
  for (size_t count = random() % 7; count > 0; --count) cell += pieces[random() % pieces.size()];
  return cell;
}

CWorkSheet random_table(size_t fields, const std::vector<std::string>& pieces, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<TestField> columns;
  for (size_t i = 0; i < fields; ++i) {
    TestField column{"f" + std::to_string(i), FieldType::kText, {}};
    for (size_t record = 0; record < kRecords; ++record)
      column.cells.emplace_back(random_cell(pieces, random));
    columns.push_back(std::move(column));
  }
  return test_table(columns);
}

void expect_same_cells(const CWorkSheet& read, const CWorkSheet& written) {
  ASSERT_EQ(read.record_count(), written.record_count());
  ASSERT_EQ(read.field_count(), written.field_count());
  for (RecordNumber record = 1; record < written.end_record(); ++record) {
    for (size_t field = 0; field < written.field_count(); ++field) {
      ASSERT_EQ(read.value_text(record, field), written.value_text(record, field)) << record << ", " << field;
    }
  }
}

TEST(TextRoundTrip, DatabaseFilesKeepEveryCell) {
  const std::vector<std::string> pieces = {",",  ";",  "\"",   "'", " ",       "\t",
                                           "\r", "\n", "\x01", "a", "\xC3\xA9"};
  for (const size_t fields : {1, 2, 4}) {
    for (const char separator : {',', ';', '\t', ' '}) {
      TextFileSettings settings;
      settings.separator = static_cast<uint8_t>(separator);
      settings.quoting_symbol = fields == 2 ? '\'' : '"';
      const CWorkSheet table = random_table(fields, pieces, static_cast<unsigned>(fields));
      std::vector<size_t> all(fields);
      std::iota(all.begin(), all.end(), size_t{0});
      TextDialect dialect;
      dialect.native = true;
      const TextFormatter formatter(table, all, settings, dialect);
      std::string out;
      formatter.append_names(out);
      ASSERT_EQ(formatter.append_range(0, table.record_count(), out), ErrorCode::kOk);
      TextLoadPlan plan = text_load_plan(settings, platform::RegionalSettings::generic());
      plan.rules.keep_controls = true;
      plan.columns.assign(fields, ColumnPlan{});
      MemoryTextSource source(out);
      TextStreamResult read = load_text(source, plan, Progress::none());
      ASSERT_EQ(read.status(), Status::kOk);
      expect_same_cells(CWorkSheet("read", std::move(read.data)), table);
    }
  }
}

TEST(TextRoundTrip, ExportedFilesKeepWhatTextFilesCan) {
  // Leading spaces and control characters are lost to readers.
  const std::vector<std::string> pieces = {",",  ";", "\"", "'",        "\r",
                                           "\n", "|", "a",  "\xC3\xA9", "\xE2\x82\xAC"};
  const platform::TemporaryFolder folder;
  const std::string path = folder.path("t.txt");
  for (const uint8_t encoding : {TextFileSettings::kUtf8, TextFileSettings::kUtf16, uint8_t{22}}) {
    for (const char separator : {',', '|', 'a', ' '}) {
      TextExport settings;
      settings.text.encoding = encoding;
      settings.text.separator = static_cast<uint8_t>(separator);
      settings.text.options = 0;
      const CWorkSheet table = random_table(3, pieces, encoding);
      const TextExportResult written = export_text(table, path, settings);
      ASSERT_EQ(written.status(), Status::kOk);
      EXPECT_FALSE(written.replaced_characters);
      const TextImportResult read = import_text_file(path, {.text = settings.text});
      ASSERT_EQ(read.status(), Status::kOk);
      expect_same_cells(*read.table, table);
    }
  }
}

}  // namespace
}  // namespace rowvane
