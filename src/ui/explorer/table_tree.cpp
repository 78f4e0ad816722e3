#include "ui/explorer/table_tree.h"

#include <QLocale>
#include <QMimeData>
#include <algorithm>

#include "core/messages.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace rowvane {
namespace {

const QString kItemPath = QStringLiteral("application/x-rowvane-item");

template <typename T>
int place_in(const std::vector<std::unique_ptr<T>>& all, const T& one) {
  const auto found = std::ranges::find(all, &one, &std::unique_ptr<T>::get);
  return static_cast<int>(found - all.begin());
}

}  // namespace

TableTree::TableTree(DatabaseDocument& document, QObject* parent)
    : QAbstractItemModel(parent), document_(document) {
  connect(&document, &DatabaseDocument::changed, this, &TableTree::follow);
}

void TableTree::follow(const CWorkSheet* changed) {
  if (changed != nullptr) return;
  beginResetModel();
  endResetModel();
}

// An index holds the folder that its item lies in.
TableTree::Item TableTree::item(const QModelIndex& index) const {
  if (!index.isValid()) return {&document_.database().root(), nullptr};
  const auto* parent = static_cast<const Folder*>(index.constInternalPointer());
  const auto row = static_cast<size_t>(index.row());
  const size_t folders = parent->folders().size();
  if (row < folders) return {parent->folders()[row].get(), nullptr};
  if (row - folders < parent->tables().size()) return {nullptr, parent->tables()[row - folders].get()};
  return {};
}

QModelIndex TableTree::index_of(const CWorkSheet& table) const {
  const Folder& parent = *table.folder();
  const int row = static_cast<int>(parent.folders().size()) + place_in(parent.tables(), table);
  return createIndex(row, 0, &parent);
}

QModelIndex TableTree::index_of(const Folder& folder) const {
  if (folder.parent() == nullptr) return {};
  return createIndex(place_in(folder.parent()->folders(), folder), 0, folder.parent());
}

QModelIndex TableTree::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
  return createIndex(row, column, item(parent).folder);
}

QModelIndex TableTree::parent(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  return index_of(*static_cast<const Folder*>(index.constInternalPointer()));
}

int TableTree::rowCount(const QModelIndex& parent) const {
  const Folder* folder = item(parent).folder;
  return folder != nullptr ? static_cast<int>(folder->folders().size() + folder->tables().size()) : 0;
}

int TableTree::columnCount(const QModelIndex&) const {
  return 1;
}

QVariant TableTree::data(const QModelIndex& index, int role) const {
  const Item found = item(index);
  if (!index.isValid() || (found.folder == nullptr && found.table == nullptr)) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return to_qt(found.folder != nullptr ? found.folder->name() : found.table->name());
    case Qt::DecorationRole:
      return icon(found.folder != nullptr ? "folder" : "table");
    case Qt::ToolTipRole:
      if (found.table == nullptr) return to_qt(found.folder->path());
      return tr("%1\n%2 records, %3 fields")
          .arg(to_qt(found.table->path()), QLocale().toString(found.table->record_count()),
               QLocale().toString(static_cast<qulonglong>(found.table->field_count())));
    default:
      return {};
  }
}

Qt::ItemFlags TableTree::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;
  const Qt::ItemFlags flags =
      Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemIsDragEnabled;
  return item(index).folder != nullptr ? flags | Qt::ItemIsDropEnabled : flags;
}

bool TableTree::report(ErrorCode error) {
  if (error == ErrorCode::kNameNotUnique) {
    emit refused(to_qt(message(MessageId::kUniqueNameNeeded)));
  } else if (error != ErrorCode::kOk) {
    emit refused(to_qt(error_text(error)));
  }
  return error == ErrorCode::kOk;
}

bool TableTree::setData(const QModelIndex& index, const QVariant& value, int role) {
  const Item found = item(index);
  if (role != Qt::EditRole || !index.isValid()) return false;
  const std::string name = to_utf8(value.toString());
  Database& database = document_.database();
  if (found.folder != nullptr) {
    return name == found.folder->name() || report(database.rename_folder(*found.folder, name));
  }
  return found.table != nullptr &&
         (name == found.table->name() || report(database.rename_table(*found.table, name)));
}

QStringList TableTree::mimeTypes() const {
  return {kItemPath};
}

QMimeData* TableTree::mimeData(const QModelIndexList& indexes) const {
  auto* data = new QMimeData();
  if (indexes.isEmpty()) return data;
  const Item found = item(indexes.first());
  // The document stands before the path: items are not moved between databases.
  const std::string path =
      found.folder != nullptr ? "folder:" + found.folder->path() : "table:" + found.table->path();
  data->setData(kItemPath, QByteArray::number(reinterpret_cast<quintptr>(&document_)) + "\n" +
                               QByteArray::fromStdString(path));
  return data;
}

bool TableTree::dropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                             const QModelIndex& parent) {
  if (action != Qt::MoveAction || !data->hasFormat(kItemPath)) return false;
  const QList<QByteArray> lines = data->data(kItemPath).split('\n');
  Folder* target = item(parent).folder;
  if (lines.size() != 2 || target == nullptr ||
      lines[0] != QByteArray::number(reinterpret_cast<quintptr>(&document_)))
    return false;
  Database& database = document_.database();
  const std::string path = lines[1].toStdString();
  ErrorCode error = ErrorCode::kInvalidPath;
  if (path.starts_with("table:")) {
    if (CWorkSheet* table = database.find_table(path.substr(6))) error = database.move_table(*table, *target);
  } else if (Folder* folder = database.find_folder(path.substr(7))) {
    error = database.move_folder(*folder, *target);
  }
  report(error);
  // The model has been reset: the view must not take away the item that it believes to have been copied.
  return false;
}

}  // namespace rowvane
