// Cells on the clipboard, as spreadsheets and other tables put them there.
#pragma once

#include <QMimeData>
#include <memory>
#include <string>
#include <vector>

#include "ui/pane/cell_selection.h"
#include "ui/pane/table_model.h"

namespace rowvane {

using ClipboardRows = std::vector<std::vector<std::string>>;

// TEXT, lines of cells separated by tabs, with quotes around cells that hold line breaks or tabs.
ClipboardRows parse_clipboard_text(const std::string& text);
// The cells of the first table in HTML; nothing without one.
ClipboardRows parse_clipboard_html(const QString& html);
// The text of DATA, or its table where the text tells no cells apart.
ClipboardRows clipboard_rows(const QMimeData& data);

// The cells as text and, where they are not too many, as HTML table.
std::unique_ptr<QMimeData> clipboard_data(const TableModel& model, const CellGroup& cells);

}  // namespace rowvane
