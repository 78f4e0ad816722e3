#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "formula/typed_texts.h"
#include "ui/grid_fixture.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class GridEditingTest : public GridTest {};

TEST_F(GridEditingTest, TypingReplacesAndF2Changes) {
  go_to(0, kName);
  type("xy");
  EXPECT_EQ(typed(), "xy");
  press(Qt::Key_Return);
  EXPECT_EQ(text(1, kName), "xy");
  EXPECT_EQ(view->current_place(), (GridPlace{1, kName}));
  press(Qt::Key_F2);
  type("z");
  press(Qt::Key_Tab);
  EXPECT_EQ(text(2, kName), "Bz");
  EXPECT_EQ(view->current_place(), (GridPlace{1, kPrice}));
  undo();
  EXPECT_EQ(text(2, kName), "B");
  EXPECT_EQ(text(1, kName), "xy");
}

TEST_F(GridEditingTest, EscapeLeavesTheValueAndArrowsLeaveWhatIsTypedAnew) {
  go_to(0, kName);
  type("q");
  press(Qt::Key_Escape);
  EXPECT_EQ(open_editor(), nullptr);
  EXPECT_EQ(text(1, kName), "A");
  type("q");
  press(Qt::Key_Right);
  EXPECT_EQ(text(1, kName), "q");
  EXPECT_EQ(view->current_place(), (GridPlace{0, kPrice}));
  go_to(0, kName);
  press(Qt::Key_F2);
  press(Qt::Key_Left);
  EXPECT_NE(open_editor(), nullptr);
}

TEST_F(GridEditingTest, ARefusedValueStaysOpenWithWhatWasTyped) {
  go_to(0, kPrice);
  type("abc");
  press(Qt::Key_Return);
  EXPECT_THAT(dialogs.shown, ElementsAre("The entered data doesn't match the field type."));
  ASSERT_NE(open_editor(), nullptr);
  EXPECT_EQ(typed(), "abc");
  EXPECT_FALSE(view->finish_editing());
  EXPECT_EQ(text(1, kPrice), "10");
  press(Qt::Key_Escape);
  EXPECT_EQ(open_editor(), nullptr);

  set_field(kPrice, [](Field& field) { field.validation = "=Price < 100"; });
  type("500");
  press(Qt::Key_Return);
  EXPECT_EQ(dialogs.shown.back(), "The entered data doesn't match the validation formula.");
  EXPECT_EQ(typed(), "500");
  EXPECT_EQ(text(1, kPrice), "10");
}

TEST_F(GridEditingTest, ALongEntryIsCutWithAWarning) {
  go_to(0, kName);
  press(Qt::Key_F2);
  qobject_cast<QLineEdit*>(open_editor())->setText(QString(9000, 'x'));
  press(Qt::Key_Return);
  EXPECT_THAT(dialogs.shown, ElementsAre("The entered text will be truncated to max. 8192 bytes."));
  EXPECT_EQ(text(1, kName).size(), 8169u);
}

TEST_F(GridEditingTest, NumbersAreTypedPastedAndFilledInAlike) {
  TableModel& model = view->model();
  for (const TypedText& typed : kTypedTexts) {
    const bool taken = *typed.number != 0;
    const auto expect_stored = [&](const char* way) {
      EXPECT_EQ(text(1, kPrice), taken ? typed.number : "777") << way << " " << typed.text;
      ASSERT_EQ(table.set_value(1, kPrice, 777.0), ErrorCode::kOk);
    };
    ASSERT_EQ(table.set_value(1, kPrice, 777.0), ErrorCode::kOk);
    EXPECT_EQ(model.setData(model.index(0, kPrice), typed.text), taken) << typed.text;
    expect_stored("typed");
    set_clipboard(typed.text);
    go_to(0, kPrice);
    pane->paste();
    expect_stored("pasted");
    pane->fill_selection(typed.text);
    expect_stored("filled in");
  }
}

TEST_F(GridEditingTest, TextsBecomeStandardDates) {
  ASSERT_EQ(table.set_value(2, kName, std::string("14 Mar 2024")), ErrorCode::kOk);
  go_to(5, 0);
  pane->texts_to_dates();
  EXPECT_EQ(table.value_text(2, kName), "2024-03-14");
  EXPECT_THAT(dialogs.shown, testing::ElementsAre("7 value(s) are no dates and stay as they are."));
  go_to(0, 1);
  pane->texts_to_dates();
  EXPECT_EQ(dialogs.shown.back(), error_text(ErrorCode::kConversionRule)) << "a number field";
}

TEST_F(GridEditingTest, FieldsWithoutEditors) {
  go_to(0, kPicture);
  type("x");
  EXPECT_EQ(open_editor(), nullptr);
  set_field(kPrice, [](Field& field) { field.formula = "=2*3"; });
  go_to(0, kPrice);
  type("5");
  EXPECT_EQ(open_editor(), nullptr);
  EXPECT_TRUE(dialogs.shown.empty());
  Field encrypted = table.field(kName);
  encrypted.encrypted = true;
  ASSERT_EQ(table.replace_column(kName, encrypted, table.column(kName)), ErrorCode::kOk);
  go_to(0, kName);
  type("x");
  EXPECT_EQ(open_editor(), nullptr);
  EXPECT_THAT(dialogs.shown,
              ElementsAre("Encrypted fields can't be edited. You need to decrypt them first."));
}

TEST_F(GridEditingTest, ReadOnlyRefusesEveryChange) {
  settings.general_options.read_only = true;
  go_to(0, kName);
  type("x");
  EXPECT_EQ(open_editor(), nullptr);
  set_clipboard("new");
  pane->paste();
  pane->clear();
  pane->delete_records();
  pane->insert_records();
  pane->insert_today();
  EXPECT_EQ(names(), "ABCDEFGH");
  EXPECT_EQ(dialogs.shown.size(), 6u);
  EXPECT_THAT(dialogs.shown.front(), HasSubstr("reading only"));
}

TEST_F(GridEditingTest, ADropDownListOffersItsItemsAndTakesOtherTexts) {
  DatabaseSettings shared = document.database().settings();
  shared.drop_down_lists = {{"colours", {"red", "blue"}}};
  ASSERT_EQ(document.database().change_settings(shared), ErrorCode::kOk);
  set_field(kName, [](Field& field) { field.drop_down_list = "colours"; });
  go_to(0, kName);
  press(Qt::Key_Down, Qt::AltModifier);
  auto* list = qobject_cast<QComboBox*>(open_editor());
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(list->view()->isVisible());
  EXPECT_EQ(list->currentText(), "A");
  list->hidePopup();
  list->setCurrentIndex(1);
  press(Qt::Key_Return);
  EXPECT_EQ(text(1, kName), "blue");
  go_to(0, kName);
  type("re");
  press(Qt::Key_Return);
  EXPECT_EQ(text(1, kName), "re");
  settings.general_options.drop_down_lists = false;
  press(Qt::Key_F2);
  EXPECT_EQ(qobject_cast<QComboBox*>(open_editor()), nullptr);
}

TEST_F(GridEditingTest, ADateIsTypedOrChosenAndKeepsItsTime) {
  set_field(kDay, [](Field& field) { field.format = "yyyy-mm-dd hh:mm"; });
  ASSERT_EQ(table.set_value(1, kDay, 45352.5), ErrorCode::kOk);
  go_to(0, kDay);
  press(Qt::Key_F2);
  EXPECT_EQ(typed(), "2024-03-01 12:00");
  press(Qt::Key_Down, Qt::AltModifier);
  auto* calendar = open_editor()->findChild<QCalendarWidget*>();
  ASSERT_NE(calendar, nullptr);
  EXPECT_EQ(calendar->selectedDate(), QDate(2024, 3, 1));
  emit calendar->clicked(QDate(2024, 3, 9));
  press(Qt::Key_Return);
  EXPECT_EQ(text(1, kDay), "45360.5");
  go_to(0, kDay);
  type("2025-01-02");
  press(Qt::Key_Return);
  EXPECT_EQ(text(1, kDay), "45659");
  settings.check_box_options.use_date_picker = false;
  go_to(0, kDay);
  press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(open_editor()->findChild<QCalendarWidget*>(), nullptr);
}

TEST_F(GridEditingTest, LongTextsAndCodeHaveEditorsOfSeveralLines) {
  for (const int place : {kNotes, kSource}) {
    go_to(0, place);
    press(Qt::Key_F2);
    type("a");
    press(Qt::Key_Return);
    type("b");
    EXPECT_EQ(typed(), "a\nb");
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(open_editor(), nullptr);
    EXPECT_EQ(text(1, static_cast<size_t>(place)), "a\nb");
  }
}

TEST_F(GridEditingTest, LookingAtAValueIsNoChange) {
  ASSERT_EQ(table.set_value(1, kNotes, Content::of("one\r\ntwo")), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(1, kPrice, 0.1 + 0.2), ErrorCode::kOk);
  document.database().mark_saved();
  for (const int place : {kNotes, kPrice}) {
    go_to(0, place);
    press(Qt::Key_F2);
    EXPECT_TRUE(view->finish_editing());
  }
  EXPECT_FALSE(document.is_modified());
}

TEST_F(GridEditingTest, FormattedTextIsEditedAsPlainTextOnlyAfterAQuestion) {
  ASSERT_EQ(table.set_value(1, kNotes, Content::of(R"({\rtf1 Hello \b world\b0})")), ErrorCode::kOk);
  go_to(0, kNotes);
  press(Qt::Key_F2);
  EXPECT_EQ(open_editor(), nullptr);
  EXPECT_EQ(dialogs.asked.size(), 1u);
  dialogs.answers = {true};
  press(Qt::Key_F2);
  EXPECT_EQ(typed(), "Hello world");
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_THAT(text(1, kNotes), HasSubstr("rtf1"));
}

TEST_F(GridEditingTest, CtrlEnterFillsTheSelectionInOneStep) {
  go_to(1, kName);
  extend_to(3, kPrice);
  type("7");
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(names(), "A777EFGH");
  EXPECT_EQ(text(4, kPrice), "7");
  undo();
  EXPECT_EQ(names(), "ABCDEFGH");
  EXPECT_EQ(text(4, kPrice), "40");
}

TEST_F(GridEditingTest, AnotherCellOrWindowStoresWhatIsTyped) {
  go_to(0, kName);
  type("new");
  view->go_to({3, kName});
  EXPECT_EQ(text(1, kName), "new");
  EXPECT_EQ(open_editor(), nullptr);
}

TEST_F(GridEditingTest, TodayAndTheValueAbove) {
  go_to(2, kDay);
  press(Qt::Key_Semicolon, Qt::ControlModifier);
  const auto today = QDate(1899, 12, 30).daysTo(QDate::currentDate());
  EXPECT_EQ(text(3, kDay), std::to_string(today));
  go_to(2, kName);
  press(Qt::Key_Apostrophe, Qt::ControlModifier);
  EXPECT_EQ(names(), "ABBDEFGH");
  go_to(0, kName);
  press(Qt::Key_Apostrophe, Qt::ControlModifier);
  EXPECT_EQ(names(), "ABBDEFGH");
}

}  // namespace
}  // namespace rowvane
