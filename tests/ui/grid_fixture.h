// A grid over a small table with a field of each type.
#pragma once

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/database/database.h"
#include "ui/grid/cellvane_view.h"
#include "ui/scripted_dialogs.h"
#include "ui/table_views.h"

namespace rowvane {

class GridTest : public testing::Test {
 protected:
  enum FieldIndex : size_t { kName, kPrice, kDay, kNotes, kSource, kPicture };

  // Eight records: names A to H, prices 10 to 80, all on days from 2024-03-01 on.
  GridTest() : document(Options{}), table(add_table()) { open(); }

  CWorkSheet& add_table() {
    std::vector<Field> fields(6);
    const char* names[] = {"Name", "Price", "Day", "Notes", "Source", "Picture"};
    const FieldType types[] = {FieldType::kText,     FieldType::kNumber, FieldType::kNumber,
                               FieldType::kLongText, FieldType::kCode,   FieldType::kFiles};
    for (size_t i = 0; i < fields.size(); ++i) {
      fields[i].name = names[i];
      fields[i].type = types[i];
      fields[i].position = static_cast<uint16_t>(i);
    }
    fields[kDay].format = "yyyy-mm-dd";
    auto made = std::make_unique<CWorkSheet>("goods", fields);
    CWorkSheet& added = *made;
    static_cast<void>(added.insert_records(1, 8));
    for (uint32_t i = 1; i <= 8; ++i) {
      const RecordNumber record(i);
      static_cast<void>(added.set_value(record, kName, std::string(1, static_cast<char>('A' + i - 1))));
      static_cast<void>(added.set_value(record, kPrice, 10.0 * i));
      static_cast<void>(added.set_value(record, kDay, 45351.0 + i));
    }
    EXPECT_EQ(document.database().add_table(document.database().root(), made), ErrorCode::kOk);
    return added;
  }

  void open() {
    pane = std::make_unique<TablePane>(document, table, settings, dialogs, make_grid);
    view = &dynamic_cast<CCellvaneView&>(pane->view());
    pane->resize(700, 400);
    pane->show();
    pane->activateWindow();
    pane->setFocus();
    QApplication::processEvents();
  }

  void go_to(int row, int place) { view->go_to({row, place}); }
  // Selects from the current cell to another one.
  void extend_to(int row, int place) {
    const GridPlace from = view->current_place();
    for (int i = from.row; i < row; ++i) press(Qt::Key_Down, Qt::ShiftModifier);
    for (int i = from.place; i < place; ++i) press(Qt::Key_Right, Qt::ShiftModifier);
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* editor = open_editor();
    QTest::keyClick(editor != nullptr ? editor : view, key, modifiers);
  }
  void type(const QString& text) {
    for (const QChar character : text) {
      QWidget* editor = open_editor();
      QTest::keyClick(editor != nullptr ? editor : view, character.toLatin1());
    }
  }
  QWidget* open_editor() const { return static_cast<CellDelegate*>(view->itemDelegate())->editor(); }
  QString typed() const { return static_cast<CellDelegate*>(view->itemDelegate())->text(); }

  std::string text(RecordNumber record, size_t field) const { return table.value_text(record, field); }
  std::string names() const {
    std::string all;
    for (RecordNumber i = 1; i < table.end_record(); ++i) {
      const std::string name = text(i, kName);
      all += name.empty() ? "-" : name;
    }
    return all;
  }
  // The same in the order in which they are shown.
  std::string shown_names() const {
    std::string all;
    for (int row = 0; row < view->model().rowCount(); ++row) {
      const std::string name = text(view->model().record_at(row), kName);
      all += name.empty() ? "-" : name;
    }
    return all;
  }
  void undo() { document.undo(); }
  void set_field(size_t index, const std::function<void(Field&)>& change) {
    Field field = table.field(index);
    change(field);
    ASSERT_EQ(table.change_field(index, field), ErrorCode::kOk);
  }
  static void set_clipboard(const QString& text) { QApplication::clipboard()->setText(text); }

  profile::Settings settings;
  ScriptedDialogs dialogs;
  DatabaseDocument document;
  CWorkSheet& table;
  std::unique_ptr<TablePane> pane;
  CCellvaneView* view = nullptr;
};

}  // namespace rowvane
