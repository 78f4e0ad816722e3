// What is saved is what is opened again, whatever a database holds.
#include <cmath>
#include <limits>

#include "core/parallel_blocks.h"
#include "database_test_support.h"

namespace rowvane {
namespace {

// Saves DATABASE and answers what opening gives, with THREADS threads on both ways.
std::string reopened(Database& database, const std::string& path, int threads = 2) {
  Options options;
  options.used_processor_cores = threads;
  DatabaseFile file(database);
  const Outcome saved = file.save(path, {}, options);
  EXPECT_EQ(saved.failure, ErrorCode::kOk);
  EXPECT_TRUE(saved.notices.empty());
  const OpenFile open = open_file(path, options);
  EXPECT_TRUE(open.notices.empty());
  EXPECT_FALSE(open.database->is_modified());
  EXPECT_FALSE(open.file->has_unused_members());
  return describe(*open.database);
}

std::unique_ptr<Database> database_with(std::unique_ptr<CWorkSheet> table) {
  auto database = std::make_unique<Database>();
  EXPECT_EQ(database->add_table(database->root(), table), ErrorCode::kOk);
  return database;
}

// A table of one field with a record for each of VALUES.
std::unique_ptr<CWorkSheet> column_table(FieldType type, const std::vector<CellValue>& values) {
  auto table = std::make_unique<CWorkSheet>("column", std::vector{make_field("values", type)});
  EXPECT_EQ(table->insert_records(1, static_cast<uint32_t>(values.size())), ErrorCode::kOk);
  for (size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(table->set_value(record_number(static_cast<uint32_t>(i)), 0, values[i]), ErrorCode::kOk) << i;
  }
  return table;
}

// The values come back from a table of one field and from one where they stand between others.
void expect_values_back(FieldType type, const std::vector<CellValue>& values) {
  TestFolder folder;
  const auto alone = database_with(column_table(type, values));
  EXPECT_TRUE(reopened(*alone, folder.path("alone.rvb")) == describe(*alone));
  auto table = column_table(type, values);
  ASSERT_EQ(table->insert_field(0, make_field("before")), ErrorCode::kOk);
  ASSERT_EQ(table->insert_field(2, make_field("behind", FieldType::kNumber)), ErrorCode::kOk);
  const auto between = database_with(std::move(table));
  EXPECT_TRUE(reopened(*between, folder.path("between.rvb")) == describe(*between));
}

TEST(DatabaseRoundTrip, Shop) {
  TestFolder folder;
  const auto shop = make_shop();
  EXPECT_EQ(reopened(*shop, folder.path("shop.rvb")), describe(*shop));
}

TEST(DatabaseRoundTrip, NoTables) {
  TestFolder folder;
  Database database;
  EXPECT_EQ(reopened(database, folder.path("none.rvb")), describe(database));
  EXPECT_EQ(member_names(folder.path("none.rvb")),
            (std::vector<std::string>{"this-version.txt", "min-version.txt", "config.dat",
                                      "META-INF/manifest.txt"}));
}

TEST(DatabaseRoundTrip, Texts) {
  std::vector<CellValue> values = {std::string(),
                                   "plain",
                                   "say \"hi\"",
                                   "\"",
                                   "\"\"",
                                   "a,b",
                                   ",",
                                   "a\rb",
                                   "a\nb",
                                   "a\r\nb",
                                   "\r",
                                   "\n",
                                   "\r\n\r\n",
                                   "a\tb",
                                   "\t",
                                   "\tx",
                                   "x\t",
                                   " lead",
                                   "trail  ",
                                   " ",
                                   "   ",
                                   " \"quoted\" ",
                                   "\"a\" b",
                                   "\xEF\xBB\xBFmark",
                                   "'",
                                   ";",
                                   "00501",
                                   "#VALUE!",
                                   "\\",
                                   std::string("nul\0inside", 10),
                                   std::string(1, '\0'),
                                   std::string(3, '\0'),
                                   "\x1A",
                                   "\x7F",
                                   std::string()};
  for (int control = 1; control < 0x20; ++control) {
    const char c = static_cast<char>(control);
    values.push_back(std::string(1, c));
    values.push_back("a" + std::string(1, c) + ",b\"" + std::string(2, c));
  }
  values.push_back(std::string(kMaxTextCharacters, 'x'));
  std::string longest;
  for (size_t i = 0; i < kMaxTextCharacters; ++i) longest += "\xF0\x9F\x98\x80";
  values.push_back(longest);
  values.push_back(std::string(kMaxTextCharacters, '"'));
  expect_values_back(FieldType::kText, values);
}

std::string utf8_of(uint32_t character) {
  std::string text;
  const auto put = [&text](uint32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | character >> 6);
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | character >> 18);
    put(0x80 | (character >> 12 & 0x3F));
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  }
  return text;
}

TEST(DatabaseRoundTrip, AllOfUnicode) {
  std::vector<CellValue> values;
  std::string text;
  for (uint32_t character = 0; character < 0x110000; ++character) {
    if (character < 0xD800 || character > 0xDFFF) text += utf8_of(character);
    if (character % 4096 == 4095) values.push_back(std::exchange(text, {}));
  }
  expect_values_back(FieldType::kText, values);
}

TEST(DatabaseRoundTrip, Numbers) {
  using Limits = std::numeric_limits<double>;
  std::vector<CellValue> values = {0.0,
                                   -0.0,
                                   1.0,
                                   -1.0,
                                   0.1,
                                   -0.1,
                                   1e15,
                                   1e-5,
                                   9.999e14,
                                   123456789.0,
                                   -123456789.0,
                                   1234567890.0,
                                   1e308,
                                   -1e308,
                                   Limits::max(),
                                   Limits::lowest(),
                                   Limits::min(),
                                   Limits::denorm_min(),
                                   -Limits::denorm_min(),
                                   Limits::min() / 3,
                                   Limits::epsilon(),
                                   1.0 / 3,
                                   9007199254740993.0,
                                   kEmptyNumber};
  values.emplace_back();
  for (int code = 32; code <= 224; code += 32)
    values.push_back(error_number(static_cast<FormulaError>(code)));
  std::mt19937_64 random(7);
  while (values.size() < 20'000) {
    const double number = std::bit_cast<double>(random());
    if (std::isfinite(number)) values.push_back(number);
  }
  expect_values_back(FieldType::kNumber, values);
}

TEST(DatabaseRoundTrip, LongTextsAndCode) {
  std::string large = sample_text(5'000'000);
  large[1'000'000] = '\0';
  const std::vector<CellValue> values = {Content::of("plain"),
                                         Content(),
                                         Content::of("{\\rtf1 x}"),
                                         Content::of("{urtf1 x}"),
                                         Content::of("{\\rt"),
                                         Content::of("x"),
                                         Content::of("\xEF\xBB\xBFmark\r\n\r\n"),
                                         Content::of(std::string(1, '\0')),
                                         Content::of(large),
                                         CellValue()};
  expect_values_back(FieldType::kLongText, values);
  expect_values_back(FieldType::kCode, values);
}

TEST(DatabaseRoundTrip, Files) {
  FileList many;
  for (size_t i = 0; i < kMaxContainerObjects; ++i) {
    many.push_back(make_file("file " + std::to_string(1000 - i) + ".bin", sample_text(i)));
  }
  const std::vector<CellValue> values = {
      FileList{make_file("b.txt", "same"), make_file("a.txt", "same"), make_file("empty", "")},
      many,
      FileList{},
      FileList{
          {"x.jpg", "C:\\pictures\\x.jpg", Content()}, make_file("y, \"z\".jpg"), {"w", "/tmp/w", Content()}},
      FileList{{"second.jpg", "/tmp/first.jpg", Content()}, {"a", "/odd|path/a", Content()}},
      FileList{make_file(" blank first"), make_file("Straße.txt"), make_file("..."), make_file("#")},
      FileList{make_file("text.txt", "not a long text")}};
  expect_values_back(FieldType::kFiles, values);
}

TEST(DatabaseRoundTrip, ManyFields) {
  TestFolder folder;
  std::vector<Field> fields;
  for (size_t i = 0; i < kMaxRecordBytes / kRecordSlotBytes; ++i) {
    fields.push_back(make_field("f" + std::to_string(i), i % 3 == 0 ? FieldType::kNumber : FieldType::kText));
    fields.back().position = static_cast<uint16_t>(i);
  }
  TableData data;
  for (const Field& field : fields) data.columns.push_back(make_column(field.type));
  data.fields = fields;
  data.record_count = 2;
  for (size_t i = 0; i < fields.size(); ++i) {
    resize_column(data.columns[i], 2);
    const CellValue value =
        i % 3 == 0 ? CellValue(static_cast<double>(i)) : CellValue("t" + std::to_string(i));
    store_value(data.columns[i], 1, value);
  }
  const auto database = database_with(std::make_unique<CWorkSheet>("wide", std::move(data)));
  EXPECT_TRUE(reopened(*database, folder.path("wide.rvb")) == describe(*database));
}

TEST(DatabaseRoundTrip, FlagsOfManyRecords) {
  TestFolder folder;
  TableData data;
  data.fields = {make_field("n", FieldType::kNumber)};
  data.columns = {make_column(FieldType::kNumber)};
  data.record_count = 70'000;
  resize_column(data.columns[0], data.record_count);
  for (uint32_t i = 0; i < data.record_count; ++i) {
    data.flags.push_back(static_cast<RecordFlags>(i < 60'000 ? i % 4096 : 1u << kFlagTypeShift));
  }
  const auto database = database_with(std::make_unique<CWorkSheet>("flags", std::move(data)));
  ASSERT_EQ(database->change_settings({{}, {{"one", 1}}}), ErrorCode::kOk);
  EXPECT_TRUE(reopened(*database, folder.path("flags.rvb")) == describe(*database));
}

// A table that is written in many blocks, with records of very different lengths.
std::unique_ptr<CWorkSheet> large_table(uint32_t records) {
  TableData data;
  data.fields = {make_field("text"), make_field("number", FieldType::kNumber), make_field("word")};
  data.record_count = records;
  std::mt19937 random(11);
  TextColumn texts;
  NumberColumn numbers;
  TextColumn words;
  for (uint32_t i = 0; i < records; ++i) {
    const size_t length = random() % 2000 == 0 ? 8000 : random() % 30;
    std::string text = "row " + std::to_string(i) + std::string(length, i % 5 == 0 ? '\n' : '"');
    texts.cells.push_back(texts.code_for(text));
    numbers.cells.push_back(random() % 10 == 0 ? kEmptyNumber : static_cast<double>(random()) / 8);
    words.cells.push_back(words.code_for("word " + std::to_string(random() % 100)));
  }
  data.columns = {std::move(texts), std::move(numbers), std::move(words)};
  return std::make_unique<CWorkSheet>("large", std::move(data));
}

TEST(DatabaseRoundTrip, LargeTableWithAnyNumberOfThreads) {
  TestFolder folder;
  const auto database = database_with(large_table(150'000));
  const std::string expected = describe(*database);
  std::string member;
  for (const int threads : {1, 2, 5}) {
    const std::string path = folder.path("large.rvb");
    EXPECT_TRUE(reopened(*database, path, threads) == expected) << threads;
    ZipReader reader;
    ASSERT_EQ(reader.open(path), ErrorCode::kOk);
    const ZipMember* table = reader.find("large.txt");
    ASSERT_NE(table, nullptr);
    EXPECT_GT(table->index.blocks.size(), 4U);
    EXPECT_TRUE(table->index.blocks_end_at_records);
    // The bytes do not depend on the number of threads.
    if (member.empty()) member = packed_bytes(path, "large.txt");
    EXPECT_TRUE(packed_bytes(path, "large.txt") == member) << threads;
  }
}

// Random databases and random edits, the same in each run.
class RandomDatabase {
 public:
  explicit RandomDatabase(unsigned seed) : random_(seed) {}

  std::unique_ptr<Database> make() {
    auto database = std::make_unique<Database>("random");
    DatabaseSettings settings;
    for (size_t i = 0; i < below(3); ++i)
      settings.record_flag_types.push_back({"type " + std::to_string(i), 77});
    for (size_t i = 0; i < below(4); ++i)
      settings.drop_down_lists.push_back({"list " + std::to_string(i), {text()}});
    EXPECT_EQ(database->change_settings(settings), ErrorCode::kOk);
    for (size_t i = 0; i < 1 + below(5); ++i) add_table(*database);
    return database;
  }

  void edit(Database& database) {
    for (size_t i = 0; i < 1 + below(12); ++i) edit_once(database);
  }

 private:
  size_t below(size_t limit) { return random_() % limit; }

  std::string text() {
    static const std::vector<std::string> kPieces = {"",
                                                     "a",
                                                     "\"",
                                                     ",",
                                                     "\n",
                                                     "\r\n",
                                                     " ",
                                                     "\t",
                                                     "ä",
                                                     "\xF0\x9F\x98\x80",
                                                     "text",
                                                     "|",
                                                     std::string(1, '\0'),
                                                     "{\\rtf"};
    std::string made;
    for (size_t i = 0; i < below(6); ++i) made += kPieces[below(kPieces.size())];
    return made;
  }

  CellValue value(FieldType type) {
    if (below(4) == 0) return {};
    switch (type) {
      case FieldType::kText:
        return text();
      case FieldType::kNumber:
        return static_cast<double>(random_()) / static_cast<double>(1 + below(1000));
      case FieldType::kLongText:
      case FieldType::kCode:
        return Content::of(text());
      case FieldType::kFiles:
        break;
    }
    FileList files;
    for (size_t i = 0; i < below(4); ++i) {
      const std::string name =
          "n" + std::to_string(below(9)) + std::to_string(i) + (below(2) == 0 ? ".zip" : ".doc");
      files.push_back(below(3) == 0 ? FileObject{name, "/x/" + name, Content()} : make_file(name, text()));
    }
    return files;
  }

  void add_table(Database& database) {
    static const std::vector<std::string> kFolders = {"", "one", "one/two", "Three"};
    Folder* folder = nullptr;
    EXPECT_EQ(database.make_folders(kFolders[below(4)], &folder), ErrorCode::kOk);
    const std::string name = database.free_name(*folder, "table" + std::to_string(below(3)));
    CWorkSheet* table = add_sample_table(database, *folder, name);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->insert_records(1, static_cast<uint32_t>(below(30))), ErrorCode::kOk);
    for (size_t i = 0; i < 60; ++i) set_cell(*table);
  }

  void set_cell(CWorkSheet& table) {
    if (table.record_count() == 0) return;
    const RecordNumber record = record_number(static_cast<uint32_t>(below(table.record_count())));
    const size_t field = below(table.field_count());
    EXPECT_EQ(table.set_value(record, field, value(table.field(field).type)), ErrorCode::kOk);
  }

  void edit_once(Database& database) {
    const std::vector<CWorkSheet*> tables = database.tables();
    CWorkSheet& table = *tables[below(tables.size())];
    const RecordNumber record = record_number(static_cast<uint32_t>(below(table.record_count() + 1)));
    const std::string name = "new" + std::to_string(random_());
    switch (below(12)) {
      case 0:
        EXPECT_EQ(table.insert_records(record, 1 + static_cast<uint32_t>(below(3))), ErrorCode::kOk);
        break;
      case 1:
        if (record < table.end_record()) {
          EXPECT_EQ(table.delete_records(std::vector{record.position()}), ErrorCode::kOk);
        }
        break;
      case 2:
        EXPECT_EQ(table.insert_field(below(table.field_count() + 1), make_field(name)), ErrorCode::kOk);
        break;
      case 3:
        EXPECT_NE(table.delete_field(below(table.field_count())), ErrorCode::kInvalidCacheIndex);
        break;
      case 4:
        EXPECT_EQ(table.move_field(below(table.field_count()), below(table.field_count())), ErrorCode::kOk);
        break;
      case 5:
        EXPECT_EQ(database.rename_table(table, name), ErrorCode::kOk);
        break;
      case 6:
        EXPECT_EQ(table.rename_field(below(table.field_count()), name), ErrorCode::kOk);
        break;
      case 7:
        EXPECT_NE(database.delete_table(table), ErrorCode::kInvalidPath);
        break;
      case 8:
        add_table(database);
        break;
      case 9:
        database.undo();
        break;
      default:
        set_cell(table);
    }
  }

  std::mt19937 random_;
};

class RandomRoundTrip : public testing::TestWithParam<unsigned> {};

TEST_P(RandomRoundTrip, SavesAndEditsInPlace) {
  TestFolder folder;
  RandomDatabase random(GetParam());
  OpenFile open(random.make());
  std::string path = folder.path("random.rvb");
  for (int round = 0; round < 12; ++round) {
    if (round == 6) path = folder.path("another name.rvb");
    ASSERT_EQ(save_file(open, path), ErrorCode::kOk);
    const std::string saved = describe(*open.database);
    EXPECT_FALSE(open.database->is_modified());
    ASSERT_EQ(describe(*open_file(path).database), saved) << "round " << round;
    if (round % 4 == 3) open = open_file(path);
    random.edit(*open.database);
  }
}

TEST_P(RandomRoundTrip, UndoAfterSaving) {
  TestFolder folder;
  RandomDatabase random(GetParam() + 1000);
  OpenFile open(random.make());
  const std::string path = folder.path("undo.rvb");
  ASSERT_EQ(save_file(open, path), ErrorCode::kOk);
  open = open_file(path);
  const std::string before = describe(*open.database);
  random.edit(*open.database);
  ASSERT_EQ(save_file(open, path), ErrorCode::kOk);
  while (open.database->undo()) {
  }
  EXPECT_EQ(describe(*open.database), before);
  ASSERT_EQ(save_file(open, path), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path).database), before);
  while (open.database->redo()) {
  }
  const std::string after = describe(*open.database);
  ASSERT_EQ(save_file(open, path), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path).database), after);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRoundTrip, testing::Range(0u, 12u));

}  // namespace
}  // namespace rowvane
