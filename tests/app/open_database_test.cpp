#include "app/database/open_database.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "platform/temporary_folder.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OpenDatabaseTest : public testing::Test {
 protected:
  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(platform::path_of(folder_.path(name)), std::ios::binary) << content;
    return folder_.path(name);
  }
  std::string read(const std::string& name) const { return platform::content_of_file(folder_.path(name)); }

  static std::unique_ptr<OpenDatabase> open(const std::string& path, char separator = ',') {
    RecognizedFile file = recognize_file(path);
    file.text.separator = static_cast<uint8_t>(separator);
    DatabaseOpening opened = OpenDatabase::open(file, Options());
    EXPECT_EQ(opened.failure, ErrorCode::kOk) << path;
    return std::move(opened.database);
  }
  static CWorkSheet& first_table(OpenDatabase& open) { return *open.database().tables().front(); }
  static void add_formula(OpenDatabase& open, const std::string& formula) {
    Field field;
    field.name = "Calculated";
    field.type = FieldType::kNumber;
    field.formula = formula;
    ASSERT_EQ(first_table(open).insert_field(first_table(open).field_count(), field), ErrorCode::kOk);
  }
  static void protect(OpenDatabase& open) {
    ProtectionSettings protection;
    std::string password = "secret words";
    protection.password = Secret::take(password);
    ASSERT_EQ(open.file().set_protection(make_protection(std::move(protection))), ErrorCode::kOk);
  }

  platform::TemporaryFolder folder_;
};

TEST_F(OpenDatabaseTest, ATextGoesBackAsItWasReadAndOnlyWhatItCanHold) {
  const auto open = this->open(write("towns.txt", "Town;People\nPorto;232\n"), ';');
  EXPECT_EQ(open->title(), "towns.txt");
  EXPECT_FALSE(open->has_database_file());
  ASSERT_EQ(first_table(*open).set_value(1, 1, 240.0), ErrorCode::kOk);
  EXPECT_EQ(open->check_save_back(), Check());
  EXPECT_EQ(open->save_back().failure, ErrorCode::kOk);
  EXPECT_FALSE(open->is_modified());
  EXPECT_EQ(read("towns.txt"), "Town;People\r\nPorto;240\r\n");

  add_formula(*open, "People/2");
  EXPECT_EQ(open->check_save_back().question, MessageId::kFeaturesLostAsText);
  protect(*open);
  EXPECT_EQ(open->check_save_back().refusal, MessageId::kUseNativeFormat);

  ASSERT_EQ(open->save(folder_.path("towns.rvb")).failure, ErrorCode::kOk);
  EXPECT_EQ(open->title(), "towns.rvb");
  EXPECT_TRUE(open->check_save_back().passes());
  protect(*open);
  EXPECT_EQ(open->save_back().failure, ErrorCode::kOk);
  EXPECT_FALSE(open->is_modified());
  EXPECT_EQ(read("towns.txt"), "Town;People\r\nPorto;240\r\n") << "the text stays as it was last saved";
}

TEST_F(OpenDatabaseTest, CalculatedFieldsFollowFromTheFirstEditOn) {
  const auto text = open(write("towns.csv", "Town,People\nPorto,232\n"));
  add_formula(*text, "=People/2");
  ASSERT_EQ(text->save(folder_.path("towns.rvb")).failure, ErrorCode::kOk);
  for (const bool automatic : {true, false}) {
    const auto open = this->open(folder_.path("towns.rvb"));
    Options options;
    options.auto_update = automatic;
    open->take_options(options);
    ASSERT_EQ(first_table(*open).set_value(1, 1, 10.0), ErrorCode::kOk);
    EXPECT_EQ(first_table(*open).value_text(1, 2), automatic ? "5" : "116");
  }
}

TEST_F(OpenDatabaseTest, WhatReadingLostIsKept) {
  EXPECT_THAT(open(write("b.csv", "a\ncaf\xE9\n"))->notices(),
              ElementsAre(UserText(ErrorCode::kInvalidUtf8)));
  const DatabaseOpening none = OpenDatabase::open(recognize_file(folder_.path("none.rvb")), Options());
  EXPECT_EQ(none.failure, ErrorCode::kFileOpen);
  EXPECT_EQ(none.database, nullptr);
}

TEST_F(OpenDatabaseTest, AnOlderContainerIsConvertedByTheNextSaveOfItsFile) {
  SaveSettings older;
  older.variant = SaveVariant::kZip32;
  const std::string path = folder_.path("old.rvb");
  ASSERT_EQ(open(write("a.csv", "a\n1\n"))->save(path, older).failure, ErrorCode::kOk);
  const auto open = this->open(path);
  EXPECT_TRUE(open->has_older_container());
  EXPECT_THAT(open->notices(), IsEmpty()) << "a question about saving is no loss";
  ASSERT_EQ(open->save_back().failure, ErrorCode::kOk);
  EXPECT_TRUE(this->open(path)->has_older_container()) << "nobody has said to convert it";

  open->set_save_variant(SaveVariant::kZip64);
  SaveSettings copy;
  copy.as_copy = true;
  ASSERT_EQ(open->save(folder_.path("copy.rvb"), copy).failure, ErrorCode::kOk);
  ASSERT_EQ(open->save_back().failure, ErrorCode::kOk);
  EXPECT_FALSE(this->open(path)->has_older_container());
  EXPECT_FALSE(open->has_older_container());
}

TEST_F(OpenDatabaseTest, ANewDatabaseHasNoFileUntilItIsSavedOrSaidToHaveOne) {
  OpenDatabase unnamed{Options()};
  EXPECT_FALSE(unnamed.can_save_back());
  const std::string path = folder_.path("shop.rvb");
  const auto named = OpenDatabase::create(path, Options());
  EXPECT_EQ(named->database().name(), "shop");
  Field field;
  field.name = "a";
  auto table = std::make_unique<CWorkSheet>("t", std::vector<Field>{field});
  ASSERT_EQ(named->database().add_table(named->database().root(), table), ErrorCode::kOk);
  ASSERT_EQ(named->save_back().failure, ErrorCode::kOk);
  EXPECT_TRUE(open(path)->has_database_file());
}

TEST_F(OpenDatabaseTest, ARecoveryCopyBelongsToItsOriginalAgain) {
  const std::string text = write("towns.tsv", "Town\tPeople\nPorto\t232\n");
  const std::string copy = folder_.path("copy.rvb");
  ASSERT_EQ(open(text, '\t')->save(copy).failure, ErrorCode::kOk);
  const auto open = this->open(copy);
  open->restore_origin(text, &text_format());
  EXPECT_EQ(open->title(), "towns.tsv");
  EXPECT_TRUE(open->is_modified());
  ASSERT_EQ(open->save_back().failure, ErrorCode::kOk);
  EXPECT_EQ(read("towns.tsv"), "Town\tPeople\r\nPorto\t232\r\n");
  open->restore_origin("", &database_format());
  EXPECT_FALSE(open->can_save_back());
}

}  // namespace
}  // namespace rowvane
