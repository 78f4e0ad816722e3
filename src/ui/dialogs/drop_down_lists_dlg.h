// The drop-down lists of a database.
#pragma once

#include <QDialog>

#include "core/database/shared_lists.h"

class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;

namespace rowvane {

class Dialogs;

class CDropDownListsDlg final : public QDialog {
  Q_OBJECT

 public:
  // CHOSEN is the name of the list that is shown first. All must outlive the dialog.
  CDropDownListsDlg(Database& database, const std::string& chosen, Dialogs& dialogs,
                    QWidget* parent = nullptr);

  // What was entered.
  EditedDropDownLists lists() const;
  // Of the list that is being edited; empty when there is none.
  std::string current_name() const;

  void add_list();
  void delete_list();

 public slots:
  // Changes the database; stays open after telling the user why it can't be.
  void accept() override;

 private:
  void add_item(const DropDownList& list, int former);
  void show_items(const QListWidgetItem* item);
  void keep_items();

  Database& database_;
  Dialogs& dialogs_;
  QListWidget* names_;
  QPlainTextEdit* items_;
};

}  // namespace rowvane
