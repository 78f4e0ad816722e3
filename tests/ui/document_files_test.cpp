#include "ui/document/document_files.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QTimer>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "crypto/protection.h"
#include "platform/temporary_folder.h"
#include "ui/scripted_dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class DocumentFilesTest : public testing::Test {
 protected:
  QString path_of(const char* name) { return to_qt(folder.path(name)); }
  QString write(const char* name, const QByteArray& content) {
    QFile file(path_of(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return file.fileName();
  }
  static QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  static CWorkSheet& first_table(DatabaseDocument& document) { return *document.database().tables().front(); }

  // A database with a password; READ_ONLY_OPEN: anyone may read it.
  QString make_protected(bool read_only_open) {
    DatabaseDocument document((Options()));
    ProtectionSettings protection;
    std::string password = "secret words";
    protection.password = Secret::take(password);
    protection.read_only_open = read_only_open;
    EXPECT_EQ(document.file().set_protection(make_protection(std::move(protection))), ErrorCode::kOk);
    dialogs.files_to_save = {path_of("locked.rvb")};
    EXPECT_TRUE(files.save(document));
    return path_of("locked.rvb");
  }

  platform::TemporaryFolder folder;
  ScriptedDialogs dialogs;
  profile::Settings settings;
  QWidget window;
  DocumentFiles files{settings, dialogs, window};
};

TEST_F(DocumentFilesTest, TextIsSavedBackAsTextUntilItHoldsMore) {
  const QString path = write("towns.tsv", "Town\tPeople\nLuleå\t49\nPorto\t232\n");
  const auto document = files.open(path);
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(document->title(), "towns.tsv");
  CWorkSheet& table = first_table(*document);
  ASSERT_EQ(table.set_value(1, 1, 50.0), ErrorCode::kOk);
  ASSERT_TRUE(document->is_modified());
  EXPECT_TRUE(files.save(*document));
  EXPECT_FALSE(document->is_modified());
  EXPECT_EQ(read(path), "Town\tPeople\r\nLuleå\t50\r\nPorto\t232\r\n");
  EXPECT_THAT(dialogs.asked, IsEmpty());

  Field formula;
  formula.name = "Half";
  formula.type = FieldType::kNumber;
  formula.formula = "People/2";
  ASSERT_EQ(table.insert_field(2, formula), ErrorCode::kOk);
  EXPECT_FALSE(files.save(*document));
  EXPECT_TRUE(document->is_modified());
  EXPECT_THAT(dialogs.asked, ElementsAre(message(MessageId::kFeaturesLostAsText)));
  EXPECT_EQ(read(path), "Town\tPeople\r\nLuleå\t50\r\nPorto\t232\r\n");
  dialogs.files_to_save = {path_of("towns.rvb")};
  EXPECT_TRUE(files.save_as(*document));
  EXPECT_EQ(document->title(), "towns.rvb");
  EXPECT_TRUE(files.save(*document));
  EXPECT_EQ(settings.recent_files.front().path, to_utf8(path_of("towns.rvb")));
}

TEST_F(DocumentFilesTest, ClosingAsksAndDoesWhatIsAnswered) {
  DatabaseDocument document((Options()));
  EXPECT_TRUE(files.may_close(document));
  ASSERT_EQ(first_table(document).set_value(1, 0, std::string("Anna")), ErrorCode::kOk);
  EXPECT_FALSE(files.may_close(document)) << "given up";
  dialogs.save_answers = {SaveAnswer::kSave};
  EXPECT_FALSE(files.may_close(document)) << "no file was chosen";
  dialogs.save_answers = {SaveAnswer::kSave};
  dialogs.files_to_save = {path_of("anna.rvb")};
  EXPECT_TRUE(files.may_close(document));
  EXPECT_THAT(dialogs.asked, testing::Each("Save changes to New Database?"));
  const auto again = files.open(path_of("anna.rvb"));
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(first_table(*again).value_text(1, 0), "Anna");
}

TEST_F(DocumentFilesTest, CopiesLeaveTheDatabaseWithItsFile) {
  DatabaseDocument document((Options()));
  dialogs.files_to_save = {path_of("own.rvb"), path_of("copy.rvb")};
  ASSERT_TRUE(files.save_as(document));
  ASSERT_EQ(first_table(document).set_value(1, 0, std::string("Anna")), ErrorCode::kOk);
  EXPECT_TRUE(files.save_copy_as(document));
  EXPECT_EQ(document.title(), "own.rvb");
  EXPECT_TRUE(document.is_modified());
  EXPECT_TRUE(QFile::exists(path_of("copy.rvb")));
  EXPECT_EQ(settings.recent_files.size(), 1U);
}

TEST_F(DocumentFilesTest, AZip32FileIsChosenConfirmedAndKept) {
  DatabaseDocument document((Options()));
  dialogs.filters = {3, 3};
  dialogs.files_to_save = {path_of("old.rvb"), path_of("old.rvb")};
  EXPECT_FALSE(files.save_as(document)) << "not confirmed";
  EXPECT_FALSE(QFile::exists(path_of("old.rvb")));
  dialogs.answers = {true};
  EXPECT_TRUE(files.save_as(document));
  const std::string limits(texts::kZip32Limits);
  const std::string convert = message(MessageId::kConvertToZip64);
  EXPECT_THAT(dialogs.asked, ElementsAre(limits, limits));

  dialogs.asked.clear();
  dialogs.answers = {false, true};
  const auto kept = files.open(path_of("old.rvb"));
  ASSERT_NE(kept, nullptr);
  EXPECT_TRUE(files.save(*kept));
  const auto converted = files.open(path_of("old.rvb"));
  ASSERT_NE(converted, nullptr);
  EXPECT_TRUE(files.save(*converted));
  EXPECT_NE(files.open(path_of("old.rvb")), nullptr);
  EXPECT_THAT(dialogs.asked, ElementsAre(convert, convert));
}

TEST_F(DocumentFilesTest, WhatCannotBeOpenedIsSaid) {
  EXPECT_EQ(files.open(path_of("none.rvb")), nullptr);
  EXPECT_EQ(files.open(write("broken.rvb", "PK no archive")), nullptr);
  EXPECT_THAT(dialogs.shown,
              ElementsAre(error_text(ErrorCode::kFileOpen), error_text(ErrorCode::kZipCorrupted)));
  EXPECT_THAT(settings.recent_files, IsEmpty());
}

TEST_F(DocumentFilesTest, WhatIsNoTextIsRefusedByNameUntilTheUserSaysThatItIs) {
  const QString path = write("picture.csv", QByteArray("\x89PNG\r\n\x1A\n"));
  EXPECT_EQ(files.open(path), nullptr);
  EXPECT_EQ(files.open(write("noise.csv", QByteArray("a\n\x01\0\x02\n", 6))), nullptr);
  EXPECT_THAT(dialogs.shown, ElementsAre("picture.csv is a PNG image, which Rowvane can't read",
                                         "noise.csv is no text, and of no format that Rowvane can read"));
  EXPECT_THAT(settings.recent_files, IsEmpty());
  EXPECT_NE(files.open(path, TextFileSettings()), nullptr);
}

TEST_F(DocumentFilesTest, ATableIsNotWrittenAsTextUnderTheNameOfAnotherFormat) {
  const auto document = files.open(write("a.csv", "Name\nAnna\n"));
  QTimer::singleShot(0, &window, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->accept(); });
  dialogs.files_to_save = {path_of("a.xlsx")};
  files.export_table(*document, first_table(*document), std::nullopt);
  EXPECT_THAT(dialogs.shown, ElementsAre("a.xlsx: a table can't be exported as an Excel workbook"));
  EXPECT_FALSE(QFile::exists(path_of("a.xlsx")));
}

TEST_F(DocumentFilesTest, TheBoxOffersWhatCanBeOpened) {
  files.choose_file_to_open();
  EXPECT_EQ(dialogs.shown_filters,
            "All that can be opened (*.zip *.rvb *.csv *.tsv *.tab *.txt);;Rowvane database (*.zip *.rvb);;"
            "Text files (*.csv *.tsv *.tab *.txt);;All files (*)");
}

TEST_F(DocumentFilesTest, PasswordsAreAskedUntilOneFits) {
  const QString path = make_protected(false);
  EXPECT_EQ(files.open(path), nullptr) << "no password";
  EXPECT_THAT(dialogs.shown, IsEmpty());
  dialogs.passwords = {"wrong one", "secret words"};
  const auto document = files.open(path);
  ASSERT_NE(document, nullptr);
  EXPECT_FALSE(document->file().is_read_only());
  EXPECT_THAT(dialogs.shown, ElementsAre(error_text(ErrorCode::kInvalidPassword)));
}

TEST_F(DocumentFilesTest, WithoutThePasswordWhatAnyoneMayReadIsReadOnly) {
  const QString path = make_protected(true);
  const auto read_only = files.open(path);
  ASSERT_NE(read_only, nullptr);
  EXPECT_TRUE(read_only->file().is_read_only());
  dialogs.passwords = {"secret words"};
  const auto whole = files.open(path);
  ASSERT_NE(whole, nullptr);
  EXPECT_FALSE(whole->file().is_read_only());
}

TEST_F(DocumentFilesTest, AProtectedTextIsSavedAsADatabase) {
  const auto document = files.open(write("a.csv", "Name\nAnna\n"));
  ProtectionSettings protection;
  std::string password = "secret words";
  protection.password = Secret::take(password);
  ASSERT_EQ(document->file().set_protection(make_protection(std::move(protection))), ErrorCode::kOk);
  EXPECT_FALSE(files.save(*document));
  dialogs.answers = {true};
  dialogs.files_to_save = {path_of("a.rvb")};
  EXPECT_TRUE(files.save(*document));
  EXPECT_THAT(dialogs.asked, testing::Each(message(MessageId::kUseNativeFormat)));
  EXPECT_FALSE(read(path_of("a.rvb")).contains("Anna"));
}

}  // namespace
}  // namespace rowvane
