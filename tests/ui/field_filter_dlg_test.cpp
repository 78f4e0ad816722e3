#include "ui/dialogs/field_filter_dlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recordset/search/recent_texts.h"
#include "ui/accessible_names.h"
#include "ui/dialogs/formula_editor.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class FieldFilterDlgTest : public testing::Test {
 protected:
  FieldFilterDlgTest() {
    Field number;
    number.name = "Price";
    number.type = FieldType::kNumber;
    Field text;
    text.name = "Town";
    table = std::make_unique<CWorkSheet>("towns", std::vector<Field>{number, text});
    EXPECT_EQ(table->insert_records(1, 2), ErrorCode::kOk);
  }
  CFieldFilterDlg& open(size_t field, const std::optional<Criterion>& criterion = std::nullopt) {
    dialog = std::make_unique<CFieldFilterDlg>(FieldFilterContext{*table, settings, formulas, recent}, field,
                                               criterion, SearchOptions(), dialogs);
    dialog->show();
    return *dialog;
  }
  template <typename Box>
  Box& box(const char* text) {
    for (Box* each : dialog->findChildren<Box*>())
      if (each->text().contains(text)) return *each;
    throw std::logic_error(text);
  }
  QComboBox& kinds(int index = 0) { return *dialog->findChildren<QComboBox*>().at(index); }
  QLineEdit& text() { return *dialog->findChild<QLineEdit*>(); }
  FormulaEditor& formula() { return *dialog->findChild<FormulaEditor*>(); }

  std::unique_ptr<CWorkSheet> table;
  DatabaseSettings settings;
  FormulaSettings formulas;
  RecentFieldTexts recent;
  ScriptedDialogs dialogs;
  std::unique_ptr<CFieldFilterDlg> dialog;
};

TEST_F(FieldFilterDlgTest, TypedTextBecomesTheCriterion) {
  open(0);
  EXPECT_EQ(dialog->windowTitle(), "Set Search Filter For 'Price'");
  EXPECT_EQ(kinds().currentText(), "Equal:");
  EXPECT_FALSE(box<QRadioButton>("Flagged").isEnabled()) << "there are no flags";
  QTest::keyClicks(&text(), "12");
  QTest::keyClick(dialog.get(), Qt::Key_Return);
  EXPECT_EQ(dialog->result(), QDialog::Accepted);
  EXPECT_EQ(dialog->criterion(), (Criterion{CriterionKind::kEqual, "12"}));
  EXPECT_THAT(recent.texts(*table, 0), ElementsAre("12"));
  EXPECT_THAT(controls_without_names(*dialog), IsEmpty());
}

TEST_F(FieldFilterDlgTest, TheBoxesOfRegularExpressionsGoWithThem) {
  open(1, Criterion{CriterionKind::kRegEx, "^A("});
  EXPECT_EQ(text().text(), "^A(");
  EXPECT_TRUE(box<QCheckBox>("Match").isEnabled());
  box<QCheckBox>("Match").setChecked(true);
  dialog->accept();
  EXPECT_THAT(dialogs.shown, ElementsAre(HasSubstr("Regular expression error:\n")));
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_FALSE(dialog->options().caseless) << "stored even so";
  text().setText("^A");
  dialog->accept();
  EXPECT_EQ(dialog->criterion(), (Criterion{CriterionKind::kRegEx, "^A"}));

  open(1, Criterion{CriterionKind::kAnd, "red blue"});
  EXPECT_FALSE(box<QCheckBox>("Match").isEnabled());
  EXPECT_THAT(formula().formula(), HasSubstr("AND(SEARCH(")) << "the equivalent formula is offered";
}

TEST_F(FieldFilterDlgTest, AnInvalidFormulaIsFlashedAndKept) {
  open(0);
  box<QRadioButton>("ormula").setChecked(true);
  formula().set_formula("=Price >");
  dialog->accept();
  EXPECT_EQ(formula().text(), "  Invalid formula!  ");
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->isEnabled(); }, 5000));
  EXPECT_EQ(formula().formula(), "=Price >");
  formula().set_formula("=Price > 3");
  dialog->accept();
  EXPECT_EQ(dialog->criterion(), (Criterion{CriterionKind::kFormula, "=Price > 3"}));
}

TEST_F(FieldFilterDlgTest, FunctionsArePickedIntoTheFormula) {
  open(0);
  box<QRadioButton>("ormula").setChecked(true);
  auto& functions = *dialog->findChild<QListWidget*>();
  EXPECT_FALSE(functions.isVisible());
  box<QPushButton>("unctions").click();
  ASSERT_TRUE(functions.isVisible());
  kinds(1).setCurrentText("Logical");
  functions.setCurrentItem(functions.findItems("not", Qt::MatchExactly).value(0));
  EXPECT_THAT(dialog->findChild<QPlainTextEdit*>()->toPlainText().toStdString(), HasSubstr("not(value)"));
  QTest::keyClick(&functions, Qt::Key_Return);
  EXPECT_TRUE(dialog->isVisible()) << "Enter is not OK here";
  EXPECT_EQ(formula().text(), "=not()");
  QTest::keyClicks(&formula(), "Price");
  formula().selectAll();
  functions.setCurrentRow(functions.currentRow() - 1);
  QTest::keyClick(&functions, Qt::Key_Return);
  EXPECT_EQ(formula().text(), "=if(not(Price))");
}

TEST_F(FieldFilterDlgTest, ParametersAreShownWhileAFunctionIsWritten) {
  open(0, Criterion{CriterionKind::kFormula, "="});
  dialog->activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return formula().hasFocus(); }, 5000));
  const auto shows_hint = [&](bool shown) {
    return QTest::qWaitFor(
        [&] { return (formula().SendScintilla(QsciScintilla::SCI_CALLTIPACTIVE) != 0) == shown; }, 5000);
  };
  formula().setCursorPosition(0, 1);
  QTest::keyClicks(&formula(), "if(Price > 1, ");
  EXPECT_TRUE(shows_hint(true));
  QTest::keyClick(&formula(), Qt::Key_Escape);
  EXPECT_TRUE(shows_hint(false));
  EXPECT_TRUE(dialog->isVisible()) << "the hint goes first";
  QTest::keyClicks(&formula(), "2, 3");
  EXPECT_TRUE(shows_hint(true));
  QTest::keyClick(&formula(), ')');
  EXPECT_TRUE(shows_hint(false));
}

TEST_F(FieldFilterDlgTest, FlagsAndEmptyValues) {
  settings.record_flag_types = {{"Paid", 0x00FF00}, {"Late", 0xFF0000}};
  open(0, flag_criterion(2));
  EXPECT_TRUE(box<QRadioButton>("Flagged").isChecked());
  dialog->accept();
  EXPECT_EQ(dialog->criterion(), flag_criterion(2));
  open(1, is_empty_criterion());
  EXPECT_EQ(text().text(), "");
  EXPECT_FALSE(text().isEnabled());
  dialog->accept();
  EXPECT_EQ(dialog->criterion(), is_empty_criterion());
}

}  // namespace
}  // namespace rowvane
