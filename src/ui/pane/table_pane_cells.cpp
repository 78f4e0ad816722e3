// The commands that change cells, and the clipboard.
#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QFileInfo>
#include <algorithm>

#include "core/database/database.h"
#include "core/messages/messages.h"
#include "core/values/date_text.h"
#include "exchange/text/standard_dates.h"
#include "ui/long_task.h"
#include "ui/pane/links.h"
#include "ui/pane/table_pane.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int64_t kMostCopiedCells = 2'000'000;

double today() {
  return static_cast<double>(QDate(1899, 12, 30).daysTo(QDate::currentDate()));
}

}  // namespace

void TablePane::report(const CellChanges& changes, const QString& more) {
  QStringList lines;
  if (changes.refused > 0) {
    lines << tr("%1 cell(s) kept their values:").arg(changes.refused) << to_qt(error_text(changes.error));
  }
  if (!more.isEmpty()) lines << more;
  if (!lines.isEmpty()) dialogs_.show(to_utf8(lines.join(u'\n')), MessageIcon::kWarning);
}

std::optional<CellGroup> TablePane::one_group() {
  const std::vector<CellGroup> groups = selected_groups();
  if (groups.empty()) return std::nullopt;
  if (groups.size() == 1) return groups.front();
  dialogs_.show("This works with several blocks only where they have the same fields or the same records.",
                MessageIcon::kWarning);
  return std::nullopt;
}

// ---- the clipboard

void TablePane::copy() {
  if (!finish_editing()) return;
  const std::optional<CellGroup> group = one_group();
  if (!group) return;
  if (group->size() > kMostCopiedCells) {
    const QString text = tr("At most %L1 cells can be copied at a time. Export the table instead.");
    dialogs_.show(to_utf8(text.arg(kMostCopiedCells)), MessageIcon::kWarning);
    return;
  }
  QApplication::clipboard()->setMimeData(clipboard_data(model_, *group).release());
}

void TablePane::cut() {
  if (!may_change()) return;
  const std::optional<CellGroup> group = one_group();
  if (!group || group->size() > kMostCopiedCells) return copy();
  copy();
  clear();
}

// How many records there is room for at the end; none where a filter would hide them.
uint32_t TablePane::appendable_records() const {
  if (presentation_.is_filtered()) return 0;
  const uint32_t most = document_.database().max_records();
  return most > table_.record_count() ? most - table_.record_count() : 0;
}

// The cells that ROWS go to: from the first selected one on; a single cell goes to all selected ones, a
// single row to all selected records. APPENDED gets the records to be added for it, LOST counts what finds no
// room.
CellBlock TablePane::paste_target(const ClipboardRows& rows, uint32_t& appended, int64_t& lost) const {
  const std::vector<CellGroup> groups = selected_groups();
  if (groups.empty()) return {};
  const CellGroup& group = groups.front();
  size_t widest = 0;
  for (const auto& row : rows) widest = std::max(widest, row.size());
  if (rows.size() == 1 && widest == 1) return groups.size() == 1 ? block_of(group) : selected_block();

  const auto first_field = std::ranges::find(fields_, static_cast<size_t>(group.fields.front()));
  const size_t room = static_cast<size_t>(fields_.end() - first_field);
  CellGroup target;
  target.fields.assign(first_field, first_field + static_cast<std::ptrdiff_t>(std::min(widest, room)));
  lost = static_cast<int64_t>((widest - target.fields.size()) * rows.size());
  if (rows.size() == 1 && count_rows(group.rows) > 1) {
    target.rows = group.rows;
    return block_of(target);
  }
  const int first = group.rows.front().first;
  const int64_t end = std::min<int64_t>(first + static_cast<int64_t>(rows.size()), model_.rowCount());
  target.rows = {{first, static_cast<int>(end) - 1}};
  const auto beyond = static_cast<int64_t>(rows.size()) - (end - first);
  appended = static_cast<uint32_t>(std::min<int64_t>(beyond, appendable_records()));
  lost += (beyond - appended) * static_cast<int64_t>(target.fields.size());
  CellBlock block = block_of(target);
  for (uint32_t i = 0; i < appended; ++i) block.positions.push_back(table_.record_count() + i);
  return block;
}

void TablePane::paste() {
  const QMimeData* copied = QApplication::clipboard()->mimeData();
  if (copied == nullptr || !may_change()) return;
  const ClipboardRows rows = clipboard_rows(*copied);
  if (rows.empty()) return;
  uint32_t appended = 0;
  int64_t lost = 0;
  const CellBlock block = paste_target(rows, appended, lost);
  if (block.size() == 0) return;
  CellChanges changes;
  ErrorCode error = ErrorCode::kOk;
  {
    const ChangeGroup step(document_.database(), "Paste");
    if (appended > 0) error = insert_shown_records(table_.end_record(), appended, model_.rowCount());
    if (error == ErrorCode::kOk) changes = paste_cells(table_, block, rows, document_.region());
  }
  report(error);
  report(changes, lost > 0 ? tr("There was no room for %1 cell(s).").arg(lost) : QString());
}

// ---- cells

// In one step; blocks of different records one after the other.
void TablePane::change_selection(const char* caption, const BlockChange& change) {
  CellChanges changes;
  {
    const ChangeGroup step(document_.database(), caption);
    for (const CellGroup& group : selected_groups()) add_changes(changes, change(block_of(group)));
  }
  report(changes);
}

void TablePane::clear() {
  if (!may_change()) return;
  change_selection("Clear", [this](const CellBlock& block) { return clear_cells(table_, block); });
}

void TablePane::fill_selection(const std::string& text) {
  change_selection("Fill", [&](const CellBlock& block) {
    return paste_cells(table_, block, {{text}}, document_.region());
  });
}

void TablePane::texts_to_dates() {
  if (!may_change()) return;
  DateConversionSettings settings;
  settings.region = document_.region();
  for (const CellGroup& group : selected_groups()) {
    for (const int field : group.fields) settings.fields.push_back(static_cast<size_t>(field));
  }
  std::ranges::sort(settings.fields);
  settings.fields.erase(std::unique(settings.fields.begin(), settings.fields.end()), settings.fields.end());
  if (!dialogs_.accept(check_date_conversion(table_, settings))) return;
  DateConversionResult result;
  run_long_change(this, tr("Text To Standard Date String"), document_, [&](Progress& progress) {
    result = convert_to_standard_dates(document_.database(), table_, settings, progress);
  });
  if (result.other_texts == 0) return;
  const QString text = tr("%L1 value(s) are no dates and stay as they are.");
  dialogs_.show(to_utf8(text.arg(result.other_texts)), MessageIcon::kInformation);
}

void TablePane::fill_down() {
  if (!may_change()) return;
  change_selection("Fill Down", [this](const CellBlock& block) { return rowvane::fill_down(table_, block); });
}

void TablePane::insert_today() {
  const QModelIndex cell = current();
  if (!cell.isValid()) return;
  const auto field = static_cast<size_t>(cell.column());
  const bool is_number = table_.field(field).type == FieldType::kNumber;
  const QString text =
      is_number ? model_.number_entry_text(today(), field) : to_qt(standard_date_text(today()));
  if (view_->insert_into_editor(text) || !may_change()) return;
  if (table_.field(field).encrypted) return report(ErrorCode::kEncryptedField);
  if (model_.is_typed(field)) model_.setData(cell, text);
}

void TablePane::copy_from_above() {
  const QModelIndex cell = current();
  if (!cell.isValid() || cell.row() == 0) return;
  const auto field = static_cast<size_t>(cell.column());
  const RecordNumber above = model_.record_at(cell.row() - 1);
  if (view_->insert_into_editor(model_.entry_text(above, field))) return;
  if (!may_change() || !table_.field(field).formula.empty()) return;
  report(table_.set_value(model_.record_at(cell.row()), field, table_.value(above, field)));
}

// ---- links

QUrl TablePane::link_at(const QModelIndex& index) const {
  if (!index.isValid() || !table_.field(static_cast<size_t>(index.column())).link) return {};
  const std::string& file = document_.database().file_path();
  const QString folder = file.empty() ? QString() : QFileInfo(to_qt(file)).absolutePath();
  return link_target(index.data().toString(), folder);
}

void TablePane::open_link() {
  if (!current().isValid()) return;
  const QUrl url = link_at(current());
  if (!url.isValid()) {
    dialogs_.show("The current cell holds no link.", MessageIcon::kInformation);
  } else if (!link_opener()(url)) {
    dialogs_.show("Nothing opens this link:\n" + to_utf8(url.toString()), MessageIcon::kWarning);
  }
}

}  // namespace rowvane
