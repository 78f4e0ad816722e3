// Sets or removes the password of the settings profile.
#pragma once

#include <QDialog>

#include "app/profile/profile_protection.h"
#include "ui/dialogs/password_box.h"

namespace rowvane {

class Dialogs;

class CProfileProtectDlg final : public QDialog {
  Q_OBJECT

 public:
  // DIALOGS must outlive the dialog.
  explicit CProfileProtectDlg(Dialogs& dialogs, QWidget* parent = nullptr);

  // What was entered; the boxes are empty afterwards.
  ProfileProtection take_protection();

 public slots:
  void accept() override;

 private:
  Dialogs& dialogs_;
  PasswordBox* password_;
  PasswordBox* repeated_;
};

// Shows the dialog and gives FILE what was chosen; it takes effect when the profile is saved.
void protect_profile(ProfileFile& file, Dialogs& dialogs, QWidget* parent);

}  // namespace rowvane
