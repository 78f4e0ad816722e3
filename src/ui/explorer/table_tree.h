// The folders and tables of a database as a tree.
#pragma once

#include <QAbstractItemModel>

#include "ui/document/database_document.h"

namespace rowvane {

// Reads the database each time: a change of the tree resets the model.
class TableTree final : public QAbstractItemModel {
  Q_OBJECT

 public:
  explicit TableTree(DatabaseDocument& document, QObject* parent = nullptr);

  // What an index stands for; one of both is null.
  struct Item {
    Folder* folder = nullptr;
    CWorkSheet* table = nullptr;
  };
  Item item(const QModelIndex& index) const;
  QModelIndex index_of(const CWorkSheet& table) const;
  QModelIndex index_of(const Folder& folder) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // Renames the item.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  // Moves the item that is dragged into the folder that it is dropped on.
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;

 signals:
  // A change was not made; TEXT says why.
  void refused(const QString& text);

 private:
  // The children of a folder: its folders, then its tables.
  const Folder& folder_at(const QModelIndex& index) const;
  void follow(const CWorkSheet* changed);
  bool report(ErrorCode error);

  DatabaseDocument& document_;
};

}  // namespace rowvane
