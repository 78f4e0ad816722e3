#include "ui/grid/table_model.h"

#include <QColor>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <array>

#include "core/messages.h"
#include "core/utf8.h"
#include "formula/typed_value.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr size_t kShownCharacters = 300;
constexpr size_t kTipCharacters = 2000;

QString on_one_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  return to_qt(text);
}

// The eight colours that format codes name.
QColor color_of(uint8_t number) {
  constexpr std::array<QRgb, 9> kColors = {0,        0x000000, 0x1F5FBF, 0x008B8B, 0x2E8B57,
                                           0xB0309A, 0xC62828, 0xFFFFFF, 0xB8860B};
  return number < kColors.size() ? QColor::fromRgb(kColors[number]) : QColor();
}

bool is_long(FieldType type) {
  return type == FieldType::kLongText || type == FieldType::kCode;
}

}  // namespace

ErrorCode read_entry(const Field& field, const std::string& text, const platform::RegionalSettings& region,
                     CellValue& value) {
  const NumberSeparators separators{region.decimal_separator, region.group_separator};
  if (field.type == FieldType::kNumber && !text.empty()) {
    const auto typed = read_typed_value(text, region);
    if (!typed) return ErrorCode::kFieldTypeMismatch;
    value = typed->number;
    return ErrorCode::kOk;
  }
  return value_from_text(field.type, text, separators, value);
}

TableModel::TableModel(DatabaseDocument& document, CWorkSheet& table, QObject* parent)
    : QAbstractTableModel(parent),
      document_(document),
      table_(table),
      texts_(std::make_unique<ShownTexts>(table, DisplayRegion(document.region()))),
      record_count_(table.record_count()),
      field_count_(table.field_count()) {
  connect(&document, &DatabaseDocument::changed, this, &TableModel::follow);
}

void TableModel::show_records(std::optional<std::vector<uint32_t>> records) {
  beginResetModel();
  records_ = std::move(records);
  endResetModel();
}

uint32_t TableModel::record_at(int row) const {
  const auto position = static_cast<size_t>(row);
  return (records_ ? (*records_)[position] : static_cast<uint32_t>(row)) + 1;
}

int TableModel::row_of(uint32_t record) const {
  if (!records_) return record <= record_count_ ? static_cast<int>(record) - 1 : -1;
  const auto found = std::ranges::find(*records_, record - 1);
  return found != records_->end() ? static_cast<int>(found - records_->begin()) : -1;
}

int TableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return records_ ? static_cast<int>(records_->size()) : static_cast<int>(record_count_);
}

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(field_count_);
}

// A record set that a change of records has made stale shows all records again.
void TableModel::follow(const CWorkSheet* changed) {
  if (changed != nullptr && changed != &table_) return;
  const bool same_shape = record_count_ == table_.record_count() && field_count_ == table_.field_count();
  if (same_shape) {
    texts_ = std::make_unique<ShownTexts>(table_, DisplayRegion(document_.region()));
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    return;
  }
  beginResetModel();
  if (record_count_ != table_.record_count()) records_.reset();
  record_count_ = table_.record_count();
  field_count_ = table_.field_count();
  texts_ = std::make_unique<ShownTexts>(table_, DisplayRegion(document_.region()));
  endResetModel();
}

std::string TableModel::shown_text(uint32_t record, size_t field, size_t max_characters) const {
  std::string text;
  static_cast<void>(texts_->read(record - 1, field, text));
  return std::string(truncate_characters(text, max_characters));
}

QVariant TableModel::shown_text(const QModelIndex& index) const {
  return on_one_line(
      shown_text(record_at(index.row()), static_cast<size_t>(index.column()), kShownCharacters));
}

// A number is edited as it is shown when that reads back to it, as dates do; otherwise with all its digits.
QString TableModel::entry_text(uint32_t record, size_t field) const {
  const CellValue value = table_.value(record, field);
  const auto* number = std::get_if<double>(&value);
  if (number != nullptr && !table_.field(field).format.empty()) {
    const std::string shown = shown_text(record, field);
    const auto typed = read_typed_value(shown, document_.region());
    if (typed && typed->number == *number) return to_qt(shown);
  }
  return to_qt(table_.value_text(record, field, {document_.region().decimal_separator, std::string()}));
}

QVariant TableModel::foreground(const QModelIndex& index) const {
  const Field& field = table_.field(static_cast<size_t>(index.column()));
  if (field.link) return QGuiApplication::palette().color(QPalette::Link);
  if (field.format.empty()) return {};
  std::string text;
  ShownValue shown;
  static_cast<void>(
      texts_->read(record_at(index.row()) - 1, static_cast<size_t>(index.column()), text, &shown));
  const QColor color = shown.color > 0 ? color_of(shown.color) : QColor();
  return color.isValid() ? QVariant(color) : QVariant();
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto field = static_cast<size_t>(index.column());
  const Field& definition = table_.field(field);
  switch (role) {
    case Qt::DisplayRole:
      return shown_text(index);
    case Qt::EditRole:
      return entry_text(record_at(index.row()), field);
    case Qt::TextAlignmentRole:
      return QVariant(Qt::AlignVCenter |
                      (definition.type == FieldType::kNumber ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::ForegroundRole:
      return foreground(index);
    case Qt::FontRole: {
      if (!definition.link) return {};
      QFont font;
      font.setUnderline(true);
      return font;
    }
    case Qt::ToolTipRole: {
      if (!is_long(definition.type)) return {};
      return to_qt(shown_text(record_at(index.row()), field, kTipCharacters));
    }
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
    if (role == Qt::DisplayRole && section < rowCount()) return QString::number(record_at(section));
    return {};
  }
  if (static_cast<size_t>(section) >= field_count_) return {};
  const Field& field = table_.field(static_cast<size_t>(section));
  if (role == Qt::DisplayRole) return to_qt(field.name);
  if (role == Qt::ToolTipRole) return field_tip(field);
  return {};
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  const Field& field = table_.field(static_cast<size_t>(index.column()));
  const bool is_typed = field.type != FieldType::kFiles && !field.encrypted && field.formula.empty();
  return is_typed ? flags | Qt::ItemIsEditable : flags;
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid()) return false;
  const auto field = static_cast<size_t>(index.column());
  const uint32_t record = record_at(index.row());
  const std::string text = to_utf8(value.toString());
  if (text == to_utf8(data(index, Qt::EditRole).toString())) return true;
  CellValue entered;
  ErrorCode error = read_entry(table_.field(field), text, document_.region(), entered);
  if (error == ErrorCode::kOk) error = table_.set_value(record, field, entered);
  if (error != ErrorCode::kOk) emit refused(to_qt(error_text(error)));
  return error == ErrorCode::kOk;
}

}  // namespace rowvane
