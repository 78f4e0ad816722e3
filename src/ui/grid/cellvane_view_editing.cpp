// Opening and closing the editor of a cell.
#include "core/database/database.h"
#include "formula/fields/value_input.h"
#include "ui/grid/cellvane_view.h"
#include "ui/grid/editor_keys.h"
#include "ui/text.h"

namespace rowvane {

bool CCellvaneView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  const bool is_asked_for = trigger == DoubleClicked || trigger == EditKeyPressed ||
                            trigger == AnyKeyPressed || trigger == AllEditTriggers;
  if (!index.isValid() || !is_asked_for || delegate_->editor() != nullptr) return false;
  const auto field = static_cast<size_t>(index.column());
  if (table_.field(field).encrypted) {
    pane_.report(ErrorCode::kEncryptedField);
    return false;
  }
  if (!model_.is_typed(field) || !pane_.may_change()) return false;
  if (model_.has_formatting(model_.record_at(index.row()), field) &&
      !pane_.dialogs().ask(
          "This text has formatting, which is lost when the text is changed here. Edit it?")) {
    return false;
  }
  scrollTo(index);
  delegate_->set_typing(trigger == AnyKeyPressed);
  const bool is_open = QAbstractItemView::edit(index, trigger, trigger == AnyKeyPressed ? event : nullptr);
  if (is_open && trigger != AnyKeyPressed) delegate_->put_cursor_at_end();
  return is_open;
}

// What was refused stays to be corrected.
void CCellvaneView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  if (hint != QAbstractItemDelegate::RevertModelCache && editor == delegate_->editor() &&
      !delegate_->accepted()) {
    editor->setFocus();
    return;
  }
  QAbstractItemView::closeEditor(editor, hint);
}

bool CCellvaneView::finish_editing() {
  QWidget* editor = delegate_->editor();
  if (editor == nullptr) return true;
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
  return delegate_->editor() == nullptr;
}

bool CCellvaneView::insert_into_editor(const QString& text) {
  if (delegate_->editor() == nullptr) return false;
  delegate_->insert(text);
  return true;
}

void CCellvaneView::leave_editor(int key, Qt::KeyboardModifiers modifiers) {
  if (is_enter(key) && modifiers.testFlag(Qt::ControlModifier)) {
    if (!fill_selection_with_typed()) finish_editing();
    return;
  }
  if (finish_editing()) handle_move_key(key, modifiers);
}

// False where one cell is selected.
bool CCellvaneView::fill_selection_with_typed() {
  int64_t cells = 0;
  for (const CellGroup& group : selected_groups()) cells += group.size();
  if (cells < 2) return false;
  const std::string text = to_utf8(delegate_->text());
  const Field& field = table_.field(static_cast<size_t>(delegate_->edited().column()));
  const ErrorCode error = read_field_value(field, text, pane_.document().region()).error;
  if (error != ErrorCode::kOk) {
    pane_.report(error);
    delegate_->editor()->setFocus();
    return true;
  }
  closeEditor(delegate_->editor(), QAbstractItemDelegate::RevertModelCache);
  pane_.fill_selection(text);
  return true;
}

}  // namespace rowvane
