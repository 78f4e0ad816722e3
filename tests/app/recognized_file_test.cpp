#include "app/formats/recognized_file.h"

#include <fstream>
#include <random>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/database/open_database.h"
#include "app/formats/text_content.h"
#include "platform/code_pages.h"
#include "platform/temporary_folder.h"
#include "zip/zip_writer.h"

namespace rowvane {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;

std::string utf16(std::string_view text, bool big_endian = false) {
  std::string bytes;
  platform::utf8_to_utf16le(text, bytes);
  for (size_t i = 0; big_endian && i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

std::string random_bytes(size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

class RecognizedFileTest : public testing::Test {
 protected:
  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(platform::path_of(folder_.path(name)), std::ios::binary) << content;
    return folder_.path(name);
  }
  std::string write_zip(const std::string& name, const std::vector<std::string>& members) const {
    ZipWriter writer;
    EXPECT_EQ(writer.create(folder_.path(name), {}), ErrorCode::kOk);
    for (const std::string& member : members)
      EXPECT_EQ(writer.add(member, "x", ZipMethod::kStored), ErrorCode::kOk);
    EXPECT_EQ(writer.finish(), ErrorCode::kOk);
    return folder_.path(name);
  }
  std::string refusal(const std::string& name, const std::string& content) const {
    return recognize_file(write(name, content)).refusal;
  }
  // The first cell of the table that a file is opened as.
  std::string first_cell(const std::string& path) const {
    const DatabaseOpening opened = OpenDatabase::open(recognize_file(path), Options());
    if (opened.database == nullptr) return "not opened: " + opened.failure.text();
    return opened.database->database().tables().front()->value_text(1, 0);
  }

  platform::TemporaryFolder folder_;
};

TEST_F(RecognizedFileTest, WhatIsNoTextIsRefusedByName) {
  const std::string tail = random_bytes(1000, 1);
  const std::string dbase =
      "\x03\x7C\x05\x11\x02\0\0\0\x41\0\x14\0\0\0"s + std::string(51, '\0') + "A 1A 2\x1A";
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"x.sqlite", "SQLite format 3\0"s + tail, "a SQLite database"},
      {"picture.csv", "\x89PNG\r\n\x1A\n" + tail, "a PNG image"},
      {"photo", "\xFF\xD8\xFF\xE0" + tail, "a JPEG image"},
      {"paper.txt", "%PDF-1.7\nall the rest is text\n", "a PDF document"},
      {"orders.csv.gz", "\x1F\x8B\x08" + tail, "a gzip archive"},
      {"orders.dbf", dbase, "an xBase table"},
      {"old.xls", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + tail, "an older Office document"},
      {"x.csv", "\xFE\xFF" + utf16("Name\nÅse\n", true), "a text in big-endian UTF-16"},
  };
  for (const auto& [name, content, description] : cases)
    EXPECT_EQ(refusal(name, content),
              std::string(name) + " is " + description + ", which Rowvane can't read");
  EXPECT_EQ(recognize_file(write_zip("a.xlsx", {"[Content_Types].xml", "xl/workbook.xml"})).refusal,
            "a.xlsx is an Excel workbook, which Rowvane can't read");
  EXPECT_EQ(refusal("noise.csv", tail), "noise.csv is no text, and of no format that Rowvane can read");
}

TEST_F(RecognizedFileTest, RandomBytesAreNoText) {
  for (unsigned seed = 0; seed < 300; ++seed)
    EXPECT_EQ(text_content_of(random_bytes(256 + seed * 13, seed)), TextContent::kBinary) << seed;
  // Small numbers of 2, 4 and 8 bytes, as binary files hold them.
  for (const size_t width : {2, 4, 8}) {
    std::string numbers;
    for (size_t i = 0; i < 500; ++i) {
      numbers += static_cast<char>(i % 200);
      numbers.append(width - 1, '\0');
    }
    EXPECT_EQ(text_content_of(numbers), TextContent::kBinary) << width;
  }
}

TEST_F(RecognizedFileTest, TextsOfAllEncodingsStayTexts) {
  std::string high = "Name,Town\r\n";
  for (int byte = 0x80; byte < 0x100; ++byte) high += static_cast<char>(byte);
  for (const std::string& text : {""s, "a"s, "a,b\n1,2\n\x1A"s, "a\fb\vc\n"s, "\x1B[1mbold\x1B[0m\n"s,
                                  "a\x1F"
                                  "b\x1E"s,
                                  "odd\x01mark\n"s, high, "\xEF\xBB\xBFName\n"s, "日本,語\n"s})
    EXPECT_EQ(text_content_of(text), TextContent::kText) << text;
  for (const char* text : {"Name,People\r\nPorto,232\r\n", "Имя,Город\nАнна,Москва\n",
                           "名前,町\n一一一,東京 1\n", "face,n\n😀,1\n", "x\n"}) {
    EXPECT_EQ(text_content_of(utf16(text)), TextContent::kUtf16) << text;
    EXPECT_EQ(text_content_of("\xFF\xFE" + utf16(text)), TextContent::kUtf16) << text;
    EXPECT_EQ(text_content_of(utf16(text, true)), TextContent::kBigEndianUtf16) << text;
  }
  const std::string cut = utf16("Name\nsmile 😀");
  EXPECT_EQ(text_content_of(cut.substr(0, cut.size() - 2)), TextContent::kUtf16)
      << "half of the last character";
  EXPECT_EQ(text_content_of(cut.substr(0, cut.size() - 1)), TextContent::kUtf16);
}

TEST_F(RecognizedFileTest, Utf16WithoutAMarkIsReadAsSuchAndSavedSo) {
  const std::string path = write("towns.tsv", utf16("Town\tPeople\nLuleå\t49\n"));
  const RecognizedFile file = recognize_file(path);
  EXPECT_EQ(file.text.separator, '\t');
  const DatabaseOpening opened = OpenDatabase::open(file, Options());
  ASSERT_NE(opened.database, nullptr) << opened.failure.text();
  CWorkSheet& table = *opened.database->database().tables().front();
  EXPECT_EQ(table.field_count(), 2U);
  EXPECT_EQ(table.value_text(1, 0), "Luleå");
  ASSERT_EQ(table.set_value(1, 1, 50.0), ErrorCode::kOk);
  ASSERT_EQ(opened.database->save_back().failure, ErrorCode::kOk);
  EXPECT_EQ(platform::content_of_file(path), "\xFF\xFE" + utf16("Town\tPeople\r\nLuleå\t50\r\n"));
}

TEST_F(RecognizedFileTest, TheContentDecidesBeforeTheName) {
  const DatabaseOpening text = OpenDatabase::open(recognize_file(write("a.csv", "Name\nAnna\n")), Options());
  ASSERT_NE(text.database, nullptr);
  ASSERT_EQ(text.database->save(folder_.path("shop.txt")).failure, ErrorCode::kOk);
  EXPECT_EQ(recognize_file(folder_.path("shop.txt")).format, &database_format());
  EXPECT_EQ(first_cell(folder_.path("shop.txt")), "Anna");
  EXPECT_EQ(first_cell(write("keys.csv", "PK,Name\n1,Anna\n")), "1") << "no archive begins so";
  EXPECT_EQ(first_cell(write("report.xls", "Name\nAnna\n")), "Anna") << "a text under the name of a workbook";
  EXPECT_EQ(first_cell(write("data.json", "Name\nAnna\n")), "Anna");
  for (const std::string& broken : {random_bytes(500, 7), "no database"s, ""s}) {
    const RecognizedFile file = recognize_file(write("broken.rvb", broken));
    EXPECT_THAT(file.refusal, IsEmpty());
    EXPECT_EQ(OpenDatabase::open(file, Options()).failure, ErrorCode::kInvalidBinaryFormat);
  }
}

TEST_F(RecognizedFileTest, TheUserSaysWhatItIs) {
  RecognizedFile file =
      recognize_file(write("noise.bin", "Name\n\x01\x02\x03\x04" + std::string(3, '\0') + "\n"));
  ASSERT_FALSE(file.refusal.empty());
  EXPECT_EQ(OpenDatabase::open(file, Options()).failure, file.refusal);
  file.take_as(text_format());
  const DatabaseOpening opened = OpenDatabase::open(file, Options());
  ASSERT_NE(opened.database, nullptr);
  EXPECT_EQ(opened.database->format(), &text_format());
}

TEST_F(RecognizedFileTest, ExportsFollowTheExtension) {
  for (const char* name : {"out.csv", "out.dat", "out.log", "out", ".profile", "out.CSV"}) {
    EXPECT_EQ(export_target(name).format, &text_format()) << name;
    EXPECT_THAT(export_target(name).refusal, IsEmpty()) << name;
  }
  EXPECT_EQ(export_target("folder/out.TSV").text.separator, '\t');
  EXPECT_EQ(export_target("folder/out.xlsx").refusal,
            "out.xlsx: a table can't be exported as an Excel workbook");
  EXPECT_EQ(export_target("out.rvb").format, &database_format());
}

TEST_F(RecognizedFileTest, NoExtensionBelongsToTwoFormats) {
  std::set<std::string_view> extensions;
  for (const FileFormat& format : file_formats()) {
    EXPECT_FALSE(format.description.empty());
    EXPECT_EQ(format.name.empty(), !format.can_open() && !format.can_export()) << format.description;
    for (const std::string_view extension : format.extensions)
      EXPECT_TRUE(extensions.insert(extension).second) << extension;
  }
}

}  // namespace
}  // namespace rowvane
