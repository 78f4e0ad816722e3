// Where fields and records stand in the grid.
#pragma once

#include <QSize>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/table/work_sheet.h"

namespace rowvane {

// Shown fields have places, from 0 on the left; shown records have rows. All records are alike in height, so
// that a table of any length costs nothing. Frozen fields and records are the first ones; they stay while the
// others scroll. X and y are pixels of the viewport, whose corner is the upper left cell; they are clamped to
// what an int holds for cells far outside of it.
class GridLayout {
 public:
  // Takes order, widths and visibility of the fields; ZOOM in percent.
  void set_fields(const CWorkSheet& table, int zoom);
  void set_width(int place, int pixels);
  void set_row_count(int count) { rows_ = count; }
  // LINES of text in a record, each LINE_HEIGHT pixels high.
  void set_lines(int lines, int line_height);
  void set_viewport(QSize size) { viewport_ = size; }
  // X: pixels from the first field that is not frozen. LINE: lines of text from the first such record.
  void scroll_to(int x, int line);
  // How many to freeze. As many take effect as leave room for others.
  void freeze_places(int count) { wanted_places_ = count; }
  void freeze_rows(int count) { wanted_rows_ = count; }

  int place_count() const { return static_cast<int>(fields_.size()); }
  int row_count() const { return rows_; }
  int field_at(int place) const { return fields_[static_cast<size_t>(place)]; }
  int place_of(int field) const { return places_[static_cast<size_t>(field)]; }  // -1: hidden
  int width(int place) const;
  int lines() const { return lines_; }
  int row_height() const { return lines_ * line_height_ + kRowPadding; }

  int left(int place) const;
  int top(int row) const;
  int place_at(int x) const;  // -1: none
  int row_at(int y) const;    // -1: none
  // The same with the nearest one for points outside; -1 when there is none at all.
  int nearest_place(int x) const;
  int nearest_row(int y) const;

  int frozen_places() const;
  int frozen_rows() const;
  int frozen_width() const;
  int frozen_height() const { return frozen_rows() * row_height(); }
  // Those that scroll and are seen at least in part: the first, and the one behind the last.
  std::pair<int, int> scrolled_places() const;
  std::pair<int, int> scrolled_rows() const;
  // Records that are seen whole beside the frozen ones, at least 1.
  int rows_of_page() const;

  // The largest values for scroll_to.
  int last_x() const;
  int last_line() const;
  // What to scroll to so that a cell is seen: the values nearest to the present ones.
  int x_for(int place) const;
  int line_for(int row) const;
  int x() const { return x_; }
  int line() const { return line_; }

 private:
  static constexpr int kRowPadding = 6;
  static constexpr int kLeastScrolled = 60;  // pixels left to what is not frozen

  int64_t scrolled_y() const;
  int scrolled_width() const { return viewport_.width() - frozen_width(); }
  int scrolled_height() const { return viewport_.height() - frozen_height(); }

  std::vector<int> fields_;     // by place
  std::vector<int> places_;     // by field
  std::vector<int64_t> edges_;  // of each place its left edge, and the right one of the last
  int rows_ = 0;
  int lines_ = 1;
  int line_height_ = 16;
  QSize viewport_;
  int x_ = 0;
  int line_ = 0;
  int wanted_places_ = 0;
  int wanted_rows_ = 0;
};

}  // namespace rowvane
