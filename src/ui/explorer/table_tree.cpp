#include "ui/explorer/table_tree.h"

#include <QCollator>
#include <QLocale>
#include <QMimeData>
#include <algorithm>

#include "core/messages/messages.h"
#include "core/table/table_copy.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace rowvane {
namespace {

const QString kItemPath = QStringLiteral("application/x-rowvane-item");

uint64_t records_of(const Folder& folder) {
  uint64_t count = 0;
  for (const auto& table : folder.tables()) count += table->record_count();
  for (const auto& inner : folder.folders()) count += records_of(*inner);
  return count;
}

uint64_t size_of(const TreeItem& item) {
  return item.folder != nullptr ? records_of(*item.folder) : item.table->record_count();
}

void sort_items(std::span<TreeItem> items, const profile::SortingOptions& sorting) {
  switch (sorting.sorting_type) {
    case profile::SortingType::kByName: {
      QCollator collator;
      collator.setNumericMode(true);
      collator.setCaseSensitivity(Qt::CaseInsensitive);
      std::ranges::stable_sort(items, [&](const TreeItem& a, const TreeItem& b) {
        const int order = collator.compare(to_qt(a.name()), to_qt(b.name()));
        return sorting.ascending ? order < 0 : order > 0;
      });
      break;
    }
    case profile::SortingType::kBySize:
      std::ranges::stable_sort(items, [&](const TreeItem& a, const TreeItem& b) {
        return sorting.ascending ? size_of(a) < size_of(b) : size_of(a) > size_of(b);
      });
      break;
    case profile::SortingType::kNone:
    case profile::SortingType::kByDate:  // tables have no date
      if (!sorting.ascending) std::ranges::reverse(items);
      break;
  }
}

}  // namespace

std::string tree_refusal(ErrorCode error, bool is_table) {
  if (error != ErrorCode::kNameNotUnique) return std::string(error_text(error));
  return message(is_table ? MessageId::kTableNameExists : MessageId::kUniqueNameNeeded);
}

TableTree::TableTree(DatabaseDocument& document, const profile::SortingOptions& sorting, QObject* parent)
    : QAbstractItemModel(parent), document_(document), sorting_(sorting), children_(read_children()) {
  connect(&document, &DatabaseDocument::changed, this, &TableTree::follow);
}

TableTree::Children TableTree::read_children() const {
  Children children;
  add_children(document_.database().root(), children);
  return children;
}

// The folders of FOLDER, then its tables.
void TableTree::add_children(const Folder& folder, Children& children) const {
  std::vector<TreeItem>& items = children[&folder];
  for (const auto& inner : folder.folders()) items.push_back({inner.get(), nullptr});
  const size_t folders = items.size();
  for (const auto& table : folder.tables()) items.push_back({nullptr, table.get()});
  sort_items(std::span(items).first(folders), sorting_);
  sort_items(std::span(items).subspan(folders), sorting_);
  for (const auto& inner : folder.folders()) add_children(*inner, children);
}

const std::vector<TreeItem>& TableTree::children_of(const Folder* folder) const {
  static const std::vector<TreeItem> none;
  const auto found = children_.find(folder);
  return found != children_.end() ? found->second : none;
}

void TableTree::follow(const CWorkSheet* changed) {
  // Values of one table: only its size can move it.
  if (changed != nullptr && sorting_.sorting_type != profile::SortingType::kBySize) return;
  sort_again();
}

void TableTree::sort_again() {
  Children now = read_children();
  if (now != children_) {
    beginResetModel();
    children_ = std::move(now);
    endResetModel();
    return;
  }
  // Names may be others.
  for (const auto& [folder, items] : children_) {
    if (items.empty()) continue;
    emit dataChanged(createIndex(0, 0, folder), createIndex(static_cast<int>(items.size()) - 1, 0, folder));
  }
}

// An index holds the folder that its item lies in.
TreeItem TableTree::item(const QModelIndex& index) const {
  if (!index.isValid()) return {&document_.database().root(), nullptr};
  const auto& items = children_of(static_cast<const Folder*>(index.constInternalPointer()));
  const auto row = static_cast<size_t>(index.row());
  return row < items.size() ? items[row] : TreeItem();
}

QModelIndex TableTree::index_of(const TreeItem& item) const {
  for (const auto& [folder, items] : children_) {
    const auto found = std::ranges::find(items, item);
    if (found != items.end()) return createIndex(static_cast<int>(found - items.begin()), 0, folder);
  }
  return {};
}

QModelIndex TableTree::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
  return createIndex(row, column, item(parent).folder);
}

QModelIndex TableTree::parent(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  auto* folder = static_cast<Folder*>(index.internalPointer());
  return folder->parent() == nullptr ? QModelIndex() : index_of({folder, nullptr});
}

int TableTree::rowCount(const QModelIndex& parent) const {
  const Folder* folder = item(parent).folder;
  return folder != nullptr ? static_cast<int>(children_of(folder).size()) : 0;
}

int TableTree::columnCount(const QModelIndex&) const {
  return 1;
}

QString TableTree::tip(const TreeItem& item) const {
  const QLocale locale;
  if (item.table != nullptr) {
    return tr("%1\n%2 records, %3 fields")
        .arg(to_qt(item.table->path()), locale.toString(item.table->record_count()),
             locale.toString(static_cast<qulonglong>(item.table->field_count())));
  }
  return tr("%1\n%2 tables, %3 folders")
      .arg(to_qt(item.folder->path()), locale.toString(static_cast<qulonglong>(item.folder->tables().size())),
           locale.toString(static_cast<qulonglong>(item.folder->folders().size())));
}

QVariant TableTree::data(const QModelIndex& index, int role) const {
  const TreeItem found = item(index);
  if (!index.isValid() || found.is_empty()) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return to_qt(found.name());
    case Qt::DecorationRole:
      return icon(found.folder != nullptr ? "folder" : "table");
    case Qt::ToolTipRole:
      return tip(found);
    case Qt::AccessibleDescriptionRole:
      return found.folder != nullptr ? tr("Folder") : tr("Table");
    default:
      return {};
  }
}

Qt::ItemFlags TableTree::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;
  const Qt::ItemFlags flags =
      Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemIsDragEnabled;
  return item(index).folder != nullptr ? flags | Qt::ItemIsDropEnabled : flags | Qt::ItemNeverHasChildren;
}

bool TableTree::report(ErrorCode error, bool is_table) {
  if (error != ErrorCode::kOk) emit refused(to_qt(tree_refusal(error, is_table)));
  return error == ErrorCode::kOk;
}

bool TableTree::setData(const QModelIndex& index, const QVariant& value, int role) {
  const TreeItem found = item(index);
  if (role != Qt::EditRole || !index.isValid() || found.is_empty()) return false;
  const std::string name = to_utf8(value.toString());
  if (name == found.name()) return true;
  Database& database = document_.database();
  const bool is_table = found.table != nullptr;
  return report(
      is_table ? database.rename_table(*found.table, name) : database.rename_folder(*found.folder, name),
      is_table);
}

// ---- dragging, cutting, copying

QStringList TableTree::mimeTypes() const {
  return {kItemPath};
}

// The document stands before the path: items do not go from one database into another.
QMimeData* TableTree::mimeData(const QModelIndexList& indexes) const {
  auto* data = new QMimeData();
  if (indexes.isEmpty()) return data;
  const TreeItem found = item(indexes.first());
  const std::string path = (found.folder != nullptr ? "folder:" : "table:") + found.path();
  data->setData(kItemPath, QByteArray::number(reinterpret_cast<quintptr>(&document_)) + "\n" +
                               QByteArray::fromStdString(path));
  data->setText(to_qt(found.path()));
  return data;
}

TreeItem TableTree::item_of(const QMimeData* data) const {
  const QList<QByteArray> lines = data->data(kItemPath).split('\n');
  if (lines.size() != 2 || lines[0] != QByteArray::number(reinterpret_cast<quintptr>(&document_))) return {};
  const std::string path = lines[1].toStdString();
  if (path.starts_with("table:")) return {nullptr, document_.database().find_table(path.substr(6))};
  return {document_.database().find_folder(path.substr(7)), nullptr};
}

bool TableTree::is_own_item(const QMimeData* data) const {
  return data != nullptr && data->hasFormat(kItemPath) && !item_of(data).is_empty();
}

ErrorCode TableTree::place(const TreeItem& moved, bool as_copy, Folder& target, TreeItem& placed_item) {
  Database& database = document_.database();
  placed_item = moved;
  if (moved.table != nullptr) {
    return as_copy ? copy_table(database, *moved.table, target, &placed_item.table)
                   : database.move_table(*moved.table, target);
  }
  return as_copy ? copy_folder(database, *moved.folder, target, &placed_item.folder)
                 : database.move_folder(*moved.folder, target);
}

bool TableTree::dropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                             const QModelIndex& parent) {
  const TreeItem dragged = item_of(data);
  const TreeItem onto = item(parent);
  Folder* target = onto.folder != nullptr ? onto.folder : onto.parent();
  if (dragged.is_empty() || (action != Qt::MoveAction && action != Qt::CopyAction)) return false;
  TreeItem at;
  const bool done = report(place(dragged, action == Qt::CopyAction, *target, at), dragged.table != nullptr);
  if (done) emit placed(index_of(at));
  // The view must not take away the item that it believes to have been copied.
  return false;
}

}  // namespace rowvane
