// The commands that change records and cells, and the clipboard.
#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QFileInfo>
#include <algorithm>
#include <numeric>

#include "core/database/database.h"
#include "core/values/date_text.h"
#include "exchange/text/standard_dates.h"
#include "ui/grid/cellvane_view.h"
#include "ui/grid/links.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int64_t kMostCopiedCells = 2'000'000;

double today() {
  return static_cast<double>(QDate(1899, 12, 30).daysTo(QDate::currentDate()));
}

}  // namespace

// ---- reports

void CCellvaneView::report(const CellChanges& changes, const QString& more) {
  QStringList lines;
  if (changes.refused > 0) {
    lines << tr("%1 cell(s) kept their values:").arg(changes.refused) << to_qt(error_text(changes.error));
  }
  if (!more.isEmpty()) lines << more;
  if (!lines.isEmpty()) dialogs_.show(to_utf8(lines.join(u'\n')), MessageIcon::kWarning);
}

void CCellvaneView::report(ErrorCode error) {
  if (error != ErrorCode::kOk) dialogs_.show_error(error);
}

// The selection where it is a block, if one with gaps; otherwise the user is told.
std::optional<CellGroup> CCellvaneView::one_group() {
  const std::vector<CellGroup> groups = selected_groups();
  if (groups.empty()) return std::nullopt;
  if (groups.size() == 1) return groups.front();
  dialogs_.show("This works with several blocks only where they have the same fields or the same records.",
                MessageIcon::kWarning);
  return std::nullopt;
}

// ---- the clipboard

void CCellvaneView::copy() {
  if (!finish_editing()) return;
  const std::optional<CellGroup> group = one_group();
  if (!group) return;
  if (group->size() > kMostCopiedCells) {
    const QString text = tr("At most %L1 cells can be copied at a time. Export the table instead.");
    dialogs_.show(to_utf8(text.arg(kMostCopiedCells)), MessageIcon::kWarning);
    return;
  }
  QApplication::clipboard()->setMimeData(clipboard_data(*model_, *group).release());
}

void CCellvaneView::cut() {
  if (!may_change()) return;
  const std::optional<CellGroup> group = one_group();
  if (!group || group->size() > kMostCopiedCells) return copy();
  copy();
  clear();
}

// How many records there is room for at the end; none where a filter would hide them.
uint32_t CCellvaneView::appendable_records() const {
  if (presentation_ != nullptr ? presentation_->is_filtered() : !model_->shows_all()) return 0;
  const uint32_t most = document_.database().max_records();
  return most > table().record_count() ? most - table().record_count() : 0;
}

// The cells that ROWS go to: from the first selected one on; a single cell goes to all selected ones, a
// single row to all selected records. APPENDED gets the records to be added for it, LOST counts what finds no
// room.
CellBlock CCellvaneView::paste_target(const ClipboardRows& rows, uint32_t& appended, int64_t& lost) const {
  const std::vector<CellGroup> groups = selected_groups();
  if (groups.empty()) return {};
  const CellGroup& group = groups.front();
  size_t widest = 0;
  for (const auto& row : rows) widest = std::max(widest, row.size());
  if (rows.size() == 1 && widest == 1) return groups.size() == 1 ? block_of(group) : selected_block();

  CellGroup target;
  const int first_place = layout_.place_of(group.fields.front());
  const int end_place = std::min(first_place + static_cast<int>(widest), layout_.place_count());
  for (int place = first_place; place < end_place; ++place) target.fields.push_back(layout_.field_at(place));
  lost = (static_cast<int64_t>(widest) - (end_place - first_place)) * static_cast<int64_t>(rows.size());
  if (rows.size() == 1 && count_rows(group.rows) > 1) {
    target.rows = group.rows;
    return block_of(target);
  }
  const int first = group.rows.front().first;
  const int64_t end = std::min<int64_t>(first + static_cast<int64_t>(rows.size()), layout_.row_count());
  target.rows = {{first, static_cast<int>(end) - 1}};
  const auto beyond = static_cast<int64_t>(rows.size()) - (end - first);
  appended = static_cast<uint32_t>(std::min<int64_t>(beyond, appendable_records()));
  lost += (beyond - appended) * static_cast<int64_t>(target.fields.size());
  CellBlock block = block_of(target);
  for (uint32_t i = 1; i <= appended; ++i) block.records.push_back(table().record_count() + i);
  return block;
}

void CCellvaneView::paste() {
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
    if (appended > 0) {
      const uint32_t before = table().record_count() + 1;
      model_->expect_inserted(before, appended, model_->rowCount());
      error = table().insert_records(before, appended);
      if (error != ErrorCode::kOk) model_->expect_nothing();
    }
    if (error == ErrorCode::kOk) changes = paste_cells(table(), block, rows, document_.region());
  }
  report(error);
  report(changes, lost > 0 ? tr("There was no room for %1 cell(s).").arg(lost) : QString());
}

// ---- cells

void CCellvaneView::clear() {
  if (!may_change()) return;
  CellChanges changes;
  {
    const ChangeGroup step(document_.database(), "Clear");
    for (const CellGroup& group : selected_groups())
      add_changes(changes, clear_cells(table(), block_of(group)));
  }
  report(changes);
}

void CCellvaneView::texts_to_dates() {
  if (!may_change()) return;
  DateConversionSettings settings;
  settings.region = document_.region();
  for (const CellGroup& group : selected_groups()) {
    for (const int field : group.fields) settings.fields.push_back(static_cast<size_t>(field));
  }
  std::ranges::sort(settings.fields);
  settings.fields.erase(std::ranges::unique(settings.fields).begin(), settings.fields.end());
  if (const auto error = check_date_conversion(table(), settings); error != ErrorCode::kOk)
    return report(error);
  DateConversionResult result;
  run_long_change(this, tr("Text To Standard Date String"), document_, [&](Progress& progress) {
    result = convert_to_standard_dates(document_.database(), table(), settings, progress);
  });
  if (result.other_texts == 0) return;
  const QString text = tr("%L1 value(s) are no dates and stay as they are.");
  dialogs_.show(to_utf8(text.arg(result.other_texts)), MessageIcon::kInformation);
}

void CCellvaneView::fill_down() {
  if (!may_change()) return;
  CellChanges changes;
  {
    const ChangeGroup step(document_.database(), "Fill Down");
    for (const CellGroup& group : selected_groups())
      add_changes(changes, rowvane::fill_down(table(), block_of(group)));
  }
  report(changes);
}

void CCellvaneView::insert_today() {
  const QModelIndex current = delegate_->editor() != nullptr ? delegate_->edited() : currentIndex();
  if (!current.isValid()) return;
  const auto field = static_cast<size_t>(current.column());
  const bool is_number = table().field(field).type == FieldType::kNumber;
  const QString text =
      is_number ? model_->number_entry_text(today(), field) : to_qt(standard_date_text(today()));
  if (delegate_->editor() != nullptr) return delegate_->insert(text);
  if (!may_change()) return;
  if (table().field(field).encrypted) return report(ErrorCode::kEncryptedField);
  if (model_->is_typed(field)) model_->setData(current, text);
}

void CCellvaneView::copy_from_above() {
  const QModelIndex current = delegate_->editor() != nullptr ? delegate_->edited() : currentIndex();
  if (!current.isValid() || current.row() == 0) return;
  const auto field = static_cast<size_t>(current.column());
  const uint32_t above = model_->record_at(current.row() - 1);
  if (delegate_->editor() != nullptr) return delegate_->insert(model_->entry_text(above, field));
  if (!may_change() || !table().field(field).formula.empty()) return;
  report(table().set_value(model_->record_at(current.row()), field, table().value(above, field)));
}

// ---- records

// Where the first selected record stands, among the shown ones and in the order of entry.
void CCellvaneView::insert_records() {
  if (!may_change()) return;
  const RowRanges rows = selected_rows(selectionModel()->selection());
  const GridPlace current = current_place();
  const bool is_empty = model_->rowCount() == 0;
  const int row = rows.empty() ? current.row : rows.front().first;
  const auto count = static_cast<uint32_t>(std::max<int64_t>(count_rows(rows), 1));
  const uint32_t before = is_empty ? table().record_count() + 1 : model_->record_at(row);
  model_->expect_inserted(before, count, is_empty ? 0 : row);
  const ErrorCode error = table().insert_records(before, count);
  if (error != ErrorCode::kOk) model_->expect_nothing();
  report(error);
  if (is_usable()) go_to({std::min(row, layout_.row_count() - 1), current.place});
}

void CCellvaneView::append_record() {
  if (!may_change()) return;
  const GridPlace current = current_place();
  const uint32_t before = table().record_count() + 1;
  model_->expect_inserted(before, 1, model_->rowCount());
  const ErrorCode error = table().insert_records(before, 1);
  if (error != ErrorCode::kOk) model_->expect_nothing();
  report(error);
  if (error == ErrorCode::kOk && is_usable()) go_to({layout_.row_count() - 1, current.place});
}

// The entered values of the records at ORIGINALS to as many records from FIRST on, both 0-based.
void CCellvaneView::copy_values(const std::vector<uint32_t>& originals, uint32_t first) {
  std::vector<uint32_t> copies(originals.size());
  std::iota(copies.begin(), copies.end(), first);
  for (size_t field = 0; field < table().field_count(); ++field) {
    if (!table().field(field).formula.empty() || table().field(field).encrypted) continue;
    std::vector<RefusedValue> refused;
    static_cast<void>(
        table().set_values(field, copies, select_cells(table().column(field), originals), refused));
  }
}

void CCellvaneView::duplicate_records() {
  if (!may_change()) return;
  const std::vector<uint32_t> positions = selected_positions();
  if (positions.empty()) return;
  const RowRanges rows = selected_rows(selectionModel()->selection());
  const GridPlace current = current_place();
  const int row = (rows.empty() ? current.row : rows.back().last) + 1;
  const auto count = static_cast<uint32_t>(positions.size());
  const uint32_t before = model_->record_at(row - 1) + 1;
  std::vector<uint32_t> originals = positions;
  for (uint32_t& position : originals) {
    if (position >= before - 1) position += count;
  }
  ErrorCode error = ErrorCode::kOk;
  {
    const ChangeGroup step(document_.database(), "Duplicate Records");
    model_->expect_inserted(before, count, row);
    error = table().insert_records(before, count);
    if (error == ErrorCode::kOk) copy_values(originals, before - 1);
  }
  if (error != ErrorCode::kOk) {
    model_->expect_nothing();
    return report(error);
  }
  if (is_usable()) go_to({std::min(row, layout_.row_count() - 1), current.place});
}

void CCellvaneView::delete_records() {
  if (!may_change()) return;
  const std::vector<uint32_t> positions = selected_positions();
  if (positions.empty()) return;
  const RowRanges rows = selected_rows(selectionModel()->selection());
  const GridPlace current = current_place();
  const int row = rows.empty() ? current.row : rows.front().first;
  model_->expect_deleted(positions);
  const ErrorCode error = table().delete_records(positions);
  if (error != ErrorCode::kOk) model_->expect_nothing();
  report(error);
  if (is_usable()) go_to({std::min(row, layout_.row_count() - 1), current.place});
}

// ---- links

QUrl CCellvaneView::link_at(const QModelIndex& index) const {
  if (!index.isValid() || !table().field(static_cast<size_t>(index.column())).link) return {};
  const std::string& file = document_.database().file_path();
  const QString folder = file.empty() ? QString() : QFileInfo(to_qt(file)).absolutePath();
  return link_target(index.data().toString(), folder);
}

void CCellvaneView::open_link() {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return;
  const QUrl url = link_at(current);
  if (!url.isValid()) {
    dialogs_.show("The current cell holds no link.", MessageIcon::kInformation);
  } else if (!link_opener()(url)) {
    dialogs_.show("Nothing opens this link:\n" + to_utf8(url.toString()), MessageIcon::kWarning);
  }
}

}  // namespace rowvane
