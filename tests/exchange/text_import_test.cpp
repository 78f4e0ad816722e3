#include "exchange/text/text_import.h"

#include <atomic>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/database/names.h"
#include "exchange/export_test_support.h"
#include "exchange/text/text_export.h"
#include "exchange/text/text_pipeline.h"
#include "platform/code_pages.h"
#include "platform/file.h"
#include "platform/temporary_folder.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Settings = TextFileSettings;

TextImport without_names() {
  TextImport settings;
  settings.text.flags &= static_cast<uint8_t>(~Settings::kFieldNames);
  return settings;
}

TextImport with_encoding(uint8_t encoding) {
  TextImport settings = without_names();
  settings.text.encoding = encoding;
  return settings;
}

TextImportResult import(std::string_view text, const TextImport& settings = {}) {
  TextImportResult result = import_text_block(text, settings);
  EXPECT_EQ(result.status(), Status::kOk);
  return result;
}

std::vector<std::string> names(const TextImportResult& result) {
  std::vector<std::string> names;
  for (const Field& field : result.table->data().fields) names.push_back(field.name);
  return names;
}

std::string types(const TextImportResult& result) {
  std::string types;
  for (const Field& field : result.table->data().fields) {
    types += field.type == FieldType::kNumber ? 'N' : field.type == FieldType::kText ? 'T' : 'L';
  }
  return types;
}

std::vector<std::string> cells(const TextImportResult& result, size_t field = 0) {
  std::vector<std::string> cells;
  for (RecordNumber i = 1; i < result.table->end_record(); ++i)
    cells.push_back(result.table->value_text(i, field));
  return cells;
}

std::string lines(const std::vector<std::string>& cells) {
  std::string text;
  for (const std::string& cell : cells) text += cell + "\n";
  return text;
}

// The type that a column of these cells gets.
char column_type(const std::vector<std::string>& cells, const TextImport& settings = without_names()) {
  return types(import(lines(cells), settings))[0];
}

std::string utf16(std::string_view text) {
  std::string bytes;
  platform::utf8_to_utf16le(text, bytes);
  return bytes;
}

// Names

TEST(TextImportNames, AreRepairedAndUnique) {
  EXPECT_THAT(names(import("a,2019,,\xC3\xA9t\xC3\xA9,_x,A,a,\"b\nc\"\n")),
              ElementsAre("a", "field_2019", "field3", "\xC3\xA9t\xC3\xA9", "field__x", "A_2", "a_3", "b c"));
  EXPECT_THAT(names(import("a\n1,2,3\n")), ElementsAre("a", "field2", "field3"));
  EXPECT_THAT(names(import("a,b\n1,2\n", without_names())), ElementsAre("field1", "field2"));
  EXPECT_THAT(names(import("field2,,field2\n")), ElementsAre("field2", "field2_2", "field2_3"));
}

TEST(TextImportNames, AreCutAndDecoded) {
  const std::string name(9'000, 'n');
  EXPECT_THAT(names(import(name + ",9" + name)), ElementsAre(name.substr(0, kMaxNameBytes), "field2"));
  TextImport cyrillic;
  cyrillic.text.encoding = *encoding_of_code_page(1251);
  EXPECT_THAT(names(import("\xCF\xF0\xE8\n", cyrillic)), ElementsAre("\u041F\u0440\u0438"));
  const TextImportResult broken = import(
      "\xFC"
      "ber\n");
  EXPECT_THAT(names(broken), ElementsAre("\u00FC"
                                         "ber"));
  EXPECT_THAT(broken.notices, ElementsAre(UserText(ErrorCode::kInvalidUtf8)));
}

// Types

TEST(TextImportTypes, NumbersKeepWhatTheTextSays) {
  for (const char* number : {"1", "-7", "1.50", "1e-5", "\" 2 \"", "0.5", ".5", "123456789012345"}) {
    EXPECT_EQ(column_type({"1", number}), 'N') << number;
  }
  for (const char* text :
       {"x", "00501", "12345678901234567890", "+49", "0x10", "1 2", "\" \"", "inf", "1e999"}) {
    EXPECT_EQ(column_type({"1", text}), 'T') << text;
  }
  EXPECT_THAT(cells(import("1.50\n1e-5\n\" 2 \"\n\n-7\n", without_names())),
              ElementsAre("1.5", "0.00001", "2", "", "-7"));
}

TEST(TextImportTypes, EmptyCellsDecideNothing) {
  EXPECT_EQ(column_type({"", "1", "", ""}), 'N');
  EXPECT_EQ(column_type({"", "x", ""}), 'T');
  EXPECT_EQ(column_type({"", ""}), 'T');
  const TextImportResult blanks = import("\"  \"\n\"   \"\n", without_names());
  EXPECT_EQ(types(blanks), "T");
  EXPECT_THAT(cells(blanks), ElementsAre("  ", "   "));
}

TEST(TextImportTypes, ChosenTypes) {
  TextImport settings = without_names();
  settings.text.column_options[0] = Settings::kText;
  settings.text.column_options[1] = Settings::kNumber;
  settings.text.column_options[2] = Settings::kLongText;
  settings.text.column_options[3] = Settings::kNumber;
  const std::string text = "1,00501,1,x,1\n2,\" 7 \",,1,2\n";
  const TextImportResult analysed = import(text, settings);
  EXPECT_EQ(types(analysed), "TNLTN");
  EXPECT_THAT(cells(analysed, 1), ElementsAre("501", "7"));
  EXPECT_THAT(cells(analysed, 2), ElementsAre("1", ""));
  EXPECT_THAT(cells(analysed, 3), ElementsAre("x", "1"));
  EXPECT_THAT(analysed.notices, IsEmpty());

  settings.text.options = 0;
  const TextImportResult chosen = import(text, settings);
  EXPECT_EQ(types(chosen), "TNLNT");
  EXPECT_THAT(cells(chosen, 3), ElementsAre("", "1"));
  EXPECT_THAT(chosen.notices, ElementsAre(UserText(MessageId::kTextNotNumeric)));
}

TEST(TextImportTypes, SeparatorsOfTheUser) {
  TextImport settings = without_names();
  settings.text.separator = ';';
  settings.region = platform::regional_settings_of("de_DE");
  const TextImportResult german = import("1.234,5;1,5;1.5\n-2,25;x;2\n", settings);
  EXPECT_EQ(types(german), "NTT");
  EXPECT_EQ(std::get<double>(german.table->value(1, 0)), 1234.5);
  EXPECT_THAT(cells(german, 2), ElementsAre("1.5", "2"));
}

TEST(TextImportTypes, ColumnThatTurnsToTextLateKeepsItsTexts) {
  constexpr uint32_t kRecords = 200'000;
  std::string text = "first,late,last\n";
  for (uint32_t i = 0; i < kRecords; ++i) text += std::to_string(i) + ",1.50," + std::to_string(i) + ".0\n";
  text += "1,1e3x,\" 3 \"\n";
  const TextImportResult result = import(text);
  EXPECT_EQ(types(result), "NTN");
  ASSERT_EQ(result.table->record_count(), kRecords + 1);
  uint32_t kept = 0;
  for (RecordNumber i = 1; i <= kRecords; ++i) kept += result.table->value_text(i, 1) == "1.50";
  EXPECT_EQ(kept, kRecords);
  EXPECT_EQ(result.table->value_text(kRecords + 1, 1), "1e3x");
  EXPECT_EQ(result.table->value_text(kRecords, 2), std::to_string(kRecords - 1));
}

TEST(TextImportTypes, ColumnsThatAppearLateAreEmptyBefore) {
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += "abcdef\n";
  text += "a,b,3\n";
  const TextImportResult result = import(text, without_names());
  EXPECT_EQ(types(result), "TTN");
  EXPECT_EQ(result.table->value_text(200'000, 1), "");
  EXPECT_TRUE(is_empty(result.table->value(200'000, 2)));
  EXPECT_EQ(result.table->value_text(200'001, 1), "b");
  EXPECT_EQ(std::get<double>(result.table->value(200'001, 2)), 3.0);
}

// Dates

TextImport with_dates(const std::string& locale) {
  TextImport settings = without_names();
  settings.text.options |= Settings::kConvertDates;
  settings.region = platform::regional_settings_of(locale);
  return settings;
}

TEST(TextImportDates, FollowTheOrderOfTheLocale) {
  const std::string text = "3/4/2024\n2024-01-02 06:30\nMarch 5 2024\nsoon\n";
  EXPECT_THAT(cells(import(text, with_dates("en_US"))),
              ElementsAre("2024-03-04", "2024-01-02T06:30:00", "2024-03-05", "soon"));
  EXPECT_THAT(cells(import(text, with_dates("en_GB")))[0], "2024-04-03");
}

TEST(TextImportDates, NumbersAndLongTextsStay) {
  TextImport settings = with_dates("en_US");
  settings.text.column_options[1] = Settings::kLongText;
  const TextImportResult result = import("20240304,3/4/2024,3/4/2024\n", settings);
  EXPECT_EQ(types(result), "NLT");
  EXPECT_EQ(result.table->value_text(1, 1), "3/4/2024");
  EXPECT_EQ(result.table->value_text(1, 2), "2024-03-04");
}

TEST(TextImportDates, MarkedColumnsOnly) {
  TextImport settings = without_names();
  settings.region = platform::regional_settings_of("en_US");
  settings.text.column_options[1] = Settings::kText | Settings::kParseDates;
  const TextImportResult result = import("3/4/2024,3/4/2024\n", settings);
  EXPECT_EQ(result.table->value_text(1, 0), "3/4/2024");
  EXPECT_EQ(result.table->value_text(1, 1), "2024-03-04");
}

TEST(TextImportDates, OnlyTheFirstThirtyCharactersAreRead) {
  const std::string date = "3/4/2024" + std::string(22, ' ');
  EXPECT_THAT(cells(import(date + "x\n" + date.substr(1) + "x\n", with_dates("en_US"))),
              ElementsAre("2024-03-04", date.substr(1) + "x"));
}

TEST(TextImportDates, ColumnThatTurnsToTextLateHasDates) {
  std::string text;
  for (int i = 0; i < 150'000; ++i) text += "1000\n";
  text += "3/4/2024\n";
  const TextImportResult result = import(text, with_dates("en_US"));
  EXPECT_EQ(types(result), "T");
  EXPECT_EQ(result.table->value_text(1, 0), "1000");
  EXPECT_EQ(result.table->value_text(150'001, 0), "2024-03-04");
}

// Long cells and overflow

TEST(TextImportLimits, LongCellsAreCutByCharacters) {
  const uint8_t western = *encoding_of_code_page(1252);
  for (const size_t length : {8'165u, 8'169u, 8'170u, 8'192u, 20'000u, 40'000u}) {
    for (const bool ascii : {true, false}) {
      for (const bool quoted : {true, false}) {
        const std::string quote = quoted ? "\"" : "";
        std::string text = quote;
        std::string bytes = quote;
        for (size_t i = 0; i < length; ++i) text += ascii ? "a" : "\u00E9";
        bytes += std::string(length, ascii ? 'a' : '\xE9');
        const std::string end = quote + ",b\r\nc,d";
        for (const TextImportResult& result :
             {import(text + end, without_names()), import(bytes + end, with_encoding(western))}) {
          const std::string cell = result.table->value_text(1, 0);
          EXPECT_EQ(count_characters(cell), std::min<size_t>(length, kMaxTextCharacters)) << length;
          EXPECT_TRUE(is_valid_utf8(cell));
          EXPECT_EQ(result.table->value_text(1, 1), "b");
          EXPECT_EQ(result.table->value_text(2, 0), "c");
          EXPECT_EQ(result.notices.size(), length > kMaxTextCharacters ? 1u : 0u) << length;
          if (!result.notices.empty()) {
            EXPECT_EQ(result.notices[0], UserText(MessageId::kCellsTruncated));
          }
        }
      }
    }
  }
}

TEST(TextImportLimits, LongTextColumnsKeepTheirCells) {
  TextImport settings = without_names();
  settings.text.column_options[0] = Settings::kLongText;
  const std::string cell = "\u00E9" + std::string(40'000, 'x') + "\u20AC";
  const TextImportResult result = import("\"" + cell + "\",b\n", settings);
  EXPECT_EQ(result.table->value_text(1, 0), cell);
  EXPECT_THAT(result.notices, IsEmpty());
}

// Records that are larger than any block.
TEST(TextImportLimits, HugeRecordsDisturbNoOthers) {
  constexpr size_t kHuge = 20'000'000;
  const std::string text = "a,b\r\n\"" + std::string(kHuge, 'h') + "\n\",1\r\n\"q\"\"\",2\r\nlast,3\r\n";
  const TextImportResult cut = import(text);
  EXPECT_EQ(types(cut), "TN");
  ASSERT_EQ(cut.table->record_count(), 3u);
  EXPECT_EQ(cut.table->value_text(1, 0), std::string(kMaxTextCharacters, 'h'));
  EXPECT_EQ(cells(cut, 0)[1], "q\"");
  EXPECT_THAT(cells(cut, 1), ElementsAre("1", "2", "3"));
  EXPECT_THAT(cut.notices, ElementsAre(UserText(MessageId::kCellsTruncated)));

  TextImport settings;
  settings.text.column_options[0] = Settings::kLongText;
  const TextImportResult whole = import(text, settings);
  ASSERT_EQ(whole.table->record_count(), 3u);
  EXPECT_EQ(whole.table->value_text(1, 0), std::string(kHuge, 'h') + "\n");
  EXPECT_EQ(whole.table->value_text(3, 0), "last");
  EXPECT_THAT(whole.notices, IsEmpty());
}

TEST(TextImportLimits, QuoteThatIsNeverClosed) {
  const TextImportResult result = import("a\nb\n\"" + std::string(20'000'000, '\n'));
  EXPECT_EQ(result.table->record_count(), 2u);
  EXPECT_EQ(result.table->value_text(2, 0), std::string(kMaxTextCharacters, '\n'));
  EXPECT_THAT(result.notices, ElementsAre(UserText(MessageId::kCellsTruncated)));
}

TEST(TextImportLimits, RecordsWithoutRoomLeaveNoTrace) {
  TextImport settings;
  settings.max_records = 2;
  const std::string text = "n\n1\n2\n";
  EXPECT_THAT(import(text, settings).notices, IsEmpty());
  const TextImportResult cut = import(text + "x,y\n\xFF\n" + std::string(9'000, 'z'), settings);
  EXPECT_EQ(types(cut), "N");
  EXPECT_THAT(cells(cut), ElementsAre("1", "2"));
  EXPECT_THAT(cut.notices, ElementsAre(UserText(MessageId::kTooManyRecordsInFile)));
}

TEST(TextImportLimits, ManyRecordsWithoutRoom) {
  std::string text = "n,t\n";
  for (int i = 0; i < 300'000; ++i) text += i < 150'000 ? "1,x\n" : "x,1,wider\n";
  TextImport settings;
  settings.max_records = 150'000;
  const TextImportResult exact = import(text, settings);
  EXPECT_EQ(types(exact), "NT");
  EXPECT_EQ(exact.table->record_count(), 150'000u);
  settings.max_records = 150'001;
  const TextImportResult more = import(text, settings);
  EXPECT_EQ(types(more), "TTT");
  EXPECT_EQ(more.table->value_text(150'001, 2), "wider");
}

TEST(TextImportLimits, ColumnsWithoutRoom) {
  std::string record = "0";
  for (int i = 1; i < 20'000; ++i) record += "," + std::to_string(i);
  const TextImportResult result = import("a\n" + record + "\nb\n");
  EXPECT_EQ(result.table->field_count(), kMaxImportColumns);
  EXPECT_EQ(result.table->value_text(1, kMaxImportColumns - 1), "16383");
  EXPECT_EQ(result.table->value_text(2, 0), "b");
  EXPECT_THAT(result.notices, ElementsAre(UserText(MessageId::kTooManyColumnsInFile)));
}

// Encodings

TEST(TextImportEncodings, BrokenUtf8StaysReadable) {
  const TextImportResult result = import("a,\xFC\n\xE2\x82,\xC3\xA9\xFC\n", without_names());
  EXPECT_THAT(cells(result, 0), ElementsAre("a", "\u00E2\u201A"));
  EXPECT_THAT(cells(result, 1), ElementsAre("\u00FC", "\u00E9\u00FC"));
  EXPECT_THAT(result.notices, ElementsAre(UserText(ErrorCode::kInvalidUtf8)));
}

std::vector<std::string> letters_of(uint8_t encoding) {
  std::vector<std::string> letters = {"plain", "with,\"both\""};
  if (encoding < Settings::kFirstCodePage) {
    for (const char* text : {"\u00E9", "\u0416\u4E2D", "\U0001F600", "\uFEFF"}) letters.emplace_back(text);
    return letters;
  }
  const auto page = platform::CodePage::open(code_page_of(encoding));
  for (int byte = 0x80; byte < 0x100; ++byte) {
    std::string letter;
    page->to_utf8(std::string(1, static_cast<char>(byte)), letter);
    if (letter != "\uFFFD") letters.push_back(letter);
  }
  EXPECT_GT(letters.size(), 80u);
  return letters;
}

TEST(TextImportEncodings, EveryEncodingComesBack) {
  const platform::TemporaryFolder folder;
  for (uint8_t encoding = Settings::kUtf8; encoding <= kLastEncoding; ++encoding) {
    std::vector<CellValue> values;
    std::string all;
    const std::vector<std::string> letters = letters_of(encoding);
    for (const std::string& letter : letters) {
      values.push_back(text(letter));
      all += letter;
    }
    const CWorkSheet table = test_table({{"n" + letters.back(), FieldType::kText, values}});
    TextExport out;
    out.text.encoding = encoding;
    const std::string path = folder.path("t.csv");
    const TextExportResult written = export_text(table, path, out);
    ASSERT_EQ(written.status(), Status::kOk) << int(encoding);
    EXPECT_FALSE(written.replaced_characters) << int(encoding);
    TextImport in;
    in.text.encoding = encoding;
    const TextImportResult read = import_text_file(path, in);
    ASSERT_EQ(read.status(), Status::kOk) << int(encoding);
    EXPECT_EQ(cells(read), letters) << int(encoding);
    EXPECT_THAT(names(read), ElementsAre("n" + letters.back())) << int(encoding);
    EXPECT_THAT(read.notices, IsEmpty()) << int(encoding);
  }
}

TEST(TextImportEncodings, ByteOrderMarks) {
  EXPECT_THAT(cells(import("\xEF\xBB\xBF\"a\"\n", without_names())), ElementsAre("a"));
  EXPECT_THAT(cells(import("\xEF\xBB\xBF", without_names())), IsEmpty());
  EXPECT_THAT(cells(import("\xEF\xBB", without_names())), ElementsAre("\u00EF\u00BB"));
  EXPECT_THAT(cells(import("\xEF\xBB\xBF\xEF\xBB\xBFx", without_names())), ElementsAre("\uFEFFx"));
  const uint8_t western = *encoding_of_code_page(1252);
  EXPECT_THAT(cells(import("\xEF\xBB\xBFx", with_encoding(western))), ElementsAre("\u00EF\u00BB\u00BFx"));

  const TextImport wide = with_encoding(Settings::kUtf16);
  for (const char* mark : {"", "\xFF\xFE", "\xFE\xFF"}) {
    EXPECT_THAT(cells(import(mark + utf16("\u00E9\nb"), wide)), ElementsAre("\u00E9", "b"));
    EXPECT_THAT(cells(import(mark, wide)), IsEmpty());
    EXPECT_THAT(cells(import(mark + utf16("a\nb") + "c", wide)), ElementsAre("a", "b"));
  }
}

TEST(TextImportEncodings, Utf16PairsAtBlockEnds) {
  const TextImport wide = with_encoding(Settings::kUtf16);
  for (size_t before = 8'180; before < 8'200; ++before) {
    // Every sign from here on lies across the end of a block for some length of what comes before.
    std::vector<std::string> expected = {std::string(before - 1'000, 'a'), std::string(999, 'b')};
    for (int i = 0; i < 3'000; ++i) expected.emplace_back("\U0001F600\U0001F601\u00E9");
    const TextImportResult result = import("\xFF\xFE" + utf16(lines(expected)), wide);
    ASSERT_EQ(cells(result), expected) << before;
  }
  EXPECT_THAT(cells(import(utf16("a") + "\x3D\xD8", wide)), ElementsAre("a\uFFFD"));
}

// Files

class TextImportFiles : public testing::Test {
 protected:
  std::string write(std::string_view text) {
    std::string path = folder_.path("t.csv");
    EXPECT_EQ(platform::write_whole_file(path, text), platform::FileStatus::kOk);
    return path;
  }
  platform::TemporaryFolder folder_;
};

TEST_F(TextImportFiles, SmallFiles) {
  const TextImportResult empty = import_text_file(write(""), {});
  ASSERT_EQ(empty.status(), Status::kOk);
  EXPECT_THAT(names(empty), ElementsAre("field1"));
  EXPECT_EQ(empty.table->record_count(), 0u);
  const TextImportResult heading = import_text_file(write("a,b"), {});
  EXPECT_THAT(names(heading), ElementsAre("a", "b"));
  EXPECT_EQ(heading.table->record_count(), 0u);
  EXPECT_EQ(types(heading), "TT");
  EXPECT_THAT(cells(import_text_file(write("a\nb"), {})), ElementsAre("b"));
  TextImport named;
  named.table_name = "prices/2024";
  EXPECT_EQ(import_text_file(write("a"), named).table->name(), "prices_2024");
}

TEST_F(TextImportFiles, FilesThatCannotBeRead) {
  std::vector<std::string> paths = {folder_.path("missing.csv"), folder_.path("."), ""};
  const std::string unreadable = write("a\n1\n");
  std::filesystem::permissions(unreadable, std::filesystem::perms::none);
  platform::InputFile probe;
  if (probe.open(unreadable) != platform::FileStatus::kOk) paths.push_back(unreadable);
  for (const std::string& path : paths) {
    const TextImportResult result = import_text_file(path, {});
    EXPECT_EQ(result.status(), Status::kFailed) << path;
    EXPECT_NE(result.failure, ErrorCode::kOk) << path;
    EXPECT_EQ(result.table, nullptr) << path;
    EXPECT_EQ(import_text_sample(path, {}, 10).status(), Status::kFailed) << path;
  }
}

TEST_F(TextImportFiles, SampleIsTheFirstRecordsAsText) {
  std::string text = "n,d\n";
  for (int i = 0; i < 1'000'000; ++i) text += "1.50,3/4/2024\n";
  TextImport settings;
  settings.text.column_options[0] = Settings::kNumber;
  settings.region = platform::regional_settings_of("en_US");
  settings.text.options |= Settings::kConvertDates;
  const TextImportResult sample = import_text_sample(write(text), settings, 3);
  ASSERT_EQ(sample.status(), Status::kOk);
  EXPECT_THAT(names(sample), ElementsAre("n", "d"));
  EXPECT_EQ(types(sample), "TT");
  EXPECT_THAT(cells(sample, 0), ElementsAre("1.50", "1.50", "1.50"));
  EXPECT_EQ(cells(sample, 1)[2], "2024-03-04");
  const TextImportResult megabyte = import_text_sample(write(text), settings, 1'000'000);
  EXPECT_NEAR(megabyte.table->record_count(), 1'048'576.0 / 14, 2);
}

// Stops the work at the N-th report.
class StopAt final : public Progress {
 public:
  explicit StopAt(int reports) : left_(reports) {}
  void report(uint64_t done, uint64_t total) override {
    EXPECT_LE(done, total);
    --left_;
  }
  bool cancelled() const override { return left_ <= 0; }

 private:
  std::atomic<int> left_;
};

TEST_F(TextImportFiles, CancelledAtAnyBlock) {
  std::string text = "n,t\n";
  while (text.size() < 700'000) text += "1,x\n";
  text += "x,1\n";
  const std::string path = write(text);
  int blocks = 0;
  for (;; ++blocks) {
    StopAt progress(blocks);
    TextImport settings;
    settings.threads = 1 + blocks % 3;
    const TextImportResult result = import_text_file(path, settings, progress);
    if (result.status() == Status::kOk) break;
    ASSERT_EQ(result.status(), Status::kCancelled) << blocks;
    ASSERT_EQ(result.table, nullptr) << blocks;
    ASSERT_LT(blocks, 100);
  }
  EXPECT_GT(blocks, 40);  // both passes
}

// The same whatever the number of threads

std::string varied_text() {
  std::string text = "repeating,distinct,number,late,dates\n";
  for (unsigned i = 0; i < 120'000; ++i) {
    const std::string number = std::to_string(i * 2'654'435'761u % 1'000'003);
    text += "r" + std::to_string(i % 77) + ",d" + (i % 5 == 0 ? "" : number) + (i % 9 == 0 ? "\"\"" : "") +
            "," + number + "," + (i == 110'000 ? "x" : std::to_string(i)) +
            (i % 1'000 == 0 ? ",3/4/2024" : "") + "\n";
  }
  return text;
}

void expect_same_columns(const TableData& a, const TableData& b) {
  ASSERT_EQ(a.columns.size(), b.columns.size());
  for (size_t i = 0; i < a.columns.size(); ++i) {
    EXPECT_EQ(a.fields[i].name, b.fields[i].name);
    ASSERT_EQ(a.fields[i].type, b.fields[i].type);
    if (a.fields[i].type == FieldType::kNumber) {
      EXPECT_EQ(std::get<NumberColumn>(a.columns[i]).cells, std::get<NumberColumn>(b.columns[i]).cells);
      continue;
    }
    const auto& x = std::get<TextColumn>(a.columns[i]);
    const auto& y = std::get<TextColumn>(b.columns[i]);
    EXPECT_EQ(x.cells, y.cells) << i;
    ASSERT_EQ(x.pool->size(), y.pool->size()) << i;
    size_t same = 0;
    for (TextPool::Code code = 0; code < x.pool->size(); ++code)
      same += x.pool->text(code) == y.pool->text(code);
    EXPECT_EQ(same, x.pool->size()) << i;
  }
}

TEST_F(TextImportFiles, ThreadsAndSourcesGiveTheSameTable) {
  const std::string text = varied_text();
  const std::string path = write(text);
  TextImport settings = with_dates("en_US");
  settings.text.flags |= Settings::kFieldNames;
  for (const uint32_t max_records : {kDefaultMaxRecords, 100'000u}) {
    settings.max_records = max_records;
    settings.threads = 1;
    const TextImportResult one = import(text, settings);
    EXPECT_EQ(types(one), max_records == 100'000u ? "TTNNT" : "TTNTT");
    for (const int threads : {1, 2, 7, 7}) {
      settings.threads = threads;
      const TextImportResult other = import_text_file(path, settings);
      EXPECT_EQ(other.notices, one.notices);
      expect_same_columns(other.table->data(), one.table->data());
    }
  }
}

// Texts that a stream gives in any pieces fall into the same blocks.
TEST(TextImportBlocks, PiecesOfTheStreamDoNotMatter) {
  const std::string text = varied_text();
  const auto load = [&text](size_t piece) {
    const TextLoadPlan plan = text_load_plan({}, platform::RegionalSettings::generic());
    TextLoader loader(plan, text.size());
    size_t position = 0;
    const auto read = [&](std::span<char> buffer) {
      const size_t count = std::min({piece, buffer.size(), text.size() - position});
      text.copy(buffer.data(), count, position);
      position += count;
      return count;
    };
    EXPECT_EQ(load_text_stream(loader, plan, read), ErrorCode::kOk);
    return loader.finish();
  };
  const TableData whole = load(text.size());
  expect_same_columns(load(4'099), whole);
  expect_same_columns(load(100'003), whole);
}

}  // namespace
}  // namespace rowvane
