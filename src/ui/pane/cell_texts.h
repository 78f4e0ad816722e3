// What the cells of a view show.
#pragma once

#include <QColor>
#include <QString>
#include <QVarLengthArray>
#include <optional>

#include "app/profile/profile_settings.h"
#include "recordset/find/shown_texts.h"
#include "ui/pane/content_texts.h"

namespace rowvane {

struct ShownCell {
  QString text;       // with its line breaks
  uint8_t color = 0;  // FormatColor, or the number of a [colorN]; 0: the usual one
  bool is_number = false;
  bool is_link = false;
  bool shows_end = false;  // a text of which the end matters
  bool wraps = false;      // over the lines of a record
  QString fill;            // repeated at `fill_position` up to the width of the field
  qsizetype fill_position = 0;
  const FileList* files = nullptr;  // of an Images/Files cell
};

// Holds on to the fields as the table has them now: to be made anew when they change.
class CellTexts {
 public:
  // Both must outlive this.
  CellTexts(const CWorkSheet& table, const DisplayRegion& region, const profile::Settings& settings);

  // For records by their 0-based position.
  ShownCell read(uint32_t position, size_t field) const;
  // The beginning of the text, MOST characters of it.
  QString text(uint32_t position, size_t field, qsizetype most) const;

 private:
  void read_number(double number, size_t field, ShownCell& cell) const;
  void read_content(const Content& content, const Field& field, ShownCell& cell) const;
  QString files_text(const FileList& files) const;
  QString file_text(const FileObject& file) const;

  const CWorkSheet& table_;
  const profile::Settings& settings_;
  ShownTexts texts_;
  mutable ContentTexts contents_;
  mutable std::string buffer_;
};

// How the text of a cell looks on a ground of BASE; nothing for the usual colour.
std::optional<QColor> format_color(uint8_t number, const QColor& base);

}  // namespace rowvane
