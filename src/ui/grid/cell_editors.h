// The widgets in which cells are edited.
#pragma once

#include <QWidget>
#include <functional>

#include "core/database/database.h"

class QKeyEvent;

namespace rowvane {

// What the grid needs of a widget that edits the text of a cell. Each of them is a QWidget as well.
class CellEditor {
 public:
  virtual ~CellEditor() = default;
  virtual QString text() const = 0;
  // Selects the new text where WHOLE says so, as typing over it needs; otherwise the cursor is at its end.
  virtual void set_text(const QString& text, bool whole) = 0;
  virtual void insert(const QString& text) = 0;
  // Opens the list or the calendar, where there is one.
  virtual void open_choices() {}
  // True for Enter and the arrow keys where the editor has use for them itself.
  virtual bool needs(const QKeyEvent& key) const = 0;
  // What the editor would like to have, for a cell of SIZE.
  virtual QSize wanted_size(QSize size) const { return size; }
};

struct EditorSettings {
  const Field* field = nullptr;
  const DropDownList* choices = nullptr;  // null: none are offered
  bool date_picker = false;
  QFont font;
  // From the text that is being edited to a day number and back, for the date picker.
  std::function<std::optional<double>(const QString&)> read_number;
  std::function<QString(double)> write_number;
};

// The editor for a field's cells. The caller owns it through PARENT.
QWidget* make_cell_editor(const EditorSettings& settings, QWidget* parent);
// WIDGET as what make_cell_editor made, else null.
CellEditor* as_cell_editor(QWidget* widget);

}  // namespace rowvane
