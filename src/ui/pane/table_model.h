// The records of a table as its views show them.
#pragma once

#include <QAbstractTableModel>
#include <memory>
#include <optional>

#include "ui/document/database_document.h"
#include "ui/pane/cell_texts.h"

namespace rowvane {

// Rows are the shown records, columns the fields in the order of the table. Holds no values: a cell is read
// when it is painted.
class TableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  // All must outlive the model.
  TableModel(DatabaseDocument& document, CWorkSheet& table, const profile::Settings& settings,
             QObject* parent = nullptr);

  CWorkSheet& table() { return table_; }
  const CWorkSheet& table() const { return table_; }

  // Shows RECORDS, positions in display order; nothing: all records.
  void show_records(std::optional<RecordSet> records);
  bool shows_all() const { return !records_; }
  const std::optional<RecordSet>& records() const { return records_; }
  // True from `outdated` until other records are shown.
  bool is_outdated() const { return is_outdated_; }
  RecordNumber record_at(int row) const;
  // The row of a record, or -1.
  int row_of(RecordNumber record) const;

  // Before records are inserted or deleted, so that those which are shown stay where they are: COUNT new ones
  // before record BEFORE, shown from ROW on; or none of POSITIONS any more, which ascend.
  void expect_inserted(RecordNumber before, uint32_t count, int row);
  void expect_deleted(const std::vector<uint32_t>& positions);
  // The change was refused.
  void expect_nothing() { expected_.reset(); }

  ShownCell shown_cell(int row, int column) const;
  // The value as the user types it; of rich text its plain text.
  QString entry_text(RecordNumber record, size_t field) const;
  // NUMBER as a cell of FIELD is typed: as it is shown when that reads back to it, as dates do; otherwise
  // with all its digits.
  QString number_entry_text(double number, size_t field) const;
  // True for rich text.
  bool has_formatting(RecordNumber record, size_t field) const;
  // Encrypted and calculated fields and those of files have no editor.
  bool is_typed(size_t field) const;
  // Stores what TEXT reads as. WARNING gets what the user is to be told even so.
  ErrorCode enter(RecordNumber record, size_t field, const QString& text, QString& warning);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // Reads VALUE as the field's type asks for. What was refused or cut is told by `told`.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 signals:
  void told(const QString& text);
  // After each change, when all views have followed it.
  void settled();
  // Records came or went in a way that was not expected: those that are shown need to be worked out anew.
  void outdated();

 private:
  void follow(const CWorkSheet* changed);
  void make_texts();
  QVariant field_tip(const Field& field) const;
  QVariant cell_tip(const QModelIndex& index) const;

  DatabaseDocument& document_;
  CWorkSheet& table_;
  const profile::Settings& settings_;
  std::unique_ptr<CellTexts> texts_;
  std::optional<RecordSet> records_;
  std::optional<RecordSet> expected_;
  bool is_outdated_ = false;
  uint32_t record_count_ = 0;  // that the views know of
  size_t field_count_ = 0;
};

}  // namespace rowvane
