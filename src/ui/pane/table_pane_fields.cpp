// The commands of fields.
#include "core/database/database.h"
#include "core/database/names.h"
#include "core/messages/messages.h"
#include "ui/dialogs/field_dlg.h"
#include "ui/dialogs/field_encryption_dlg.h"
#include "ui/pane/table_pane.h"
#include "ui/text.h"

namespace rowvane {

void TablePane::insert_field() {
  const size_t before = current_field().value_or(table_.field_count());
  CFieldDlg(document_, table_, std::nullopt, before, settings_, dialogs_, this).exec();
}

void TablePane::field_properties() {
  const auto field = current_field();
  if (field) CFieldDlg(document_, table_, field, *field, settings_, dialogs_, this).exec();
}

void TablePane::rename_field() {
  const auto field = current_field();
  if (!field) return;
  const auto name = dialogs_.ask_text(tr("Rename Field"), tr("Name:"), to_qt(table_.field(*field).name));
  if (!name) return;
  const ErrorCode error = table_.rename_field(*field, to_utf8(*name));
  if (error == ErrorCode::kNameNotUnique) {
    dialogs_.show(message(MessageId::kFieldNameExists), MessageIcon::kWarning);
  } else if (error == ErrorCode::kFieldTypeMismatch) {
    dialogs_.show(message(MessageId::kFieldNameNeedsLetter), MessageIcon::kWarning);
  } else {
    report(error);
  }
}

void TablePane::delete_field() {
  const auto field = current_field();
  if (!field || !dialogs_.ask("Delete the field \"" + table_.field(*field).name + "\" and its values?"))
    return;
  report(table_.delete_field(*field));
}

void TablePane::hide_field() {
  const auto field = current_field();
  if (!field) return;
  Field definition = table_.field(*field);
  definition.hidden = true;
  report(table_.change_field(*field, definition));
}

void TablePane::show_all_fields() {
  const ChangeGroup step(document_.database(), "Show All Fields");
  for (size_t i = 0; i < table_.field_count(); ++i) {
    Field definition = table_.field(i);
    if (!std::exchange(definition.hidden, false)) continue;
    report(table_.change_field(i, definition));
  }
}

void TablePane::encrypt_fields() {
  change_field_encryption(CFieldEncryptionDlg::Use::kEncrypt, document_, table_, current_field(), dialogs_,
                          this);
}

void TablePane::decrypt_fields() {
  change_field_encryption(CFieldEncryptionDlg::Use::kDecrypt, document_, table_, current_field(), dialogs_,
                          this);
}

}  // namespace rowvane
