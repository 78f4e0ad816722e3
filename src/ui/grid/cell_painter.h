// Draws the cells of a grid.
#pragma once

#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

#include "ui/grid/text_widths.h"
#include "ui/grid/thumbnails.h"
#include "ui/pane/cell_texts.h"

namespace rowvane {

// For one pass over the cells in view.
class CellPainter {
 public:
  struct Look {
    QPalette palette;
    QFont font;
    QColor text;        // of cells without a colour of their own
    int lines = 1;      // of text in a cell
    int thumbnail = 0;  // largest side of a thumbnail; 0: none are shown
  };

  // All must outlive this; WIDTHS are those of the look's font.
  CellPainter(QPainter& painter, const Look& look, const TextWidths& widths, Thumbnails& thumbnails);

  // The contents of a cell on a ground that is already drawn.
  void draw(const QRect& rect, const ShownCell& cell);

 private:
  void draw_line(const QRect& rect, const ShownCell& cell);
  void draw_lines(const QRect& rect, const ShownCell& cell);
  QRect draw_thumbnails(const QRect& rect, const FileList& files);
  QString filled(const ShownCell& cell, int width) const;
  // The part of TEXT that fits into WIDTH, with an ellipsis.
  QString cut(const QString& text, int width, bool shows_end) const;
  int thumbnail_side(int height) const;
  // Exact for numbers; for other texts it may be too much by what kerning takes.
  int width_of(const QString& text) const;

  QPainter& painter_;
  const Look& look_;
  const TextWidths& widths_;
  Thumbnails& thumbnails_;
  QFontMetrics metrics_;
  QFont link_font_;
};

// The width that shows the text of CELL whole, up to what one would still read in a grid.
int wanted_cell_width(const ShownCell& cell, const QFontMetrics& metrics);

}  // namespace rowvane
