#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "ui/dialogs/field_encryption_dlg.h"
#include "ui/dialogs/insert_password_dlg.h"
#include "ui/dialogs/profile_protect_dlg.h"
#include "ui/dialogs/protect_dlg.h"
#include "ui/document/database_document.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The first password box of DIALOG and the one for the repetition.
void enter(QDialog& dialog, const QString& password, const QString& repeated) {
  const QList<PasswordBox*> boxes = dialog.findChildren<PasswordBox*>();
  ASSERT_GE(boxes.size(), 1);
  boxes[0]->setText(password);
  if (boxes.size() > 1) boxes[1]->setText(repeated);
}

bool all_boxes_empty(const QDialog& dialog) {
  for (const PasswordBox* box : dialog.findChildren<PasswordBox*>()) {
    if (!box->text().isEmpty() || box->isUndoAvailable()) return false;
  }
  return true;
}

TEST(PasswordBoxTest, IsEmptyAndForgetsAfterTheTake) {
  PasswordBox box;
  QTest::keyClicks(&box, "secret");
  EXPECT_FALSE(box.displayText().contains('s'));
  box.insert(QString::fromUtf8("é"));
  EXPECT_EQ(box.secret().view(), "secret\xC3\xA9");
  const QString shared = box.text();
  EXPECT_EQ(box.take().size(), 8u);
  EXPECT_EQ(box.text(), "");
  EXPECT_FALSE(box.isUndoAvailable());
  EXPECT_FALSE(shared.contains('c'));
}

TEST(InsertPasswordDlgTest, GivesWhatWasEnteredWithTheKeyboard) {
  CInsertPasswordDlg dialog("/tmp/a.rvb");
  dialog.show();
  QTest::keyClicks(dialog.focusWidget(), "secret1");
  QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.take_password().view(), "secret1");
  EXPECT_TRUE(all_boxes_empty(dialog));
}

class ProtectDlgTest : public testing::Test {
 protected:
  bool accepts(const QString& password, const QString& repeated) {
    enter(dialog, password, repeated);
    dialog.setResult(QDialog::Rejected);
    dialog.accept();
    return dialog.result() == QDialog::Accepted;
  }
  ScriptedDialogs dialogs;
  CProtectDlg dialog{nullptr, dialogs};
};

TEST_F(ProtectDlgTest, RefusesShortAndDifferentPasswords) {
  EXPECT_FALSE(accepts("12345", "12345"));
  EXPECT_FALSE(accepts("123456", "123457"));
  EXPECT_THAT(dialogs.shown,
              ElementsAre(message(MessageId::kPasswordTooShort), message(MessageId::kPasswordsDiffer)));
  EXPECT_TRUE(accepts("123456", "123456"));
  EXPECT_FALSE(dialog.removes());
  const ProtectionSettings settings = dialog.take_settings();
  EXPECT_EQ(settings.password.view(), "123456");
  EXPECT_EQ(settings.algorithm, CipherAlgorithm::kTwofishCfb);
  EXPECT_TRUE(all_boxes_empty(dialog));
}

TEST_F(ProtectDlgTest, AsksBeforeAnyoneMayRead) {
  dialog.findChild<QComboBox*>()->setCurrentText("Blowfish CFB");
  for (auto* box : dialog.findChildren<QCheckBox*>()) {
    if (box->text().contains("read-only")) box->click();
  }
  EXPECT_FALSE(accepts("123456", "123456"));
  EXPECT_THAT(dialogs.asked, ElementsAre(message(MessageId::kReadOnlyOpenQuestion)));
  dialogs.answers = {true};
  EXPECT_TRUE(accepts("123456", "123456"));
  const ProtectionSettings settings = dialog.take_settings();
  EXPECT_TRUE(settings.read_only_open);
  EXPECT_EQ(settings.algorithm, CipherAlgorithm::kBlowfishCfb);
}

TEST_F(ProtectDlgTest, EmptyBoxesRemoveTheProtection) {
  EXPECT_TRUE(accepts("", ""));
  EXPECT_TRUE(dialog.removes());
  EXPECT_FALSE(accepts("", "123456"));
}

TEST(ProfileProtectDlgTest, ChecksAndGivesThePassword) {
  ScriptedDialogs dialogs;
  CProfileProtectDlg dialog(dialogs);
  enter(dialog, "12345", "12345");
  dialog.accept();
  enter(dialog, "123456", "");
  dialog.accept();
  EXPECT_THAT(dialogs.shown,
              ElementsAre(message(MessageId::kPasswordTooShort), message(MessageId::kPasswordsDiffer)));
  EXPECT_NE(dialog.result(), QDialog::Accepted);
  enter(dialog, "123456", "123456");
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  ProfileFile file;
  protect_profile(dialog.take_protection(), file);
  EXPECT_TRUE(file.is_protected());
  EXPECT_TRUE(all_boxes_empty(dialog));
}

class FieldEncryptionTest : public testing::Test {
 protected:
  FieldEncryptionTest() { EXPECT_EQ(table.set_value(1, 0, std::string("Anna")), ErrorCode::kOk); }

  // Answers the dialog that comes up with PASSWORD, entered twice.
  void run(CFieldEncryptionDlg::Use use, const QString& password) {
    QTimer::singleShot(0, [password] {
      auto* dialog = qobject_cast<CFieldEncryptionDlg*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      enter(*dialog, password, password);
      dialog->accept();
      if (dialog->isVisible()) dialog->reject();
    });
    change_field_encryption(use, document, table, 0, dialogs, &views);
  }

  DatabaseDocument document{Options()};
  CWorkSheet& table = *document.database().tables().front();
  ScriptedDialogs dialogs;
  QWidget views;
};

TEST_F(FieldEncryptionTest, EncryptsAndDecryptsAsOneUndoStepEach) {
  run(CFieldEncryptionDlg::Use::kEncrypt, "secret");
  EXPECT_THAT(dialogs.shown, IsEmpty());
  EXPECT_TRUE(table.field(0).encrypted);
  EXPECT_EQ(table.set_value(1, 0, std::string("Bert")), ErrorCode::kEncryptedField);
  EXPECT_NE(table.value_text(1, 0), "Anna");
  document.undo();
  EXPECT_EQ(table.value_text(1, 0), "Anna");
  document.redo();
  run(CFieldEncryptionDlg::Use::kDecrypt, "wrong1");
  EXPECT_THAT(dialogs.shown, ElementsAre(error_text(ErrorCode::kInvalidPassword)));
  run(CFieldEncryptionDlg::Use::kDecrypt, "secret");
  EXPECT_EQ(table.value_text(1, 0), "Anna");
}

TEST_F(FieldEncryptionTest, RefusesWhatCanNotBe) {
  run(CFieldEncryptionDlg::Use::kEncrypt, "12345");
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kPasswordTooShort)));
  EXPECT_FALSE(table.field(0).encrypted);
  CFieldEncryptionDlg dialog(CFieldEncryptionDlg::Use::kEncrypt, table, std::nullopt, dialogs);
  enter(dialog, "123456", "123456");
  dialog.accept();
  EXPECT_NE(dialog.result(), QDialog::Accepted);
  dialogs.shown.clear();
  change_field_encryption(CFieldEncryptionDlg::Use::kDecrypt, document, table, 0, dialogs, &views);
  EXPECT_EQ(dialogs.shown.size(), 1u);
}

}  // namespace
}  // namespace rowvane
