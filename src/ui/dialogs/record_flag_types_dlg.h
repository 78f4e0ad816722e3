// The flags that records of a database can get.
#pragma once

#include <QColor>
#include <QDialog>

#include "core/database/shared_lists.h"

class QListWidget;
class QPushButton;

namespace rowvane {

class Dialogs;

class CRecordFlagTypesDlg final : public QDialog {
  Q_OBJECT

 public:
  // Both must outlive the dialog.
  CRecordFlagTypesDlg(Database& database, Dialogs& dialogs, QWidget* parent = nullptr);

  // What was entered.
  EditedFlagTypes types() const;

  void add_type();
  void delete_type();
  // Of the current type.
  void set_color(const QColor& color);
  void choose_color();

 public slots:
  // Changes the database; stays open after telling the user why it can't be.
  void accept() override;

 private:
  void add_item(const RecordFlagType& type, int former);
  void move_type(int by);
  QPushButton* add_button(QLayout& layout, const QString& text, void (CRecordFlagTypesDlg::*step)());

  Database& database_;
  Dialogs& dialogs_;
  QListWidget* types_;
};

// A square of COLOR, 0xRRGGBB.
QIcon flag_icon(uint32_t color);

}  // namespace rowvane
