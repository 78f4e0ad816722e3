// Damaged and forged database files: an error or the right content, whatever the bytes.
#include "database_test_support.h"
#include "file/config_dat.h"
#include "zip/byte_stream.h"

namespace rowvane {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr size_t kBitStep = 13;  // slow builds try a sample
#else
constexpr size_t kBitStep = 1;
#endif

// A small database with one of everything, so that every bit of its file can be tried.
std::string small_file(const std::string& path) {
  OpenFile open(std::make_unique<Database>());
  EXPECT_EQ(open.database->change_settings({{{"l", {"i"}}}, {{"f", 1}}}), ErrorCode::kOk);
  Folder* folder = nullptr;
  EXPECT_EQ(open.database->make_folders("d", &folder), ErrorCode::kOk);
  CWorkSheet* table = add_sample_table(*open.database, *folder, "t");
  EXPECT_EQ(table->insert_records(1, 1), ErrorCode::kOk);
  EXPECT_EQ(table->set_value(1, 0, std::string("text")), ErrorCode::kOk);
  EXPECT_EQ(table->set_value(1, 1, 3.25), ErrorCode::kOk);
  EXPECT_EQ(table->set_value(1, 2, Content::of("long text")), ErrorCode::kOk);
  EXPECT_EQ(table->set_value(1, 3, FileList{make_file("a.zip", "stored"), {"s", "/s", Content()}}),
            ErrorCode::kOk);
  EXPECT_EQ(save_file(open, path), ErrorCode::kOk);
  return read_file(path);
}

class DatabaseDamage : public testing::Test {
 protected:
  ErrorCode error_of(const std::string& bytes) {
    write_file(path_, bytes);
    return open_database(path_, options_).failure.error();
  }

  // Opening the file with the member NAME holding CONTENT.
  ErrorCode error_with(const std::string& name, const std::string& content) {
    write_file(path_, whole_);
    ArchiveEdit(path_).set(name, content).write();
    return open_database(path_, options_).failure.error();
  }

  ErrorCode error_without(const std::string& name) {
    write_file(path_, whole_);
    ArchiveEdit(path_).remove(name).write();
    return open_database(path_, options_).failure.error();
  }

  TestFolder folder_;
  std::string path_ = folder_.path("small.rvb");
  std::string whole_ = small_file(path_);
  Options options_ = [] {
    Options options;
    options.used_processor_cores = 1;
    return options;
  }();
};

TEST_F(DatabaseDamage, EveryTruncationIsRefused) {
  ASSERT_EQ(error_of(whole_), ErrorCode::kOk);
  for (size_t size = 0; size < whole_.size(); ++size) {
    const ErrorCode error = error_of(whole_.substr(0, size));
    EXPECT_TRUE(error == ErrorCode::kZipUnexpectedEnd || error == ErrorCode::kInvalidBinaryFormat)
        << size << " gives " << static_cast<int>(error);
  }
}

TEST_F(DatabaseDamage, EveryFlippedBitIsNoticedOrHarmless) {
  const std::string right = describe(*open_file(path_, options_).database);
  size_t refused = 0;
  size_t told = 0;
  for (size_t bit = 0; bit < whole_.size() * 8; bit += kBitStep) {
    std::string damaged = whole_;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    write_file(path_, damaged);
    OpenedDatabase opened = open_database(path_, options_);
    if (opened.failure != ErrorCode::kOk) {
      ++refused;
      continue;
    }
    const std::string content = describe(*opened.database);
    if (content == right) continue;
    const bool is_told = has_notice(opened.notices, ErrorCode::kBinaryFieldsCorrupted) ||
                         content.find("error ") != std::string::npos;
    EXPECT_TRUE(is_told) << "bit " << bit << "\n" << content;
    ++told;
  }
  EXPECT_GT(refused, whole_.size() * 4 / kBitStep);
  EXPECT_GT(told, 100U / kBitStep);
}

TEST_F(DatabaseDamage, Manifest) {
  const std::string name = "META-INF/manifest.txt";
  const std::string manifest = member_content(path_, name);
  const std::string header = manifest.substr(0, manifest.find("\r\n"));
  EXPECT_EQ(error_without(name), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, ""), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, header), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, manifest.substr(5)), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, header + "\r\nconfig.dat"), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, header + "\r\nconfig.dat\t2"), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, header + "\r\nconfig.dat\t1\t5\tSHA1/1K"), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, manifest + "\r\nconfig.dat\t1"), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, manifest + "\r\n../x\t1"), ErrorCode::kManifest);
  EXPECT_EQ(error_with(name, header + "\r\nconfig.dat\t1"), ErrorCode::kOk);
  EXPECT_EQ(error_with(name, manifest + "\r\n"), ErrorCode::kOk);
  const std::string encryption =
      "\t5\tSHA1/1K\tAAAAAAAAAAAAAAAAAAAAAAAAAAA=\tBlowfish "
      "CFB\tAAAAAAAAAAA=\t\tAAAAAAAAAAAAAAAAAAAAAA==\t1024";
  EXPECT_EQ(error_with(name, header + "\r\nconfig.dat\t1" + encryption), ErrorCode::kInvalidPassword);
  EXPECT_EQ(error_with(name, header + "\r\nconfig.dat\t1\r\nd/t.txt\t1" + encryption),
            ErrorCode::kInvalidPassword);
}

TEST_F(DatabaseDamage, MembersThatAreNeeded) {
  EXPECT_EQ(error_without("config.dat"), ErrorCode::kManifest);
  EXPECT_EQ(error_without("d/t.txt"), ErrorCode::kInvalidBinaryFormat);
  EXPECT_EQ(error_without("this-version.txt"), ErrorCode::kOk);
  EXPECT_EQ(error_without("min-version.txt"), ErrorCode::kOk);
  EXPECT_EQ(error_with("config.dat", ""), ErrorCode::kInvalidBinaryFormat);
}

TEST_F(DatabaseDamage, OtherFiles) {
  EXPECT_NE(error_of(""), ErrorCode::kOk);
  EXPECT_EQ(error_of("plain text, no archive"), ErrorCode::kInvalidBinaryFormat);
  EXPECT_EQ(error_of(assemble({deflated_member("a.txt", "a")})), ErrorCode::kManifest);
  EXPECT_EQ(open_database(folder_.path("none.rvb"), options_).failure, ErrorCode::kFileOpen);
  EXPECT_EQ(open_database(folder_.path(""), options_).failure, ErrorCode::kFolderPath);
}

TEST_F(DatabaseDamage, UnsafeNamesInTheArchive) {
  for (const std::string name : {"../up.txt", "/root.txt", "a/../../b.txt", "C:/x.txt"}) {
    EXPECT_EQ(error_with(name, "x"), ErrorCode::kZipCorrupted) << name;
  }
  EXPECT_EQ(error_with(std::string("a\0b", 3), "x"), ErrorCode::kZipCorrupted);
  EXPECT_EQ(error_with("small.rvb-bin/d/../../../t.r000000001f00003/text.txt", "x"),
            ErrorCode::kZipCorrupted);
}

DatabaseConfig small_config() {
  DatabaseConfig config;
  config.database_name = "db";
  config.settings = {{{"list", {"a", ""}}}, {{"type", 7}}};
  config.folders = {{"f", 0}, {"g", 1}};
  Field field = make_field("name", FieldType::kNumber);
  field.formula = "1";
  field.encrypted = true;
  field.encryption = "header";
  config.protection = StoredProtection{CipherAlgorithm::kTwofishCfb, true};
  config.tables = {{"t", 2, 3, {field, make_field("b")}, {{1, 4096}, {2, 0}}, {}}};
  config.tables[0].objects.search_keys = {{"key", {{0, "d:1"}, {1, "c:x"}}}, {"no field", {}}};
  config.tables[0].objects.arrangement = {2, 1, 0};
  const auto later = std::make_shared<const std::string>("later");
  config.tables[0].later_objects = {{3, 1, later}, {9, 2, later}};
  config.later_objects = {{9, 1, later}};
  return config;
}

TEST(ConfigDamage, EveryCutIsRefused) {
  const std::string bytes = write_config(small_config());
  DatabaseConfig config;
  ASSERT_EQ(read_config(bytes, config), ErrorCode::kOk);
  EXPECT_EQ(write_config(config), bytes);
  for (size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_EQ(read_config(bytes.substr(0, size), config), ErrorCode::kInvalidBinaryFormat) << size;
  }
  EXPECT_EQ(read_config(bytes + '\0', config), ErrorCode::kInvalidBinaryFormat);
}

TEST(ConfigDamage, EveryChangedByteIsRefusedOrReadsAsItStands) {
  const std::string bytes = write_config(small_config());
  for (size_t i = 0; i < bytes.size(); ++i) {
    for (int change = 1; change < 256; ++change) {
      std::string damaged = bytes;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      DatabaseConfig config;
      if (read_config(damaged, config) != ErrorCode::kOk) continue;
      DatabaseConfig again;
      const std::string written = write_config(config);
      ASSERT_EQ(read_config(written, again), ErrorCode::kOk) << i;
      EXPECT_EQ(write_config(again), written) << i;
    }
  }
}

TEST(ConfigDamage, RulesAreChecked) {
  const auto error_after = [](const auto& change) {
    DatabaseConfig config = small_config();
    change(config);
    DatabaseConfig read;
    return read_config(write_config(config), read);
  };
  const ErrorCode invalid = ErrorCode::kInvalidBinaryFormat;
  EXPECT_EQ(error_after([](DatabaseConfig&) {}), ErrorCode::kOk);
  for (const std::string& name :
       {std::string(), std::string(".."), std::string("a/b"), std::string("a\\b"), std::string("C:"),
        std::string(" a"), std::string("a\0b", 3), std::string("\xFF")}) {
    EXPECT_EQ(error_after([&](DatabaseConfig& config) { config.tables[0].name = name; }), invalid) << name;
    EXPECT_EQ(error_after([&](DatabaseConfig& config) { config.folders[0].name = name; }), invalid) << name;
  }
  EXPECT_EQ(error_after([](DatabaseConfig& config) { config.tables[0].fields[0].name = "1"; }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& config) { config.tables[0].fields[0].name = "B"; }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& config) { config.tables[0].fields.clear(); }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& config) { config.tables[0].folder = 3; }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& config) { config.folders[0].parent = 1; }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& config) { config.tables[0].flag_runs[0].records = 2; }), invalid);
  EXPECT_EQ(error_after(
                [](DatabaseConfig& config) { config.tables[0].fields[0].type = static_cast<FieldType>(3); }),
            invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& config) {
              for (size_t i = 0; i < 16'384; ++i)
                config.tables[0].fields.push_back(make_field("f" + std::to_string(i)));
            }),
            invalid);
}

TEST(ConfigDamage, SearchKeysAreChecked) {
  const auto error_with = [](std::vector<SearchKey> keys) {
    DatabaseConfig config = small_config();
    config.tables[0].objects.search_keys = std::move(keys);
    DatabaseConfig read;
    return read_config(write_config(config), read);
  };
  const ErrorCode invalid = ErrorCode::kInvalidBinaryFormat;
  const std::string longest(kMaxBufferBytes, 'x');
  EXPECT_EQ(error_with({{longest, {{1, "d:" + longest}}}}), ErrorCode::kOk);
  EXPECT_EQ(error_with({{longest + "x", {}}}), invalid);
  EXPECT_EQ(error_with({{"k", {{1, "d:x" + longest}}}}), invalid);
  for (const std::string& name :
       {std::string(), std::string("  "), std::string("a\nb"), std::string("\xFF")}) {
    EXPECT_EQ(error_with({{name, {}}}), invalid) << name;
  }
  for (const std::string& criterion : {std::string(), std::string("d"), std::string("n:x"), std::string("dx"),
                                       std::string("d:a\0b", 5), std::string("d:\xFF")}) {
    EXPECT_EQ(error_with({{"k", {{0, criterion}}}}), invalid) << criterion;
  }
  EXPECT_EQ(error_with({{"k", {{2, "d:1"}}}}), invalid) << "no such field";
  EXPECT_EQ(error_with({{"k", {{1, "d:1"}, {0, "d:1"}}}}), invalid) << "not in order";
  EXPECT_EQ(error_with({{"k", {{0, "d:1"}, {0, "d:1"}}}}), invalid) << "one field twice";
  EXPECT_EQ(error_with({{"Key", {}}, {"kEY", {}}}), invalid) << "equal names";
}

std::string block(uint16_t kind, uint16_t version, std::string_view bytes) {
  ItemWriter out;
  out.put_u16(kind);
  out.put_u16(version);
  out.put_text(bytes);
  return out.bytes();
}

TEST(ConfigDamage, BlocksOfObjectsAreChecked) {
  DatabaseConfig bare = small_config();
  bare.tables[0].objects = {};
  bare.tables[0].later_objects.clear();
  std::string before = write_config(bare);
  before.resize(before.size() - 4);  // the count of the table's blocks
  const auto error_with = [&before](char count, const std::string& blocks) {
    DatabaseConfig read;
    return read_config(before + count + std::string(3, '\0') + blocks, read);
  };
  const ErrorCode invalid = ErrorCode::kInvalidBinaryFormat;
  const std::string keys = block(1, 1, std::string(4, '\0'));
  const std::string shown = block(2, 1, std::string("\2\0\0\0\0\0\0\0", 8));
  const std::string unknown = block(7, 3, "later");
  EXPECT_EQ(error_with(3, keys + shown + unknown), ErrorCode::kOk);
  EXPECT_EQ(error_with(3, keys + block(2, 2, "other version") + unknown), ErrorCode::kOk);
  EXPECT_EQ(error_with(1, block(65535, 65535, "")), ErrorCode::kOk);

  EXPECT_EQ(error_with(2, shown + keys), invalid) << "not in order";
  EXPECT_EQ(error_with(2, unknown + shown), invalid) << "a later kind before a known one";
  EXPECT_EQ(error_with(2, shown + shown), invalid) << "twice";
  EXPECT_EQ(error_with(2, unknown + unknown), invalid) << "a later kind twice";
  EXPECT_EQ(error_with(2, keys + block(1, 2, "")), invalid) << "two versions";
  EXPECT_EQ(error_with(1, block(0, 1, "")), invalid) << "no kind";
  EXPECT_EQ(error_with(1, block(7, 0, "")), invalid) << "no version";
  EXPECT_EQ(error_with(1, block(1, 1, "")), invalid) << "nothing in it";
  EXPECT_EQ(error_with(1, block(2, 1, std::string("\2\0\0\0\0\0\0", 7))), invalid) << "too short";
  EXPECT_EQ(error_with(1, block(2, 1, std::string("\2\0\0\0\0\0\0\0\0", 9))), invalid) << "too long";
  EXPECT_EQ(error_with(1, block(2, 1, std::string(8, '\0'))), invalid) << "no lines";
  EXPECT_EQ(error_with(1, block(2, 1, std::string("\x15\0\0\0\0\0\0\0", 8))), invalid) << "21 lines";
  EXPECT_EQ(error_with(2, unknown), invalid) << "one is missing";
  EXPECT_EQ(error_with(1, keys + unknown), invalid) << "one too many";
  EXPECT_EQ(error_with(1, unknown.substr(0, unknown.size() - 1)), invalid) << "cut";
  EXPECT_EQ(error_with(1, std::string("\7\0\1\0\xFF\xFF\xFF\xFF", 8)), invalid) << "longer than the file";
  EXPECT_EQ(error_with('\xFF', unknown), invalid) << "more than the rest can hold";
}

// A configuration as programs of older layouts wrote it.
std::string older_config(uint16_t layout) {
  ItemWriter out;
  const auto put_texts = [&out](std::initializer_list<std::string_view> texts) {
    for (const std::string_view text : texts) out.put_text(text);
  };
  out.put_u16(layout);
  out.put_text("db");
  out.put_u32(1);  // record flag types
  out.put_text("type");
  out.put_u32(7);
  out.put_u32(1);  // drop-down lists
  out.put_text("list");
  out.put_u32(2);
  put_texts({"a", ""});
  if (layout > 1) out.put_u8(0x82);
  out.put_u32(1);  // folders
  out.put_u32(0);
  out.put_text("f");
  out.put_u32(2);  // tables
  for (const std::string_view name : {"t", "u"}) {
    out.put_text(name);
    out.put_u32(1);
    out.put_u32(3);
    out.put_u32(1);  // fields
    out.put_text("field");
    out.put_u8(2);
    out.put_u8(4);
    put_texts({"1+1", "", "", "list", "0.00"});
    out.put_u16(80);
    out.put_u16(0);
    out.put_u32(2);  // runs of flags
    out.put_u32(1);
    out.put_u16(4096);
    out.put_u32(2);
    out.put_u16(0);
    if (layout > 2) {
      out.put_u32(1);  // search keys
      out.put_text("key");
      out.put_u32(1);
      out.put_u16(0);
      out.put_text("d:1");
    }
    if (layout > 3) {
      out.put_u16(5);  // lines
      out.put_u16(1);
      out.put_u32(2);
    }
  }
  return out.bytes();
}

TEST(ConfigDamage, OlderLayoutsAreRead) {
  Field field = make_field("field", FieldType::kNumber);
  field.hidden = true;
  field.formula = "1+1";
  field.drop_down_list = "list";
  field.format = "0.00";
  field.width = 80;
  DatabaseConfig expected;
  expected.database_name = "db";
  expected.settings = {{{"list", {"a", ""}}}, {{"type", 7}}};
  expected.folders = {{"f", 0}};
  for (const char* name : {"t", "u"}) expected.tables.push_back({name, 1, 3, {field}, {{1, 4096}, {2, 0}}});
  for (uint16_t layout = 1; layout <= 4; ++layout) {
    if (layout == 2) expected.protection = StoredProtection{CipherAlgorithm::kTwofishCfb, true};
    for (StoredTable& table : expected.tables) {
      if (layout == 3) table.objects.search_keys = {{"key", {{0, "d:1"}}}};
      if (layout == 4) table.objects.arrangement = {5, 1, 2};
    }
    const std::string bytes = older_config(layout);
    DatabaseConfig read;
    ASSERT_EQ(read_config(bytes, read), ErrorCode::kOk) << layout;
    EXPECT_EQ(write_config(read), write_config(expected)) << layout;
    EXPECT_EQ(read_config(bytes + '\0', read), ErrorCode::kInvalidBinaryFormat) << layout;
    for (size_t size = 0; size < bytes.size(); ++size)
      EXPECT_EQ(read_config(bytes.substr(0, size), read), ErrorCode::kInvalidBinaryFormat)
          << layout << " " << size;
  }
  DatabaseConfig read;
  EXPECT_EQ(read_config(older_config(0), read), ErrorCode::kInvalidBinaryFormat);
  std::string newer = write_config(expected);
  newer[0] = static_cast<char>(newer[0] + 1);
  EXPECT_EQ(read_config(newer, read), ErrorCode::kNewerVersion);
}

TEST(ConfigDamage, DoubtfulTextsAreRepaired) {
  DatabaseConfig config = small_config();
  config.tables[0].fields[0].formula = "a\xFF";
  config.tables[0].flag_runs[0].flags = 0xF003;  // a type that is no more
  DatabaseConfig read;
  ASSERT_EQ(read_config(write_config(config), read), ErrorCode::kOk);
  EXPECT_EQ(read.tables[0].fields[0].formula, "aÿ");
  EXPECT_EQ(read.tables[0].flag_runs[0].flags, 0x0003);
}

TEST_F(DatabaseDamage, ConfigurationsThatContradictTheRules) {
  DatabaseConfig config;
  ASSERT_EQ(read_config(member_content(path_, "config.dat"), config), ErrorCode::kOk);
  const auto error_after = [&](const auto& change) {
    DatabaseConfig changed = config;
    change(changed);
    return error_with("config.dat", write_config(changed));
  };
  const ErrorCode invalid = ErrorCode::kInvalidBinaryFormat;
  EXPECT_EQ(error_after([](DatabaseConfig& c) { c.tables.push_back(c.tables[0]); }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& c) { c.folders.push_back(c.folders[0]); }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& c) { c.folders.push_back({"META-INF", 0}); }), invalid);
  EXPECT_EQ(error_after([](DatabaseConfig& c) {
              c.settings.record_flag_types.resize(11, {"x", 0});
            }),
            invalid);
  // A chain of folders as deep as memory goes must not exhaust the stack.
  EXPECT_EQ(error_after([](DatabaseConfig& c) {
              for (uint32_t i = 0; i < 200'000; ++i) c.folders.push_back({"x", i});
            }),
            invalid);
}

TEST_F(DatabaseDamage, TableThatInflatesFiveHundredfold) {
  // One cell after the other: cut to the longest text, so that memory stays small.
  write_file(path_, whole_);
  ZipWriter writer;
  const std::string bomb = folder_.path("bomb.rvb");
  ASSERT_EQ(writer.create(bomb, {.level = 9}), ErrorCode::kOk);
  ZipReader reader;
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  for (const ZipMember& member : reader.members()) {
    if (member.name == "d/t.txt") continue;
    ASSERT_EQ(writer.copy(reader, member, member.name), ErrorCode::kOk);
  }
  ASSERT_EQ(writer.begin("d/t.txt", ZipMethod::kDeflated), ErrorCode::kOk);
  ASSERT_EQ(writer.write("text,number,long,files,code\r\n"), ErrorCode::kOk);
  const std::string piece(1 << 20, 'x');
  for (int i = 0; i < 256; ++i) ASSERT_EQ(writer.write(piece), ErrorCode::kOk);
  ASSERT_EQ(writer.end(), ErrorCode::kOk);
  ASSERT_EQ(writer.finish(), ErrorCode::kOk);
  ASSERT_LT(std::filesystem::file_size(bomb), 600'000U);
  const OpenFile open = open_file(bomb, options_);
  EXPECT_TRUE(has_notice(open.notices, MessageId::kCellsTruncated));
  EXPECT_EQ(open.database->tables()[0]->value_text(1, 0), std::string(kMaxTextCharacters, 'x'));
}

TEST_F(DatabaseDamage, RecordsBeyondTheLimitGiveANotice) {
  std::string text = "text,number,long,files,code\r\n";
  for (int i = 0; i < 500; ++i) text += "a,1,,,\r\n";
  ArchiveEdit(path_).set("d/t.txt", text).write();
  options_.max_records = 100;
  const OpenFile open = open_file(path_, options_);
  EXPECT_TRUE(has_notice(open.notices, MessageId::kTooManyRecordsInFile));
  EXPECT_EQ(open.database->tables()[0]->record_count(), 100U);
}

TEST_F(DatabaseDamage, ADatabaseWithinADatabaseIsOnlyAFile) {
  EXPECT_EQ(error_with("small.rvb-bin/d/t.r000000001f00004/small.rvb", whole_), ErrorCode::kOk);
  OpenFile open = open_file(path_, options_);
  open_file(path_, options_);
  EXPECT_EQ(open.database->tables().size(), 1U);
  EXPECT_TRUE(open.file->has_unused_members());  // the table is not in the top folder
}

TEST_F(DatabaseDamage, TooManyAndOddObjectsInOneCell) {
  ArchiveEdit edit(path_);
  const std::string cell = "small.rvb-bin/t.r000000001f00004/";
  edit.set(cell + "A.ZIP", "second of the name").set(cell + "|pipe", "x").set(cell + "line\nbreak", "y");
  for (int i = 0; i < 300; ++i) edit.set(cell + std::to_string(i), "z");
  edit.write();
  OpenFile open = open_file(path_, options_);
  EXPECT_TRUE(has_notice(open.notices, ErrorCode::kTooManyContainerObjects));
  CWorkSheet& table = *open.database->tables()[0];
  const CellValue value = table.value(1, 3);
  ASSERT_EQ(std::get<FileList>(value).size(), kMaxContainerObjects);
  EXPECT_EQ(table.validate_value(1, 3, value), ErrorCode::kOk);
  const std::string before = describe(*open.database);
  ASSERT_EQ(table.set_value(1, 0, std::string("changed")), ErrorCode::kOk);
  ASSERT_TRUE(open.database->undo());
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path_, options_).database), before);
}

}  // namespace
}  // namespace rowvane
