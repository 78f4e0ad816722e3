// The numbers of the records beside a grid.
#pragma once

#include <QWidget>

#include "ui/grid/grid_layout.h"
#include "ui/pane/cell_selection.h"
#include "ui/pane/table_model.h"

namespace rowvane {

// A click chooses a record, dragging several. The current record has a mark, one with a flag the colour of
// its type.
class RecordHeader final : public QWidget {
  Q_OBJECT

 public:
  // Both must outlive the header.
  RecordHeader(const TableModel& model, const GridLayout& layout, QWidget* parent = nullptr);

  // The rows that are selected, and the one of the current cell; -1 for none.
  void show_rows(int current, RowRanges selected);
  // For the largest number of a record.
  int wanted_width() const;

 signals:
  void chosen(int row, Qt::KeyboardModifiers modifiers);
  void dragged_to(int y);
  void released();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void draw_rows(QPainter& painter, int first, int end, const QRect& clip);
  void draw_row(QPainter& painter, int row);
  bool is_selected(int row) const;

  const TableModel& model_;
  const GridLayout& layout_;
  int current_ = -1;
  RowRanges selected_;
};

}  // namespace rowvane
