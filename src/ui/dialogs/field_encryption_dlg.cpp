#include "ui/dialogs/field_encryption_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>

#include "core/parallel_blocks.h"
#include "ui/dialogs.h"
#include "ui/document/database_document.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {

CFieldEncryptionDlg::CFieldEncryptionDlg(Use use, const CWorkSheet& table, std::optional<size_t> field,
                                         Dialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      use_(use),
      table_(table),
      dialogs_(dialogs),
      fields_(new FieldCheckList(
          table, [use](const Field& each) { return each.encrypted == (use == Use::kDecrypt); }, this)),
      password_(new PasswordBox(this)),
      repeated_(new PasswordBox(this)) {
  setWindowTitle(to_qt(use == Use::kEncrypt ? kEncryptFieldsTitle : kDecryptFieldsTitle));
  if (field) fields_->tick_field(*field);
  auto* label = new QLabel(tr("&Fields:"), this);
  label->setBuddy(fields_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CFieldEncryptionDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QFormLayout(this);
  layout->addRow(label);
  layout->addRow(fields_);
  layout->addRow(tr("&Password:"), password_);
  if (use == Use::kEncrypt) {
    layout->addRow(tr("Password &again:"), repeated_);
  } else {
    repeated_->hide();
  }
  layout->addRow(QString(), make_show_password({password_, repeated_}, this));
  if (use == Use::kEncrypt) {
    auto* note =
        new QLabel(tr("Encrypted values can't be edited, and not be read without the password."), this);
    note->setWordWrap(true);
    layout->addRow(note);
  }
  layout->addRow(buttons);
  (field ? static_cast<QWidget*>(password_) : fields_)->setFocus();
}

FieldEncryptionSettings CFieldEncryptionDlg::entered() const {
  FieldEncryptionSettings settings;
  settings.fields = fields_->checked_fields();
  settings.password = password_->secret();
  settings.repeated = repeated_->secret();
  return settings;
}

FieldEncryptionSettings CFieldEncryptionDlg::take_settings() {
  FieldEncryptionSettings settings = entered();
  password_->wipe();
  repeated_->wipe();
  return settings;
}

void CFieldEncryptionDlg::accept() {
  const FieldEncryptionSettings settings = entered();
  if (settings.fields.empty()) {
    dialogs_.show(to_utf8(tr("Choose at least one field.")), MessageIcon::kWarning);
    return fields_->setFocus();
  }
  const Check check =
      use_ == Use::kEncrypt ? check_encrypt_fields(table_, settings) : check_decrypt_fields(table_, settings);
  if (dialogs_.accept(check)) return QDialog::accept();
  password_->setFocus();
  password_->selectAll();
}

void change_field_encryption(CFieldEncryptionDlg::Use use, DatabaseDocument& document, CWorkSheet& table,
                             std::optional<size_t> field, Dialogs& dialogs, QWidget* views) {
  CFieldEncryptionDlg dialog(use, table, field, dialogs, views);
  const bool encrypts = use == CFieldEncryptionDlg::Use::kEncrypt;
  if (dialog.fields().count() == 0) {
    const QString none = encrypts ? QObject::tr("All fields of the table are encrypted.")
                                  : QObject::tr("The table has no encrypted fields.");
    return dialogs.show(to_utf8(none), MessageIcon::kInformation);
  }
  if (dialog.exec() != QDialog::Accepted) return;
  FieldEncryptionSettings settings = dialog.take_settings();
  settings.threads = thread_count(document.options().used_processor_cores);
  Outcome outcome;
  run_long_change(views, dialog.windowTitle(), document, [&](Progress& progress) {
    outcome =
        encrypts ? encrypt_fields(table, settings, progress) : decrypt_fields(table, settings, progress);
  });
  dialogs.report(outcome);
}

}  // namespace rowvane
