// The database explorer: the tree of folders and tables beside the table in view, and its commands.
#pragma once

#include <QTreeView>
#include <set>

#include "ui/dialogs.h"
#include "ui/explorer/table_tree.h"

class QMenu;

namespace rowvane {

// Every change is one undo step. The open branches and the current item survive changes, undo and redo.
class CDatabaseExplorer final : public QTreeView {
  Q_OBJECT

 public:
  // All must outlive the explorer. SORTING, an option of the profile, changes with the commands for it.
  CDatabaseExplorer(DatabaseDocument& document, profile::SortingOptions& sorting, Dialogs& dialogs,
                    QWidget* parent = nullptr);

  const TableTree& tree() const { return *tree_; }
  // What the commands work on; empty when nothing is current.
  TreeItem current_item() const;
  // Makes ITEM the current one; a table is told by `table_chosen`.
  void set_current_item(const TreeItem& item);

  // The commands. New tables and folders come into the current folder.
  void new_table();
  void new_folder();
  void rename_item();
  void delete_item();
  void duplicate_item();
  void cut_item();
  void copy_item();
  void paste_item();
  void expand_all();
  void collapse_all();
  void sort_by(profile::SortingType type);
  void set_ascending(bool ascending);

 signals:
  // The table that is current now.
  void table_chosen(rowvane::CWorkSheet* table);
  // The user wants to work in the current table.
  void table_entered();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void begin_reset();
  void end_reset();
  Folder& current_folder() const;
  void to_clipboard(Qt::DropAction action);
  bool run_key(const QKeyEvent& event);
  void add_sorting(QMenu& menu);
  bool clipboard_has_item() const;

  DatabaseDocument& document_;
  profile::SortingOptions& sorting_;
  Dialogs& dialogs_;
  TableTree* tree_;
  TreeItem current_;                        // while the tree is read anew as well
  std::set<const Folder*> closed_folders_;  // all others are open
  bool resetting_ = false;
};

}  // namespace rowvane
