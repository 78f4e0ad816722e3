#include "ui/dialogs/open_text_file_dlg.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>

#include <gmock/gmock.h>

#include "core/messages/messages.h"
#include "text_dialog_support.h"
#include "ui/dialogs/field_filter_dlg.h"
#include "ui/dialogs/named_text_settings.h"
#include "ui/scripted_dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

class OpenTextFileDlgTest : public testing::Test {
 protected:
  COpenTextFileDlg& open(const QString& path) {
    dialog = std::make_unique<COpenTextFileDlg>(path, profile, dialogs);
    dialog->show();
    wait();
    return *dialog;
  }
  COpenTextFileDlg& open_text(const QByteArray& content, const QString& name = "a.csv") {
    return open(folder.write(name, content));
  }
  void wait() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !dialog->is_reading(); }, 5000));
  }
  QAbstractItemModel& choices() { return *dialog->fields().choices().model(); }
  QAbstractItemModel& sample() { return *dialog->fields().sample().model(); }
  std::vector<std::string> names() {
    std::vector<std::string> all;
    for (int i = 0; i < choices().columnCount(); ++i)
      all.push_back(to_utf8(choices().headerData(i, Qt::Horizontal).toString()));
    return all;
  }
  QString cell(int row, int column) { return sample().index(row, column).data().toString(); }
  template <typename Control>
  Control& control(const QString& name) {
    auto* found = find_control<Control>(*dialog, name);
    EXPECT_NE(found, nullptr) << to_utf8(name);
    return *found;
  }

  TextFileFolder folder;
  profile::Settings profile;
  ScriptedDialogs dialogs;
  std::unique_ptr<COpenTextFileDlg> dialog;
};

TEST_F(OpenTextFileDlgTest, TheSampleFollowsEveryControl) {
  open_text("Name;2019\nAnna;1\n'Be;rt';2\n");
  EXPECT_THAT(names(), ElementsAre("Name;2019"));
  control<QComboBox>("&Field separator:").setCurrentText("semicolon");
  wait();
  EXPECT_THAT(names(), ElementsAre("Name", "field_2019", "field3"));
  control<QLineEdit>("Quoting symbol").setText("'");
  wait();
  EXPECT_THAT(names(), ElementsAre("Name", "field_2019"));
  EXPECT_EQ(cell(1, 0), "Be;rt");
  control<QCheckBox>("First &row contains field names").click();
  wait();
  EXPECT_THAT(names(), ElementsAre("field1", "field2"));
  EXPECT_EQ(cell(0, 1), "2019");
  control<QComboBox>("&Field separator:").setCurrentText("(none)");
  wait();
  EXPECT_THAT(names(), ElementsAre("field1"));
  control<QComboBox>("&Field separator:").setCurrentText("other");
  EXPECT_NE(dialog->problem(), "");
  control<QLineEdit>("Other field separator").setText("e");
  wait();
  EXPECT_EQ(dialog->problem(), "");
  EXPECT_EQ(cell(0, 1), ";2019");
}

TEST_F(OpenTextFileDlgTest, CutsByWidthsAndStaysOpenForAWrongList) {
  open_text("ab123\ncd456\n");
  control<QCheckBox>("First &row contains field names").click();
  control<QCheckBox>("Fixed field &widths:").click();
  control<QLineEdit>("Fixed field widths").setText("2, 2");
  wait();
  EXPECT_EQ(cell(1, 1), "45");
  control<QLineEdit>("Fixed field widths").setText("2x");
  EXPECT_EQ(to_utf8(dialog->problem()), kWidthsHint);
  dialog->accept();
  EXPECT_TRUE(dialog->isVisible());
  control<QLineEdit>("Fixed field widths").setText("1;4");
  dialog->accept();
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(dialog->settings().fixed_widths[1], 4);
}

TEST_F(OpenTextFileDlgTest, ReadsTheCodePageThatIsChosen) {
  open_text("n\n\xC0\n");
  control<QComboBox>("&Text encoding:").setCurrentText("ANSI/OEM/ISO");
  control<QComboBox>("&Windows code page:").setCurrentText("ANSI Cyrillic");
  wait();
  EXPECT_EQ(cell(0, 0), QString::fromUtf8("А"));
  dialog->accept();
  EXPECT_EQ(dialog->settings().encoding, 21);
}

TEST_F(OpenTextFileDlgTest, ColumnChoicesSurviveOtherSettings) {
  open_text("a,b\n1,2\n");
  QTableView& list = dialog->fields().choices();
  list.setCurrentIndex(choices().index(CTextFieldList::kTypeRow, 1));
  QTest::keyClick(&list, Qt::Key_F2);
  auto* types = list.viewport()->findChild<QComboBox*>();
  ASSERT_NE(types, nullptr);
  types->setCurrentText("Text");
  emit types->activated(types->currentIndex());
  const QModelIndex dates = choices().index(CTextFieldList::kDatesRow, 1);
  list.setCurrentIndex(dates);
  QTest::keyClick(&list, Qt::Key_Space);
  constexpr uint8_t kBoth = TextFileSettings::kText | TextFileSettings::kParseDates;
  EXPECT_EQ(dialog->fields().column_options()[1], kBoth);
  control<QComboBox>("&Field separator:").setCurrentText("(none)");
  wait();
  EXPECT_EQ(choices().columnCount(), 1);
  control<QComboBox>("&Field separator:").setCurrentText("comma");
  wait();
  EXPECT_EQ(choices().index(CTextFieldList::kTypeRow, 1).data().toString(), "Text");
  EXPECT_EQ(dates.flags() & Qt::ItemIsUserCheckable, Qt::ItemIsUserCheckable);
  choices().setData(choices().index(CTextFieldList::kTypeRow, 1), TextFileSettings::kNumber);
  EXPECT_FALSE(choices().index(CTextFieldList::kDatesRow, 1).flags() & Qt::ItemIsUserCheckable);
  choices().setData(choices().index(CTextFieldList::kTypeRow, 1), TextFileSettings::kText);
  dialog->accept();
  EXPECT_EQ(dialog->settings().column_options[1], kBoth);
}

TEST_F(OpenTextFileDlgTest, AsksBeforeSlowOptions) {
  open_text("a\n1\n");
  QCheckBox& fit = control<QCheckBox>("Auto-fit column widths");
  fit.click();
  EXPECT_FALSE(fit.isChecked());
  dialogs.answers = {true};
  fit.click();
  EXPECT_TRUE(fit.isChecked());
  EXPECT_THAT(dialogs.asked, ElementsAre(message(MessageId::kAutoFitSlow), message(MessageId::kAutoFitSlow)));
  dialogs.asked.clear();
  control<QCheckBox>("Convert text to date/time strings YYYY-MM-DD(T...)").click();
  dialog->accept();
  EXPECT_TRUE(dialog->isVisible());
  dialogs.answers = {true};
  dialog->accept();
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_THAT(dialogs.asked, ElementsAre(texts::kParseDatesSlow, texts::kParseDatesSlow));
  EXPECT_TRUE(profile.check_box_options.auto_col_width_on_import);
}

TEST_F(OpenTextFileDlgTest, BeginsAsItWasLeft) {
  profile.text_file_options.separator = ';';
  profile.text_file_options.column_options[0] = TextFileSettings::kLongText;
  open_text("a;b\n");
  EXPECT_THAT(names(), ElementsAre("a", "b"));
  EXPECT_EQ(dialog->fields().column_options()[0], TextFileSettings::kAuto);
  open_text("a\tb;c\n", "a.tsv");
  EXPECT_THAT(names(), ElementsAre("a", "b;c"));
  dialog->accept();
  EXPECT_EQ(profile.text_file_options.separator, '\t');
}

TEST_F(OpenTextFileDlgTest, NamedSettingsAreSavedLoadedUpdatedAndDeleted) {
  open_text("a;b\n1;2\n");
  auto& named = control<NamedTextSettings>("&Load predefined settings");
  choices().setData(choices().index(CTextFieldList::kTypeRow, 0), TextFileSettings::kLongText);
  control<QComboBox>("&Field separator:").setCurrentText("semicolon");
  dialogs.texts = {"  ", "Mine"};
  named.save_current();
  EXPECT_THAT(dialogs.shown, ElementsAre(SavedTextSettings::check_name("  ").refusal.text()));
  const auto& entries = profile.named_text_file_settings.entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].name, "Mine");

  open_text("a;b\n1;2\n", "b.csv");
  auto& again = control<NamedTextSettings>("&Load predefined settings");
  again.choose(0, false);
  wait();
  EXPECT_THAT(names(), ElementsAre("a", "b"));
  EXPECT_EQ(dialog->fields().column_options()[0], TextFileSettings::kLongText);
  control<QComboBox>("&Field separator:").setCurrentText("tab");
  again.choose(0, true);
  EXPECT_EQ(entries[0].settings.separator, '\t');
  again.erase(0);
  EXPECT_TRUE(entries.empty());
}

TEST_F(OpenTextFileDlgTest, TellsWhyAFileCanNotBeRead) {
  open(folder.path("missing.csv"));
  EXPECT_EQ(to_utf8(dialog->problem()), error_text(ErrorCode::kFileOpen));
  const QString pipe = folder.path("pipe.csv");
  if (QProcess::execute("mkfifo", {pipe}) == 0) {
    open(pipe);
    EXPECT_NE(dialog->problem(), "");
  }
  open(folder.path(""));
  EXPECT_NE(dialog->problem(), "");
}

TEST_F(OpenTextFileDlgTest, ScrollsManyColumnsAsOneWithoutAWidgetForEach) {
  QByteArray line = "c";
  for (int i = 1; i < 16'384; ++i) line += ",c" + QByteArray::number(i);
  open_text(line + "\n" + line + "\n");
  EXPECT_EQ(choices().columnCount(), 16'384);
  EXPECT_EQ(sample().columnCount(), 16'384);
  QTableView& list = dialog->fields().choices();
  QTableView& records = dialog->fields().sample();
  EXPECT_LT(dialog->findChildren<QWidget*>().size(), 200);
  list.setCurrentIndex(choices().index(CTextFieldList::kTypeRow, 16'000));
  EXPECT_GT(list.horizontalScrollBar()->value(), 0);
  EXPECT_EQ(records.horizontalScrollBar()->value(), list.horizontalScrollBar()->value());
  EXPECT_EQ(records.columnViewportPosition(16'000), list.columnViewportPosition(16'000));
  list.setColumnWidth(16'000, 333);
  EXPECT_EQ(records.columnWidth(16'000), 333);
}

TEST_F(OpenTextFileDlgTest, FiltersBelongToTheirColumnsAndGoWithThem) {
  open_text("Town,People\nGraz,292\nWien,1982\n");
  dialog->fields().choices().setCurrentIndex(choices().index(0, 1));
  QTimer::singleShot(0, dialog.get(), [] {
    auto* filter = qobject_cast<CFieldFilterDlg*>(QApplication::activeModalWidget());
    ASSERT_NE(filter, nullptr);
    EXPECT_EQ(filter->windowTitle(), "Set Search Filter For 'People'");
    filter->findChild<QLineEdit*>()->setText("292");
    filter->accept();
  });
  for (QPushButton* button : dialog->findChildren<QPushButton*>())
    if (button->text() == "Set Filter...") button->click();
  ASSERT_EQ(dialog->filters().size(), 1U);
  EXPECT_EQ(dialog->filters().at(1).text, "292");
  TextFileSettings one_column = dialog->settings();
  one_column.separator = ';';
  dialog->show_settings(one_column);
  wait();
  EXPECT_TRUE(dialog->filters().empty());
}

}  // namespace
}  // namespace rowvane
