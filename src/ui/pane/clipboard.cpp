#include "ui/pane/clipboard.h"

#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <utility>

#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int64_t kMostHtmlCells = 200'000;  // more are copied as text alone

void append_text_cell(const QString& text, QString& out) {
  if (!text.contains(u'\t') && !text.contains(u'\n') && !text.contains(u'"')) {
    out += text;
    return;
  }
  QString quoted = text;
  out += u'"' + quoted.replace("\"", "\"\"") + u'"';
}

void append_html_cell(const QString& text, bool is_number, QString& out) {
  QString escaped = text.toHtmlEscaped();
  out += is_number ? "<td align=\"right\">" : "<td>";
  out += escaped.replace("\n", "<br>");
  out += "</td>";
}

const QTextTable* first_table(const QTextFrame& frame) {
  for (const QTextFrame* child : frame.childFrames()) {
    if (const auto* table = qobject_cast<const QTextTable*>(child)) return table;
    if (const QTextTable* table = first_table(*child)) return table;
  }
  return nullptr;
}

QString cell_text(const QTextTableCell& cell) {
  QStringList lines;
  for (auto block = cell.begin(); block != cell.end(); ++block) {
    lines << block.currentBlock().text().replace(QChar::LineSeparator, u'\n');
  }
  return lines.join(u'\n').trimmed();
}

}  // namespace

ClipboardRows parse_clipboard_text(const std::string& text) {
  ClipboardRows rows(1);
  std::string cell;
  bool quoted = false;
  bool at_start = true;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c != '"') {
        cell += c;
      } else if (i + 1 < text.size() && text[i + 1] == '"') {
        cell += text[++i];
      } else {
        quoted = false;
      }
      continue;
    }
    if (c == '"' && at_start) {
      quoted = true;
      at_start = false;
    } else if (c == '\t' || c == '\n') {
      rows.back().push_back(std::exchange(cell, {}));
      if (c == '\n') rows.emplace_back();
      at_start = true;
    } else if (c != '\r') {
      cell += c;
      at_start = false;
    }
  }
  if (!cell.empty() || !rows.back().empty()) rows.back().push_back(std::move(cell));
  if (rows.back().empty()) rows.pop_back();
  return rows;
}

ClipboardRows parse_clipboard_html(const QString& html) {
  QTextDocument document;
  document.setHtml(html);
  const QTextTable* table = first_table(*document.rootFrame());
  ClipboardRows rows;
  if (table == nullptr) return rows;
  for (int row = 0; row < table->rows(); ++row) {
    std::vector<std::string>& cells = rows.emplace_back();
    for (int column = 0; column < table->columns(); ++column) {
      const QTextTableCell cell = table->cellAt(row, column);
      // One that spans several stands in the first of them.
      const bool is_first = cell.row() == row && cell.column() == column;
      cells.push_back(is_first ? to_utf8(cell_text(cell)) : std::string());
    }
  }
  return rows;
}

ClipboardRows clipboard_rows(const QMimeData& data) {
  const QString text = data.text();
  if (data.hasHtml() && !text.contains(u'\t')) {
    ClipboardRows rows = parse_clipboard_html(data.html());
    if (!rows.empty() && (rows.size() > 1 || rows.front().size() > 1)) return rows;
  }
  return parse_clipboard_text(to_utf8(text));
}

std::unique_ptr<QMimeData> clipboard_data(const TableModel& model, const CellGroup& cells) {
  const bool with_html = cells.size() <= kMostHtmlCells;
  QString text;
  QString html = "<meta charset=\"utf-8\"><table>";
  for (const RowRange& range : cells.rows) {
    for (int row = range.first; row <= range.last; ++row) {
      const RecordNumber record = model.record_at(row);
      html += "<tr>";
      for (size_t i = 0; i < cells.fields.size(); ++i) {
        const auto field = static_cast<size_t>(cells.fields[i]);
        const QString cell = model.entry_text(record, field);
        if (i > 0) text += u'\t';
        append_text_cell(cell, text);
        if (with_html) append_html_cell(cell, model.table().field(field).type == FieldType::kNumber, html);
      }
      text += u'\n';
      html += "</tr>";
    }
  }
  auto data = std::make_unique<QMimeData>();
  data->setText(text);
  if (with_html) data->setHtml(html + "</table>");
  return data;
}

}  // namespace rowvane
