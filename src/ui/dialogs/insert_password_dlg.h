// Asks for the password of a protected file.
#pragma once

#include <QDialog>

#include "ui/dialogs/password_box.h"

namespace rowvane {

class CInsertPasswordDlg final : public QDialog {
  Q_OBJECT

 public:
  explicit CInsertPasswordDlg(const QString& path, QWidget* parent = nullptr);

  // What was entered; the box is empty afterwards.
  Secret take_password();

 private:
  PasswordBox* password_;
};

}  // namespace rowvane
