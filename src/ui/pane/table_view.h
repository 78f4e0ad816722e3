// What shows a table, as its pane and the commands see it.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>

namespace rowvane {

class TablePane;

// The commands of a view that is a grid.
class GridCommands {
 public:
  virtual void zoom_in() = 0;
  virtual void zoom_out() = 0;
  virtual void reset_zoom() = 0;
  // The first fields, to and with the current one; the records above the current one. Kept with the table, as
  // are the lines of a record.
  virtual void freeze_fields() = 0;
  virtual void freeze_records() = 0;
  virtual void unfreeze() = 0;
  virtual void more_lines() = 0;
  virtual void fewer_lines() = 0;

 protected:
  ~GridCommands() = default;
};

// Draws what its pane holds: the model, the current cell and the selection. It follows them by their own
// signals, and changes them as the user moves about. Printing belongs here when there is any.
class TableView {
 public:
  virtual ~TableView() = default;

  virtual QWidget& widget() = 0;
  // Scrolls or turns to the current cell.
  virtual void show_current() = 0;
  // Criteria or the settings of the profile are others.
  virtual void refresh() = 0;

  // ---- editors; a view without any has nothing to add

  virtual void edit_current() {}
  // Stores what is being typed. False when it was refused; the editor is still open then.
  virtual bool finish_editing() { return true; }
  // At the cursor of the open editor. False where none is open.
  virtual bool insert_into_editor(const QString& /*text*/) { return false; }

  // Null where the view is no grid.
  virtual GridCommands* grid_commands() { return nullptr; }
};

// Makes the view of a pane, which outlives it.
using ViewMaker = std::function<std::unique_ptr<TableView>(TablePane& pane)>;

}  // namespace rowvane
