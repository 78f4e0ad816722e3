// The records of a table as a grid shows them.
#pragma once

#include <QAbstractTableModel>
#include <memory>
#include <optional>

#include "recordset/shown_texts.h"
#include "ui/document/database_document.h"

namespace rowvane {

// Rows are the shown records, columns the fields in the order of the table. Holds no values: a cell is read
// when it is painted.
class TableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  // Both must outlive the model.
  TableModel(DatabaseDocument& document, CWorkSheet& table, QObject* parent = nullptr);

  CWorkSheet& table() { return table_; }
  const CWorkSheet& table() const { return table_; }

  // Shows RECORDS, 0-based positions in display order; nothing: all records.
  void show_records(std::optional<std::vector<uint32_t>> records);
  bool shows_all() const { return !records_; }
  const std::optional<std::vector<uint32_t>>& records() const { return records_; }
  // The 1-based number of the record in ROW.
  uint32_t record_at(int row) const;
  // The row of a record, or -1.
  int row_of(uint32_t record) const;
  // The value as the user types it.
  QString entry_text(uint32_t record, size_t field) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // Reads VALUE as the field's type asks for. A refused value is told by `refused`.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 signals:
  // A value was not taken; TEXT says why.
  void refused(const QString& text);

 private:
  void follow(const CWorkSheet* changed);
  std::string shown_text(uint32_t record, size_t field,
                         size_t max_characters = static_cast<size_t>(-1)) const;
  QVariant shown_text(const QModelIndex& index) const;
  QVariant foreground(const QModelIndex& index) const;
  QVariant field_tip(const Field& field) const;

  DatabaseDocument& document_;
  CWorkSheet& table_;
  std::unique_ptr<ShownTexts> texts_;
  std::optional<std::vector<uint32_t>> records_;
  uint32_t record_count_ = 0;  // that the views know of
  size_t field_count_ = 0;
};

// What TEXT, typed into FIELD, stores: numbers and dates as REGION writes them. kFieldTypeMismatch.
ErrorCode read_entry(const Field& field, const std::string& text, const platform::RegionalSettings& region,
                     CellValue& value);

}  // namespace rowvane
