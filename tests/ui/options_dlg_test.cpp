#include "ui/dialogs/options_dlg.h"

#include <QSpinBox>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "text_dialog_support.h"
#include "ui/document/database_document.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OptionsDlgTest : public testing::Test {
 protected:
  OptionsDlgTest() { dialog.show(); }
  template <typename Control>
  Control& control(const QString& name) {
    auto* found = find_control<Control>(dialog, name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return *found;
  }

  profile::Settings settings;
  ScriptedDialogs dialogs;
  COptionsDlg dialog{settings, dialogs};
};

TEST_F(OptionsDlgTest, ChangesNothingUntilItIsAccepted) {
  control<QCheckBox>("Keep the former file").click();
  control<QSpinBox>("Steps that can be undone").setValue(7);
  control<QComboBox>("&When Enter is pressed:").setCurrentText("Stay");
  EXPECT_EQ(settings, profile::Settings());
  dialog.reject();
  EXPECT_EQ(settings, profile::Settings());
  dialog.accept();
  EXPECT_TRUE(settings.general_options.backups);
  EXPECT_EQ(settings.general_options.undo_level, 7);
  EXPECT_EQ(settings.general_options.when_enter_pressed, 2);
  EXPECT_THAT(dialogs.shown, IsEmpty());
}

TEST_F(OptionsDlgTest, HoldsNumbersWithinTheirRanges) {
  control<QSpinBox>("Used processor cores").setValue(99);
  control<QSpinBox>("Maximum number of records").setValue(0);
  dialog.accept();
  EXPECT_EQ(settings.general_options.used_processor_cores, 16);
  EXPECT_EQ(settings.general_options.max_records, 1);
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kMaxRecordsChanged)));
}

TEST_F(OptionsDlgTest, AsksBeforeTheUpdateModeChanges) {
  control<QCheckBox>("Update &calculated fields").click();
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_TRUE(settings.check_box_options.auto_update);
  dialogs.answers = {true};
  dialog.accept();
  EXPECT_FALSE(settings.check_box_options.auto_update);
  EXPECT_THAT(dialogs.asked, ElementsAre(texts::kManualUpdateMode, texts::kManualUpdateMode));
}

TEST_F(OptionsDlgTest, StaysOpenForWrongExtensions) {
  control<QLineEdit>("Files stored without compression").setText("jpg a/b");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(dialogs.shown.size(), 1u);
  control<QLineEdit>("Files stored without compression").setText("*.JPG, zip");
  dialog.accept();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_THAT(settings.general_options.non_deflate_files, ElementsAre("jpg", "zip"));
}

TEST(DocumentOptions, TakeEffectInOpenDatabases) {
  DatabaseDocument document{Options()};
  CWorkSheet& table = *document.database().tables().front();
  Field field = table.field(1);
  field.formula = "=len(Field1)";
  ASSERT_EQ(table.change_field(1, field), ErrorCode::kOk);
  Options options;
  options.undo_level = 1;
  options.auto_update = false;
  document.take_options(options);
  ASSERT_EQ(table.set_value(1, 0, std::string("Anna")), ErrorCode::kOk);
  EXPECT_NE(table.value_text(1, 1), "4");
  ASSERT_EQ(table.set_value(2, 0, std::string("Bert")), ErrorCode::kOk);
  document.undo();
  EXPECT_FALSE(document.database().undo_log().can_undo());
  options.auto_update = true;
  document.take_options(options);
  ASSERT_EQ(table.set_value(1, 0, std::string("Carla")), ErrorCode::kOk);
  EXPECT_EQ(table.value_text(1, 1), "5");
}

}  // namespace
}  // namespace rowvane
