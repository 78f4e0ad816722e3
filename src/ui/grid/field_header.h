// The heads of the fields above a grid.
#pragma once

#include <QWidget>

#include "ui/grid/grid_layout.h"
#include "ui/pane/table_pane.h"

namespace rowvane {

// Shows name, type, sort key and criterion of each field. A click chooses a field, dragging moves it,
// dragging its right border changes its width; what is to be done is told by signals. The actions that are
// added to the header are its context menu.
class FieldHeader final : public QWidget {
  Q_OBJECT

 public:
  // Both must outlive the header.
  FieldHeader(TablePane& pane, const GridLayout& layout, QWidget* parent = nullptr);

  // Places that are selected, and the one of the current cell; -1 for none.
  void show_place(int current, std::vector<bool> selected);

  // Of two lines where a field has a criterion.
  int wanted_height() const;
  // Of the name with all that stands beside it.
  int wanted_width(int field) const;
  // What stands below the name; empty without a criterion.
  QString criterion_text(int field) const;
  // "1", "2" with an arrow behind it: the key's rank, where there are several; empty for no key.
  QString sort_mark(int field) const;

 signals:
  void chosen(int place, Qt::KeyboardModifiers modifiers);
  // While the border is dragged, and when it is let go.
  void width_dragged(int place, int width);
  void width_chosen(int place);
  void fit_wanted(int place);
  // PLACE is to stand before the one that has place BEFORE now (place_count(): at the end).
  void move_wanted(int place, int before);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  enum class Drag { kNone, kPressed, kWidth, kMove };

  // The place whose right border is at X; -1: none.
  int border_at(int x) const;
  int gap_at(int x) const;
  void draw_places(QPainter& painter, int first, int end, const QRect& clip);
  void draw_place(QPainter& painter, int place);
  void draw_name(QPainter& painter, const QRect& rect, int field, bool is_current);

  TablePane& pane_;
  const TableModel& model_;
  const GridLayout& layout_;
  int current_ = -1;
  std::vector<bool> selected_;
  Drag drag_ = Drag::kNone;
  int dragged_ = -1;  // a place
  int hovered_ = -1;
  QPoint pressed_;
  int pressed_width_ = 0;
  int gap_ = -1;
};

}  // namespace rowvane
