#include "ui/dialogs/field_dlg.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "text_dialog_support.h"
#include "ui/dialogs/drop_down_lists_dlg.h"
#include "ui/dialogs/format_choice.h"
#include "ui/dialogs/formula_editor.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FieldDlgTest : public testing::Test {
 protected:
  FieldDlgTest() {
    EXPECT_EQ(table.rename_field(0, "Price"), ErrorCode::kOk);
    EXPECT_EQ(table.rename_field(1, "Unit price"), ErrorCode::kOk);
    EXPECT_EQ(table.set_value(1, 0, std::string("1234.5")), ErrorCode::kOk);
    EXPECT_EQ(table.set_value(2, 0, std::string("x")), ErrorCode::kOk);
    document.database().undo_log().clear();
  }
  CFieldDlg& open(std::optional<size_t> index) {
    dialog = std::make_unique<CFieldDlg>(document, table, index, 0, profile, dialogs);
    dialog->show();
    return *dialog;
  }
  template <typename Control>
  Control& control(const QString& name) {
    auto* found = find_control<Control>(*dialog, name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return *found;
  }
  bool accept() {
    dialog->accept();
    return !dialog->isVisible();
  }

  DatabaseDocument document{Options()};
  CWorkSheet& table = *document.database().tables().front();
  profile::Settings profile;
  ScriptedDialogs dialogs;
  std::unique_ptr<CFieldDlg> dialog;
};

TEST_F(FieldDlgTest, InsertsAFieldAsOneStep) {
  open(std::nullopt);
  EXPECT_EQ(dialog->windowTitle(), "Insert Field");
  EXPECT_EQ(dialog->problem(), "");
  QTest::keyClicks(dialog->focusWidget(), "1st");
  EXPECT_EQ(dialog->problem().toStdString(), message(MessageId::kFieldNameNeedsLetter));
  EXPECT_FALSE(accept());
  control<QLineEdit>("Name").setText("price");
  EXPECT_FALSE(accept());
  EXPECT_THAT(dialogs.shown,
              ElementsAre(message(MessageId::kFieldNameNeedsLetter), message(MessageId::kFieldNameExists)));
  control<QLineEdit>("Name").setText("Total");
  control<QComboBox>("Type").setCurrentText("Number");
  control<FormulaEditor>("Formula").setText("len(Price)*2");
  EXPECT_TRUE(accept());
  EXPECT_EQ(table.field(0).name, "Total");
  EXPECT_EQ(table.field(0).formula, "=len(Price)*2");
  EXPECT_EQ(table.value_text(1, 0), "12");
  document.undo();
  EXPECT_EQ(table.field(0).name, "Price");
  EXPECT_FALSE(document.database().undo_log().can_undo());
}

TEST_F(FieldDlgTest, ConvertsTheValuesAndTellsWhatWasLost) {
  open(0);
  control<QComboBox>("Type").setCurrentText("Number");
  control<QComboBox>("Display format").setCurrentText("0.00");
  EXPECT_FALSE(accept()) << "the answer is No";
  EXPECT_THAT(dialogs.asked, ElementsAre(testing::HasSubstr("would be lost:\n\"x\"\n")));
  EXPECT_EQ(table.field(0).type, FieldType::kText);
  dialogs.answers = {true};
  EXPECT_TRUE(accept());
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kTextNotNumeric)));
  EXPECT_EQ(table.field(0).format, "0.00");
  EXPECT_EQ(table.field(0).type, FieldType::kNumber);
  document.undo();
  EXPECT_EQ(table.value_text(2, 0), "x");
  open(0);
  control<QComboBox>("Type").setCurrentText("Images/Files");
  EXPECT_EQ(dialog->problem().toStdString(), texts::kNoConversionToFiles);
  EXPECT_FALSE(accept());
}

TEST_F(FieldDlgTest, ShowsTheFormatOnAValueOfTheTable) {
  open(0);
  EXPECT_FALSE(control<QComboBox>("Display format").isEnabled());
  control<QComboBox>("Type").setCurrentText("Number");
  dialogs.answers = {true};
  ASSERT_TRUE(accept());
  open(0);
  auto& format = control<FormatChoice>("Display format");
  format.setCurrentText("0.000");
  EXPECT_EQ(format.preview().remove(QChar(0xA0)), "1234.500");
  format.setCurrentText("currency decimals=1");
  EXPECT_NE(format.code().find(";"), format.code().size());
  EXPECT_TRUE(format.preview().contains("234.5"));
  format.setCurrentText("[");
  EXPECT_EQ(format.preview(), dialog->problem());
  EXPECT_FALSE(accept());
  format.setCurrentText("0.0000\" own\"");
  EXPECT_TRUE(accept());
  EXPECT_THAT(profile.user_numeric_formats, ElementsAre("0.0000\" own\""));
}

TEST_F(FieldDlgTest, ShowsWhatIsWrongWithAFormula) {
  open(0);
  auto& formula = control<FormulaEditor>("Formula");
  formula.setText("=1+(");
  EXPECT_FALSE(formula.is_valid());
  EXPECT_EQ(dialog->problem(), "Invalid formula!");
  EXPECT_FALSE(accept());
  formula.setText("");
  control<FormulaEditor>("Validation formula").setText("=len(Price)>0");
  EXPECT_TRUE(accept());
  EXPECT_EQ(table.set_value(3, 0, std::string()), ErrorCode::kValidation);
  open(0);
  control<FormulaEditor>("Formula").setText("=Price&\"!\"");
  EXPECT_FALSE(accept()) << "a field that needs itself";
  EXPECT_EQ(table.field(0).formula, "");
}

TEST_F(FieldDlgTest, CompletesNamesOfFieldsAndFunctions) {
  open(2);
  auto& formula = control<FormulaEditor>("Formula");
  formula.setText("=pri");
  formula.setCursorPosition(0, 4);
  EXPECT_TRUE(formula.completions().contains("Price"));
  formula.setText("=unit");
  formula.setCursorPosition(0, 5);
  EXPECT_TRUE(formula.completions().contains("Unit price"));
  formula.setText("=roun");
  formula.setCursorPosition(0, 5);
  EXPECT_TRUE(formula.completions().contains("round(", Qt::CaseInsensitive));
  formula.setText("=2");
  formula.setCursorPosition(0, 2);
  EXPECT_THAT(formula.completions(), IsEmpty());
  formula.setFocus();
  QTest::keyClick(&formula, Qt::Key_Tab);
  EXPECT_NE(dialog->focusWidget(), &formula);
}

TEST_F(FieldDlgTest, ColoursWhatTheLexerReads) {
  open(2);
  auto& formula = control<FormulaEditor>("Formula");
  formula.setText("=sum(Price)&\"é\"+12");
  FormulaColors* colors = static_cast<FormulaColors*>(formula.lexer());
  colors->styleText(0, formula.length());
  const auto style_at = [&](const char* text) {
    const auto place = formula.text().toUtf8().indexOf(text);
    return formula.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(place));
  };
  EXPECT_EQ(style_at("sum"), FormulaColors::kFunction);
  EXPECT_EQ(style_at("Price"), FormulaColors::kField);
  EXPECT_EQ(style_at("\"é"), FormulaColors::kText);
  EXPECT_EQ(style_at("12"), FormulaColors::kNumber);
  EXPECT_EQ(style_at("+"), FormulaColors::kOperator);
}

TEST_F(FieldDlgTest, AFieldFollowsItsDropDownList) {
  DatabaseSettings settings;
  settings.drop_down_lists = {{"Cities", {"Porto"}}, {"States", {}}};
  ASSERT_EQ(document.database().change_settings(settings), ErrorCode::kOk);
  open(0);
  control<QComboBox>("Drop-down list").setCurrentText("Cities");
  ASSERT_TRUE(accept());
  EXPECT_EQ(table.field(0).drop_down_list, "Cities");

  CDropDownListsDlg lists(document.database(), "cities", dialogs);
  lists.show();
  EXPECT_EQ(lists.current_name(), "Cities");
  auto& names = *lists.findChild<QListWidget*>();
  auto& values = *lists.findChild<QPlainTextEdit*>();
  EXPECT_EQ(values.toPlainText(), "Porto");
  values.setPlainText("Porto\n\nGraz");
  names.currentItem()->setText("states");
  lists.accept();
  EXPECT_TRUE(lists.isVisible());
  EXPECT_EQ(dialogs.shown.size(), 1u);
  names.currentItem()->setText("Towns");
  lists.add_list();
  EXPECT_EQ(lists.current_name(), "List 1");
  lists.delete_list();
  lists.accept();
  EXPECT_FALSE(lists.isVisible());
  EXPECT_EQ(table.field(0).drop_down_list, "Towns");
  EXPECT_THAT(document.database().settings().drop_down_lists[0].items, ElementsAre("Porto", "Graz"));
  document.undo();
  EXPECT_EQ(table.field(0).drop_down_list, "Cities");
}

TEST_F(FieldDlgTest, LeavesTheValuesOfEncryptedFieldsAlone) {
  Field encrypted = table.field(0);
  encrypted.encrypted = true;
  ASSERT_EQ(table.replace_column(0, encrypted, table.column(0)), ErrorCode::kOk);
  open(0);
  EXPECT_FALSE(control<QComboBox>("Type").isEnabled());
  EXPECT_FALSE(control<FormulaEditor>("Formula").isEnabled());
  control<QLineEdit>("Name").setText("Secret");
  EXPECT_TRUE(accept());
  EXPECT_EQ(table.field(0).name, "Secret");
  EXPECT_TRUE(table.field(0).encrypted);
}

}  // namespace
}  // namespace rowvane
