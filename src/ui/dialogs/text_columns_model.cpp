#include "ui/dialogs/text_columns_model.h"

#include <QComboBox>
#include <QStyle>
#include <algorithm>

#include "core/database/names.h"
#include "platform/utf8.h"
#include "ui/dialogs/text_field_list.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr qsizetype kShownCharacters = 200;

int columns_of(const CWorkSheet* sample) {
  return sample != nullptr ? static_cast<int>(std::min(sample->field_count(), kMaxImportColumns)) : 0;
}

QString type_text(uint8_t type) {
  const auto found = std::ranges::find(kTypeChoices, type, &TypeChoice::value);
  return found != kTypeChoices.end() ? QString::fromLatin1(found->text) : QString();
}

}  // namespace

// ---- choices

void TextColumnsModel::show_columns(std::shared_ptr<const CWorkSheet> sample) {
  beginResetModel();
  sample_ = std::move(sample);
  endResetModel();
}

void TextColumnsModel::set_options(const ColumnOptions& options) {
  options_ = options;
  if (columnCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int TextColumnsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || sample_ == nullptr ? 0 : CTextFieldList::kChoiceRows;
}

int TextColumnsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_of(sample_.get());
}

uint8_t TextColumnsModel::type_of(int column) const {
  return options_[static_cast<size_t>(column)] & TextFileSettings::kTypeMask;
}

QVariant TextColumnsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const uint8_t options = options_[static_cast<size_t>(index.column())];
  if (index.row() == CTextFieldList::kDatesRow) {
    const bool parses = (options & TextFileSettings::kParseDates) != 0;
    return role == Qt::CheckStateRole ? QVariant(parses ? Qt::Checked : Qt::Unchecked) : QVariant();
  }
  if (role == Qt::DisplayRole) return type_text(type_of(index.column()));
  return role == Qt::EditRole ? QVariant(type_of(index.column())) : QVariant();
}

bool TextColumnsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid()) return false;
  uint8_t& options = options_[static_cast<size_t>(index.column())];
  const uint8_t before = options;
  if (index.row() == CTextFieldList::kDatesRow && role == Qt::CheckStateRole) {
    const bool on = value.toInt() == Qt::Checked;
    options = static_cast<uint8_t>(on ? options | TextFileSettings::kParseDates
                                      : options & ~TextFileSettings::kParseDates);
  } else if (index.row() == CTextFieldList::kTypeRow && role == Qt::EditRole) {
    const auto type = static_cast<uint8_t>(value.toUInt());
    options = static_cast<uint8_t>((options & ~TextFileSettings::kTypeMask) | type);
  } else {
    return false;
  }
  // The type decides whether the dates can be chosen.
  if (options != before) emit dataChanged(index.siblingAtRow(0), index.siblingAtRow(rowCount() - 1));
  return true;
}

QVariant TextColumnsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) {
    if (role != Qt::DisplayRole) return {};
    return section == CTextFieldList::kTypeRow ? tr("Type") : tr("Parse Dates");
  }
  if (sample_ == nullptr || section >= columnCount()) return {};
  const std::string& name = sample_->field(static_cast<size_t>(section)).name;
  if (role == Qt::DisplayRole) return to_qt(truncate_bytes(name, kShownFieldNameBytes));
  return role == Qt::ToolTipRole ? QVariant(to_qt(name)) : QVariant();
}

Qt::ItemFlags TextColumnsModel::flags(const QModelIndex& index) const {
  constexpr Qt::ItemFlags kUsable = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (index.row() == CTextFieldList::kTypeRow) return kUsable | Qt::ItemIsEditable;
  // Numbers and long texts are never read as dates.
  const uint8_t type = type_of(index.column());
  const bool has_dates = type != TextFileSettings::kNumber && type != TextFileSettings::kLongText;
  return has_dates ? kUsable | Qt::ItemIsUserCheckable : Qt::NoItemFlags;
}

// ---- the sample

void TextSampleModel::show_records(std::shared_ptr<const CWorkSheet> sample) {
  beginResetModel();
  sample_ = std::move(sample);
  endResetModel();
}

int TextSampleModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || sample_ == nullptr ? 0 : static_cast<int>(sample_->record_count());
}

int TextSampleModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_of(sample_.get());
}

QVariant TextSampleModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  const RecordNumber record = record_number(static_cast<uint32_t>(index.row()));
  const QString text = to_qt(sample_->value_text(record, static_cast<size_t>(index.column())));
  // Line breaks of quoted fields do not belong into one line.
  return role == Qt::DisplayRole ? text.left(kShownCharacters).replace('\n', QChar(0x21B5)) : text;
}

// ---- the list of types

// With an arrow: there is a list to choose from.
void TypeChoiceDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const int size = option.fontMetrics.height() / 2;
  QStyleOption arrow = option;
  arrow.rect = QRect(option.rect.right() - 2 * size, option.rect.center().y() - size / 2, size, size);
  option.widget->style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, painter, option.widget);
}

QWidget* TypeChoiceDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                          const QModelIndex&) const {
  auto* list = new QComboBox(parent);
  for (const TypeChoice& choice : kTypeChoices) list->addItem(choice.text, choice.value);
  list->setAccessibleName(tr("Type"));
  connect(list, &QComboBox::activated, this, [this, list] {
    auto* delegate = const_cast<TypeChoiceDelegate*>(this);
    emit delegate->commitData(list);
    emit delegate->closeEditor(list);
  });
  return list;
}

void TypeChoiceDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* list = qobject_cast<QComboBox*>(editor);
  list->setCurrentIndex(list->findData(index.data(Qt::EditRole)));
  list->showPopup();
}

void TypeChoiceDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                      const QModelIndex& index) const {
  model->setData(index, qobject_cast<QComboBox*>(editor)->currentData());
}

}  // namespace rowvane
