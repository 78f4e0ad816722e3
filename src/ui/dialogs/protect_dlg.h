// Sets or removes the password of a database.
#pragma once

#include <QDialog>

#include "crypto/protection.h"
#include "ui/dialogs/password_box.h"

class QCheckBox;
class QComboBox;

namespace rowvane {

class DatabaseDocument;
class Dialogs;

class CProtectDlg final : public QDialog {
  Q_OBJECT

 public:
  // PRESENT: the protection that the database has; null for none.
  CProtectDlg(const Protection* present, Dialogs& dialogs, QWidget* parent = nullptr);

  // True when the boxes for the password were left empty: the protection goes.
  bool removes() const;
  // What was entered; the boxes are empty afterwards.
  ProtectionSettings take_settings();

 public slots:
  void accept() override;

 private:
  ProtectionSettings entered() const;

  Dialogs& dialogs_;
  PasswordBox* password_;
  PasswordBox* repeated_;
  QComboBox* algorithm_;
  QCheckBox* read_only_open_;
};

// Shows the dialog and gives the database what was chosen; it takes effect when the database is saved.
void protect_database(DatabaseDocument& document, Dialogs& dialogs, QWidget* parent);

}  // namespace rowvane
