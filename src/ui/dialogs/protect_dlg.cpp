#include "ui/dialogs/protect_dlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>

#include "ui/dialogs.h"
#include "ui/document/database_document.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr CipherAlgorithm kAlgorithms[] = {CipherAlgorithm::kBlowfishCfb, CipherAlgorithm::kTwofishCfb};

}  // namespace

CProtectDlg::CProtectDlg(const Protection* present, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      dialogs_(dialogs),
      password_(new PasswordBox(this)),
      repeated_(new PasswordBox(this)),
      algorithm_(new QComboBox(this)),
      read_only_open_(
          new QCheckBox(tr("Anyone may open the database &read-only, without the password"), this)) {
  setWindowTitle(tr("Protect Database"));
  for (const CipherAlgorithm algorithm : kAlgorithms) algorithm_->addItem(to_qt(cipher_name(algorithm)));
  const CipherAlgorithm shown = present != nullptr ? present->algorithm : CipherAlgorithm::kTwofishCfb;
  algorithm_->setCurrentText(to_qt(cipher_name(shown)));
  read_only_open_->setChecked(present != nullptr && present->read_only_open);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CProtectDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QFormLayout(this);
  layout->addRow(new QLabel(tr("Leave the password empty to save the database without protection."), this));
  layout->addRow(tr("&Password:"), password_);
  layout->addRow(tr("Password &again:"), repeated_);
  layout->addRow(QString(), make_show_password({password_, repeated_}, this));
  layout->addRow(tr("&Encryption:"), algorithm_);
  layout->addRow(read_only_open_);
  layout->addRow(buttons);
  password_->setFocus();
}

bool CProtectDlg::removes() const {
  return password_->text().isEmpty() && repeated_->text().isEmpty();
}

ProtectionSettings CProtectDlg::entered() const {
  ProtectionSettings settings;
  settings.password = password_->secret();
  settings.repeated = repeated_->secret();
  settings.algorithm = kAlgorithms[algorithm_->currentIndex()];
  settings.read_only_open = read_only_open_->isChecked();
  return settings;
}

ProtectionSettings CProtectDlg::take_settings() {
  ProtectionSettings settings = entered();
  password_->wipe();
  repeated_->wipe();
  return settings;
}

void CProtectDlg::accept() {
  if (removes()) return QDialog::accept();
  const Check check = check_protection(entered());
  if (dialogs_.accept(check)) return QDialog::accept();
  if (!check.passes()) password_->setFocus();
}

void protect_database(DatabaseDocument& document, Dialogs& dialogs, QWidget* parent) {
  CProtectDlg dialog(document.file().protection(), dialogs, parent);
  if (dialog.exec() != QDialog::Accepted) return;
  std::optional<Protection> protection;
  if (!dialog.removes()) protection = make_protection(dialog.take_settings());
  dialogs.report(document.file().set_protection(std::move(protection)));
}

}  // namespace rowvane
