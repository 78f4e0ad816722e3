// The folders and tables of a database as a tree.
#pragma once

#include <QAbstractItemModel>
#include <map>
#include <optional>
#include <vector>

#include "app/profile/profile_settings.h"
#include "ui/document/database_document.h"

namespace rowvane {

// What stands in the tree: a folder or a table, the other one is null.
struct TreeItem {
  Folder* folder = nullptr;
  CWorkSheet* table = nullptr;

  bool is_empty() const { return folder == nullptr && table == nullptr; }
  const std::string& name() const { return folder != nullptr ? folder->name() : table->name(); }
  std::string path() const { return folder != nullptr ? folder->path() : table->path(); }
  // Where it lies; null for the top folder.
  Folder* parent() const { return folder != nullptr ? folder->parent() : table->folder(); }
  bool operator==(const TreeItem&) const = default;
};

// Follows the database: a change of the tree resets the model, every other one leaves its indexes as they
// are.
class TableTree final : public QAbstractItemModel {
  Q_OBJECT

 public:
  // SORTING says how folders, and the tables behind them, are ordered: as in the database, by name, or by the
  // number of records. Both must outlive the model.
  TableTree(DatabaseDocument& document, const profile::SortingOptions& sorting, QObject* parent = nullptr);

  // The top folder for the invalid index.
  TreeItem item(const QModelIndex& index) const;
  // Invalid for the top folder and for what is not in the tree.
  QModelIndex index_of(const TreeItem& item) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // Renames the item.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction | Qt::CopyAction; }
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  // Moves or copies the item that is dragged, and tells it by `placed`.
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;
  // True when DATA is an item of this tree.
  bool is_own_item(const QMimeData* data) const;

 public slots:
  // To be called when the sorting is another one.
  void sort_again();

 signals:
  // A change was not made; TEXT says why.
  void refused(const QString& text);
  // An item was moved or copied to where it is now.
  void placed(const QModelIndex& index);

 private:
  using Children = std::map<const Folder*, std::vector<TreeItem>>;

  void follow(const CWorkSheet* changed);
  Children read_children() const;
  void add_children(const Folder& folder, Children& children) const;
  const std::vector<TreeItem>& children_of(const Folder* folder) const;
  TreeItem item_of(const QMimeData* data) const;
  ErrorCode place(const TreeItem& item, bool as_copy, Folder& target, TreeItem& placed_item);
  bool report(ErrorCode error, bool is_table);
  QString tip(const TreeItem& item) const;

  DatabaseDocument& document_;
  const profile::SortingOptions& sorting_;
  Children children_;
};

// What the user is told when the change of a table or a folder fails with ERROR.
std::string tree_refusal(ErrorCode error, bool is_table);

}  // namespace rowvane
