#include "ui/explorer/database_explorer.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <memory>

#include "ui/icons.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr size_t kNewFields = 5;
constexpr uint32_t kNewRecords = 20;
// Beside an item on the clipboard: pasting moves it.
const QString kCutMark = QStringLiteral("application/x-rowvane-cut");

bool is_key(const QKeyEvent& event, Qt::Key key) {
  return event.key() == key && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

}  // namespace

CDatabaseExplorer::CDatabaseExplorer(DatabaseDocument& document, profile::SortingOptions& sorting,
                                     Dialogs& dialogs, QWidget* parent)
    : QTreeView(parent),
      document_(document),
      sorting_(sorting),
      dialogs_(dialogs),
      tree_(new TableTree(document, sorting, this)) {
  setAccessibleName(tr("Database Explorer"));
  setModel(tree_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setDragDropMode(DragDrop);
  setDefaultDropAction(Qt::MoveAction);
  setEditTriggers(NoEditTriggers);
  expandAll();
  connect(tree_, &TableTree::modelAboutToBeReset, this, &CDatabaseExplorer::begin_reset);
  connect(tree_, &TableTree::modelReset, this, &CDatabaseExplorer::end_reset);
  // Later: a box in the middle of a drag, or of the end of an edit, takes the input away from it.
  connect(
      tree_, &TableTree::refused, this,
      [this](const QString& text) { dialogs_.show(to_utf8(text), MessageIcon::kWarning); },
      Qt::QueuedConnection);
  connect(tree_, &TableTree::placed, this, [this](const QModelIndex& index) { setCurrentIndex(index); });
  connect(this, &QTreeView::collapsed, this,
          [this](const QModelIndex& index) { closed_folders_.insert(tree_->item(index).folder); });
  connect(this, &QTreeView::expanded, this,
          [this](const QModelIndex& index) { closed_folders_.erase(tree_->item(index).folder); });
  connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
    if (tree_->item(index).table != nullptr) emit table_entered();
  });
}

// ---- the current item

TreeItem CDatabaseExplorer::current_item() const {
  return currentIndex().isValid() ? tree_->item(currentIndex()) : TreeItem();
}

void CDatabaseExplorer::set_current_item(const TreeItem& item) {
  setCurrentIndex(tree_->index_of(item));
}

void CDatabaseExplorer::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (resetting_ || !current.isValid()) return;
  current_ = tree_->item(current);
  if (current_.table != nullptr) emit table_chosen(current_.table);
}

void CDatabaseExplorer::begin_reset() {
  resetting_ = true;
}

void CDatabaseExplorer::end_reset() {
  const std::set<const Folder*> closed = closed_folders_;
  expandAll();
  for (const Folder* folder : closed) collapse(tree_->index_of({const_cast<Folder*>(folder), nullptr}));
  setCurrentIndex(tree_->index_of(current_));
  resetting_ = false;
}

// The folder that is current, or that the current table lies in.
Folder& CDatabaseExplorer::current_folder() const {
  const TreeItem item = current_item();
  if (item.folder != nullptr) return *item.folder;
  return item.table != nullptr ? *item.table->folder() : document_.database().root();
}

// ---- commands

void CDatabaseExplorer::new_table() {
  Database& database = document_.database();
  Folder& folder = current_folder();
  QString name = to_qt(database.free_name(folder, "table1"));
  while (const auto entered = dialogs_.ask_text(tr("New Table"), tr("Name:"), name)) {
    auto table = rowvane::new_table(to_utf8(*entered), kNewFields, kNewRecords);
    CWorkSheet* added = table.get();
    const ErrorCode error = database.add_table(folder, table);
    if (error == ErrorCode::kOk) return set_current_item({nullptr, added});
    dialogs_.show(tree_refusal(error, true), MessageIcon::kWarning);
    name = *entered;
  }
}

void CDatabaseExplorer::new_folder() {
  Database& database = document_.database();
  Folder& folder = current_folder();
  QString name = to_qt(database.free_name(folder, "folder1"));
  while (const auto entered = dialogs_.ask_text(tr("New Folder"), tr("Name:"), name)) {
    Folder* added = nullptr;
    const ErrorCode error = database.add_folder(folder, to_utf8(*entered), &added);
    if (error == ErrorCode::kOk) return set_current_item({added, nullptr});
    dialogs_.show(tree_refusal(error, false), MessageIcon::kWarning);
    name = *entered;
  }
}

void CDatabaseExplorer::rename_item() {
  if (!currentIndex().isValid()) return;
  setFocus();
  edit(currentIndex());
}

void CDatabaseExplorer::delete_item() {
  const TreeItem item = current_item();
  if (item.is_empty()) return;
  const QString question = item.table != nullptr ? tr("Delete the table \"%1\" with all its records?")
                                                 : tr("Delete the folder \"%1\" with all that is in it?");
  if (!dialogs_.ask(to_utf8(question.arg(to_qt(item.name()))))) return;
  // The item below, or else above, is the next one.
  QModelIndex next = currentIndex().siblingAtRow(currentIndex().row() + 1);
  if (!next.isValid()) next = indexAbove(currentIndex());
  const TreeItem following = next.isValid() ? tree_->item(next) : TreeItem();
  Database& database = document_.database();
  const ErrorCode error =
      item.table != nullptr ? database.delete_table(*item.table) : database.delete_folder(*item.folder);
  if (!dialogs_.report(error)) return;
  if (!following.is_empty()) set_current_item(following);
}

void CDatabaseExplorer::duplicate_item() {
  if (!currentIndex().isValid()) return;
  const std::unique_ptr<QMimeData> copied(tree_->mimeData({currentIndex()}));
  tree_->dropMimeData(copied.get(), Qt::CopyAction, -1, -1, currentIndex().parent());
}

void CDatabaseExplorer::to_clipboard(Qt::DropAction action) {
  if (!currentIndex().isValid()) return;
  QMimeData* item = tree_->mimeData({currentIndex()});
  if (action == Qt::MoveAction) item->setData(kCutMark, "1");
  QApplication::clipboard()->setMimeData(item);
}

void CDatabaseExplorer::cut_item() {
  to_clipboard(Qt::MoveAction);
}

void CDatabaseExplorer::copy_item() {
  to_clipboard(Qt::CopyAction);
}

bool CDatabaseExplorer::clipboard_has_item() const {
  return tree_->is_own_item(QApplication::clipboard()->mimeData());
}

void CDatabaseExplorer::paste_item() {
  if (!clipboard_has_item()) return;
  const QMimeData* item = QApplication::clipboard()->mimeData();
  const bool is_cut = item->hasFormat(kCutMark);
  tree_->dropMimeData(item, is_cut ? Qt::MoveAction : Qt::CopyAction, -1, -1, currentIndex());
  // What was cut has another path now.
  if (is_cut) QApplication::clipboard()->clear();
}

void CDatabaseExplorer::expand_all() {
  expandAll();
  closed_folders_.clear();
}

void CDatabaseExplorer::collapse_all() {
  for (const CWorkSheet* table : document_.database().tables()) {
    for (const Folder* folder = table->folder(); folder != nullptr; folder = folder->parent())
      collapse(tree_->index_of({const_cast<Folder*>(folder), nullptr}));
  }
}

void CDatabaseExplorer::sort_by(profile::SortingType type) {
  sorting_.sorting_type = type;
  tree_->sort_again();
}

void CDatabaseExplorer::set_ascending(bool ascending) {
  sorting_.ascending = ascending;
  tree_->sort_again();
}

// ---- keys and the context menu

bool CDatabaseExplorer::run_key(const QKeyEvent& event) {
  if (is_key(event, Qt::Key_F2)) {
    rename_item();
  } else if (is_key(event, Qt::Key_Delete)) {
    delete_item();
  } else if (event.matches(QKeySequence::Cut)) {
    cut_item();
  } else if (event.matches(QKeySequence::Copy)) {
    copy_item();
  } else if (event.matches(QKeySequence::Paste)) {
    paste_item();
  } else if ((is_key(event, Qt::Key_Return) || is_key(event, Qt::Key_Enter)) &&
             current_item().table != nullptr) {
    emit table_entered();
  } else {
    return false;
  }
  return true;
}

// The keys that the menus give to the cells of the table mean the items of the tree here.
bool CDatabaseExplorer::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && state() != EditingState) {
    const auto& key = static_cast<QKeyEvent&>(*event);
    const bool is_ours = is_key(key, Qt::Key_F2) || is_key(key, Qt::Key_Delete) ||
                         key.matches(QKeySequence::Cut) || key.matches(QKeySequence::Copy) ||
                         key.matches(QKeySequence::Paste);
    if (is_ours) {
      event->accept();
      return true;
    }
  }
  return QTreeView::event(event);
}

void CDatabaseExplorer::keyPressEvent(QKeyEvent* event) {
  if (state() == EditingState || !run_key(*event)) QTreeView::keyPressEvent(event);
}

void CDatabaseExplorer::add_sorting(QMenu& menu) {
  struct Sorting {
    profile::SortingType type;
    QString text;
  };
  auto* group = new QActionGroup(&menu);
  for (const Sorting& sorting : {Sorting{profile::SortingType::kNone, tr("&None")},
                                 Sorting{profile::SortingType::kByName, tr("By &Name")},
                                 Sorting{profile::SortingType::kBySize, tr("By &Size (Records)")}}) {
    QAction* action = menu.addAction(sorting.text, this, [this, sorting] { sort_by(sorting.type); });
    action->setCheckable(true);
    action->setChecked(sorting_.sorting_type == sorting.type);
    group->addAction(action);
  }
  menu.addSeparator();
  QAction* ascending = menu.addAction(tr("&Ascending"), this, [this](bool on) { set_ascending(on); });
  ascending->setCheckable(true);
  ascending->setChecked(sorting_.ascending);
}

void CDatabaseExplorer::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  const bool has_item = currentIndex().isValid();
  const auto add = [&](const QString& text, const char* name, auto step, bool enabled) {
    QAction* action = menu.addAction(text, this, step);
    if (name != nullptr) action->setIcon(icon(name));
    action->setEnabled(enabled);
  };
  add(tr("New &Table..."), "table", &CDatabaseExplorer::new_table, true);
  add(tr("New &Folder..."), "folder", &CDatabaseExplorer::new_folder, true);
  menu.addSeparator();
  add(tr("Cu&t\tCtrl+X"), "cut", &CDatabaseExplorer::cut_item, has_item);
  add(tr("&Copy\tCtrl+C"), "copy", &CDatabaseExplorer::copy_item, has_item);
  add(tr("&Paste\tCtrl+V"), "paste", &CDatabaseExplorer::paste_item, clipboard_has_item());
  add(tr("D&uplicate"), nullptr, &CDatabaseExplorer::duplicate_item, has_item);
  menu.addSeparator();
  add(tr("&Rename\tF2"), nullptr, &CDatabaseExplorer::rename_item, has_item);
  add(tr("&Delete\tDel"), "delete", &CDatabaseExplorer::delete_item, has_item);
  menu.addSeparator();
  add(tr("E&xpand All"), nullptr, &CDatabaseExplorer::expand_all, true);
  add(tr("C&ollapse All"), nullptr, &CDatabaseExplorer::collapse_all, true);
  add_sorting(*menu.addMenu(tr("&Sort")));
  menu.exec(event->globalPos());
}

}  // namespace rowvane
