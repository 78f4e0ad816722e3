// Encrypts or decrypts the values of chosen fields.
#pragma once

#include <QDialog>
#include <optional>

#include "crypto/field_encryption.h"
#include "ui/dialogs/field_check_list.h"
#include "ui/dialogs/password_box.h"

namespace rowvane {

class DatabaseDocument;
class Dialogs;

class CFieldEncryptionDlg final : public QDialog {
  Q_OBJECT

 public:
  enum class Use { kEncrypt, kDecrypt };

  // Offers the fields of TABLE that can be; FIELD is chosen at first when it is one of them. TABLE and
  // DIALOGS must outlive the dialog.
  CFieldEncryptionDlg(Use use, const CWorkSheet& table, std::optional<size_t> field, Dialogs& dialogs,
                      QWidget* parent = nullptr);

  FieldCheckList& fields() { return *fields_; }
  // What was entered; the boxes are empty afterwards.
  FieldEncryptionSettings take_settings();

 public slots:
  void accept() override;

 private:
  FieldEncryptionSettings entered() const;

  Use use_;
  const CWorkSheet& table_;
  Dialogs& dialogs_;
  FieldCheckList* fields_;
  PasswordBox* password_;
  PasswordBox* repeated_;
};

// Shows the dialog for TABLE, a table of DOCUMENT, and does what was chosen, as one undo step. VIEWS show the
// document and are what the boxes stand over.
void change_field_encryption(CFieldEncryptionDlg::Use use, DatabaseDocument& document, CWorkSheet& table,
                             std::optional<size_t> field, Dialogs& dialogs, QWidget* views);

}  // namespace rowvane
