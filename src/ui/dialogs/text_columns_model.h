// What the list of a text file's columns shows: the choices for each column, and the sample.
#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <array>
#include <memory>

#include "core/table/work_sheet.h"
#include "exchange/text/text_file_settings.h"

namespace rowvane {

// The type choices in the order of the list, with what each stores.
struct TypeChoice {
  const char* text;
  uint8_t value;
};
inline constexpr std::array kTypeChoices = {
    TypeChoice{"Auto", TextFileSettings::kAuto}, TypeChoice{"Text", TextFileSettings::kText},
    TypeChoice{"Number", TextFileSettings::kNumber}, TypeChoice{"LongText", TextFileSettings::kLongText}};

// Row 0: the type of each column, row 1: whether its dates are parsed.
class TextColumnsModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  using ColumnOptions = decltype(TextFileSettings::column_options);
  using QAbstractTableModel::QAbstractTableModel;

  void show_columns(std::shared_ptr<const CWorkSheet> sample);
  const ColumnOptions& options() const { return options_; }
  void set_options(const ColumnOptions& options);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  uint8_t type_of(int column) const;

  std::shared_ptr<const CWorkSheet> sample_;
  ColumnOptions options_{};
};

// The records of the sample, all as text.
class TextSampleModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void show_records(std::shared_ptr<const CWorkSheet> sample);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

 private:
  std::shared_ptr<const CWorkSheet> sample_;
};

// A list of the types for the cell that is being edited.
class TypeChoiceDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};

}  // namespace rowvane
