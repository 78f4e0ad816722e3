#include "ui/dialogs/save_text_file_dlg.h"

#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>

#include <gmock/gmock.h>

#include "text_dialog_support.h"
#include "ui/document/database_document.h"
#include "ui/document/field_widths.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

class SaveTextFileDlgTest : public testing::Test {
 protected:
  SaveTextFileDlgTest() {
    Field notes;
    notes.name = "notes";
    notes.type = FieldType::kLongText;
    EXPECT_EQ(table->insert_field(1, notes), ErrorCode::kOk);
    dialog = std::make_unique<CSaveTextFileDlg>(*table, profile, dialogs);
    dialog->show();
  }
  template <typename Control>
  Control& control(const QString& name) {
    auto* found = find_control<Control>(*dialog, name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return *found;
  }

  std::unique_ptr<CWorkSheet> table = new_table("orders", 2, 3);
  profile::Settings profile;
  ScriptedDialogs dialogs;
  std::unique_ptr<CSaveTextFileDlg> dialog;
};

TEST_F(SaveTextFileDlgTest, SavesTheFieldsThatAreChecked) {
  QListWidget& fields = dialog->field_list();
  EXPECT_EQ(fields.item(1)->text(), "notes  [Long Text]");
  fields.setCurrentRow(1);
  QTest::keyClick(&fields, Qt::Key_Space);
  EXPECT_THAT(dialog->settings().fields, ElementsAre(0, 2));
  for (int i = 0; i < fields.count(); ++i) fields.item(i)->setCheckState(Qt::Unchecked);
  dialog->accept();
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_NE(dialog->problem(), "");
  control<QPushButton>("Select &All").click();
  dialog->accept();
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_THAT(dialog->settings().fields, ElementsAre(0, 1, 2));
}

TEST_F(SaveTextFileDlgTest, ReadsAllControls) {
  control<QComboBox>("&Field separator:").setCurrentText("tab");
  control<QCheckBox>("Field names in the first &row").setChecked(false);
  EXPECT_FALSE(control<QCheckBox>("Save 'Images/Files' &objects to a zip file").isEnabled());
  control<QCheckBox>("Save 'Long Text' &data to a zip file").click();
  EXPECT_FALSE(control<QSpinBox>("Row limit").isEnabled());
  control<QCheckBox>("Save multiple files (file, file(1),...,file(n)) with the row limit:").click();
  control<QSpinBox>("Row limit").setValue(2);
  dialog->accept();
  const TextExport chosen = dialog->settings();
  EXPECT_EQ(chosen.text.separator, '\t');
  EXPECT_FALSE(chosen.text.has_field_names());
  EXPECT_TRUE(chosen.save_long_texts);
  EXPECT_FALSE(chosen.save_files);
  EXPECT_EQ(chosen.row_limit, 2u);
  EXPECT_EQ(profile.text_file_options, chosen.text);
  EXPECT_EQ(profile.general_options.text_export_row_limit, 2);
}

TEST_F(SaveTextFileDlgTest, StaysOpenForSettingsThatNoFileCanHave) {
  control<QLineEdit>("Quoting symbol").setText(",");
  EXPECT_NE(dialog->problem(), "");
  dialog->accept();
  EXPECT_TRUE(dialog->isVisible());
  control<QLineEdit>("Quoting symbol").setText("'");
  EXPECT_EQ(dialog->problem(), "");
}

TEST(FieldWidths, FitNamesAndValuesWithinLimits) {
  DatabaseDocument document{Options()};
  CWorkSheet& table = *document.database().tables().front();
  ASSERT_EQ(table.set_value(2, 1, std::string(30, 'm')), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(2, 2, std::string(3000, 'm')), ErrorCode::kOk);
  fit_field_widths(document.database(), QFont());
  EXPECT_GT(table.field(1).width, 2 * table.field(0).width);
  EXPECT_EQ(table.field(2).width, 500);
  EXPECT_FALSE(document.is_modified());
  EXPECT_FALSE(document.database().undo_log().can_undo());
}

}  // namespace
}  // namespace rowvane
