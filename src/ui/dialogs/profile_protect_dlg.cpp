#include "ui/dialogs/profile_protect_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>

#include "ui/dialogs.h"
#include "ui/text.h"

namespace rowvane {

CProfileProtectDlg::CProfileProtectDlg(Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), dialogs_(dialogs), password_(new PasswordBox(this)), repeated_(new PasswordBox(this)) {
  setWindowTitle(to_qt(kProfileProtectTitle));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CProfileProtectDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QFormLayout(this);
  layout->addRow(new QLabel(to_qt(kProfileProtectPrompt), this));
  layout->addRow(tr("&Password:"), password_);
  layout->addRow(tr("Password &again:"), repeated_);
  layout->addRow(QString(), make_show_password({password_, repeated_}, this));
  layout->addRow(buttons);
  password_->setFocus();
}

ProfileProtection CProfileProtectDlg::take_protection() {
  return {password_->take(), repeated_->take()};
}

void CProfileProtectDlg::accept() {
  if (dialogs_.accept(check_profile_protection({password_->secret(), repeated_->secret()})))
    return QDialog::accept();
  password_->setFocus();
}

void protect_profile(ProfileFile& file, Dialogs& dialogs, QWidget* parent) {
  CProfileProtectDlg dialog(dialogs, parent);
  if (dialog.exec() == QDialog::Accepted) protect_profile(dialog.take_protection(), file);
}

}  // namespace rowvane
