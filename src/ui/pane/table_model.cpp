#include "ui/pane/table_model.h"

#include <algorithm>

#include "core/messages/messages.h"
#include "formula/fields/value_input.h"
#include "text/rich_text.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr qsizetype kTipCharacters = 1000;

bool is_long(FieldType type) {
  return type == FieldType::kLongText || type == FieldType::kCode;
}

}  // namespace

TableModel::TableModel(DatabaseDocument& document, CWorkSheet& table, const profile::Settings& settings,
                       QObject* parent)
    : QAbstractTableModel(parent),
      document_(document),
      table_(table),
      settings_(settings),
      record_count_(table.record_count()),
      field_count_(table.field_count()) {
  make_texts();
  connect(&document, &DatabaseDocument::changed, this, &TableModel::follow);
}

void TableModel::make_texts() {
  texts_ = std::make_unique<CellTexts>(table_, DisplayRegion(document_.region()), settings_);
}

// ---- records

void TableModel::show_records(std::optional<RecordSet> records) {
  beginResetModel();
  records_ = std::move(records);
  is_outdated_ = false;
  endResetModel();
  emit settled();
}

RecordNumber TableModel::record_at(int row) const {
  return record_number(records_ ? (*records_)[static_cast<size_t>(row)] : static_cast<uint32_t>(row));
}

int TableModel::row_of(RecordNumber record) const {
  if (!records_) return record.position() < record_count_ ? static_cast<int>(record.position()) : -1;
  const auto found = std::ranges::find(*records_, record.position());
  return found != records_->end() ? static_cast<int>(found - records_->begin()) : -1;
}

void TableModel::expect_inserted(RecordNumber before, uint32_t count, int row) {
  if (!records_) return;
  RecordSet shown;
  shown.reserve(records_->size() + count);
  for (const uint32_t position : *records_) {
    shown.push_back(position < before.position() ? position : position + count);
  }
  std::vector<uint32_t> added(count);
  for (uint32_t i = 0; i < count; ++i) added[i] = before.position() + i;
  shown.insert(shown.begin() + row, added.begin(), added.end());
  expected_ = std::move(shown);
}

void TableModel::expect_deleted(const std::vector<uint32_t>& positions) {
  if (!records_) return;
  RecordSet shown;
  shown.reserve(records_->size());
  for (const uint32_t position : *records_) {
    const auto gone = std::ranges::lower_bound(positions, position);
    if (gone != positions.end() && *gone == position) continue;
    shown.push_back(position - static_cast<uint32_t>(gone - positions.begin()));
  }
  expected_ = std::move(shown);
}

void TableModel::follow(const CWorkSheet* changed) {
  if (changed != nullptr && changed != &table_) return;
  const auto expected = std::exchange(expected_, std::nullopt);
  const bool same_records = record_count_ == table_.record_count();
  if (same_records && field_count_ == table_.field_count()) {
    make_texts();
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    emit settled();
    return;
  }
  beginResetModel();
  record_count_ = table_.record_count();
  field_count_ = table_.field_count();
  const bool loses_records = records_ && !same_records && !expected;
  if (loses_records) {
    is_outdated_ = true;
    std::erase_if(*records_, [this](uint32_t position) { return position >= record_count_; });
  } else if (!same_records && expected) {
    records_ = expected;
  }
  make_texts();
  endResetModel();
  emit settled();
  if (loses_records) emit outdated();
}

int TableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return records_ ? static_cast<int>(records_->size()) : static_cast<int>(record_count_);
}

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(field_count_);
}

// ---- cells

ShownCell TableModel::shown_cell(int row, int column) const {
  return texts_->read(record_at(row).position(), static_cast<size_t>(column));
}

bool TableModel::is_typed(size_t field) const {
  const Field& definition = table_.field(field);
  return definition.type != FieldType::kFiles && !definition.encrypted && definition.formula.empty();
}

QString TableModel::number_entry_text(double number, size_t field) const {
  const platform::RegionalSettings& region = document_.region();
  if (!table_.field(field).format.empty()) {
    std::string shown;
    static_cast<void>(ShownTexts(table_, DisplayRegion(region)).read_number(number, field, shown));
    if (read_field_value(table_.field(field), shown, region).number() == number) return to_qt(shown);
  }
  std::string text;
  append_number(number, region.decimal_separator, text);
  return to_qt(text);
}

QString TableModel::entry_text(RecordNumber record, size_t field) const {
  const CellValue value = table_.value(record, field);
  const auto* number = std::get_if<double>(&value);
  if (number != nullptr && !table_.field(field).format.empty() &&
      error_of_number(*number) == FormulaError::kNone) {
    QString shown = texts_->read(record.position(), field).text;
    const ValueReading read = read_field_value(table_.field(field), to_utf8(shown), document_.region());
    if (read.number() == *number) return shown;
  }
  const std::string text =
      table_.value_text(record, field, {document_.region().decimal_separator, std::string()});
  const bool is_rich = table_.field(field).type == FieldType::kLongText && is_rich_text(text);
  return to_qt(is_rich ? plain_text_of(text) : text);
}

bool TableModel::has_formatting(RecordNumber record, size_t field) const {
  return table_.field(field).type == FieldType::kLongText && is_rich_text(table_.value_text(record, field));
}

ErrorCode TableModel::enter(RecordNumber record, size_t field, const QString& text, QString& warning) {
  std::string entered = to_utf8(text);
  if (table_.field(field).type == FieldType::kText) {
    TextEntry entry = read_text_entry(entered);
    if (!entry.warning.empty()) warning = to_qt(entry.warning.text());
    entered = std::move(entry.text);
  }
  const ValueReading read = read_field_value(table_.field(field), entered, document_.region());
  return read.error == ErrorCode::kOk ? table_.set_value(record, field, read.value) : read.error;
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid()) return false;
  const auto field = static_cast<size_t>(index.column());
  const RecordNumber record = record_at(index.row());
  const QString text = value.toString();
  if (text == entry_text(record, field)) return true;
  QString warning;
  const ErrorCode error = enter(record, field, text, warning);
  if (!warning.isEmpty()) emit told(warning);
  if (error != ErrorCode::kOk) emit told(to_qt(error_text(error)));
  return error == ErrorCode::kOk;
}

QVariant TableModel::cell_tip(const QModelIndex& index) const {
  const auto field = static_cast<size_t>(index.column());
  if (!settings_.check_box_options.show_memo_tooltips || !is_long(table_.field(field).type)) return {};
  return texts_->text(record_at(index.row()).position(), field, kTipCharacters);
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return shown_cell(index.row(), index.column()).text;
    case Qt::EditRole:
      return entry_text(record_at(index.row()), static_cast<size_t>(index.column()));
    case Qt::ToolTipRole:
      return cell_tip(index);
    default:
      return {};
  }
}

QVariant TableModel::field_tip(const Field& field) const {
  QString tip = to_qt(field_list_text(field));
  if (!field.formula.empty()) tip += "\n" + to_qt(field.formula);
  return tip;
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) {
    if (role == Qt::DisplayRole && section < rowCount()) return QString::number(record_at(section).number());
    return {};
  }
  if (static_cast<size_t>(section) >= field_count_) return {};
  const Field& field = table_.field(static_cast<size_t>(section));
  if (role == Qt::DisplayRole) return to_qt(field.name);
  if (role == Qt::ToolTipRole) return field_tip(field);
  return {};
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  if (!index.isValid()) return flags;
  return is_typed(static_cast<size_t>(index.column())) ? flags | Qt::ItemIsEditable : flags;
}

}  // namespace rowvane
