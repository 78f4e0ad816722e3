// The parts of the pane, and where the user is in them.
#include "ui/pane/table_pane.h"

#include <QLocale>
#include <QVBoxLayout>
#include <algorithm>

#include "core/messages/messages.h"
#include "ui/text.h"

namespace rowvane {

TablePane::TablePane(DatabaseDocument& document, CWorkSheet& table, profile::Settings& settings,
                     Dialogs& dialogs, const ViewMaker& make_view, PaneMenus menus, QWidget* parent)
    : QWidget(parent),
      document_(document),
      table_(table),
      settings_(settings),
      dialogs_(dialogs),
      menus_(std::move(menus)),
      presentation_(document, table),
      model_(document, table, settings),
      selection_(&model_),
      summary_(model_) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  connect_parts();
  show_as(make_view);
  find_place_again();
}

void TablePane::connect_parts() {
  connect(&model_, &TableModel::told, this,
          [this](const QString& text) { dialogs_.show(to_utf8(text), MessageIcon::kWarning); });
  connect(&model_, &TableModel::modelAboutToBeReset, this, &TablePane::remember_row);
  connect(&model_, &TableModel::settled, this, &TablePane::find_place_again);
  connect(&selection_, &QItemSelectionModel::currentChanged, this, &TablePane::remember_field);
  connect(&selection_, &QItemSelectionModel::selectionChanged, this, [this] {
    summary_.begin(cell_groups(selection_.selection(), fields_));
    emit state_changed();
  });
  connect(&summary_, &SelectionSummary::finished, this, &TablePane::state_changed);
}

void TablePane::show_as(const ViewMaker& make_view) {
  if (view_ != nullptr && !finish_editing()) return;
  view_.reset();
  view_ = make_view(*this);
  layout()->addWidget(&view_->widget());
  setFocusProxy(&view_->widget());
  view_->show_current();
  emit state_changed();
}

bool TablePane::is_read_only() const {
  return settings_.general_options.read_only || document_.file().is_read_only();
}

bool TablePane::may_change() {
  if (!is_read_only()) return finish_editing();
  dialogs_.show("The database can't be changed: it is open for reading only.", MessageIcon::kWarning);
  return false;
}

void TablePane::report(ErrorCode error) {
  if (error == ErrorCode::kNameNotUnique) {
    dialogs_.show(message(MessageId::kUniqueNameNeeded), MessageIcon::kWarning);
  } else {
    dialogs_.report(error);
  }
}

// ---- the current cell

std::optional<size_t> TablePane::current_field() const {
  if (fields_.empty()) return std::nullopt;
  if (current().isValid()) return static_cast<size_t>(current().column());
  const bool is_shown = std::ranges::find(fields_, chosen_field_) != fields_.end();
  return is_shown ? chosen_field_ : fields_.front();
}

void TablePane::go_to(int row, size_t field) {
  const QModelIndex index = model_.index(row, static_cast<int>(field));
  if (!index.isValid()) return;
  selection_.setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  view_->show_current();
}

void TablePane::go_to_row(int row) {
  if (const auto field = current_field()) go_to(std::min(row, model_.rowCount() - 1), *field);
}

void TablePane::remember_field(const QModelIndex& current) {
  if (current.isValid()) {
    const auto field = static_cast<size_t>(current.column());
    chosen_field_ = field;
    place_.field = table_.field_id(field);
    place_.field_rank = static_cast<size_t>(std::ranges::find(fields_, field) - fields_.begin());
  }
  emit state_changed();
}

void TablePane::remember_row() {
  const bool has_row = current().isValid() && current().row() < model_.rowCount();
  place_.row = has_row ? current().row() : 0;
  place_.record = has_row ? model_.record_at(place_.row) : RecordNumber();
}

// The record, or what stands in its row now; the field, or what stands in its place.
void TablePane::find_place_again() {
  fields_ = shown_fields(table_);
  if (model_.rowCount() > 0 && !fields_.empty()) {
    int row = current().row();
    if (!current().isValid()) {
      const int found = place_.record > 0 ? model_.row_of(place_.record) : -1;
      row = std::min(found >= 0 ? found : place_.row, model_.rowCount() - 1);
    }
    const auto known = table_.find_field_with_id(place_.field);
    const auto same = known ? std::ranges::find(fields_, *known) : fields_.end();
    if (same != fields_.end()) place_.field_rank = static_cast<size_t>(same - fields_.begin());
    const size_t field = fields_[std::min(place_.field_rank, fields_.size() - 1)];
    if (!current().isValid() || current().column() != static_cast<int>(field)) go_to(row, field);
  }
  summary_.begin(cell_groups(selection_.selection(), fields_));
  emit state_changed();
}

// ---- the selection

void TablePane::select_all() {
  if (!finish_editing() || model_.rowCount() == 0 || fields_.empty()) return;
  selection_.select(selection_of(model_, {0, model_.rowCount() - 1}, fields_),
                    QItemSelectionModel::ClearAndSelect);
  view_->widget().setFocus();
}

QItemSelection TablePane::selected_cells() const {
  QItemSelection cells = selection_.selection();
  if (cells.isEmpty() && current().isValid()) cells.select(current(), current());
  return cells;
}

std::vector<CellGroup> TablePane::selected_groups() const {
  return cell_groups(selected_cells(), fields_);
}

RowRanges TablePane::selected_rows() const {
  return rowvane::selected_rows(selected_cells());
}

CellBlock TablePane::block_of(const CellGroup& group) const {
  CellBlock block;
  block.positions.reserve(static_cast<size_t>(count_rows(group.rows)));
  for (const RowRange& range : group.rows) {
    for (int row = range.first; row <= range.last; ++row)
      block.positions.push_back(model_.record_at(row).position());
  }
  block.fields.assign(group.fields.begin(), group.fields.end());
  return block;
}

CellBlock TablePane::selected_block() const {
  const std::vector<CellGroup> groups = selected_groups();
  if (groups.size() == 1) return block_of(groups.front());
  CellGroup all;
  all.rows = selected_rows();
  for (const size_t field : fields_) {
    const auto has_field = [field = static_cast<int>(field)](const CellGroup& group) {
      return std::ranges::find(group.fields, field) != group.fields.end();
    };
    if (std::ranges::any_of(groups, has_field)) all.fields.push_back(static_cast<int>(field));
  }
  return block_of(all);
}

std::vector<uint32_t> TablePane::selected_positions() const {
  std::vector<uint32_t> positions;
  for (const RowRange& range : selected_rows()) {
    for (int row = range.first; row <= range.last; ++row)
      positions.push_back(model_.record_at(row).position());
  }
  std::ranges::sort(positions);
  return positions;
}

// ---- the status bar

QString TablePane::place_text() const {
  const QLocale locale;
  return tr("Record %1 of %2").arg(locale.toString(current().row() + 1), locale.toString(model_.rowCount()));
}

QString TablePane::filter_text() const {
  QStringList parts;
  if (is_filtered_) parts << tr("Filtered");
  const std::string sorted = presentation_.sort_text();
  if (!sorted.empty()) parts << tr("Sorted by %1").arg(to_qt(sorted));
  return parts.join("   ");
}

QString TablePane::selection_text() const {
  if (!summary()) return {};
  const QLocale locale;
  return tr("Sum %1   Mean %2   Count %3")
      .arg(locale.toString(summary()->sum, 'g', 12), locale.toString(summary()->mean, 'g', 12),
           locale.toString(static_cast<qulonglong>(summary()->count)));
}

}  // namespace rowvane
