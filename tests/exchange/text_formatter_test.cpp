#include "exchange/text/text_formatter.h"

#include <cmath>

#include <gtest/gtest.h>

#include "exchange/export_test_support.h"
#include "exchange/text/archived_cells.h"
#include "exchange/text/text_import.h"

namespace rowvane {
namespace {

std::vector<size_t> all_fields(const CWorkSheet& table) {
  std::vector<size_t> fields(table.field_count());
  for (size_t i = 0; i < fields.size(); ++i) fields[i] = i;
  return fields;
}

std::string records(const CWorkSheet& table, const TextFileSettings& settings = {},
                    const TextDialect& dialect = {}) {
  const TextFormatter formatter(table, all_fields(table), settings, dialect);
  std::string out;
  EXPECT_EQ(formatter.append_range(0, table.record_count(), out), ErrorCode::kOk);
  return out;
}

// One cell in a record with a second one, so that the separator can be seen.
std::string cell_line(const std::string& cell, const TextFileSettings& settings = {}) {
  return records(test_table({{"a", FieldType::kText, {text(cell)}}, {"b", FieldType::kText, {text("z")}}}),
                 settings);
}

TextFileSettings with_flags(uint8_t flags) {
  TextFileSettings settings;
  settings.flags = flags;
  return settings;
}

TextFileSettings with_widths(std::initializer_list<uint16_t> widths) {
  TextFileSettings settings;
  settings.fixed_widths_on = 1;
  std::copy(widths.begin(), widths.end(), settings.fixed_widths.begin());
  return settings;
}

TEST(TextFormatter, QuotesWhatWouldBeMisread) {
  const std::pair<const char*, const char*> cells[] = {
      {"a", "a,z\r\n"},
      {"", ",z\r\n"},
      {"a,b", "\"a,b\",z\r\n"},
      {"\"", "\"\"\"\",z\r\n"},
      {"say \"hi\"", "\"say \"\"hi\"\"\",z\r\n"},
      {"x\ry", "\"x\ry\",z\r\n"},
      {"x\ny", "\"x\ny\",z\r\n"},
      {"x\r\ny", "\"x\r\ny\",z\r\n"},
      {" a", " a,z\r\n"},
      {"a;b\tc", "a;b\tc,z\r\n"},
      {"'", "',z\r\n"},
  };
  for (const auto& [cell, line] : cells) EXPECT_EQ(cell_line(cell), line);
}

TEST(TextFormatter, FollowsItsSettings) {
  TextFileSettings settings;
  settings.separator = ';';
  settings.quoting_symbol = '\'';
  EXPECT_EQ(cell_line("a;'b'", settings), "'a;''b''';z\r\n");
  EXPECT_EQ(cell_line("a,\"b\"", settings), "a,\"b\";z\r\n");
  settings = with_flags(TextFileSettings::kSeparated);
  EXPECT_EQ(cell_line("a,\"b\"\r\nc", settings), "a,\"b\"\r\nc,z\r\n");
  // Without a separator a comma needs no quotes; a tab stands between the cells.
  settings = with_flags(TextFileSettings::kQuoting);
  EXPECT_EQ(cell_line("a,b", settings), "a,b\tz\r\n");
  EXPECT_EQ(cell_line("a\"b", settings), "\"a\"\"b\"\tz\r\n");
}

TEST(TextFormatter, RepeatedAndSingleTextsLookTheSame) {
  std::vector<CellValue> repeated(40, text("a,b"));
  repeated[7] = text(std::string(100, 'x') + "\"");
  const CWorkSheet table = test_table({{"a", FieldType::kText, repeated}, {"b", FieldType::kText, repeated}});
  const std::string usual = "\"a,b\",\"a,b\"\r\n";
  const std::string long_cell = "\"" + std::string(100, 'x') + "\"\"\"";
  std::string expected;
  for (int i = 0; i < 40; ++i) expected += i == 7 ? long_cell + "," + long_cell + "\r\n" : usual;
  EXPECT_EQ(records(table), expected);
}

TEST(TextFormatter, WritesNumbersAsTheRestOfTheProgramDoes) {
  const double values[] = {0,
                           -0.0,
                           1,
                           9,
                           10,
                           99,
                           100,
                           101,
                           999,
                           1000,
                           9999,
                           10000,
                           10001,
                           65535,
                           1e6,
                           123456789,
                           1e14,
                           999999999999999,
                           1e15,
                           -1e15,
                           1e21,
                           1e300,
                           -1,
                           -10,
                           -2176,
                           0.5,
                           -0.1,
                           1e-7,
                           5e-324,
                           4294967296.0,
                           std::nextafter(1e15, 0)};
  std::vector<CellValue> cells;
  std::string expected;
  for (const double value : values) {
    cells.emplace_back(value);
    expected += number_to_text(value) + ",\r\n";
  }
  cells.emplace_back();
  cells.emplace_back(error_number(FormulaError::kName));
  expected += ",\r\n#NAME?,\r\n";
  EXPECT_EQ(records(test_table({{"n", FieldType::kNumber, cells}, {"e", FieldType::kText, {}}})), expected);
}

TEST(TextFormatter, QuotesNumbersThatHoldTheSeparator) {
  const CWorkSheet table = test_table(
      {{"n", FieldType::kNumber, {1.5, 15.0, -2.0}}, {"m", FieldType::kNumber, {CellValue(), 1.0, 0.25}}});
  EXPECT_EQ(records(table, {}, {.numbers = {",", "."}}), "\"1,5\",\r\n15,1\r\n-2,\"0,25\"\r\n");
  TextFileSettings settings;
  settings.separator = '-';
  EXPECT_EQ(records(table, settings), "1.5-\r\n15-1\r\n\"-2\"-0.25\r\n");
}

TEST(TextFormatter, ChoosesFieldsAndRecordsInTheirOrder) {
  const CWorkSheet table = test_table({{"one", FieldType::kText, {text("a"), text("b"), text("c")}},
                                       {"t,w", FieldType::kNumber, {1.0, 2.0, 3.0}}});
  const TextFormatter formatter(table, {1, 0}, {}, {});
  std::string out = "before|";
  formatter.append_names(out);
  const uint32_t positions[] = {2, 0};
  EXPECT_EQ(formatter.append_records(positions, out), ErrorCode::kOk);
  EXPECT_EQ(formatter.append_range(1, 2, out), ErrorCode::kOk);
  EXPECT_EQ(out, "before|\"t,w\",one\r\n3,c\r\n1,a\r\n2,b\r\n");
}

TEST(TextFormatter, FixedWidthsPadAndCut) {
  const CWorkSheet table =
      test_table({{"name", FieldType::kText, {text("\xC3\xA9t\xC3\xA9s"), text("x\r\ny"), text("")}},
                  {"n", FieldType::kNumber, {7.0, 1234.0, CellValue()}},
                  {"rest", FieldType::kText, {text("a b"), text("\"q\""), text("")}},
                  {"more", FieldType::kText, {text("1"), text("2"), text("3")}}});
  const TextFormatter formatter(table, all_fields(table), with_widths({3, 3}), {});
  std::string out;
  formatter.append_names(out);
  EXPECT_TRUE(formatter.has_cut_cells());
  EXPECT_EQ(formatter.append_range(0, 3, out), ErrorCode::kOk);
  EXPECT_EQ(out,
            "namn  rest\tmore\r\n"
            "\xC3\xA9t\xC3\xA9  7a b\t1\r\n"
            "x y###\"q\"\t2\r\n"
            "      \t3\r\n");
}

TEST(TextFormatter, FixedWidthsReadBack) {
  std::vector<CellValue> texts;
  std::vector<CellValue> numbers;
  for (int i = 0; i < 50; ++i) {
    texts.push_back(text(" word " + std::string(static_cast<size_t>(i % 5), '*')));
    numbers.emplace_back(i * 2.5 - 10);
  }
  std::get<std::string>(texts[3]) = "";
  std::get<std::string>(texts[4]) = "\xE2\x82\xAC \"a,b";
  const CWorkSheet table = test_table({{"t", FieldType::kText, texts}, {"n", FieldType::kNumber, numbers}});
  TextFileSettings settings = with_widths({12, 8});
  settings.flags &= static_cast<uint8_t>(~TextFileSettings::kFieldNames);
  const auto read = import_text_block(records(table, settings), {.text = settings});
  ASSERT_EQ(read.status(), Status::kOk);
  for (RecordNumber i = 1; i <= 50; ++i) {
    std::string expected = table.value_text(i, 0);
    expected.erase(expected.find_last_not_of(' ') + 1);  // as padding goes
    EXPECT_EQ(read.table->value_text(i, 0), expected);
    EXPECT_EQ(read.table->value_text(i, 1), table.value_text(i, 1));
  }
}

TEST(TextFormatter, CodePagesComeBeforeQuotes) {
  TextFileSettings settings;
  settings.encoding = encoding_of_code_page(1252).value();
  EXPECT_EQ(cell_line("\xE2\x82\xAC,\xC3\xA9", settings), "\"\x80,\xE9\",z\r\n");
  // A wide comma, of which the page has only the plain one.
  EXPECT_EQ(cell_line("a\xEF\xBC\x8C"
                      "b",
                      settings),
            "\"a,b\",z\r\n");
}

TEST(TextFormatter, TellsWhatACodePageLost) {
  TextFileSettings settings;
  settings.encoding = encoding_of_code_page(1252).value();
  std::vector<CellValue> cells(10, text("a"));
  cells[0] = text("\xE6\xBC\xA2");
  cells[1] = text(std::string(8169, 'x'));
  const CWorkSheet table = text_table(cells);
  const TextFormatter formatter(table, {0}, settings, {});
  std::string out;
  EXPECT_EQ(formatter.append_range(2, 10, out), ErrorCode::kOk);
  EXPECT_FALSE(formatter.has_cut_cells());
  EXPECT_FALSE(formatter.has_replaced_characters());
  out.clear();
  EXPECT_EQ(formatter.append_range(0, 2, out), ErrorCode::kOk);
  EXPECT_EQ(out, "?\r\n" + std::string(8166, 'x') + "\r\n");
  EXPECT_TRUE(formatter.has_cut_cells());
  EXPECT_TRUE(formatter.has_replaced_characters());
}

class BrokenSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
};

TEST(TextFormatter, WritesLongTextsWholeAndNamesOfFiles) {
  const std::string long_text(20'000, 'x');
  TextFileSettings settings;
  settings.encoding = encoding_of_code_page(437).value();
  const FileList files = {{"a.jpg", "", Content::of("1")}, {"b;c.txt", "/home/b.txt", {}}};
  const CWorkSheet table = test_table({{"l", FieldType::kLongText, {Content::of(long_text), CellValue()}},
                                       {"c", FieldType::kCode, {Content::of("f(1,2)"), CellValue()}},
                                       {"f", FieldType::kFiles, {files, CellValue()}}});
  EXPECT_EQ(records(table, settings), long_text + ",\"f(1,2)\",a.jpg; b;c.txt\r\n,,\r\n");
  const CWorkSheet broken =
      test_table({{"l", FieldType::kLongText, {Content::stored(std::make_shared<BrokenSource>(), 10)}}});
  std::string out;
  EXPECT_EQ(TextFormatter(broken, {0}, {}, {}).append_range(0, 1, out), ErrorCode::kZipCorrupted);
}

TEST(NativeText, LeavesOutWhatLiesOutside) {
  const FileList files = {{"a.jpg", "", Content::of("1")}, {"b.txt", "C:\\b.txt", {}}};
  const CWorkSheet table = test_table({{"l", FieldType::kLongText, {Content::of("long")}},
                                       {"c", FieldType::kCode, {Content::of("code")}},
                                       {"f", FieldType::kFiles, {files}}});
  EXPECT_EQ(records(table, {}, {.native = true}), ",,\"a.jpg\n|C:\\b.txt\"\r\n");
}

TEST(NativeText, KeepsBlanksControlsAndEmptyRecords) {
  const CWorkSheet table =
      test_table({{"a", FieldType::kText, {text("  x"), text("\ty\x01"), text("z "), text("")}},
                  {"b", FieldType::kText, {text(""), text(" "), text(""), text("")}}});
  EXPECT_EQ(records(table, {}, {.native = true}), "\"  x\",\r\n\"\ty\x01\",\" \"\r\nz ,\r\n,\r\n");
  const CWorkSheet one_text = text_table({text(""), text("a"), text("")});
  EXPECT_EQ(records(one_text, {}, {.native = true}), "\"\"\r\na\r\n\"\"\r\n");
  EXPECT_EQ(records(one_text), "\r\na\r\n\r\n");
  const CWorkSheet one_number = test_table({{"n", FieldType::kNumber, {CellValue(), 5.0}}});
  EXPECT_EQ(records(one_number, {}, {.native = true}), "\"\"\r\n5\r\n");
}

}  // namespace
}  // namespace rowvane
